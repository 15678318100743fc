#pragma once
#include <QByteArray>
#include <QStringList>
#include <QUrl>
#include <optional>

/// Where pictures are and in which sizes, as the film database's configuration says. A plain value.
struct FilmImages
{
    QUrl base = QUrl(QStringLiteral("https://image.tmdb.org/t/p/"));
    QStringList posterSizes = {QStringLiteral("w92"),     QStringLiteral("w154"), QStringLiteral("w185"),
                               QStringLiteral("w342"),    QStringLiteral("w500"), QStringLiteral("w780"),
                               QStringLiteral("original")};

    /// Nothing for what is no configuration.
    static std::optional<FilmImages> read(const QByteArray &json);
    /// The smallest size that is at least so many pixels wide; the largest known where none is.
    QString posterSize(int pixels) const;
    /// `path` begins with a slash.
    QUrl address(const QString &size, const QString &path) const;
};

/// Whether a picture came to its end, which decoders do not insist on. Any thread.
bool isWholePicture(const QByteArray &bytes);
