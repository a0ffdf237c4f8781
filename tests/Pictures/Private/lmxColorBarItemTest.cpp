#include <lmx/Pictures/Private/lmxColorBarItem.h>

#include <lmx/Coordinates/wskWorld.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Layers/lmxObjectMapLayer.h>
#include <tests/Pictures/PictureMap.h>
#include <tests/Support/Printers.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace lmx {
namespace {

using namespace tests;
using testing::DoubleNear;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pointwise;

TEST(ColorBarItem, IsMarkedAtRoundValues) {
    const auto values = &TColorBarItem::RoundValues;
    EXPECT_THAT(values(-0.92, 32.095, 11), ElementsAre(0, 5, 10, 15, 20, 25, 30));
    EXPECT_THAT(values(-2, 32, 5), ElementsAre(0, 10, 20, 30));
    EXPECT_THAT(values(0, 10, 11), ElementsAre(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10)); // the ends, too
    EXPECT_THAT(values(0.1, 0.3, 3), Pointwise(DoubleNear(1e-12), {0.1, 0.2, 0.3}));
    EXPECT_THAT(values(-3e-6, 1e-6, 4), Pointwise(DoubleNear(1e-18), {-2e-6, 0.0}));
    EXPECT_THAT(values(-1e6, 3e6, 6), ElementsAre(-1e6, 0, 1e6, 2e6, 3e6));
    EXPECT_FALSE(std::signbit(values(-10, 10, 5)[2]));
}

TEST(ColorBarItem, HasNoRoundValuesWithoutARange) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_THAT(TColorBarItem::RoundValues(1, 1, 5), IsEmpty());
    EXPECT_THAT(TColorBarItem::RoundValues(2, 1, 5), IsEmpty());
    EXPECT_THAT(TColorBarItem::RoundValues(nan, 1, 5), IsEmpty());
    EXPECT_THAT(TColorBarItem::RoundValues(0, infinity, 5), IsEmpty());
    EXPECT_THAT(TColorBarItem::RoundValues(0, 1, 1), IsEmpty());
    EXPECT_THAT(TColorBarItem::RoundValues(3, 4.9, 2), ElementsAre(3, 4));
    EXPECT_THAT(TColorBarItem::RoundValues(7, 9, 2), IsEmpty()); // 8 alone
}

// The bar is 20 units wide, and its ticks stand where their values lie.
TEST(ColorBarItem, TicksStandAtTheirValues) {
    TPictureMap map;
    TObjectMapLayer objects(map.Manager, false);
    TWorld world(TLatLonWorldSystemFactory::GetObject());
    TWorldViewport viewport(&world);
    map.Raster->SetColorCalc(TGradientColorCalculatorFactory::GetObject(
        0, 100, TGradientFactory::GetObject({{0, TPictureMap::West}, {1, TPictureMap::East}})));
    TColorBarItem item(&objects, *map.Raster);
    item.SetRect({10, 10, 110, 111}); // a pixel each
    TBitmap32 bitmap(120, 120);
    bitmap.Clear(clWhite32);
    item.Paint(&world, &viewport, bitmap);
    EXPECT_EQ(item.GetObjectType(), "Color bar");
    EXPECT_EQ(item.GetObjectClassType(), "");
    std::vector<int> ticks;
    for (int y = 0; y < 120; ++y)
        if (bitmap.Pixel(32, y) != clWhite32)
            ticks.push_back(110 - y);
    EXPECT_THAT(ticks, ElementsAre(100, 50, 0));
    EXPECT_NEAR(int(bitmap.Pixel(20, 12) >> 16 & 255), 250, 5);
    EXPECT_NEAR(int(bitmap.Pixel(20, 60) >> 16 & 255), 127, 3);
    EXPECT_NEAR(int(bitmap.Pixel(20, 108) & 255), 250, 5);
    map.Raster->SetColorCalc(nullptr);
    bitmap.Clear(clWhite32);
    item.Paint(&world, &viewport, bitmap);
    EXPECT_EQ(bitmap.Pixel(20, 60), clWhite32);
}

} // namespace
} // namespace lmx
