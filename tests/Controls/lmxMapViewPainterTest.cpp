#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Graphics/lmxSystemColors.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <tests/Support/ShownView.h>

#include <gtest/gtest.h>

namespace lmx {
namespace {

using tests::TShownView;
using tests::TTestLayer;

constexpr TColor32 White = 0xFFFFFFFF;
constexpr TColor32 Gray = 0xFFDCDCDC;
constexpr TColor32 Black = 0xFF000000;

/// Fills the buffer's first pixel row by row with its own mark, so that the order of painting shows.
void MarkWith(TTestLayer& layer, TColor32 color) {
    layer.OnPaint = [color](TWorld*, TWorldViewport*, TBitmap32& bitmap) { bitmap.ScanLine(0)[0] = color; };
}

TEST(MapViewPainter, WithoutWorldOnlyTheBackgroundIsPainted) {
    TShownView shown;
    shown.View.SetBackgroundColor(0xFF102030);
    EXPECT_EQ(shown.PixelAt(0, 0), 0xFF102030U);
    EXPECT_EQ(shown.PixelAt(199, 99), 0xFF102030U);
}

TEST(MapViewPainter, TheBackgroundKeepsItsAlphaInTheBuffer) {
    TShownView shown;
    shown.View.SetBackgroundColor(0x40102030);
    EXPECT_EQ(shown.PixelAt(3, 3), 0x40102030U);
}

TEST(MapViewPainter, LayersArePaintedFromIndex0Upwards) {
    TShownView shown;
    MarkWith(*shown.AddReadyLayer(), 0xFF000001);
    MarkWith(*shown.AddReadyLayer(), 0xFF000002);
    EXPECT_EQ(shown.PixelAt(0, 0), 0xFF000002U);
    shown.Manager->MoveLayer(0, 1);
    EXPECT_EQ(shown.PixelAt(0, 0), 0xFF000001U);
}

TEST(MapViewPainter, HiddenEmptyAndUnreadyLayersAreSkipped) {
    TShownView shown;
    TTestLayer* layer = shown.AddReadyLayer();
    const auto paints = [&] {
        layer->Paints = 0;
        shown.View.RepaintMap();
        shown.View.grab();
        return layer->Paints;
    };
    EXPECT_EQ(paints(), 1);
    layer->SetIsVisible(false);
    EXPECT_EQ(paints(), 0);
    layer->SetIsVisible(true);
    layer->HasContent = false;
    EXPECT_EQ(paints(), 0);
    layer->HasContent = true;
    layer->SetIsReadyToDraw(false);
    EXPECT_EQ(paints(), 0);
}

TEST(MapViewPainter, WithoutManagerLayersAreNotPainted) {
    TShownView shown;
    TTestLayer* layer = shown.AddReadyLayer();
    shown.View.SetLayerManager(nullptr);
    layer->Paints = 0;
    EXPECT_EQ(shown.PixelAt(0, 0), White);
    EXPECT_EQ(layer->Paints, 0);
}

TEST(MapViewPainter, TheCheckerboardHasSquaresOfEightPixels) {
    TShownView shown;
    shown.View.SetShowCheckerboard(true);
    EXPECT_EQ(shown.PixelAt(0, 0), White);
    EXPECT_EQ(shown.PixelAt(7, 7), White);
    EXPECT_EQ(shown.PixelAt(8, 0), Gray);
    EXPECT_EQ(shown.PixelAt(0, 8), Gray);
    EXPECT_EQ(shown.PixelAt(8, 8), White);
    EXPECT_EQ(shown.PixelAt(199, 99), ((199 / 8 + 99 / 8) % 2 == 0) ? White : Gray);
}

TEST(MapViewPainter, TheCheckerboardFollowsEveryResize) {
    TShownView shown;
    shown.View.SetShowCheckerboard(true);
    for (const QSize size : {QSize(100, 50), QSize(300, 150), QSize(401, 90), QSize(64, 512)}) {
        shown.View.resize(size);
        const int x = size.width() - 1;
        const int y = size.height() - 1;
        EXPECT_EQ(shown.PixelAt(x, y), (x / 8 + y / 8) % 2 == 0 ? White : Gray) << size.width() << 'x' << size.height();
    }
}

TEST(MapViewPainter, TheFirstPaintShowsNoCrosshairAndTheSecondDoes) {
    TShownView shown;
    shown.AddReadyLayer();
    TWorldViewport& viewport = *shown.View.GetViewport();
    viewport.SetTranslation({0, 0});
    shown.View.SetCrosshairMapPoint(viewport.PointToMapPoint({50, 40}));
    shown.View.SetShowCrosshair(true);
    EXPECT_EQ(shown.PixelAt(49, 32), White);
    shown.View.RepaintMap();
    // The sprite's corner is at (40, 30); an arm of thickness 1 stands at 9.5 and covers column 9.
    EXPECT_EQ(shown.PixelAt(49, 30), Black);
    EXPECT_EQ(shown.PixelAt(49, 37), Black);
    EXPECT_EQ(shown.PixelAt(49, 38), White);
    EXPECT_EQ(shown.PixelAt(49, 41), White);
    EXPECT_EQ(shown.PixelAt(49, 42), Black);
    EXPECT_EQ(shown.PixelAt(49, 49), Black);
    EXPECT_EQ(shown.PixelAt(49, 50), White);
    EXPECT_EQ(shown.PixelAt(40, 39), Black);
    EXPECT_EQ(shown.PixelAt(47, 39), Black);
    EXPECT_EQ(shown.PixelAt(48, 39), White);
    EXPECT_EQ(shown.PixelAt(52, 39), Black);
    EXPECT_EQ(shown.PixelAt(59, 39), Black);
    EXPECT_EQ(shown.PixelAt(50, 40), White);
}

TEST(MapViewPainter, AThickCrosshairStandsHalfItsWidthAside) {
    TShownView shown;
    shown.AddReadyLayer();
    TWorldViewport& viewport = *shown.View.GetViewport();
    viewport.SetTranslation({0, 0});
    shown.View.SetCrosshairMapPoint(viewport.PointToMapPoint({50, 40}));
    shown.View.SetCrosshairThickness(3); // makes the sprite at once; arms at 8.5 cover columns 7 to 9
    shown.View.SetShowCrosshair(true);
    EXPECT_EQ(shown.PixelAt(46, 30), White);
    EXPECT_EQ(shown.PixelAt(47, 30), Black);
    EXPECT_EQ(shown.PixelAt(49, 30), Black);
    EXPECT_EQ(shown.PixelAt(50, 30), White);
}

TEST(MapViewPainter, HighlightsLieOnePixelAside) {
    TShownView shown;
    shown.View.SetBackgroundColor(Black);
    shown.AddReadyLayer();
    TWorldViewport& viewport = *shown.View.GetViewport();
    viewport.SetTranslation({0, 0});
    shown.View.SetCrosshairMapPoint(viewport.PointToMapPoint({50, 40}));
    shown.View.SetCrosshairColor(0xFFFF0000);
    shown.View.SetCrosshairHighlights(true);
    shown.View.SetShowCrosshair(true);
    EXPECT_EQ(shown.PixelAt(49, 33), 0xFFFF0000U);
    EXPECT_EQ(shown.PixelAt(50, 33), 0xFFAFAFAFU); // white of alpha 175 on black
    EXPECT_EQ(shown.PixelAt(50, 50), 0xFFAFAFAFU); // row 20 of the sprite of 21
}

TEST(MapViewPainter, ACrosshairFarOutsideIsNotSeen) {
    TShownView shown;
    shown.AddReadyLayer();
    shown.View.SetCrosshairThickness(2);
    shown.View.SetCrosshairMapPoint({1e30L, -1e30L});
    shown.View.SetShowCrosshair(true);
    EXPECT_EQ(shown.PixelAt(0, 0), White);
    EXPECT_EQ(shown.PixelAt(199, 99), White);
}

TEST(MapViewPainter, TheFocusBorderIsShownEvenWithoutManager) {
    TShownView shown;
    shown.View.SetLayerManager(nullptr);
    shown.View.SetShowFocusedBorder(true);
    shown.View.activateWindow();
    shown.View.setFocus();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&shown.View));
    const TColor32 highlight = Color32(clHighlight);
    EXPECT_EQ(shown.PixelAt(0, 0), highlight);
    EXPECT_EQ(shown.PixelAt(199, 99), highlight);
    EXPECT_EQ(shown.PixelAt(1, 1), White);
    shown.View.clearFocus();
    EXPECT_EQ(shown.PixelAt(0, 0), White);
}

TEST(MapViewPainter, WithoutTheSettingNoFocusBorderIsShown) {
    TShownView shown;
    shown.View.activateWindow();
    shown.View.setFocus();
    EXPECT_EQ(shown.PixelAt(0, 0), White);
}

} // namespace
} // namespace lmx
