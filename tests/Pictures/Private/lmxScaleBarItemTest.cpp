#include <lmx/Coordinates/wskWorld.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Layers/lmxObjectMapLayer.h>
#include <lmx/Pictures/Private/lmxScaleBarItem.h>
#include <lmx/Runtime/lmxNumberText.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace lmx {
namespace {

TEST(ScaleBarItem, KnowsTheMetresOfAMapUnit) {
    const auto world = TLatLonWorldSystemFactory::GetObject();
    EXPECT_NEAR(TScaleBarItem::MetresPerUnit(*world, 0), 111195.08, 0.01); // 6371008.8 m * pi / 180
    EXPECT_NEAR(TScaleBarItem::MetresPerUnit(*world, 60), 111195.08 / 2, 0.01);
    EXPECT_NEAR(TScaleBarItem::MetresPerUnit(*world, -60), 111195.08 / 2, 0.01);
    for (const double pole : {90.0, -90.0, 100.0, std::numeric_limits<double>::quiet_NaN()})
        EXPECT_EQ(TScaleBarItem::MetresPerUnit(*world, pole), 0) << pole;
    EXPECT_EQ(TScaleBarItem::MetresPerUnit(*TNZMGWorldSystemFactory::GetObject(), 6e6), 1);
}

TEST(ScaleBarItem, IsOfARoundLength) {
    for (const auto& [length, round] : {std::pair(999.9, 500.0),
                                        {1000, 1000},
                                        {1999, 1000},
                                        {2000, 2000},
                                        {0.49, 0.2},
                                        {0.5, 0.5},
                                        {7e6, 5e6},
                                        {1e-3, 1e-3},
                                        {4.99e9, 2e9}})
        EXPECT_NEAR(TScaleBarItem::RoundLength(length), round, round * 1e-12) << length;
    for (const double none :
         {0.0, -5.0, std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()})
        EXPECT_EQ(TScaleBarItem::RoundLength(none), 0);
    EXPECT_EQ(TScaleBarItem::LengthText(500), "500 m");
    EXPECT_EQ(TScaleBarItem::LengthText(1000), "1 km");
    EXPECT_EQ(TScaleBarItem::LengthText(5e6), "5000 km");
    EXPECT_EQ(TScaleBarItem::LengthText(0.5), FloatToStr(0.5) + " m");
}

TEST(ScaleBarItem, IsAsLongAsItSays) {
    const auto manager = TLayerManagerFactory::GetObject();
    TObjectMapLayer objects(manager, false);
    TWorld world(TNZMGWorldSystemFactory::GetObject());
    TWorldViewport viewport(&world);
    viewport.SetViewSize({400, 400});
    viewport.SetScale(0.013L); // pixels in a metre: 100 pixels are 7692 m, and the bar has 5000 m
    viewport.SetCenter(world.GetWorldSystem()->Area().GetCenter());
    TScaleBarItem item(&objects);
    item.SetRect({10, 10, 110, 40});
    TBitmap32 bitmap(200, 60);
    bitmap.Clear(clWhite32);
    item.Paint(&world, &viewport, bitmap);
    EXPECT_EQ(bitmap.Pixel(9, 10), clWhite32);
    EXPECT_NE(bitmap.Pixel(10, 10), clWhite32);
    EXPECT_NE(bitmap.Pixel(74, 10), clWhite32); // 65 pixels
    EXPECT_EQ(bitmap.Pixel(75, 10), clWhite32);
    EXPECT_NE(bitmap.Pixel(74, 12), clWhite32); // the last, light part has an edge
    EXPECT_EQ(item.GetObjectType(), "Scale bar");
    EXPECT_EQ(item.GetObjectClassType(), "");
}

TEST(ScaleBarItem, IsNoneAtThePole) {
    const auto manager = TLayerManagerFactory::GetObject();
    TObjectMapLayer objects(manager, false);
    TWorld world(TLatLonWorldSystemFactory::GetObject());
    TWorldViewport viewport(&world);
    viewport.SetViewSize({100, 100});
    viewport.SetCenter({0, 90});
    TScaleBarItem item(&objects);
    item.SetRect({0, 0, 100, 40});
    TBitmap32 bitmap(100, 100);
    bitmap.Clear(clWhite32);
    item.Paint(&world, &viewport, bitmap);
    for (int x = 0; x < 100; ++x)
        EXPECT_EQ(bitmap.Pixel(x, 2), clWhite32);
}

} // namespace
} // namespace lmx
