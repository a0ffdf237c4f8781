#include <lmx/Graphics/Private/lmxBlend.h>
#include <lmx/Graphics/lmxPolygons.h>
#include <tests/Graphics/Pictures.h>

#include <cmath>
#include <thread>

namespace lmx {
namespace {

using tests::AllPixels;

/// Alphas of what was drawn in black on a transparent bitmap.
std::vector<int> Alphas(const TBitmap32& bitmap, std::int32_t y) {
    std::vector<int> result;
    for (const TColor32 pixel : tests::Row(bitmap, y))
        result.push_back(AlphaComponent(pixel));
    return result;
}

using TAlphas = std::vector<int>;

TBitmap32 Transparent(std::int32_t width, std::int32_t height) {
    TBitmap32 bitmap(width, height);
    bitmap.SetCombineMode(TCombineMode::cmMerge);
    return bitmap;
}

TFloatPoints Rectangle(double left, double top, double right, double bottom) {
    return {{left, top}, {right, top}, {right, bottom}, {left, bottom}};
}

TEST(Polygons, ARectangleWithWholeCornersFillsExactlyItsPixels) {
    TBitmap32 bitmap(4, 3);
    PolygonFS(bitmap, Rectangle(1, 1, 3, 2), 0xFF123456U);
    EXPECT_EQ(AllPixels(bitmap), (std::vector<TColor32>{0, 0, 0, 0, 0, 0xFF123456U, 0xFF123456U, 0, 0, 0, 0, 0}));
}

TEST(Polygons, HalfCoverIs127) {
    TBitmap32 bitmap = Transparent(3, 1);
    PolygonFS(bitmap, Rectangle(0.5, 0, 2.25, 1), clBlack32);
    EXPECT_EQ(Alphas(bitmap, 0), (TAlphas{127, 255, 63}));
}

TEST(Polygons, FullCoverGivesTheColorsAlpha) {
    for (unsigned alpha = 0; alpha < 256; ++alpha) {
        TBitmap32 bitmap = Transparent(1, 1);
        PolygonFS(bitmap, Rectangle(-1, -1, 2, 2), alpha << 24);
        ASSERT_EQ(bitmap.Pixel(0, 0), alpha << 24);
    }
}

TEST(Polygons, CoverIsBlendedOrMergedAsTheBitmapSays) {
    TBitmap32 blending(1, 1);
    blending.Clear(0x40102030U);
    TBitmap32 merging = blending;
    merging.SetCombineMode(TCombineMode::cmMerge);
    PolygonFS(blending, Rectangle(0, 0, 0.5, 1), 0xFFFFFFFFU);
    PolygonFS(merging, Rectangle(0, 0, 0.5, 1), 0xFFFFFFFFU);
    EXPECT_EQ(blending.Pixel(0, 0), BlendColor(0x7FFFFFFFU, 0x40102030U));
    EXPECT_EQ(merging.Pixel(0, 0), MergeColor(0x7FFFFFFFU, 0x40102030U));
}

TEST(Polygons, FillModesDifferWhereContoursOverlap) {
    const std::vector<TFloatPoints> twice = {Rectangle(0, 0, 3, 1), Rectangle(1, 0, 2, 1)};
    TBitmap32 alternate = Transparent(3, 1);
    PolyPolygonFS(alternate, twice, clBlack32);
    EXPECT_EQ(Alphas(alternate, 0), (TAlphas{255, 0, 255}));
    TBitmap32 winding = Transparent(3, 1);
    PolyPolygonFS(winding, twice, clBlack32, TPolyFillMode::pfWinding);
    EXPECT_EQ(Alphas(winding, 0), (TAlphas{255, 255, 255}));
}

TEST(Polygons, OppositeContoursCancelInWinding) {
    TFloatPoints hole = Rectangle(1, 0, 2, 1);
    std::reverse(hole.begin(), hole.end());
    TBitmap32 bitmap = Transparent(3, 1);
    PolyPolygonFS(bitmap, std::vector<TFloatPoints>{Rectangle(0, 0, 3, 1), hole}, clBlack32, TPolyFillMode::pfWinding);
    EXPECT_EQ(Alphas(bitmap, 0), (TAlphas{255, 0, 255}));
}

TEST(Polygons, AlternateFoldsSumsOfAreas) {
    // Three times the same pixel, one of them half: 2.5 folds to 0.5, and three whole ones to 1.
    TBitmap32 bitmap = Transparent(2, 1);
    PolyPolygonFS(bitmap,
                  std::vector<TFloatPoints>{Rectangle(0, 0, 2, 1), Rectangle(0, 0, 2, 1), Rectangle(0.5, 0, 2, 1)},
                  clBlack32);
    EXPECT_EQ(Alphas(bitmap, 0), (TAlphas{127, 255}));
}

TEST(Polygons, FewerThanThreePointsDrawNothing) {
    TBitmap32 bitmap(2, 2);
    PolygonFS(bitmap, {}, clBlack32);
    PolygonFS(bitmap, TFloatPoints{{0, 0}}, clBlack32);
    PolygonFS(bitmap, TFloatPoints{{0, 0}, {2, 2}}, clBlack32);
    EXPECT_EQ(AllPixels(bitmap), std::vector<TColor32>(4, 0));
}

TEST(Polygons, AnOutlineOnWholeCoordinatesIsTwoRowsOfHalfCover) {
    TBitmap32 bitmap = Transparent(12, 10);
    PolylineFS(bitmap, Rectangle(2, 2, 10, 8), clBlack32, true);
    EXPECT_EQ(Alphas(bitmap, 0), TAlphas(12, 0));
    EXPECT_EQ(Alphas(bitmap, 1), (TAlphas{0, 63, 127, 127, 127, 127, 127, 127, 127, 127, 63, 0}));
    EXPECT_EQ(Alphas(bitmap, 2), (TAlphas{0, 127, 191, 127, 127, 127, 127, 127, 127, 191, 127, 0}));
    EXPECT_EQ(Alphas(bitmap, 4), (TAlphas{0, 127, 127, 0, 0, 0, 0, 0, 0, 127, 127, 0}));
    EXPECT_EQ(Alphas(bitmap, 8), (TAlphas{0, 63, 127, 127, 127, 127, 127, 127, 127, 127, 63, 0}));
}

TEST(Polygons, ALineOverPixelCentresFillsItsColumn) {
    TBitmap32 bitmap = Transparent(12, 2);
    PolylineFS(bitmap, TFloatPoints{{9.5, 0}, {9.5, 2}}, clBlack32, false, 1.0);
    EXPECT_EQ(Alphas(bitmap, 0), (TAlphas{0, 0, 0, 0, 0, 0, 0, 0, 0, 255, 0, 0}));
    EXPECT_EQ(Alphas(bitmap, 1), Alphas(bitmap, 0));
}

TEST(Polygons, ThicknessIsTheWidthOfTheStroke) {
    TBitmap32 bitmap = Transparent(8, 1);
    PolylineFS(bitmap, TFloatPoints{{4, -5}, {4, 5}}, clBlack32, false, 3.0);
    EXPECT_EQ(Alphas(bitmap, 0), (TAlphas{0, 0, 127, 255, 255, 127, 0, 0}));
}

TEST(Polygons, ALineThatCrossesItselfIsWholeAtTheCrossing) {
    TBitmap32 bitmap = Transparent(5, 5);
    PolylineFS(bitmap, TFloatPoints{{0, 1.5}, {4.5, 1.5}, {4.5, 4.5}, {1.5, 4.5}, {1.5, 0}}, 0x80000000U, false);
    EXPECT_EQ(Alphas(bitmap, 0), (TAlphas{0, 128, 0, 0, 0}));
    EXPECT_EQ(Alphas(bitmap, 1), (TAlphas{128, 128, 128, 128, 128}));
    EXPECT_EQ(Alphas(bitmap, 2), (TAlphas{0, 128, 0, 0, 128}));
}

TEST(Polygons, CrossingLinesOfOneCallBlendOnce) {
    const std::vector<TFloatPoints> cross = {{{0, 1.5}, {3, 1.5}}, {{1.5, 0}, {1.5, 3}}};
    TBitmap32 bitmap = Transparent(3, 3);
    PolyPolylineFS(bitmap, cross, 0x80000000U);
    EXPECT_EQ(Alphas(bitmap, 0), (TAlphas{0, 128, 0}));
    EXPECT_EQ(Alphas(bitmap, 1), (TAlphas{128, 128, 128}));
}

TEST(Polygons, FarPointsAreClippedAsGeometry) {
    TBitmap32 bitmap = Transparent(3, 2);
    PolygonFS(bitmap, Rectangle(-1e12, -1e12, 1e12, 1), clBlack32);
    EXPECT_EQ(Alphas(bitmap, 0), (TAlphas{255, 255, 255}));
    EXPECT_EQ(Alphas(bitmap, 1), (TAlphas{0, 0, 0}));
    TBitmap32 stroked = Transparent(3, 2);
    PolylineFS(stroked, TFloatPoints{{-1e9, 0.5}, {1e9, 0.5}}, clBlack32);
    EXPECT_EQ(Alphas(stroked, 0), (TAlphas{255, 255, 255}));
    EXPECT_EQ(Alphas(stroked, 1), (TAlphas{0, 0, 0}));
}

TEST(Polygons, EmptyBitmapsAreLeftAlone) {
    TBitmap32 bitmap(0, 5);
    PolygonFS(bitmap, Rectangle(0, 0, 5, 5), clBlack32);
    PolylineFS(bitmap, Rectangle(0, 0, 5, 5), clBlack32, true);
    EXPECT_TRUE(bitmap.IsEmpty());
}

TEST(Polygons, CirclePolygonBeginsToTheRight) {
    const TFloatPoints circle = CirclePolygon(10, 20, 2);
    ASSERT_EQ(circle.size(), 9U);
    EXPECT_EQ(circle[0], (TFloatPoint{12, 20}));
    EXPECT_GT(circle[1].Y, 20);
    for (const TFloatPoint& point : circle)
        EXPECT_NEAR(std::hypot(point.X - 10, point.Y - 20), 2, 1e-12);
    EXPECT_LT(CirclePolygon(0, 0, 0.12).size(), 3U);
    EXPECT_GE(CirclePolygon(0, 0, 0.13).size(), 3U);
}

TEST(Polygons, ACircleCoversItsArea) {
    TBitmap32 bitmap = Transparent(60, 60);
    PolygonFS(bitmap, CirclePolygon(30, 30, 25), clBlack32);
    double sum = 0;
    for (const TColor32 pixel : AllPixels(bitmap))
        sum += AlphaComponent(pixel) / 255.0;
    EXPECT_NEAR(sum, 25 * 25 * 3.14159, 15);
    EXPECT_EQ(AlphaComponent(bitmap.Pixel(30, 30)), 255);
    EXPECT_EQ(AlphaComponent(bitmap.Pixel(2, 2)), 0);
}

TEST(Polygons, ThreadsDrawOnTheirOwnBitmaps) {
    const auto draw = [](TBitmap32& bitmap) {
        for (int i = 0; i < 50; ++i) {
            PolygonFS(bitmap, CirclePolygon(20 + i * 0.3, 20, 15), 0x40336699U);
            PolylineFS(bitmap, Rectangle(3, 3, 30 + i * 0.1, 30), 0x80000000U, true, 2.5, TJoinStyle::jsRound);
        }
    };
    TBitmap32 first(50, 50), second(50, 50);
    std::thread worker([&] { draw(first); });
    draw(second);
    worker.join();
    EXPECT_EQ(AllPixels(first), AllPixels(second));
}

} // namespace
} // namespace lmx
