#include <lmx/Coordinates/wskWorld.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Layers/Objects/lmxTextBoxObjectLayerItem.h>
#include <lmx/Layers/lmxLayerStackPainter.h>
#include <lmx/Layers/lmxObjectMapLayer.h>
#include <lmx/Layers/lmxRulerMapLayer.h>
#include <tests/Pictures/PictureMap.h>
#include <tests/Support/Printers.h>
#include <tests/Support/ShownView.h>
#include <tests/Support/TestLayer.h>
#include <tests/Support/Threads.h>

#include <QTimer>

#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>

namespace lmx {
namespace {

using namespace tests;

class MapPicture : public testing::Test {
protected:
    void TearDown() override { EXPECT_TRUE(PumpUntilRendersEnd()); }

    TMapPictureOptions Options = TPictureMap::Plain();
    TPictureMap FMap;
};

bool IsSame(const TBitmap32& a, const TBitmap32& b) {
    return a.ToQImage() == b.ToQImage();
}

TEST_F(MapPicture, WithoutAnythingAroundIsTheStackItself) {
    const TBitmap32 picture = FMap.Picture(Options).Paint();
    TWorld world(TLatLonWorldSystemFactory::GetObject());
    TWorldViewport viewport(&world);
    viewport.SetViewSize({360, 180});
    viewport.ZoomTo(world.GetWorldSystem()->Area());
    TBitmap32 stack(360, 180);
    stack.Clear(clWhite32);
    PaintLayerStack(FMap.Manager, viewport, stack);
    EXPECT_TRUE(IsSame(picture, stack));
    EXPECT_EQ(picture.Pixel(90, 90), TPictureMap::West);
    EXPECT_EQ(picture.Pixel(270, 90), TPictureMap::East);
}

TEST_F(MapPicture, HasTheSizeInUnitsTimesTheDensity) {
    Options.Density = 2.5;
    double ratio = 0;
    auto layer = std::make_unique<TTestLayer>(FMap.Manager);
    layer->SetIsReadyToDraw(true);
    layer->OnPaint = [&](TWorld*, TWorldViewport* viewport, TBitmap32& bitmap) {
        ratio = bitmap.GetDeviceRatio();
        EXPECT_EQ(viewport->GetViewSize(), TSize(900, 450));
    };
    FMap.Manager->GetLayers().Add(std::move(layer));
    const TBitmap32 picture = FMap.Picture(Options).Paint();
    EXPECT_EQ(picture.GetWidth(), 900);
    EXPECT_EQ(picture.GetHeight(), 450);
    EXPECT_EQ(ratio, 2.5); // what marks of a fixed size go by
}

TEST_F(MapPicture, ShowsAnAreaOrAPlace) {
    Options.Area = TMapArea(-90, 45, 90, -45);
    TMapPictureDescription seen = FMap.Picture(Options).Describe();
    EXPECT_EQ(seen.Extent, TMapArea(-90, 45, 90, -45));
    Options.Place = TMapPicturePlace{{10, 20}, 4}; // a place counts more
    Options.Density = 2;
    seen = FMap.Picture(Options).Describe();
    EXPECT_EQ(seen.Extent, TMapArea(-35, 42.5L, 55, -2.5L));
    EXPECT_EQ(seen.Pixels, TSize(720, 360));
    Options.Place = TMapPicturePlace{{180, 0}, 1};
    EXPECT_EQ(FMap.Picture(Options).Describe().Extent, TMapArea(0, 90, 180, -90)); // no more than the world has
}

TEST_F(MapPicture, WaitsForWhatIsDrawnInTheBackground) {
    TTestBufferedLayer* coast = FMap.AddBuffered(QStringLiteral("Coast"));
    coast->Script->IsOpen = false;
    QTimer::singleShot(50, [script = coast->Script] { script->IsOpen = true; });
    const TBitmap32 picture = FMap.Picture(Options).Paint();
    EXPECT_EQ(picture.Pixel(7, 5), TPictureMap::Drawn + 507);
    EXPECT_EQ(coast->Renders, 1);
}

TEST_F(MapPicture, SaysWhichLayerIsNotReadyInTime) {
    TTestBufferedLayer* coast = FMap.AddBuffered(QStringLiteral("Coast"));
    coast->Script->IsOpen = false;
    Options.TimeLimit = 50;
    EXPECT_EQ(MessageOf<EMapPictureTimeLimit>([&] { FMap.Picture(Options).Paint(); }),
              QStringLiteral("The picture was not ready within 0") + TFormatSettings::Current().DecimalSeparator +
                  QStringLiteral("05 seconds: the layer \"Coast\" is still being drawn"));
    coast->Script->IsOpen = true;
}

TEST_F(MapPicture, DoesNotWaitForLayersThatAreNotPainted) {
    TTestBufferedLayer* coast = FMap.AddBuffered(QStringLiteral("Coast"));
    coast->Script->IsOpen = false;
    coast->SetIsVisible(false);
    Options.TimeLimit = 0;
    EXPECT_EQ(FMap.Picture(Options).Paint().Pixel(90, 90), TPictureMap::West);
    coast->Script->IsOpen = true;
}

TEST_F(MapPicture, EndsWhenRendersHaveNothingToShow) {
    FMap.AddBuffered(QStringLiteral("Empty"))->Script->HasContent = false;
    FMap.AddBuffered(QStringLiteral("Lost"))->Script->Raises = true;
    EXPECT_EQ(FMap.Picture(Options).Paint().Pixel(90, 90), TPictureMap::West);
}

TEST_F(MapPicture, SurvivesWhatHappensWhileItWaits) {
    TTestBufferedLayer* coast = FMap.AddBuffered(QStringLiteral("Coast"));
    coast->Script->IsOpen = false;
    auto picture = std::make_unique<TMapPicture>(FMap.Picture(Options));
    QTimer::singleShot(20, [&] {
        picture.reset();
        FMap.Manager->GetLayers().Remove(coast);
        FMap.Manager.reset();
    });
    const TBitmap32 painted = picture->Paint();
    EXPECT_EQ(painted.Pixel(90, 90), TPictureMap::West);
    EXPECT_EQ(painted.GetWidth(), 360);
}

TEST_F(MapPicture, PassesOnWhatALayerRaises) {
    auto layer = std::make_unique<TTestLayer>(FMap.Manager);
    layer->SetIsReadyToDraw(true);
    layer->OnPaint = [](TWorld*, TWorldViewport*, TBitmap32&) { throw EInvalidOperation(QStringLiteral("Lost")); };
    FMap.Manager->GetLayers().Add(std::move(layer));
    EXPECT_EQ(MessageOf<EInvalidOperation>([&] { FMap.Picture(Options).Paint(); }), "Lost");
}

TEST_F(MapPicture, LaysAnnotationsOutAnewAndLeavesThoseOfTheView) {
    TShownView shown;
    shown.AddReadyLayer();
    TObjectMapLayer* objects = shown.View.GetSpObjectLayer();
    auto box = std::make_unique<TTextBoxObjectLayerItem>(objects);
    box->SetRect({180, 80, 200, 100});
    box->SetAnchors({TAnchorKind::akRight, TAnchorKind::akBottom});
    box->SetShowBackground(true);
    box->SetBackgroundColor(0xFF00AA00);
    TBaseObjectLayerItem* mark = objects->GetObjects().Add(std::move(box));
    objects->SetSelectedObject(mark);
    const double ratio = objects->GetDeviceRatio();
    const TRect before = mark->GetRect();
    const TAnchorData anchors = mark->GetAnchorData();
    TMapPicture picture(shown.Manager, TLatLonWorldSystemFactory::GetObject(), Options);
    const TBitmap32 painted = picture.Paint();
    if (ratio == 1) { // the view has 200 x 100 pixels; the mark keeps its distances to its edges
        EXPECT_EQ(painted.Pixel(345, 165), 0xFF00AA00U);
        EXPECT_EQ(painted.Pixel(339, 159), clWhite32);
        EXPECT_EQ(painted.Pixel(341, 161), 0xFF00AA00U) << "grabbers are no part of a picture";
    }
    EXPECT_EQ(mark->GetRect(), before);
    EXPECT_EQ(mark->GetAnchorData(), anchors);
    EXPECT_TRUE(mark->GetIsSelected());
    EXPECT_EQ(objects->GetObjects().Count(), 1);
    Options.ShowsAnnotations = false;
    picture.SetOptions(Options);
    EXPECT_EQ(picture.Paint().Pixel(345, 165), clWhite32);
}

TEST_F(MapPicture, ShowsMarks) {
    TShownView shown;
    shown.AddReadyLayer();
    shown.View.GetSpRulersLayer()->Add(std::make_unique<TRulerItem>(TRulerOrientation::roVertical, 45.0L, 0xFFCC0000));
    TMapPicture picture(shown.Manager, TLatLonWorldSystemFactory::GetObject(), Options);
    EXPECT_EQ(picture.Paint().Pixel(100, 45), 0xFFCC0000U);
    Options.ShowsMarks = false;
    picture.SetOptions(Options);
    EXPECT_EQ(picture.Paint().Pixel(100, 45), clWhite32);
}

TEST_F(MapPicture, PutsTheMapIntoAFrameWithWhatStandsAroundIt) {
    Options.Size = {900, 500};
    Options.Title = QStringLiteral("Halves & wholes");
    Options.Time = QStringLiteral("January 1991");
    Options.ShowsLegends = Options.ShowsScale = Options.ShowsCompassRose = true;
    const TBitmap32 picture = FMap.Picture(Options).Paint();
    // The map is 688 x 344 for the world's 360 to 180, between margins of 20 and the column of legends.
    int left = 0;
    while (picture.Pixel(left, 250) == clWhite32)
        ++left;
    int right = left + 1;
    while (picture.Pixel(right, 250) != 0xFF404040U)
        ++right;
    EXPECT_EQ(left, 19);
    EXPECT_EQ(right, 20 + 688);
    EXPECT_EQ(picture.Pixel(left, 250), 0xFF404040U);
    EXPECT_EQ(picture.Pixel(left + 1, 250), TPictureMap::West);
    EXPECT_EQ(picture.Pixel(right - 1, 250), TPictureMap::East);
    const auto hasInk = [&](TRect rect) {
        for (int y = rect.Top; y < rect.Bottom; ++y)
            for (int x = rect.Left; x < rect.Right; ++x)
                if (picture.Pixel(x, y) != clWhite32)
                    return true;
        return false;
    };
    EXPECT_TRUE(hasInk({20, 20, 300, 70}));    // title
    EXPECT_TRUE(hasInk({720, 70, 880, 300}));  // legend
    EXPECT_TRUE(hasInk({720, 330, 804, 430})); // compass rose
    EXPECT_TRUE(hasInk({20, 430, 240, 470}));  // scale
    EXPECT_TRUE(hasInk({500, 430, 708, 470})); // time
}

// Where there is little room, too.
TEST_F(MapPicture, PutsTheCompassRoseBelowTheKey) {
    FMap.Raster->SetIsVisible(false);
    FMap.AddBuffered(QStringLiteral("Coast"));
    Options.Size = {420, 300};
    Options.ShowsLegends = true;
    const TBitmap32 without = FMap.Picture(Options).Paint();
    Options.ShowsCompassRose = true;
    const TBitmap32 with = FMap.Picture(Options).Paint();
    int drawn = 0;
    for (int y = 0; y < 300; ++y)
        for (int x = 0; x < 420; ++x)
            if (with.Pixel(x, y) != without.Pixel(x, y)) {
                ++drawn;
                ASSERT_EQ(without.Pixel(x, y), clWhite32) << x << ", " << y;
            }
    EXPECT_GT(drawn, 200);
}

TEST_F(MapPicture, RefusesWhatIsNoPicture) {
    const auto refusal = [&](auto change) {
        TMapPictureOptions options = TPictureMap::Plain();
        change(options);
        const QString painting = MessageOf<EArgumentException>([&] { FMap.Picture(options).Paint(); });
        EXPECT_EQ(MessageOf<EArgumentException>([&] { FMap.Picture(options).Describe(); }), painting);
        return painting;
    };
    const auto nan = std::numeric_limits<double>::quiet_NaN();
    const QString size = QStringLiteral("The size of the picture is out of range");
    const QString density = QStringLiteral("The density of the picture is out of range");
    const QString area = QStringLiteral("The area of the picture is empty");
    const QString scale = QStringLiteral("The scale of the picture is out of range");
    EXPECT_EQ(refusal([](auto& options) { options.Size = {0, 10}; }), size);
    EXPECT_EQ(refusal([](auto& options) { options.Size = {10, -1}; }), size);
    EXPECT_EQ(refusal([](auto& options) { options.Size = {65536, 1}; }), size);
    EXPECT_EQ(refusal([](auto& options) { options.Density = 0; }), density);
    EXPECT_EQ(refusal([](auto& options) { options.Density = 101; }), density);
    EXPECT_EQ(refusal([&](auto& options) { options.Density = nan; }), density);
    EXPECT_EQ(refusal([](auto& options) { options.Area = TMapArea(10, 10, 10, 0); }), area);
    EXPECT_EQ(refusal([&](auto& options) { options.Area = TMapArea(nan, 10, 20, 0); }), area);
    EXPECT_EQ(refusal([](auto& options) { options.Place = TMapPicturePlace{{0, 0}, 0}; }), scale);
    EXPECT_EQ(refusal([&](auto& options) { options.Place = TMapPicturePlace{{nan, 0}, 1}; }), scale);
    EXPECT_EQ(refusal([](auto& options) {
                  options.Size = {100, 100};
                  options.ShowsCompassRose = true;
              }),
              "The picture is too small for what stands around the map");
    EXPECT_EQ(MessageOf<EArgumentNilException>([] { TMapPicture(nullptr, TLatLonWorldSystemFactory::GetObject()); }),
              "LayerManager");
    EXPECT_EQ(MessageOf<EArgumentNilException>([&] { TMapPicture(FMap.Manager, nullptr); }), "WorldSystem");
}

} // namespace
} // namespace lmx
