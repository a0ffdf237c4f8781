#include <lmx/Colour/Steps/Private/lmxGradientSteps.h>

#include <lmx/Colour/Steps/Private/lmxFloatSearch.h>
#include <lmx/Colour/Steps/Private/lmxGradientPosition.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace lmx {

namespace {

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
TColorSteps PositionColorSteps(const TSortedStops& gradient, TColor32 defaultColor) {
    const std::vector<TColorStop>& stops = gradient.GetStops();
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

/// The piece behind so many of the stops.
TColorPiece PieceAfter(const std::vector<TColorStop>& stops, std::size_t count) {
    if (stops.empty())
        return TColorPiece::Of(0);
    if (count == 0 || count == stops.size())
        return TColorPiece::Of(count == 0 ? stops.front().Color : stops.back().Color);
    const TColorStop& from = stops[count - 1];
    const TColorStop& to = stops[count];
    TColorPiece piece = TColorPiece::Of(from.Color);
    piece.Location = from.Location;
    piece.StepsPerPosition = GradientSteps / (to.Location - from.Location);
    piece.To = to.Color;
    return piece;
}

/// The pieces of positions from 0 to 1; the default colour elsewhere.
TColorPieces PositionColorPieces(const TSortedStops& gradient, float min, float max, TColor32 defaultColor) {
    const std::vector<TColorStop>& stops = gradient.GetStops();
    TColorPieces pieces(defaultColor);
    pieces.Reserve(stops.size() + 3);
    const auto add = [&](float position, std::size_t count) {
        TColorPiece piece = PieceAfter(stops, count);
        piece.Min = min;
        piece.Max = max;
        pieces.Add(position, piece);
    };
    const auto isPassed = [](const TColorStop& stop) { return stop.Location <= 0; };
    std::size_t count =
        static_cast<std::size_t>(std::partition_point(stops.begin(), stops.end(), isPassed) - stops.begin());
    add(0, count);
    for (; count < stops.size() && stops[count].Location <= 1; ++count)
        add(FirstPositionFrom(stops[count].Location), count + 1);
    pieces.Add(FirstPositionFrom(std::nextafter(1.0, 2.0)), TColorPiece::Of(defaultColor));
    return pieces;
}

/// Adds to one step of the default colour, for values, what positions look like.
template<class Steps>
Steps OverRange(const Steps& positions, float min, float max, Steps steps) {
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
    const auto& looks = positions.GetLooks();
    steps.Reserve(starts.size());
    if (min < max) {
        for (std::size_t i = 1; i < starts.size(); ++i)
            steps.Add(firstValue(starts[i], true), looks[i]);
    } else {
        for (std::size_t i = starts.size() - 1; i > 0; --i)
            steps.Add(firstValue(starts[i], false), looks[i - 1]);
    }
    return steps;
}

} // namespace

std::size_t GradientStepLimit(std::size_t stopCount) {
    return (std::max<std::size_t>(stopCount, 1) - 1) * GradientSteps + 3;
}

TColorSteps GradientColorSteps(const TSortedStops& gradient, float min, float max, TColor32 defaultColor) {
    return OverRange(PositionColorSteps(gradient, defaultColor), min, max, TColorSteps(defaultColor));
}

TColorPieces GradientColorPieces(const TSortedStops& gradient, float min, float max, TColor32 defaultColor) {
    return OverRange(PositionColorPieces(gradient, min, max, defaultColor), min, max, TColorPieces(defaultColor));
}

} // namespace lmx
