#include <lmx/DataSources/lmxTileStatistics.h>

#include <lmx/DataSources/lmxTiledRasterMapLayer.h>
#include <lmx/Formats/Shapes/lmxShpFile.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Layers/lmxLayerStatistics.h>
#include <lmx/Layers/lmxShapeFileLayer.h>
#include <tests/DataSources/NumberedTiles.h>
#include <tests/Support/NumberedImage.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

#include <memory>
#include <utility>
#include <vector>

namespace lmx {
namespace {

using namespace tests;

constexpr TMapArea Globe{-180, 90, 180, -90};

/// The same numbers as tiles and as an image.
class TileStatistics : public testing::Test {
protected:
    TileStatistics() { Use(720, 400); }

    void Use(int width, int height) {
        Tiles =
            std::make_shared<TNumberedTiles>(std::vector<TTileLevel>{{width, height}, {width / 4, height / 4}}, Globe);
        Tiled.SetSource(Tiles);
        auto cells = NumberedImage(width, height, Globe);
        for (int row = 0; row < height; ++row)
            for (int column = 0; column < width; ++column)
                cells->SetCell(column + 1, row + 1, Tiles->Cell(0, column, row));
        Image.TakeImage(std::move(cells));
    }
    static void ExpectSame(const std::optional<TFieldStatistics>& found, const TFieldStatistics& expected) {
        ASSERT_TRUE(found.has_value());
        EXPECT_EQ(found->CellCount, expected.CellCount);
        EXPECT_EQ(found->ValueCount, expected.ValueCount);
        EXPECT_EQ(found->MissingShare, expected.MissingShare);
        if (!expected.HasValues())
            return;
        EXPECT_EQ(found->Mean, expected.Mean);
        EXPECT_EQ(found->Minimum, expected.Minimum);
        EXPECT_EQ(found->Maximum, expected.Maximum);
    }

    std::shared_ptr<ILayerManager> Manager = TLayerManagerFactory::GetObject();
    std::shared_ptr<TNumberedTiles> Tiles;
    TTiledRasterMapLayer Tiled{Manager, std::make_shared<TTileCache>()};
    TIdrisiMapLayer Image{Manager};
};

TEST_F(TileStatistics, AreThoseOfAnImageOfTheSameCells) {
    const TFieldStatistics whole = StatisticsOf(Image);
    EXPECT_EQ(whole.CellCount, 720U * 400U);
    EXPECT_GT(whole.MissingShare, 0.1);
    ExpectSame(StatisticsOf(Tiled), whole);
    EXPECT_EQ(Tiles->CellsRead, 720 * 400); // of the raster itself, once
    const TMapArea areas[] = {
        {10, 40, 30.3L, -7}, {170, 10, 190, -10}, {-180, -80, 180, -90}, {0.1L, 0.2L, 0.2L, 0.1L}};
    for (const TMapArea& area : areas)
        ExpectSame(StatisticsOf(Tiled, area), StatisticsOf(Image, area));
}

TEST_F(TileStatistics, AreThoseOfAPolygonOnAnImage) {
    TShapeFileLayer shapes(Manager);
    shapes.SetLayerName(QStringLiteral("Land"));
    EXPECT_EQ(MessageOf<EInvalidOperation>([&] { StatisticsOf(Tiled, shapes, 0); }),
              "The layer \"Land\" has no shape file");
    shapes.TakeShpFile(
        TShpFile::LoadFromFile(QStringLiteral(LMX_SOURCE_DIR "/tests/data/shp/nz_ne_50m_land.shp"), nullptr));
    bool hasValues = false;
    for (std::size_t polygon = 0; polygon < shapes.GetShpFile()->GetPolygonCount(); ++polygon) {
        const TFieldStatistics expected = StatisticsOf(Image, shapes, polygon);
        hasValues = hasValues || expected.HasValues();
        ExpectSame(StatisticsOf(Tiled, shapes, polygon), expected);
    }
    EXPECT_TRUE(hasValues);
    EXPECT_EQ(MessageOf<EArgumentException>([&] { StatisticsOf(Tiled, shapes, 100'000); }),
              "Polygon index is out of range");
}

TEST_F(TileStatistics, ReadOnlyTheCellsThatCount) {
    Tiles->CellsRead = 0;
    StatisticsOf(Tiled, TMapArea(10, 40, 20, 31)); // 20 columns, and 21 rows, of which it cuts two
    EXPECT_EQ(Tiles->CellsRead, 20 * 21);
    Tiles->CellsRead = 0;
    StatisticsOf(Tiled, TMapArea(200, 40, 201, 39.5L)); // a turn further
    EXPECT_LE(Tiles->CellsRead, 2 * 2);
    EXPECT_GT(Tiles->CellsRead, 0);
}

TEST_F(TileStatistics, ReadInStripsThatTheHostMayEnd) {
    Tiles = std::make_shared<TNumberedTiles>(std::vector<TTileLevel>{{20'000, 300}}, Globe);
    std::vector<double> shares;
    const auto whole = StatisticsOf(*Tiles, [&shares](double share) {
        shares.push_back(share);
        return true;
    });
    ASSERT_TRUE(whole.has_value());
    EXPECT_EQ(whole->CellCount, 6'000'000U);
    ASSERT_EQ(shares.size(), 3U); // of 128 rows, which are less than four million cells
    EXPECT_EQ(shares[0], 0);
    EXPECT_DOUBLE_EQ(shares[1], 128.0 / 300);
    Tiles->CellsRead = 0;
    EXPECT_FALSE(StatisticsOf(*Tiles, [](double share) { return share == 0; }).has_value());
    EXPECT_EQ(Tiles->CellsRead, 128 * 20'000);
    EXPECT_FALSE(StatisticsOf(*Tiles, TMapArea(0, 10, 10, 0), [](double) { return false; }).has_value());
}

TEST_F(TileStatistics, OfALayerWhichGoesMeanwhile) {
    auto layer = std::make_unique<TTiledRasterMapLayer>(Manager, std::make_shared<TTileCache>());
    layer->SetSource(std::make_shared<TNumberedTiles>(std::vector<TTileLevel>{{100, 50}}, Globe));
    const auto found = StatisticsOf(*layer, [&layer](double) {
        layer.reset();
        return true;
    });
    ASSERT_TRUE(found.has_value());
    EXPECT_EQ(found->CellCount, 5000U);
}

TEST_F(TileStatistics, CellsThatCannotBeReadAreAFailure) {
    Tiles->DamagedLevel = 0;
    EXPECT_EQ(MessageOf<EFileException>([&] { StatisticsOf(Tiled); }), "numbers.tif: damaged");
    Tiled.SetSource(nullptr);
    Tiled.SetLayerName(QStringLiteral("Relief"));
    EXPECT_EQ(MessageOf<EInvalidOperation>([&] { StatisticsOf(Tiled); }), "The layer \"Relief\" has no raster");
    EXPECT_EQ(MessageOf<EInvalidOperation>([&] { StatisticsOf(Tiled, TMapArea(0, 1, 1, 0)); }),
              "The layer \"Relief\" has no raster");
}

} // namespace
} // namespace lmx
