#include <lmx/Colour/Steps/Private/lmxGradientSteps.h>

#include <lmx/Colour/Steps/Private/lmxFloatSearch.h>
#include <lmx/Colour/Steps/Private/lmxGradientPosition.h>

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

/// What double arithmetic leaves open of a number that is reckoned from numbers of some magnitude.
double Doubt(double magnitude) {
    return 0x1p-48 * magnitude;
}

/// Adds what lies between two neighbouring stops, above position 0 and before `end`.
void AddColorsBetween(const TColorStop& from, const TColorStop& to, float end, TColorSteps& steps) {
    const double extent = to.Location - from.Location;
    const double doubt = Doubt(std::abs(from.Location) + extent);
    TColor32 color = from.Color;
    for (int step = 1; step <= GradientSteps; ++step) {
        const TColor32 next = ColorBetween(from.Color, to.Color, step);
        if (next == color)
            continue;
        color = next;
        const auto isReached = [&](float position) {
            return GradientStep(position, from.Location, to.Location) >= step;
        };
        const float position = FirstFloatNear(isReached, from.Location + extent * (step - 0.5) / GradientSteps, doubt);
        if (position > 0 && position < end)
            steps.Add(position, color);
    }
}

/// The colours of positions from 0 to 1; the default colour elsewhere.
TColorSteps PositionColorSteps(IGradient& gradient, TColor32 defaultColor) {
    const std::vector<TColorStop> stops = SortedStops(gradient.GetColorStops());
    TColorSteps steps(defaultColor);
    steps.Reserve(stops.size() * (GradientSteps + 1) + 3);
    steps.Add(0, gradient.GetColor(0));
    const float outside = FirstPositionFrom(std::nextafter(1.0, 2.0));
    for (std::size_t i = 0; i < stops.size(); ++i) {
        const float end = std::min(FirstPositionFrom(stops[i].Location), outside);
        if (!(end > 0))
            continue; // position 0 has the colour of all that ends there
        if (i > 0 && stops[i - 1].Location < std::min(stops[i].Location, 1.0))
            AddColorsBetween(stops[i - 1], stops[i], end, steps);
        if (i > 0)
            steps.Add(end, stops[i].Color);
    }
    steps.Add(outside, defaultColor);
    return steps;
}

} // namespace

TColorSteps GradientColorSteps(IGradient& gradient, float min, float max, TColor32 defaultColor) {
    const TColorSteps positions = PositionColorSteps(gradient, defaultColor);
    const double width = static_cast<double>(max) - min;
    const double doubt = Doubt(std::abs(static_cast<double>(min)) + std::abs(width));

    // Positions rise with the values or, in an inverted range, fall. They are rounded to floats: a position is reached
    // from the middle between it and the float below.
    const auto firstValue = [&](float position, bool rising) {
        const auto isReached = [&](float value) { return (GradientPosition(value, min, max) >= position) == rising; };
        const double below = PlaceToFloat(FloatToPlace(position) - 1);
        return FirstFloatNear(isReached, min + width * ((below + position) / 2), doubt);
    };
    const std::vector<float>& starts = positions.GetStarts();
    const std::vector<TColor32>& colors = positions.GetColors();
    TColorSteps steps(defaultColor);
    steps.Reserve(starts.size());
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
