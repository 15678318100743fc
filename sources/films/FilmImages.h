#pragma once
#include <QByteArray>
#include <QStringList>
#include <QUrl>
#include <optional>

/// The address and sizes of pictures, from the film database's configuration. A plain value.
struct FilmImages
{
    QUrl base = QUrl(QStringLiteral("https://image.tmdb.org/t/p/"));
    QStringList posterSizes = {QStringLiteral("w92"),     QStringLiteral("w154"), QStringLiteral("w185"),
                               QStringLiteral("w342"),    QStringLiteral("w500"), QStringLiteral("w780"),
                               QStringLiteral("original")};

    /// None when it is not a configuration.
    static std::optional<FilmImages> read(const QByteArray &json);
    /// The smallest size of at least that many pixels in width; otherwise the largest known.
    QString posterSize(int pixels) const;
    /// `path` begins with a slash.
    QUrl address(const QString &size, const QString &path) const;
};

/// Whether the end of a picture is present, which decoders do not check. Any thread.
bool isWholePicture(const QByteArray &bytes);
