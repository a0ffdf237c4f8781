#include <lmx/DataSources/Private/lmxClimateCatalog.h>
#include <lmx/DataSources/Private/lmxClimateFileOpening.h>
#include <lmx/DataSources/lmxClimateExceptions.h>

#include <tests/DataSources/ClassicNetCdf.h>
#include <tests/DataSources/TiffFiles.h>
#include <tests/Support/Printers.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gdal_priv.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

// What the CF conventions let a file say, in files of a few cells: numbers, places and words come out right, or the
// variable is refused. Expected numbers are worked out by hand.

namespace lmx {
namespace {

using namespace tests;
using enum TClassicValues::TType;
using testing::ElementsAre;

TClassicAttributes With(TClassicAttributes first, const TClassicAttributes& others) {
    first.insert(first.end(), others.begin(), others.end());
    return first;
}

const TClassicAttributes North = {{"units", "degrees_north"}};
const TClassicAttributes East = {{"units", "degrees_east"}};

/// A file of one variable "v" on two axes, latitudes first.
struct TSmallFile {
    std::vector<double> Lats = {-45, 45};
    std::vector<double> Lons = {-90, 90};
    TClassicAttributes LatAttributes = North;
    TClassicAttributes LonAttributes = East;
    std::vector<double> LatBounds;
    std::vector<double> LonBounds;
    TClassicValues Cells = {Float, {1, 2, 3, 4}};
    TClassicAttributes Attributes;
    std::vector<std::pair<QByteArray, TClassicAttributes>> Mappings; ///< scalars
    std::vector<std::pair<QByteArray, TClassicAttributes>> Fields;   ///< of zeros

