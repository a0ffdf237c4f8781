#pragma once

#include <cstdint>
#include <initializer_list>
#include <type_traits>

namespace lmx {

/// A set of the values of an enumeration whose ordinals lie in 0 to 31.
template<class Enum>
class TSet {
    static_assert(std::is_enum_v<Enum>);

public:
    constexpr TSet() = default;
    constexpr TSet(std::initializer_list<Enum> members) {
        for (Enum member : members)
            Include(member);
    }
    static constexpr TSet FromBits(std::uint32_t bits) {
        TSet set;
        set.FBits = bits;
        return set;
    }

    constexpr bool Contains(Enum member) const { return (FBits & Bit(member)) != 0; }
    constexpr bool IsEmpty() const { return FBits == 0; }
    constexpr void Include(Enum member) { FBits |= Bit(member); }
    constexpr void Exclude(Enum member) { FBits &= ~Bit(member); }
    constexpr std::uint32_t Bits() const { return FBits; } ///< bit n stands for the member of ordinal n

    friend constexpr TSet operator+(TSet a, TSet b) { return FromBits(a.FBits | b.FBits); }
    friend constexpr TSet operator-(TSet a, TSet b) { return FromBits(a.FBits & ~b.FBits); }
    friend constexpr bool operator==(TSet, TSet) = default;

private:
    static constexpr std::uint32_t Bit(Enum member) { return std::uint32_t{1} << static_cast<unsigned>(member); }

    std::uint32_t FBits = 0;
};

} // namespace lmx
