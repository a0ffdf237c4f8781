#include <lmx/Layers/Render/lmxBufferedBitmap.h>
#include <tests/Support/CoordinatePrinters.h>

#include <gtest/gtest.h>

namespace lmx {
namespace {

TEST(BufferedBitmap, BeginsTransparentWithItsSizeAndArea) {
    const auto buffered = CreateBufferedBitmap({3, 2}, {1, 4, 3, 2});
    EXPECT_EQ(buffered->MapArea, TMapArea(1, 4, 3, 2));
    EXPECT_EQ(buffered->Bitmap.GetWidth(), 3);
    EXPECT_EQ(buffered->Bitmap.GetHeight(), 2);
    EXPECT_EQ(buffered->Bitmap.GetDrawMode(), TDrawMode::dmTransparent);
    EXPECT_EQ(static_cast<int>(buffered->Bitmap.GetDrawMode()), 3);
    for (int y = 0; y < 2; ++y)
        for (int x = 0; x < 3; ++x)
            EXPECT_EQ(buffered->Bitmap.Pixel(x, y), Color32(0, 0, 0, 0));
}

} // namespace
} // namespace lmx
