#include <lmx/Graphics/Private/lmxBlend.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Graphics/Pictures.h>

#include <limits>
#include <utility>

namespace lmx {
namespace {

using tests::AllPixels;
using tests::Show;
using tests::TPicture;

constexpr TColor32 Ground = 0xFF102030U;
constexpr TColor32 Half = 0x80FF00FFU;
constexpr TColor32 Mixed = BlendColor(Half, Ground);
constexpr std::int32_t Lowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t Highest = std::numeric_limits<std::int32_t>::max();
const tests::TLetters Letters = {{Ground, '.'}, {Half, '#'}, {Mixed, '+'}};

TBitmap32 MakeGround(std::int32_t width, std::int32_t height) {
    TBitmap32 bitmap(width, height);
    bitmap.Clear(Ground);
    return bitmap;
}

TEST(Bitmap32, Defaults) {
    const TBitmap32 bitmap;
    EXPECT_EQ(bitmap.GetWidth(), 0);
    EXPECT_EQ(bitmap.GetHeight(), 0);
    EXPECT_EQ(bitmap.GetPenColor(), clWhite32);
    EXPECT_EQ(bitmap.GetOuterColor(), 0U);
    EXPECT_EQ(bitmap.GetMasterAlpha(), 255);
    EXPECT_EQ(bitmap.GetDrawMode(), TDrawMode::dmOpaque);
    EXPECT_EQ(bitmap.GetCombineMode(), TCombineMode::cmBlend);
    EXPECT_EQ(bitmap.GetStippleStep(), 1.0);
    EXPECT_EQ(bitmap.GetDeviceRatio(), 1.0);
    EXPECT_EQ(bitmap.GetFont(), TFont32());
}

TEST(Bitmap32, DrawModesHaveTheirOrdinals) {
    EXPECT_EQ(static_cast<int>(TDrawMode::dmOpaque), 0);
    EXPECT_EQ(static_cast<int>(TDrawMode::dmBlend), 1);
    EXPECT_EQ(static_cast<int>(TDrawMode::dmCustom), 2);
    EXPECT_EQ(static_cast<int>(TDrawMode::dmTransparent), 3);
}

TEST(Bitmap32, NewMemoryReadsZero) {
    TBitmap32 bitmap(2, 2);
    bitmap.Clear();
    EXPECT_EQ(AllPixels(bitmap), std::vector<TColor32>(4, clBlack32));
    EXPECT_TRUE(bitmap.SetSize(3, 1));
    EXPECT_EQ(AllPixels(bitmap), std::vector<TColor32>(3, 0U));
}

TEST(Bitmap32, TheSameSizeKeepsThePixels) {
    TBitmap32 bitmap = MakeGround(2, 1);
    EXPECT_FALSE(bitmap.SetSize(2, 1));
    EXPECT_EQ(Show(bitmap, Letters), TPicture{".."});
}

TEST(Bitmap32, NegativeSidesBecomeZero) {
    TBitmap32 bitmap(-5, 7);
    EXPECT_EQ(bitmap.GetWidth(), 0);
    EXPECT_EQ(bitmap.GetHeight(), 7);
    EXPECT_TRUE(bitmap.IsEmpty());
}

TEST(Bitmap32, EverythingDoesNothingOnAnEmptyBitmap) {
    TBitmap32 bitmap(0, 7);
    bitmap.Clear(Half);
    bitmap.SetPixelS(0, 0, Half);
    bitmap.FillRectS(-9, -9, 9, 9, Half);
    bitmap.FillRectTS(-9, -9, 9, 9, Half);
    bitmap.FrameRectS(-9, -9, 9, 9, Half);
    bitmap.FrameRectTS(-9, -9, 9, 9, Half);
    bitmap.Draw(0, 0, MakeGround(2, 2));
    bitmap.Draw(TRect(0, 0, 5, 5), TRect(0, 0, 2, 2), MakeGround(2, 2));
    bitmap.LineToS(5, 5);
    bitmap.LineToFS(5, 5);
    bitmap.LineToFSP(5, 5);
    bitmap.RenderText(0, 0, QStringLiteral("text"), 0, Half);
    bitmap.Textout(TRect(0, 0, 50, 50), dtWordBreak, QStringLiteral("text"));
    EXPECT_TRUE(bitmap.IsEmpty());
    EXPECT_EQ(bitmap.GetPixelS(0, 0), bitmap.GetOuterColor());
}

TEST(Bitmap32, CopiesAreIndependent) {
    TBitmap32 original = MakeGround(1, 1);
    original.SetDrawMode(TDrawMode::dmTransparent);
    TBitmap32 copy = original;
    copy.Pixel(0, 0) = Half;
    EXPECT_EQ(original.Pixel(0, 0), Ground);
    EXPECT_EQ(copy.GetDrawMode(), TDrawMode::dmTransparent);
}

TEST(Bitmap32, ASizeThatNoMachineHoldsIsRefused) {
    TBitmap32 bitmap = MakeGround(2, 1);
    for (const auto& [width, height] : {std::pair(Highest, Highest), std::pair(4000000, 4000000)}) {
        EXPECT_THROW(bitmap.SetSize(width, height), EOutOfMemory);
        EXPECT_THROW(TBitmap32(width, height), EOutOfMemory);
        EXPECT_EQ(bitmap.GetBounds(), TRect(0, 0, 2, 1));
        EXPECT_EQ(Show(bitmap, Letters), TPicture{".."});
    }
}

TEST(Bitmap32, OneThatWasMovedFromIsEmpty) {
    TBitmap32 bitmap = MakeGround(2, 1);
    const TBitmap32 taken = std::move(bitmap);
    EXPECT_EQ(Show(taken, Letters), TPicture{".."});
    EXPECT_TRUE(bitmap.IsEmpty()); // NOLINT(bugprone-use-after-move)
    EXPECT_EQ(bitmap.GetBounds(), TRect());
    EXPECT_TRUE(bitmap.SetSize(2, 1));
    EXPECT_EQ(AllPixels(bitmap), std::vector<TColor32>(2, 0U));
}

TEST(Bitmap32, CheckedPixels) {
    TBitmap32 bitmap = MakeGround(2, 2);
    bitmap.SetOuterColor(0x12345678U);
    bitmap.SetPixelS(1, 0, Half);
    for (const TPoint outside : {TPoint(-1, 0), TPoint(2, 0), TPoint(0, -1), TPoint(0, 2), TPoint(Lowest, Highest)}) {
        bitmap.SetPixelS(outside.X, outside.Y, Half);
        EXPECT_EQ(bitmap.GetPixelS(outside.X, outside.Y), 0x12345678U);
    }
    EXPECT_EQ(bitmap.GetPixelS(1, 0), Half);
    EXPECT_EQ(Show(bitmap, Letters), (TPicture{".#", ".."}));
}

TEST(Bitmap32, FillRectSWritesRaw) {
    TBitmap32 bitmap = MakeGround(4, 3);
    bitmap.FillRectS(1, 1, 3, 2, Half);
    EXPECT_EQ(Show(bitmap, Letters), (TPicture{"....", ".##.", "...."}));
}

TEST(Bitmap32, FillRectTSBlends) {
    TBitmap32 bitmap = MakeGround(4, 3);
    bitmap.FillRectTS(TRect(1, 1, 3, 2), Half);
    EXPECT_EQ(Show(bitmap, Letters), (TPicture{"....", ".++.", "...."}));
    bitmap.FillRectTS(0, 0, 4, 3, 0x00FFFFFFU);
    EXPECT_EQ(Show(bitmap, Letters), (TPicture{"....", ".++.", "...."}));
}

TEST(Bitmap32, FillRectTSMergesWhereTheBitmapSaysSo) {
    TBitmap32 bitmap(1, 1);
    bitmap.SetCombineMode(TCombineMode::cmMerge);
    bitmap.FillRectTS(0, 0, 1, 1, Half);
    EXPECT_EQ(bitmap.Pixel(0, 0), Half);
    bitmap.FillRectTS(0, 0, 1, 1, Half);
    EXPECT_EQ(bitmap.Pixel(0, 0), 0xC0FF00FFU);
}

TEST(Bitmap32, RectanglesAreClipped) {
    TBitmap32 bitmap = MakeGround(3, 2);
    bitmap.FillRectS(Lowest, Lowest, 1, Highest, Half);
    EXPECT_EQ(Show(bitmap, Letters), (TPicture{"#..", "#.."}));
    bitmap = MakeGround(3, 2);
    bitmap.FrameRectS(1, -1, Highest, Highest, Half);
    EXPECT_EQ(Show(bitmap, Letters), (TPicture{".#.", ".#."}));
}

struct TNoRectangle {
    const char* Name;
    TRect Rect;
};
void PrintTo(const TNoRectangle& row, std::ostream* stream) {
    *stream << row.Name;
}

class Bitmap32EmptyRects : public testing::TestWithParam<TNoRectangle> {};

TEST_P(Bitmap32EmptyRects, DrawNothing) {
    TBitmap32 bitmap = MakeGround(3, 3);
    bitmap.FillRectS(GetParam().Rect, Half);
    bitmap.FillRectTS(GetParam().Rect, Half);
    bitmap.FrameRectS(GetParam().Rect, Half);
    bitmap.FrameRectTS(GetParam().Rect, Half);
    EXPECT_EQ(Show(bitmap, Letters), (TPicture{"...", "...", "..."}));
}

INSTANTIATE_TEST_SUITE_P(Rects, Bitmap32EmptyRects,
                         testing::Values(TNoRectangle{"NoWidth", {1, 0, 1, 3}}, TNoRectangle{"NoHeight", {0, 1, 3, 1}},
                                         TNoRectangle{"InvertedX", {2, 0, 1, 3}},
                                         TNoRectangle{"InvertedY", {0, 2, 3, 1}},
                                         TNoRectangle{"InvertedAtTheEnds", {Highest, Highest, Lowest, Lowest}},
                                         TNoRectangle{"ToTheRight", {3, 0, 9, 3}},
                                         TNoRectangle{"Above", {0, -5, 3, 0}}),
                         [](const auto& tested) { return std::string(tested.param.Name); });

TEST(Bitmap32, FrameRectSDrawsTheOutermostPixels) {
    TBitmap32 bitmap = MakeGround(6, 5);
    bitmap.FrameRectS(1, 1, 5, 4, Half);
    EXPECT_EQ(Show(bitmap, Letters), (TPicture{"......", //
                                               ".####.", //
                                               ".#..#.", //
                                               ".####.", //
                                               "......"}));
}

TEST(Bitmap32, FrameRectTSBlendsEachPixelOnce) {
    TBitmap32 bitmap = MakeGround(6, 5);
    bitmap.FrameRectTS(TRect(1, 1, 5, 4), Half);
    EXPECT_EQ(Show(bitmap, Letters), (TPicture{"......", //
                                               ".++++.", //
                                               ".+..+.", //
                                               ".++++.", //
                                               "......"}));
}

TEST(Bitmap32, NarrowFramesAreDrawnOnce) {
    TBitmap32 bitmap = MakeGround(6, 3);
    bitmap.FrameRectTS(1, 1, 5, 2, Half);
    EXPECT_EQ(Show(bitmap, Letters), (TPicture{"......", ".++++.", "......"}));
    bitmap = MakeGround(3, 5);
    bitmap.FrameRectTS(1, 1, 2, 4, Half);
    EXPECT_EQ(Show(bitmap, Letters), (TPicture{"...", ".+.", ".+.", ".+.", "..."}));
    bitmap = MakeGround(3, 3);
    bitmap.FrameRectTS(1, 1, 2, 2, Half);
    EXPECT_EQ(Show(bitmap, Letters), (TPicture{"...", ".+.", "..."}));
}

} // namespace
} // namespace lmx
