#include <lmx/DataSources/lmxGeoTiffTiles.h>

#include <lmx/Climate/lmxSpatialConst.h>
#include <lmx/Colour/lmxBaseColorCalculator.h>
#include <lmx/DataSources/lmxClimateDataset.h>
#include <lmx/DataSources/lmxTiledRasterMapLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <tests/DataSources/TiffFiles.h>
#include <tests/Support/CoordinatePrinters.h>
#include <tests/Support/Printers.h>
#include <tests/Support/TestBufferedLayer.h>
#include <tests/Support/TestMap.h>

#include <QFile>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

namespace lmx {
namespace {

using namespace tests;
using testing::HasSubstr;

bool Never() {
    return false;
}

class GeoTiffTiles : public testing::Test {
protected:
    QString Write(const TTiffOf16Bits& tiff, const QString& name = QStringLiteral("a.tif")) {
        const QString path = FFolder.filePath(name);
        tiff.Write(path);
        return path;
    }
    static std::vector<float> Read(const TGeoTiffTiles& tiles, int level, const TRect& rect) {
        std::vector<float> cells(static_cast<std::size_t>(rect.GetWidth()) *
                                 static_cast<std::size_t>(rect.GetHeight()));
        tiles.ReadCells(level, rect, cells, Never);
        return cells;
    }
    static std::string FailureOf(const QString& path, int band = 1) {
        try {
            const TGeoTiffTiles tiles(path, band);
        } catch (const EClimateFile& failure) {
            return failure.Problem().toStdString();
        }
        return "opened";
    }

