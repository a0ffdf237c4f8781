#include <lmx/Colour/lmxColorSteps.h>

#include <cmath>

namespace lmx {

void TColorSteps::Add(float start, TColor32 color) {
    if (std::isnan(start))
        return;
    if (start <= FStarts.back()) {
        FStarts.pop_back();
        FColors.pop_back();
        if (FStarts.empty())
            start = -Infinity;
    }
    if (!FColors.empty() && FColors.back() == color)
        return;
    FStarts.push_back(start);
    FColors.push_back(color);
}

} // namespace lmx
