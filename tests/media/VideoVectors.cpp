#include "VideoVectors.h"

#include <QtEndian>

namespace
{
QByteArray made(qsizetype size, const std::function<char(qsizetype)> &byteAt)
{
    QByteArray bytes(size, '\0');
    for (qsizetype i = 0; i < size; ++i)
        bytes[i] = byteAt(i);
    return bytes;
}

QByteArray littleEndian(quint64 value)
{
    QByteArray bytes(sizeof value, '\0');
    qToLittleEndian(value, bytes.data());
    return bytes;
}

QByteArray pythonBytes(quint32 seed, qsizetype size)
{
    PythonRandom random(seed);
    return made(size, [&](qsizetype) { return random.byte(); });
}

QByteArray congruentialBytes(qsizetype size)
{
    quint32 x = 1;
    return made(size, [&](qsizetype) {
        x = (x * 1103515245U + 12345U) & 0x7fffffffU;
        return static_cast<char>((x >> 16) & 255U);
    });
}

HashVector filled(const char *name, const QByteArray &bytes, const char *hash)
{
    return {name, bytes.size(), {{0, bytes}}, QString::fromLatin1(hash)};
}
} // namespace

const QList<HashVector> &hashVectors()
{
    constexpr qint64 FiveGibibytes = 5368709120;
    const auto modulo = [](int divisor) {
        return [divisor](qsizetype i) { return static_cast<char>(i % divisor); };
    };
    static const QList<HashVector> vectors = {
        {"zeros", 131072, {}, QStringLiteral("0000000000020000")},
        filled("counting bytes", made(200000, modulo(256)), "a0601fdf9f620d40"),
        filled("all ones", QByteArray(131072, '\xff'), "000000000001c000"),
        filled("size not a multiple of 8", QByteArray(200003, '\xff'), "000000000002cd43"),
        filled("unaligned tail", made(131079, modulo(251)), "38efa4651bd271f1"),
        {"5 GiB sparse", FiveGibibytes, {}, QStringLiteral("0000000140000000")},
        {"the middle does not count",
         FiveGibibytes,
         {{0, "PLOVENDIX-HEAD--"}, {65536, "IGNORED-MIDDLE!!"}, {FiveGibibytes - 16, "PLOVENDIX-TAIL--"}},
         QStringLiteral("ece32d16733af350")},
        {"a hash of zero",
         131072,
         {{0, littleEndian(quint64(0) - 131072)}},
         QStringLiteral("0000000000000000")},
        {"zero padding",
         131072,
         {{0, littleEndian(quint64(0xabc) - 131072)}},
         QStringLiteral("0000000000000abc")},
        {"size over 32 bits", 4294967297, {{4294967296, "\x80"}}, QStringLiteral("8000000100000001")},
        filled("congruential bytes", congruentialBytes(1000003), "9676cba35f55bd3e"),
        filled("a byte too small", QByteArray(131071, '\xff'), ""),
        filled("random 42", pythonBytes(42, 1048576), "e7e2e71e035b137f"),
        filled("random 123", pythonBytes(123, 131080), "6e4ae67790577f76"),
    };
    return vectors;
}
