#include "MeasureMode.h"

#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Runtime/lmxFormatSettings.h>
#include <tests/Support/Printers.h>
#include <tests/Support/ShownView.h>
#include <tests/Support/TestMap.h>

#include <gtest/gtest.h>

namespace lmx {
namespace {

TEST(DistanceOnEarth, IsThatOfTheGreatCircle) {
    EXPECT_EQ(DistanceOnEarth({10, 20}, {10, 20}), 0);
    EXPECT_NEAR(DistanceOnEarth({0, 0}, {1, 0}), 111.195, 0.001);
    EXPECT_NEAR(DistanceOnEarth({0, 90}, {123, -90}), 20015.115, 0.001);     // from pole to pole
    EXPECT_NEAR(DistanceOnEarth({-0.1167, 51.5}, {-73.98, 40.75}), 5568, 3); // London to New York
    EXPECT_NEAR(DistanceOnEarth({179, 0}, {-179, 0}), 222.390, 0.001);       // over the date line
    EXPECT_NEAR(DistanceOnEarth({0, 0}, {0, 1e-6}), 0.000111195, 0.000000001);
}

TEST(PlaceOnWay, FollowsTheGreatCircle) {
    const TMapPoint middle = PlaceOnWay({-60, 60}, {60, 60}, 0.5);
    EXPECT_NEAR(static_cast<double>(middle.X), 0, 1e-9);
    EXPECT_NEAR(static_cast<double>(middle.Y), 73.897886, 1e-6); // atan(2 sqrt 3), far north of both
    const TMapPoint end = PlaceOnWay({10, 20}, {30, -40}, 1);
    EXPECT_NEAR(static_cast<double>(end.X), 30, 1e-9);
    EXPECT_NEAR(static_cast<double>(end.Y), -40, 1e-9);
    EXPECT_EQ(PlaceOnWay({10, 20}, {10, 20}, 0.3), TMapPoint(10, 20));
}

TEST(WayLayer, LeavesTheMiddleOfTheMapFreeWhereItCrossesTheSeam) {
    const auto manager = TLayerManagerFactory::GetObject();
    TWayLayer layer(manager);
    tests::TTestMap map{360, 180};
    layer.SetWay({170, 10}, {-170, 10});
    layer.Paint(&map.World, &map.Viewport, map.Bitmap);
    for (int y = 0; y < 180; ++y)
        for (int x = 30; x < 330; ++x)
            ASSERT_EQ(map.Bitmap.Pixel(x, y), clWhite32) << x << ',' << y;
    EXPECT_EQ(map.Bitmap.Pixel(350, 80), 0xFFB01E5AU); // its ends
    EXPECT_EQ(map.Bitmap.Pixel(10, 80), 0xFFB01E5AU);
    EXPECT_FALSE(layer.GetShowsInLayersList());
}

TEST(MeasureMode, MeasuresADragAndStaysOnTop) {
    const TFormatSettingsScope point{TFormatSettings{u'.'}};
    QString told;
    tests::TShownView shown;
    shown.AddReadyLayer();
    shown.View.GetViewport()->SetTranslation({0, 0}); // 180 west, 90 north at the top left, a pixel a degree
    shown.View.SetCustomModeObject(std::make_shared<TMeasureMode>([&](const QString& length) { told = length; }));
    shown.View.SetMode(TMapMode::mdCustom);
    EXPECT_EQ(shown.View.cursor().shape(), Qt::CrossCursor);
    shown.Move({5, 5});
    EXPECT_EQ(told, QString());
    EXPECT_EQ(shown.Manager->GetLayers().Count(), 1);
    shown.Press(Qt::LeftButton, {20, 90});
    EXPECT_EQ(told, QStringLiteral("0 km"));
    ASSERT_EQ(shown.Manager->GetLayers().Count(), 2);
    shown.Move({30, 90});
    EXPECT_EQ(told, QStringLiteral("1112 km")); // ten degrees of the equator
    shown.Release(Qt::LeftButton, {30, 90});
    shown.Move({80, 90});
    EXPECT_EQ(told, QStringLiteral("1112 km"));
    EXPECT_EQ(shown.PixelAt(25, 90), 0xFFB01E5AU);

    const TBaseMapLayer* way = shown.Manager->GetLayers()[1];
    shown.AddReadyLayer();
    shown.Drag({20, 90}, {21, 90});
    EXPECT_EQ(shown.Manager->GetLayers().Count(), 3);
    EXPECT_EQ(shown.Manager->GetLayers()[2], way);
    shown.Manager->GetLayers().Remove(way);
    shown.Drag({20, 90}, {22, 90}); // makes another one
    EXPECT_EQ(told, QStringLiteral("222 km"));
    EXPECT_EQ(shown.Manager->GetLayers().Count(), 3);
}

} // namespace
} // namespace lmx
