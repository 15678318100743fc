#pragma once
#include <base/Result.h>
#include <QByteArray>
#include <QList>
#include <QString>

/// One version in a feed, as it stands there: nothing of it is to be believed before its signature was
/// checked.
struct AppcastItem
{
    QString version;
    QString link;
    QString notes;        // plain text or markup
    QByteArray signature; // empty where there is none
};

/// A whole feed as it stands there: the same holds.
struct AppcastFeed
{
    QList<AppcastItem> items;
    QString date; // ISO 8601
    QByteArray signature;
};

/// The feed of versions: RSS whose items carry `version` and `signature` in a namespace of our own beside the
/// usual `link` and `description`, and whose channel carries `date` and `signature`. Plain functions, any
/// thread.
namespace Appcast
{
inline constexpr qsizetype MaxBytes = 1024LL * 1024;
inline const QString Namespace = QStringLiteral("https://www.quorvane.example/xml/updates/1");

/// The items are in the feed's order; those without a version are left out. A document with a type
/// declaration is refused before any entity is looked at.
Result<AppcastFeed> parse(const QByteArray &feed);
} // namespace Appcast
