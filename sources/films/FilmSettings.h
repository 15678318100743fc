#pragma once
#include <net/HostRules.h>
#include <net/HttpMessage.h>
#include <QMap>

/// What a person has set for the film database. A plain value.
struct FilmSettings
{
    QUrl base = standardBase();
    QString key; // 32 hexadecimal digits, or a read access token

    static QUrl standardBase();
    HostRules apiHosts() const;
    HostRules imageHosts() const;
    /// A question with the key in it, and the name its answer is kept under, which has none.
    HttpRequest request(const QString &path, const QMap<QString, QString> &items) const;
    QString cacheKey(const QString &path, const QMap<QString, QString> &items) const;
};
