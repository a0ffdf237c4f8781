#include <lmx/Graphics/Private/lmxBlend.h>
#include <tests/Graphics/Pictures.h>

#include <array>
#include <cmath>
#include <limits>

namespace lmx {
namespace {

using tests::AllPixels;
using tests::Between;
using tests::Row;
using tests::Show;
using tests::TPicture;

constexpr TColor32 Pen = 0x80FF8000U;
const tests::TLetters Letters = {{0, '.'}, {Pen, '#'}};

TPicture WholeLine(std::int32_t width, std::int32_t height, TPoint from, TPoint to) {
    TBitmap32 bitmap(width, height);
    bitmap.SetPenColor(Pen);
    bitmap.MoveTo(from.X, from.Y);
    bitmap.LineToS(to.X, to.Y);
    return Show(bitmap, Letters);
}

TEST(Bitmap32Lines, TheEndPixelIsLeftOut) {
    EXPECT_EQ(WholeLine(6, 1, {1, 0}, {4, 0}), TPicture{".###.."});
    EXPECT_EQ(WholeLine(6, 1, {4, 0}, {1, 0}), TPicture{"..###."});
    EXPECT_EQ(WholeLine(1, 4, {0, 3}, {0, 0}), (TPicture{".", "#", "#", "#"}));
    EXPECT_EQ(WholeLine(3, 3, {1, 1}, {1, 1}), (TPicture{"...", "...", "..."}));
}

TEST(Bitmap32Lines, TiesGoForwardInTheDirectionOfTravel) {
    EXPECT_EQ(WholeLine(5, 3, {0, 0}, {4, 2}), (TPicture{"#....", ".##..", "...#."}));
    EXPECT_EQ(WholeLine(5, 3, {4, 2}, {0, 0}), (TPicture{".#...", "..##.", "....#"}));
}

TEST(Bitmap32Lines, XIsTheMajorAxisOfADiagonal) {
    EXPECT_EQ(WholeLine(3, 3, {0, 2}, {2, 0}), (TPicture{"...", ".#.", "#.."}));
}

TEST(Bitmap32Lines, AClosedRingIsComplete) {
    TBitmap32 bitmap(4, 4);
    bitmap.SetPenColor(Pen);
    bitmap.MoveTo(0, 0);
    for (const TPoint corner : {TPoint(3, 0), TPoint(3, 3), TPoint(0, 3), TPoint(0, 0)})
        bitmap.LineToS(corner.X, corner.Y);
    EXPECT_EQ(Show(bitmap, Letters), (TPicture{"####", "#..#", "#..#", "####"}));
}

TEST(Bitmap32Lines, AnInvisibleLineMovesThePen) {
    TBitmap32 bitmap(4, 1);
    bitmap.SetPenColor(Pen);
    bitmap.MoveTo(-5, -9);
    bitmap.LineToS(1, -9);
    bitmap.LineToS(1, 0);
    bitmap.LineToS(3, 0);
    EXPECT_EQ(Show(bitmap, Letters), TPicture{".##."});
}

/// Every step of the line, visible or not.
void DrawLinePlainly(TBitmap32& bitmap, TPoint from, TPoint to) {
    const std::int64_t dx = std::int64_t{to.X} - from.X;
    const std::int64_t dy = std::int64_t{to.Y} - from.Y;
    const std::int64_t n = std::max(std::abs(dx), std::abs(dy));
    const std::int64_t m = std::min(std::abs(dx), std::abs(dy));
    for (std::int64_t k = 0; k < n; ++k) {
        const std::int64_t minor = (2 * k * m + n) / (2 * n);
        const bool xIsMajor = std::abs(dx) >= std::abs(dy);
        const std::int64_t alongX = xIsMajor ? k : minor;
        const std::int64_t alongY = xIsMajor ? minor : k;
        bitmap.SetPixelS(static_cast<std::int32_t>(from.X + (dx < 0 ? -alongX : alongX)),
                         static_cast<std::int32_t>(from.Y + (dy < 0 ? -alongY : alongY)), bitmap.GetPenColor());
    }
}

TEST(Bitmap32Lines, ClippingKeepsTheUnclippedPixels) {
    std::mt19937 random(26);
    for (int round = 0; round < 8000; ++round) {
        TBitmap32 fast(Between(random, 1, 20), Between(random, 1, 20));
        fast.SetPenColor(Pen);
        TBitmap32 plain = fast;
        const std::int32_t reach = round % 2 == 0 ? 25 : 300;
        const TPoint from(Between(random, -reach, reach), Between(random, -reach, reach));
        const TPoint to(Between(random, -reach, reach), Between(random, -reach, reach));
        fast.MoveTo(from.X, from.Y);
        fast.LineToS(to.X, to.Y);
        DrawLinePlainly(plain, from, to);
        ASSERT_EQ(AllPixels(fast), AllPixels(plain)) << from.X << ',' << from.Y << " to " << to.X << ',' << to.Y
                                                     << " on " << fast.GetWidth() << " x " << fast.GetHeight();
    }
}

TEST(Bitmap32Lines, ManyLinesEqualOneAfterTheOther) {
    std::mt19937 random(27);
    for (int round = 0; round < 5000; ++round) {
        TBitmap32 together(Between(random, 0, 20), Between(random, 1, 20));
        together.SetPenColor(Pen);
        TBitmap32 plain = together;
        const std::int32_t step = round % 3; // up to one pixel, and up to two
        std::vector<TPoint> points{{Between(random, -5, 25), Between(random, -5, 25)}};
        while (points.size() < 30)
            points.emplace_back(points.back().X + Between(random, -step, step),
                                points.back().Y + Between(random, -step, step));
        together.LinesToS(points);
        plain.MoveTo(0, 0);
        for (const TPoint& point : points)
            plain.LineToS(point.X, point.Y);
        ASSERT_EQ(AllPixels(together), AllPixels(plain));
        together.LineToS(9, 9); // the pen stands at the last point
        plain.LineToS(9, 9);
        ASSERT_EQ(AllPixels(together), AllPixels(plain));
    }
}

TEST(Bitmap32Lines, NoPointIsANeighbourAroundTheEndOfTheIntegers) {
    constexpr std::int32_t lowest = std::numeric_limits<std::int32_t>::min();
    constexpr std::int32_t highest = std::numeric_limits<std::int32_t>::max();
    TBitmap32 bitmap(3, 1);
    bitmap.SetPenColor(Pen);
    bitmap.MoveTo(highest, 0);
    const TPoint end(lowest, 0);
    bitmap.LinesToS(std::span(&end, 1));
    EXPECT_EQ(Show(bitmap, Letters), TPicture{"###"});
}

TEST(Bitmap32Lines, FarPointsAreExact) {
    constexpr std::int32_t far = 1 << 29;
    EXPECT_EQ(WholeLine(4, 4, {-far, -far}, {far, far}), (TPicture{"#...", ".#..", "..#.", "...#"}));
    EXPECT_EQ(WholeLine(4, 1, {-far, 0}, {far, 0}), TPicture{"####"});
    EXPECT_EQ(WholeLine(4, 2, {-far, -1}, {far, 1}), (TPicture{"####", "...."})) << "step far is half way up: a tie";
    constexpr std::int32_t lowest = std::numeric_limits<std::int32_t>::min();
    constexpr std::int32_t highest = std::numeric_limits<std::int32_t>::max();
    EXPECT_EQ(WholeLine(3, 3, {lowest, lowest}, {highest, highest}), (TPicture{"#..", ".#.", "..#"}));
    EXPECT_EQ(WholeLine(2, 2, {lowest, highest}, {highest, highest - 1}), (TPicture{"..", ".."})) << "far below";
    EXPECT_EQ(WholeLine(2, 2, {lowest, lowest}, {highest, lowest + 1}), (TPicture{"..", ".."})) << "far above";
    EXPECT_EQ(WholeLine(2, 2, {highest, lowest}, {highest - 1, highest}), (TPicture{"..", ".."})) << "far right";
    EXPECT_EQ(WholeLine(3, 3, {lowest + 3, highest}, {highest, lowest + 3}), (TPicture{"..#", ".#.", "#.."}));
}

// --- Antialiased -----------------------------------------------------------------------------------------------------

TBitmap32 Black(std::int32_t width, std::int32_t height) {
    TBitmap32 bitmap(width, height);
    bitmap.Clear(clBlack32);
    return bitmap;
}

std::vector<int> Greens(const TBitmap32& bitmap, std::int32_t y) {
    std::vector<int> result;
    for (const TColor32 pixel : Row(bitmap, y))
        result.push_back(GreenComponent(pixel));
    return result;
}

using TGreens = std::vector<int>;

TEST(Bitmap32Lines, WholePositionsArriveUnchanged) {
    TBitmap32 bitmap = Black(5, 3);
    bitmap.SetPenColor(0xFF123456U);
    bitmap.MoveToF(1, 1);
    bitmap.LineToFS(4, 1);
    EXPECT_EQ(Row(bitmap, 1), (std::vector<TColor32>{clBlack32, 0xFF123456U, 0xFF123456U, 0xFF123456U, clBlack32}));
    EXPECT_EQ(Row(bitmap, 0), std::vector<TColor32>(5, clBlack32));
    EXPECT_EQ(Row(bitmap, 2), std::vector<TColor32>(5, clBlack32));
}

TEST(Bitmap32Lines, FractionsSpreadOverNeighbours) {
    TBitmap32 bitmap = Black(3, 3);
    bitmap.MoveToF(0, 0.25);
    bitmap.LineToFS(3, 0.25);
    EXPECT_EQ(Greens(bitmap, 0), (TGreens{191, 191, 191}));
    EXPECT_EQ(Greens(bitmap, 1), (TGreens{64, 64, 64}));
    EXPECT_EQ(bitmap.Pixel(0, 0), 0xFFBFBFBFU) << "an opaque line leaves an opaque buffer opaque";
}

TEST(Bitmap32Lines, NeighboursOutsideAreLeftOut) {
    TBitmap32 bitmap = Black(3, 2);
    bitmap.MoveToF(0, -0.25);
    bitmap.LineToFS(3, -0.25);
    EXPECT_EQ(Greens(bitmap, 0), (TGreens{191, 191, 191}));
    EXPECT_EQ(Greens(bitmap, 1), (TGreens{0, 0, 0}));
    bitmap = Black(2, 2);
    bitmap.MoveToF(1.5, 0);
    bitmap.LineToFS(1.5, 2);
    EXPECT_EQ(Greens(bitmap, 0), (TGreens{0, 128}));
}

TEST(Bitmap32Lines, TheRestOfTheLengthIsOneFainterSample) {
    // Length 2.5: samples at 0 and 1, then half a pixel before the middle of the rest, at 1.75, with half the weight.
    TBitmap32 bitmap = Black(4, 1);
    bitmap.MoveToF(0, 0);
    bitmap.LineToFS(2.5, 0);
    EXPECT_EQ(Greens(bitmap, 0), (TGreens{255, 255, 96, 0})) << "0.5 * 0.75 * 255 = 95.6";
}

TEST(Bitmap32Lines, TheColorsAlphaScalesTheWeight) {
    TBitmap32 bitmap(1, 1);
    bitmap.SetPenColor(0x80FF0000U);
    bitmap.MoveToF(0, 0);
    bitmap.LineToFS(1, 0);
    EXPECT_EQ(bitmap.Pixel(0, 0), 0x40800000U) << "all four channels, alpha too, go 128 / 255 of the way";
}

TEST(Bitmap32Lines, BothPensAreSeparate) {
    TBitmap32 bitmap = Black(4, 2);
    bitmap.MoveToF(0, 1);
    bitmap.MoveTo(3, 0);
    bitmap.LineToFS(2, 1);
    EXPECT_EQ(Greens(bitmap, 0), (TGreens{0, 0, 0, 0}));
    EXPECT_EQ(Greens(bitmap, 1), (TGreens{255, 255, 0, 0}));
}

TEST(Bitmap32Lines, LinesOutsideAndLinesThatAreNoneDrawNothing) {
    constexpr double infinite = std::numeric_limits<double>::infinity();
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    for (const auto& [from, to] :
         {std::pair{TFloatPoint{-5, -2}, TFloatPoint{5, -2}}, std::pair{TFloatPoint{4.5, -9}, TFloatPoint{4.5, 9}},
          std::pair{TFloatPoint{1, 1}, TFloatPoint{1, 1}}, std::pair{TFloatPoint{nan, 1}, TFloatPoint{1, 1}},
          std::pair{TFloatPoint{0, 1}, TFloatPoint{infinite, 1}}}) {
        TBitmap32 bitmap = Black(3, 3);
        bitmap.MoveToF(from.X, from.Y);
        bitmap.LineToFS(to.X, to.Y);
        EXPECT_EQ(AllPixels(bitmap), AllPixels(Black(3, 3))) << from.X << ',' << from.Y;
    }
}

/// The samples as they are defined, one after the other over the whole length.
void DrawSamplesPlainly(TBitmap32& bitmap, TFloatPoint from, TFloatPoint to, TColor32 color) {
    const double length = std::hypot(to.X - from.X, to.Y - from.Y);
    const TFloatPoint u = {(to.X - from.X) / length, (to.Y - from.Y) / length};
    const double whole = std::floor(length);
    const auto sample = [&](double distance, double strength) {
        const double x = std::floor((from.X + distance * u.X) * 256 + 0.5);
        const double y = std::floor((from.Y + distance * u.Y) * 256 + 0.5);
        if (std::isnan(x) || std::isnan(y) || std::isnan(strength))
            return; // a line without a direction
        const double cellX = std::floor(x / 256);
        const double cellY = std::floor(y / 256);
        for (const int down : {0, 1})
            for (const int right : {0, 1}) {
                const double weightX = right ? x - cellX * 256 : 256 - (x - cellX * 256);
                const double weightY = down ? y - cellY * 256 : 256 - (y - cellY * 256);
                const auto weight =
                    static_cast<std::uint32_t>(weightX * weightY * AlphaComponent(color) * strength + 0.5);
                const auto pixelX = static_cast<std::int32_t>(cellX) + right;
                const auto pixelY = static_cast<std::int32_t>(cellY) + down;
                if (bitmap.GetBounds().Contains({pixelX, pixelY}))
                    bitmap.Pixel(pixelX, pixelY) = CombineColor(color, bitmap.Pixel(pixelX, pixelY), weight);
            }
    };
    for (double k = 0; k < whole; ++k)
        sample(k, 1);
    sample(whole + (length - whole) / 2 - 0.5, length - whole);
}

TEST(Bitmap32Lines, AClippedLineIsTheCutOutOfTheUnclippedOne) {
    std::mt19937 random(27);
    std::uniform_real_distribution<double> place(-60, 60);
    for (int round = 0; round < 5000; ++round) {
        TBitmap32 fast = tests::RandomBitmap(random, Between(random, 1, 15), Between(random, 1, 15));
        fast.SetPenColor(tests::RandomColor(random));
        TBitmap32 plain = fast;
        TFloatPoint from = {place(random), place(random)};
        TFloatPoint to = {place(random), place(random)};
        if (round % 5 == 0)
            to.Y = from.Y = std::floor(from.Y / 4) + 0.25;
        if (round % 7 == 0)
            to.X = from.X = std::floor(from.X / 4);
        fast.MoveToF(from.X, from.Y);
        fast.LineToFS(to.X, to.Y);
        DrawSamplesPlainly(plain, from, to, plain.GetPenColor());
        ASSERT_EQ(AllPixels(fast), AllPixels(plain)) << from.X << ',' << from.Y << " to " << to.X << ',' << to.Y;
    }
}

// Lines along an axis, from places between which the fraction stays the same and from others.
TEST(Bitmap32Lines, LinesAlongAnAxisEqualTheirSamples) {
    std::mt19937 random(28);
    for (int round = 0; round < 8000; ++round) {
        TBitmap32 fast = tests::RandomBitmap(random, Between(random, 1, 40), Between(random, 1, 20));
        fast.SetPenColor(tests::RandomColor(random));
        TBitmap32 plain = fast;
        const auto place = [&] {
            constexpr std::array<double, 5> steps = {1, 4, 256, 1024, 1000}; // the last gives fractions that round
            return Between(random, -60'000, 60'000) / 1000 + Between(random, 0, 1023) / steps[random() % steps.size()];
        };
        TFloatPoint from = {place(), place()};
        TFloatPoint to = {place(), place()};
        if (round % 3 == 0)
            from = {std::floor(from.X / 20), std::floor(from.Y / 20)};
        (round % 2 == 0 ? to.X = from.X : to.Y = from.Y);
        fast.MoveToF(from.X, from.Y);
        fast.LineToFS(to.X, to.Y);
        DrawSamplesPlainly(plain, from, to, plain.GetPenColor());
        ASSERT_EQ(AllPixels(fast), AllPixels(plain)) << from.X << ',' << from.Y << " to " << to.X << ',' << to.Y;
    }
}

TEST(Bitmap32Lines, VeryLongLinesKeepTheirPlace) {
    TBitmap32 bitmap = Black(3, 3);
    bitmap.MoveToF(-1e9, 1);
    bitmap.LineToFS(1e9, 1);
    EXPECT_EQ(Greens(bitmap, 1), (TGreens{255, 255, 255}));
    EXPECT_EQ(Greens(bitmap, 0), (TGreens{0, 0, 0}));
    bitmap.MoveToF(1e300, 1e300);
    bitmap.LineToFS(-1e300, 1e300);
    EXPECT_EQ(Greens(bitmap, 0), (TGreens{0, 0, 0}));
}

// --- Stippled --------------------------------------------------------------------------------------------------------

constexpr TColor32 Dark = 0xFF000000U;
constexpr TColor32 Light = 0xFFFFFFFFU;
const tests::TLetters StippleLetters = {{0, '.'}, {Dark, 'd'}, {Light, 'l'}};

TBitmap32 Stippled(std::int32_t width, std::int32_t height) {
    TBitmap32 bitmap(width, height);
    bitmap.SetStipple(std::vector<TColor32>{Dark, Light});
    return bitmap;
}

TEST(Bitmap32Lines, StippleAlternatesPixelByPixel) {
    TBitmap32 bitmap = Stippled(6, 1);
    bitmap.MoveToF(0, 0);
    bitmap.LineToFSP(5, 0);
    EXPECT_EQ(Show(bitmap, StippleLetters), TPicture{"dldld."});
}

TEST(Bitmap32Lines, StippleRunsOnAndTheEmptyRestTakesAColorToo) {
    TBitmap32 bitmap = Stippled(5, 5);
    bitmap.MoveToF(0, 0);
    bitmap.LineToFSP(4, 0); // four samples and a rest of no weight: the corner begins with the second color
    bitmap.LineToFSP(4, 4);
    bitmap.LineToFSP(0, 4);
    bitmap.LineToFSP(0, 0);
    EXPECT_EQ(Show(bitmap, StippleLetters), (TPicture{"dldll", //
                                                      "d...d", //
                                                      "l...l", //
                                                      "d...d", //
                                                      "lldld"}));
}

TEST(Bitmap32Lines, ALineOfNoLengthTakesOneColor) {
    TBitmap32 bitmap = Stippled(3, 1);
    bitmap.MoveToF(0, 0);
    bitmap.LineToFSP(0, 0);
    EXPECT_EQ(bitmap.GetStippleCounter(), 1.0);
    EXPECT_EQ(Show(bitmap, StippleLetters), TPicture{"..."});
}

TEST(Bitmap32Lines, ClippedLengthsAdvanceTheStipple) {
    TBitmap32 bitmap = Stippled(4, 1);
    bitmap.MoveToF(-7, 0);
    bitmap.LineToFSP(2, 0);
    EXPECT_EQ(Show(bitmap, StippleLetters), TPicture{"ld.."});
    EXPECT_EQ(bitmap.GetStippleCounter(), 0.0) << "ten samples";
}

TEST(Bitmap32Lines, SetStippleBeginsAnew) {
    TBitmap32 bitmap = Stippled(2, 1);
    bitmap.SetStippleCounter(1);
    bitmap.SetStipple(std::vector<TColor32>{Light, Dark});
    EXPECT_EQ(bitmap.GetStippleCounter(), 0.0);
    bitmap.MoveToF(0, 0);
    bitmap.LineToFSP(2, 0);
    EXPECT_EQ(Show(bitmap, StippleLetters), TPicture{"ld"});
}

TEST(Bitmap32Lines, AFractionalCounterMixes) {
    TBitmap32 bitmap = Stippled(3, 1);
    bitmap.SetStippleStep(0.5);
    bitmap.MoveToF(0, 0);
    bitmap.LineToFSP(3, 0);
    EXPECT_EQ(Row(bitmap, 0), (std::vector<TColor32>{Dark, 0xFF808080U, Light}));
}

TEST(Bitmap32Lines, ANegativeStepGoesBackwards) {
    TBitmap32 bitmap(4, 1);
    bitmap.SetStipple(std::vector<TColor32>{Dark, Light, 0xFF00FF00U});
    bitmap.SetStippleStep(-1);
    bitmap.MoveToF(0, 0);
    bitmap.LineToFSP(4, 0);
    EXPECT_EQ(Row(bitmap, 0), (std::vector<TColor32>{Dark, 0xFF00FF00U, Light, Dark}));
}

TEST(Bitmap32Lines, WithoutAPatternTheLineIsBlack) {
    TBitmap32 bitmap(2, 1);
    bitmap.MoveToF(0, 0);
    bitmap.LineToFSP(2, 0);
    EXPECT_EQ(Show(bitmap, StippleLetters), TPicture{"dd"});
}

} // namespace
} // namespace lmx
