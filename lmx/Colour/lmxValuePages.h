#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <variant>

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

private:
    struct TWidths {
        float Low;
        float PagesPerUnit;
        float Last;

        static TWidths Over(std::span<const float> positions, std::size_t count);
        std::uint32_t operator()(float value) const;
    };
    /// Equal widths of what a magnitude's bits say: each power of two takes as many pages. The knee is added to
    /// magnitudes, so that much smaller ones lie evenly and take no pages for each of their powers.
    struct TRatios {
        float Knee;
        TWidths Places;

        float PlaceOf(float value) const;
        std::uint32_t operator()(float value) const;
    };

    std::variant<TWidths, TRatios> FCut = TWidths{0, 0, 0};
    std::size_t FCount = 1;
};

} // namespace lmx
