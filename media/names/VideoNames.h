#pragma once
#include <media/MovieHash.h>

#include <model/Query.h>
#include <deque>
#include <mutex>

/// Remembers the names of recently hashed videos: a query holds only size and hash, and this lets its results
/// be ranked by the video's name. Any thread.
class VideoNames final
{
public:
    /// The longest time that hashing may block the window on a slow disk.
    static constexpr std::chrono::seconds HashTimeout{2};

    /// The hash of a video, whose name is stored; none when it is not computed in time.
    std::optional<VideoHash> hash(const QUrl &url, std::chrono::milliseconds timeout = HashTimeout,
                                  const VideoOpener &open = openRegularFile);
    void remember(const VideoHash &video, const QString &name);
    /// The last name stored for this content; empty when there is none.
    QString nameOf(const VideoHash &video) const;

private:
    struct Entry
    {
        VideoHash video;
        QString name;
    };

    mutable std::mutex m_mutex;  // guards the entries
    std::deque<Entry> m_entries; // the latest first
};
