#include "ServiceLanguages.h"

#include "LanguageCodeConversion.h"

#include <QHash>
#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
/// Spellings that are not in the property list, each with its three-letter code: the other forms of ISO
/// 639-2, and tags whose region has a separate code. Withdrawn two-letter codes stand here because
/// none of them is the two-letter code of its language; "sh" is not a code of one language.
constexpr char Spellings[] =
    "gre:ell srp:scc deu:ger fra:fre nld:dut ces:cze ron:rum slk:slo sqi:alb hye:arm eus:baq mya:bur zho:chi "
    "kat:geo isl:ice mkd:mac mri:mao msa:may fas:per bod:tib cym:wel cnr:mne mol:rum scr:hrv yue:zhc "
    "iw:heb in:ind ji:yid mo:rum sh: "
    "pt-br:pob pt-pt:por pt-mz:pom zh-cn:chi zh-tw:zht zh-hans:chi zh-hant:zht es-419:spl es-mx:spl "
    "es-es:spa az-az:aze az-zb:azb zh-ca:zhc tm-td:tet";

/// Codes whose two letters are not those of ISO 639-1, with the language tag that names them.
constexpr char Tags[] =
    "pb:pt_BR pob:pt_BR pom:pt_MZ mne:cnr ast:ast mni:mni syr:syr zhe:zh zht:zh_TW ext:ext spl:es_419 "
    "spn:es_ES prs:fa_AF sat:sat tok:tok zhc:yue azb:az_IR";

using Table = QHash<QString, QString>;

Table tableOf(const char *pairs)
{
    Table table;
    for (const QString &pair : QString::fromLatin1(pairs).split(u' ')) {
        const QStringList parts = pair.split(u':');
        table.insert(parts[0], parts[1]);
    }
    return table;
}

struct Tables
{
    Table codes = tableOf(Spellings); // two letters, or another spelling → three letters
    Table twoLetters;                 // three letters → two
    Table tags = tableOf(Tags);       // code → the tag that names the language

    Tables()
    {
        const auto shipped = languageCodeTable();
        for (auto entry = shipped->cbegin(); entry != shipped->cend(); ++entry) {
            if (entry.key().size() != 2 || codes.contains(entry.key()))
                continue;
            codes.insert(entry.key(), *entry);
            twoLetters.insert(*entry, entry.key());
        }
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
    // From the whole tag to its language alone: "pt-br" has a separate code, "de-at" has not.
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
    const QString plain = tables().twoLetters.value(code, code);
    const QStringList tag = tables().tags.value(code, plain).split(u'_');
    const std::optional<QString> language = locale.localizedStringForLanguageCode(tag.first());
    if (!language)
        return code;
    const std::optional<QString> region =
        tag.size() > 1 ? locale.localizedStringForRegionCode(tag.last()) : std::nullopt;
    return region ? u"%1 (%2)"_s.arg(*language, *region) : *language;
}
