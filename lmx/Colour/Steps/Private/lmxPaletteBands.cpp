#include <lmx/Colour/Steps/Private/lmxPaletteBands.h>

#include <lmx/Colour/Steps/Private/lmxFloatSearch.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxExtended.h>

namespace lmx {

TPaletteBands::TPaletteBands(float min, float max, std::size_t count) : FMin(min), FMax(max), FCount(count) {
    if (count > 0)
        FWidth = static_cast<float>((static_cast<extended>(max) - min) / static_cast<extended>(count));
}

std::size_t TPaletteBands::GetBand(float value) const {
    const extended distance = static_cast<extended>(value) - FMin;
    if (FCount == 0 || (FWidth == 0 && distance != 0))
        throw EZeroDivide(QStringLiteral("Floating point division by zero"));
    // Floor refuses what is no number: 0 / 0, where the range is one value, and the quotients of endless bounds.
    const auto band = static_cast<std::size_t>(Floor(distance / FWidth));
    if (band == FCount)
        return FCount - 1;
    if (band > FCount)
        throw EArgumentException(QStringLiteral("Color index out of range"));
    return band;
}

std::optional<std::vector<float>> TPaletteBands::GetStarts() const {
    std::vector<float> starts;
    if (FMin > FMax)
        return starts;
    try {
        GetBand(FMin);
        GetBand(FMax); // no value between the ends fails where both have a band
    } catch (const Exception&) {
        return std::nullopt;
    }
    starts.reserve(FCount);
    for (std::size_t band = 0; band < FCount; ++band) {
        const auto isReached = [&](float value) { return value > FMax || (value >= FMin && GetBand(value) >= band); };
        const extended guess = FMin + static_cast<extended>(FWidth) * static_cast<extended>(band);
        starts.push_back(FirstFloat(isReached, static_cast<float>(guess)));
    }
    return starts;
}

} // namespace lmx
