#pragma once
#include <QByteArray>
#include <condition_variable>
#include <mutex>

/// Writes to a descriptor without waiting for a slow or absent reader: a thread of the queue writes the rest,
/// in order. Any thread.
///
/// Lives as long as the process, because that thread may be blocked in a write when the process ends.
class OutputQueue final
{
public:
    /// The limit of queued bytes. A text that would exceed it is dropped as a whole.
    static constexpr qsizetype MaxWaitingBytes = 4LL * 1024 * 1024;

    explicit OutputQueue(int descriptor);

    void write(const QByteArray &text);
    /// Waits while the reader makes progress, and gives up when it takes no bytes within a moment.
    void drain();
    /// What the reader has not taken yet.
    qsizetype waitingBytes();

private:
    void writeQueued();

    const int m_descriptor;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    QByteArray m_waiting; // guarded by the mutex, like the next member
    bool m_hasThread = false;
};
