#pragma once
#include <base/Result.h>
#include <QByteArray>
#include <QList>
#include <QString>

/// One version in a feed. Nothing of it may be trusted before its signature was checked.
struct AppcastItem
{
    QString version;
    QString link;
    QString notes;        // plain text or markup
    QByteArray signature; // empty without one
};

/// A whole feed, equally untrusted.
struct AppcastFeed
{
    QList<AppcastItem> items;
    QString date; // ISO 8601
    QByteArray signature;
};

/// The feed of versions: RSS with `version` and `signature` in a namespace of our own in each item, beside
/// the usual `link` and `description`, and with `date` and `signature` in the channel. Plain functions, any
/// thread.
namespace Appcast
{
inline constexpr qsizetype MaxBytes = 1024LL * 1024;
inline const QString Namespace = QStringLiteral("https://www.quorvane.example/xml/updates/1");

/// Parses the items in the feed's order; those without a version are dropped. A document with a type
/// declaration is refused before any entity is expanded.
Result<AppcastFeed> parse(const QByteArray &feed);

/// Why a check failed: a sentence for the person and, without secrets, a detail for the log.
base::Error error(const QString &sentence, const QString &detail);
/// The answer is not a list of versions.
base::Error noFeed(const QString &detail);
/// The answer is a page or leads elsewhere, as in a network that requires a login.
base::Error webPage(const QString &detail);
} // namespace Appcast
