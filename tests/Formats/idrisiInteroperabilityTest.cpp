// An independent reader, the command line tools of GDAL, sees what we wrote. Built only where the tools are installed.

#include <lmx/Formats/Idrisi/lmxIdrisiImageExporter.h>
#include <lmx/Formats/Idrisi/lmxIdrisiImages.h>
#include <lmx/Formats/Idrisi/lmxImageFactory.h>
#include <tests/Formats/ImageFiles.h>
#include <tests/Support/Printers.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

#include <gtest/gtest.h>

namespace lmx::tests {

namespace {

QByteArray OutputOf(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.start(program, arguments);
    EXPECT_TRUE(process.waitForFinished(60'000)) << process.errorString().toStdString();
    EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
    return process.readAllStandardOutput();
}

QJsonObject InfoOf(const QString& fileName) {
    const QByteArray text =
        OutputOf(QStringLiteral(LMX_GDALINFO), {QStringLiteral("-json"), QStringLiteral("-mm"), fileName});
    return QJsonDocument::fromJson(text).object();
}

/// The cells of a file as the other program reads them, north row first.
std::vector<float> CellsOf(const TImageFolder& folder, const QString& fileName, int columns, int rows) {
    const QString raw = folder.Path("cells.bin");
    OutputOf(QStringLiteral(LMX_GDAL_TRANSLATE), {QStringLiteral("-q"), QStringLiteral("-of"), QStringLiteral("ENVI"),
                                                  QStringLiteral("-ot"), QStringLiteral("Float32"), fileName, raw});
    const QByteArray bytes = folder.Read("cells.bin");
    std::vector<float> cells(static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows));
    EXPECT_EQ(bytes.size(), static_cast<qsizetype>(cells.size() * sizeof(float)));
    if (bytes.size() == static_cast<qsizetype>(cells.size() * sizeof(float)))
        std::copy_n(bytes.constData(), bytes.size(), reinterpret_cast<char*>(cells.data()));
    return cells;
}

std::vector<float> CellsOf(const TAbstractImage& image) {
    std::vector<float> cells;
    std::vector<float> row(static_cast<std::size_t>(image.getHeader()->GetWidth()));
    for (std::int32_t y = 1; y <= image.getHeader()->GetHeight(); ++y) {
        image.ReadRow(y, row);
        cells.insert(cells.end(), row.begin(), row.end());
    }
    return cells;
}

/// 4 x 3 cells over New Zealand; one of them missing.
TRealImage SmallMap() {
    TImageHeader header;
    header.SetWidth(4);
    header.SetHeight(3);
    header.SetMinX(166.5F);
    header.SetMaxX(178.5F);
    header.SetMinY(-47.5F);
    header.SetMaxY(-38.5F);
    header.SetRefSystem(QStringLiteral("latlon"));
    header.SetRefUnits(QStringLiteral("deg"));
    header.SetFlag(true);
    header.SetFlagValue(-9990);
    header.SetFlagDef(QStringLiteral("NODATA"));
    TRealImage image(QString(), header);
    for (std::int32_t row = 1; row <= 3; ++row)
        for (std::int32_t column = 1; column <= 4; ++column)
            image.SetCell(column, row, static_cast<float>(column) + static_cast<float>(row) / 10);
    image.SetCell(2, 2, -9990);
    image.UpdateValueRange();
    return image;
}

void ExpectGeometry(const QJsonObject& info, const std::vector<double>& expected) {
    const QJsonArray transform = info[QStringLiteral("geoTransform")].toArray();
    ASSERT_EQ(transform.size(), 6);
    for (int i = 0; i < 6; ++i)
        EXPECT_NEAR(transform[i].toDouble(), expected[static_cast<std::size_t>(i)], 1e-9) << i;
}

} // namespace

TEST(IdrisiInteroperability, ARealImageKeepsPlaceSystemFlagAndCells) {
    const TImageFolder folder;
    const TRealImage image = SmallMap();
    const QString file = folder.Path("map.rst");
    image.SaveToFile(file);
    const QJsonObject info = InfoOf(file);
    EXPECT_EQ(info[QStringLiteral("driverShortName")].toString(), QStringLiteral("RST"));
    EXPECT_EQ(info[QStringLiteral("size")].toArray(), (QJsonArray{4, 3}));
    ExpectGeometry(info, {166.5, 3, 0, -38.5, 0, -3});
    EXPECT_TRUE(info[QStringLiteral("coordinateSystem")][QStringLiteral("wkt")].toString().startsWith(
        QStringLiteral("GEOGCRS[\"WGS 84\"")));
    const QJsonObject band = info[QStringLiteral("bands")].toArray()[0].toObject();
    EXPECT_EQ(band[QStringLiteral("type")].toString(), QStringLiteral("Float32"));
    EXPECT_EQ(band[QStringLiteral("noDataValue")].toDouble(), -9990);
    EXPECT_NEAR(band[QStringLiteral("computedMin")].toDouble(), 1.1, 1e-3);
    EXPECT_NEAR(band[QStringLiteral("computedMax")].toDouble(), 4.3, 1e-3);
    EXPECT_EQ(CellsOf(folder, file, 4, 3), CellsOf(image));
}

TEST(IdrisiInteroperability, BytesAndIntegersKeepTheirTypesAndCells) {
    const TImageFolder folder;
    for (const char* name : {"byte", "segments"}) {
        const auto image = TImageFactory::Load(DataFile(name) + QStringLiteral(".rst"));
        const QString file = folder.Path(name) + QStringLiteral(".rst");
        image->SaveToFile(file);
        const QJsonObject band = InfoOf(file)[QStringLiteral("bands")].toArray()[0].toObject();
        const bool isByte = image->GetClassName() == QStringLiteral("TByteImage");
        EXPECT_EQ(band[QStringLiteral("type")].toString(), isByte ? QStringLiteral("Byte") : QStringLiteral("Int16"));
        EXPECT_EQ(band.contains(QStringLiteral("noDataValue")), !isByte) << name;
        EXPECT_EQ(CellsOf(folder, file, image->getHeader()->GetWidth(), image->getHeader()->GetHeight()),
                  CellsOf(*image));
    }
}

TEST(IdrisiInteroperability, TheLegendComesThrough) {
    const TImageFolder folder;
    TImageHeader header = *SmallMap().getHeader();
    header.SetFlag(false);
    header.SetMaxValue(2);
    header.SetLegendCategories({{1, QStringLiteral("sand")}, {2, QStringLiteral("clay: wet")}});
    TByteImage(QString(), header).SaveToFile(folder.Path("soil.rst"));
    const QJsonObject band = InfoOf(folder.Path("soil.rst"))[QStringLiteral("bands")].toArray()[0].toObject();
    const QJsonArray categories = band[QStringLiteral("categories")].toArray();
    ASSERT_GE(categories.size(), 3);
    EXPECT_EQ(categories[1].toString(), QStringLiteral("sand"));
    EXPECT_TRUE(categories[2].toString().startsWith(QStringLiteral("clay")));
}

TEST(IdrisiInteroperability, AnAsciiGridKeepsPlaceMissingDataAndCells) {
    const TImageFolder folder;
    const TRealImage image = SmallMap();
    const QString file = folder.Path("map.asc");
    TArcInfoGridASCIIExporter().Export(image, file);
    const QJsonObject info = InfoOf(file);
    EXPECT_EQ(info[QStringLiteral("driverShortName")].toString(), QStringLiteral("AAIGrid"));
    ExpectGeometry(info, {166.5, 3, 0, -38.5, 0, -3});
    const QJsonObject band = info[QStringLiteral("bands")].toArray()[0].toObject();
    EXPECT_EQ(band[QStringLiteral("noDataValue")].toDouble(), -9999);
    std::vector<float> expected = CellsOf(image);
    EXPECT_EQ(expected[5], -9990.0F);
    expected[5] = -9999;
    EXPECT_EQ(CellsOf(folder, file, 4, 3), expected);
}

TEST(IdrisiInteroperability, AnAsciiGridOfOblongCellsKeepsBothSides) {
    const TImageFolder folder;
    TRealImage image = SmallMap();
    image.getHeader()->SetMaxX(174.5F);
    const QString file = folder.Path("map.asc");
    TArcInfoGridASCIIExporter().Export(image, file);
    ExpectGeometry(InfoOf(file), {166.5, 2, 0, -38.5, 0, -3});
}

TEST(IdrisiInteroperability, XyzLinesFormTheSameGrid) {
    const TImageFolder folder;
    const TRealImage image = SmallMap();
    const QString file = folder.Path("map.xyz");
    TXYZAsciiExporter().Export(image, file);
    const QJsonObject info = InfoOf(file);
    EXPECT_EQ(info[QStringLiteral("driverShortName")].toString(), QStringLiteral("XYZ"));
    EXPECT_EQ(info[QStringLiteral("size")].toArray(), (QJsonArray{4, 3}));
    ExpectGeometry(info, {166.5, 3, 0, -38.5, 0, -3});
    std::vector<float> expected = CellsOf(image);
    expected[5] = -9999;
    EXPECT_EQ(CellsOf(folder, file, 4, 3), expected);
}

} // namespace lmx::tests
