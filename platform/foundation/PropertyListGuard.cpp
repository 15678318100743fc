#include "PropertyListGuard.h"

#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <algorithm>
#include <cstdint>
#include <optional>
#include <vector>

using namespace Qt::StringLiterals;

namespace
{
constexpr char Magic[] = "bplist00";
constexpr qsizetype MagicBytes = 8;
constexpr qsizetype TrailerBytes = 32;
constexpr std::int64_t BytesOfValue = 64; // about what one value costs besides its content

/// Walks the objects of a binary list without building any.
class BinaryWalk final
{
public:
    explicit BinaryWalk(const QByteArray &content) : m_content(content) {}

    bool isHarmless()
    {
        if (!readTrailer())
            return false;
        m_sizes.assign(static_cast<std::size_t>(m_count), Unknown);
        m_heights.assign(static_cast<std::size_t>(m_count), 0);
        return expandedBytes(m_root, 0) > 0;
    }

private:
    static constexpr std::int64_t Unknown = 0;
    static constexpr std::int64_t Hostile = -1;
    static constexpr std::int64_t UnderWay = -2;
    static constexpr int FirstSizedKind = 4; // data; below it are numbers, dates and booleans

    std::optional<std::uint64_t> number(std::uint64_t offset, int bytes) const
    {
        const auto size = static_cast<std::uint64_t>(m_content.size());
        if (bytes < 1 || bytes > 8 || offset > size || size - offset < static_cast<std::uint64_t>(bytes))
            return {};
        std::uint64_t value = 0;
        for (int index = 0; index < bytes; ++index)
            value = value << 8 | byteAt(offset + static_cast<std::uint64_t>(index));
        return value;
    }

    std::uint8_t byteAt(std::uint64_t offset) const
    {
        return static_cast<std::uint8_t>(m_content.at(static_cast<qsizetype>(offset)));
    }

    bool readTrailer()
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
        return m_offsetBytes >= 1 && m_offsetBytes <= 8 && m_referenceBytes >= 1 && m_referenceBytes <= 8 &&
               m_table < trailer && m_count <= MaxPropertyListValues &&
               m_count <= (trailer - m_table) / static_cast<std::uint64_t>(m_offsetBytes) && m_root < m_count;
    }

    /// How many bytes an object stands for once everything it names is written out; Hostile when that is too
    /// many, too deep, a cycle, or outside the file.
    std::int64_t expandedBytes(std::uint64_t index, int depth)
    {
        if (index >= m_count || depth >= MaxPropertyListDepth || m_sizes[index] == UnderWay)
            return Hostile;
        // An object met again deeper down must not carry its own depth past the limit.
        if (m_sizes[index] != Unknown)
            return depth + m_heights[index] < MaxPropertyListDepth ? m_sizes[index] : Hostile;
        m_sizes[index] = UnderWay;
        const std::int64_t size = countBytes(index, depth);
        m_sizes[index] = size;
        return size;
    }

    std::int64_t countBytes(std::uint64_t index, int depth)
    {
        const auto offset =
            number(m_table + index * static_cast<std::uint64_t>(m_offsetBytes), m_offsetBytes);
        if (!offset || *offset < static_cast<std::uint64_t>(MagicBytes) || *offset >= m_table)
            return Hostile;
        const int kind = byteAt(*offset) >> 4;
        if (kind < FirstSizedKind)
            return BytesOfValue;
        std::uint64_t place = *offset + 1;
        const auto elements = elementCount(byteAt(*offset) & 0xF, place);
        if (!elements || place > m_table)
            return Hostile;
        const bool isDictionary = kind == 0xD;
        if (!isDictionary && kind != 0xA && kind != 0xC)
            return *elements <= m_table - place ? BytesOfValue + 2 * static_cast<std::int64_t>(*elements)
                                                : Hostile;
        if (*elements > (m_table - place) / static_cast<std::uint64_t>(m_referenceBytes))
            return Hostile;
        return bytesOfReferences(index, place, isDictionary ? *elements * 2 : *elements, depth);
    }

    std::optional<std::uint64_t> elementCount(int low, std::uint64_t &place) const
    {
        if (low != 0xF)
            return static_cast<std::uint64_t>(low);
        const auto marker = number(place, 1);
        if (!marker || *marker >> 4 != 1)
            return {};
        const int bytes = 1 << (*marker & 0xF);
        const auto elements = number(place + 1, bytes);
        place += 1 + static_cast<std::uint64_t>(bytes);
        return elements;
    }

    std::int64_t bytesOfReferences(std::uint64_t index, std::uint64_t place, std::uint64_t references,
                                   int depth)
    {
        std::int64_t sum = BytesOfValue;
        for (std::uint64_t each = 0; each < references; ++each) {
            const auto target =
                number(place + each * static_cast<std::uint64_t>(m_referenceBytes), m_referenceBytes);
            const std::int64_t size = target ? expandedBytes(*target, depth + 1) : Hostile;
            if (size == Hostile)
                return Hostile;
            sum += size;
            if (sum > MaxPropertyListExpandedBytes)
                return Hostile;
            m_heights[index] = std::max(m_heights[index], 1 + m_heights[*target]);
        }
        return sum;
    }

    const QByteArray &m_content;
    int m_offsetBytes = 0;
    int m_referenceBytes = 0;
    std::uint64_t m_count = 0;
    std::uint64_t m_root = 0;
    std::uint64_t m_table = 0;
    std::vector<std::int64_t> m_sizes;
    std::vector<int> m_heights;
};

/// Copies one token; false when the list is refused.
bool copyToken(QXmlStreamReader &reader, QXmlStreamWriter &writer, int &depth, int &values)
{
    switch (reader.readNext()) {
    case QXmlStreamReader::DTD:
        return reader.entityDeclarations().isEmpty();
    case QXmlStreamReader::StartElement:
        if (depth == 0 && reader.name() != u"plist")
            return false;
        writer.writeStartElement(reader.name().toString());
        ++values;
        return ++depth <= MaxPropertyListDepth + 1 && values <= MaxPropertyListValues;
    case QXmlStreamReader::EndElement:
        writer.writeEndElement();
        --depth;
        return true;
    case QXmlStreamReader::Characters:
        writer.writeCharacters(reader.text().toString());
        return true;
    default:
        return true;
    }
}
} // namespace

bool isBinaryPropertyList(const QByteArray &content)
{
    return content.startsWith(Magic);
}

bool isHarmlessBinaryPropertyList(const QByteArray &content)
{
    return BinaryWalk(content).isHarmless();
}

QByteArray plainXmlPropertyList(const QByteArray &content)
{
    QXmlStreamReader reader(content);
    reader.setNamespaceProcessing(false);
    QByteArray plain;
    QXmlStreamWriter writer(&plain);
    writer.writeStartDocument();
    int depth = 0;
    int values = 0;
    while (!reader.atEnd()) {
        if (!copyToken(reader, writer, depth, values))
            return {};
    }
    if (reader.hasError() || values == 0)
        return {};
    writer.writeEndDocument();
    return plain;
}
