#include <lmx/Colour/Steps/Private/lmxColorPieceTable.h>
#include <lmx/Colour/Steps/Private/lmxGradientPosition.h>
#include <lmx/Graphics/lmxGradient.h>
#include <tests/Colour/StepwiseChecks.h>

#include <gtest/gtest.h>

namespace lmx {
namespace {

constexpr float Inf = std::numeric_limits<float>::infinity();

std::vector<TColor32> ColorsOf(const TColorPieces& pieces, const std::vector<float>& values, float opacity = 1) {
    const TColorPieceTable table(pieces, TLayerOpacity(opacity));
    std::vector<TColor32> colors(values.size());
    for (std::size_t at = 0; at < values.size(); at += TColorTable::BlockSize) {
        const std::size_t count = std::min(TColorTable::BlockSize, values.size() - at);
        table.GetColors(std::span(values).subspan(at, count), colors.data() + at);
    }
    return colors;
}

TEST(ColorPieceTable, OnePieceIsTheColorOfEverything) {
    EXPECT_EQ(ColorsOf(TColorPieces(7), {0, -Inf, Inf, std::nanf(""), 1e-40F, -1e38F}), std::vector<TColor32>(6, 7));
}

TEST(ColorPieceTable, TellsWhatIsNoNumberFromTheFirstPiece) {
    TColorPieces pieces(5);
    pieces.Add(-Inf, TColorPiece::Of(6));
    EXPECT_EQ(ColorsOf(pieces, {std::nanf(""), -Inf, 0}), (std::vector<TColor32>{5, 6, 6}));
    pieces.Add(3, TColorPiece::Of(8));
    EXPECT_EQ(ColorsOf(pieces, {std::nanf(""), -Inf, 0, 3}), (std::vector<TColor32>{5, 6, 6, 8}));
}

TEST(ColorPieceTable, FadesItsColors) {
    TColorPieces pieces(0x80000001U);
    pieces.Add(5, TColorPiece::Of(0xFF000002U));
    EXPECT_EQ(ColorsOf(pieces, {4, 5}, 0.5F), (std::vector<TColor32>{0x40000001U, 0x80000002U}));
}

TEST(ColorPieceTable, FadesAsTheLayerOpacityDoes) {
    TColorPieces pieces(0x00102030U);
    std::vector<float> values = {-1};
    for (int alpha = 1; alpha < 256; ++alpha) {
        values.push_back(static_cast<float>(alpha));
        pieces.Add(values.back(), TColorPiece::Of(static_cast<TColor32>(alpha) << 24 | 0x00FF2000U));
    }
    for (int layerAlpha = 0; layerAlpha < 256; ++layerAlpha) {
        const float opacity = static_cast<float>(layerAlpha) / 255;
        const std::vector<TColor32> colors = ColorsOf(pieces, values, opacity);
        for (std::size_t i = 0; i < values.size(); ++i)
            ASSERT_EQ(colors[i], TLayerOpacity(opacity).Fade(pieces.GetLooks()[i].From)) << layerAlpha << ", " << i;
    }
}

// A quotient next to the middle between two positions must be rounded as the exact one is. Two stops so close that
// each position between them has another step show it.
TEST(ColorPieceTable, RoundsPositionsAsTheDefinitionDoes) {
    constexpr double From = 0.5;
    constexpr double To = 0.5 + GradientSteps * 0x1p-24;
    for (const auto& [min, max] : {std::pair(1.0F, 3.0F), std::pair(0.0F, 7.0F), std::pair(-1.0F, 5.0F),
                                   std::pair(3.0F, 1e-3F), std::pair(0x1p-25F, 4.0F), std::pair(-3e-30F, 7e-30F)}) {
        const TColorPiece piece = {min, max, From, GradientSteps / (To - From), 0xFF000000U, 0xFFFFFFFFU};
        TColorPieces pieces(0);
        pieces.Add(-Inf, piece);
        tests::TRandom random(3);
        std::vector<float> values;
        for (int i = 0; i < 100000; ++i)
            values.push_back(
                static_cast<float>(min + (static_cast<double>(max) - min) * (From + random.Unit() * (To - From))));
        const std::vector<TColor32> colors = ColorsOf(pieces, values);
        for (std::size_t i = 0; i < values.size(); ++i) {
            const int step = GradientStep(std::max<double>(GradientPosition(values[i], min, max), From), From, To);
            ASSERT_EQ(colors[i], ColorBetween(piece.From, piece.To, step)) << std::hexfloat << values[i];
        }
    }
}

TEST(ColorPieceTable, FindsPiecesThatCrowd) {
    TColorPieces pieces(1);
    std::vector<float> starts = {-1e30F, -1};
    for (int i = 0; i < 5000; ++i)
        starts.push_back(1 + static_cast<float>(i) * 0x1p-23F);
    starts.insert(starts.end(), {2, 1e30F, Inf});
    TColor32 color = 1;
    for (float start : starts)
        pieces.Add(start, TColorPiece::Of(++color));
    std::vector<float> values;
    for (float start : starts)
        values.insert(values.end(), {start, std::nextafter(start, Inf), std::nextafter(start, -Inf)});
    const std::vector<TColor32> colors = ColorsOf(pieces, values);
    for (std::size_t i = 0; i < values.size(); ++i) {
        const auto reached = std::upper_bound(starts.begin(), starts.end(), values[i]) - starts.begin();
        ASSERT_EQ(colors[i], 1U + static_cast<TColor32>(reached)) << std::hexfloat << values[i];
    }
}

} // namespace
} // namespace lmx
