#include <lmx/Colour/lmxFloatSearch.h>
#include <lmx/Colour/lmxGradientPosition.h>
#include <lmx/Colour/lmxGradientSteps.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace lmx {

namespace {

std::vector<TColorStop> SortedStops(std::vector<TColorStop> stops) {
    std::erase_if(stops, [](const TColorStop& stop) { return !std::isfinite(stop.Location); });
    std::stable_sort(stops.begin(), stops.end(),
                     [](const TColorStop& a, const TColorStop& b) { return a.Location < b.Location; });
    return stops;
}

float FirstPositionFrom(double location) {
    return FirstFloat([location](float position) { return position >= location; }, static_cast<float>(location));
}

/// Adds what lies between two neighbouring stops, above position 0 and before `end`.
void AddColorsBetween(const TColorStop& from, const TColorStop& to, float end, TColorSteps& steps) {
    TColor32 color = from.Color;
    for (int step = 1; step <= GradientSteps; ++step) {
        const TColor32 next = ColorBetween(from.Color, to.Color, step);
        if (next == color)
            continue;
        color = next;
        const double guess = from.Location + (to.Location - from.Location) * (step - 0.5) / GradientSteps;
        const auto isReached = [&](float position) {
            return GradientStep(position, from.Location, to.Location) >= step;
        };
        const float position = FirstFloat(isReached, static_cast<float>(guess));
        if (position > 0 && position < end)
            steps.Add(position, color);
    }
}

/// The colours of positions; what lies beyond 0 to 1 is of no concern.
TColorSteps PositionColorSteps(IGradient& gradient) {
    const std::vector<TColorStop> stops = SortedStops(gradient.GetColorStops());
    TColorSteps steps(gradient.GetColor(0));
    for (std::size_t i = 0; i < stops.size(); ++i) {
        const float end = FirstPositionFrom(stops[i].Location);
        if (!(end > 0))
            continue; // position 0 has the colour of all that ends there
        if (i > 0 && stops[i - 1].Location < std::min(stops[i].Location, 1.0))
            AddColorsBetween(stops[i - 1], stops[i], end, steps);
        if (i > 0)
            steps.Add(end, stops[i].Color);
    }
    return steps;
}

} // namespace

TColorSteps GradientColorSteps(IGradient& gradient, float min, float max, TColor32 defaultColor) {
    TColorSteps positions(defaultColor);
    const TColorSteps inside = PositionColorSteps(gradient);
    for (std::size_t i = 0; i < inside.GetCount() && inside.GetStarts()[i] <= 1; ++i)
        positions.Add(std::max(inside.GetStarts()[i], 0.0F), inside.GetColors()[i]);
    positions.Add(FirstPositionFrom(std::nextafter(1.0, 2.0)), defaultColor);

    // Positions rise with the values or, in an inverted range, fall.
    const auto firstValue = [&](float position, bool rising) {
        const auto isReached = [&](float value) { return (GradientPosition(value, min, max) >= position) == rising; };
        return FirstFloat(isReached, static_cast<float>(min + (static_cast<extended>(max) - min) * position));
    };
    const std::vector<float>& starts = positions.GetStarts();
    const std::vector<TColor32>& colors = positions.GetColors();
    TColorSteps steps(defaultColor);
    if (min < max) {
        for (std::size_t i = 1; i < starts.size(); ++i)
            steps.Add(firstValue(starts[i], true), colors[i]);
    } else {
        for (std::size_t i = starts.size() - 1; i > 0; --i)
            steps.Add(firstValue(starts[i], false), colors[i - 1]);
    }
    return steps;
}

} // namespace lmx
