#pragma once
#include <net/HostRules.h>
#include <net/HttpMessage.h>
#include <QMap>

/// The settings of the film database. A plain value.
struct FilmSettings
{
    QUrl base = standardBase();
    QString key; // 32 hexadecimal digits, or a read access token

    static QUrl standardBase();
    HostRules apiHosts() const;
    HostRules imageHosts() const;
    /// A request with the key, and the cache key of its answer, which does not contain the key.
    HttpRequest request(const QString &path, const QMap<QString, QString> &items) const;
    QString cacheKey(const QString &path, const QMap<QString, QString> &items) const;
};

/// The film database's language tag ("pt-BR") for a stored two-letter code ("pb"); "en-US" for none and for a
/// language without a tag. Any thread.
QString filmLanguage(const QString &twoLetterCode);
