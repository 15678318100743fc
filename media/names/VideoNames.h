#pragma once
#include <media/MovieHash.h>

#include <model/Query.h>
#include <deque>
#include <mutex>

/// Remembers the names of the videos hashed lately, so that a query, which carries only size and hash, can
/// still be ranked by how well a release agrees with the video's own name. Any thread.
class VideoNames final
{
public:
    /// How long the window may stand still for a video on a slow disk.
    static constexpr std::chrono::seconds HashTimeout{2};

    /// The hash of a video, whose name is remembered; nothing when there is none in time.
    std::optional<VideoHash> hash(const QUrl &url, std::chrono::milliseconds timeout = HashTimeout,
                                  const VideoOpener &open = openRegularFile);
    void remember(const VideoHash &video, const QString &name);
    /// The last name remembered for this content; empty when there is none.
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
