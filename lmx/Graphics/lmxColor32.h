#pragma once

#include <cstdint>

namespace lmx {

/// A pixel, 0xAARRGGBB: straight (not premultiplied) alpha.
using TColor32 = std::uint32_t;

constexpr TColor32 Color32(std::uint8_t red, std::uint8_t green, std::uint8_t blue, std::uint8_t alpha = 255) {
    return static_cast<TColor32>(alpha) << 24 | static_cast<TColor32>(red) << 16 | static_cast<TColor32>(green) << 8 |
           blue;
}
constexpr std::uint8_t AlphaComponent(TColor32 color) {
    return static_cast<std::uint8_t>(color >> 24);
}
constexpr std::uint8_t RedComponent(TColor32 color) {
    return static_cast<std::uint8_t>(color >> 16);
}
constexpr std::uint8_t GreenComponent(TColor32 color) {
    return static_cast<std::uint8_t>(color >> 8);
}
constexpr std::uint8_t BlueComponent(TColor32 color) {
    return static_cast<std::uint8_t>(color);
}

/// The colour with its alpha replaced; `alpha` is clamped to 0..255.
constexpr TColor32 SetAlpha(TColor32 color, int alpha) {
    const int clamped = alpha < 0 ? 0 : alpha > 255 ? 255 : alpha;
    return (color & 0x00FFFFFFU) | static_cast<TColor32>(clamped) << 24;
}

/// A colour of controls, fonts and palette files, 0x00BBGGRR: red lowest, no alpha. A negative value names a system
/// colour by its low 8 bits (lmxSystemColors.h).
struct TColor {
    std::int32_t Value = 0;

    constexpr bool IsSystemColor() const { return Value < 0; }
    friend constexpr bool operator==(TColor, TColor) = default;
};

/// The colour without its alpha.
constexpr TColor WinColor(TColor32 color) {
    return {BlueComponent(color) << 16 | GreenComponent(color) << 8 | RedComponent(color)};
}

inline constexpr TColor clBlack = {0};
inline constexpr TColor clWhite = {0x00FFFFFF};

inline constexpr TColor32 clBlack32 = 0xFF000000U;
inline constexpr TColor32 clWhite32 = 0xFFFFFFFFU;

} // namespace lmx
