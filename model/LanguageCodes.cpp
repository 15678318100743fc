#include "LanguageCodes.h"

#include <base/Bundle.h>
#include <base/Locale.h>
#include <base/PropertyList.h>
#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
using Table = QHash<QString, QString>;

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

Table tableOf(const char *pairs)
{
    Table table;
    for (const QString &pair : QString::fromLatin1(pairs).split(u' '))
        table.insert(pair.section(u':', 0, 0), pair.section(u':', 1));
    return table;
}

/// One entry that is not a text makes the whole table invalid.
Table tableOf(const Bundle &bundle)
{
    const auto path = bundle.pathForResource(u"iso639_1_to_iso639_2"_s, u"plist"_s);
    if (!path)
        return {};
    const Result<QVariantMap> read = readPropertyList(*path);
    const QVariantMap entries = read ? *read : QVariantMap();
    Table table;
    for (auto entry = entries.begin(); entry != entries.end(); ++entry) {
        if (entry->metaType() != QMetaType::fromType<QString>())
            return {};
        table.insert(entry.key(), entry->toString());
    }
    return table;
}

bool isThreeLetters(const QString &text)
{
    return text.size() == 3 &&
           std::all_of(text.begin(), text.end(), [](QChar c) { return c >= u'a' && c <= u'z'; });
}
} // namespace

LanguageCodes::LanguageCodes(const Bundle &bundle) : m_table(tableOf(bundle)), m_spellings(tableOf(Spellings))
{
    for (auto entry = m_table.cbegin(); entry != m_table.cend(); ++entry) {
        if (entry.key().size() != 2 || m_spellings.contains(entry.key()))
            continue;
        m_spellings.insert(entry.key(), *entry);
        m_twoLetters.insert(*entry, entry.key());
    }
}

const LanguageCodes &LanguageCodes::shared()
{
    static const LanguageCodes codes(Bundle::main());
    return codes;
}

QString LanguageCodes::iso639_2LanguageCode(const QString &iso639_1LanguageCode) const
{
    return m_table.value(iso639_1LanguageCode, u"eng"_s);
}

std::optional<QString> LanguageCodes::iso639_2LanguageCode(const Locale &locale) const
{
    const auto found = m_table.constFind(locale.languageCode().value_or(QString()));
    return found == m_table.cend() ? std::nullopt : std::optional(*found);
}

QString LanguageCodes::code(const QString &spelling) const
{
    QString tag = spelling.trimmed().toLower().section(u'.', 0, 0).replace(u'_', u'-');
    // From the whole tag to its language alone: "pt-br" has a separate code, "de-at" has not.
    while (!tag.isEmpty()) {
        if (const auto found = m_spellings.constFind(tag); found != m_spellings.cend())
            return *found;
        if (isThreeLetters(tag))
            return tag;
        tag.truncate(std::max<qsizetype>(tag.lastIndexOf(u'-'), 0));
    }
    return {};
}

QString LanguageCodes::name(const QString &code, const Locale &locale) const
{
    static const Table tags = tableOf(Tags);
    const QStringList tag = tags.value(code, m_twoLetters.value(code, code)).split(u'_');
    const std::optional<QString> language = locale.localizedStringForLanguageCode(tag.first());
    if (!language)
        return code;
    const std::optional<QString> region =
        tag.size() > 1 ? locale.localizedStringForRegionCode(tag.last()) : std::nullopt;
    return region ? u"%1 (%2)"_s.arg(*language, *region) : *language;
}
