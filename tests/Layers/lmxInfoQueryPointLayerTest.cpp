#include <lmx/Graphics/lmxPolygons.h>
#include <lmx/Layers/lmxInfoQueryPointLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxFormatSettings.h>
#include <tests/Graphics/Pictures.h>
#include <tests/Support/CoordinatePrinters.h>
#include <tests/Support/Printers.h>
#include <tests/Support/TestMap.h>

#include <gtest/gtest.h>

#include <array>
#include <memory>

namespace lmx {
namespace {

constexpr TColor32 Red = 0xFFFF0000;

// --- The marker --------------------------------------------------------------------------------------------------

/// A white bitmap with one marker whose tip is at (20, 30).
TBitmap32 Marker(bool softOutline, float size, float strokeWidth, double ratio = 1) {
    TBitmap32 bitmap(60, 60);
    bitmap.Clear(clWhite32);
    bitmap.SetDeviceRatio(ratio);
    InfoPointPaint({20, 30}, bitmap, Red, softOutline, size, strokeWidth);
    return bitmap;
}

/// The same from the polygon calls themselves.
TBitmap32 ExpectedMarker(double size, double strokeWidth, TColor32 outline) {
    TBitmap32 bitmap(60, 60);
    bitmap.Clear(clWhite32);
    const std::array<TFloatPoint, 3> triangle = {TFloatPoint{20, 30}, TFloatPoint{20 - size / 2, 30 - size},
                                                 TFloatPoint{20 + size / 2, 30 - size}};
    PolygonFS(bitmap, triangle, Red);
    if (strokeWidth > 0)
        PolylineFS(bitmap, triangle, outline, true, strokeWidth);
    return bitmap;
}

TEST(InfoPointPaint, DrawsATriangleThatStandsOnItsTip) {
    const TBitmap32 marker = Marker(true, 20, 0);
    EXPECT_EQ(marker.Pixel(20, 10), Red);       // the upper edge
    EXPECT_EQ(marker.Pixel(20, 9), clWhite32);  // nothing above it
    EXPECT_EQ(marker.Pixel(12, 11), Red);       // wide at the top
    EXPECT_EQ(marker.Pixel(12, 25), clWhite32); // narrow at the tip
    EXPECT_EQ(marker.Pixel(19, 26), Red);
    EXPECT_EQ(marker.Pixel(20, 30), clWhite32); // the tip is the pixel edge above
}

TEST(InfoPointPaint, AZeroWidthMeansNoOutline) {
    EXPECT_EQ(tests::AllPixels(Marker(true, 20, 0)), tests::AllPixels(ExpectedMarker(20, 0, 0)));
    EXPECT_EQ(tests::AllPixels(Marker(true, 20, 0.00005F)), tests::AllPixels(ExpectedMarker(20, 0, 0)));
}

TEST(InfoPointPaint, TheOutlineIsBlackOrTranslucent) {
    EXPECT_EQ(tests::AllPixels(Marker(false, 20, 3)), tests::AllPixels(ExpectedMarker(20, 3, 0xFF000000)));
    EXPECT_EQ(tests::AllPixels(Marker(true, 20, 3)), tests::AllPixels(ExpectedMarker(20, 3, 0x64000000)));
    EXPECT_EQ(Marker(false, 20, 3).Pixel(20, 9), clBlack32);
    EXPECT_EQ(Marker(true, 20, 3).Pixel(20, 9), 0xFF9B9B9BU); // 155 of white's 255
}

TEST(InfoPointPaint, NegativeMeansTheDefault) {
    EXPECT_EQ(tests::AllPixels(Marker(true, -1, 3)), tests::AllPixels(ExpectedMarker(20, 3, 0x64000000)));
    EXPECT_EQ(tests::AllPixels(Marker(true, 12, -0.5F)), tests::AllPixels(ExpectedMarker(12, 3, 0x64000000)));
}

TEST(InfoPointPaint, DefaultsKeepTheirSizeToTheEye) {
    EXPECT_EQ(tests::AllPixels(Marker(true, -1, -1, 1.5)), tests::AllPixels(ExpectedMarker(30, 4.5, 0x64000000)));
    EXPECT_EQ(tests::AllPixels(Marker(true, 20, 3, 1.5)), tests::AllPixels(ExpectedMarker(20, 3, 0x64000000)));
}

TEST(InfoPointPaint, AZeroSizeDrawsNothing) {
    EXPECT_EQ(tests::AllPixels(Marker(true, 0, 3)), std::vector<TColor32>(3600, clWhite32));
}

TEST(InfoPointPaint, IsClippedToTheBitmap) {
    TBitmap32 bitmap(10, 10);
    bitmap.Clear(clWhite32);
    for (const TMapPoint& outside : {TMapPoint(-100, 5), TMapPoint(5, 100), TMapPoint(1e25L, 1e25L)})
        InfoPointPaint(outside, bitmap, Red, true, -1, -1);
    EXPECT_EQ(tests::AllPixels(bitmap), std::vector<TColor32>(100, clWhite32));
    InfoPointPaint({5, 15}, bitmap, Red, true, -1, 0); // its tip is below
    EXPECT_EQ(bitmap.Pixel(5, 9), Red);
}

// --- A point -----------------------------------------------------------------------------------------------------

class InfoQueryPointLayer : public testing::Test {
protected:
    InfoQueryPointLayer() {
        FInvalidated = Layer->GetOnInvalidated().Add([this](TBaseMapLayer*) { ++Invalidations; });
        FAdded = Layer->GetOnAdded().Add([this](TInfoQueryPointLayer* sender, TInfoQueryPoint* point) {
            EXPECT_EQ(sender, Sender);
            Events += u'+' + point->GetPointLabel() + u' ';
        });
        FRemoved = Layer->GetOnRemoved().Add([this](TInfoQueryPointLayer* sender, TInfoQueryPoint* point) {
            EXPECT_EQ(sender, Sender);
            Events += u'-' + point->GetPointLabel() + u' ';
        });
    }

