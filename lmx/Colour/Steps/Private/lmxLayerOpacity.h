#pragma once

#include <lmx/Graphics/lmxColor32.h>

#include <array>
#include <cstdint>

namespace lmx {

/// The opacity of a layer, applied to the alpha of its colours.
class TLayerOpacity {
public:
    /// The layer alpha is 0 below 0 and for what is no number, 255 above 1, and the nearest 255th between (ties to
    /// even).
    explicit TLayerOpacity(float opacity);

    std::uint8_t GetLayerAlpha() const { return FLayerAlpha; }

    /// The colour with its alpha times the layer alpha / 255, rounded to nearest; red, green and blue stay.
    TColor32 Fade(TColor32 color) const { return (color & 0x00FFFFFFU) | FFadedAlpha[color >> 24]; }

private:
    std::uint8_t FLayerAlpha;
    std::array<TColor32, 256> FFadedAlpha; ///< for each alpha, what becomes of it, in the place of the alpha byte
};

} // namespace lmx
