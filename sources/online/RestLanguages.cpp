#include "RestLanguages.h"

#include <model/LanguageCodes.h>

#include <QHash>
#include <QStringList>

using namespace Qt::StringLiterals;

namespace
{
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

/// The service has one code for both written forms of Norwegian.
constexpr char Aliases[] = "nob:no nno:no";

QList<QStringList> entries(const char *table)
{
    QList<QStringList> result;
    for (const QString &entry : QString::fromLatin1(table).split(u' ', Qt::SkipEmptyParts))
        result += entry.split(u':');
    return result;
}

struct Tables
{
    QHash<QString, QString> codes;
    QHash<QString, QString> threeLetters;

    Tables()
    {
        for (const QStringList &entry : entries(Codes)) {
            codes.insert(entry[0], entry[1]);
            threeLetters.insert(entry[1], entry[0]);
        }
        for (const QStringList &entry : entries(Aliases))
            codes.insert(entry[0], entry[1]);
    }
};

const Tables &tables()
{
    static const Tables instance;
    return instance;
}
} // namespace

QString RestLanguages::fromThreeLetters(const QString &code)
{
    return tables().codes.value(LanguageCodes::shared().code(code));
}

QString RestLanguages::toThreeLetters(const QString &code)
{
    const QString lower = code.trimmed().toLower();
    const QString known = tables().threeLetters.value(lower);
    return known.isEmpty() ? LanguageCodes::shared().code(lower) : known;
}
