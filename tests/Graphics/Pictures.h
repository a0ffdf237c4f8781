#pragma once

#include <lmx/Graphics/lmxBitmap32.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <random>
#include <string>
#include <vector>

// Bitmaps as rows of letters, so that tests read as pictures, and bitmaps of random pixels.

namespace lmx::tests {

using TPicture = std::vector<std::string>;
using TLetters = std::map<TColor32, char>;

/// Each pixel as the letter of its colour; `?` for a colour without one.
inline TPicture Show(const TBitmap32& bitmap, const TLetters& letters) {
    TPicture rows;
    for (std::int32_t y = 0; y < bitmap.GetHeight(); ++y) {
        std::string& row = rows.emplace_back();
        for (std::int32_t x = 0; x < bitmap.GetWidth(); ++x) {
            const auto found = letters.find(bitmap.Pixel(x, y));
            row += found == letters.end() ? '?' : found->second;
        }
    }
    return rows;
}

inline std::vector<TColor32> Row(const TBitmap32& bitmap, std::int32_t y) {
    return {bitmap.ScanLine(y), bitmap.ScanLine(y) + bitmap.GetWidth()};
}

inline std::vector<TColor32> AllPixels(const TBitmap32& bitmap) {
    if (bitmap.IsEmpty())
        return {};
    return {bitmap.ScanLine(0),
            bitmap.ScanLine(0) + static_cast<std::ptrdiff_t>(bitmap.GetWidth()) * bitmap.GetHeight()};
}

/// One colour in which the alphas that follow special rules, 0 and 255, are frequent.
template<class Random>
TColor32 RandomColor(Random& random) {
    const auto color = static_cast<TColor32>(random());
    switch (random() % 4) {
    case 0:
        return color & 0x00FFFFFFU;
    case 1:
        return color | 0xFF000000U;
    default:
        return color;
    }
}

template<class Random>
TBitmap32 RandomBitmap(Random& random, std::int32_t width, std::int32_t height) {
    TBitmap32 bitmap(width, height);
    for (std::int32_t y = 0; y < height; ++y)
        for (std::int32_t x = 0; x < width; ++x)
            bitmap.Pixel(x, y) = RandomColor(random);
    return bitmap;
}

/// A number in [low, high].
template<class Random>
std::int32_t Between(Random& random, std::int32_t low, std::int32_t high) {
    return std::uniform_int_distribution<std::int32_t>(low, high)(random);
}

} // namespace lmx::tests
