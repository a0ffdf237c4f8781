#include <lmx/Coordinates/wskMappingTypes.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxFormatSettings.h>
#include <tests/Support/CoordinatePrinters.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

#include <limits>

namespace lmx {
namespace {

using tests::MessageOf;

constexpr extended Infinity = std::numeric_limits<extended>::infinity();
constexpr extended NaN = std::numeric_limits<extended>::quiet_NaN();

TMapArea Translated(TMapArea area, extended x, extended y) {
    area.XTranslate = x;
    area.YTranslate = y;
    return area;
}

// ---- TMapPoint

TEST(MapPoint, IsMadeFromPixelsAndFromVerticesOfVectorFiles) {
    EXPECT_EQ(TMapPoint(TPoint(-3, 7)), TMapPoint(-3, 7));
    const TMapPoint vertex(TGeoPoint{0.1F, -0.5F});
    EXPECT_EQ(vertex.X, static_cast<extended>(0.1F));
    EXPECT_EQ(vertex.Y, -0.5L);
}

TEST(MapPoint, EqualsWithinTheToleranceOfItsMagnitude) {
    EXPECT_TRUE(TMapPoint(180, 1).Equals({180.00000000000001L, 1}));
    EXPECT_FALSE(TMapPoint(180, 1).Equals({180.0000000000001L, 1}));
    EXPECT_FALSE(TMapPoint(180, 1).Equals({180, 1.000000000000001L}));
    EXPECT_TRUE(TMapPoint(0, 0).Equals({1e-16L, -1e-16L})) << "near zero the tolerance is absolute";
    EXPECT_FALSE(TMapPoint(NaN, 0).Equals({NaN, 0}));
}

TEST(MapPoint, OffsetAddsInPlace) {
    TMapPoint point(1, 2);
    point.Offset(0.5L, -3);
    EXPECT_EQ(point, TMapPoint(1.5L, -1));
}

struct TPixelRow {
    extended Value;
    std::int32_t Pixel;
};

class MapPointToPixel : public testing::TestWithParam<TPixelRow> {};

TEST_P(MapPointToPixel, RoundsTiesToEvenAndSaturates) {
    const auto [value, pixel] = GetParam();
    EXPECT_EQ(TMapPoint(value, 0).ToPoint(), TPoint(pixel, 0));
    EXPECT_EQ(TMapPoint(0, value).ToPoint(), TPoint(0, pixel));
    EXPECT_EQ(TMapArea(value, 1, 2, 3).ToRect(), TRect(pixel, 1, 2, 3));
    EXPECT_EQ(TMapArea(0, value, 2, 3).ToRect(), TRect(0, pixel, 2, 3));
    EXPECT_EQ(TMapArea(0, 1, value, 3).ToRect(), TRect(0, 1, pixel, 3));
    EXPECT_EQ(TMapArea(0, 1, 2, value).ToRect(), TRect(0, 1, 2, pixel));
}

INSTANTIATE_TEST_SUITE_P(Values, MapPointToPixel,
                         testing::Values(TPixelRow{0.5L, 0}, TPixelRow{1.5L, 2}, TPixelRow{2.5L, 2},
                                         TPixelRow{-0.5L, 0}, TPixelRow{-1.5L, -2}, TPixelRow{-2.5L, -2},
                                         TPixelRow{2.4999999999L, 2}, TPixelRow{536870911.5L, 536870912},
                                         TPixelRow{1e12L, 536870912}, TPixelRow{-1e12L, -536870912},
                                         TPixelRow{Infinity, 536870912}, TPixelRow{-Infinity, -536870912},
                                         TPixelRow{NaN, 0}));

TEST(MapPoint, IsWrittenWithThreeDecimalsRoundedHalfUp) {
    const TFormatSettingsScope scope({u'.'});
    const TMapPoint point(174.0625L, -41);
    EXPECT_EQ(point.ToString(), "174.063, -41.000");
    EXPECT_EQ(point.ToString(true), "174.063, -41.000");
    EXPECT_EQ(point.ToString(false), "174.063,-41.000");
    EXPECT_EQ(TMapPoint(-0.0001L, 0.0005L).ToString(), "0.000, 0.001");
}

TEST(MapPoint, IsWrittenInTheCurrentFormatSettings) {
    const TFormatSettingsScope scope({u','});
    EXPECT_EQ(TMapPoint(1.5L, 2).ToString(), "1,500, 2,000");
}

TEST(MapPoint, IsReadWithFullPrecisionAndWhiteSpaceAround) {
    const TFormatSettingsScope scope({u'.'});
    const TMapPoint point(QStringLiteral("\t174.123456789012345 , -41.5\n"));
    EXPECT_EQ(point.X, 174.123456789012345L);
    EXPECT_EQ(point.Y, -41.5L);
}

TEST(MapPoint, UnderADecimalCommaItsOwnTextDoesNotReadBack) {
    const TFormatSettingsScope scope({u','});
    EXPECT_EQ(MessageOf<EArgumentException>([] { TMapPoint(TMapPoint(1.5L, 2).ToString()); }),
              "Invalid MapPoint string");
    EXPECT_EQ(TMapPoint(QStringLiteral("1,5")), TMapPoint(1, 5)) << "the comma separates the numbers";
}

class MapPointRefuses : public testing::TestWithParam<const char*> {};

TEST_P(MapPointRefuses, WhatIsNotTwoNumbers) {
    const TFormatSettingsScope scope({u'.'});
    EXPECT_EQ(MessageOf<EArgumentException>([] { TMapPoint point(QString::fromUtf8(GetParam())); }),
              "Invalid MapPoint string");
}

INSTANTIATE_TEST_SUITE_P(Texts, MapPointRefuses,
                         testing::Values("", "1", "1,2,3", "1,", ",2", ",", "1;2", "a,2", "1,b", "1 2,3", "inf,0",
                                         "0,nan", "1e5000,0", "0x10,1",
                                         "\xC2\xA0"
                                         "1,2"));

// ---- TMapSize

TEST(MapSize, ComparesItsValues) {
    EXPECT_EQ(TMapSize(1, 2), (TMapSize{1, 2}));
    EXPECT_FALSE(TMapSize(1, 2) == TMapSize(2, 1));
}

// ---- TMapArea

TEST(MapArea, IsMadeFromEdgesOrCornersWithoutTranslation) {
    const TMapArea area(1, 20, 3, 4);
    EXPECT_EQ(area.XTranslate, 0);
    EXPECT_EQ(area.YTranslate, 0);
    EXPECT_EQ(TMapArea(TMapPoint(1, 20), TMapPoint(3, 4)), area);
}

struct TContainsRow {
    const char* What;
    TMapPoint Point;
    bool Expected;
};

class MapAreaContains : public testing::TestWithParam<TContainsRow> {};

TEST_P(MapAreaContains, AllFourEdgesWhicheverWayTheyLie) {
    const auto& [what, point, expected] = GetParam();
    EXPECT_EQ(TMapArea(10, 50, 20, 40).Contains(point), expected) << what;
    EXPECT_EQ(TMapArea(20, 40, 10, 50).Contains(point), expected) << what << ", inverted";
    EXPECT_EQ(Translated({10, 50, 20, 40}, 100, 100).Contains(point), expected) << what << ", translated";
}

INSTANTIATE_TEST_SUITE_P(
    Points, MapAreaContains,
    testing::Values(TContainsRow{"inside", {15, 45}, true}, TContainsRow{"left", {10, 45}, true},
                    TContainsRow{"right", {20, 45}, true}, TContainsRow{"top", {15, 50}, true},
                    TContainsRow{"bottom", {15, 40}, true}, TContainsRow{"west", {9.99L, 45}, false},
                    TContainsRow{"east", {20.01L, 45}, false}, TContainsRow{"north", {15, 50.01L}, false},
                    TContainsRow{"south", {15, 39.99L}, false}, TContainsRow{"no number", {NaN, 45}, false}));

TEST(MapArea, EqualsLooksAtEdgesAndTranslation) {
    const TMapArea area = Translated({1, 2, 3, 4}, 5, 6);
    EXPECT_TRUE(area.Equals(area));
    EXPECT_TRUE(area.Equals(Translated({1 + 1e-17L, 2, 3, 4}, 5, 6)));
    EXPECT_FALSE(area.Equals(Translated({1.1L, 2, 3, 4}, 5, 6)));
    EXPECT_FALSE(area.Equals(Translated({1, 2.1L, 3, 4}, 5, 6)));
    EXPECT_FALSE(area.Equals(Translated({1, 2, 3.1L, 4}, 5, 6)));
    EXPECT_FALSE(area.Equals(Translated({1, 2, 3, 4.1L}, 5, 6)));
    EXPECT_FALSE(area.Equals(Translated({1, 2, 3, 4}, 5.1L, 6)));
    EXPECT_FALSE(area.Equals(Translated({1, 2, 3, 4}, 5, 6.1L)));
}

TEST(MapArea, MeasuresArePositiveWhicheverWayTheEdgesLie) {
    for (const TMapArea& area : {TMapArea(-10, 30, 20, 10), TMapArea(20, 10, -10, 30)}) {
        EXPECT_EQ(area.GetWidth(), 30);
        EXPECT_EQ(area.GetHeight(), 20);
        EXPECT_EQ(area.GetCenter(), TMapPoint(5, 20));
    }
    EXPECT_EQ(TMapArea(0, 10, 0, 5).GetWidth(), 0);
}

TEST(MapArea, CornersAndCompassPointsNameItsEdges) {
    const TMapArea area = Translated({1, 20, 3, 4}, 100, 1000);
    EXPECT_EQ(area.GetTopLeft(), TMapPoint(1, 20));
    EXPECT_EQ(area.GetBottomRight(), TMapPoint(3, 4));
    EXPECT_EQ(area.GetWest(), 1);
    EXPECT_EQ(area.GetNorth(), 20);
    EXPECT_EQ(area.GetEast(), 3);
    EXPECT_EQ(area.GetSouth(), 4);
    EXPECT_EQ(area.GetTranslatedLeft(), 101);
    EXPECT_EQ(area.GetTranslatedTop(), 1020);
    EXPECT_EQ(area.GetTranslatedRight(), 103);
    EXPECT_EQ(area.GetTranslatedBottom(), 1004);
    EXPECT_EQ(area.GetTranslatedTopLeft(), TMapPoint(101, 1020));
    EXPECT_EQ(area.GetTranslatedBottomRight(), TMapPoint(103, 1004));
}

struct TSetterRow {
    const char* Name;
    void (*Set)(TMapArea& area);
    TMapArea Expected;
};

class MapAreaSetter : public testing::TestWithParam<TSetterRow> {};

TEST_P(MapAreaSetter, ChangesItsEdgesAndNoTranslation) {
    TMapArea area = Translated({1, 20, 3, 4}, 7, 8);
    GetParam().Set(area);
    EXPECT_EQ(area, Translated(GetParam().Expected, 7, 8));
}

INSTANTIATE_TEST_SUITE_P(
    Setters, MapAreaSetter,
    testing::Values(TSetterRow{"TopLeft",
                               [](TMapArea& a) {
                                   a.SetTopLeft({5, 6});
                               },
                               {5, 6, 3, 4}},
                    TSetterRow{"BottomRight",
                               [](TMapArea& a) {
                                   a.SetBottomRight({5, 6});
                               },
                               {1, 20, 5, 6}},
                    TSetterRow{"North", [](TMapArea& a) { a.SetNorth(5); }, {1, 5, 3, 4}},
                    TSetterRow{"South", [](TMapArea& a) { a.SetSouth(5); }, {1, 20, 3, 5}},
                    TSetterRow{"East", [](TMapArea& a) { a.SetEast(5); }, {1, 20, 5, 4}},
                    TSetterRow{"WestMovesTheEasternEdge", [](TMapArea& a) { a.SetWest(5); }, {1, 20, 5, 4}},
                    TSetterRow{"Width", [](TMapArea& a) { a.SetWidth(5); }, {1, 20, 6, 4}},
                    TSetterRow{"HeightGrowsDownwards", [](TMapArea& a) { a.SetHeight(5); }, {1, 20, 3, 25}},
                    TSetterRow{"OffsetByMap", [](TMapArea& a) { a.Offset(TMapPoint(0.5L, -1)); }, {1.5L, 19, 3.5L, 3}},
                    TSetterRow{"OffsetByPixels", [](TMapArea& a) { a.Offset(TPoint(2, -3)); }, {3, 17, 5, 1}}),
    [](const auto& row) { return row.param.Name; });

TEST(MapArea, IsWrittenWithSixDecimalsAndNoTranslation) {
    const TFormatSettingsScope scope({u'.'});
    EXPECT_EQ(Translated({-180, 90.0000005L, 180.1234564L, -90}, 9, 9).ToString(),
              "-180.000000,90.000001,180.123456,-90.000000");
}

TEST(MapArea, IsWrittenInTheCurrentFormatSettings) {
    const TFormatSettingsScope scope({u','});
    EXPECT_EQ(TMapArea(1, 2, 3, 4.5L).ToString(), "1,000000,2,000000,3,000000,4,500000");
    EXPECT_EQ(MessageOf<EArgumentException>([] { TMapArea area(TMapArea(1, 2, 3, 4.5L).ToString()); }),
              "Invalid MapArea string");
}

TEST(MapArea, IsReadWithSinglePrecisionOnly) {
    const TFormatSettingsScope scope({u'.'});
    const TMapArea area(QStringLiteral(" 174.123456,\t-41.5 , 1e3,2"));
    EXPECT_EQ(area.Left, static_cast<extended>(174.123456F));
    EXPECT_NE(area.Left, 174.123456L);
    EXPECT_EQ(area.Top, -41.5L);
    EXPECT_EQ(area.Right, 1000);
    EXPECT_EQ(area.Bottom, 2);
    EXPECT_EQ(area.XTranslate, 0);
    EXPECT_EQ(TMapArea(QStringLiteral("174.123456,0,0,0")).ToString(), "174.123459,0.000000,0.000000,0.000000");
}

class MapAreaRefuses : public testing::TestWithParam<const char*> {};

TEST_P(MapAreaRefuses, WhatIsNotFourNumbers) {
    const TFormatSettingsScope scope({u'.'});
    EXPECT_EQ(MessageOf<EArgumentException>([] { TMapArea area(QString::fromUtf8(GetParam())); }),
              "Invalid MapArea string");
}

INSTANTIATE_TEST_SUITE_P(Texts, MapAreaRefuses,
                         testing::Values("", "1,2,3", "1,2,3,4,5", "1,2,3,", "a,2,3,4", "1,2,3,x", "1e39,0,0,0",
                                         "0,0,0,-1e39"));

TEST(MappingTypes, TextsFollowTheSettingsThatTheyAreGiven) {
    constexpr TFormatSettings comma{u','};
    constexpr TFormatSettings point{u'.'};
    const TMapPoint place(1.5L, -2);
    EXPECT_EQ(place.ToString(true, comma), "1,500, -2,000");
    EXPECT_EQ(place.ToString(false, point), "1.500,-2.000");
    EXPECT_EQ(TMapPoint(QStringLiteral("1.5,-2"), point), place);
    EXPECT_THROW(TMapPoint(QStringLiteral("1.5,-2"), comma), EArgumentException);
    const TMapArea area(1, 2, 3, 4.5L);
    EXPECT_EQ(area.ToString(comma), "1,000000,2,000000,3,000000,4,500000");
    EXPECT_EQ(TMapArea(area.ToString(point), point), area);
    EXPECT_THROW(TMapArea(area.ToString(point), comma), EArgumentException);
}

} // namespace
} // namespace lmx
