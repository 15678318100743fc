#include "MovieHash.h"

#include <base/FileManager.h>

#include <QtEndian>

#include <array>
#include <future>
#include <system_error>
#include <thread>

namespace
{
constexpr std::size_t WindowBytes = 65536;
constexpr quint64 MinimumBytes = 2 * WindowBytes; // below this the windows would overlap

using Window = std::array<char, WindowBytes>;

quint64 sumOfWords(const Window &window)
{
    quint64 sum = 0;
    for (std::size_t offset = 0; offset < WindowBytes; offset += sizeof(quint64))
        sum += qFromLittleEndian<quint64>(window.data() + offset);
    return sum;
}

std::optional<quint64> sumAt(VideoContent &content, quint64 offset, Window &window)
{
    if (!content.readExactly(offset, window))
        return std::nullopt;
    return sumOfWords(window);
}
} // namespace

std::optional<VideoHash> movieHash(VideoContent &content)
{
    const std::optional<quint64> size = content.size();
    if (!size || *size < MinimumBytes)
        return std::nullopt;
    // One buffer for both reads, not initialised, because clearing it takes as long as half a read.
    Window window; // NOLINT(cppcoreguidelines-pro-type-member-init): filled by a read or not looked at
    const std::optional<quint64> head = sumAt(content, 0, window);
    const std::optional<quint64> tail = head ? sumAt(content, *size - WindowBytes, window) : std::nullopt;
    if (!tail || content.size() != size)
        return std::nullopt;
    return VideoHash{QStringLiteral("%1").arg(*size + *head + *tail, 16, 16, QLatin1Char('0')), *size};
}

std::optional<VideoHash> movieHash(const QUrl &url)
{
    const QByteArray path = FileManager::fileSystemPath(url);
    if (path.isEmpty())
        return std::nullopt;
    const std::unique_ptr<VideoContent> file = openRegularFile(path);
    return file ? movieHash(*file) : std::nullopt;
}

std::optional<VideoHash> movieHashWithin(std::chrono::milliseconds timeout, const QUrl &url,
                                         const VideoOpener &open)
{
    const QByteArray path = FileManager::fileSystemPath(url);
    if (path.isEmpty())
        return std::nullopt;
    std::packaged_task<std::optional<VideoHash>()> task([path, open] {
        const std::unique_ptr<VideoContent> file = open(path);
        return file ? movieHash(*file) : std::nullopt;
    });
    std::future<std::optional<VideoHash>> answer = task.get_future();
    // Detached, because joining would wait for the disk. The task owns all that the thread uses.
    try {
        std::thread(std::move(task)).detach();
    } catch (const std::system_error &) {
        return std::nullopt; // no thread could be started
    }
    return answer.wait_for(timeout) == std::future_status::ready ? answer.get() : std::nullopt;
}