    QByteArray ToBytes() const {
        TClassicNetCdf file;
        const quint32 lat = file.Dimension("lat", quint32(Lats.size()));
        const quint32 lon = file.Dimension("lon", quint32(Lons.size()));
        const quint32 two = file.Dimension("two", 2);
        const auto axis = [&](const char* name, quint32 dimension, const std::vector<double>& values,
                              TClassicAttributes attributes, const std::vector<double>& bounds) {
            const QByteArray boundsName = QByteArray(name) + "_bnds";
            if (!bounds.empty())
                attributes.push_back({"bounds", boundsName.constData()});
            file.Variable(name, {dimension}, {Double, values}, attributes);
            if (!bounds.empty())
                file.Variable(boundsName, {dimension, two}, {Double, bounds});
        };
        axis("lat", lat, Lats, LatAttributes, LatBounds);
        axis("lon", lon, Lons, LonAttributes, LonBounds);
        for (const auto& [name, attributes] : Mappings)
            file.Variable(name, {}, {Int, {0}}, attributes);
        for (const auto& [name, attributes] : Fields)
            file.Variable(name, {lat, lon}, {Int, std::vector<double>(Lats.size() * Lons.size())}, attributes);
        file.Variable("v", {lat, lon}, Cells, Attributes);
        return file.ToBytes();
    }
};

const TClimateVariableInfo& InfoOf(const TClimateCatalog& catalog) {
    for (const TClimateVariableInfo& info : catalog.GetInfos())
        if (info.Name == QStringLiteral("v"))
            return info;
    throw EArgumentException(QStringLiteral("v"));
}

TClimateCatalog CatalogOf(const TSmallFile& file) {
    return TClimateCatalog(OpenClimateBytes(file.ToBytes(), QStringLiteral("f.nc")), QStringLiteral("f.nc"));
}

QString RefusalOf(const TSmallFile& file) {
    return InfoOf(CatalogOf(file)).Refusal;
}

TClimatePicture PictureOf(const TSmallFile& file, TClimateShownUnits units = TClimateShownUnits::suExpected) {
    const TClimateCatalog catalog = CatalogOf(file);
    for (std::size_t i = 0; i < catalog.GetInfos().size(); ++i)
        if (catalog.GetInfos()[i].Name == QStringLiteral("v"))
            return catalog.Read({i, 0, 0, units});
    throw EArgumentException(QStringLiteral("v"));
}

/// Cells from the north-west.
std::vector<float> CellsOf(const TClimatePicture& picture) {
    std::vector<float> cells;
    for (int row = 1; row <= picture.Image->getHeader()->GetHeight(); ++row)
        for (const float cell : picture.Image->GetRow(row))
            cells.push_back(cell);
    return cells;
}

TEST(ClimateConventions, RowsComeFromTheNorth) {
    EXPECT_THAT(CellsOf(PictureOf({})), ElementsAre(3, 4, 1, 2));
    TSmallFile falling;
    falling.Lats = {45, -45};
    falling.Lons = {90, -90};
    EXPECT_THAT(CellsOf(PictureOf(falling)), ElementsAre(2, 1, 4, 3));
}

// 2 K above the mean are not -271.15 degrees.
TEST(ClimateConventions, DifferencesOfTemperaturesKeepTheirZero) {
    const auto shown = [](const TClassicAttributes& attributes) {
        TSmallFile file;
        file.Cells = {Float, {2, 2, 2, 2}};
        file.Attributes = With({{"units", "K"}}, attributes);
        const TClimatePicture picture = PictureOf(file);
        EXPECT_EQ(picture.Conversion.ShownUnits, "°C");
        return CellsOf(picture).front();
    };
    constexpr float onScale = float(2 - 273.15);
    EXPECT_EQ(shown({}), onScale);
    EXPECT_EQ(shown({{"standard_name", "air_temperature_anomaly"}}), 2);
    EXPECT_EQ(shown({{"standard_name", "dew_point_depression"}}), 2);
    EXPECT_EQ(shown({{"standard_name", "change_over_time_in_sea_water_potential_temperature"}}), 2);
    EXPECT_EQ(shown({{"standard_name", "air_temperature standard_error"}}), 2);
    EXPECT_EQ(shown({{"long_name", "Sea surface temperature anomalies"}}), 2);
    EXPECT_EQ(shown({{"long_name", "Change in temperature"}}), 2);
    EXPECT_EQ(shown({{"long_name", "Temperature uncertainty"}}), 2);
    EXPECT_EQ(shown({{"long_name", "Bias-corrected air temperature"}}), onScale);
    EXPECT_EQ(shown({{"standard_name", "air_temperature"}, {"cell_methods", "time: range"}}), 2);
    EXPECT_EQ(shown({{"standard_name", "air_temperature"}, {"cell_methods", "time: standard_deviation"}}), 2);
    EXPECT_EQ(shown({{"cell_methods", "time: mean (comment: range checked)"}}), onScale);
    EXPECT_EQ(shown({{"standard_name", "air_temperature"}, {"units_metadata", "temperature: difference"}}), 2);
    EXPECT_EQ(shown({{"long_name", "Temperature change run"}, {"units_metadata", "temperature: on_scale"}}), onScale);
}

TEST(ClimateConventions, UnsignedBytesHaveLimitsAndFillsWithSign) {
    TSmallFile file;
    file.Cells = {Byte, {0, 100, -56, -1}}; // 0, 100, 200, 255
    file.Attributes = {{"_Unsigned", "true"}, {"valid_range", {Byte, {1, -2}}}, {"_FillValue", {Byte, {-1}}}};
    EXPECT_THAT(CellsOf(PictureOf(file)), ElementsAre(200, -9990, -9990, 100));
    EXPECT_TRUE(InfoOf(CatalogOf(file)).Notes.isEmpty());
    file.Attributes = {{"_FillValue", {Byte, {-1}}}}; // as the type says
    EXPECT_THAT(CellsOf(PictureOf(file)), ElementsAre(-56, -9990, 0, 100));
}

TEST(ClimateConventions, SignsOfBytesAreSaidInAnyCaseOfLetters) {
    TSmallFile file;
    file.Cells = {Byte, {0, 100, -56, -1}};
    for (const char* const yes : {"true", "True", "TRUE"}) {
        file.Attributes = {{"_Unsigned", yes}};
        EXPECT_THAT(CellsOf(PictureOf(file)), ElementsAre(200, 255, 0, 100)) << yes;
    }
    for (const char* const no : {"false", "False", "true ", "1", "yes"}) {
        file.Attributes = {{"_Unsigned", no}};
        EXPECT_THAT(CellsOf(PictureOf(file)), ElementsAre(-56, -1, 0, 100)) << no;
    }
    file.Attributes = {{"_Unsigned", {Byte, {1}}}};
    EXPECT_THAT(CellsOf(PictureOf(file)), ElementsAre(-56, -1, 0, 100));
    file.Cells = {Short, {0, 100, -56, -1}};
    file.Attributes = {{"_Unsigned", "True"}};
    EXPECT_THAT(CellsOf(PictureOf(file)), ElementsAre(65480, 65535, 0, 100));
}

TEST(ClimateConventions, UnsignedShortsHaveTheFillOfShorts) {
    TSmallFile file;
    file.Cells = {Short, {0, -1, -32767, 32767}};
    file.Attributes = {{"_Unsigned", "true"}};
    EXPECT_THAT(CellsOf(PictureOf(file)), ElementsAre(-9990, 32767, 0, 65535));
}

TEST(ClimateConventions, PackedLimitsAndMarksOfAnyType) {
    TSmallFile file;
    file.Cells = {Short, {-500, 100, 2000, -32768}};
    file.Attributes = {{"scale_factor", {Double, {0.01}}},
                       {"add_offset", {Double, {273.15}}},
                       {"_FillValue", {Short, {-32768}}},
                       {"valid_max", {Short, {1999}}}};
    EXPECT_THAT(CellsOf(PictureOf(file)), ElementsAre(-9990, -9990, float(-5 + 273.15), float(1 + 273.15)));
    file.Attributes.back() = {"valid_max", {Float, {270}}}; // floating: of values
    EXPECT_THAT(CellsOf(PictureOf(file)), ElementsAre(-9990, -9990, float(-5 + 273.15), -9990));
    file.Attributes.back() = {"missing_value", {Double, {100, -500}}};
    EXPECT_THAT(CellsOf(PictureOf(file)), ElementsAre(float(20 + 273.15), -9990, -9990, -9990));
    file.Cells = {Double, {1e20, 1, 2, 3}};
    file.Attributes = {{"missing_value", {Float, {1e20}}}};
    EXPECT_THAT(CellsOf(PictureOf(file)), ElementsAre(2, 3, -9990, 1));
}

TEST(ClimateConventions, BoundsPlaceSingleRowsAndColumns) {
    TSmallFile zonal;
    zonal.Lons = {0};
    zonal.LonBounds = {0, 360};
    zonal.Cells = {Float, {1, 2}};
    const TClimatePicture round = PictureOf(zonal);
    EXPECT_EQ(round.Image->getHeader()->GetMinX(), -180);
    EXPECT_EQ(round.Image->getHeader()->GetMaxX(), 180);
    for (const float cell : round.Image->GetRow(1))
        EXPECT_EQ(cell, 2);
    TSmallFile row;
    row.Lats = {-42};
    row.LatBounds = {-41, -43}; // either order
    row.Lons = {170, 172};
    row.Cells = {Float, {1, 2}};
    const TClimatePicture strip = PictureOf(row);
    EXPECT_EQ(strip.Image->getHeader()->GetMinY(), -43);
    EXPECT_EQ(strip.Image->getHeader()->GetMaxY(), -41);
    EXPECT_EQ(strip.Image->getHeader()->GetMinX(), 169);
    EXPECT_THAT(CellsOf(strip), ElementsAre(1, 2));
    row.LatBounds.clear();
    EXPECT_EQ(RefusalOf(row), "Variable \"v\" cannot be placed on a map. Axis \"lat\" has one value and no bounds");
}

// Degrees of a grid with a pole of its own are no longitudes, whether or not the file describes that pole.
TEST(ClimateConventions, AxesOfAnotherGridAreNoPlaces) {
    TSmallFile rotated;
    rotated.LatAttributes = {{"units", "degrees"}, {"standard_name", "grid_latitude"}, {"axis", "Y"}};
    rotated.LonAttributes = {{"units", "degrees"}, {"standard_name", "grid_longitude"}, {"axis", "X"}};
    EXPECT_EQ(RefusalOf(rotated), RefusalText(TClimateRefusal::crRotatedPole, "v"));
    rotated.LatAttributes[0] = {"units", "degrees_north"};
    rotated.LonAttributes[0] = {"units", "degrees_east"};
    EXPECT_EQ(RefusalOf(rotated), RefusalText(TClimateRefusal::crRotatedPole, "v"));
    TSmallFile projected;
    projected.LatAttributes = {{"units", "km"}, {"standard_name", "projection_y_coordinate"}, {"axis", "Y"}};
    projected.LonAttributes = {{"units", "km"}, {"standard_name", "projection_x_coordinate"}, {"axis", "X"}};
    EXPECT_EQ(RefusalOf(projected), RefusalText(TClimateRefusal::crProjected, "v"));
    for (const char* const units : {"km", "m", "1"}) {
        TSmallFile file;
        file.LatAttributes = {{"units", units}, {"axis", "Y"}};
        file.LonAttributes = {{"units", units}, {"axis", "X"}};
        EXPECT_EQ(RefusalOf(file), RefusalText(TClimateRefusal::crNoMap, "v")) << units;
    }
    TSmallFile bare;
    bare.LatAttributes = {{"axis", "Y"}};
    bare.LonAttributes = {{"units", "degrees"}, {"axis", "X"}};
    EXPECT_EQ(RefusalOf(bare), "");
    bare.Fields = {{"nav_lat", North}, {"nav_lon", East}}; // the axes count cells then
    bare.Attributes = {{"coordinates", "nav_lat nav_lon"}};
    EXPECT_EQ(RefusalOf(bare), RefusalText(TClimateRefusal::crCurvilinear, "v"));
}

TEST(ClimateConventions, PlacesAreDegreesToTheEastAndNorth) {
    for (const char* const units : {"radians", "degrees_west", "m"}) {
        TSmallFile file;
        file.LonAttributes = {{"units", units}, {"standard_name", "longitude"}};
        EXPECT_EQ(RefusalOf(file),
                  QStringLiteral("Variable \"v\" cannot be placed on a map. Axis \"lon\" counts in \"%1\", not in "
                                 "degrees to the east and north. Regrid it first, for example: cdo remapbil,r360x180 "
                                 "in out")
                      .arg(QString::fromLatin1(units)));
    }
}

TEST(ClimateConventions, AGridMappingMayBeNamedWithItsCoordinates) {
    TSmallFile file;
    file.Mappings = {{"pole", {{"grid_mapping_name", "rotated_latitude_longitude"}}},
                     {"lambert", {{"grid_mapping_name", "lambert_conformal_conic"}}},
                     {"wgs84", {{"grid_mapping_name", "latitude_longitude"}}}};
    const auto refusal = [&](const char* mapping) {
        file.Attributes = {{"grid_mapping", mapping}};
        return RefusalOf(file);
    };
    EXPECT_EQ(refusal("wgs84"), "");
    EXPECT_EQ(refusal("wgs84: lat lon"), "");
    EXPECT_EQ(refusal("pole"), RefusalText(TClimateRefusal::crRotatedPole, "v"));
    EXPECT_EQ(refusal("pole: lat lon"), RefusalText(TClimateRefusal::crRotatedPole, "v"));
    EXPECT_EQ(refusal("lambert: lon lat wgs84: lat lon"), RefusalText(TClimateRefusal::crProjected, "v"));
    EXPECT_EQ(refusal("nothing"), "");
    EXPECT_EQ(CatalogOf(file).GetInfos().size(), 1U) << "mappings are no variables";
}

// A 2 between 1 and 3 is another kind of thing.
TEST(ClimateConventions, CategoriesAreNeverBlended) {
    TSmallFile file;
    file.Lats = {-80, -10, 20, 75};
    file.Lons = {0, 120, 240};
    file.Cells = {Byte, {1, 3, 1, 1, 1, 3, 3, 1, 5, 5, 3, 1}};
    const auto kinds = [&] {
        std::vector<float> cells = CellsOf(PictureOf(file));
        std::sort(cells.begin(), cells.end());
        cells.erase(std::unique(cells.begin(), cells.end()), cells.end());
        return cells;
    };
    EXPECT_GT(kinds().size(), 3U);
    file.Attributes = {{"flag_values", {Byte, {1, 3, 5}}}, {"flag_meanings", "water ice land"}};
    EXPECT_THAT(kinds(), ElementsAre(1, 3, 5));
    const TClimatePicture picture = PictureOf(file);
    EXPECT_EQ(picture.Image->GetValue(0.5F, 89), 5) << "the pole has the kind of the row next to it, place by place";
    EXPECT_EQ(picture.Image->GetValue(-121, 89), 1);
    EXPECT_EQ(picture.Image->GetValue(121, 4), 1);
    EXPECT_EQ(picture.Image->GetValue(-119, 6), 5);
}

TEST(ClimateConventions, BytesOfATiffMayHaveASign) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.tif"));
    GDALRegister_GTiff();
    std::int8_t cells[] = {-5, 5, 127, -128};
    double transform[] = {0, 10, 0, 10, 0, -10};
#if GDAL_VERSION_NUM >= 3070000
    constexpr GDALDataType type = GDT_Int8;
    const char* const* const options = nullptr;
#else
    constexpr GDALDataType type = GDT_Byte;
    const char* const options[] = {"PIXELTYPE=SIGNEDBYTE", nullptr};
#endif
    GDALDriver* const driver = GetGDALDriverManager()->GetDriverByName("GTiff");
    auto* const tiff = driver->Create(path.toUtf8().constData(), 2, 2, 1, type, const_cast<char**>(options));
    tiff->SetGeoTransform(transform);
    EXPECT_EQ(tiff->GetRasterBand(1)->RasterIO(GF_Write, 0, 0, 2, 2, cells, 2, 2, type, 0, 0, nullptr), CE_None);
    GDALClose(tiff);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const TClimateCatalog catalog(OpenClimateBytes(file.readAll(), "a.tif"), "a.tif");
    EXPECT_THAT(CellsOf(catalog.Read({0})), ElementsAre(-5, 5, 127, -128));
}

// Cells 0 to 3 in the first row of the file, 100 to 103 in the second.
TEST(ClimateConventions, TiffsLieAsTheirTransformSays) {
    const QTemporaryDir folder;
    TTiffOf16Bits tiff;
    tiff.Width = 4;
    tiff.Height = 2;
    const auto write = [&](double left, double dx, double top, double dy, double turn = 0) {
        tiff.Transform = {left, dx, turn, top, turn, dy};
        tiff.Write(folder.filePath("a.tif"));
        return TClimateDataset(folder.filePath("a.tif")).GetVariables().at(0);
    };
    const auto cells = [&] { return CellsOf(TClimateDataset(folder.filePath("a.tif")).Read({0})); };
    write(-10, 5, 50, -5);
    EXPECT_THAT(cells(), ElementsAre(0, 1, 2, 3, 100, 101, 102, 103));
    write(-10, 5, 40, 5); // the first row is the southern one
    EXPECT_THAT(cells(), ElementsAre(100, 101, 102, 103, 0, 1, 2, 3));
    write(10, -5, 50, -5); // the first column is the eastern one
    EXPECT_THAT(cells(), ElementsAre(3, 2, 1, 0, 103, 102, 101, 100));
    write(170, 5, 50, -5); // over the antimeridian
    EXPECT_EQ(TClimateDataset(folder.filePath("a.tif")).Read({0}).World, "latlonAntimerdian");
    EXPECT_THAT(cells(), ElementsAre(0, 1, 2, 3, 100, 101, 102, 103));
    write(0, 90, 90, -90); // turned to begin at 180 degrees west
    EXPECT_THAT(cells(), ElementsAre(2, 3, 0, 1, 102, 103, 100, 101));
    tiff.Height = 1;
    EXPECT_EQ(write(-10, 5, 50, -5).Name, "Band 1") << "bounds are no variable";
    EXPECT_THAT(cells(), ElementsAre(0, 1, 2, 3));
    EXPECT_EQ(TClimateDataset(folder.filePath("a.tif")).Read({0}).Image->getHeader()->GetMinY(), 45);
    tiff.Height = 2;
    EXPECT_EQ(write(-10, 5, 50, -5, 1).Refusal, RefusalText(TClimateRefusal::crRotatedImage, "Band 1"));
    tiff.System = "EPSG:2193"; // New Zealand Transverse Mercator
    EXPECT_EQ(write(1.5e6, 1000, 5.5e6, -1000).Refusal, RefusalText(TClimateRefusal::crProjected, "Band 1"));
    tiff.System = nullptr;
    EXPECT_EQ(write(1.5e6, 1000, 5.5e6, -1000).Refusal, RefusalText(TClimateRefusal::crNoCoordinates, "Band 1"));
    EXPECT_THAT(write(-10, 5, 50, -5).Notes,
                ElementsAre("The file names no reference system; its numbers are taken for degrees of longitude and "
                            "latitude."));
    EXPECT_THAT(cells(), ElementsAre(0, 1, 2, 3, 100, 101, 102, 103));
}

/// One array of a Zarr, unpacked and in one piece.
void WriteArray(const QTemporaryDir& folder, const QString& name, const QByteArray& type, const QByteArray& shape,
                const QByteArray& attributes, const QByteArray& cells) {
    QDir(folder.path()).mkdir(name);
    const auto write = [&](const QString& file, const QByteArray& content) {
        QFile to(folder.filePath(name + u'/' + file));
        ASSERT_TRUE(to.open(QIODevice::WriteOnly));
        to.write(content);
    };
    write(".zarray", "{\"zarr_format\": 2, \"shape\": [" + shape + "], \"chunks\": [" + shape + "], \"dtype\": \"" +
                         type + "\", \"compressor\": null, \"fill_value\": null, \"order\": \"C\", \"filters\": null}");
    write(".zattrs", "{" + attributes + "}");
    write(shape.contains(',') ? "0.0" : "0", cells);
}

TEST(ClimateConventions, BytesOfAZarrMayHaveASignOrNone) {
    const QTemporaryDir folder;
    QFile group(folder.filePath(".zgroup"));
    ASSERT_TRUE(group.open(QIODevice::WriteOnly));
    group.write("{\"zarr_format\": 2}");
    group.close();
    const QByteArray places = TClassicValues(Double, {-45, 45}).Bytes;
    WriteArray(folder, "lat", ">f8", "2", "\"_ARRAY_DIMENSIONS\": [\"lat\"], \"units\": \"degrees_north\"", places);
    WriteArray(folder, "lon", ">f8", "2", "\"_ARRAY_DIMENSIONS\": [\"lon\"], \"units\": \"degrees_east\"", places);
    const QByteArray dimensions = "\"_ARRAY_DIMENSIONS\": [\"lat\", \"lon\"]";
    const QByteArray cells = TClassicValues(Byte, {-1, -2, 3, 4}).Bytes;
    WriteArray(folder, "plain", "|i1", "2,2", dimensions, cells);
    WriteArray(folder, "unsigned", "|i1", "2,2", dimensions + ", \"_Unsigned\": \"true\", \"_FillValue\": -1", cells);
    WriteArray(folder, "signed", "|u1", "2,2", dimensions + ", \"_Unsigned\": \"false\", \"_FillValue\": 254", cells);
    WriteArray(folder, "wide", ">i2", "2,2", dimensions, TClassicValues(Short, {-1, -2, 300, 4}).Bytes);
    const TClimateDataset dataset(folder.path());
    const auto read = [&](const char* name) { return CellsOf(dataset.Read({dataset.FindVariable(name).GetValue()})); };
    EXPECT_THAT(read("plain"), ElementsAre(3, 4, -1, -2));
    EXPECT_THAT(read("unsigned"), ElementsAre(3, 4, -9990, 254));
    EXPECT_THAT(read("signed"), ElementsAre(3, 4, -1, -9990));
    EXPECT_THAT(read("wide"), ElementsAre(300, 4, -1, -2));
}

TEST(ClimateConventions, NumbersAboutNumbersKeepTheirUnits) {
    const auto conversion = [](const TClassicAttributes& attributes) {
        TSmallFile file;
        file.Attributes = attributes;
        return InfoOf(CatalogOf(file)).Conversion;
    };
    const TClassicAttributes clouds = {{"units", "1"}, {"standard_name", "cloud_area_fraction"}};
    EXPECT_EQ(conversion(clouds).Factor, 100);
    EXPECT_TRUE(conversion(With(clouds, {{"cell_methods", "time: variance"}})).IsIdentity());
    EXPECT_TRUE(conversion({{"units", "1"}, {"standard_name", "cloud_area_fraction status_flag"}}).IsIdentity());
    EXPECT_TRUE(
        conversion({{"units", "1"}, {"standard_name", "cloud_area_fraction number_of_observations"}}).IsIdentity());
}

} // namespace
} // namespace lmx
