#include "Redactor.h"

#include <base/TerminalText.h>

#include <QRegularExpression>
#include <QStringList>
#include <QUrl>

#include <algorithm>
#include <mutex>

using namespace Qt::StringLiterals;

namespace
{
constexpr qsizetype MinSecretLength = 4;
const QString Hidden = u"(hidden)"_s;

std::mutex secretsMutex;
QStringList &secrets()
{
    static QStringList list; // the longest first, since one may be a prefix of another
    return list;
}

/// The secret as it is, and as addresses, forms and JSON encode it.
QStringList spellings(const QString &secret)
{
    const QString encoded = QString::fromLatin1(QUrl::toPercentEncoding(secret));
    QString json = secret;
    json.replace(u'\\', R"(\\)"_L1).replace(u'"', R"(\")"_L1);
    return {secret, encoded, QString(encoded).replace("%20"_L1, "+"_L1), json};
}

QString withoutPatterns(QString text)
{
    // Matches header lines, JSON members and query items that name a secret, and addresses of downloads.
    static const QRegularExpression named(
        uR"re(((?:api[-_]?key|authorization|password|token)["']?\s*[:=]\s*))re"
        uR"re((?:"(?:[^"\\]|\\.)*"|'[^']*'|(?:(?:Bearer|Basic|Digest)\s+)?["']?[^"'&\s,}]+))re"_s,
        QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression userInfo(u"(://[^/\\s:@]*:)[^/\\s@]+(?=@)"_s);
    static const QRegularExpression bearer(u"(Bearer\\s+)[A-Za-z0-9._~+/=-]+"_s,
                                           QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression link(u"(/download/)[^/\\s\"']+"_s);
    text.replace(named, u"\\1"_s + Hidden);
    text.replace(userInfo, u"\\1"_s + Hidden);
    text.replace(bearer, u"\\1"_s + Hidden);
    return text.replace(link, u"\\1"_s + Hidden);
}
} // namespace

void hideSecret(const QString &secret)
{
    if (secret.size() < MinSecretLength)
        return;
    const std::scoped_lock lock(secretsMutex);
    if (secrets().contains(secret))
        return;
    const auto shorter = std::find_if(secrets().begin(), secrets().end(),
                                      [&](const QString &known) { return known.size() < secret.size(); });
    secrets().insert(shorter, secret);
}

QString redacted(const QString &text)
{
    QString clean = text;
    {
        const std::scoped_lock lock(secretsMutex);
        for (const QString &secret : std::as_const(secrets())) {
            for (const QString &spelling : spellings(secret))
                clean.replace(spelling, Hidden);
        }
    }
    return terminalText(withoutPatterns(clean));
}
