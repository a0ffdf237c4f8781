#include <lmx/Colour/lmxColorSteps.h>

#include <cmath>

namespace lmx {

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
