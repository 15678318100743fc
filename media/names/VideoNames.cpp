#include "VideoNames.h"

#include <base/FileManager.h>

#include <algorithm>

namespace
{
constexpr std::size_t MaxEntries = 256;
}

std::optional<VideoHash> VideoNames::hash(const QUrl &url, std::chrono::milliseconds timeout,
                                          const VideoOpener &open)
{
    const std::optional<VideoHash> hash = movieHashWithin(timeout, url, open);
    if (hash)
        remember(*hash, FileManager::displayName(url));
    return hash;
}

void VideoNames::remember(const VideoHash &video, const QString &name)
{
    const std::scoped_lock lock(m_mutex);
    std::erase_if(m_entries, [&](const Entry &entry) { return entry.video == video; });
    m_entries.push_front({video, name});
    if (m_entries.size() > MaxEntries)
        m_entries.pop_back();
}

QString VideoNames::nameOf(const VideoHash &video) const
{
    const std::scoped_lock lock(m_mutex);
    const auto found = std::find_if(m_entries.begin(), m_entries.end(),
                                    [&](const Entry &entry) { return entry.video == video; });
    return found == m_entries.end() ? QString() : found->name;
}
