#pragma once

#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>
#include <variant>
#include <vector>

namespace lmx {

/// Cuts all floats into numbered pages. A value's page never falls where the value rises and is always the same, so it
/// does not matter where exactly a page ends: whoever sorts things into pages and whoever looks them up find the same
/// one. What is no number lies in page 0.
class TValuePages {
public:
    /// One page.
    TValuePages() = default;

    /// Pages for some ascending values, each for no more than `perPage` of them: pages of equal width or, where those
    /// are many and the others fewer, of a width that grows with the magnitude, as for values of many magnitudes. Never
    /// more than `mostPages`, at most 2^23; where more would be needed, some pages hold too many values.
    TValuePages(std::span<const float> values, std::size_t perPage, std::size_t mostPages);

    std::size_t GetCount() const { return FCount; }

    /// Writes the page of each value. `pages` holds as many places.
    void Find(std::span<const float> values, std::uint32_t* pages) const;

    /// For each page the index of the first of some ascending values that lies in it or behind it; at last their
    /// number.
    std::vector<std::uint32_t> FirstInEachPage(std::span<const float> values) const;

    /// Pages of one width.
    struct TEvenWidths {
        float Low;
        float PagesPerUnit;
        float Last;

        std::uint32_t operator()(float value) const;
    };

    /// Equal widths of what a magnitude's bits say: each power of two takes as many pages. The knee is added to
    /// magnitudes, so that much smaller ones lie evenly and take no pages for each of their powers.
    struct TGrowingWidths {
        float Knee;
        TEvenWidths Places;

        float PlaceOf(float value) const;
        std::uint32_t operator()(float value) const;
    };

    /// What `action` gives when called with the widths, which give the page of a value: for loops of one's own, which
    /// compilers can turn into lanes, as many as their instructions have.
    template<class Action>
    decltype(auto) Visit(Action&& action) const {
        return std::visit(std::forward<Action>(action), FWidths);
    }

private:
    std::variant<TEvenWidths, TGrowingWidths> FWidths = TEvenWidths{0, 0, 0};
    std::size_t FCount = 1;
};

[[gnu::always_inline]] inline std::uint32_t TValuePages::TEvenWidths::operator()(float value) const {
    float page = (value - Low) * PagesPerUnit;
    page = page > 0 ? page : 0;
    page = page < Last ? page : Last;
    return static_cast<std::uint32_t>(static_cast<std::int32_t>(page)); // lanes have the signed conversion only
}

/// Rises by the same number from each power of two to the next, of the magnitudes with the knee.
[[gnu::always_inline]] inline float TValuePages::TGrowingWidths::PlaceOf(float value) const {
    const auto place = std::bit_cast<std::int32_t>(std::abs(value) + Knee) - std::bit_cast<std::int32_t>(Knee);
    const std::int32_t sign = std::bit_cast<std::int32_t>(value) >> 31; // 0 or -1
    return static_cast<float>((place ^ sign) - sign);
}

[[gnu::always_inline]] inline std::uint32_t TValuePages::TGrowingWidths::operator()(float value) const {
    return Places(PlaceOf(value)) & (value == value ? ~std::uint32_t{0} : 0);
}

} // namespace lmx
