#include <lmx/DataSources/Private/lmxBandMask.h>

#include <lmx/Climate/lmxSpatialConst.h>
#include <lmx/DataSources/Private/lmxClimateCatalog.h>
#include <lmx/DataSources/Private/lmxClimateFileOpening.h>
#include <lmx/DataSources/lmxClimateDataset.h>
#include <lmx/DataSources/lmxGeoTiffTiles.h>
#include <lmx/DataSources/lmxTileStatistics.h>
#include <tests/DataSources/ArraySource.h>
#include <tests/DataSources/TiffFiles.h>
#include <tests/Support/Printers.h>

#include <QFile>
#include <QTemporaryDir>

#include <gdal_frmts.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace lmx {
namespace {

using namespace tests;
using testing::ElementsAre;

constexpr float None = TSpatialConst::NoData;

bool IsThird(int column, int row) {
    return (column + row) % 3 == 0;
}

class BandMask : public testing::TestWithParam<bool> { // whether it is an alpha band
protected:
    TTiffOf16Bits Masked() const {
        TTiffOf16Bits tiff;
        tiff.IsMissing = IsThird;
        tiff.HasAlpha = GetParam();
        return tiff;
    }
    QString Write(const TTiffOf16Bits& tiff) {
        const QString path = FFolder.filePath("a.tif");
        tiff.Write(path);
        return path;
    }
    static std::vector<float> Read(const TGeoTiffTiles& tiles, int level, const TRect& rect) {
        std::vector<float> cells(static_cast<std::size_t>(rect.GetWidth()) *
                                 static_cast<std::size_t>(rect.GetHeight()));
        tiles.ReadCells(level, rect, cells, [] { return false; });
        return cells;
    }

