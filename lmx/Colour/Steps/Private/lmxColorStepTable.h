#pragma once

#include <lmx/Colour/Steps/Private/lmxColorSteps.h>
#include <lmx/Colour/Steps/Private/lmxColorTable.h>
#include <lmx/Colour/Steps/Private/lmxValuePages.h>
#include <lmx/Graphics/lmxColor32.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace lmx {

class TLayerOpacity;

/// Looks colours up in the steps of a colouring, however many they are.
///
/// The steps are sorted into pages, each of which holds its colours and the few values at which they begin. So a value
/// touches one line of the processor's cache, however many steps there are, and comparing it with all starts of its
/// page settles its colour. Only where steps crowd, as they can under bounds of very different widths, is it searched
/// for.
class TColorStepTable final : public TColorTable {
public:
    /// The steps' colours faded by `opacity`.
    TColorStepTable(const TColorSteps& steps, const TLayerOpacity& opacity);

    void GetColors(std::span<const float> values, TColor32* colors, std::span<const float> next = {}) const override;

private:
    /// One line of the cache.
    struct alignas(64) TPage {
        static constexpr std::size_t MaxStarts = 7;

        /// Of the steps that start here, ascending; behind them, in the last place at least, NaN, which no value
        /// reaches. A crowded page has none.
        std::array<float, MaxStarts + 1> Starts;
        std::array<TColor32, MaxStarts + 1> Colors; ///< before the first start, and from each start on
    };

    /// What crowded pages are searched in.
    struct TSteps {
        std::vector<float> Starts;              ///< of the steps after the first
        std::vector<TColor32> Colors;           ///< of all steps
        std::vector<std::uint32_t> FirstStarts; ///< index of the first start in each page, and the end

        bool IsCrowded(std::size_t page) const { return FirstStarts[page] + TPage::MaxStarts < FirstStarts[page + 1]; }
    };

    void FillPages(const TSteps& steps);
    void SearchCrowded(std::span<const float> values, const std::uint32_t* places, TColor32* colors) const;

    TValuePages FCut;
    std::vector<TPage> FPages;
    std::optional<TSteps> FSteps; ///< if any page is crowded
};

} // namespace lmx
