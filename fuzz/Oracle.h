#pragma once
#include <cstdint>
#include <ctime>
#include <string_view>
#include <QByteArray>

/// What every fuzz target uses to judge an input.

/// Stops the run with `rule` when it does not hold; the fuzzer then keeps the input.
void require(bool holds, std::string_view rule);

/// The input of one execution; shares the fuzzer's bytes.
inline QByteArray bytesOf(const uint8_t *data, size_t size)
{
    return QByteArray::fromRawData(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
}

/// Limits the CPU time of a scope on this thread, in milliseconds. Sanitizers make code some ten times
/// slower, so limits are generous: they find time that grows faster than the input, not a slow machine.
class TimeLimit final
{
public:
    explicit TimeLimit(double milliseconds) : m_limit(milliseconds), m_begun(now()) {}
    ~TimeLimit() { require(now() - m_begun <= m_limit, "the input takes more time than its size allows"); }
    TimeLimit(const TimeLimit &) = delete;
    TimeLimit &operator=(const TimeLimit &) = delete;

private:
    static double now()
    {
        timespec time{};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
    }

    double m_limit;
    double m_begun;
};
