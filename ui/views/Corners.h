#pragma once
#include <cstdint>
#include <initializer_list>

/// A set of a rectangle's corners, with y upwards. Plain value.
class Corners final
{
public:
    // NOLINTBEGIN(readability-identifier-naming): they read as members of an option set, not as constants.
    static const Corners topLeft;
    static const Corners bottomLeft;
    static const Corners topRight;
    static const Corners bottomRight;
    // NOLINTEND(readability-identifier-naming)

    constexpr Corners() = default;
    explicit constexpr Corners(std::int64_t value) : rawValue(value) {}
    constexpr Corners(std::initializer_list<Corners> members)
    {
        for (const Corners &member : members)
            rawValue |= member.rawValue;
    }

    constexpr bool isEmpty() const { return rawValue == 0; }
    constexpr bool contains(Corners other) const { return (rawValue & other.rawValue) == other.rawValue; }
    /// The same corners mirrored top to bottom, for views whose y grows downwards.
    constexpr Corners flipped() const
    {
        constexpr std::int64_t Tops = 1 | 4; // each bottom corner is the bit above its top corner
        return Corners((rawValue & Tops) << 1 | (rawValue >> 1 & Tops));
    }

    friend constexpr Corners operator|(Corners a, Corners b) { return Corners(a.rawValue | b.rawValue); }
    friend constexpr Corners operator&(Corners a, Corners b) { return Corners(a.rawValue & b.rawValue); }
    constexpr bool operator==(const Corners &) const = default;

    std::int64_t rawValue = 0;
};

inline constexpr Corners Corners::topLeft{std::int64_t{1}};
inline constexpr Corners Corners::bottomLeft{std::int64_t{2}};
inline constexpr Corners Corners::topRight{std::int64_t{4}};
inline constexpr Corners Corners::bottomRight{std::int64_t{8}};
