#include "CharacterSets.h"

#include <QHash>

#include <uchardet/uchardet.h>

#include <memory>

using namespace Qt::StringLiterals;

namespace
{
struct Row
{
    const char *languages;
    const char *sets;
};

constexpr Row Rows[] = {
    {"pol cze slo slv hun bos hrv rum", "windows-1250 iso-8859-2"},
    {"alb", "windows-1250 iso-8859-2 windows-1252"},
    {"rus ukr bul mac bel", "windows-1251 iso-8859-5 koi8-r"},
    {"scc", "windows-1250 windows-1251"},
    {"ell", "windows-1253 iso-8859-7"},
    {"tur aze", "windows-1254 iso-8859-9"},
    {"heb", "windows-1255 iso-8859-8"},
    {"ara per urd", "windows-1256 iso-8859-6"},
    {"lit lav est", "windows-1257 iso-8859-13"},
    {"vie", "windows-1258 viscii"},
    {"tha", "windows-874 tis-620"},
    {"chi zhe", "gb18030 big5"},
    {"zht", "big5 big5-hkscs gb18030"},
    {"jpn", "shift_jis euc-jp iso-2022-jp"},
    {"kor", "windows-949 euc-kr"},
};

QHash<QString, QByteArrayList> makeTable()
{
    QHash<QString, QByteArrayList> table;
    for (const Row &row : Rows) {
        for (const QByteArray &language : QByteArray(row.languages).split(' '))
            table.insert(QString::fromLatin1(language), QByteArray(row.sets).split(' '));
    }
    return table;
}
} // namespace

QByteArrayList legacyCharacterSets(const QString &language)
{
    static const QHash<QString, QByteArrayList> table = makeTable();
    static const QByteArrayList western{"windows-1252", "iso-8859-15", "iso-8859-1"};
    return table.value(language, western);
}

QByteArray detectedCharacterSet(const QByteArray &bytes)
{
    const std::unique_ptr<std::remove_pointer_t<uchardet_t>, void (*)(uchardet_t)> detector(uchardet_new(),
                                                                                            uchardet_delete);
    if (uchardet_handle_data(detector.get(), bytes.constData(), static_cast<std::size_t>(bytes.size())) != 0)
        return {};
    uchardet_data_end(detector.get());
    const QByteArray name = QByteArray(uchardet_get_charset(detector.get())).toLower();
    // Maps the detector's names to the Windows sets that were actually used.
    static const QHash<QByteArray, QByteArray> meant{{"iso-8859-1", "windows-1252"},
                                                     {"iso-8859-9", "windows-1254"},
                                                     {"uhc", "windows-949"},
                                                     {"ascii", "windows-1252"}};
    return meant.value(name, name);
}
