#pragma once

#include <lmx/Colour/Steps/Private/lmxColorPieceTable.h>
#include <lmx/Colour/Steps/Private/lmxLayerOpacity.h>
#include <lmx/Colour/Steps/Private/lmxStepwiseColorCalculator.h>
#include <lmx/Colour/lmxBaseColorCalculator.h>
#include <lmx/Colour/lmxBitmap32RasterRenderer.h>
#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <tests/Colour/RasterFakes.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <span>
#include <vector>

// Whether the colours that a calculator tells in advance are those that it gives when asked.

namespace lmx::tests {

/// The same numbers in each run.
class TRandom {
public:
    explicit TRandom(std::uint32_t seed) : FEngine(seed) {}
    std::uint32_t Bits() { return static_cast<std::uint32_t>(FEngine()); }
    int Below(int count) { return static_cast<int>(Bits() % static_cast<std::uint32_t>(count)); }
    double Unit() { return Bits() / 0x1p32; } ///< 0 to 1

private:
    std::mt19937 FEngine;
};

/// Values where a rounding could show: the ends of the range, all starts of steps, the ends of the floats, each with
/// its neighbours; then `count` values of the range and a little beyond, and as many floats of any bits.
inline std::vector<float> TellingValues(const IBaseMinMaxColorCalculator& calculator, const TColorSteps* steps,
                                        int count, std::uint32_t seed) {
    constexpr float Inf = std::numeric_limits<float>::infinity();
    std::vector<float> centres = {0,
                                  Inf,
                                  -Inf,
                                  std::numeric_limits<float>::max(),
                                  std::numeric_limits<float>::lowest(),
                                  std::numeric_limits<float>::min(),
                                  -std::numeric_limits<float>::min(),
                                  calculator.GetMinVal(),
                                  calculator.GetMaxVal()};
    if (steps)
        centres.insert(centres.end(), steps->GetStarts().begin(), steps->GetStarts().end());
    std::vector<float> values = {-0.0F, std::nanf(""), -std::nanf("")};
    for (float centre : centres)
        values.insert(values.end(), {centre, std::nextafter(centre, Inf), std::nextafter(centre, -Inf)});
    TRandom random(seed);
    const double low = calculator.GetMinVal();
    const double size = static_cast<double>(calculator.GetMaxVal()) - low;
    for (int i = 0; i < count; ++i) {
        values.push_back(static_cast<float>(low + size * (1.06 * random.Unit() - 0.03)));
        values.push_back(std::bit_cast<float>(random.Bits()));
    }
    return values;
}

/// Renders the values with the calculator and compares each pixel with the calculator's own answer.
inline void ExpectTheCalculatorsColors(const IBaseColorCalculator& calculator, const std::vector<float>& values) {
    const auto count = static_cast<std::int32_t>(values.size());
    const TTestCookieData cookie(count, 1);
    const TTestMapData data(count, 1, values);
    const auto picture = TBitmap32RasterRenderer().Render(&cookie, &data, 1, &calculator);
    for (std::int32_t x = 0; x < count; ++x) {
        const float value = values[static_cast<std::size_t>(x)];
        ASSERT_EQ(picture->ScanLine(0)[x], calculator.GetColor(value)) << std::hexfloat << value;
    }
}

/// Compares the colours that the calculator's pieces give to values with its own answers.
inline void ExpectPiecesWithTheCalculatorsColors(const IBaseColorCalculator& calculator,
                                                 const std::vector<float>& values) {
    const auto pieces = dynamic_cast<const TStepwiseColorCalculator&>(calculator).GetColorPieces();
    ASSERT_NE(pieces, nullptr);
    const TColorPieceTable table(*pieces, TLayerOpacity(1));
    std::vector<TColor32> colors(TColorTable::BlockSize);
    for (std::size_t at = 0; at < values.size(); at += colors.size()) {
        const auto block = std::span(values).subspan(at, std::min(colors.size(), values.size() - at));
        table.GetColors(block, colors.data());
        for (std::size_t i = 0; i < block.size(); ++i)
            ASSERT_EQ(colors[i], calculator.GetColor(block[i])) << std::hexfloat << block[i];
    }
}

/// As above, for a calculator that must be able to tell its colours; a gradient in both ways.
inline void ExpectStepsWithTheCalculatorsColors(const IBaseMinMaxColorCalculator& calculator, int count,
                                                std::uint32_t seed) {
    const auto steps = dynamic_cast<const TStepwiseColorCalculator&>(calculator).GetColorSteps();
    ASSERT_NE(steps, nullptr);
    const std::vector<float> values = TellingValues(calculator, &*steps, count, seed);
    ExpectTheCalculatorsColors(calculator, values);
    if (dynamic_cast<const IGradientColorCalculator*>(&calculator))
        ExpectPiecesWithTheCalculatorsColors(calculator, values);
}

} // namespace lmx::tests
