#include <lmx/Graphics/Private/lmxStroke.h>

#include <lmx/Graphics/Private/lmxCoverage.h>
#include <lmx/Runtime/lmxExtended.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <numbers>
#include <random>

namespace lmx {
namespace {

constexpr TRect Everywhere(-PixelLimit, -PixelLimit, PixelLimit, PixelLimit);

std::vector<TFloatPoints> StrokeContours(std::span<const TFloatPoint> points, bool closed, const TStroke& stroke) {
    return lmx::StrokeContours(points, closed, stroke, Everywhere);
}

std::string Text(const std::vector<TFloatPoints>& contours) {
    std::string text;
    const auto number = [](double value) {
        const double hundredths = std::nearbyint(value * 100) + 0.0;
        std::string digits = std::to_string(static_cast<int>(hundredths));
        return digits;
    };
    for (const TFloatPoints& contour : contours) {
        text += text.empty() ? "" : " | ";
        for (std::size_t i = 0; i < contour.size(); ++i)
            text += (i ? " " : "") + number(contour[i].X) + "," + number(contour[i].Y);
    }
    return text;
}

// Texts are in hundredths of a pixel.

TEST(Stroke, AnOpenLineIsOneContourWithSquareCutEnds) {
    EXPECT_EQ(Text(StrokeContours(TFloatPoints{{1, 5}, {4, 5}}, false, {})), "400,450 400,550 100,550 100,450");
}

TEST(Stroke, SquareEndsReachHalfTheWidthFurther) {
    const TStroke stroke = {2, TJoinStyle::jsMiter, TEndStyle::esSquare, 4};
    EXPECT_EQ(Text(StrokeContours(TFloatPoints{{1, 5}, {4, 5}}, false, stroke)), "500,400 500,600 0,600 0,400");
}

TEST(Stroke, RoundEndsStayOnTheCircle) {
    const TStroke stroke = {6, TJoinStyle::jsMiter, TEndStyle::esRound, 4};
    const TFloatPoints contour = StrokeContours(TFloatPoints{{0, 0}, {10, 0}}, false, stroke).at(0);
    EXPECT_GT(contour.size(), 10U);
    double rightmost = 0;
    for (const TFloatPoint& point : contour) {
        rightmost = std::max(rightmost, point.X);
        EXPECT_NEAR(std::hypot(point.X - (point.X < 5 ? 0 : 10), point.Y), 3, 1e-12);
    }
    EXPECT_NEAR(rightmost, 13, 0.2);
}

TEST(Stroke, MitersMeetInOnePointOnBothSides) {
    EXPECT_EQ(Text(StrokeContours(TFloatPoints{{0, 0}, {4, 0}, {4, 4}}, false, {})),
              "450,-50 450,400 350,400 350,50 0,50 0,-50");
}

TEST(Stroke, BevelsHaveTwoPointsOnBothSides) {
    const TStroke stroke = {1, TJoinStyle::jsBevel, TEndStyle::esButt, 4};
    EXPECT_EQ(Text(StrokeContours(TFloatPoints{{0, 0}, {4, 0}, {4, 4}}, false, stroke)),
              "400,-50 450,0 450,400 350,400 350,0 400,50 0,50 0,-50");
}

TEST(Stroke, RoundJoinsBendOnTheOuterSideOnly) {
    const TStroke stroke = {8, TJoinStyle::jsRound, TEndStyle::esButt, 4};
    const TFloatPoints contour = StrokeContours(TFloatPoints{{0, 0}, {10, 0}, {10, 10}}, false, stroke).at(0);
    int onOuterArc = 0;
    for (const TFloatPoint& point : contour) {
        if (point.X > 10 && point.Y < 0) {
            ++onOuterArc;
            EXPECT_NEAR(std::hypot(point.X - 10, point.Y), 4, 1e-12);
        }
    }
    EXPECT_GE(onOuterArc, 2);
}

TEST(Stroke, AClosedLineHasAnOuterAndAnInnerContour) {
    EXPECT_EQ(Text(StrokeContours(TFloatPoints{{2, 2}, {10, 2}, {10, 8}, {2, 8}}, true, {})),
              "150,150 1050,150 1050,850 150,850 | 250,750 950,750 950,250 250,250");
}

struct TMiterRow {
    double InnerAngle; // degrees
    std::size_t Points;
};

class StrokeMiterLimit : public testing::TestWithParam<TMiterRow> {};

TEST_P(StrokeMiterLimit, BevelsSharperCorners) {
    const double angle = GetParam().InnerAngle * std::numbers::pi / 180;
    const TFloatPoints corner = {{10, 0}, {0, 0}, {10 * std::cos(angle), 10 * std::sin(angle)}};
    EXPECT_EQ(StrokeContours(corner, false, {}).at(0).size(), GetParam().Points);
}

INSTANTIATE_TEST_SUITE_P(Angles, StrokeMiterLimit,
                         testing::Values(TMiterRow{90, 6}, TMiterRow{29, 6}, TMiterRow{28.9, 8}, TMiterRow{5, 8}));

TEST(Stroke, TurningBackIsABevel) {
    EXPECT_EQ(Text(StrokeContours(TFloatPoints{{0, 0}, {4, 0}, {0, 0}}, false, {})),
              "400,-50 400,50 0,50 0,-50 400,-50 400,50 0,50 0,-50");
}

TEST(Stroke, ShortEdgesAreSkipped) {
    EXPECT_EQ(Text(StrokeContours(TFloatPoints{{1, 5}, {1, 5}, {4, 5}, {4.00005, 5}}, false, {})),
              "400,450 400,550 100,550 100,450");
    EXPECT_EQ(StrokeContours(TFloatPoints{{2, 2}, {10, 2}, {10, 8}, {2, 8}, {2, 2}}, true, {}),
              StrokeContours(TFloatPoints{{2, 2}, {10, 2}, {10, 8}, {2, 8}}, true, {}));
}

TEST(Stroke, NoLineGivesNoContour) {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_TRUE(StrokeContours({}, false, {}).empty());
    EXPECT_TRUE(StrokeContours(TFloatPoints{{1, 1}}, true, {}).empty());
    EXPECT_TRUE(StrokeContours(TFloatPoints{{1, 1}, {1, 1}}, true, {}).empty());
    EXPECT_TRUE(StrokeContours(TFloatPoints{{1, 1}, {nan, 1}}, false, {}).empty());
    for (const double width : {0.0, -1.0, nan})
        EXPECT_TRUE(StrokeContours(TFloatPoints{{1, 1}, {5, 1}}, false, TStroke{width}).empty());
}

std::size_t CountPoints(const std::vector<TFloatPoints>& contours) {
    std::size_t count = 0;
    for (const TFloatPoints& contour : contours)
        count += contour.size();
    return count;
}

TEST(Stroke, ArcsOutsideOfWhatIsVisibleAreChords) {
    const TStroke stroke = {1e7, TJoinStyle::jsRound, TEndStyle::esRound, 4};
    const TFloatPoints zigzag = {{0, 0}, {100, 100}, {200, 0}, {300, 100}};
    EXPECT_GT(CountPoints(StrokeContours(zigzag, false, stroke)), 10000U);
    EXPECT_LE(CountPoints(lmx::StrokeContours(zigzag, false, stroke, {0, 0, 300, 100})), 20U);
    EXPECT_TRUE(lmx::StrokeContours(zigzag, false, stroke, {0, 0, 0, 100}).empty());
}

TEST(Stroke, TheVisiblePartOfAnArcHasItsPoints) {
    const TStroke stroke = {1e6, TJoinStyle::jsRound, TEndStyle::esRound, 4};
    const TFloatPoints line = {{-5e5, 0}, {0, 0}};
    const TRect visible(499000, -5000, 501000, 5000); // around the middle of the end's arc
    const TFloatPoints whole = StrokeContours(line, false, stroke).at(0);
    const TFloatPoints seen = lmx::StrokeContours(line, false, stroke, visible).at(0);
    EXPECT_LT(seen.size(), whole.size() / 10);
    const auto isVisible = [&](TFloatPoint point) {
        return point.X >= visible.Left && point.X <= visible.Right && point.Y >= visible.Top &&
               point.Y <= visible.Bottom;
    };
    TFloatPoints wholeVisible;
    std::copy_if(whole.begin(), whole.end(), std::back_inserter(wholeVisible), isVisible);
    TFloatPoints seenVisible;
    std::copy_if(seen.begin(), seen.end(), std::back_inserter(seenVisible), isVisible);
    EXPECT_GE(wholeVisible.size(), 5U);
    EXPECT_EQ(seenVisible, wholeVisible);
}

/// The signed area of each pixel of a grid.
std::vector<double> CoverageOf(const std::vector<TFloatPoints>& contours, std::int32_t width, std::int32_t height) {
    TCoverage coverage(width, height);
    for (const TFloatPoints& contour : contours)
        coverage.AddContour(contour);
    std::vector<double> areas(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    coverage.Sweep([&](std::int32_t y, std::int32_t x, std::size_t count, double area) {
        for (std::size_t i = 0; i < count; ++i)
            areas[static_cast<std::size_t>(y * width + x) + i] = area;
    });
    return areas;
}

TEST(Stroke, WhatIsVisibleIsCoveredAlike) {
    std::mt19937 random(5);
    const auto number = [&](double from, double to) {
        return std::uniform_real_distribution<double>(from, to)(random);
    };
    constexpr std::int32_t width = 37;
    constexpr std::int32_t height = 23;
    for (int round = 0; round < 400; ++round) {
        const double size = std::pow(10, number(0, 5));
        const TStroke stroke = {size, TJoinStyle::jsRound, TEndStyle::esRound, 4};
        TFloatPoints points(4);
        for (TFloatPoint& point : points)
            point = {number(-size, size), number(-size, size)};
        const bool closed = round % 2 == 0;
        const std::vector<double> whole = CoverageOf(StrokeContours(points, closed, stroke), width, height);
        const std::vector<double> seen =
            CoverageOf(lmx::StrokeContours(points, closed, stroke, {0, 0, width, height}), width, height);
        for (std::size_t i = 0; i < whole.size(); ++i)
            ASSERT_NEAR(seen[i], whole[i], 1e-6) << size << ' ' << i;
    }
}

TEST(Stroke, CircleSteps) {
    EXPECT_EQ(CircleSteps(0), 2);
    EXPECT_EQ(CircleSteps(2), 9) << "pi / acos(2 / 2.125) = 9.13";
    EXPECT_EQ(CircleSteps(-2), 9);
    EXPECT_EQ(CircleSteps(100), 62) << "62.9";
    EXPECT_EQ(CircleSteps(1e300), 1 << 20);
    EXPECT_EQ(CircleSteps(std::numeric_limits<double>::infinity()), 0);
    EXPECT_EQ(CircleSteps(std::numeric_limits<double>::quiet_NaN()), 0);
}

} // namespace
} // namespace lmx
