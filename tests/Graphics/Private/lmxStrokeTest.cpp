#include <lmx/Graphics/Private/lmxStroke.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

namespace lmx {
namespace {

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
