#include <lmx/Graphics/Private/lmxBlend.h>
#include <lmx/Runtime/lmxExtended.h>
#include <tests/Graphics/Pictures.h>

#include <QFont>
#include <QFontMetrics>

#include <algorithm>
#include <limits>

namespace lmx {
namespace {

using tests::AllPixels;

constexpr TColor32 Ink = 0xFF0000FFU;
const QString Sample = QStringLiteral("Wg");

/// The smallest rectangle around the pixels that differ from `ground`.
TRect InkBounds(const TBitmap32& bitmap, TColor32 ground = 0) {
    TRect bounds(bitmap.GetWidth(), bitmap.GetHeight(), 0, 0);
    for (std::int32_t y = 0; y < bitmap.GetHeight(); ++y)
        for (std::int32_t x = 0; x < bitmap.GetWidth(); ++x)
            if (bitmap.Pixel(x, y) != ground)
                bounds = {std::min(bounds.Left, x), std::min(bounds.Top, y), std::max(bounds.Right, x + 1),
                          std::max(bounds.Bottom, y + 1)};
    return bounds;
}

TBitmap32 Rendered(std::int32_t width, std::int32_t height, TPoint at, const QString& text, int level = 0,
                   TColor32 color = Ink) {
    TBitmap32 bitmap(width, height);
    bitmap.RenderText(at.X, at.Y, text, level, color);
    return bitmap;
}

TBitmap32 Boxed(std::int32_t width, std::int32_t height, TRect rect, unsigned flags, const QString& text) {
    TBitmap32 bitmap(width, height);
    bitmap.GetFont().Color = WinColor(Ink);
    bitmap.Textout(rect, flags, text);
    return bitmap;
}

TEST(Bitmap32Text, ExtentsComeFromTheMetricsOfTheFontThatIsDrawn) {
    TBitmap32 bitmap;
    for (const int size : {8, 9, 14}) {
        bitmap.GetFont().Size = size;
        for (const int level : {0, 1, 4}) {
            const TFontSmoothing smoothing = level == 0 ? TFontSmoothing::fsHard : TFontSmoothing::fsGrey;
            const QFontMetrics metrics(MakeFont(bitmap.GetFont(), smoothing));
            const TSize extent = bitmap.TextExtent(Sample, level);
            EXPECT_EQ(extent, TSize(metrics.horizontalAdvance(Sample), metrics.height()));
            EXPECT_EQ(extent, TSize(bitmap.TextWidth(Sample, level), bitmap.TextHeight(Sample, level)));
            EXPECT_EQ(bitmap.TextHeight(QStringLiteral("a"), level), extent.cy) << "whatever the text";
        }
        EXPECT_EQ(bitmap.TextExtent(Sample), bitmap.TextExtent(Sample, 0));
    }
}

TEST(Bitmap32Text, TextoutFindsRoomInWhatLevelOneMeasures) {
    const QString text = QStringLiteral("Mean annual precipitation of the western highlands, in millimetres");
    for (int size = 6; size <= 24; ++size) {
        TBitmap32 bitmap(1200, 100);
        bitmap.GetFont().Size = size;
        const TSize room = bitmap.TextExtent(text, 1);
        bitmap.Textout(TRect(0, 0, room.cx, 100), dtWordBreak, text);
        EXPECT_LE(InkBounds(bitmap).Bottom, room.cy) << size << ": one line";
        TBitmap32 narrow(1200, 100);
        narrow.GetFont().Size = size;
        narrow.Textout(TRect(0, 0, room.cx - 1, 100), dtWordBreak, text);
        EXPECT_GT(InkBounds(narrow).Bottom, room.cy) << size << ": two lines";
    }
}

TEST(Bitmap32Text, HugeLettersAreMeasuredAndDrawnAtTheLargestSize) {
    TBitmap32 bitmap(64, 64);
    bitmap.GetFont().Size = 3072;
    const TSize largest = bitmap.TextExtent(Sample);
    EXPECT_GT(largest.cy, 4000);
    EXPECT_GT(largest.cx, 4000);
    for (const int size : {13300, 100000, std::numeric_limits<int>::max()}) {
        bitmap.GetFont().Size = size;
        EXPECT_EQ(bitmap.TextExtent(Sample), largest) << size;
    }
    bitmap.Textout(TRect(-600, -2000, 5000, 5000), dtLeft, QStringLiteral("M"));
    EXPECT_EQ(InkBounds(bitmap), TRect(0, 0, 64, 64)) << "within the left stem";
}

TEST(Bitmap32Text, LongTextsHaveTheirWidth) {
    TBitmap32 bitmap(64, 32);
    bitmap.GetFont().Size = 3072;
    const std::int32_t one = bitmap.TextWidth(QStringLiteral("W"));
    EXPECT_EQ(bitmap.TextWidth(QString(10000, u'W')), 10000 * one) << "more than 32 bits of 64ths";
    EXPECT_EQ(bitmap.TextWidth(QString(150000, u'W')), PixelLimit);
}

TEST(Bitmap32Text, TrailingBlanksCountAndNothingIsZero) {
    const TBitmap32 bitmap;
    EXPECT_EQ(bitmap.TextWidth(QString()), 0);
    EXPECT_GT(bitmap.TextWidth(QStringLiteral("a ")), bitmap.TextWidth(QStringLiteral("a")));
    EXPECT_GT(bitmap.TextHeight(QString()), 0);
}

TEST(Bitmap32Text, RatioScalesTheText) {
    TBitmap32 bitmap;
    const QString text = QStringLiteral("A line of text for two kinds of screens");
    const TSize before = bitmap.TextExtent(text);
    bitmap.GetFont().Ratio = 2;
    const TSize after = bitmap.TextExtent(text);
    EXPECT_NEAR(after.cx, 2 * before.cx, 0.2 * before.cx);
    EXPECT_NEAR(after.cy, 2 * before.cy, 3);
}

TEST(Bitmap32Text, LevelZeroHasHardEdges) {
    const std::vector<TColor32> pixels = AllPixels(Rendered(60, 20, {3, 2}, Sample));
    const auto set = std::count(pixels.begin(), pixels.end(), Ink);
    const auto clear = std::count(pixels.begin(), pixels.end(), 0U);
    EXPECT_GT(set, 20);
    EXPECT_EQ(set + clear, 60 * 20);
}

TEST(Bitmap32Text, OtherLevelsHaveGreyEdges) {
    TBitmap32 bitmap(60, 20);
    bitmap.Clear(clWhite32);
    bitmap.RenderText(3, 2, QStringLiteral("O"), 2, clBlack32);
    const std::vector<TColor32> pixels = AllPixels(bitmap);
    EXPECT_TRUE(std::any_of(pixels.begin(), pixels.end(),
                            [](TColor32 pixel) { return pixel != clWhite32 && pixel != clBlack32; }));
    for (const TColor32 pixel : pixels)
        ASSERT_TRUE(RedComponent(pixel) == BlueComponent(pixel) && RedComponent(pixel) == GreenComponent(pixel));
}

TEST(Bitmap32Text, ThePositionIsTheTopLeftOfTheCell) {
    const TBitmap32 bitmap = Rendered(100, 40, {10, 5}, Sample);
    const TRect ink = InkBounds(bitmap);
    const TSize cell = bitmap.TextExtent(Sample);
    EXPECT_GE(ink.Left, 10);
    EXPECT_LE(ink.Left, 12);
    EXPECT_GE(ink.Top, 5);
    EXPECT_LE(ink.Right, 10 + cell.cx);
    EXPECT_LE(ink.Bottom, 5 + cell.cy);
    const QFontMetrics metrics(MakeFont(bitmap.GetFont(), TFontSmoothing::fsHard));
    EXPECT_EQ(InkBounds(Rendered(100, 40, {10, 5}, QStringLiteral("W"))).Bottom, 5 + metrics.ascent());
}

TEST(Bitmap32Text, MovingTheTextMovesItsPixels) {
    const TBitmap32 here = Rendered(60, 30, {0, 0}, Sample);
    TBitmap32 moved(60, 30);
    moved.Draw(7, 4, here);
    EXPECT_EQ(AllPixels(Rendered(60, 30, {7, 4}, Sample)), AllPixels(moved));
}

TEST(Bitmap32Text, TheColorIsBlendedByItsAlpha) {
    const TBitmap32 mask = Rendered(40, 20, {2, 2}, Sample);
    TBitmap32 bitmap(40, 20);
    bitmap.Clear(0xFF204060U);
    bitmap.RenderText(2, 2, Sample, 0, 0x80FFFFFFU);
    for (std::int32_t y = 0; y < 20; ++y)
        for (std::int32_t x = 0; x < 40; ++x)
            ASSERT_EQ(bitmap.Pixel(x, y), mask.Pixel(x, y) ? BlendColor(0x80FFFFFFU, 0xFF204060U) : 0xFF204060U);
}

TEST(Bitmap32Text, TextOutsideDrawsNothing) {
    for (const TPoint at : {TPoint(30, 0), TPoint(0, 30), TPoint(-200, 0), TPoint(0, -200)})
        EXPECT_EQ(AllPixels(Rendered(30, 30, at, Sample)), AllPixels(TBitmap32(30, 30)));
    EXPECT_EQ(AllPixels(Rendered(30, 30, {2, 2}, QString())), AllPixels(TBitmap32(30, 30)));
}

TEST(Bitmap32Text, ATextLongerThanTheBitmapLosesItsTailWhenMovedLeft) {
    const QString longText = QStringLiteral("WWWWWWWWWWWWWWWWWWWW");
    const TBitmap32 bitmap = Rendered(50, 20, {-30, 0}, longText);
    const TRect ink = InkBounds(bitmap);
    EXPECT_EQ(ink.Left, 0);
    EXPECT_LE(ink.Right, 20) << "fifty pixels of the cell, thirty of them outside";
    EXPECT_GT(ink.Right, 10);
}

TEST(Bitmap32Text, ATextHigherThanTheBitmapLosesItsFootWhenMovedUp) {
    const TRect ink = InkBounds(Rendered(60, 8, {0, -4}, QStringLiteral("WWWW")));
    EXPECT_EQ(ink.Top, 0);
    EXPECT_EQ(ink.Bottom, 4) << "eight rows of the cell, four of them outside";
}

TEST(Bitmap32Text, TextoutIsClippedToItsRectangle) {
    const QString word = QStringLiteral("WWWWWWWWWWWWWWWWWWWWWWWW");
    const TRect rect(10, 10, 40, 40);
    const TRect ink = InkBounds(Boxed(100, 50, rect, dtWordBreak, word));
    EXPECT_EQ(ink.Right, 40) << "the word is not broken";
    EXPECT_GE(ink.Left, 10);
    EXPECT_LT(ink.Bottom, 30) << "one line";
    EXPECT_GT(InkBounds(Boxed(100, 50, rect, dtNoClip, word)).Right, 60);
}

TEST(Bitmap32Text, TextoutUsesTheFontsColorAndLeavesTheBufferOpaque) {
    TBitmap32 bitmap(60, 30);
    bitmap.Clear(clWhite32);
    bitmap.GetFont().Color = {0x000000FF}; // red
    bitmap.Textout(TRect(0, 0, 60, 30), dtLeft, QStringLiteral("WWW"));
    int reddest = 255;
    for (const TColor32 pixel : AllPixels(bitmap)) {
        ASSERT_EQ(AlphaComponent(pixel), 255);
        ASSERT_EQ(RedComponent(pixel), 255);
        reddest = std::min<int>(reddest, GreenComponent(pixel));
    }
    EXPECT_LT(reddest, 64);
}

TEST(Bitmap32Text, AlignmentsOrderTheText) {
    const TRect rect(0, 0, 100, 20);
    const TRect left = InkBounds(Boxed(100, 20, rect, dtLeft | dtWordBreak, Sample));
    const TRect center = InkBounds(Boxed(100, 20, rect, dtCenter | dtWordBreak, Sample));
    const TRect right = InkBounds(Boxed(100, 20, rect, dtRight | dtWordBreak, Sample));
    EXPECT_LT(left.Left, 4);
    EXPECT_NEAR(center.Left + center.Right, 100, 3);
    EXPECT_GT(right.Right, 96);
    EXPECT_EQ(left.Top, right.Top) << "top aligned";
}

TEST(Bitmap32Text, VerticalCentreNeedsASingleLine) {
    const TRect rect(0, 0, 60, 61);
    const TRect top = InkBounds(Boxed(60, 61, rect, dtVCenter, Sample));
    const TRect middle = InkBounds(Boxed(60, 61, rect, dtVCenter | dtSingleLine, Sample));
    EXPECT_LT(top.Bottom, 20);
    EXPECT_GT(middle.Top, 20);
}

TEST(Bitmap32Text, LinesBreakAtEveryKindOfLineBreak) {
    const TRect rect(0, 0, 60, 60);
    const std::vector<TColor32> lf = AllPixels(Boxed(60, 60, rect, dtWordBreak, QStringLiteral("a\nb\n\nc")));
    EXPECT_EQ(AllPixels(Boxed(60, 60, rect, dtWordBreak, QStringLiteral("a\r\nb\r\n\r\nc"))), lf);
    EXPECT_EQ(AllPixels(Boxed(60, 60, rect, dtWordBreak, QStringLiteral("a\rb\r\rc"))), lf);
    const std::int32_t one = InkBounds(Boxed(60, 60, rect, dtWordBreak, QStringLiteral("a"))).Bottom;
    EXPECT_GT(InkBounds(Boxed(60, 60, rect, dtWordBreak, QStringLiteral("a\nb\n\nc"))).Bottom, 3 * one);
}

TEST(Bitmap32Text, WordsWrapOnlyWhenAsked) {
    const TRect rect(0, 0, 40, 60);
    const QString text = QStringLiteral("word word word");
    EXPECT_GT(InkBounds(Boxed(40, 60, rect, dtWordBreak, text)).Bottom, 24);
    EXPECT_LT(InkBounds(Boxed(40, 60, rect, dtLeft, text)).Bottom, 20);
}

TEST(Bitmap32Text, AmpersandUnderlinesTheNextLetter) {
    const TRect rect(0, 0, 60, 20);
    const TRect plain = InkBounds(Boxed(60, 20, rect, dtLeft, QStringLiteral("WM")));
    const TRect marked = InkBounds(Boxed(60, 20, rect, dtLeft, QStringLiteral("&WM")));
    EXPECT_EQ(marked.Right, plain.Right);
    EXPECT_GT(marked.Bottom, plain.Bottom);
    EXPECT_EQ(AllPixels(Boxed(60, 20, rect, dtLeft, QStringLiteral("W&&M"))),
              AllPixels(Boxed(60, 20, rect, dtNoPrefix, QStringLiteral("W&M"))));
}

TEST(Bitmap32Text, TextoutInAnEmptyOrInvisibleRectangleDrawsNothing) {
    for (const TRect rect : {TRect(5, 5, 5, 20), TRect(20, 5, 5, 20), TRect(-50, 0, 0, 20), TRect(60, 0, 90, 20)})
        EXPECT_EQ(AllPixels(Boxed(60, 20, rect, dtWordBreak, Sample)), AllPixels(TBitmap32(60, 20)));
}

TEST(Bitmap32Text, ARectangleThatLeavesTheBitmapKeepsItsLayout) {
    const TBitmap32 whole = Boxed(80, 20, {0, 0, 80, 20}, dtCenter, QStringLiteral("Wide text"));
    TBitmap32 part(40, 20);
    part.Draw(-20, 0, whole);
    EXPECT_EQ(AllPixels(Boxed(40, 20, {-20, 0, 60, 20}, dtCenter, QStringLiteral("Wide text"))), AllPixels(part));
}

TEST(Bitmap32Text, TextOnATransparentBitmapKeepsItsEdgesWhenMerged) {
    TBitmap32 bitmap(60, 20);
    bitmap.SetCombineMode(TCombineMode::cmMerge);
    bitmap.Textout(TRect(0, 0, 60, 20), dtLeft, QStringLiteral("O"));
    const std::vector<TColor32> pixels = AllPixels(bitmap);
    EXPECT_TRUE(std::any_of(pixels.begin(), pixels.end(),
                            [](TColor32 pixel) { return AlphaComponent(pixel) > 0 && AlphaComponent(pixel) < 255; }));
}

} // namespace
} // namespace lmx
