#include <lmx/Formats/Shapes/lmxShapePointConverter.h>
#include <lmx/Formats/Shapes/lmxShpFile.h>
#include <tests/Formats/ImageFiles.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

#include <cmath>

namespace lmx::tests {

namespace {

const char* const Nztm =
    R"(PROJCS["NZGD_2000_New_Zealand_Transverse_Mercator",GEOGCS["GCS_NZGD_2000",DATUM["D_NZGD_2000",)"
    R"(SPHEROID["GRS_1980",6378137.0,298.257222101]],PRIMEM["Greenwich",0.0],UNIT["Degree",0.0174532925199433]],)"
    R"(PROJECTION["Transverse_Mercator"],PARAMETER["False_Easting",1600000.0],PARAMETER["False_Northing",10000000.0],)"
    R"(PARAMETER["Central_Meridian",173.0],PARAMETER["Scale_Factor",0.9996],PARAMETER["Latitude_Of_Origin",0.0],)"
    R"(UNIT["Meter",1.0]])";

const char* const Nzmg =
    R"(PROJCS["GD_1949_New_Zealand_Map_Grid",GEOGCS["GCS_New_Zealand_1949",DATUM["D_New_Zealand_1949",)"
    R"(SPHEROID["International_1924",6378388.0,297.0]],PRIMEM["Greenwich",0.0],UNIT["Degree",0.0174532925199433]],)"
    R"(PROJECTION["New_Zealand_Map_Grid"],PARAMETER["False_Easting",2510000.0],PARAMETER["False_Northing",6023150.0],)"
    R"(PARAMETER["Longitude_Of_Origin",173.0],PARAMETER["Latitude_Of_Origin",-41.0],UNIT["Meter",1.0]])";

QString Geographic(const char* datum, const char* spheroid, const char* unit = R"("Degree",0.0174532925199433)") {
    return QStringLiteral(R"(GEOGCS["x",DATUM["%1",SPHEROID[%2]],PRIMEM["Greenwich",0.0],UNIT[%3]])")
        .arg(QLatin1String(datum), QLatin1String(spheroid), QLatin1String(unit));
}

const char* const Grs80 = R"("GRS_1980",6378137.0,298.257222101)";
const char* const International = R"("International_1924",6378388.0,297.0)";

/// What GetDatum says of a projection file with this text.
QString DatumOf(const QByteArray& text) {
    const TImageFolder folder;
    folder.Write("x.prj", text);
    return GetDatum(folder.Path("x.prj"));
}

void ExpectPlace(const QString& datum, TShpPoint from, TShpPoint to) {
    const auto converter = TSHapePointConverterFactory::GetObject(datum);
    ASSERT_TRUE(converter) << datum.toStdString();
    TShpPoint point = from;
    converter->Convert(std::span(&point, 1));
    EXPECT_NEAR(point.X, to.X, 2e-9) << datum.toStdString();
    EXPECT_NEAR(point.Y, to.Y, 2e-9) << datum.toStdString();
}

} // namespace

// A pixel at street scale (1:10,000) is about 2.6 m, 2.4e-5 degrees; the grid tells places within a fraction of it.
TEST(ShapePointConverter, NewZealandLandsWhereItBelongs) {
    ExpectPlace(DatumOf(Nzmg), {2510000, 6023150}, {173.000171286, -40.998254071});
    ExpectPlace(DatumOf(Nzmg), {2660000, 5990000}, {174.790940434, -41.282928083});
    ExpectPlace(DatumOf(Nztm), {1748735, 5427916}, {174.776193515, -41.286504414});
    ExpectPlace(DatumOf(Nztm), {1600000, 5427507}, {173, -41.303893358});
    ExpectPlace(QStringLiteral("D_New_Zealand_1949"), {174, -41}, {174.000186162, -40.998259197});
    ExpectPlace(QStringLiteral("D_NZGD_2000"), {174, -41}, {174, -41});
}

TEST(ShapePointConverter, OtherPartsOfTheWorldDoToo) {
    ExpectPlace(QStringLiteral("D_North_American_1927"), {-100, 40}, {-100.000415589, 39.999996882});
    ExpectPlace(QStringLiteral("North American Datum 1927"), {-100, 40}, {-100.000415589, 39.999996882});
}

TEST(ShapePointConverter, DegreesAreNamedByTheirDatumAlone) {
    EXPECT_EQ(DatumOf(Geographic("D_New_Zealand_1949", International).toUtf8()), "New Zealand Geodetic Datum 1949");
    EXPECT_EQ(DatumOf(Geographic("D_NZGD_2000", Grs80).toUtf8()), "New Zealand Geodetic Datum 2000");
    EXPECT_EQ(DatumOf(Geographic("D_WGS_1984", R"("WGS_1984",6378137.0,298.257223563)").toUtf8()),
              "World Geodetic System 1984");
}

TEST(ShapePointConverter, GridsAndOtherUnitsAreNamedByTheirDefinition) {
    EXPECT_EQ(DatumOf(Nztm), Nztm);
    const QString grads =
        Geographic("D_NTF", R"("Clarke_1880_IGN",6378249.2,293.46602)", R"("Grad",0.01570796326794897)");
    EXPECT_EQ(DatumOf(grads.toUtf8()), grads);
    const auto converter = TSHapePointConverterFactory::GetObject(grads);
    ASSERT_TRUE(converter);
    TShpPoint point{0, 50};
    converter->Convert(std::span(&point, 1));
    EXPECT_NEAR(point.Y, 45, 0.001);
}

TEST(ShapePointConverter, SecondDialectsAreReadToo) {
    const QByteArray ogc =
        "PROJCS[\"NZGD2000 / New Zealand Transverse Mercator 2000\", \n GEOGCS[\"NZGD2000\", \n"
        "DATUM[\"New Zealand Geodetic Datum 2000\", SPHEROID[\"GRS 1980\", 6378137.0, "
        "298.257222101, AUTHORITY[\"EPSG\",\"7019\"]], TOWGS84[0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0], "
        "AUTHORITY[\"EPSG\",\"6167\"]], PRIMEM[\"Greenwich\", 0.0], UNIT[\"degree\", "
        "0.017453292519943295], AXIS[\"Geodetic longitude\", EAST], AXIS[\"Geodetic latitude\", NORTH]], "
        "PROJECTION[\"Transverse_Mercator\"], PARAMETER[\"central_meridian\", 173.0], "
        "PARAMETER[\"latitude_of_origin\", 0.0], PARAMETER[\"scale_factor\", 0.9996], "
        "PARAMETER[\"false_easting\", 1600000.0], PARAMETER[\"false_northing\", 10000000.0], "
        "UNIT[\"m\", 1.0], AXIS[\"Easting\", EAST], AXIS[\"Northing\", NORTH]]\n";
    ExpectPlace(DatumOf(ogc), {1748735, 5427916}, {174.776193515, -41.286504414});
    EXPECT_EQ(DatumOf("\xEF\xBB\xBF" + Geographic("D_NZGD_2000", Grs80).toUtf8() + "\r\n"),
              "New Zealand Geodetic Datum 2000")
        << "with a byte order mark";
}

TEST(ShapePointConverter, UnknownOrMissingMeansNoConversion) {
    EXPECT_EQ(GetDatum(QStringLiteral("/nowhere/x.prj")), "");
    EXPECT_EQ(DatumOf(""), "");
    EXPECT_EQ(DatumOf("Projection GEOGRAPHIC\nDatum WGS84\n"), "");
    EXPECT_EQ(DatumOf("EPSG:27200"), "") << "a projection file holds a definition, not a name";
    EXPECT_EQ(DatumOf("+proj=utm +zone=60 +south"), "");
    EXPECT_EQ(DatumOf(QByteArray(300'000, '[')), "");
    EXPECT_EQ(DatumOf(QByteArray("PROJCS[\"x\0y\"", 13)), "");
    for (const char* name : {"", "D_Unknown", "nonsense", "EPSG:27200", "+proj=utm +zone=60 +south"})
        EXPECT_FALSE(TSHapePointConverterFactory::GetObject(QLatin1String(name))) << name;
    QString unknown = QString::fromLatin1(Nztm);
    unknown.replace(QStringLiteral("[\"Transverse_Mercator\"]"), QStringLiteral("[\"Unknown Projection\"]"));
    EXPECT_FALSE(TSHapePointConverterFactory::GetObject(DatumOf(unknown.toUtf8())));
}

TEST(ShapePointConverter, NamesMatterOnlyByTheirLettersAndDigits) {
    for (const char* name : {"North_American_Datum_1927", "north american datum 1927", "D_NORTH_AMERICAN_DATUM_1927",
                             "North_American_1927", "d_north_american_1927", "North American 1927",
                             "NorthAmericanDatum1927", " North_American Datum_1927 "})
        ExpectPlace(QLatin1String(name), {-100, 40}, {-100.000415589, 39.999996882});
    for (const char* name : {"New_Zealand_1949", "New_Zealand_Geodetic_Datum_1949", "newzealandgeodeticdatum1949"})
        ExpectPlace(QLatin1String(name), {174, -41}, {174.000186162, -40.998259197});
    for (const char* name : {"WGS_1984", "wgs 1984", "d_wgs_1984", "WGS84", "World_Geodetic_System_1984"})
        EXPECT_EQ(TSHapePointConverterFactory::GetConversion(QLatin1String(name)).Kind,
                  TShapeConversionKind::ckNotNeeded)
            << name;
}

TEST(ShapePointConverter, TellsPlainDegreesFromWhatNobodyKnows) {
    const auto kindOf = [](const QString& datum) { return TSHapePointConverterFactory::GetConversion(datum).Kind; };
    EXPECT_EQ(kindOf(QStringLiteral("D_North_American_1927")), TShapeConversionKind::ckConverted);
    EXPECT_EQ(kindOf(DatumOf(Nztm)), TShapeConversionKind::ckConverted);
    EXPECT_EQ(kindOf(Geographic("D_WGS_1984", R"("WGS_1984",6378137.0,298.257223563)")),
              TShapeConversionKind::ckNotNeeded);
    for (const char* name : {"", "D_", "_", "D_Unknown", "nonsense"})
        EXPECT_EQ(kindOf(QLatin1String(name)), TShapeConversionKind::ckUnknown) << name;
    EXPECT_FALSE(TSHapePointConverterFactory::GetConversion(QStringLiteral("nonsense")).Converter);
    EXPECT_TRUE(TSHapePointConverterFactory::GetConversion(QStringLiteral("D_NZGD_2000")).Converter);
}

TEST(ShapePointConverter, AFileIsConvertedAsTheOneBesideItSays) {
    const TImageFolder folder;
    const QString shapes = folder.Path("x.shp");
    EXPECT_EQ(ConversionOf(shapes).Kind, TShapeConversionKind::ckUnstated) << "no projection file";
    folder.Write("x.PRJ", Nztm);
    EXPECT_EQ(ConversionOf(shapes).Kind, TShapeConversionKind::ckConverted);
    EXPECT_TRUE(ConversionOf(shapes).Converter);
    folder.Write("x.PRJ", "Projection GEOGRAPHIC");
    EXPECT_EQ(ConversionOf(shapes).Kind, TShapeConversionKind::ckUnknown);
    folder.Write("x.PRJ", Geographic("D_WGS_1984", R"("WGS_1984",6378137.0,298.257223563)").toUtf8());
    EXPECT_EQ(ConversionOf(shapes).Kind, TShapeConversionKind::ckNotNeeded);
    EXPECT_FALSE(ConversionOf(shapes).Converter);
}

TEST(ShapePointConverter, Wgs84NeedsNone) {
    EXPECT_FALSE(TSHapePointConverterFactory::GetObject(QStringLiteral("D_WGS_1984")));
    EXPECT_FALSE(TSHapePointConverterFactory::GetObject(QStringLiteral("World Geodetic System 1984")));
    EXPECT_FALSE(
        TSHapePointConverterFactory::GetObject(Geographic("D_WGS_1984", R"("WGS_1984",6378137.0,298.257223563)")));
}

TEST(ShapePointConverter, WhatHasNoPlaceIsNoFiniteNumber) {
    const auto converter = TSHapePointConverterFactory::GetObject(DatumOf(Nzmg));
    std::vector<TShpPoint> points(600, {2510000, 6023150}); // more than it converts at once
    points[300] = {1e30, -1e30};
    converter->Convert(points);
    EXPECT_FALSE(std::isfinite(points[300].X) && std::isfinite(points[300].Y));
    EXPECT_NEAR(points[299].X, 173.000171286, 2e-9);
    EXPECT_NEAR(points[599].Y, -40.998254071, 2e-9);
}

TEST(ShapePointConverter, FindsTheFileBesideItsShapeFile) {
    EXPECT_EQ(ProjectionFileOf(QStringLiteral("/a.b/lakes.v2.shp")), "/a.b/lakes.v2.prj");
    EXPECT_EQ(ProjectionFileOf(QStringLiteral("/a.b/lakes")), "/a.b/lakes.prj");
    const TImageFolder folder;
    folder.Write("LAKES.PRJ", Nztm);
    EXPECT_EQ(GetDatum(ProjectionFileOf(folder.Path("LAKES.SHP"))), Nztm);
}

TEST(ShapePointConverter, ConvertsARealFile) {
    const QString path = QStringLiteral(LMX_SOURCE_DIR "/tests/data/shp/gdal_Stacks.shp"); // a plane of Texas, in feet
    const auto converter = TSHapePointConverterFactory::GetObject(GetDatum(ProjectionFileOf(path)));
    const auto file = TShpFile::LoadFromFile(path, converter);
    EXPECT_NEAR(file->GetXMin(), -95.37484, 1e-5);
    EXPECT_NEAR(file->GetYMin(), 29.89294, 1e-5);
    EXPECT_NEAR(file->GetXMax(), -95.11413, 1e-5);
    EXPECT_NEAR(file->GetYMax(), 30.11669, 1e-5);
}

} // namespace lmx::tests
