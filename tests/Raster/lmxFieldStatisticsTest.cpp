#include <lmx/Formats/Idrisi/lmxIdrisiImages.h>
#include <lmx/Formats/Idrisi/lmxImageFactory.h>
#include <lmx/Raster/lmxField.h>
#include <lmx/Raster/lmxFieldArithmetic.h>
#include <lmx/Raster/lmxFieldRegion.h>
#include <lmx/Raster/lmxFieldStatistics.h>
#include <lmx/Raster/lmxLinearRasterFrame.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Support/MemoryLimit.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

// The numbers of the patterned field and of the sea surface are those of tests/data/statistics/fieldStatistics.py,
// which computes them by other means.

namespace lmx {
namespace {

constexpr double Exact = 1e-13;

std::unique_ptr<TRealImage> NewImage(int columns, int rows, const TMapArea& area, const char* system = "latlong") {
    TImageHeader header;
    header.SetWidth(columns);
    header.SetHeight(rows);
    header.SetMinX(static_cast<float>(area.Left));
    header.SetMaxX(static_cast<float>(area.Right));
    header.SetMinY(static_cast<float>(area.Bottom));
    header.SetMaxY(static_cast<float>(area.Top));
    header.SetRefSystem(QString::fromLatin1(system));
    return std::make_unique<TRealImage>(QString(), header);
}

// Every seventh number of rows times columns is missing.
std::unique_ptr<TRealImage> PatternedImage() {
    auto image = NewImage(36, 18, {-180, 90, 180, -90});
    for (int row = 0; row < 18; ++row)
        for (int column = 0; column < 36; ++column)
            image->SetCell(column + 1, row + 1,
                           row * column % 7 == 3 ? -9999.0F
                                                 : static_cast<float>((row * 37 + column * 11) % 101 - 50) / 4);
    return image;
}

void ExpectStatistics(const TFieldStatistics& statistics, const TFieldStatistics& expected) {
    EXPECT_EQ(statistics.CellCount, expected.CellCount);
    EXPECT_EQ(statistics.ValueCount, expected.ValueCount);
    EXPECT_NEAR(statistics.MissingShare, expected.MissingShare, Exact);
    EXPECT_NEAR(statistics.Mean, expected.Mean, std::abs(expected.Mean) * Exact);
    EXPECT_EQ(statistics.Minimum, expected.Minimum);
    EXPECT_EQ(statistics.Maximum, expected.Maximum);
}

const TFieldRing Triangle = {{-50, -40}, {95, 10}, {20, 77}};
const TFieldRing Hole = {{5, 5}, {40, 5}, {40, 40}, {5, 40}};

TEST(FieldStatistics, OfAWholeFieldWeighByTheAreaOfItsCells) {
    const auto image = PatternedImage();
    ExpectStatistics(StatisticsOf(TField::Of(*image)),
                     {648, 573, 0.11919825185333395, -0.051758360046591477, -12.5, 12.5});
}

TEST(FieldStatistics, OfARectangleCountCellsByTheShareInside) {
    const auto image = PatternedImage();
    const TField field = TField::Of(*image);
    const TFieldStatistics expected{96, 83, 0.12699032668256049, 0.19279429252735775, -12.5, 12.5};
    TFieldRegion region(field, {-17, 71, 57.5L, -33.5L});
    ExpectStatistics(StatisticsOf(field, region), expected);
    TFieldRegion turnedOver(field, {57.5L, -33.5L, -17, 71});
    ExpectStatistics(StatisticsOf(field, turnedOver), expected);
}

// A header holds 166.3 as 166.300003: the column beside a rectangle along edges must give no least or greatest value.
TEST(FieldStatistics, OfARectangleAlongEdgesCountNoCellBeside) {
    const auto image = NewImage(40, 40, {166.3L, -34.2L, 170.3L, -38.2L});
    for (int row = 1; row <= 40; ++row)
        for (int column = 1; column <= 40; ++column)
            image->SetCell(column, row, static_cast<float>(100 * row + column));
    const TField field = TField::Of(*image);
    for (int from = 0; from <= 37; ++from) {
        const extended west = (1663 + from) / 10.0L;
        const extended north = (-342 - from) / 10.0L;
        TFieldRegion region(field, {west, north, west + 0.3L, north - 0.3L});
        const TFieldStatistics statistics = StatisticsOf(field, region);
        EXPECT_EQ(statistics.CellCount, 9U) << from;
        EXPECT_EQ(statistics.Minimum, 101 * (from + 1)) << from;
        EXPECT_EQ(statistics.Maximum, 101 * (from + 3)) << from;
    }
}

TEST(FieldStatistics, OfAPolygonCountTheCellsWhoseCentreIsInside) {
    const auto image = PatternedImage();
    const TField field = TField::Of(*image);
    TFieldRegion region(field, std::span(&Triangle, 1));
    ExpectStatistics(StatisticsOf(field, region), {67, 58, 0.12987954711352143, -0.095205197432373906, -12.5, 12});
    const std::vector<TFieldRing> rings = {Triangle, Hole};
    TFieldRegion pierced(field, rings);
    ExpectStatistics(StatisticsOf(field, pierced), {51, 43, 0.15248342391867095, 0.1810657564582403, -11.5, 12});
}

TEST(FieldStatistics, OfTheSeaSurface) {
    const auto image = TImageFactory::Load(QStringLiteral(LMX_SOURCE_DIR "/examples/data/sst_january.rst"));
    const TField field = TField::Of(*image);
    ExpectStatistics(StatisticsOf(field),
                     {16200, 9506, 0.28295794773997396, 19.037271735103534, -1.7999999523162842, 31});
    TFieldRegion northSea(field, {0.5L, 61.5L, 9, 50.25L});
    ExpectStatistics(StatisticsOf(field, northSea),
                     {30, 27, 0.075202432766098171, 6.2870490496724383, 3.3109090328216553, 8.0559091567993164});
}

// A row at the pole is where the cosine of its middle latitude would be off.
TEST(FieldStatistics, WeighARowAtThePoleExactly) {
    const auto image = NewImage(1, 2, {0, 90, 10, -90});
    image->SetCell(1, 1, 1);
    image->SetCell(1, 2, 4);
    EXPECT_EQ(StatisticsOf(TField::Of(*image)).Mean, 2.5);
    const auto polar = NewImage(1, 2, {0, 90, 10, 30}); // from 90 to 60 and from 60 to 30
    polar->SetCell(1, 1, 0);
    polar->SetCell(1, 2, 1);
    const double north = 1 - std::sqrt(3.0) / 2;
    EXPECT_NEAR(StatisticsOf(TField::Of(*polar)).Mean, (0.5 - north) / 0.5, 1e-15);
}

TEST(FieldStatistics, EndAtThePoleWhereCellsReachBeyond) {
    const auto image = NewImage(1, 2, {0, 100, 10, 0}); // from 100 to 50, of which 90 to 50 is on the sphere
    image->SetCell(1, 1, 1);
    image->SetCell(1, 2, 0);
    const double high = std::sin(50 * std::acos(-1.0) / 180);
    EXPECT_NEAR(StatisticsOf(TField::Of(*image)).Mean, 1 - high, 1e-15);
}

TEST(FieldStatistics, WeighCellsOfAPlaneEqually) {
    const auto image = NewImage(1, 2, {0, 90, 10, -30}, "plane");
    image->SetCell(1, 1, 1);
    image->SetCell(1, 2, 2);
    const TField field = TField::Of(*image);
    EXPECT_EQ(StatisticsOf(field).Mean, 1.5);
    TFieldRegion region(field, {-5, 90, 5, 0}); // half of the columns; three quarters of the rows' height
    EXPECT_NEAR(StatisticsOf(field, region).Mean, (60 * 1 + 30 * 2) / 90.0, 1e-15);
    TFieldRegion aTurnAway(field, {360, 90, 370, 0});
    EXPECT_EQ(StatisticsOf(field, aTurnAway).CellCount, 0U); // metres have no turns
}

TEST(FieldStatistics, FindARectangleATurnAway) {
    const auto image = NewImage(4, 1, {0, 10, 360, -10});
    for (int column = 1; column <= 4; ++column)
        image->SetCell(column, 1, static_cast<float>(column));
    const TField field = TField::Of(*image);
    TFieldRegion west(field, {-90, 10, 0, -10});
    EXPECT_EQ(StatisticsOf(field, west).Mean, 4);
    TFieldRegion both(field, {-45, 10, 45, -10});
    EXPECT_EQ(StatisticsOf(field, both).CellCount, 2U);
    EXPECT_EQ(StatisticsOf(field, both).Mean, 2.5);
    TFieldRegion tooWide(field, {-540, 90, 540, -90});
    EXPECT_EQ(StatisticsOf(field, tooWide).Mean, 2.5); // no cell counts twice
    const TFieldRing ring = {{-80, -5}, {-10, -5}, {-10, 5}, {-80, 5}};
    TFieldRegion polygon(field, std::span(&ring, 1));
    EXPECT_EQ(StatisticsOf(field, polygon).Mean, 4);
}

TEST(FieldStatistics, CountACentreOnAnEdgeOnce) {
    const auto image = NewImage(4, 4, {0, 4, 4, 0});
    for (int cell = 0; cell < 16; ++cell)
        image->SetCell(cell % 4 + 1, cell / 4 + 1, static_cast<float>(cell));
    const TField field = TField::Of(*image);
    std::uint64_t count = 0;
    for (const double left : {0.5, 2.5}) // the edges lie on centres, and the four squares tile the field
        for (const double bottom : {-1.5, 0.5, 2.5}) {
            const TFieldRing ring = {{left, bottom}, {left + 2, bottom}, {left + 2, bottom + 2}, {left, bottom + 2}};
            TFieldRegion region(field, std::span(&ring, 1));
            count += StatisticsOf(field, region).CellCount;
        }
    EXPECT_EQ(count, 16U);
}

TEST(FieldStatistics, SayWhenThereIsNothing) {
    const auto image = NewImage(3, 2, {0, 10, 10, 0});
    for (int cell = 0; cell < 6; ++cell)
        image->SetCell(cell % 3 + 1, cell / 3 + 1, cell % 2 == 0 ? -9990.0F : std::numeric_limits<float>::quiet_NaN());
    const TField field = TField::Of(*image);
    const TFieldStatistics missing = StatisticsOf(field);
    EXPECT_EQ(missing.CellCount, 6U);
    EXPECT_EQ(missing.ValueCount, 0U);
    EXPECT_FALSE(missing.HasValues());
    EXPECT_EQ(missing.MissingShare, 1);
    EXPECT_TRUE(std::isnan(missing.Mean) && std::isnan(missing.Minimum) && std::isnan(missing.Maximum));
    TFieldRegion elsewhere(field, {50, 60, 55, 50});
    EXPECT_EQ(StatisticsOf(field, elsewhere).CellCount, 0U);
    EXPECT_EQ(StatisticsOf(field, elsewhere).MissingShare, 0);
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const TFieldRing damaged = {{nan, 1}, {4, nan}, {1e300, 8}, {-1e300, 2}, {nan, nan}};
    TFieldRegion polygon(field, std::span(&damaged, 1));
    EXPECT_LE(StatisticsOf(field, polygon).CellCount, 6U);
    TField none;
    none.ReadRow = [](std::int32_t, std::span<double>) { FAIL() << "there is no row"; };
    EXPECT_EQ(StatisticsOf(none).CellCount, 0U);
    TFieldRegion polygonOfNone(none, std::span(&Triangle, 1));
    EXPECT_EQ(StatisticsOf(none, polygonOfNone).CellCount, 0U);
}

// One large number and many small ones: plain addition would lose the small ones.
TEST(FieldStatistics, LoseNothingOfLongSums) {
    TField field;
    field.Bounds = {0, 1024, 1024, 0};
    field.Width = 1024;
    field.Height = 1024;
    field.ReadRow = [](std::int32_t row, std::span<double> numbers) {
        std::fill(numbers.begin(), numbers.end(), 0.1);
        if (row == 0 || row == 1023)
            numbers[0] = row == 0 ? 1e17 : -1e17;
    };
    // The two runs of 64 that hold the large numbers swallow their own small ones, and no others.
    const double cells = 1024.0 * 1024.0;
    EXPECT_NEAR(StatisticsOf(field).Mean * cells, (cells - 2) * 0.1, 16);
}

TEST(FieldStatistics, OfAFrameReadItsOwnNumbers) {
    TLinearRasterFrame frame({0, 10, 20, -10}, 2, 2, TDataKind::dkInt);
    frame.WriteCell(0, 0, 1);
    frame.WriteCell(0, 1, 2);
    frame.WriteCell(1, 0, -9999);
    frame.WriteCell(1, 1, 16777217); // more digits than a 32-bit float has
    const TFieldStatistics statistics = StatisticsOf(TField::Of(frame, true));
    EXPECT_EQ(statistics.ValueCount, 3U);
    EXPECT_NEAR(statistics.MissingShare, 0.25, Exact);
    EXPECT_EQ(statistics.Maximum, 16777217);
}

// 50 million numbers take 400 megabytes.
TEST(FieldStatistics, RaiseOurExceptionWithoutMemory) {
    if (!tests::CanLimitMemory)
        return;
    TField wide;
    wide.Bounds = {0, 1, 1, 0};
    wide.Width = 50'000'000;
    wide.Height = 1;
    wide.ReadRow = [](std::int32_t, std::span<double>) {};
    TField high = wide;
    std::swap(high.Width, high.Height);
    TField narrow = wide;
    narrow.Width = 1;
    TFieldRegion region(narrow);
    const tests::TMemoryLimit limit(256 * 1024 * 1024);
    EXPECT_THROW(TFieldRegion{wide}, EOutOfMemory);
    EXPECT_THROW(TFieldRegion{high}, EOutOfMemory);
    EXPECT_THROW((TFieldRegion{wide, TMapArea(0, 1, 1, 0)}), EOutOfMemory);
    EXPECT_THROW((TFieldRegion{high, std::span(&Triangle, 1)}), EOutOfMemory);
    EXPECT_THROW(StatisticsOf(wide, region), EOutOfMemory);
    EXPECT_THROW(DifferenceOf(wide, wide), EOutOfMemory);
}

} // namespace
} // namespace lmx
