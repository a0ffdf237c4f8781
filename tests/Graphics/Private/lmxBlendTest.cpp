#include <lmx/Graphics/Private/lmxBlend.h>

#include <gtest/gtest.h>

#include <cmath>

namespace lmx {
namespace {

TEST(ScaleAlpha, RoundsTheProduct) {
    for (unsigned alpha = 0; alpha < 256; ++alpha)
        for (unsigned factor = 0; factor < 256; ++factor)
            ASSERT_EQ(ScaleAlpha(alpha, factor), std::nearbyint(alpha * factor / 255.0)) << alpha << ' ' << factor;
}

TEST(BlendColor, RoundsEachChannelExactly) {
    for (unsigned alpha = 1; alpha < 255; ++alpha)
        for (unsigned over = 0; over < 256; over += 5)
            for (unsigned under = 0; under < 256; ++under) {
                const TColor32 result = BlendColor(alpha << 24 | over << 8, 0x10000000U | under << 8);
                const double exact = (over * alpha + under * (255.0 - alpha)) / 255;
                ASSERT_EQ(GreenComponent(result), std::floor(exact + 127 / 255.0 + 1e-9));
                ASSERT_EQ(AlphaComponent(result), 255);
            }
}

TEST(BlendColor, SpecialAlphas) {
    EXPECT_EQ(BlendColor(0x00FFFFFFU, 0x12345678U), 0x12345678U) << "alpha 0 leaves the pixel, its alpha too";
    EXPECT_EQ(BlendColor(0xFF123456U, 0x00000000U), 0xFF123456U);
    EXPECT_EQ(BlendColor(0x80FFFFFFU, 0x00000000U), 0xFF808080U) << "a transparent pixel counts as opaque";
}

TEST(MergeColor, SpecialAlphas) {
    EXPECT_EQ(MergeColor(0x00FFFFFFU, 0x12345678U), 0x12345678U);
    EXPECT_EQ(MergeColor(0xFF123456U, 0x7F000000U), 0xFF123456U);
    EXPECT_EQ(MergeColor(0x40123456U, 0x00FFFFFFU), 0x40123456U) << "stored whole over a pixel of alpha 0";
}

TEST(MergeColor, OverAnOpaquePixelEqualsBlending) {
    for (unsigned alpha = 0; alpha < 256; ++alpha)
        for (unsigned channel = 0; channel < 256; channel += 3) {
            const TColor32 over = alpha << 24 | channel << 16 | (255 - channel) << 8 | channel / 2;
            ASSERT_EQ(MergeColor(over, 0xFF3C80F0U), BlendColor(over, 0xFF3C80F0U)) << std::hex << over;
        }
}

TEST(MergeColor, WeighsBothAlphas) {
    // (200 * 128 * 255 + 100 * 64 * 127) / (128 * 255 + 64 * 127) = 7340800 / 40768 = 180.06; 255 - 127 * 191 / 255
    EXPECT_EQ(MergeColor(0x80C80000U, 0x40640000U), 0xA0B40000U);
}

TEST(CombineColor, MovesAllFourChannels) {
    EXPECT_EQ(CombineColor(0xFFFFFFFFU, 0x00000000U, 0), 0x00000000U);
    EXPECT_EQ(CombineColor(0x12345678U, 0xFFFFFFFFU, CombineOne), 0x12345678U);
    EXPECT_EQ(CombineColor(0xFF00FF00U, 0x0000FF00U, CombineOne / 2), 0x8000FF00U) << "127.5 rounds up";
    EXPECT_EQ(CombineColor(0x00000000U, 0xFF000000U, CombineOne / 4), 0xBF000000U) << "191.25";
}

// By numbers of 64 bits, in which nothing can overflow.
TEST(CombineColor, RoundsHalfUpInEveryCase) {
    for (std::uint64_t over : {0, 1, 127, 128, 254, 255})
        for (std::uint64_t under = 0; under < 256; ++under)
            for (std::uint64_t weight : {0U, 1U, 255U, 65536U, CombineOne / 2 - 1, CombineOne / 2, CombineOne / 2 + 1,
                                         CombineOne - 65536U, CombineOne - 1, CombineOne}) {
                const std::uint64_t exact =
                    (2 * (over * weight + under * (CombineOne - weight)) + CombineOne) / (2 * CombineOne);
                const TColor32 color = CombineColor(static_cast<TColor32>(over), static_cast<TColor32>(under),
                                                    static_cast<std::uint32_t>(weight));
                ASSERT_EQ(color, exact) << over << " over " << under << " by " << weight;
            }
}

} // namespace
} // namespace lmx
