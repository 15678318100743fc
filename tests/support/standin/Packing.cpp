#include "Packing.h"

#include <QtEndian>

namespace
{
quint32 crc32(const QByteArray &content)
{
    constexpr quint32 Polynomial = 0xEDB88320;
    static const auto table = [] {
        std::array<quint32, 256> entries{};
        for (quint32 i = 0; i < entries.size(); ++i) {
            quint32 value = i;
            for (int bit = 0; bit < 8; ++bit)
                value = (value & 1) != 0 ? Polynomial ^ (value >> 1) : value >> 1;
            entries[i] = value;
        }
        return entries;
    }();
    quint32 sum = ~0U;
    for (const char c : content)
        sum = table[(sum ^ static_cast<quint8>(c)) & 0xFF] ^ (sum >> 8);
    return ~sum;
}

template <class Number>
QByteArray little(Number number)
{
    QByteArray bytes(sizeof(Number), '\0');
    qToLittleEndian(number, bytes.data());
    return bytes;
}
constexpr qsizetype LocalHeader = 30;
constexpr qsizetype LocalFlags = 6;
constexpr qsizetype CentralFlags = 8;
constexpr qsizetype Method = 2; // after the flags

/// Changes a byte of the first entry's headers, which both say the same.
void changeFirst(QByteArray &zip, qsizetype afterFlags, char value)
{
    zip[LocalFlags + afterFlags] = value;
    zip[zip.indexOf("PK\x01\x02") + CentralFlags + afterFlags] = value;
}
} // namespace

QByteArray gzipped(const QByteArray &content)
{
    // qCompress gives a length, a zlib header of two bytes, the deflated content and a sum of four.
    const QByteArray packed = qCompress(content, 9);
    const QByteArray deflated = packed.mid(6, packed.size() - 10);
    return QByteArray::fromHex("1f8b0800000000000003") + deflated + little(crc32(content)) +
           little(static_cast<quint32>(content.size()));
}

QByteArray zipped(const QList<std::pair<QByteArray, QByteArray>> &entries)
{
    QByteArray local;
    QByteArray central;
    for (const auto &[name, content] : entries) {
        const auto size = static_cast<quint32>(content.size());
        const QByteArray common = little<quint16>(20) + little<quint16>(0x0800) + little<quint16>(0) +
                                  little<quint32>(0x00210000) + little(crc32(content)) + little(size) +
                                  little(size) + little(static_cast<quint16>(name.size())) +
                                  little<quint16>(0);
        central += QByteArray("PK\x01\x02", 4) + little<quint16>(20) + common + little<quint16>(0) +
                   little<quint16>(0) + little<quint16>(0) + little<quint32>(0) +
                   little(static_cast<quint32>(local.size())) + name;
        local += QByteArray("PK\x03\x04", 4) + common + name + content;
    }
    const auto count = little(static_cast<quint16>(entries.size()));
    return local + central + QByteArray("PK\x05\x06", 4) + little<quint32>(0) + count + count +
           little(static_cast<quint32>(central.size())) + little(static_cast<quint32>(local.size())) +
           little<quint16>(0);
}

QByteArray withWrongSum(QByteArray zip)
{
    const qsizetype name = static_cast<quint8>(zip[26]);
    zip[LocalHeader + name + 5] = static_cast<char>(zip[LocalHeader + name + 5] ^ 1);
    return zip;
}

QByteArray withoutDeflation(QByteArray zip)
{
    constexpr char Deflated = 8;
    changeFirst(zip, Method, Deflated);
    const qsizetype name = static_cast<quint8>(zip[26]);
    zip[LocalHeader + name] = '\xFF';
    return zip;
}

QByteArray locked(QByteArray zip)
{
    constexpr char Encrypted = 1;
    changeFirst(zip, 0, Encrypted);
    return zip;
}

QByteArray zipped(const QByteArray &name, const QByteArray &content)
{
    return zipped({{name, content}});
}