    QTemporaryDir FFolder;
};

INSTANTIATE_TEST_SUITE_P(Kinds, BandMask, testing::Bool(),
                         [](const auto& kind) { return std::string(kind.param ? "Alpha" : "Mask"); });

TEST_P(BandMask, CellsOfAnImageAreMissing) {
    TTiffOf16Bits tiff = Masked();
    tiff.Describe = [](GDALRasterBand& band) { band.SetScale(0.5); };
    const TClimateDataset dataset(Write(tiff));
    ASSERT_EQ(dataset.GetVariables().size(), 1U) << "an alpha band is none";
    EXPECT_EQ(dataset.GetVariables()[0].Name, "Band 1");
    const TClimatePicture picture = dataset.Read({});
    int missing = 0;
    for (int row = 0; row < tiff.Height; ++row)
        for (int column = 0; column < tiff.Width; ++column) {
            const float expected = IsThird(column, row) ? None : static_cast<float>(tiff.Cell(column, row)) / 2;
            ASSERT_EQ(picture.Image->GetRow(row + 1)[static_cast<std::size_t>(column)], expected)
                << column << ' ' << row;
            missing += IsThird(column, row) ? 1 : 0;
        }
    EXPECT_EQ(missing, 20'000);
    EXPECT_EQ(picture.Image->getHeader()->GetMinValue(), 0.5F) << "not the first cell, which is missing";
}

TEST_P(BandMask, CellsOfTilesAreMissingAtEveryLevel) {
    TTiffOf16Bits tiff = Masked();
    tiff.Overviews = {2};
    const TGeoTiffTiles tiles(Write(tiff));
    ASSERT_EQ(tiles.GetLevels().size(), 2U);
    EXPECT_EQ(tiles.GetStoredLevelCount(), 2);
    EXPECT_THAT(Read(tiles, 0, {62, 10, 66, 11}), ElementsAre(None, 1063, 1064, None));
    EXPECT_THAT(Read(tiles, 0, {299, 198, 300, 200}), ElementsAre(20'099, None));
    EXPECT_THAT(Read(tiles, 1, {30, 5, 34, 6}), ElementsAre(1060, None, 1064, 1066));
}

TEST_P(BandMask, StatisticsLeaveThemOut) {
    const TGeoTiffTiles tiles(Write(Masked()));
    const auto found = StatisticsOf(tiles);
    ASSERT_TRUE(found.has_value());
    EXPECT_EQ(found->CellCount, 60'000U);
    EXPECT_EQ(found->ValueCount, 40'000U);
    EXPECT_EQ(found->Minimum, 1);
}

TEST_P(BandMask, LevelsThatAreMadeHaveIt) {
    TTiffOf16Bits tiff = Masked();
    tiff.Width = 2048;
    tiff.Height = 1026;
    tiff.Transform = {-180, 0.17, 0, 90, 0, -0.17};
    tiff.Cell = [](int column, int row) { return static_cast<std::int16_t>((row * 7 + column * 13) % 9973); };
    for (const bool isFromSouthEast : {false, true}) {
        if (isFromSouthEast)
            tiff.Transform = {150, -0.08, 0, -20, 0, 0.08};
        const TGeoTiffTiles tiles(Write(tiff));
        ASSERT_EQ(tiles.GetLevels().size(), 2U);
        EXPECT_EQ(tiles.GetStoredLevelCount(), 1);
        const std::vector<float> cells = Read(tiles, 1, {400, 300, 406, 301});
        for (int i = 0; i < 6; ++i) {
            const int column = 2 * (isFromSouthEast ? 1023 - 400 - i : 400 + i) + 1;
            const int row = 2 * (isFromSouthEast ? 512 - 300 : 300) + 1;
            EXPECT_EQ(cells[static_cast<std::size_t>(i)],
                      IsThird(column, row) ? None : static_cast<float>(tiff.Cell(column, row)))
                << i;
        }
    }
}

// Overviews of the numbers alone would show what the mask hides.
TEST(BandMasks, OverviewsWithoutAMaskAreNotUsed) {
    const QTemporaryDir folder;
    TTiffOf16Bits tiff;
    tiff.IsMissing = IsThird;
    tiff.Overviews = {2, 4};
    tiff.Write(folder.filePath("a.tif"));
    EXPECT_EQ(TGeoTiffTiles(folder.filePath("a.tif")).GetLevels().size(), 3U);
    QFile file(folder.filePath("a.tif"));
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    QByteArray bytes = file.readAll();
    // The kind of a page: reduced, and a mask. It becomes a page of its own.
    const QByteArray kind = QByteArray::fromHex("fe00040001000000");
    const QByteArray mask = kind + QByteArray::fromHex("05000000");
    ASSERT_EQ(bytes.count(mask), 2);
    bytes.replace(mask, kind + QByteArray(4, '\0'));
    file.seek(0);
    file.write(bytes);
    file.close();
    const TGeoTiffTiles tiles(file.fileName());
    EXPECT_EQ(tiles.GetLevels().size(), 1U);
    std::vector<float> cells(3);
    tiles.ReadCells(0, {0, 0, 3, 1}, cells, [] { return false; });
    EXPECT_THAT(cells, ElementsAre(None, 1, 2));
}

TEST(BandMasks, NoDataCountsBesideAMask) {
    const QTemporaryDir folder;
    TTiffOf16Bits tiff;
    tiff.IsMissing = IsThird;
    tiff.Describe = [](GDALRasterBand& band) { band.SetNoDataValue(1); };
    tiff.Write(folder.filePath("a.tif"));
    std::vector<float> cells(4);
    TGeoTiffTiles(folder.filePath("a.tif")).ReadCells(0, {0, 0, 4, 1}, cells, [] { return false; });
    EXPECT_THAT(cells, ElementsAre(None, None, 2, None));
}

TEST(BandMasks, AnAlphaBandIsNoRaster) {
    const QTemporaryDir folder;
    TTiffOf16Bits tiff;
    tiff.HasAlpha = true;
    tiff.Write(folder.filePath("a.tif"));
    try {
        const TGeoTiffTiles tiles(folder.filePath("a.tif"), 2);
        FAIL();
    } catch (const EClimateFile& failure) {
        EXPECT_EQ(failure.Problem(), "Band 2: says which cells of the others hold data");
    }
}

/// Bands in memory, of which some are alpha.
struct TBands {
    TBands(int count, GDALDataType type) {
        GDALRegister_MEM();
        Dataset.reset(GetGDALDriverManager()->GetDriverByName("MEM")->Create("", 4, 1, count, type, nullptr));
    }
    GDALRasterBand& Band(int band) const { return *Dataset->GetRasterBand(band); }
    std::vector<int> MaskCells(int band) const {
        std::vector<std::uint8_t> cells(4);
        EXPECT_EQ(ReadMaskCells(*MaskOf(*Dataset, band, AlphaBandOf(*Dataset)), {0, 0, 4, 1}, 4, 1, cells.data()),
                  CE_None);
        return std::vector<int>(cells.begin(), cells.end());
    }

    std::unique_ptr<GDALDataset> Dataset;
};

// Four bands with an alpha band are what GDAL knows itself.
TEST(BandMasks, AnAlphaBandMayStandAnywhere) {
    const TBands bands(6, GDT_Byte);
    EXPECT_EQ(AlphaBandOf(*bands.Dataset), 0);
    EXPECT_EQ(MaskOf(*bands.Dataset, 1, 0), nullptr);
    bands.Band(5).SetColorInterpretation(GCI_AlphaBand);
    EXPECT_EQ(AlphaBandOf(*bands.Dataset), 5);
    EXPECT_EQ(MaskOf(*bands.Dataset, 6, 5), &bands.Band(5));
    EXPECT_EQ(MaskOf(*bands.Dataset, 5, 5), nullptr);
    const TBands alone(1, GDT_Byte);
    alone.Band(1).SetColorInterpretation(GCI_AlphaBand);
    EXPECT_EQ(AlphaBandOf(*alone.Dataset), 0);
}

TEST(BandMasks, WhatIsPartlyOpaqueHoldsData) {
    for (const GDALDataType type : {GDT_Byte, GDT_UInt16, GDT_Int32, GDT_Float32, GDT_Float64}) {
        const TBands bands(3, type);
        bands.Band(3).SetColorInterpretation(GCI_AlphaBand);
        const bool isFloating = GDALDataTypeIsFloating(type) != 0;
        double alpha[] = {0, isFloating ? 0.3 : 1, 255, type == GDT_Byte ? 255.0 : 65'535.0};
        ASSERT_EQ(bands.Band(3).RasterIO(GF_Write, 0, 0, 4, 1, alpha, 4, 1, GDT_Float64, 0, 0, nullptr), CE_None);
        const std::vector<int> cells = bands.MaskCells(2);
        EXPECT_EQ(cells[0], 0) << GDALGetDataTypeName(type);
        for (std::size_t i = 1; i < 4; ++i)
            EXPECT_GT(cells[i], 0) << GDALGetDataTypeName(type);
    }
}

TEST(BandMasks, NoDataIsNone) {
    const TBands bands(1, GDT_Int16);
    bands.Band(1).SetNoDataValue(7);
    EXPECT_EQ(MaskOf(*bands.Dataset, 1, 0), nullptr);
}

TEST(BandMasks, ValuesThatItDoesNotLetThroughBecomeFlags) {
    std::vector<float> values = {1, 2, None, 4};
    const std::vector<std::uint8_t> mask = {0, 1, 255, 0};
    HideMissing(mask, values);
    EXPECT_THAT(values, ElementsAre(None, 2, None, None));
}

/// Cells 1 to 6 on two rows from the north and three columns, or the other way round.
struct TMaskedSource {
    explicit TMaskedSource(bool isTransposed) : Source(std::make_unique<TArraySource>()) {
        const TSourceDimension lat = Source->AddAxis("lat", "degrees_north", {45, -45});
        const TSourceDimension lon = Source->AddAxis("lon", "degrees_east", {-120, 0, 120});
        Array =
            Source->Add({"/v",
                         isTransposed ? std::vector{lon, lat} : std::vector{lat, lon},
                         {},
                         true,
                         TClimateCellType::ctInt16,
                         {},
                         {}},
                        isTransposed ? std::vector<double>{1, 4, 2, 5, 3, 6} : std::vector<double>{1, 2, 3, 4, 5, 6});
    }
    std::vector<float> Read() {
        const auto log = Source->GetLog();
        const TClimateCatalog catalog(std::move(Source), "f");
        log->Take();
        const TClimatePicture picture = catalog.Read({});
        for (const auto& read : log->Take())
            MaskReads += read.IsOfMask ? 1 : 0;
        std::vector<float> cells;
        for (const int row : {1, 2})
            for (const float cell : picture.Image->GetRow(row))
                cells.push_back(cell);
        return cells;
    }

    std::unique_ptr<TArraySource> Source;
    std::size_t Array = 0;
    int MaskReads = 0;
};

TEST(BandMasks, DimensionsOfASourceComeInAnyOrder) {
    TMaskedSource rows(false);
    rows.Source->SetMask(rows.Array, {1, 1, 0, 1, 0, 1});
    EXPECT_THAT(rows.Read(), ElementsAre(1, 2, None, 4, None, 6));
    EXPECT_EQ(rows.MaskReads, 1);
    TMaskedSource columns(true);
    columns.Source->SetMask(columns.Array, {1, 1, 1, 0, 0, 1});
    EXPECT_THAT(columns.Read(), ElementsAre(1, 2, None, 4, None, 6));
}

TEST(BandMasks, NothingIsReadWhereThereIsNone) {
    TMaskedSource plain(false);
    EXPECT_THAT(plain.Read(), ElementsAre(1, 2, 3, 4, 5, 6));
    EXPECT_EQ(plain.MaskReads, 0);
    const QTemporaryDir folder;
    TTiffOf16Bits().Write(folder.filePath("a.tif"));
    const auto source = OpenClimateSource(folder.filePath("a.tif"), {});
    for (const TSourceArray& array : source->GetArrays())
        EXPECT_FALSE(array.HasMask);
}

} // namespace
} // namespace lmx
