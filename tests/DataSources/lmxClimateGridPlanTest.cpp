#include <lmx/DataSources/lmxClimateGridPlan.h>

#include <lmx/Climate/lmxSpatialConst.h>
#include <lmx/Coordinates/wskWorldSystem.h>
#include <lmx/DataSources/Private/lmxGaussianLatitudes.h>
#include <lmx/Runtime/lmxExceptions.h>

#include <tests/Support/CoordinatePrinters.h>
#include <tests/Support/Printers.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <numbers>
#include <span>

namespace lmx {
namespace {

using namespace tests;
using testing::ElementsAre;

constexpr float Flag = TSpatialConst::NoData;

std::vector<double> Steps(double first, double step, int count) {
    std::vector<double> values;
    for (int i = 0; i < count; ++i)
        values.push_back(first + i * step);
    return values;
}

TClimateGridPlan PlanOf(const std::vector<double>& lons, const std::vector<double>& lats) {
    return TClimateGridPlan(TClimateAxis::Longitude("lon", lons, {}), TClimateAxis::Latitude("lat", lats, {}));
}

std::unique_ptr<TRealImage> ImageOf(const TClimateGridPlan& plan, const std::vector<float>& cells, std::size_t lons) {
    return plan.MakeImage(
        [&](std::int32_t row, std::span<float> to) {
            ASSERT_EQ(to.size(), lons);
            std::copy_n(cells.begin() + row * static_cast<std::ptrdiff_t>(lons), lons, to.begin());
        },
        "Rain", "mm/day");
}

/// The cells of the picture from those of the file, both from the first row on.
std::vector<float> PictureOf(const TClimateGridPlan& plan, const std::vector<float>& cells, std::size_t lons) {
    const auto image = ImageOf(plan, cells, lons);
    std::vector<float> picture;
    for (std::int32_t row = 1; row <= plan.GetRows(); ++row)
        picture.insert(picture.end(), image->GetRow(row).begin(), image->GetRow(row).end());
    EXPECT_EQ(std::int64_t(picture.size()), std::int64_t{plan.GetColumns()} * plan.GetRows());
    return picture;
}

/// Columns of the file along the northern row of the picture.
std::vector<float> FirstRow(const TClimateGridPlan& plan, std::size_t lons, std::size_t lats) {
    std::vector<float> cells;
    for (std::size_t i = 0; i < lons * lats; ++i)
        cells.push_back(static_cast<float>(i % lons));
    auto picture = PictureOf(plan, cells, lons);
    picture.resize(static_cast<std::size_t>(plan.GetColumns()));
    return picture;
}

/// A smooth world in kelvin, in degrees.
double Field(double latitude, double longitude) {
    const double la = latitude * std::numbers::pi / 180;
    const double lo = longitude * std::numbers::pi / 180;
    return 300 - 50 * std::pow(std::sin(la), 2) + 5 * std::cos(la) * std::cos(lo) + 2 * std::sin(la);
}

std::vector<float> FieldOn(const std::vector<double>& lons, const std::vector<double>& lats) {
    std::vector<float> cells;
    for (const double lat : lats)
        for (const double lon : lons)
            cells.push_back(static_cast<float>(Field(lat, lon)));
    return cells;
}

/// Largest departure of a picture from the field at the centres of its cells, by way of each cell's own place.
double WorstOf(const TClimateGridPlan& plan, const std::vector<float>& picture) {
    double worst = 0;
    const auto width = static_cast<double>(plan.GetBounds().GetWidth()) / plan.GetColumns();
    const auto height = static_cast<double>(plan.GetBounds().GetHeight()) / plan.GetRows();
    for (std::int32_t row = 0; row < plan.GetRows(); ++row)
        for (std::int32_t column = 0; column < plan.GetColumns(); ++column) {
            const double lat = static_cast<double>(plan.GetBounds().Top) - (row + 0.5) * height;
            const double lon = static_cast<double>(plan.GetBounds().Left) + (column + 0.5) * width;
            const auto index = static_cast<std::size_t>(row) * static_cast<std::size_t>(plan.GetColumns()) +
                               static_cast<std::size_t>(column);
            worst = std::max(worst, std::abs(static_cast<double>(picture[index]) - Field(lat, lon)));
        }
    return worst;
}

TEST(ClimateGridPlan, PutsRowsFromTheNorth) {
    const std::vector<float> cells{1, 2, 3, 4, 5, 6};
    const auto rising = PlanOf({5, 15}, {10, 20, 30});
    EXPECT_THAT(PictureOf(rising, cells, 2), ElementsAre(5, 6, 3, 4, 1, 2));
    EXPECT_EQ(rising.GetBounds(), TMapArea(0, 35, 20, 5));
    EXPECT_EQ(rising.GetWorld(), "latlon");
    EXPECT_TRUE(rising.IsExact());
    EXPECT_EQ(rising.SourceOf(1, 0), 5);
    EXPECT_THAT(PictureOf(PlanOf({5, 15}, {30, 20, 10}), cells, 2), ElementsAre(1, 2, 3, 4, 5, 6));
    EXPECT_THAT(PictureOf(PlanOf({15, 5}, {30, 20, 10}), cells, 2), ElementsAre(2, 1, 4, 3, 6, 5));
}

TEST(ClimateGridPlan, TurnsColumnsToTheSeam) {
    const auto plan = PlanOf({45, 135, 225, 315}, {-45, 45});
    EXPECT_EQ(plan.GetBounds(), TMapArea(-180, 90, 180, -90));
    EXPECT_EQ(plan.GetWorld(), "latlon");
    EXPECT_THAT(FirstRow(plan, 4, 2), ElementsAre(2, 3, 0, 1));
    EXPECT_TRUE(plan.IsExact());
    EXPECT_THAT(FirstRow(PlanOf({-135, -45, 45, 135}, {-45, 45}), 4, 2), ElementsAre(0, 1, 2, 3));
    EXPECT_THAT(FirstRow(PlanOf({135, 225, 315, 405}, {-45, 45}), 4, 2), ElementsAre(1, 2, 3, 0));
    EXPECT_THAT(FirstRow(PlanOf({315, 225, 135, 45}, {-45, 45}), 4, 2), ElementsAre(1, 0, 3, 2));
}

TEST(ClimateGridPlan, HalvesColumnsOnTheSeam) {
    const auto plan = PlanOf({0, 90, 180, 270}, {-45, 45});
    EXPECT_EQ(plan.GetBounds(), TMapArea(-180, 90, 180, -90));
    EXPECT_THAT(FirstRow(plan, 4, 2), ElementsAre(2, 3, 3, 0, 0, 1, 1, 2));
    EXPECT_FALSE(plan.IsExact());
    EXPECT_FALSE(plan.IsInterpolated());
}

TEST(ClimateGridPlan, DropsTheFirstColumnOnceMore) {
    EXPECT_THAT(FirstRow(PlanOf({0, 90, 180, 270, 360}, {-45, 45}), 5, 2), ElementsAre(2, 3, 3, 0, 0, 1, 1, 2));
    EXPECT_THAT(FirstRow(PlanOf({45, 135, 225, 315, 405}, {-45, 45}), 5, 2), ElementsAre(2, 3, 0, 1));
}

TEST(ClimateGridPlan, HalvesRowsOnThePoles) {
    const auto plan = PlanOf({-90, 90}, {90, 0, -90});
    EXPECT_EQ(plan.GetBounds(), TMapArea(-180, 90, 180, -90));
    EXPECT_EQ(plan.GetRows(), 4);
    EXPECT_THAT(PictureOf(plan, {1, 2, 3, 4, 5, 6}, 2), ElementsAre(1, 2, 3, 4, 3, 4, 5, 6));
    const auto north = PlanOf({5, 15}, {70, 80, 90});
    EXPECT_EQ(north.GetBounds(), TMapArea(0, 90, 20, 65));
    EXPECT_THAT(PictureOf(north, {1, 2, 3, 4, 5, 6}, 2), ElementsAre(5, 6, 3, 4, 3, 4, 1, 2, 1, 2));
}

TEST(ClimateGridPlan, PlacesRegionsInAWorld) {
    EXPECT_EQ(PlanOf({200, 210}, {0, 10}).GetBounds(), TMapArea(-165, 15, -145, -5));
    EXPECT_EQ(PlanOf({165.5, 166.5}, {0, 1}).GetWorld(), "latlon");
    const auto pacific = PlanOf({170, 180, -170}, {0, 10});
    EXPECT_EQ(pacific.GetWorld(), "latlonAntimerdian");
    EXPECT_EQ(pacific.GetBounds(), TMapArea(165, 15, 195, -5));
    EXPECT_EQ(PlanOf({-195, -185, -175}, {0, 10}).GetBounds(), TMapArea(160, 15, 190, -5));
    EXPECT_EQ(MessageOf<EClimateRefusal>([] {
                  PlanOf(Steps(-10, 10, 22), {0, 10});
              }),
              "Axis \"lon\" reaches over 0 and 180 degrees without closing the circle. Regrid it first, for example: "
              "cdo remapbil,r360x180 in out");
}

TEST(ClimateGridPlan, OneColumnMayGoRoundTheEarth) {
    const TClimateGridPlan plan(TClimateAxis::Longitude("lon", {0}, {-180, 180}),
                                TClimateAxis::Latitude("lat", {-45, 45}, {}));
    EXPECT_EQ(plan.GetBounds(), TMapArea(-180, 90, 180, -90));
    EXPECT_THAT(PictureOf(plan, {1, 2}, 1), ElementsAre(2, 1));
}

TEST(ClimateGridPlan, AGaussianGridMeetsItsFormula) {
    const auto lons = Steps(0, 1.875, 192);
    const auto lats = GaussianLatitudes(47);
    const auto plan = PlanOf(lons, lats);
    EXPECT_TRUE(plan.IsInterpolated());
    EXPECT_EQ(plan.GetBounds(), TMapArea(-180, 90, 180, -90));
    EXPECT_EQ(plan.GetColumns(), 384);
    EXPECT_EQ(plan.GetRows(), 192);
    EXPECT_EQ(plan.SourceOf(0, 0), -1);
    EXPECT_LT(WorstOf(plan, PictureOf(plan, FieldOn(lons, lats), lons.size())), 0.03);
    std::vector<double> rising(lats.rbegin(), lats.rend());
    const auto other = PlanOf(lons, rising);
    EXPECT_LT(WorstOf(other, PictureOf(other, FieldOn(lons, rising), lons.size())), 0.03);
}

TEST(ClimateGridPlan, ACircleThatTheSeamCutsOddlyIsInterpolated) {
    const auto lons = Steps(2.5, 10, 36); // edges at 357.5: a quarter of a column
    const auto lats = Steps(-85, 10, 18);
    const auto plan = PlanOf(lons, lats);
    EXPECT_TRUE(plan.IsInterpolated());
    EXPECT_EQ(plan.GetColumns(), 72);
    EXPECT_LT(WorstOf(plan, PictureOf(plan, FieldOn(lons, lats), lons.size())), 0.4);
}

TEST(ClimateGridPlan, UnevenRegionsKeepTheirOuterHalves) {
    const auto plan = PlanOf({10, 12, 16}, {0, 2});
    EXPECT_TRUE(plan.IsInterpolated());
    EXPECT_EQ(plan.GetBounds(), TMapArea(9, 3, 18, -1));
    const auto picture = PictureOf(plan, {1, 2, 3, 1, 2, 3}, 3);
    ASSERT_EQ(plan.GetColumns(), 9);
    ASSERT_EQ(plan.GetRows(), 4);
    for (std::size_t row = 0; row < 4; ++row) {
        const auto at = [&](std::size_t column) { return picture[row * 9 + column]; };
        EXPECT_FLOAT_EQ(at(0), 1);
        EXPECT_FLOAT_EQ(at(1), 1.25F);
        EXPECT_FLOAT_EQ(at(3), 2.125F);
        EXPECT_FLOAT_EQ(at(8), 3);
    }
}

TEST(ClimateGridPlan, FlagsAreThoseOfTheNearestCell) {
    const auto plan = PlanOf({10, 12, 16}, {0, 2});
    const auto picture = PictureOf(plan, {1, Flag, 3, 1, Flag, 3}, 3);
    EXPECT_THAT(std::vector<float>(picture.begin(), picture.begin() + 9),
                ElementsAre(1, 1, Flag, Flag, Flag, 3, 3, 3, 3));
}

TEST(ClimateGridPlan, HostileSpacingsStaySmall) {
    const auto plan = PlanOf({10, 10.0000000001, 16}, {0, 2});
    EXPECT_LE(std::int64_t{plan.GetColumns()} * plan.GetRows(), 1'100'000);
    EXPECT_EQ(PictureOf(plan, {1, 2, 3, 1, 2, 3}, 3).size(),
              static_cast<std::size_t>(plan.GetColumns()) * static_cast<std::size_t>(plan.GetRows()));
    const auto flat = PlanOf({10, 11, 13}, {0, 1e-9});
    EXPECT_GE(flat.GetRows(), 1);
    EXPECT_EQ(MessageOf<EClimateRefusal>([] { PlanOf(Steps(0.5 / 30, 1 / 30.0, 10'800), Steps(-80, 0.02, 8001)); }),
              "Axis \"lon\" makes a picture of more than 64000000 cells. Regrid it first, for example: "
              "cdo remapbil,r360x180 in out");
}

// Halves of a row on a pole, or of columns on the seam, are read once where they follow each other.
TEST(ClimateGridPlan, ReadsRowsInTheOrderOfThePicture) {
    const auto rowsOf = [](const TClimateGridPlan& plan) {
        std::vector<std::int32_t> rows;
        plan.MakeImage([&](std::int32_t row, std::span<float>) { rows.push_back(row); }, {}, {});
        return rows;
    };
    EXPECT_THAT(rowsOf(PlanOf({5, 15}, {10, 20, 30})), ElementsAre(2, 1, 0));
    EXPECT_THAT(rowsOf(PlanOf({0, 90, 180, 270}, {90, 0, -90})), ElementsAre(0, 1, 2));
    EXPECT_THAT(rowsOf(PlanOf({10, 12, 16}, {0, 2})), ElementsAre(0, 1));
}

TEST(ClimateGridPlan, ChecksWhatItIsGiven) {
    const auto plan = PlanOf({5, 15}, {10, 20});
    const auto fails = [](std::int32_t row, std::span<float>) {
        if (row == 0)
            throw EInvalidOperation(QStringLiteral("damaged"));
    };
    EXPECT_EQ(MessageOf<EInvalidOperation>([&] { plan.MakeImage(fails, {}, {}); }), "damaged");
    EXPECT_EQ(MessageOf<EArgumentException>([&] { plan.SourceOf(2, 0); }), "Cell");
    EXPECT_EQ(MessageOf<EArgumentException>([&] { plan.SourceOf(0, -1); }), "Cell");
}

TEST(ClimateGridPlan, ShowsTheNewZealandMapGrid) {
    const auto plan = TClimateGridPlan::Nzmg(TClimateAxis::Metres("x", {2005000, 2055000}, {}),
                                             TClimateAxis::Metres("y", {5405000, 5455000}, {}));
    EXPECT_EQ(plan.GetWorld(), "nzmg");
    EXPECT_EQ(plan.GetBounds(), TMapArea(1980000, 5480000, 2080000, 5380000));
    EXPECT_THAT(PictureOf(plan, {1, 2, 3, 4}, 2), ElementsAre(3, 4, 1, 2));
    EXPECT_FALSE(ImageOf(plan, std::vector<float>(4), 2)->getHeader()->IsGeographic());
    EXPECT_EQ(
        MessageOf<EClimateRefusal>([] {
            TClimateGridPlan::Nzmg(TClimateAxis::Metres("x", {0, 1, 5}, {}), TClimateAxis::Metres("y", {0, 1}, {}));
        }),
        "Axis \"x\" is not evenly spaced. Warp it first, for example: gdalwarp -t_srs EPSG:27200 in out");
}

TEST(ClimateGridPlan, MakesAnImageOfItsCells) {
    const auto plan = PlanOf({170, 180}, {10, 20, 30});
    const auto image = ImageOf(plan, {5, 6.5F, Flag, 4, 1, 2}, 2);
    const TImageHeader& header = *image->getHeader();
    EXPECT_EQ(header.GetTitle(), "Rain");
    EXPECT_EQ(header.GetValueUnits(), "mm/day");
    EXPECT_EQ(header.GetMinValue(), 1);
    EXPECT_EQ(header.GetMaxValue(), 6.5F);
    EXPECT_EQ(header.GetDisplayMin(), 1);
    EXPECT_EQ(header.GetDisplayMax(), 6.5F);
    EXPECT_EQ(header.GetMaxX(), 185);
    EXPECT_EQ(header.GetMinY(), 5);
    EXPECT_EQ(header.GetResolutionX(), 10);
    EXPECT_EQ(image->GetCell(1, 1), 1);
    EXPECT_TRUE(TSpatialConst::IsFlag(image->GetCell(1, 2)));
    EXPECT_EQ(image->GetCell(2, 3), 6.5F);
    EXPECT_EQ(TWorldMapArea(&header).WorldSystem->Identifier(), plan.GetWorld());
    EXPECT_EQ(ImageOf(plan, std::vector<float>(6, Flag), 2)->getHeader()->GetMaxValue(), 0);
}

} // namespace
} // namespace lmx
