#include <lmx/Colour/Steps/Private/lmxLayerOpacity.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace lmx {
namespace {

struct TAlphaRow {
    float Opacity;
    int LayerAlpha;
};

class LayerAlpha : public testing::TestWithParam<TAlphaRow> {};

TEST_P(LayerAlpha, FollowsTheOpacity) {
    EXPECT_EQ(TLayerOpacity(GetParam().Opacity).GetLayerAlpha(), GetParam().LayerAlpha);
}

constexpr float Inf = std::numeric_limits<float>::infinity();

INSTANTIATE_TEST_SUITE_P(
    Opacities, LayerAlpha,
    testing::Values(TAlphaRow{0.0098039219F, 3}, // 2.50000009, which a single product rounds to 2.5
                    TAlphaRow{0, 0}, TAlphaRow{-0.0F, 0}, TAlphaRow{1, 255}, TAlphaRow{0.5F, 128}, // 127.5 ties to even
                    TAlphaRow{0.1F, 26}, // the single above 0.1: 25.5000004
                    TAlphaRow{0.25F, 64}, TAlphaRow{1.5F, 255}, TAlphaRow{Inf, 255}, TAlphaRow{-0.1F, 0},
                    TAlphaRow{-Inf, 0}, TAlphaRow{std::nanf(""), 0}, TAlphaRow{1e-40F, 0}));

TEST(LayerOpacity, ScalesTheAlphaAndKeepsTheColor) {
    EXPECT_EQ(TLayerOpacity(0.5F).Fade(0xFF123456U), 0x80123456U);
    EXPECT_EQ(TLayerOpacity(0).Fade(0xFF123456U), 0x00123456U);
    EXPECT_EQ(TLayerOpacity(0.5F).Fade(0x01123456U), 0x01123456U);         // 0.50196 rounds up
    EXPECT_EQ(TLayerOpacity(127 / 255.0F).Fade(0x01123456U), 0x00123456U); // 0.49804
    EXPECT_EQ(TLayerOpacity(1).Fade(0x00123456U), 0x00123456U);
}

TEST(LayerOpacity, FullOpacityChangesNothing) {
    const TLayerOpacity opacity(1);
    for (TColor32 alpha = 0; alpha < 256; ++alpha)
        EXPECT_EQ(opacity.Fade(alpha << 24 | 0x00ABCDEFU), alpha << 24 | 0x00ABCDEFU);
}

TEST(LayerOpacity, RoundsEveryProductToTheNearest) {
    for (int layerAlpha = 0; layerAlpha < 256; ++layerAlpha) {
        const TLayerOpacity opacity(static_cast<float>(layerAlpha) / 255);
        ASSERT_EQ(opacity.GetLayerAlpha(), layerAlpha);
        for (int alpha = 0; alpha < 256; ++alpha)
            EXPECT_EQ(opacity.Fade(static_cast<TColor32>(alpha) << 24) >> 24,
                      static_cast<TColor32>(std::nearbyint(alpha * layerAlpha / 255.0)));
    }
}

} // namespace
} // namespace lmx
