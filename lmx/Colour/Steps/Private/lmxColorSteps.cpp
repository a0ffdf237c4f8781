
#include <lmx/Colour/Steps/Private/lmxColorSteps.h>

#include <cmath>

namespace lmx {

void TColorSteps::Add(const TColorSteps& other, std::size_t first, std::size_t end) {
    const auto addTo = [=](auto& items, const auto& others) {
        const auto begin = others.begin();
        items.insert(items.end(), begin + static_cast<std::ptrdiff_t>(first), begin + static_cast<std::ptrdiff_t>(end));
    };
    addTo(FStarts, other.FStarts);
    addTo(FColors, other.FColors);
}

void TColorSteps::Reserve(std::size_t count) {
    FStarts.reserve(count);
    FColors.reserve(count);
}

/// The last step takes the colour, or joins the one before.
void TColorSteps::Replace(float start, TColor32 color) {
    if (std::isnan(start))
        return;
    FStarts.pop_back();
    FColors.pop_back();
    if (FStarts.empty())
        start = -Infinity;
    if (!FColors.empty() && FColors.back() == color)
        return;
    FStarts.push_back(start);
    FColors.push_back(color);
}

} // namespace lmx
