#pragma once
#include <QList>
#include <QString>
#include <QUrl>
#include <optional>

/// One "name=value" of a query. Without "=" there is no value, which differs from an empty one.
struct URLQueryItem
{
    QString name;
    std::optional<QString> value;

    bool operator==(const URLQueryItem &) const = default;
};

/// A URL in its parts, for taking one apart and for building one (RFC 3986). In a query "+" is a plus.
/// Plain value, any thread.
struct URLComponents
{
    QString scheme;
    QString host;
    QString path;
    QList<URLQueryItem> queryItems;

    /// The parts of a URL; nothing when it is not valid.
    static std::optional<URLComponents> fromURL(const QUrl &url);
    /// The URL of these parts, its values percent-encoded so that they survive; nothing for a scheme or host
    /// that no URL can have. An empty scheme gives a reference without one ("//host?…").
    std::optional<QUrl> url() const;
    /// The value of the first item of that exact name; nothing when there is no such item or it has no value.
    std::optional<QString> firstValue(const QString &name) const;
};

/// The URL that a text spells, strictly parsed and unchanged; nothing when it spells none.
std::optional<QUrl> parseURLString(const QString &text);
