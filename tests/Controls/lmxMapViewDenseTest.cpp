// The view on dense screens. These tests hold at any device pixel ratio; they run at 1, 1.5 and 2.

#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Graphics/lmxSystemColors.h>
#include <lmx/Layers/lmxInfoQueryPointLayer.h>
#include <tests/Support/ShownView.h>

#include <gtest/gtest.h>

#include <cmath>

namespace lmx {
namespace {

using tests::TShownView;
using tests::TTestLayer;

constexpr TColor32 White = 0xFFFFFFFF;
constexpr TColor32 Black = 0xFF000000;

int Scaled(const TShownView& shown, double logical) {
    return static_cast<int>(std::lrint(logical * shown.View.devicePixelRatioF()));
}

TEST(MapViewDense, RunsAtTheRatioThatItIsToldTo) {
    const TShownView shown;
    const double wanted = qEnvironmentVariable("QT_SCALE_FACTOR", QStringLiteral("1")).toDouble();
    EXPECT_EQ(shown.View.devicePixelRatioF(), wanted);
    EXPECT_EQ(shown.View.GetDeviceRatio(), wanted);
}

TEST(MapViewDense, TheBufferAndTheViewportAreCountedInDevicePixels) {
    TShownView shown;
    shown.AddReadyLayer();
    const TSize expected(Scaled(shown, 200), Scaled(shown, 100));
    EXPECT_EQ(shown.View.GetBuffer().GetWidth(), expected.cx);
    EXPECT_EQ(shown.View.GetBuffer().GetHeight(), expected.cy);
    EXPECT_EQ(shown.View.GetViewport()->GetViewSize(), expected);
}

TEST(MapViewDense, MousePositionsBecomeDevicePixelsRoundedDown) {
    TShownView shown;
    shown.AddReadyLayer();
    TPoint told;
    shown.View.SetOnMouseCursorLocationChanged(
        [&](TMapViewControl*, const TPoint& point, const TMapPoint&) { told = point; });
    const QPointF position(33.4, 45.8);
    shown.Hover(position);
    const double ratio = shown.View.devicePixelRatioF();
    EXPECT_EQ(told, TPoint(static_cast<int>(std::floor(position.x() * ratio)),
                           static_cast<int>(std::floor(position.y() * ratio))));
}

TEST(MapViewDense, ADragMovesTheMapByAsManyDevicePixels) {
    TShownView shown;
    shown.AddReadyLayer();
    shown.View.SetMode(TMapMode::mdPan);
    const TPoint before = shown.View.GetViewport()->GetTranslation();
    QTest::mousePress(&shown.View, Qt::LeftButton, {}, {10, 10});
    QTest::mouseMove(&shown.View, {30, 14});
    TShownView::Settle();
    QTest::mouseRelease(&shown.View, Qt::LeftButton, {}, {30, 14});
    const TPoint after = shown.View.GetViewport()->GetTranslation();
    EXPECT_EQ(after, TPoint(before.X + Scaled(shown, 20), before.Y + Scaled(shown, 4)));
}

TEST(MapViewDense, ThePictureOnTheScreenIsTheBufferPixelForPixel) {
    TShownView shown;
    TTestLayer* layer = shown.AddReadyLayer();
    layer->OnPaint = [](TWorld*, TWorldViewport*, TBitmap32& bitmap) {
        for (int y = 0; y < bitmap.GetHeight(); ++y)
            for (int x = 0; x < bitmap.GetWidth(); ++x)
                bitmap.Pixel(x, y) = Color32(static_cast<std::uint8_t>(x), static_cast<std::uint8_t>(y), 7);
    };
    shown.View.RepaintMap();
    const QImage picture = shown.View.grab().toImage().convertToFormat(QImage::Format_RGB32);
    const TBitmap32& buffer = shown.View.GetBuffer();
    ASSERT_EQ(picture.width(), buffer.GetWidth());
    ASSERT_EQ(picture.height(), buffer.GetHeight());
    for (int y = 0; y < picture.height(); y += 7)
        for (int x = 0; x < picture.width(); x += 5)
            ASSERT_EQ(picture.pixel(x, y), buffer.Pixel(x, y)) << x << ',' << y;
}

TEST(MapViewDense, TheCheckerboardKeepsItsSizeToTheEye) {
    TShownView shown;
    shown.View.SetShowCheckerboard(true);
    const int square = Scaled(shown, 8);
    EXPECT_EQ(shown.PixelAt(square - 1, 0), White);
    EXPECT_EQ(shown.PixelAt(square, 0), 0xFFDCDCDCU);
    EXPECT_EQ(shown.PixelAt(square, square), White);
}

TEST(MapViewDense, TheCrosshairKeepsItsSizeToTheEye) {
    TShownView shown;
    shown.AddReadyLayer();
    TWorldViewport& viewport = *shown.View.GetViewport();
    viewport.SetTranslation({0, 0});
    const int x = Scaled(shown, 50);
    const int y = Scaled(shown, 40);
    shown.View.SetCrosshairMapPoint(viewport.PointToMapPoint(TMapPoint(TPoint(x, y))));
    shown.View.SetCrosshairThickness(2); // arms from 8 to 10, that is 1 to each side of 9
    shown.View.SetShowCrosshair(true);
    const int left = x - Scaled(shown, 10);
    const int top = y - Scaled(shown, 10);
    EXPECT_EQ(shown.PixelAt(left + Scaled(shown, 9), top), Black);
    EXPECT_EQ(shown.PixelAt(left + Scaled(shown, 9), top + Scaled(shown, 8) - 1), Black);
    EXPECT_EQ(shown.PixelAt(left + Scaled(shown, 9), top + Scaled(shown, 8)), White);
    EXPECT_EQ(shown.PixelAt(left + Scaled(shown, 9), top + Scaled(shown, 20) - 1), Black);
    EXPECT_EQ(shown.PixelAt(left + Scaled(shown, 11), top), White);
}

TEST(MapViewDense, QueryPointsKeepTheirSizeToTheEye) {
    TShownView shown;
    shown.AddReadyLayer();
    TWorldViewport& viewport = *shown.View.GetViewport();
    const int x = Scaled(shown, 50);
    const int y = Scaled(shown, 40);
    TInfoQueryPointLayer& points = *shown.View.GetSpInfoQueryPointsLayer();
    points.GetPoints().Add(
        std::make_unique<TInfoQueryPoint>(&points, viewport.PointToMapPoint(TMapPoint(TPoint(x, y))), 0xFFFF0000));
    const int top = y - Scaled(shown, 20);
    EXPECT_EQ(shown.PixelAt(x, top + Scaled(shown, 2)), 0xFFFF0000U); // inside the outline
    EXPECT_EQ(shown.PixelAt(x, top - Scaled(shown, 1)), 0xFF9B9B9BU); // in the outline
    EXPECT_EQ(shown.PixelAt(x, top - Scaled(shown, 2.5) - 1), White); // above it
    EXPECT_EQ(shown.PixelAt(x - Scaled(shown, 5), top + Scaled(shown, 3)), 0xFFFF0000U);
}

TEST(MapViewDense, TheFocusBorderIsAsThickAsAPixelAtRatio1) {
    TShownView shown;
    shown.View.SetShowFocusedBorder(true);
    shown.View.activateWindow();
    shown.View.setFocus();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&shown.View));
    const int thickness = Scaled(shown, 1);
    const TColor32 highlight = Color32(clHighlight);
    EXPECT_EQ(shown.PixelAt(thickness - 1, 50), highlight);
    EXPECT_EQ(shown.PixelAt(thickness, 50), White);
}

} // namespace
} // namespace lmx
