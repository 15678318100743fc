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

/// A URL in its parts, to take one apart or build one (RFC 3986). A "+" in a query stays a plus. Plain value,
/// any thread.
struct URLComponents
{
    QString scheme;
    QString host;
    QString path;
    QList<URLQueryItem> queryItems;

    /// The parts of a URL; none when it is invalid.
    static std::optional<URLComponents> fromURL(const QUrl &url);
    /// The URL of these parts, its values percent-encoded; none for an invalid scheme or host. An empty
    /// scheme gives a reference without one ("//host?…").
    std::optional<QUrl> url() const;
    /// The value of the first item of that exact name; nothing when there is no such item or it has no value.
    std::optional<QString> firstValue(const QString &name) const;
};

/// Parses a text strictly and unchanged; none when it is not a URL.
std::optional<QUrl> parseURLString(const QString &text);
