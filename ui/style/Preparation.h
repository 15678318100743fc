#pragma once
#include <thread>

/// Reads what the first window needs and the toolkit would ask for only then: the configuration of fonts and
/// the names of languages. Does so on a thread of its own, while the toolkit connects to the display and
/// mostly waits. Nothing depends on it but time.
class Preparation final
{
public:
    Preparation();
    ~Preparation();
    Preparation(const Preparation &) = delete;
    Preparation &operator=(const Preparation &) = delete;

    /// Waits for its end. Before the first text is measured: both would read everything otherwise.
    void finish();

private:
    std::thread m_thread;
};
