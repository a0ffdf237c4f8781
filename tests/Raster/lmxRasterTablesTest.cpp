#include <lmx/Raster/lmxRasterTables.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace lmx {
namespace {

constexpr double Nan = std::numeric_limits<double>::quiet_NaN();
constexpr double Infinity = std::numeric_limits<double>::infinity();

TEST(RasterTables, LabelByNameByIndexAndByBand) {
    TAttributeTable attributes;
    attributes.Add(QStringLiteral("units"), QStringLiteral("K"));
    TIndexTable indexes;
    indexes.Add(-3, QStringLiteral("lake"));
    TRangeTable ranges;
    ranges.Add({0, 1.5}, QStringLiteral("low"));
    EXPECT_EQ(attributes.GetItem(QStringLiteral("units")), "K");
    EXPECT_EQ(indexes.GetItem(-3), "lake");
    EXPECT_EQ(ranges.GetItem({0, 1.5}), "low");
    EXPECT_FALSE(attributes.ContainsKey(QStringLiteral("Units")));
    EXPECT_FALSE(ranges.ContainsKey({0, 1.25}));
}

TEST(RasterTables, TellBandsApartByEitherEnd) {
    TRangeTable ranges;
    ranges.Add({0, 2}, QStringLiteral("c"));
    ranges.Add({0, 1}, QStringLiteral("b"));
    ranges.Add({-Infinity, 5}, QStringLiteral("a"));
    ranges.Add({1, Infinity}, QStringLiteral("d"));
    QString order;
    for (const auto& [range, label] : ranges)
        order += label;
    EXPECT_EQ(order, "abcd");
}

TEST(RasterTables, FindABandThatHasNoNumberForAnEnd) {
    TRangeTable ranges;
    ranges.Add({Nan, 1}, QStringLiteral("open"));
    ranges.Add({0, 1}, QStringLiteral("closed"));
    EXPECT_EQ(ranges.GetItem({Nan, 1}), "open");
    EXPECT_EQ(ranges.GetItem({0, 1}), "closed");
}

TEST(RasterTables, CompareBandsByBothEnds) {
    EXPECT_EQ((TRange{1, 2}), (TRange{1, 2}));
    EXPECT_NE((TRange{1, 2}), (TRange{1, 3}));
    EXPECT_NE((TRange{1, 2}), (TRange{0, 2}));
}

} // namespace
} // namespace lmx
