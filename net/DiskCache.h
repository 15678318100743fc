#pragma once
#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <chrono>
#include <optional>

/// Keeps answers on disk under a key without secrets. The files are not trusted: a damaged one is a cache
/// miss. Holds no state but its folder; any thread.
class DiskCache final
{
public:
    struct Entry
    {
        QByteArray body;
        QByteArray etag;
        QDateTime stored;
        QDateTime expires;

        /// A date before `stored` makes the entry stale, because the clock was set back.
        bool isFresh(const QDateTime &date) const { return stored <= date && date < expires; }
    };

    /// Entries older than `maxAge` expire, whatever their own date says.
    DiskCache(const QString &folder, std::chrono::hours maxAge);

    std::optional<Entry> find(const QString &key, const QDateTime &date) const;
    /// Returns whether the entry was stored. A failure is logged and only causes a later miss.
    bool store(const QString &key, const Entry &entry) const;
    void remove(const QString &key) const;
    /// Removes expired entries, then the oldest ones until the rest fits into `maxBytes`.
    void prune(const QDateTime &date, qint64 maxBytes) const;
    void clear() const;

private:
    QString pathOf(const QString &key) const;

    QString m_folder;
    std::chrono::hours m_maxAge;
};
