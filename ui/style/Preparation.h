#pragma once
#include <thread>

/// Loads the font configuration and the language names, which the first window needs, on a thread while the
/// toolkit connects to the display. Only the start-up time depends on it.
class Preparation final
{
public:
    Preparation();
    ~Preparation();
    Preparation(const Preparation &) = delete;
    Preparation &operator=(const Preparation &) = delete;

    /// Waits for the end of the thread. Call before the first text is measured, or both threads would load
    /// the same data.
    void finish();

private:
    std::thread m_thread;
};
