#include <lmx/DataSources/lmxClimateAxis.h>

#include <tests/Support/Printers.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace lmx {
namespace {

using namespace tests;
using enum TClimateAxisKind;
using testing::ElementsAre;

constexpr double NaN = std::numeric_limits<double>::quiet_NaN();

TClimateAttributes With(std::initializer_list<std::pair<const char*, const char*>> texts) {
    TClimateAttributes attributes;
    for (const auto& [name, text] : texts)
        attributes.Set(name, QString::fromLatin1(text));
    return attributes;
}

TEST(ClimateAxisKinds, GoByUnitsThenNameThenLetter) {
    EXPECT_EQ(KindOfClimateAxis(With({{"units", "degree_N"}, {"standard_name", "longitude"}, {"axis", "X"}})),
              akLatitude);
    EXPECT_EQ(KindOfClimateAxis(With({{"units", "degreesE"}})), akLongitude);
    EXPECT_EQ(KindOfClimateAxis(With({{"units", "Days Since 2000-01-01"}, {"axis", "X"}})), akTime);
    EXPECT_EQ(KindOfClimateAxis(With({{"units", "degrees"}, {"standard_name", "latitude"}, {"axis", "X"}})),
              akLatitude);
    EXPECT_EQ(KindOfClimateAxis(With({{"standard_name", "longitude"}})), akLongitude);
    EXPECT_EQ(KindOfClimateAxis(With({{"standard_name", "time"}})), akTime);
    EXPECT_EQ(KindOfClimateAxis(With({{"standard_name", "depth"}})), akLevel);
    EXPECT_EQ(KindOfClimateAxis(With({{"axis", "Y"}})), akLatitude);
    EXPECT_EQ(KindOfClimateAxis(With({{"axis", "x"}})), akLongitude);
    EXPECT_EQ(KindOfClimateAxis(With({{"units", "degrees"}, {"axis", "Y"}})), akLatitude);
    EXPECT_EQ(KindOfClimateAxis(With({{"units", "km"}, {"axis", "X"}})), akOther);
    EXPECT_EQ(KindOfClimateAxis(With({{"units", "degrees_east"}, {"standard_name", "grid_longitude"}})), akOther);
    EXPECT_EQ(KindOfClimateAxis(With({{"axis", "T"}})), akTime);
    EXPECT_EQ(KindOfClimateAxis(With({{"axis", "Z"}})), akLevel);
    EXPECT_EQ(KindOfClimateAxis(With({{"positive", "down"}})), akLevel);
    EXPECT_EQ(KindOfClimateAxis(With({{"units", "millibar"}})), akLevel);
    EXPECT_EQ(KindOfClimateAxis(With({{"units", "m"}, {"standard_name", "grid_latitude"}})), akOther);
    EXPECT_EQ(KindOfClimateAxis({}), akOther);
}

TEST(ClimateAxis, EdgesLieHalfwayBetweenCentres) {
    const auto axis = TClimateAxis::Latitude("lat", {-45, 0, 45}, {});
    EXPECT_THAT(axis.GetEdges(), ElementsAre(-67.5, -22.5, 22.5, 67.5));
    EXPECT_TRUE(axis.IsRegular());
    EXPECT_TRUE(axis.IsAscending());
    EXPECT_EQ(axis.GetStep(), 45);
    const auto falling = TClimateAxis::Latitude("lat", {90, 0, -90}, {});
    EXPECT_THAT(falling.GetEdges(), ElementsAre(90, 45, -45, -90));
    EXPECT_TRUE(falling.IsRegular());
    EXPECT_FALSE(falling.IsAscending());
    EXPECT_EQ(falling.GetLow(), -90);
    EXPECT_EQ(falling.GetHigh(), 90);
    const auto uneven = TClimateAxis::Metres("z", {0, 1, 3}, {});
    EXPECT_THAT(uneven.GetEdges(), ElementsAre(-0.5, 0.5, 2, 4));
    EXPECT_FALSE(uneven.IsRegular());
}

TEST(ClimateAxis, BoundsCountIfTheyAreContiguous) {
    const auto axis = TClimateAxis::Latitude("lat", {1, 3}, {0, 2, 2, 4});
    EXPECT_THAT(axis.GetEdges(), ElementsAre(0, 2, 4));
    EXPECT_TRUE(axis.IsRegular());
    EXPECT_THAT(TClimateAxis::Latitude("lat", {3, 1}, {2, 4, 0, 2}).GetEdges(), ElementsAre(4, 2, 0));
    EXPECT_THAT(TClimateAxis::Latitude("lat", {3, 1}, {4, 2, 2, 0}).GetEdges(), ElementsAre(4, 2, 0));
    const auto uneven = TClimateAxis::Latitude("lat", {1, 3}, {0, 1.5, 1.5, 4});
    EXPECT_THAT(uneven.GetEdges(), ElementsAre(0, 1.5, 4));
    EXPECT_FALSE(uneven.IsRegular());
    for (const std::vector<double>& bounds :
         {std::vector<double>{0, 1.5, 2, 4}, std::vector<double>{0, 2, 2, NaN}, std::vector<double>{0, 2},
          std::vector<double>{2, 4, 4, 6}, std::vector<double>{1, 1, 1, 3}, std::vector<double>{0, 2, 2, 1e300}})
        EXPECT_THAT(TClimateAxis::Latitude("lat", {1, 3}, bounds).GetEdges(), ElementsAre(0, 2, 4));
    EXPECT_THAT(TClimateAxis::Longitude("lon", {355, 5}, {350, 360, 0, 10}).GetEdges(), ElementsAre(350, 360, 370));
    const auto lone = TClimateAxis::Longitude("lon", {0}, {-180, 180});
    EXPECT_THAT(lone.GetEdges(), ElementsAre(-180, 180));
    EXPECT_TRUE(lone.IsRegular());
    EXPECT_EQ(lone.GetStep(), 360);
    EXPECT_THAT(TClimateAxis::Longitude("lon", {0}, {0, 360}).GetEdges(), ElementsAre(0, 360));
    EXPECT_THAT(TClimateAxis::Longitude("lon", {180}, {-180, 180}).GetEdges(), ElementsAre(-180, 180));
    EXPECT_THAT(TClimateAxis::Longitude("lon", {0}, {355, 5}).GetEdges(), ElementsAre(-5, 5));
}

TEST(ClimateAxis, LongitudesAreUnwrapped) {
    EXPECT_THAT(TClimateAxis::Longitude("lon", {345, 15}, {}).GetValues(), ElementsAre(345, 375));
    EXPECT_THAT(TClimateAxis::Longitude("lon", {160, 170, 180, -170}, {}).GetValues(), ElementsAre(160, 170, 180, 190));
    EXPECT_THAT(TClimateAxis::Longitude("lon", {15, 5, 355}, {}).GetValues(), ElementsAre(15, 5, -5));
    EXPECT_THAT(TClimateAxis::Longitude("lon", {0, 200}, {}).GetValues(), ElementsAre(0, 200));
}

TEST(ClimateAxis, EvennessIsStrictButForgivesSingles) {
    std::vector<double> singles;
    for (int i = 0; i < 4320; ++i)
        singles.push_back(static_cast<double>(static_cast<float>(-179.9583333 + i / 12.0)));
    EXPECT_TRUE(TClimateAxis::Longitude("lon", singles, {}).IsRegular());
    // the first Gaussian latitudes of 94 rows
    EXPECT_FALSE(TClimateAxis::Latitude("lat", {88.54195, 86.653167, 84.753215}, {}).IsRegular());
    EXPECT_FALSE(TClimateAxis::Latitude("lat", {0, 10, 20.01}, {}).IsRegular());
    EXPECT_FALSE(TClimateAxis::Latitude("lat", {-89, 0, 89}, {}).IsRegular()) << "no whole cells at the poles";
    std::vector<double> rounded; // 320 rows of 0.5625 degrees from 89.71875, in thousandths
    for (int i = 0; i < 320; ++i)
        rounded.push_back(89.719 - i * 2 * 89.719 / 319);
    const auto thousandths = TClimateAxis::Latitude("lat", rounded, {});
    EXPECT_TRUE(thousandths.IsRegular());
    EXPECT_EQ(thousandths.GetHigh(), 90);
}

TEST(ClimateAxis, RefusesByName) {
    const QString regrid = QStringLiteral(" Regrid it first, for example: cdo remapbil,r360x180 in out");
    const auto latitude = [](std::vector<double> values) {
        return MessageOf<EClimateRefusal>([&] { TClimateAxis::Latitude("lat", values, {}); });
    };
    const auto longitude = [](std::vector<double> values) {
        return MessageOf<EClimateRefusal>([&] { TClimateAxis::Longitude("lon", values, {}); });
    };
    EXPECT_EQ(latitude({}), "Axis \"lat\" has no values");
    EXPECT_EQ(latitude({5}), "Axis \"lat\" has one value and no bounds");
    EXPECT_EQ(latitude(std::vector<double>(1'000'001)), "Axis \"lat\" has more than 1000000 values");
    EXPECT_EQ(latitude({0, NaN}), "Axis \"lat\" holds what is no place." + regrid);
    EXPECT_EQ(longitude({0, 1e300}), "Axis \"lon\" holds what is no place." + regrid);
    EXPECT_EQ(latitude({0, 1, 1}), "Axis \"lat\" holds equal neighbours." + regrid);
    EXPECT_EQ(latitude({0, 1, 0.5}), "Axis \"lat\" turns back." + regrid);
    EXPECT_EQ(latitude({0, 90.002}), "Axis \"lat\" reaches beyond the poles." + regrid);
    EXPECT_EQ(longitude({0, 1081}), "Axis \"lon\" is not in degrees." + regrid);
    EXPECT_EQ(longitude({0, 200, 400}), "Axis \"lon\" goes round the earth more than once." + regrid);
    EXPECT_EQ(longitude({0, 10, 5, 20}), "Axis \"lon\" turns back." + regrid);
    EXPECT_EQ(TClimateAxis::Latitude("lat", {0, 45, 90.0009}, {}).GetHigh(), 90);
}

TEST(ClimateAxis, MayHaveAMillionValues) {
    std::vector<double> values;
    for (int i = 0; i < 1'000'000; ++i)
        values.push_back(i * 3e-4);
    EXPECT_EQ(TClimateAxis::Longitude("lon", values, {}).GetCount(), 1'000'000U);
}

TEST(ClimateRefusals, NameTheVariableAndAWayOut) {
    using enum TClimateRefusal;
    const std::pair<TClimateRefusal, const char*> rows[] = {
        {crNoCoordinates, "Variable \"tas\" has no coordinates of latitude and longitude. Add them first, for example: "
                          "cdo setgrid,GRID in out"},
        {crRotatedPole, "Variable \"tas\" lies on a grid with a rotated pole. Regrid it first, for example: "
                        "cdo remapbil,r360x180 in out"},
        {crCurvilinear, "Variable \"tas\" lies on a curvilinear grid. Regrid it first, for example: "
                        "cdo remapbil,r360x180 in out"},
        {crUnstructured, "Variable \"tas\" lies on an unstructured grid. Regrid it first, for example: "
                         "cdo remapdis,r360x180 in out"},
        {crReducedGrid, "Variable \"tas\" lies on a reduced grid. Regrid it first, for example: "
                        "cdo setgridtype,regular in out"},
        {crProjected, "Variable \"tas\" lies on a projection other than the New Zealand Map Grid. Warp it first, for "
                      "example: gdalwarp -t_srs EPSG:4326 in out"},
        {crRotatedImage, "Variable \"tas\" has rows that do not run from west to east. Warp it first, for example: "
                         "gdalwarp -t_srs EPSG:4326 in out"},
        {crNoMap, "Variable \"tas\" is no map: latitude or longitude is not among its dimensions"},
    };
    for (const auto& [refusal, text] : rows)
        EXPECT_EQ(RefusalText(refusal, "tas"), QString::fromLatin1(text));
}

} // namespace
} // namespace lmx
