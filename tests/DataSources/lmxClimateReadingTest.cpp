#include <lmx/DataSources/Private/lmxAsValue.h>
#include <lmx/DataSources/Private/lmxClimateCatalog.h>
#include <lmx/DataSources/Private/lmxClimateFileOpening.h>

#include <tests/DataSources/ArraySource.h>
#include <tests/DataSources/ClimateSamples.h>

#include <QDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <functional>
#include <limits>

// Pictures against a reader that is as plain as can be: one cell after the other, each from the place of the file that
// the plan names. Every bit is the same.

namespace lmx {
namespace {

using namespace tests;
using enum TClimateCellType;

std::uint32_t BitsAt(const TClimatePicture& picture, std::int32_t column, std::int32_t row) {
    return std::bit_cast<std::uint32_t>(picture.Image->GetRow(row + 1)[static_cast<std::size_t>(column)]);
}

/// The whole array by one read, and from it what a picture has to show of one step.
class TPlainReader {
public:
    TPlainReader(IClimateSource& source, const TSourceIndex& index, std::size_t array)
        : FArray(source.GetArrays()[array]),
          FRoles(FindClimateRoles(index, array)),
          FMeaning({FArray.Type, source.IsNetCdf(), index.GetAttributes(array).HasFloatingLimits},
                   index.GetAttributes(array).Values) {
        TSourceWindow all;
        for (const TSourceDimension& dimension : FArray.Dimensions) {
            all.Starts.push_back(0);
            all.Counts.push_back(std::size_t(dimension.Size));
        }
        FCells = source.Read(array, all);
    }

