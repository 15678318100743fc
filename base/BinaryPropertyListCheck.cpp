#include "BinaryPropertyListCheck.h"
#include "PropertyListGuard.h"

#include <algorithm>

namespace
{
constexpr qsizetype MagicBytes = 8;
constexpr qsizetype TrailerBytes = 32;
constexpr std::int64_t BytesOfValue = 64; // about what one value costs besides its content

constexpr std::int64_t Unknown = 0;
constexpr std::int64_t Hostile = -1;
constexpr std::int64_t UnderWay = -2;

// The high half of an object's first byte. Numbers, dates and booleans come before data.
constexpr int Data = 0x4;
constexpr int PlainText = 0x5;
constexpr int WideText = 0x6;
constexpr int Array = 0xA;
constexpr int Set = 0xC;
constexpr int Dictionary = 0xD;
constexpr int LongCount = 0xF; // in the low half: the count follows as a number of its own

bool isContainer(int kind)
{
    return kind == Array || kind == Set || kind == Dictionary;
}
} // namespace

bool BinaryPropertyListCheck::passes()
{
    if (!readTrailer())
        return false;
    m_sizes.assign(static_cast<std::size_t>(m_count), Unknown);
    m_heights.assign(static_cast<std::size_t>(m_count), 0);
    return expandedBytes(m_root, 0) > 0;
}

bool BinaryPropertyListCheck::readTrailer()
{
    const qsizetype size = m_content.size();
    if (size < MagicBytes + TrailerBytes)
        return false;
    const auto trailer = static_cast<std::uint64_t>(size - TrailerBytes);
    m_offsetBytes = byteAt(trailer + 6);
    m_referenceBytes = byteAt(trailer + 7);
    m_count = *number(trailer + 8, 8);
    m_root = *number(trailer + 16, 8);
    m_table = *number(trailer + 24, 8);
    const auto isWidth = [](int bytes) { return bytes >= 1 && bytes <= 8; };
    return isWidth(m_offsetBytes) && isWidth(m_referenceBytes) && m_table < trailer &&
           m_count <= MaxPropertyListValues && m_root < m_count &&
           m_count <= (trailer - m_table) / static_cast<std::uint64_t>(m_offsetBytes);
}

std::uint8_t BinaryPropertyListCheck::byteAt(std::uint64_t offset) const
{
    return static_cast<std::uint8_t>(m_content.at(static_cast<qsizetype>(offset)));
}

std::optional<std::uint64_t> BinaryPropertyListCheck::number(std::uint64_t offset, int bytes) const
{
    const auto size = static_cast<std::uint64_t>(m_content.size());
    if (bytes < 1 || bytes > 8 || offset > size || size - offset < static_cast<std::uint64_t>(bytes))
        return {};
    std::uint64_t value = 0;
    for (int index = 0; index < bytes; ++index)
        value = value << 8 | byteAt(offset + static_cast<std::uint64_t>(index));
    return value;
}

std::optional<std::uint64_t> BinaryPropertyListCheck::reference(const Object &object,
                                                                std::uint64_t item) const
{
    return number(object.place + item * static_cast<std::uint64_t>(m_referenceBytes), m_referenceBytes);
}

/// The object's head; nothing when it or its content is not between the magic and the table of offsets.
std::optional<BinaryPropertyListCheck::Object> BinaryPropertyListCheck::objectAt(std::uint64_t index) const
{
    const auto offset = number(m_table + index * static_cast<std::uint64_t>(m_offsetBytes), m_offsetBytes);
    if (!offset || *offset < static_cast<std::uint64_t>(MagicBytes) || *offset >= m_table)
        return {};
    Object object{byteAt(*offset) >> 4, byteAt(*offset) & 0xFU, *offset + 1};
    if (object.kind < Data)
        return object;
    if (object.elements == LongCount) {
        const auto marker = number(object.place, 1);
        const int bytes = marker && *marker >> 4 == 1 ? 1 << (*marker & 0xF) : 0;
        const auto count = number(object.place + 1, bytes);
        if (!count)
            return {};
        object.elements = *count;
        object.place += 1 + static_cast<std::uint64_t>(bytes);
    }
    return isInside(object) ? std::optional<Object>(object) : std::nullopt;
}

bool BinaryPropertyListCheck::isInside(const Object &object) const
{
    std::uint64_t width = 1;
    if (object.kind == WideText)
        width = 2;
    else if (isContainer(object.kind))
        width = static_cast<std::uint64_t>(m_referenceBytes) * (object.kind == Dictionary ? 2 : 1);
    return object.place <= m_table && object.elements <= (m_table - object.place) / width;
}

/// Whether an object may be a key. The library takes whatever stands there for a text, and a zero for its
/// end.
bool BinaryPropertyListCheck::isText(std::uint64_t index) const
{
    const auto object = index < m_count ? objectAt(index) : std::nullopt;
    if (!object || (object->kind != PlainText && object->kind != WideText))
        return false;
    const int width = object->kind == WideText ? 2 : 1;
    for (std::uint64_t unit = 0; unit < object->elements; ++unit) {
        if (*number(object->place + unit * static_cast<std::uint64_t>(width), width) == 0)
            return false;
    }
    return true;
}

/// How many bytes an object stands for once everything it names is written out; Hostile when it is refused.
std::int64_t BinaryPropertyListCheck::expandedBytes(std::uint64_t index, int depth)
{
    if (index >= m_count || depth >= MaxPropertyListDepth || m_sizes[index] == UnderWay)
        return Hostile;
    // An object met again deeper down must not carry its own depth past the limit.
    if (m_sizes[index] != Unknown)
        return depth + m_heights[index] < MaxPropertyListDepth ? m_sizes[index] : Hostile;
    m_sizes[index] = UnderWay;
    m_sizes[index] = bytesOfObject(index, depth);
    return m_sizes[index];
}

std::int64_t BinaryPropertyListCheck::bytesOfObject(std::uint64_t index, int depth)
{
    const auto object = objectAt(index);
    if (!object)
        return Hostile;
    if (isContainer(object->kind))
        return bytesOfItems(index, *object, depth);
    constexpr std::int64_t MostBytesOfUnit = 3;
    return object->kind < Data ? BytesOfValue
                               : BytesOfValue + MostBytesOfUnit * static_cast<std::int64_t>(object->elements);
}

std::int64_t BinaryPropertyListCheck::bytesOfItems(std::uint64_t index, const Object &object, int depth)
{
    const bool isDictionary = object.kind == Dictionary;
    const std::uint64_t items = isDictionary ? object.elements * 2 : object.elements;
    std::int64_t sum = BytesOfValue;
    for (std::uint64_t item = 0; item < items; ++item) {
        const auto target = reference(object, item);
        const bool isKey = isDictionary && item < object.elements;
        if (!target || (isKey && !isText(*target)))
            return Hostile;
        const std::int64_t size = expandedBytes(*target, depth + 1);
        if (size == Hostile || sum + size > MaxPropertyListExpandedBytes)
            return Hostile;
        sum += size;
        m_heights[index] = std::max(m_heights[index], 1 + m_heights[*target]);
    }
    return sum;
}
