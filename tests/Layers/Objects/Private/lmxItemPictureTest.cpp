#include <lmx/Graphics/lmxPolygons.h>
#include <lmx/Layers/Objects/Private/lmxItemPicture.h>
#include <tests/Graphics/Pictures.h>
#include <tests/Support/GeometryPrinters.h>

#include <gtest/gtest.h>

#include <limits>

namespace lmx {
namespace {

using tests::AllPixels;

constexpr std::int32_t Most = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t Least = std::numeric_limits<std::int32_t>::min();

TEST(ItemPicture, InsetsSaturate) {
    EXPECT_EQ(InsetRect({10, 20, 30, 60}, 5), TRect(15, 25, 25, 55));
    EXPECT_EQ(InsetRect({10, 20, 12, 22}, 5), TRect(15, 25, 7, 17)); // turns over
    EXPECT_EQ(InsetRect({Most, Most, Least, Least}, 5), TRect(Most, Most, Least, Least));
}

TEST(ItemPicture, ARectangleIsItsPolygon) {
    for (const TCombineMode mode : {TCombineMode::cmBlend, TCombineMode::cmMerge})
        for (const TColor32 color : {0x80112233U, 0xFF445566U, 0x00FFFFFFU})
            for (const TRect& rect : {TRect(2, 3, 15, 9), TRect(15, 9, 2, 3), TRect(-5, -5, 40, 4), TRect(5, 3, 5, 9),
                                      TRect(15, 3, 2, 9), TRect(Least, Least, Most, Most)}) {
                TBitmap32 filled(20, 12);
                filled.Clear(0x40208040);
                filled.SetCombineMode(mode);
                TBitmap32 expected = filled;
                FillCorners(filled, rect, color);
                PolygonFS(expected, CornersOf(rect), color);
                EXPECT_EQ(AllPixels(filled), AllPixels(expected)) << testing::PrintToString(rect);
            }
}

TEST(ItemPicture, HoldsNoMoreThanIsSeen) {
    const TRect visible(0, 0, 200, 100);
    TItemPicture huge({-1000, -2000, 1000000000, 1000000000}, visible, 2, TDrawMode::dmBlend);
    EXPECT_TRUE(huge.IsSeen());
    const TPictureWindow picture = huge.GetPicture();
    EXPECT_EQ(picture.GetWidth(), 1000001000);
    EXPECT_EQ(picture.GetHeight(), 1000002000);
    EXPECT_EQ(picture.GetVisible(), TRect(1000, 2000, 1200, 2100));
    EXPECT_EQ(picture.GetBitmap().GetDeviceRatio(), 2);
    EXPECT_EQ(picture.GetBitmap().GetDrawMode(), TDrawMode::dmBlend);
    EXPECT_EQ(picture.GetBitmap().GetCombineMode(), TCombineMode::cmMerge);
    EXPECT_EQ(picture.GetBitmap().Pixel(7, 7), 0U);
    for (const TRect& unseen : {TRect(200, 0, 300, 50), TRect(50, 50, 50, 90), TRect(90, 90, 10, 10),
                                TRect(Least, Least, Least + 5, Least + 5), TRect(Most - 5, 0, Most, 10)})
        EXPECT_FALSE(TItemPicture(unseen, visible, 1, TDrawMode::dmBlend).IsSeen()) << testing::PrintToString(unseen);
}

TEST(ItemPicture, IsDrawnAtItsPlace) {
    TBitmap32 target(20, 12);
    target.Clear(clWhite32);
    TItemPicture picture({-3, 4, 6, 30}, target.GetBounds(), 1, TDrawMode::dmTransparent);
    picture.GetPicture().FillRectS({4, 1, 6, 3}, 0xFFFF0000);
    picture.DrawTo(target);
    TBitmap32 expected(20, 12);
    expected.Clear(clWhite32);
    expected.FillRectS(1, 5, 3, 7, 0xFFFF0000);
    EXPECT_EQ(AllPixels(target), AllPixels(expected));
}

} // namespace
} // namespace lmx
