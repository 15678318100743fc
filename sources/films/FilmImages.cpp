#include "FilmImages.h"

#include <net/Json.h>

#include <QJsonArray>
#include <QRegularExpression>

#include <limits>

using namespace Qt::StringLiterals;

namespace
{
/// The 154 of "w154"; none for "original" and sizes by height.
std::optional<int> widthOf(const QString &size)
{
    static const QRegularExpression width(u"\\Aw(\\d{1,5})\\z"_s);
    const QRegularExpressionMatch match = width.match(size);
    return match.hasMatch() ? std::optional(match.captured(1).toInt()) : std::nullopt;
}
} // namespace

std::optional<FilmImages> FilmImages::read(const QByteArray &json)
{
    const std::optional<QJsonObject> answer = Json::object(json);
    const QJsonObject images = answer ? (*answer)[u"images"_s].toObject() : QJsonObject();
    const QUrl base(Json::text(images, u"secure_base_url"_s), QUrl::StrictMode);
    if (!base.isValid() || base.host().isEmpty())
        return std::nullopt;
    FilmImages result;
    result.base = base;
    QStringList sizes;
    const QJsonArray named = images[u"poster_sizes"_s].toArray();
    for (const QJsonValue size : named) {
        if (widthOf(size.toString()))
            sizes += size.toString();
    }
    if (!sizes.isEmpty())
        result.posterSizes = sizes;
    return result;
}

QString FilmImages::posterSize(int pixels) const
{
    QString best;
    QString largest;
    int bestWidth = std::numeric_limits<int>::max();
    int largestWidth = 0;
    for (const QString &size : posterSizes) {
        const int width = widthOf(size).value_or(0);
        if (width >= pixels && width < bestWidth) {
            best = size;
            bestWidth = width;
        }
        if (width > largestWidth) {
            largest = size;
            largestWidth = width;
        }
    }
    return best.isEmpty() ? largest : best;
}

QUrl FilmImages::address(const QString &size, const QString &path) const
{
    QUrl url = base.adjusted(QUrl::StripTrailingSlash);
    url.setPath(url.path() + u'/' + size + path);
    return url;
}

bool isWholePicture(const QByteArray &bytes)
{
    constexpr qsizetype Tail = 64; // some encoders append a few bytes
    if (bytes.startsWith("\xFF\xD8"))
        return bytes.right(Tail).contains("\xFF\xD9");
    if (bytes.startsWith("\x89PNG"))
        return bytes.right(Tail).contains("IEND");
    return !bytes.isEmpty();
}
