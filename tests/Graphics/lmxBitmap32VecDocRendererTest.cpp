#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Graphics/lmxBitmap32VecDocRenderer.h>
#include <lmx/Graphics/lmxVectorDoc.h>
#include <tests/Graphics/Pictures.h>
#include <tests/Support/GeometryPrinters.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <utility>

namespace lmx {
namespace {

using tests::AllPixels;
using tests::TPicture;

constexpr TColor32 Red = 0xFFFF0000;
constexpr TColor32 Blue = 0xFF0000FF;
const tests::TLetters Letters = {{clWhite32, '.'}, {Red, 'r'}, {Blue, 'b'}};

TBitmap32 WhiteBitmap(int width, int height) {
    TBitmap32 bitmap(width, height);
    bitmap.Clear(clWhite32);
    return bitmap;
}

TBitmap32 Rendered(TVectorDoc document, int width, int height) {
    TBitmap32 bitmap = WhiteBitmap(width, height);
    TBitmap32VecDocRenderer(std::make_shared<TVectorDoc>(std::move(document))).Render(bitmap);
    return bitmap;
}

/// The pixels that are not white: Left and Top the first, Right and Bottom behind the last.
TRect InkOf(const TBitmap32& bitmap) {
    TRect ink(bitmap.GetWidth(), bitmap.GetHeight(), 0, 0);
    for (int y = 0; y < bitmap.GetHeight(); ++y) {
        for (int x = 0; x < bitmap.GetWidth(); ++x) {
            if (bitmap.Pixel(x, y) == clWhite32)
                continue;
            ink = {std::min(ink.Left, x), std::min(ink.Top, y), std::max(ink.Right, x + 1),
                   std::max(ink.Bottom, y + 1)};
        }
    }
    return ink;
}

const TPolygonItem Square{{{2, 2}, {6, 2}, {6, 6}, {2, 6}}, Red, 0, 0};

TEST(Bitmap32VecDocRenderer, DrawsNothingWithoutADocument) {
    TBitmap32 bitmap = WhiteBitmap(4, 4);
    const TBitmap32VecDocRenderer renderer;
    EXPECT_EQ(renderer.GetDocument(), nullptr);
    renderer.Render(bitmap);
    EXPECT_EQ(AllPixels(bitmap), std::vector<TColor32>(16, clWhite32));
}

TEST(Bitmap32VecDocRenderer, DrawsNothingForADocumentWithoutASize) {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    constexpr double infinity = std::numeric_limits<double>::infinity();
    for (const double side : {0.0, -1.0, nan, infinity}) {
        EXPECT_EQ(AllPixels(Rendered({side, 8, {Square}}, 4, 4)), std::vector<TColor32>(16, clWhite32));
        EXPECT_EQ(AllPixels(Rendered({8, side, {TClearItem{Red}}}, 4, 4)), std::vector<TColor32>(16, clWhite32));
    }
}

TEST(Bitmap32VecDocRenderer, DrawsNothingIntoAnEmptyBitmap) {
    EXPECT_TRUE(Rendered({8, 8, {Square, TTextItem{QStringLiteral("N")}}}, 0, 5).IsEmpty());
}

TEST(Bitmap32VecDocRenderer, ScalesTheDocumentToTheBitmap) {
    EXPECT_EQ(tests::Show(Rendered({8, 8, {Square}}, 4, 4), Letters), (TPicture{"....", ".rr.", ".rr.", "...."}));
    EXPECT_EQ(tests::Show(Rendered({8, 8, {Square}}, 8, 4), Letters),
              (TPicture{"........", "..rrrr..", "..rrrr..", "........"}));
    EXPECT_EQ(tests::Show(Rendered({16, 8, {Square}}, 8, 4), Letters),
              (TPicture{"........", ".rr.....", ".rr.....", "........"}));
}

TEST(Bitmap32VecDocRenderer, FillsByTheKernelsOfPolygons) {
    const TPolygonItem triangle{{{256, 53}, {256, 256}, {203, 203}}, 0x80FF0000, 0, 0};
    TBitmap32 expected = WhiteBitmap(100, 50);
    const TFloatPoints scaled = {{256 * 100 / 512.0, 53 * 50 / 512.0},
                                 {256 * 100 / 512.0, 256 * 50 / 512.0},
                                 {203 * 100 / 512.0, 203 * 50 / 512.0}};
    PolygonFS(expected, scaled, 0x80FF0000);
    EXPECT_EQ(AllPixels(Rendered({512, 512, {triangle}}, 100, 50)), AllPixels(expected));
}

TEST(Bitmap32VecDocRenderer, StrokesAreNotStretchedAndAtLeastOnePixel) {
    struct TRow {
        int Width;
        int Height;
        double StrokeSize;
        double Pixels;
    };
    for (const TRow& row : {TRow{40, 40, 3, 6}, TRow{80, 40, 3, 6}, TRow{40, 80, 3, 6}, TRow{20, 20, 3, 3},
                            TRow{10, 10, 1, 1}, TRow{40, 10, 1, 1}}) {
        TBitmap32 expected = WhiteBitmap(row.Width, row.Height);
        const double x = row.Width / 20.0;
        const double y = row.Height / 20.0;
        const TFloatPoints scaled = {{5 * x, 5 * y}, {15 * x, 5 * y}, {15 * x, 15 * y}};
        PolylineFS(expected, scaled, Blue, true, row.Pixels);
        const TPolygonItem item{{{5, 5}, {15, 5}, {15, 15}}, 0, Blue, row.StrokeSize};
        EXPECT_EQ(AllPixels(Rendered({20, 20, {item}}, row.Width, row.Height)), AllPixels(expected))
            << row.Width << " x " << row.Height;
    }
}

TEST(Bitmap32VecDocRenderer, TheOutlineLiesOnTheFill) {
    TPolygonItem item = Square;
    item.StrokeColor = Blue;
    item.StrokeSize = 2;
    EXPECT_EQ(
        tests::Show(Rendered({8, 8, {item}}, 8, 8), Letters),
        (TPicture{"........", ".bbbbbb.", ".bbbbbb.", ".bbrrbb.", ".bbrrbb.", ".bbbbbb.", ".bbbbbb.", "........"}));
}

TEST(Bitmap32VecDocRenderer, WhatIsTransparentOrHasNoSizeIsNotDrawn) {
    TPolygonItem item{{{2, 2}, {6, 2}, {6, 6}}, 0x00FF0000, 0x000000FF, 2};
    EXPECT_EQ(InkOf(Rendered({8, 8, {item}}, 8, 8)), TRect(8, 8, 0, 0));
    item.StrokeColor = Blue;
    for (const double size : {0.0, -1.0, std::numeric_limits<double>::quiet_NaN()}) {
        item.StrokeSize = size;
        EXPECT_EQ(InkOf(Rendered({8, 8, {item}}, 8, 8)), TRect(8, 8, 0, 0));
    }
}

TEST(Bitmap32VecDocRenderer, ClearingWritesTheColorItself) {
    EXPECT_EQ(AllPixels(Rendered({8, 8, {Square, TClearItem{0x12345678}}}, 2, 2)),
              std::vector<TColor32>(4, 0x12345678U));
}

TEST(Bitmap32VecDocRenderer, LaterItemsLieOnEarlierOnes) {
    TPolygonItem other = Square;
    other.FillColor = Blue;
    EXPECT_EQ(Rendered({8, 8, {Square, other}}, 8, 8).Pixel(4, 4), Blue);
    EXPECT_EQ(Rendered({8, 8, {other, Square}}, 8, 8).Pixel(4, 4), Red);
    EXPECT_EQ(Rendered({8, 8, {Square, TClearItem{Blue}}}, 8, 8).Pixel(4, 4), Blue);
}

TEST(Bitmap32VecDocRenderer, KeepsTheAlphaOfATransparentBitmapThatMerges) {
    TBitmap32 bitmap(8, 8);
    bitmap.SetCombineMode(TCombineMode::cmMerge);
    TPolygonItem item = Square;
    item.FillColor = 0x80FF0000;
    const TVectorDoc document{8, 8, {TClearItem{0}, item}};
    TBitmap32VecDocRenderer renderer;
    renderer.SetDocument(std::make_shared<TVectorDoc>(document));
    renderer.Render(bitmap);
    EXPECT_EQ(bitmap.Pixel(3, 3), 0x80FF0000U);
    EXPECT_EQ(bitmap.Pixel(0, 0), 0U);
}

// ---- Texts: by their geometry

TTextItem Letter(TFloatPoint position, THAlign horizontal, TVAlign vertical) {
    return {QStringLiteral("H"), QStringLiteral("Arial"), -1, position, -1, 42, clBlack32, horizontal, vertical};
}

TEST(Bitmap32VecDocRenderer, AnAutomaticTextIsAsLargeAsItsHeightAllows) {
    TBitmap32 bitmap(1, 1);
    bitmap.GetFont().Name = QStringLiteral("Arial");
    for (const int side : {256, 512, 1024}) {
        const int height = 42 * side / 512;
        int& pixels = bitmap.GetFont().Height;
        for (pixels = 1; bitmap.TextHeight({}) <= height;)
            ++pixels;
        --pixels;
        TBitmap32 expected = WhiteBitmap(side, side);
        expected.SetFont(bitmap.GetFont());
        expected.RenderText(side / 4, side / 4, QStringLiteral("H"), 1, clBlack32);
        const TTextItem item = Letter({128, 128}, THAlign::haLeft, TVAlign::vaTop);
        EXPECT_EQ(AllPixels(Rendered({512, 512, {item}}, side, side)), AllPixels(expected)) << side;
    }
}

TEST(Bitmap32VecDocRenderer, ATextStandsByItsAlignments) {
    const auto ink = [](THAlign horizontal, TVAlign vertical) {
        return InkOf(Rendered({512, 512, {Letter({256, 256}, horizontal, vertical)}}, 512, 512));
    };
    const TRect left = ink(THAlign::haLeft, TVAlign::vaTop);
    const TRect center = ink(THAlign::haCenter, TVAlign::vaMiddle);
    const TRect right = ink(THAlign::haRight, TVAlign::vaBottom);
    EXPECT_GE(left.Left, 256);
    EXPECT_LE(left.Left, 262);
    EXPECT_GE(left.Top, 256);
    EXPECT_LE(left.Bottom, 256 + 42);
    EXPECT_LE(right.Right, 256);
    EXPECT_GE(right.Right, 250);
    EXPECT_LE(right.Bottom, 256);
    EXPECT_GE(right.Top, 256 - 42);
    for (const TRect& each : {center, right}) {
        EXPECT_EQ(each.GetWidth(), left.GetWidth());
        EXPECT_EQ(each.GetHeight(), left.GetHeight());
    }
    EXPECT_NEAR((center.Left + center.Right) / 2.0, 256, 1);
    EXPECT_NEAR(center.Top - right.Top, left.Top - center.Top, 1);
}

TEST(Bitmap32VecDocRenderer, LettersKeepTheirProportions) {
    const TTextItem item = Letter({256, 256}, THAlign::haCenter, TVAlign::vaMiddle);
    const TRect square = InkOf(Rendered({512, 512, {item}}, 512, 512));
    const TRect wide = InkOf(Rendered({512, 512, {item}}, 1024, 512));
    EXPECT_EQ(wide.GetWidth(), square.GetWidth());
    EXPECT_EQ(wide.GetHeight(), square.GetHeight());
    EXPECT_EQ(wide.Left, square.Left + 256);
}

TEST(Bitmap32VecDocRenderer, AWidthNarrowsAnAutomaticText) {
    TTextItem item = Letter({0, 0}, THAlign::haLeft, TVAlign::vaTop);
    item.Text = QStringLiteral("HHHHHHHH");
    const TRect free = InkOf(Rendered({512, 512, {item}}, 512, 512));
    ASSERT_GT(free.Right, 100);
    item.Width = 100;
    const TRect bound = InkOf(Rendered({512, 512, {item}}, 512, 512));
    EXPECT_LE(bound.Right, 100);
    EXPECT_GT(bound.Right, 80);
}

TEST(Bitmap32VecDocRenderer, AFontSizeIsInUnitsOfTheDocument) {
    TTextItem item = Letter({16, 16}, THAlign::haLeft, TVAlign::vaTop);
    item.FontSize = 20;
    TBitmap32 expected = WhiteBitmap(256, 128);
    expected.GetFont().Name = QStringLiteral("Arial");
    expected.GetFont().Height = 40;
    expected.RenderText(64, 32, QStringLiteral("H"), 1, clBlack32);
    EXPECT_EQ(AllPixels(Rendered({64, 64, {item}}, 256, 128)), AllPixels(expected));
}

TEST(Bitmap32VecDocRenderer, ATextThatFitsInNoSizeIsNotDrawn) {
    const TTextItem item = Letter({256, 256}, THAlign::haCenter, TVAlign::vaMiddle);
    EXPECT_EQ(InkOf(Rendered({512, 512, {item}}, 4, 4)), TRect(4, 4, 0, 0));
    TTextItem placeless = item;
    placeless.Position.X = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(InkOf(Rendered({512, 512, {placeless}}, 64, 64)), TRect(64, 64, 0, 0));
    TTextItem shapeless = item;
    shapeless.Height = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(InkOf(Rendered({512, 512, {shapeless}}, 64, 64)), TRect(64, 64, 0, 0));
}

TEST(Bitmap32VecDocRenderer, AnAutomaticTextIsNoSpeck) {
    TTextItem item = Letter({256, 256}, THAlign::haCenter, TVAlign::vaMiddle);
    EXPECT_EQ(InkOf(Rendered({512, 512, {item}}, 32, 32)), TRect(32, 32, 0, 0));
    EXPECT_GE(InkOf(Rendered({512, 512, {item}}, 96, 96)).GetHeight(), 3);
    item.FontSize = 16; // a pixel
    EXPECT_FALSE(InkOf(Rendered({512, 512, {item}}, 32, 32)).IsEmpty()) << "a size that is told is taken";
}

TEST(Bitmap32VecDocRenderer, LeavesTheFontOfTheBitmap) {
    TBitmap32 bitmap = WhiteBitmap(64, 64);
    bitmap.GetFont().Name = QStringLiteral("Courier");
    const TFont32 font = bitmap.GetFont();
    const TVectorDoc document{512, 512, {Letter({256, 256}, THAlign::haCenter, TVAlign::vaMiddle)}};
    TBitmap32VecDocRenderer(std::make_shared<TVectorDoc>(document)).Render(bitmap);
    EXPECT_EQ(bitmap.GetFont(), font);
}

} // namespace
} // namespace lmx
