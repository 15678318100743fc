#pragma once
#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <chrono>
#include <optional>

/// Answers kept on disk by a key without secrets. Nothing in it is trusted more than a server: a damaged file
/// is a miss. Holds no state but its folder; any thread.
class DiskCache final
{
public:
    struct Entry
    {
        QByteArray body;
        QByteArray etag;
        QDateTime stored;
        QDateTime expires;

        /// A date before it was stored, too, makes it stale: the clock was set back.
        bool isFresh(const QDateTime &date) const { return stored <= date && date < expires; }
    };

    /// Entries older than `maxAge` are gone whatever they say themselves.
    DiskCache(const QString &folder, std::chrono::hours maxAge);

    std::optional<Entry> find(const QString &key, const QDateTime &date) const;
    /// Whether it is kept now. Failing to store is only a miss later, and is logged.
    bool store(const QString &key, const Entry &entry) const;
    void remove(const QString &key) const;
    /// Removes everything that is too old, then the oldest of what is more than `maxBytes` in all.
    void prune(const QDateTime &date, qint64 maxBytes) const;
    void clear() const;

private:
    QString pathOf(const QString &key) const;

    QString m_folder;
    std::chrono::hours m_maxAge;
};
