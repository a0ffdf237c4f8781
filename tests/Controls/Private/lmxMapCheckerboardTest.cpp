#include <lmx/Controls/Private/lmxMapCheckerboard.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <tests/Support/GeometryPrinters.h>

#include <gtest/gtest.h>

namespace lmx {
namespace {

TEST(MapCheckerboard, HasNoPictureBeforeItsFirstPaint) {
    EXPECT_EQ(TMapCheckerboard().GetPictureSize(), TSize());
}

TEST(MapCheckerboard, CoversTheBitmap) {
    TMapCheckerboard board;
    TBitmap32 bitmap(20, 10);
    board.Paint(bitmap, 4);
    for (int y = 0; y < 10; ++y)
        for (int x = 0; x < 20; ++x)
            ASSERT_EQ(bitmap.Pixel(x, y), (x / 4 + y / 4) % 2 == 0 ? 0xFFFFFFFFU : 0xFFDCDCDCU) << x << ", " << y;
}

TEST(MapCheckerboard, GrowsToTwiceTheSizeAndNeverShrinks) {
    TMapCheckerboard board;
    const auto sizeAfter = [&](int width, int height) {
        TBitmap32 bitmap(width, height);
        board.Paint(bitmap, 8);
        return board.GetPictureSize();
    };
    EXPECT_EQ(sizeAfter(20, 10), TSize(40, 20));
    EXPECT_EQ(sizeAfter(5, 5), TSize(40, 20));
    EXPECT_EQ(sizeAfter(30, 15), TSize(40, 20));
    EXPECT_EQ(sizeAfter(40, 20), TSize(40, 20));
    EXPECT_EQ(sizeAfter(41, 10), TSize(82, 20));
    EXPECT_EQ(sizeAfter(10, 21), TSize(20, 42));
}

TEST(MapCheckerboard, IsDrawnAnewForOtherSquares) {
    TMapCheckerboard board;
    TBitmap32 bitmap(20, 10);
    board.Paint(bitmap, 8);
    board.Paint(bitmap, 2);
    EXPECT_EQ(bitmap.Pixel(2, 0), 0xFFDCDCDCU);
}

} // namespace
} // namespace lmx
