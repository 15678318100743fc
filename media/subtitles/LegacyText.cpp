#include "LegacyText.h"

#include <QHash>
#include <QStringDecoder>

#include <cerrno>
#include <iconv.h>
#include <memory>
#include <uchardet/uchardet.h>

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

/// The iconv converter from a set to UTF-8.
class Converter final
{
public:
    explicit Converter(const QByteArray &set) : m_converter(iconv_open("UTF-8", set.constData())) {}
    Converter(const Converter &) = delete;
    Converter &operator=(const Converter &) = delete;
    ~Converter()
    {
        if (isValid())
            iconv_close(m_converter);
    }

    bool isValid() const
    {
        // NOLINTNEXTLINE(performance-no-int-to-ptr): the sign that iconv itself gives for none
        return m_converter != reinterpret_cast<iconv_t>(-1);
    }

    /// Continues after every invalid byte.
    LegacyText read(QByteArray bytes)
    {
        LegacyText result;
        QByteArray utf8;
        char *from = bytes.data();
        auto left = static_cast<std::size_t>(bytes.size());
        while (left > 0) {
            const bool stopped = !convert(from, left, utf8) && errno != E2BIG;
            if (!stopped || left == 0)
                continue;
            result.hasErrors = true;
            utf8 += "\xEF\xBF\xBD"; // U+FFFD
            ++from;
            --left;
        }
        result.text = QString::fromUtf8(utf8);
        return result;
    }

private:
    bool convert(char *&from, std::size_t &left, QByteArray &utf8)
    {
        char *to = m_block.data();
        auto room = static_cast<std::size_t>(m_block.size());
        const bool done = iconv(m_converter, &from, &left, &to, &room) != static_cast<std::size_t>(-1);
        const int reason = errno;
        utf8.append(m_block.constData(), m_block.size() - static_cast<qsizetype>(room));
        errno = reason;
        return done;
    }

    static constexpr qsizetype BlockBytes = 64LL * 1024;

    QByteArray m_block{BlockBytes, Qt::Uninitialized};
    iconv_t m_converter;
};
} // namespace

std::optional<LegacyText> LegacyText::read(const QByteArray &bytes, const QByteArray &set)
{
    if (QStringDecoder decode(set.constData()); decode.isValid()) {
        QString text = decode(bytes);
        return LegacyText{std::move(text), decode.hasError()};
    }
    Converter converter(set);
    if (!converter.isValid())
        return std::nullopt;
    return converter.read(bytes);
}

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
