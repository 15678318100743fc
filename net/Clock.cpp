#include "Clock.h"

Clock::~Clock() = default;

Clock::Timer &Clock::Timer::operator=(Timer &&other) noexcept
{
    if (this != &other) {
        cancel();
        m_cancel = std::exchange(other.m_cancel, nullptr);
    }
    return *this;
}

void Clock::Timer::cancel()
{
    if (m_cancel)
        std::exchange(m_cancel, nullptr)();
}
