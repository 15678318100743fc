#pragma once
#include <QByteArray>
#include <cstdint>
#include <optional>
#include <vector>

/// Walks the objects of a binary property list without building any, before the library does. Refuses what
/// the library would crash or choke on: cycles, deep nesting, objects that expand beyond all bounds by being
/// named again and again, references outside the file, keys that are no text, texts with zeros. Lives for one
/// list, on any thread.
class BinaryPropertyListCheck final
{
public:
    /// `content` must outlive the check.
    explicit BinaryPropertyListCheck(const QByteArray &content) : m_content(content) {}

    bool passes();

private:
    struct Object
    {
        int kind = 0;
        std::uint64_t elements = 0; // bytes, units or items, as the kind has it
        std::uint64_t place = 0;    // of the first element
    };

    bool readTrailer();
    std::uint8_t byteAt(std::uint64_t offset) const;
    std::optional<std::uint64_t> number(std::uint64_t offset, int bytes) const;
    std::optional<std::uint64_t> reference(const Object &object, std::uint64_t item) const;
    std::optional<Object> objectAt(std::uint64_t index) const;
    bool isInside(const Object &object) const;
    bool isText(std::uint64_t index) const;

    std::int64_t expandedBytes(std::uint64_t index, int depth);
    std::int64_t bytesOfObject(std::uint64_t index, int depth);
    std::int64_t bytesOfItems(std::uint64_t index, const Object &object, int depth);

    const QByteArray &m_content;
    int m_offsetBytes = 0;
    int m_referenceBytes = 0;
    std::uint64_t m_count = 0;
    std::uint64_t m_root = 0;
    std::uint64_t m_table = 0; // where the objects end and their offsets begin
    std::vector<std::int64_t> m_sizes;
    std::vector<int> m_heights; // levels of objects below each
};
