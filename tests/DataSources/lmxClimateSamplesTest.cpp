#include <tests/DataSources/ClimateSamples.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

// Every file of tests/data/netcdf gives the numbers, places and dates that its origin tells.

namespace lmx {
namespace {

using namespace tests;

void ExpectBounds(const TClimatePicture& picture, const QString& world, float west, float east, float south,
                  float north) {
    const TImageHeader& header = *picture.Image->getHeader();
    EXPECT_EQ(picture.World, world);
    EXPECT_EQ(header.GetMinX(), west);
    EXPECT_EQ(header.GetMaxX(), east);
    EXPECT_EQ(header.GetMinY(), south);
    EXPECT_EQ(header.GetMaxY(), north);
    EXPECT_TRUE(header.GetFlag());
    EXPECT_EQ(header.GetFlagValue(), -9990);
}

TEST(ClimateSamples, AxesEitherWayShowTheSameWorld) {
    const auto check = [](const char* name, const std::vector<double>& lats, const std::vector<double>& lons) {
        SCOPED_TRACE(name);
        const TClimateDataset dataset(ClimateSample(name));
        const TClimatePicture picture = ReadSample(dataset, "tas");
        ExpectField(picture, lats, lons);
        ExpectBounds(picture, "latlon", -180, 180, -90, 90);
        EXPECT_EQ(picture.TimeCaption, "1 January 2000");
    };
    check("lat_descending.nc", Lats10(), Lons10());
    check("lon_0_360.nc", Lats10(), Steps(0, 10, 36));
    check("lon_180.nc", Lats10(), Lons10());
    check("lon_from_20.nc", Lats10(), Lons10());
    check("lon_seam_twice.nc", Steps(-90, 10, 19), Steps(0, 10, 36));
    const TClimateDataset region(ClimateSample("region_newzealand.nc"));
    const TClimatePicture picture = ReadSample(region, "tas");
    ExpectField(picture, Steps(-48.5, 1, 16), Steps(165.5, 1, 15));
    ExpectBounds(picture, "latlon", 165, 180, -49, -33);
}

// Cells are packed in steps of 0.01, and a straight line is not the formula.
TEST(ClimateSamples, GaussianGridsMeetTheirFormula) {
    for (const char* const name : {"gaussian_t62.nc", "gaussian_n48.nc"}) {
        SCOPED_TRACE(name);
        const TClimateDataset dataset(ClimateSample(name));
        const TClimatePicture picture = ReadSample(dataset, "tas");
        const TImageHeader& header = *picture.Image->getHeader();
        ExpectBounds(picture, "latlon", -180, 180, -90, 90);
        const double width = 360.0 / header.GetWidth();
        const double height = 180.0 / header.GetHeight();
        for (int row = 1; row <= header.GetHeight(); ++row)
            for (int column = 1; column <= header.GetWidth(); ++column)
                ASSERT_NEAR(double(picture.Image->GetCell(column, row)),
                            SampleField(90 - height * (row - 0.5), -180 + width * (column - 0.5)), 0.035)
                    << column << ' ' << row;
    }
}

// Numbers of the 24 cells in the order of the file: 0.01 * (100 i - 1200) + 280, flags where told.
void ExpectPacked(
    const char* name, double scale, double offset, const std::vector<int>& flags,
    const std::function<double(int)>& raw = [](int i) { return 100.0 * i - 1200; }) {
    SCOPED_TRACE(name);
    const TClimateDataset dataset(ClimateSample(name));
    const TClimatePicture picture = ReadSample(dataset, "tas");
    for (int i = 0; i < 24; ++i) {
        const bool isFlag = std::find(flags.begin(), flags.end(), i) != flags.end();
        const double value = isFlag ? -9990 : raw(i) * scale + offset;
        EXPECT_EQ(ShownAt(picture, 60 * (i % 6) + 1, -60 + 40 * (i / 6)), float(value)) << i;
    }
}

TEST(ClimateSamples, PackedCellsAndFlags) {
    ExpectPacked("packed_short.nc", 0.01, 280, {0, 23});
    ExpectPacked("packed_float_scale.nc", double(0.01F), 280, {5});
    ExpectPacked("packed_valid_range.nc", 0.01, 280, {0, 1, 2, 3, 23});
    ExpectPacked("packed_valid_min.nc", 0.01, 280, {0, 1, 22, 23});
    ExpectPacked("packed_missing_differs.nc", 0.01, 280, {2, 3});
    ExpectPacked("missing_vector.nc", 1, 0, {2, 3, 4});
    ExpectPacked("fill_default.nc", 1, 0, {4});
    ExpectPacked("unsigned_attribute.nc", 0.5, 200, {}, [](int i) { return i * 11 % 256; });
    ExpectPacked("unsigned_byte.nc", 0.5, 200, {}, [](int i) { return i * 11; });
}

TEST(ClimateSamples, NaNIsAFlagDeclaredOrNot) {
    for (const char* const name : {"nan_fill.nc", "nan_undeclared.nc"}) {
        SCOPED_TRACE(name);
        const TClimateDataset dataset(ClimateSample(name));
        const TClimatePicture picture = ReadSample(dataset, "tas");
        EXPECT_EQ(ShownAt(picture, 121, -20), -9990);
        EXPECT_EQ(ShownAt(picture, 301, 60), -9990);
        ExpectField(picture, {-60, 20}, Steps(0, 60, 6));
    }
}

TEST(ClimateSamples, TimesInEveryCalendar) {
    const auto check = [](const char* name, const QStringList& captions) {
        SCOPED_TRACE(name);
        const TClimateDataset dataset(ClimateSample(name));
        ASSERT_EQ(dataset.GetVariables().at(0).TimeCount, std::size_t(captions.size()));
        for (qsizetype i = 0; i < captions.size(); ++i) {
            const TClimatePicture picture = ReadSample(dataset, "tas", std::size_t(i));
            EXPECT_EQ(picture.TimeCaption, captions[i]);
            ExpectField(picture, {-45, 45}, {0, 90, 180, 270}, double(i));
        }
    };
    check("time_standard.nc", {"4 October 1582 00:00", "15 October 1582 00:00", "16 October 1582 00:00",
                               "1 January 2000 00:00", "29 December 2000 06:00"});
    check("time_gregorian_hours.nc", {"1 January 1900 00:00", "1 January 1900 06:00", "1 January 1900 12:00",
                                      "1 January 1900 18:00", "2 January 1900 00:00"});
    check("time_proleptic.nc", {"14 October 1582", "15 October 1582", "16 October 1582", "1 January 2000"});
    check("time_360_day.nc", {"16 January 1850 00:00", "16 February 1850 00:00", "30 February 1850 00:00",
                              "16 March 1850 00:00", "30 December 1850 12:00", "1 January 1851 00:00"});
    check("time_noleap.nc", {"1 January 1850 00:00", "28 February 1850 00:00", "1 March 1850 00:00",
                             "1 January 1851 00:00", "1 January 2000 12:00"});
    check("time_all_leap.nc", {"28 February 2001", "29 February 2001", "1 March 2001", "1 January 2002"});
    check("time_julian.nc", {"1 January 1900", "29 February 1900", "1 March 1900", "1 January 1901"});
    check("time_zone.nc", {"31 December 1969 12:00", "31 December 1969 13:00", "1 January 1970 11:59:59"});
    check("time_minutes.nc", {"29 February 2020 23:00", "1 March 2020 00:30", "1 March 2020 22:59"});
    check("time_months.nc", {"15 January 2000", "15 February 2000", "15 March 2000", "15 February 2001"});
    check("time_months_standard.nc", {"1 January 1990", "1 February 1990", "1 March 1990", "1 January 1991"});
    check("time_int64.nc", {"1 January 1970 00:00", "13 September 2020 12:26:40"});
    check("time_climatology.nc", {"January 1961-1990", "April 1961-1990", "July 1961-1990", "October 1961-1990"});
}

TEST(ClimateSamples, OneContentInEveryForm) {
    for (const char* const name : {"form_classic.nc", "form_offset64.nc", "form_data64.nc", "form_netcdf4_classic.nc",
                                   "form_netcdf4.nc", "form_scales.h5", "form_strings.nc", "form_groups.nc"}) {
        SCOPED_TRACE(name);
        const TClimateDataset dataset(ClimateSample(name));
        for (std::size_t step = 0; step < 2; ++step)
            ExpectField(ReadSample(dataset, "tas", step), Steps(-60, 40, 4), Steps(0, 60, 6), double(step));
        EXPECT_EQ(ReadSample(dataset, "tas", 1).TimeCaption, "2 January 2000");
        ExpectBounds(ReadSample(dataset, "tas"), "latlon", -180, 180, -80, 80);
    }
    const TClimateDataset deflate(ClimateSample("form_deflate.nc"));
    for (std::size_t step = 0; step < 3; ++step)
        ExpectField(ReadSample(deflate, "tas", step), Lats10(), Lons10(), double(step));
}

TEST(ClimateSamples, GroupsShareTheDimensionsAroundThem) {
    const TClimateDataset dataset(ClimateSample("form_groups.nc"));
    ASSERT_EQ(dataset.GetVariables().size(), 4U);
    ExpectField(ReadSample(dataset, "historical/tas", 1), Steps(-60, 40, 4), Steps(0, 60, 6), 11);
    ExpectField(ReadSample(dataset, "future/tas"), Steps(-60, 40, 4), Steps(0, 60, 6), 20);
    const TClimatePicture regional = ReadSample(dataset, "future/regional/tas");
    ExpectField(regional, {-47.5, -42.5, -37.5}, {165, 170, 175});
    ExpectBounds(regional, "latlon", 162.5, 177.5, -50, -35);
}

TEST(ClimateSamples, EveryTypeOfCells) {
    const TClimateDataset dataset(ClimateSample("form_types.nc"));
    EXPECT_EQ(dataset.GetVariables().size(), 11U);
    for (const TClimateVariableInfo& info : dataset.GetVariables()) {
        SCOPED_TRACE(info.Name.toStdString());
        const double step = info.Name == "v_i8" || info.Name == "v_u8" ? 1099511627777.0 : 5.0;
        const TClimatePicture picture = ReadSample(dataset, info.Name);
        for (int i = 0; i < 24; ++i)
            EXPECT_EQ(ShownAt(picture, 60 * (i % 6) + 1, -60 + 40 * (i / 6)), float(step * i)) << i;
    }
}

TEST(ClimateSamples, BoundsGiveEdgesAndMonths) {
    const TClimateDataset dataset(ClimateSample("regular_bounds.nc"));
    ASSERT_EQ(dataset.GetVariables().size(), 1U);
    const QStringList months{"January 2001", "February 2001", "March 2001"};
    for (std::size_t step = 0; step < 3; ++step) {
        EXPECT_EQ(ReadSample(dataset, "tas", step).TimeCaption, months[qsizetype(step)]);
        ExpectField(ReadSample(dataset, "tas", step), Lats10(), Lons10(), double(step));
    }
}

TEST(ClimateSamples, VariablesHoldTheirFormulas) {
    const TClimateDataset dataset(ClimateSample("variables.nc"));
    const auto check = [&](const char* name, double factor, double shift, double tolerance) {
        ExpectCells(
            ReadSample(dataset, name, 1), Lats10(), Lons10(),
            [=](double lat, double lon) { return (SampleField(lat, lon, 1) + shift) * factor; }, tolerance);
    };
    check("tas", 1, 0, 2e-5);
    check("tasmin", 1, -6, 2e-5);
    check("tasmax", 1, 6, 2e-5);
    check("pr", 1e-6, -240, 1e-10);
    check("psl", 20, 101'325 / 20.0 - 280, 0.01);
    check("hurs", 1, -240, 2e-5);
    check("huss", 2e-4, -240, 1e-8);
    check("clt", 1 / 70.0, -240, 1e-6);
    ExpectCells(ReadSample(dataset, "sftlf"), Lats10(), Lons10(),
                [](double lat, double lon) { return std::clamp(SampleField(lat, lon) - 260, 0.0, 100.0); });
}

TEST(ClimateSamples, OddUnitsAreUnderstoodOrKept) {
    const TClimateDataset dataset(ClimateSample("units_odd.nc"));
    const auto check = [&](const char* name, const char* units, double factor, double shift) {
        SCOPED_TRACE(name);
        const TClimatePicture picture = dataset.Read({dataset.FindVariable(name).GetValue()});
        EXPECT_EQ(picture.Conversion.ShownUnits, QString::fromUtf8(units));
        EXPECT_EQ(picture.Image->getHeader()->GetValueUnits(), QString::fromUtf8(units));
        ExpectCells(
            picture, Lats10(), Lons10(),
            [=](double lat, double lon) { return (SampleField(lat, lon) + shift) * factor; }, std::abs(factor) * 1e-4);
    };
    check("t_c", "°C", 1, -273.15);
    check("t_celsius", "°C", 1, -273.15);
    check("t_degk", "°C", 1, -273.15);
    check("t_f", "°C", 1, -273.15);
    check("p_mb", "hPa", 1, 700);
    check("p_hpa", "hPa", 1, 700);
    check("r_mmday", "mm/day", 1, -240);
    check("r_kg", "kg m**-2 s**-1", 1 / 86'400.0, -240);
    check("r_ms", "m s-1", 1 / 86'400'000.0, -240);
    check("z_gp", "m", 1, 0);
    check("unitless", "", 1, 0);
    check("nobody", "furlong fortnight-1", 1, 0);
}

TEST(ClimateSamples, ZarrAsAFolderAndInAZip) {
    for (const char* const name : {"store.zarr", "store.zarr.zip"}) {
        SCOPED_TRACE(name);
        const TClimateDataset dataset(ClimateSample(name));
        for (const char* const variable : {"tas", "tas_packed"}) {
            const TClimatePicture first = ReadSample(dataset, variable);
            EXPECT_EQ(first.TimeCaption, "January 2000");
            EXPECT_EQ(ShownAt(first, 5, -85), -9990);
            ExpectField(first, Steps(-75, 10, 17), Lons10(), 0, 0.006);
            ExpectField(ReadSample(dataset, variable, 1), Lats10(), Lons10(), 1, 0.006);
            EXPECT_EQ(ReadSample(dataset, variable, 1).TimeCaption, "February 2000");
        }
    }
}

TEST(ClimateSamples, GribOfBothEditions) {
    for (const char* const name : {"tiny_grib1.grib", "tiny_grib2.grib2"}) {
        SCOPED_TRACE(name);
        const TClimateDataset dataset(ClimateSample(name));
        ASSERT_EQ(dataset.GetVariables().size(), 1U);
        const TClimateVariableInfo& info = dataset.GetVariables()[0];
        EXPECT_EQ(info.LongName, "Temperature");
        EXPECT_EQ(info.Units, "K");
        EXPECT_EQ(info.Variable, TNullable(TClimateVariable::cvTa));
        const QStringList times{"1 January 2020 00:00", "1 January 2020 06:00", "1 January 2020 12:00"};
        const QStringList levels{"850 hPa", "500 hPa"};
        for (std::size_t time = 0; time < 3; ++time)
            for (std::size_t level = 0; level < 2; ++level) {
                const TClimatePicture picture = ReadSample(dataset, info.Name, time, level);
                EXPECT_EQ(picture.TimeCaption, times[qsizetype(time)]);
                EXPECT_EQ(picture.LevelCaption, levels[qsizetype(level)]);
                EXPECT_EQ(ShownAt(picture, 1, 85), -9990);
                const double shift = double(time) - 20 * double(level);
                ExpectField(picture, Steps(-85, 10, 17), Steps(0, 10, 36), shift, 0.002);
                ExpectField(picture, {85}, Steps(10, 10, 35), shift, 0.002);
                ExpectBounds(picture, "latlon", -180, 180, -90, 90);
            }
    }
}

TEST(ClimateSamples, GeoTiff) {
    for (const char* const name : {"tiled_overviews.tif", "cog.tif"}) {
        SCOPED_TRACE(name);
        const TClimateDataset dataset(ClimateSample(name));
        const TClimatePicture picture = ReadSample(dataset, "Band 1");
        ExpectBounds(picture, "latlon", -180, 180, -90, 90);
        ExpectField(picture, Steps(-89.75, 0.5, 340), Steps(-179.75, 0.5, 720), 0, 0.0501);
        ExpectCells(picture, Steps(80.25, 0.5, 20), Steps(-179.75, 0.5, 720), [](double, double) { return -9990.0; });
    }
    const TClimateDataset nan(ClimateSample("nan_nodata.tif"));
    const TClimatePicture holes = ReadSample(nan, "Band 1");
    ExpectCells(holes, {55}, Steps(-135, 10, 5), [](double, double) { return -9990.0; });
    ExpectField(holes, Steps(-85, 10, 14), Lons10());
    const TClimateDataset scaled(ClimateSample("scaled_int16.tif"));
    ExpectField(ReadSample(scaled, "Band 1"), Lats10(), Lons10(), 0, 0.0501);
}

TEST(ClimateSamples, TheMapGridOfNewZealand) {
    const TClimateDataset tiff(ClimateSample("nzmg.tif"));
    const TClimatePicture first = ReadSample(tiff, "Band 1");
    ExpectBounds(first, "nzmg", 1'980'000, 2'980'000, 5'380'000, 6'730'000);
    const TClimateDataset file(ClimateSample("projected_nzmg.nc"));
    const TClimatePicture second = ReadSample(file, "tas");
    ExpectBounds(second, "nzmg", 1'980'000, 2'980'000, 5'380'000, 6'730'000);
    for (int row = 0; row < 27; ++row)
        for (int column = 0; column < 20; ++column) {
            const double x = 2'005'000 + 50'000 * column;
            const double y = 6'705'000 - 50'000 * row;
            EXPECT_NEAR(double(first.Image->GetCell(column + 1, row + 1)), 280 + (x - 2e6) * 1e-6 + (y - 5.4e6) * 5e-6,
                        3e-5);
            EXPECT_NEAR(double(second.Image->GetCell(column + 1, row + 1)), 285 + (y - 5.4e6) * 5e-6 + (x - 2e6) * 1e-6,
                        3e-5);
        }
}

} // namespace
} // namespace lmx
