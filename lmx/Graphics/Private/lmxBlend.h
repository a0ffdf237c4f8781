#pragma once

#include <lmx/Graphics/lmxColor32.h>

#include <cstdint>

// What it means to put a colour over a pixel. These are the definitions; the row kernels of lmxPixelRows.h give the
// same bits faster. Throughout, `over` is the colour whose alpha rules and `under` the pixel that is drawn on.

namespace lmx {

/// round(alpha * factor / 255); a tie cannot occur.
constexpr std::uint8_t ScaleAlpha(unsigned alpha, unsigned factor) {
    return static_cast<std::uint8_t>((alpha * factor + 127) / 255);
}

/// The colour with its alpha scaled by factor / 255.
constexpr TColor32 ScaleColorAlpha(TColor32 color, unsigned factor) {
    return (color & 0x00FFFFFFU) | static_cast<TColor32>(ScaleAlpha(AlphaComponent(color), factor)) << 24;
}

/// Blending where the pixel counts as opaque: each channel is (over * a + under * (255 - a)) / 255, rounded, and the
/// result is opaque. Alpha 0 leaves the pixel as it is.
constexpr TColor32 BlendColor(TColor32 over, TColor32 under) {
    const unsigned alpha = AlphaComponent(over);
    if (alpha == 0)
        return under;
    if (alpha == 255)
        return over;
    const auto mix = [alpha](unsigned f, unsigned b) {
        return static_cast<std::uint8_t>((f * alpha + b * (255 - alpha) + 127) / 255);
    };
    return Color32(mix(RedComponent(over), RedComponent(under)), mix(GreenComponent(over), GreenComponent(under)),
                   mix(BlueComponent(over), BlueComponent(under)));
}

/// Blending where the pixel's own alpha b counts: with c = b * (255 - a), each channel is the mean of both weighted by
/// 255 * a and c, rounded half up, and the alpha is 255 - (255 - a) * (255 - b) / 255, rounded.
/// Alpha 0 leaves the pixel as it is; over a pixel of alpha 0 the colour is stored whole.
constexpr TColor32 MergeColor(TColor32 over, TColor32 under) {
    const unsigned alpha = AlphaComponent(over);
    const unsigned underAlpha = AlphaComponent(under);
    if (alpha == 0)
        return under;
    if (alpha == 255 || underAlpha == 0)
        return over;
    const unsigned overWeight = alpha * 255;
    const unsigned underWeight = underAlpha * (255 - alpha);
    const unsigned sum = overWeight + underWeight;
    const auto mix = [=](unsigned f, unsigned b) {
        return static_cast<std::uint8_t>((f * overWeight + b * underWeight + sum / 2) / sum);
    };
    return Color32(mix(RedComponent(over), RedComponent(under)), mix(GreenComponent(over), GreenComponent(under)),
                   mix(BlueComponent(over), BlueComponent(under)),
                   static_cast<std::uint8_t>(255 - ScaleAlpha(255 - alpha, 255 - underAlpha)));
}

/// The weight of CombineColor that gives `over` whole: a product of two weights of 256ths, times an alpha.
inline constexpr std::uint32_t CombineOne = 65536U * 255U;

/// All four channels, alpha too, moved from `under` towards `over` by weight / CombineOne, rounded half up. The sums
/// stay within 32 bits: 255 * CombineOne and the half are less than 2^32.
constexpr TColor32 CombineColor(TColor32 over, TColor32 under, std::uint32_t weight) {
    const auto mix = [weight](std::uint32_t f, std::uint32_t b) {
        return static_cast<std::uint8_t>((f * weight + b * (CombineOne - weight) + CombineOne / 2) / CombineOne);
    };
    return Color32(mix(RedComponent(over), RedComponent(under)), mix(GreenComponent(over), GreenComponent(under)),
                   mix(BlueComponent(over), BlueComponent(under)), mix(AlphaComponent(over), AlphaComponent(under)));
}

} // namespace lmx
