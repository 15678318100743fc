#include "RestLanguageList.h"

#include "RestLanguages.h"

#include <model/LanguageCodes.h>
#include <net/Json.h>

#include <QJsonArray>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace
{
constexpr qsizetype FewestLanguages = 20;
constexpr qsizetype MostLanguages = 1000;

bool looksLikeCode(const QString &text)
{
    static const QRegularExpression code(u"\\A[a-z]{2,3}(-[a-z]{2,4})?\\z"_s);
    return code.match(text).hasMatch();
}
} // namespace

std::optional<RestLanguageList> RestLanguageList::read(const QByteArray &body)
{
    const std::optional<QJsonObject> answer = Json::object(body);
    if (!answer)
        return std::nullopt;
    const QJsonArray languages = (*answer)[u"data"_s].toArray();
    if (languages.size() > MostLanguages)
        return std::nullopt;
    RestLanguageList list;
    for (const QJsonValue language : languages) {
        const QString code = Json::text(language.toObject(), u"language_code"_s).trimmed().toLower();
        if (looksLikeCode(code))
            list.m_codes += code;
    }
    return list.m_codes.size() >= FewestLanguages ? std::optional(list) : std::nullopt;
}

QString RestLanguageList::codeFor(const QString &threeLetters) const
{
    const QString known = RestLanguages::fromThreeLetters(threeLetters);
    if (m_codes.isEmpty() || m_codes.contains(known))
        return known;
    const QString wanted = LanguageCodes::shared().code(threeLetters);
    if (wanted.isEmpty())
        return {};
    QStringList fitting;
    for (const QString &code : m_codes) {
        if (RestLanguages::toThreeLetters(code) == wanted)
            fitting += code;
    }
    fitting.sort();
    return fitting.value(0);
}
