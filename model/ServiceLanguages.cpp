#include "ServiceLanguages.h"

#include "LanguageTable.h"

#include <QHash>
#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
struct Tables
{
    QHash<QString, QString> codes;      // any spelling → three letters
    QHash<QString, QString> twoLetters; // three letters → two
    QHash<QString, QString> tags;       // three letters → the tag that names the language

    Tables()
    {
        for (const QStringList &entry : entries(LanguageTable::TwoToThree))
            add(entry[0], entry[1], entry[0]);
        for (const QStringList &entry : entries(LanguageTable::Private))
            add(entry[0], entry[1], entry[2]);
        for (const char *table : {LanguageTable::Spellings, LanguageTable::Tags}) {
            for (const QStringList &entry : entries(table))
                codes.insert(entry[0], entry[1]);
        }
        // Without a two-letter code, and named by other tags.
        tags.insert(u"zhc"_s, u"yue"_s);
        tags.insert(u"azb"_s, u"az_IR"_s);
    }

    static QList<QStringList> entries(const char *table)
    {
        QList<QStringList> result;
        for (const QString &entry : QString::fromLatin1(table).split(u' ', Qt::SkipEmptyParts))
            result += entry.split(u':');
        return result;
    }

    void add(const QString &two, const QString &three, const QString &tag)
    {
        codes.insert(two, three);
        codes.insert(three, three);
        twoLetters.insert(three, two);
        tags.insert(three, tag);
    }
};

const Tables &tables()
{
    static const Tables instance;
    return instance;
}

bool isThreeLetters(const QString &text)
{
    return text.size() == 3 &&
           std::all_of(text.begin(), text.end(), [](QChar c) { return c >= u'a' && c <= u'z'; });
}
} // namespace

QString ServiceLanguages::code(const QString &spelling)
{
    QString tag = spelling.trimmed().toLower();
    tag.replace(u'_', u'-');
    const qsizetype encoding = tag.indexOf(u'.');
    if (encoding >= 0)
        tag.truncate(encoding);
    // From the whole tag to its language alone: "pt-br" has a code of its own, "de-at" has not.
    while (!tag.isEmpty()) {
        if (const auto found = tables().codes.constFind(tag); found != tables().codes.cend())
            return *found;
        if (isThreeLetters(tag))
            return tag;
        tag.truncate(std::max<qsizetype>(tag.lastIndexOf(u'-'), 0));
    }
    return {};
}

QString ServiceLanguages::twoLetterCode(const QString &code)
{
    return tables().twoLetters.value(code);
}

QString ServiceLanguages::name(const QString &code, const Locale &locale)
{
    const QStringList tag = tables().tags.value(code, code).split(u'_');
    const std::optional<QString> language = locale.localizedStringForLanguageCode(tag.first());
    if (!language)
        return code;
    const std::optional<QString> region =
        tag.size() > 1 ? locale.localizedStringForRegionCode(tag.last()) : std::nullopt;
    return region ? u"%1 (%2)"_s.arg(*language, *region) : *language;
}
