#include <lmx/Runtime/lmxGeometry.h>
#include <tests/Support/GeometryPrinters.h>

#include <gtest/gtest.h>

#include <limits>

namespace lmx {
namespace {

constexpr std::int32_t Lowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t Highest = std::numeric_limits<std::int32_t>::max();

TEST(Geometry, PointsAndSizesConvertBothWays) {
    EXPECT_EQ(TPoint(QPoint(3, -4)), TPoint(3, -4));
    EXPECT_EQ(TPoint(3, -4).ToQPoint(), QPoint(3, -4));
    EXPECT_EQ(TSize(QSize(5, 6)), TSize(5, 6));
    EXPECT_EQ(TSize(5, 6).ToQSize(), QSize(5, 6));
}

TEST(Geometry, ARectangleOfQtCountsItsLastPixelInside) {
    const QRect rect(10, 20, 5, 6);
    EXPECT_EQ(TRect(rect), TRect(10, 20, 15, 26));
    EXPECT_EQ(TRect(10, 20, 15, 26).ToQRect(), rect);
    EXPECT_EQ(TRect(QRect()), TRect(0, 0, 0, 0));
}

TEST(Geometry, WidthAndHeightMayBeNegative) {
    TRect rect(10, 20, 4, 25);
    EXPECT_EQ(rect.GetWidth(), -6);
    EXPECT_EQ(rect.GetHeight(), 5);
    rect.SetWidth(3);
    rect.SetHeight(-2);
    EXPECT_EQ(rect, TRect(10, 20, 13, 18));
}

TEST(Geometry, ContainsTheLeftAndTopEdgesOnly) {
    const TRect rect(10, 20, 15, 26);
    EXPECT_TRUE(rect.Contains({10, 20}));
    EXPECT_TRUE(rect.Contains({14, 25}));
    EXPECT_FALSE(rect.Contains({15, 25}));
    EXPECT_FALSE(rect.Contains({14, 26}));
    EXPECT_FALSE(rect.Contains({9, 20}));
    EXPECT_FALSE(TRect(15, 26, 10, 20).Contains({12, 22})) << "inverted";
}

TEST(Geometry, AnInvertedOrFlatRectangleIsEmpty) {
    EXPECT_FALSE(TRect(0, 0, 1, 1).IsEmpty());
    EXPECT_TRUE(TRect(0, 0, 0, 1).IsEmpty());
    EXPECT_TRUE(TRect(0, 0, 1, -1).IsEmpty());
}

TEST(Geometry, RectanglesFromAnywhereSaturate) {
    const TRect rect(Lowest, Lowest, Highest, Highest);
    EXPECT_EQ(rect.GetWidth(), Highest);
    EXPECT_EQ(TRect(Highest, 0, Lowest, 0).GetWidth(), Lowest);
    EXPECT_EQ(TRect(Highest, 0, Lowest, Lowest).ToQRect(), QRect(QPoint(Highest, 0), QPoint(Lowest, Lowest)));
    TRect moved(Highest - 1, Lowest + 1, 0, 0);
    moved.SetWidth(10);
    moved.SetHeight(-10);
    EXPECT_EQ(moved, TRect(Highest - 1, Lowest + 1, Highest, Lowest));
}

} // namespace
} // namespace lmx
