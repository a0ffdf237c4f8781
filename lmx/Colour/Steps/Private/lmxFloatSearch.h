#pragma once

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

namespace lmx {

/// Place of a number in the row of all 32-bit floats from minus to plus infinity; both zeros share place 0.
constexpr std::int64_t FloatToPlace(float value) {
    const auto bits = std::bit_cast<std::int32_t>(value);
    return bits >= 0 ? bits : std::int64_t{std::numeric_limits<std::int32_t>::min()} - bits;
}

/// The number at a place; 0 is the positive zero.
constexpr float PlaceToFloat(std::int64_t place) {
    const std::int64_t bits = place >= 0 ? place : std::int64_t{std::numeric_limits<std::int32_t>::min()} - place;
    return std::bit_cast<float>(static_cast<std::int32_t>(bits));
}

/// First 32-bit float, infinities included, for which a condition holds that stays true once it is true on the way up;
/// NaN if it holds for none. `guess` may be anywhere and no NaN; a near one takes few evaluations, the farthest 64.
template<class Condition>
float FirstFloat(Condition&& holds, float guess) {
    constexpr std::int64_t Lowest = FloatToPlace(-std::numeric_limits<float>::infinity());
    constexpr std::int64_t Highest = FloatToPlace(std::numeric_limits<float>::infinity());
    const auto holdsAt = [&](std::int64_t place) { return place > Highest || holds(PlaceToFloat(place)); };

    std::int64_t below = FloatToPlace(guess); // the condition fails there, or it is the place before the first
    std::int64_t found = below;               // it holds there, or it is the place after the last
    std::int64_t stride = 1;
    if (holdsAt(found)) {
        do {
            found = below;
            below = std::max(below - stride, Lowest - 1);
            stride *= 2;
        } while (below >= Lowest && holdsAt(below));
    } else {
        do {
            below = found;
            found = std::min(found + stride, Highest + 1);
            stride *= 2;
        } while (!holdsAt(found));
    }
    while (found - below > 1) {
        const std::int64_t middle = below + (found - below) / 2;
        (holdsAt(middle) ? found : below) = middle;
    }
    return found > Highest ? std::numeric_limits<float>::quiet_NaN() : PlaceToFloat(found);
}

/// The same where the condition is known to begin to hold within `doubt` of a number: it is asked there only, or
/// everywhere if the doubt is infinite. `number` is no NaN.
template<class Condition>
float FirstFloatNear(Condition&& holds, double number, double doubt) {
    const auto nearest = static_cast<float>(number);
    const float above = nearest > number ? nearest : PlaceToFloat(FloatToPlace(nearest) + 1); // or NaN
    const float below = PlaceToFloat(FloatToPlace(above) - 1);
    if (above - number > doubt && number - below > doubt)
        return above;
    const auto holdsAt = [&](float value) {
        return std::abs(value - number) > doubt ? value > number : static_cast<bool>(holds(value));
    };
    return FirstFloat(holdsAt, nearest);
}

} // namespace lmx