    QTemporaryDir FFolder;
};

TEST_F(GeoTiffTiles, TellWhereTheyLieAndTheirLevels) {
    TTiffOf16Bits tiff;
    tiff.Overviews = {2, 4};
    const TGeoTiffTiles tiles(Write(tiff));
    EXPECT_EQ(tiles.GetArea().Area, TMapArea(-180, 90, 180, -90));
    EXPECT_EQ(tiles.GetArea().WorldSystem, TLatLonWorldSystemFactory::GetObject());
    ASSERT_EQ(tiles.GetLevels().size(), 3U);
    EXPECT_EQ(tiles.GetLevels()[0].Width, 300);
    EXPECT_EQ(tiles.GetLevels()[0].Height, 200);
    EXPECT_EQ(tiles.GetLevels()[1].Width, 150);
    EXPECT_EQ(tiles.GetLevels()[2].Height, 50);
    EXPECT_EQ(tiles.GetFileName(), FFolder.filePath("a.tif"));
    EXPECT_EQ(tiles.GetBand(), 1);
    EXPECT_EQ(tiles.GetNote(), "");
}

TEST_F(GeoTiffTiles, ReadAnyPartOfAnyLevel) {
    TTiffOf16Bits tiff;
    tiff.Overviews = {2};
    const TGeoTiffTiles tiles(Write(tiff));
    EXPECT_EQ(Read(tiles, 0, {60, 62, 62, 65}), (std::vector<float>{6260, 6261, 6360, 6361, 6460, 6461}));
    EXPECT_EQ(Read(tiles, 0, {299, 199, 300, 200}), std::vector<float>{20199});
    EXPECT_EQ(Read(tiles, 1, {10, 5, 12, 6}), (std::vector<float>{1020, 1022}));
}

// A cell of a level that is made is the one in the middle of those that it stands for, wherever it is read from.
TEST_F(GeoTiffTiles, MakeTheLevelsThatALargeFileLacks) {
    TTiffOf16Bits tiff;
    tiff.Width = 4101;
    tiff.Height = 1101;
    tiff.Cell = [](int column, int row) { return static_cast<std::int16_t>((row * 7 + column * 13) % 9973); };
    for (const bool isFromSouthEast : {false, true}) {
        tiff.Transform = {-180, 0.08, 0, 90, 0, -0.08};
        if (isFromSouthEast)
            tiff.Transform = {150, -0.08, 0, -20, 0, 0.08};
        const TGeoTiffTiles tiles(Write(tiff));
        ASSERT_EQ(tiles.GetLevels().size(), 3U);
        EXPECT_EQ(tiles.GetStoredLevelCount(), 1);
        EXPECT_EQ(tiles.GetLevels()[1].Width, 2051);
        EXPECT_EQ(tiles.GetLevels()[1].Height, 551);
        EXPECT_EQ(tiles.GetLevels()[2].Width, 1026);
        EXPECT_EQ(tiles.GetLevels()[2].Height, 276);
        for (int level = 1; level < 3; ++level) {
            const TTileLevel& size = tiles.GetLevels()[static_cast<std::size_t>(level)];
            const auto base = [](int cell, int count, int full) {
                return static_cast<int>((cell + 0.5) * full / count);
            };
            const TRect rects[] = {
                {0, 0, 3, 2}, {256, 200, 259, 201}, {size.Width - 2, size.Height - 3, size.Width, size.Height}};
            for (const TRect& rect : rects) {
                const auto cells = Read(tiles, level, rect);
                std::size_t index = 0;
                for (int row = rect.Top; row < rect.Bottom; ++row)
                    for (int column = rect.Left; column < rect.Right; ++column) {
                        const int x = isFromSouthEast ? size.Width - 1 - column : column;
                        const int y = isFromSouthEast ? size.Height - 1 - row : row;
                        EXPECT_EQ(cells[index++], static_cast<float>(tiff.Cell(base(x, size.Width, tiff.Width),
                                                                               base(y, size.Height, tiff.Height))))
                            << level << ": " << column << ", " << row;
                    }
            }
        }
    }
}

TEST_F(GeoTiffTiles, MakeLevelsOfTheLastOverviewAndOnlyAsManyAsAreNeeded) {
    TTiffOf16Bits tiff;
    tiff.Width = 1024;
    tiff.Height = 1024;
    EXPECT_EQ(TGeoTiffTiles(Write(tiff)).GetLevels().size(), 1U);
    tiff.Width = 4096;
    tiff.Overviews = {2};
    const TGeoTiffTiles tiles(Write(tiff, "b.tif"));
    ASSERT_EQ(tiles.GetLevels().size(), 2U); // of 2048 x 512 cells
    EXPECT_EQ(tiles.GetStoredLevelCount(), 2);
    tiff.Height = 3000;
    const TGeoTiffTiles higher(Write(tiff, "c.tif"));
    ASSERT_EQ(higher.GetLevels().size(), 3U);
    EXPECT_EQ(higher.GetStoredLevelCount(), 2);
    EXPECT_EQ(Read(higher, 2, {100, 40, 101, 41}), std::vector<float>{static_cast<float>(tiff.Cell(402, 162))});
}

TEST_F(GeoTiffTiles, StopInTheMiddleOfALevelThatIsMade) {
    TTiffOf16Bits tiff;
    tiff.Width = 2051;
    tiff.Height = 1101;
    const TGeoTiffTiles tiles(Write(tiff));
    std::vector<float> cells(256 * 256, 5);
    int asked = 0;
    tiles.ReadCells(1, {0, 0, 256, 256}, cells, [&asked] { return ++asked > 3; });
    EXPECT_GT(asked, 3);
    EXPECT_LT(asked, 20);
    EXPECT_EQ(Read(tiles, 1, {0, 0, 1, 1}),
              std::vector<float>{static_cast<float>(tiff.Cell(0, 0))}); // 0.5 * 2051 / 1026 is below 1
}

TEST_F(GeoTiffTiles, TurnFilesThatBeginInTheSouthOrInTheEast) {
    TTiffOf16Bits tiff;
    tiff.Transform = {-180, 1.2, 0, -90, 0, 0.9};
    const TGeoTiffTiles south(Write(tiff));
    EXPECT_EQ(south.GetArea().Area, TMapArea(-180, 90, 180, -90));
    EXPECT_EQ(Read(south, 0, {5, 0, 6, 3}), (std::vector<float>{19905, 19805, 19705}));
    tiff.Transform = {180, -1.2, 0, 90, 0, -0.9};
    const TGeoTiffTiles east(Write(tiff, "b.tif"));
    EXPECT_EQ(east.GetArea().Area, TMapArea(-180, 90, 180, -90));
    EXPECT_EQ(Read(east, 0, {0, 1, 3, 2}), (std::vector<float>{399, 398, 397}));
}

TEST_F(GeoTiffTiles, UnpackCellsAndTurnUnits) {
    TTiffOf16Bits tiff;
    tiff.Describe = [](GDALRasterBand& band) {
        band.SetNoDataValue(101);
        band.SetScale(0.5);
        band.SetOffset(200);
        band.SetUnitType("K");
    };
    const TGeoTiffTiles tiles(Write(tiff));
    EXPECT_EQ(tiles.GetConversion().ShownUnits, "°C");
    const auto cells = Read(tiles, 0, {0, 1, 3, 2});
    EXPECT_FLOAT_EQ(cells[0], 250 - 273.15F);
    EXPECT_EQ(cells[1], TSpatialConst::NoData);
    EXPECT_FLOAT_EQ(cells[2], 251 - 273.15F);
}

TEST_F(GeoTiffTiles, KnowTheWorldOfTheirLongitudes) {
    TTiffOf16Bits tiff;
    tiff.Transform = {0, 1.2, 0, 90, 0, -0.9};
    EXPECT_EQ(TGeoTiffTiles(Write(tiff)).GetArea().WorldSystem, TLatLonAntimeridianWorldSystemFactory::GetObject());
    tiff.System = "EPSG:27200";
    tiff.Transform = {2'000'000, 1000, 0, 6'700'000, 0, -1000};
    EXPECT_EQ(TGeoTiffTiles(Write(tiff, "b.tif")).GetArea().WorldSystem, TNZMGWorldSystemFactory::GetObject());
    tiff.System = nullptr;
    tiff.Transform = {10, 0.1, 0, 50, 0, -0.1};
    EXPECT_THAT(TGeoTiffTiles(Write(tiff, "c.tif")).GetNote().toStdString(), HasSubstr("names no reference system"));
}

TEST_F(GeoTiffTiles, RefuseWhatTheyCannotShow) {
    TTiffOf16Bits tiff;
    EXPECT_EQ(FailureOf(FFolder.filePath("none.tif")), "does not exist");
    const QString path = Write(tiff);
    EXPECT_EQ(FailureOf(path, 2), "has no band 2");
    EXPECT_EQ(FailureOf(path, 0), "has no band 0");
    tiff.Transform = {0, 1, 0.2, 50, 0.2, -1};
    EXPECT_THAT(FailureOf(Write(tiff, "b.tif")), HasSubstr("Band 1"));
    tiff.Transform = {400'000, 10, 0, 5'000'000, 0, -10};
    tiff.System = "EPSG:32633";
    EXPECT_THAT(FailureOf(Write(tiff, "c.tif")), HasSubstr("Band 1"));
    QFile text(FFolder.filePath("d.tif"));
    ASSERT_TRUE(text.open(QIODevice::WriteOnly));
    text.write("<VRTDataset rasterXSize=\"1\" rasterYSize=\"1\"></VRTDataset>");
    text.close();
    EXPECT_NE(FailureOf(text.fileName()), "opened");
    EXPECT_THAT(FailureOf("http://example.org/a.tif"), HasSubstr("does not allow"));
    EXPECT_NE(FailureOf("/vsicurl/http://example.org/a.tif"), "opened");
}

// Cut anywhere, a file does not open or raises where cells are missing; nothing else happens.
TEST_F(GeoTiffTiles, SurviveFilesThatAreCut) {
    TTiffOf16Bits tiff;
    tiff.Width = 130;
    tiff.Height = 70;
    tiff.Overviews = {2};
    QFile whole(Write(tiff));
    ASSERT_TRUE(whole.open(QIODevice::ReadOnly));
    const QByteArray bytes = whole.readAll();
    const QString path = FFolder.filePath("cut.tif");
    int refused = 0;
    int raised = 0;
    for (qsizetype length = 0; length < bytes.size(); length += 97) {
        QFile cut(path);
        ASSERT_TRUE(cut.open(QIODevice::WriteOnly | QIODevice::Truncate));
        cut.write(bytes.left(length));
        cut.close();
        try {
            const TGeoTiffTiles tiles(path);
            for (int level = 0; level < static_cast<int>(tiles.GetLevels().size()); ++level)
                try {
                    const TTileLevel& size = tiles.GetLevels()[static_cast<std::size_t>(level)];
                    Read(tiles, level, {0, 0, size.Width, size.Height});
                } catch (const EClimateFile&) {
                    ++raised;
                }
        } catch (const EClimateFile&) {
            ++refused;
        }
    }
    EXPECT_GT(refused, 0);
    EXPECT_GT(raised + refused, 20);
}

TEST_F(GeoTiffTiles, ManyThreadsReadAtATime) {
    const TGeoTiffTiles tiles(Write(TTiffOf16Bits()));
    std::atomic<int> wrong = 0;
    {
        std::vector<std::jthread> threads;
        for (int thread = 0; thread < 6; ++thread)
            threads.emplace_back([&tiles, &wrong, thread] {
                for (int i = 0; i < 50; ++i) {
                    const int x = (i * 37 + thread * 11) % 298;
                    const int y = (i * 53 + thread) % 198;
                    if (Read(tiles, 0, {x, y, x + 1, y + 1})[0] != static_cast<float>(y * 100 + x))
                        ++wrong;
                }
            });
    }
    EXPECT_EQ(wrong, 0);
}

class TOwnColors final : public IBaseColorCalculator {
public:
    TColor32 GetColor(float value) const override { return 0xFF000000U + static_cast<TColor32>(value); }
    std::shared_ptr<IBaseColorCalculator> Clone() const override { return std::make_shared<TOwnColors>(); }
};

TEST_F(GeoTiffTiles, AreShownByALayer) {
    TTiffOf16Bits tiff;
    tiff.Width = 720;
    tiff.Height = 300;
    tiff.Transform = {-180, 0.5, 0, 75, 0, -0.5};
    tiff.Overviews = {2, 4};
    const auto tiles = std::make_shared<TGeoTiffTiles>(Write(tiff));
    const auto manager = TLayerManagerFactory::GetObject();
    TTiledRasterMapLayer layer(manager, std::make_shared<TTileCache>());
    layer.SetColorCalc(std::make_shared<TOwnColors>());
    layer.SetSource(tiles);
    TTestMap map(360, 180);
    map.Viewport.SetScale(2);
    map.Viewport.SetCenter({50, 20});
    for (int round = 0; round < 3; ++round) {
        layer.Paint(&map.World, &map.Viewport, map.Bitmap);
        ASSERT_TRUE(PumpUntilRendersEnd());
    }
    ASSERT_NE(layer.GetBufferedBitmap(), nullptr);
    const TMapPoint place = map.Viewport.PointToMapPoint({100.5L, 90.5L});
    const auto column = static_cast<int>((place.X + 180) * 2);
    const auto row = static_cast<int>((75 - place.Y) * 2);
    EXPECT_EQ(layer.GetBufferedBitmap()->Bitmap.Pixel(100, 90),
              TOwnColors().GetColor(static_cast<float>(static_cast<std::int16_t>(row * 100 + column))));
    EXPECT_EQ(layer.GetBufferedBitmap()->Bitmap.Pixel(0, 0) & 0xFF000000U, 0xFF000000U);
}

} // namespace
} // namespace lmx
