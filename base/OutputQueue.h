#pragma once
#include <QByteArray>
#include <condition_variable>
#include <mutex>

/// Writes to a descriptor whose reader may be slow or gone, without ever waiting for it: what does not go at
/// once is written by a thread of the queue's, in order. Any thread.
///
/// Lives as long as the process, because that thread may be inside a write when the process ends.
class OutputQueue final
{
public:
    /// What may wait for the reader. A text that would exceed it is left out whole.
    static constexpr qsizetype MaxWaitingBytes = 4LL * 1024 * 1024;

    explicit OutputQueue(int descriptor);

    void write(const QByteArray &text);
    /// Waits while the reader takes what is queued, and gives up when it takes nothing for a moment.
    void drain();
    /// What the reader has not taken yet.
    qsizetype waitingBytes();

private:
    void writeQueued();

    const int m_descriptor;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    QByteArray m_waiting; // guarded by the mutex, as is the next
    bool m_hasThread = false;
};
