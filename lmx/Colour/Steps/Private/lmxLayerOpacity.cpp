#include <lmx/Colour/Steps/Private/lmxLayerOpacity.h>

#include <lmx/Runtime/lmxExtended.h>

namespace lmx {

namespace {

std::uint8_t ToLayerAlpha(float opacity) {
    if (!(opacity >= 0))
        return 0;
    return opacity > 1 ? 255 : static_cast<std::uint8_t>(Round(255 * static_cast<extended>(opacity)));
}

} // namespace

TLayerOpacity::TLayerOpacity(float opacity) : FLayerAlpha(ToLayerAlpha(opacity)), FFadedAlpha() {
    for (std::size_t alpha = 0; alpha < FFadedAlpha.size(); ++alpha)
        FFadedAlpha[alpha] = static_cast<TColor32>(Round(static_cast<extended>(alpha * FLayerAlpha) / 255)) << 24;
}

} // namespace lmx
