#include "RestLanguages.h"

#include <model/LanguageCodes.h>
#include <net/Json.h>

#include <QHash>
#include <QJsonArray>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace
{
constexpr qsizetype FewestLanguages = 20;
constexpr qsizetype MostLanguages = 1000;

/// Every code that the service accepts, with the three letters of its family.
constexpr char Codes[] =
    "abk:ab afr:af alb:sq amh:am ara:ar arg:an arm:hy asm:as ast:at azb:az-zb aze:az-az baq:eu bel:be "
    "ben:bn bos:bs bre:br bul:bg bur:my cat:ca chi:zh-cn cze:cs dan:da dut:nl ell:el eng:en epo:eo "
    "est:et ext:ex fin:fi fre:fr geo:ka ger:de gla:gd gle:ga glg:gl heb:he hin:hi hrv:hr hun:hu ibo:ig "
    "ice:is ina:ia ind:id ita:it jpn:ja kan:kn kaz:kk khm:km kor:ko kur:ku lav:lv lit:lt ltz:lb mac:mk "
    "mal:ml mar:mr may:ms mne:me mni:ma mon:mn nav:nv nep:ne nor:no oci:oc ori:or per:fa pob:pt-br "
    "pol:pl pom:pm por:pt-pt prs:pr pus:ps rum:ro rus:ru sat:sx scc:sr sin:si slo:sk slv:sl sme:se "
    "snd:sd som:so spa:es spl:ea spn:sp swa:sw swe:sv syr:sy tam:ta tat:tt tel:te tet:tm-td tgl:tl "
    "tha:th tok:tp tuk:tk tur:tr ukr:uk urd:ur uzb:uz vie:vi wel:cy zhc:zh-ca zhe:ze zht:zh-tw ";

struct Tables
{
    QHash<QString, QString> codes;        // by three letters
    QHash<QString, QString> threeLetters; // by code

    Tables()
    {
        for (const QString &entry : QString::fromLatin1(Codes).split(u' ', Qt::SkipEmptyParts)) {
            codes.insert(entry.section(u':', 0, 0), entry.section(u':', 1));
            threeLetters.insert(entry.section(u':', 1), entry.section(u':', 0, 0));
        }
        // The service has one code for both written forms of Norwegian.
        codes.insert(u"nob"_s, u"no"_s);
        codes.insert(u"nno"_s, u"no"_s);
    }
};

const Tables &tables()
{
    static const Tables instance;
    return instance;
}
} // namespace

std::optional<RestLanguages> RestLanguages::read(const QByteArray &body)
{
    const std::optional<QJsonObject> answer = Json::object(body);
    if (!answer)
        return std::nullopt;
    const QJsonArray languages = (*answer)[u"data"_s].toArray();
    if (languages.size() > MostLanguages)
        return std::nullopt;
    static const QRegularExpression codeShape(u"\\A[a-z]{2,3}(-[a-z]{2,4})?\\z"_s);
    RestLanguages list;
    for (const QJsonValue language : languages) {
        const QString code = Json::text(language.toObject(), u"language_code"_s).trimmed().toLower();
        if (codeShape.match(code).hasMatch())
            list.m_codes += code;
    }
    return list.m_codes.size() >= FewestLanguages ? std::optional(list) : std::nullopt;
}

QString RestLanguages::codeFor(const QString &threeLetters) const
{
    const QString wanted = LanguageCodes::shared().code(threeLetters);
    const QString known = tables().codes.value(wanted);
    if (m_codes.isEmpty() || m_codes.contains(known))
        return known;
    if (wanted.isEmpty())
        return {};
    QStringList fitting;
    for (const QString &code : m_codes) {
        if (toThreeLetters(code) == wanted)
            fitting += code;
    }
    fitting.sort();
    return fitting.value(0);
}

QString RestLanguages::toThreeLetters(const QString &code)
{
    const QString lower = code.trimmed().toLower();
    const QString known = tables().threeLetters.value(lower);
    return known.isEmpty() ? LanguageCodes::shared().code(lower) : known;
}
