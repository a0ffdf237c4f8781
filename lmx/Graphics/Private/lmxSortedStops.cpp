#include <lmx/Graphics/Private/lmxSortedStops.h>

#include <lmx/Runtime/Private/lmxBisection.h>

#include <algorithm>
#include <cmath>

namespace lmx {

TSortedStops::TSortedStops(std::span<const TColorStop> stops) {
    FStops.reserve(stops.size());
    std::copy_if(stops.begin(), stops.end(), std::back_inserter(FStops),
                 [](const TColorStop& stop) { return std::isfinite(stop.Location); });
    std::stable_sort(FStops.begin(), FStops.end(),
                     [](const TColorStop& a, const TColorStop& b) { return a.Location < b.Location; });
    FLocations.reserve(FStops.size());
    for (const TColorStop& stop : FStops)
        FLocations.push_back(stop.Location);
}

TColor32 TSortedStops::GetColor(double position) const {
    if (FStops.empty() || std::isnan(position))
        return 0;
    const std::size_t reached = CountReached<double>(FLocations, position);
    if (reached == 0 || reached == FStops.size())
        return reached == 0 ? FStops.front().Color : FStops.back().Color;
    const TColorStop& before = FStops[reached - 1];
    const TColorStop& after = FStops[reached];
    return ColorBetween(before.Color, after.Color, GradientStep(position, before.Location, after.Location));
}

} // namespace lmx