    TInfoQueryPoint* AddPoint(const TMapPoint& place, const QString& label = {}, TColor32 color = Red) {
        auto point = std::make_unique<TInfoQueryPoint>(Layer.get(), place, color);
        point->SetPointLabel(label);
        return Layer->GetPoints().Add(std::move(point));
    }

    std::shared_ptr<ILayerManager> Manager = TLayerManagerFactory::GetObject();
    std::unique_ptr<TInfoQueryPointLayer> Layer = std::make_unique<TInfoQueryPointLayer>(Manager);
    const TInfoQueryPointLayer* Sender = Layer.get();
    tests::TTestMap Map{60, 60};
    int Invalidations = 0;
    QString Events;

private:
    TSubscription FInvalidated;
    TSubscription FAdded;
    TSubscription FRemoved;
};

TEST(InfoQueryPoint, BeginsWithoutALayer) {
    const TInfoQueryPoint point;
    EXPECT_EQ(point.GetLayer(), nullptr);
    EXPECT_EQ(point.GetColor(), 0U);
    EXPECT_EQ(point.GetPoint(), TMapPoint(0, 0));
    EXPECT_EQ(point.GetPointLabel(), QString());
}

TEST(InfoQueryPoint, ShowsItsCoordinatesWithoutALabel) {
    TInfoQueryPoint point(nullptr, {174.7654321L, -36.8484L}, Red);
    const QChar decimal = TFormatSettings::Current().DecimalSeparator;
    EXPECT_EQ(point.GetLabelOrLocation(), QStringLiteral("174.765, -36.848").replace(u'.', decimal));
    point.SetPointLabel(QStringLiteral("Auckland"));
    EXPECT_EQ(point.GetLabelOrLocation(), QStringLiteral("Auckland"));
}

TEST(InfoQueryPoint, ChangesWithoutALayer) {
    TInfoQueryPoint point;
    point.SetColor(Red);
    point.SetPoint({1, 2});
    point.SetPointLabel(QStringLiteral("a"));
    EXPECT_EQ(point.GetColor(), Red);
    EXPECT_EQ(point.GetPoint(), TMapPoint(1, 2));
    EXPECT_EQ(point.GetPointLabel(), QStringLiteral("a"));
}

TEST_F(InfoQueryPointLayer, AChangedPointRepaintsItsLayer) {
    TInfoQueryPoint point(Layer.get(), {1, 2}, Red);
    EXPECT_EQ(point.GetLayer(), Layer.get());
    point.SetColor(Red);
    point.SetPoint({1, 2});
    point.SetPoint({1 + 1e-18L, 2}); // the same within the tolerance
    point.SetPointLabel(QString());
    EXPECT_EQ(Invalidations, 0);
    point.SetColor(clBlack32);
    EXPECT_EQ(Invalidations, 1);
    point.SetPoint({1, 3});
    EXPECT_EQ(Invalidations, 2);
    point.SetPointLabel(QStringLiteral("b"));
    EXPECT_EQ(Invalidations, 3);
}

TEST_F(InfoQueryPointLayer, APointOutlivesItsLayer) {
    TInfoQueryPoint point(Layer.get(), {1, 2}, Red);
    Layer.reset();
    EXPECT_EQ(point.GetLayer(), nullptr);
    point.SetColor(clBlack32);
    EXPECT_EQ(point.GetColor(), clBlack32);
}

// --- The layer ---------------------------------------------------------------------------------------------------

TEST_F(InfoQueryPointLayer, ItsNamesAreThoseOfDocuments) {
    EXPECT_EQ(Layer->GetLayerTypeName(), QStringLiteral("Info Query points"));
    EXPECT_EQ(Layer->GetLayerClassName(), QStringLiteral("InfoQueryPointLayer"));
    EXPECT_THROW(TInfoQueryPointLayer{nullptr}, EExArgumentNilException);
}

TEST_F(InfoQueryPointLayer, TellsOfPointsThatComeAndGo) {
    TInfoQueryPoint* first = AddPoint({1, 2}, QStringLiteral("a"));
    TInfoQueryPoint* second = AddPoint({3, 4}, QStringLiteral("b"));
    Invalidations = 0;
    Layer->GetPoints().Remove(first);
    EXPECT_EQ(Invalidations, 1);
    const std::unique_ptr<TInfoQueryPoint> extracted = Layer->GetPoints().Extract(second);
    EXPECT_EQ(Invalidations, 2);
    EXPECT_EQ(Events, QStringLiteral("+a +b -a -b "));
    AddPoint({5, 6}, QStringLiteral("c"));
    EXPECT_EQ(Invalidations, 4); // its label, then its coming
}

TEST_F(InfoQueryPointLayer, OnesBehindASubscriberThatRemovesAPointAreNotToldThatItCame) {
    TInfoQueryPointLayer layer(Manager);
    const TSubscription refuse = layer.GetOnAdded().Add(
        [](TInfoQueryPointLayer* sender, TInfoQueryPoint* point) { sender->GetPoints().Remove(point); });
    int told = 0;
    const TSubscription count = layer.GetOnAdded().Add([&](TInfoQueryPointLayer*, TInfoQueryPoint*) { ++told; });
    EXPECT_EQ(layer.GetPoints().Add(std::make_unique<TInfoQueryPoint>()), nullptr);
    EXPECT_EQ(told, 0);
}

TEST_F(InfoQueryPointLayer, ItsEndTellsOfEveryPoint) {
    AddPoint({1, 2}, QStringLiteral("a"));
    AddPoint({3, 4}, QStringLiteral("b"));
    Events.clear();
    Layer.reset();
    EXPECT_EQ(Events, QStringLiteral("-a -b "));
}

TEST_F(InfoQueryPointLayer, ASubscriberMayDestroyTheLayer) {
    TInfoQueryPoint* point = AddPoint({1, 2});
    const auto removed = Layer->GetOnRemoved().Add([this](TInfoQueryPointLayer*, TInfoQueryPoint*) { Layer.reset(); });
    Layer->GetPoints().Remove(point);
    EXPECT_EQ(Layer, nullptr);
}

TEST_F(InfoQueryPointLayer, ASubscriberMayDestroyTheLayerThatGetsAPoint) {
    const auto added = Layer->GetOnAdded().Add([this](TInfoQueryPointLayer*, TInfoQueryPoint*) { Layer.reset(); });
    EXPECT_EQ(AddPoint({1, 2}), nullptr);
    EXPECT_EQ(Layer, nullptr);
}

TEST_F(InfoQueryPointLayer, PaintsEachPointAsAMarkerOfTheDefaultForm) {
    AddPoint({-160, 60});
    Layer->Paint(&Map.World, &Map.Viewport, Map.Bitmap);
    EXPECT_EQ(tests::AllPixels(Map.Bitmap), tests::AllPixels(ExpectedMarker(20, 3, 0x64000000)));
}

TEST_F(InfoQueryPointLayer, ALaterPointLiesOnAnEarlierOne) {
    AddPoint({-160, 60}, {}, Red);
    AddPoint({-160, 60}, {}, 0xFF0000FF);
    Layer->Paint(&Map.World, &Map.Viewport, Map.Bitmap);
    EXPECT_EQ(Map.Bitmap.Pixel(20, 15), 0xFF0000FFU);
}

} // namespace
} // namespace lmx
