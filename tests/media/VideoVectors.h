#pragma once
#include <QByteArray>
#include <QList>
#include <QString>
#include <array>
#include <functional>

/// The Mersenne Twister as Python's `random` seeds and reads it, written from its published description:
/// makes the two generated vectors of the hash without keeping a megabyte of bytes here.
class PythonRandom final
{
public:
    explicit PythonRandom(quint32 seed)
    {
        initialise(19650218U);
        // Python seeds through an array of the seed's 32-bit digits: here always one.
        std::size_t i = 1;
        for (std::size_t k = Words; k > 0; --k) {
            mix(i, 1664525U, seed);
            i = next(i);
        }
        for (std::size_t k = Words - 1; k > 0; --k) {
            const quint32 previous = m_state[i - 1];
            m_state[i] =
                (m_state[i] ^ ((previous ^ (previous >> 30)) * 1566083941U)) - static_cast<quint32>(i);
            i = next(i);
        }
        m_state[0] = 0x80000000U;
        m_index = Words;
    }

    char byte() { return static_cast<char>(word() >> 24); }

private:
    static constexpr std::size_t Words = 624;

    void initialise(quint32 seed)
    {
        m_state[0] = seed;
        for (std::size_t i = 1; i < Words; ++i) {
            const quint32 previous = m_state[i - 1];
            m_state[i] = 1812433253U * (previous ^ (previous >> 30)) + static_cast<quint32>(i);
        }
    }

    void mix(std::size_t i, quint32 factor, quint32 key)
    {
        const quint32 previous = m_state[i - 1];
        m_state[i] = (m_state[i] ^ ((previous ^ (previous >> 30)) * factor)) + key;
    }

    std::size_t next(std::size_t i)
    {
        if (++i < Words)
            return i;
        m_state[0] = m_state[Words - 1];
        return 1;
    }

    quint32 word()
    {
        if (m_index == Words)
            twist();
        quint32 y = m_state[m_index++];
        y ^= y >> 11;
        y ^= (y << 7) & 0x9d2c5680U;
        y ^= (y << 15) & 0xefc60000U;
        return y ^ (y >> 18);
    }

    void twist()
    {
        for (std::size_t i = 0; i < Words; ++i) {
            const quint32 y = (m_state[i] & 0x80000000U) | (m_state[(i + 1) % Words] & 0x7fffffffU);
            m_state[i] = m_state[(i + 397) % Words] ^ (y >> 1) ^ ((y & 1U) ? 0x9908b0dfU : 0U);
        }
        m_index = 0;
    }

    std::array<quint32, Words> m_state{};
    std::size_t m_index = 0;
};

/// Bytes at an offset of an otherwise empty (sparse) file.
struct Patch
{
    qint64 offset = 0;
    QByteArray bytes;
};

/// A file and the hash it must have; an empty hash stands for none.
struct HashVector
{
    const char *name;
    qint64 size;
    QList<Patch> patches;
    QString hash;
};

/// The published and the synthetic vectors; made once.
const QList<HashVector> &hashVectors();