    float ValueAt(std::size_t time, std::size_t level, std::size_t source, const TUnitConversion& conversion,
                  double daysInMonth) const {
        const auto columns = std::size_t(FArray.Dimensions[*FRoles.Longitude].Size);
        std::size_t place = 0;
        for (std::size_t i = 0; i < FArray.Dimensions.size(); ++i)
            place = place * std::size_t(FArray.Dimensions[i].Size) + (i == *FRoles.Longitude  ? source % columns
                                                                      : i == *FRoles.Latitude ? source / columns
                                                                      : FRoles.Time == i      ? time
                                                                      : FRoles.Level == i     ? level
                                                                                              : 0);
        float value = 0;
        const TRawSlice cell = FCells.Part(place, 1);
        FMeaning.Unpack(cell.GetCells(), std::span(&value, 1), conversion, daysInMonth);
        return value;
    }

private:
    TSourceArray FArray;
    TClimateRoles FRoles;
    TClimateCells FMeaning;
    TRawSlice FCells;
};

void ExpectPicture(const TClimatePicture& picture, const TClimateGridPlan& plan,
                   const std::function<float(std::size_t source)>& valueAt) {
    ASSERT_EQ(picture.Image->getHeader()->GetWidth(), plan.GetColumns());
    ASSERT_EQ(picture.Image->getHeader()->GetHeight(), plan.GetRows());
    float least = std::numeric_limits<float>::infinity();
    float most = -least;
    for (std::int32_t row = 0; row < plan.GetRows(); ++row)
        for (std::int32_t column = 0; column < plan.GetColumns(); ++column) {
            const float value = valueAt(std::size_t(plan.SourceOf(column, row)));
            ASSERT_EQ(BitsAt(picture, column, row), std::bit_cast<std::uint32_t>(value)) << column << ' ' << row;
            if (value == TSpatialConst::NoData)
                continue;
            least = std::min(least, value);
            most = std::max(most, value);
        }
    EXPECT_EQ(picture.Image->getHeader()->GetMinValue(), least <= most ? least : 0);
    EXPECT_EQ(picture.Image->getHeader()->GetMaxValue(), least <= most ? most : 0);
}

TEST(ClimateReading, EverySampleIsReadAsCellByCell) {
    int pictures = 0;
    const QDir folder(ClimateSample(""));
    for (const QString& name : folder.entryList({"*.nc", "*.h5", "*.zarr", "*.tif", "*.grib*"})) {
        std::unique_ptr<IClimateSource> source;
        try {
            source = OpenClimateSource(folder.filePath(name), {});
        } catch (const EClimateFile&) {
            continue;
        }
        const TSourceIndex index(*source);
        const TClimateCatalog catalog(OpenClimateSource(folder.filePath(name), {}), name);
        for (std::size_t variable = 0; variable < catalog.GetInfos().size(); ++variable) {
            const TClimateVariableInfo& info = catalog.GetInfos()[variable];
            const TCatalogEntry& entry = catalog.GetEntry(variable);
            if (!info.Refusal.isEmpty() || entry.Plan->IsInterpolated() ||
                source->GetArrays()[entry.Array].CellCount() > 1'000'000)
                continue;
            SCOPED_TRACE((name + u' ' + info.Name).toStdString());
            const TPlainReader plain(*source, index, entry.Array);
            const std::size_t levels = std::max<std::size_t>(info.Levels.size(), 1);
            for (const std::size_t time : {std::size_t(0), info.TimeCount - 1}) {
                const TClimatePicture picture = catalog.Read({variable, time, levels - 1});
                const auto date = time < entry.Times->GetCount() ? entry.Times->GetDate(time) : std::nullopt;
                const double days = date ? entry.Times->GetCalendar().DaysInMonth(date->Year, date->Month) : 0;
                ExpectPicture(picture, *entry.Plan, [&](std::size_t cell) {
                    return plain.ValueAt(time, levels - 1, cell, picture.Conversion, days);
                });
                ++pictures;
            }
        }
    }
    EXPECT_GT(pictures, 150);
}

/// A variable of a month, and what its raw numbers mean, worked out here.
struct TMade {
    TClimateCellType Type = ctInt16;
    std::vector<double> Lons;
    std::vector<double> Lats;
    bool IsTransposed = false;
    bool IsUnsigned = false;
    QString Units = "K";
};

constexpr double Scale = 0.01;
constexpr double Offset = 280;

bool IsMarked(double raw) {
    return raw == 7 || raw == 11 || raw == 13 || raw < -30'000 || raw > 30'000;
}

double RawAt(const TMade& made, std::size_t cell) {
    const auto number = static_cast<std::int64_t>(cell * 7919 % 65'536);
    switch (made.Type) {
    case ctInt8:
        return static_cast<double>(number % 256 - 128);
    case ctUInt8:
        return static_cast<double>(number % 256);
    case ctInt16:
        return static_cast<double>(number - 32'768);
    case ctUInt16:
        return static_cast<double>(number);
    default:
        return static_cast<double>(number - 32'768);
    }
}

/// The number that the cells mean: those of signed bytes may be meant without sign.
double MeantBy(const TMade& made, double raw) {
    return made.IsUnsigned && raw < 0 ? raw + 256 : raw;
}

float ExpectedAt(const TMade& made, std::size_t cell, bool isConverted) {
    const double raw = MeantBy(made, RawAt(made, cell));
    const double value = raw * Scale + Offset;
    if (IsMarked(raw) || TSpatialConst::IsFlag(static_cast<float>(value)))
        return TSpatialConst::NoData;
    if (!isConverted)
        return static_cast<float>(value);
    return AsValue(made.Units == "K" ? static_cast<float>(value * 1 + -273.15)
                                     : static_cast<float>(value * (1.0 / 31) + 0));
}

std::unique_ptr<TArraySource> SourceOf(const TMade& made) {
    auto source = std::make_unique<TArraySource>();
    const TSourceDimension time = source->AddAxis("time", "days since 2000-01-01", {14});
    const TSourceDimension lat = source->AddAxis("lat", "degrees_north", made.Lats);
    const TSourceDimension lon = source->AddAxis("lon", "degrees_east", made.Lons);
    TSourceAttributes attributes;
    attributes.Values.Set("units", made.Units);
    attributes.Values.Set("standard_name", QString(made.Units == "K" ? "air_temperature" : "precipitation_flux"));
    attributes.Values.Set("scale_factor", std::vector<double>{Scale});
    attributes.Values.Set("add_offset", std::vector<double>{Offset});
    attributes.Values.Set("_FillValue", std::vector<double>{7});
    attributes.Values.Set("missing_value", std::vector<double>{11, 7, 13});
    const bool hasSign = made.Type != ctUInt8 && made.Type != ctUInt16 && !made.IsUnsigned;
    attributes.Values.Set("valid_range", std::vector<double>{hasSign ? -30'000.0 : 0.0, 30'000});
    if (made.IsUnsigned)
        attributes.Values.Set("_Unsigned", QStringLiteral("true"));
    std::vector<double> numbers;
    const std::size_t columns = made.Lons.size();
    const std::size_t rows = made.Lats.size();
    for (std::size_t i = 0; i < columns * rows; ++i)
        numbers.push_back(RawAt(made, made.IsTransposed ? i % rows * columns + i / rows : i));
    source->Add(
        {"/v", made.IsTransposed ? std::vector{time, lon, lat} : std::vector{time, lat, lon}, {}, true, made.Type, {}},
        std::move(numbers), attributes);
    return source;
}

void ExpectMade(const TMade& made) {
    const TClimateCatalog catalog(SourceOf(made), "made");
    ASSERT_EQ(catalog.GetInfos().size(), 1U);
    ASSERT_EQ(catalog.GetInfos()[0].Refusal, "");
    const TClimateGridPlan& plan = *catalog.GetEntry(0).Plan;
    ASSERT_FALSE(plan.IsInterpolated());
    for (const bool isConverted : {false, true}) {
        SCOPED_TRACE(isConverted);
        const TClimatePicture picture =
            catalog.Read({0, 0, 0, isConverted ? TClimateShownUnits::suExpected : TClimateShownUnits::suFile});
        ASSERT_EQ(picture.Conversion.IsIdentity(), !isConverted);
        ExpectPicture(picture, plan, [&](std::size_t cell) { return ExpectedAt(made, cell, isConverted); });
    }
}

// Enough cells that those of few bits go through a table.
TEST(ClimateReading, EveryTypeAndOrderIsReadAsCellByCell) {
    for (const TClimateCellType type : {ctInt8, ctUInt8, ctInt16, ctUInt16, ctInt32, ctFloat, ctDouble})
        for (const bool isTransposed : {false, true}) {
            SCOPED_TRACE(testing::Message() << static_cast<int>(type) << ' ' << isTransposed);
            ExpectMade({type, Steps(-179.5, 1, 360), Steps(-90, 0.9, 201), isTransposed, false, "K"});
        }
    ExpectMade({ctInt8, Steps(-179.5, 1, 360), Steps(-89.5, 1, 180), false, true, "K"});
}

TEST(ClimateReading, EveryPlaceIsReadAsCellByCell) {
    const std::vector<std::vector<double>> lons{Steps(0.5, 1, 360),    Steps(0, 1, 360), Steps(20.5, 1, 360),
                                                Steps(359.5, -1, 360), Steps(0, 1, 361), Steps(165, 0.5, 40)};
    const std::vector<std::vector<double>> lats{Steps(-89.5, 1, 180), Steps(89.5, -1, 180), Steps(-90, 1, 181),
                                                Steps(90, -1, 181), Steps(-47, 0.25, 30)};
    for (const auto& lon : lons)
        for (const auto& lat : lats) {
            SCOPED_TRACE(testing::Message() << lon[0] << ' ' << lon.size() << ' ' << lat[0] << ' ' << lat.size());
            ExpectMade({ctInt16, lon, lat, lat.size() == 30, false, "K"});
        }
}

TEST(ClimateReading, NumbersByTheMonthAreReadAsCellByCell) {
    for (const TClimateCellType type : {ctInt16, ctFloat})
        ExpectMade({type, Steps(-179.5, 1, 360), Steps(-89.5, 1, 180), false, false, "mm month-1"});
}

} // namespace
} // namespace lmx
