#include <lmx/DataSources/lmxTiledRasterMapLayer.h>

#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/Controls/Legend/lmxMapViewGradientLegendControl.h>
#include <lmx/DataSources/lmxGeoTiffTiles.h>
#include <lmx/Formats/Idrisi/lmxIdrisiImages.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Pictures/lmxMapPictureDescription.h>
#include <tests/DataSources/NumberedTiles.h>
#include <tests/DataSources/TiffFiles.h>
#include <tests/Support/Printers.h>
#include <tests/Support/TestBufferedLayer.h>
#include <tests/Support/TestMap.h>

#include <QStringList>

#include <gtest/gtest.h>

#include <memory>
#include <utility>
#include <vector>

namespace lmx {
namespace {

using namespace tests;

constexpr TMapArea Globe{-180, 90, 180, -90};

// Every number has a colour of its own.
class TOwnColors final : public IBaseColorCalculator {
public:
    TColor32 GetColor(float value) const override { return 0xFF000000U + static_cast<TColor32>(value); }
    std::shared_ptr<IBaseColorCalculator> Clone() const override { return std::make_shared<TOwnColors>(); }
};

class TiledRasterMapLayer : public testing::Test {
protected:
    TiledRasterMapLayer() {
        Layer->SetColorCalc(std::make_shared<TOwnColors>());
        Layer->SetOnReadFailed([this](TTiledRasterMapLayer*, const QString& why) { Failures += why; });
    }
    ~TiledRasterMapLayer() override {
        if (Tiles)
            Tiles->Held.Open();
        EXPECT_TRUE(PumpUntilRendersEnd());
    }

    void Show(std::vector<TTileLevel> levels, const TMapArea& area = Globe) {
        Tiles = std::make_shared<TNumberedTiles>(std::move(levels), area);
        Layer->SetSource(Tiles);
    }
    void Paint(TTestMap& map) {
        map.Bitmap.Clear(0);
        Layer->Paint(&map.World, &map.Viewport, map.Bitmap);
    }
    // Until nothing more is made: the view repaints whenever it is told to.
    void PaintSharp(TTestMap& map) {
        for (int rounds = 0; rounds < 3; ++rounds) {
            Paint(map);
            ASSERT_TRUE(PumpUntilRendersEnd());
        }
    }

    std::shared_ptr<ILayerManager> Manager = TLayerManagerFactory::GetObject();
    std::shared_ptr<TTileCache> Cache = std::make_shared<TTileCache>();
    std::unique_ptr<TTiledRasterMapLayer> Layer = std::make_unique<TTiledRasterMapLayer>(Manager, Cache);
    std::shared_ptr<TNumberedTiles> Tiles;
    QStringList Failures;
};

TEST_F(TiledRasterMapLayer, SaysWhatItIs) {
    EXPECT_EQ(Layer->GetLayerTypeName(), "Tiled raster");
    EXPECT_EQ(Layer->GetLayerClassName(), "TiledRasterMapLayer");
    EXPECT_FALSE(Layer->GetHasContent());
    Show({{10, 5}});
    EXPECT_TRUE(Layer->GetHasContent());
    EXPECT_EQ(Layer->GetLayerArea().Area, Globe);
    EXPECT_TRUE(Layer->GetLayerOptionFlags().Contains(TLayerOptionFlag::lofDuplicate));
}

// The same raster as one image in memory is the measure, at every place and scale.
TEST_F(TiledRasterMapLayer, ShowsTheCellsThatAnImageLayerShows) {
    struct TPlace {
        extended Scale;
        TMapPoint Center;
    };
    const TPlace places[] = {{1, {0, 0}},      {2, {10, 20}},     {3.7L, {-170, 80}}, {0.9L, {0, 0}},
                             {40, {12.3L, 4}}, {900, {12.3L, 4}}, {1, {175, -85}},    {5000, {-179.99L, 89.99L}}};
    for (const TMapArea& area : {Globe, TMapArea(0, 90, 360, -90), TMapArea(160, 40, 220, -45.5L)}) {
        Show({{720, 400}}, area);
        TImageHeader header;
        header.SetWidth(720);
        header.SetHeight(400);
        header.SetMinX(static_cast<float>(area.Left));
        header.SetMaxX(static_cast<float>(area.Right));
        header.SetMinY(static_cast<float>(area.Bottom));
        header.SetMaxY(static_cast<float>(area.Top));
        header.SetRefSystem(QStringLiteral("latlong"));
        TRealImage image(QString(), header);
        for (int row = 0; row < 400; ++row)
            for (int column = 0; column < 720; ++column)
                image.SetCell(column + 1, row + 1, Tiles->Cell(0, column, row));
        TIdrisiMapLayer reference(Manager);
        reference.SetImage(&image);
        reference.SetColorCalc(std::make_shared<TOwnColors>());
        reference.Render();
        for (const TPlace& place : places) {
            TTestMap map(300, 200);
            map.Viewport.SetScale(place.Scale);
            map.Viewport.SetCenter(place.Center);
            PaintSharp(map);
            map.Bitmap.Clear(0);
            reference.Paint(&map.World, &map.Viewport, map.Bitmap);
            const TBufferedBitmap* const buffered = Layer->GetBufferedBitmap();
            ASSERT_NE(buffered, nullptr);
            int different = 0;
            for (int y = 0; y < 200; ++y)
                for (int x = 0; x < 300; ++x)
                    different += buffered->Bitmap.Pixel(x, y) != map.Bitmap.Pixel(x, y);
            EXPECT_EQ(different, 0) << static_cast<double>(area.Left) << " at " << static_cast<double>(place.Scale);
        }
    }
}

TEST_F(TiledRasterMapLayer, ReadsTheLevelThatFitsAndOnlyWhatShows) {
    Show({{7200, 3600}, {3600, 1800}, {1800, 900}, {900, 450}});
    TTestMap map(360, 180);
    PaintSharp(map); // twenty cells a pixel: the smallest one, all of it
    EXPECT_EQ(Tiles->CellsRead, 900 * 450);
    EXPECT_TRUE(Cache->Has({Tiles->GetId(), 3, 3, 1}));
    Tiles->CellsRead = 0;
    map.Viewport.SetScale(10); // two cells a pixel
    PaintSharp(map);
    EXPECT_EQ(Tiles->CellsRead % (256 * 256), 0);
    EXPECT_LE(Tiles->CellsRead, 3 * 2 * 256 * 256);
    EXPECT_TRUE(Cache->Has({Tiles->GetId(), 1, 7, 3}));
    EXPECT_FALSE(Cache->Has({Tiles->GetId(), 0, 14, 7}));
    Tiles->Reads = 0;
    Layer->SetOpacity(100); // what was read is at hand
    PaintSharp(map);
    EXPECT_EQ(Tiles->Reads, 0);
}

TEST_F(TiledRasterMapLayer, ACoarsePictureComesBeforeTheSharpOne) {
    Show({{7200, 3600}, {1800, 900}, {450, 225}});
    Tiles->HeldLevel = 0;
    TTestMap map(360, 180);
    map.Viewport.SetScale(20);
    Paint(map);
    ASSERT_TRUE(PumpUntil([&] { return Layer->GetBufferedBitmap() != nullptr; }));
    const TColor32 coarse = Layer->GetBufferedBitmap()->Bitmap.Pixel(1, 0);
    const int coarseReads = Tiles->Reads;
    Paint(map);
    EXPECT_NE(Layer->GetCurrentThread(), nullptr);
    ASSERT_TRUE(WaitUntil([&] { return Tiles->Reads > coarseReads; }));
    EXPECT_EQ(Layer->GetBufferedBitmap()->Bitmap.Pixel(1, 0), coarse);
    Tiles->Held.Open();
    ASSERT_TRUE(PumpUntilRendersEnd());
    const TMapPoint place = map.Viewport.PointToMapPoint({1, 0});
    const auto column = static_cast<std::int32_t>((place.X + 180) * 20);
    const auto row = static_cast<std::int32_t>((90 - place.Y) * 20);
    const float sharp = Tiles->Cell(0, column, row);
    EXPECT_EQ(Layer->GetBufferedBitmap()->Bitmap.Pixel(1, 0),
              TSpatialConst::IsFlag(sharp) ? 0 : TOwnColors().GetColor(sharp));
    EXPECT_NE(Layer->GetBufferedBitmap()->Bitmap.Pixel(1, 0), coarse);
    Paint(map);
    EXPECT_EQ(Layer->GetCurrentThread(), nullptr); // and there it ends
}

// The tiles of a level that is made cost a tenth of a second each: the picture fills up in steps, and stays at hand.
TEST_F(TiledRasterMapLayer, APictureThatMustBeMadeFillsUpInSteps) {
    Tiles = std::make_shared<TNumberedTiles>(
        std::vector<TTileLevel>{{32000, 16000}, {16000, 8000}, {8000, 4000}, {4000, 2000}, {2000, 1000}, {1000, 500}},
        Globe, 1);
    Layer->SetSource(Tiles);
    TTestMap map(720, 360);
    map.Viewport.SetScale(2); // 44 cells a pixel: the last level, of 4 x 2 tiles
    map.Viewport.SetCenter({0, 0});
    std::vector<int> reads;
    do {
        Paint(map);
        ASSERT_TRUE(PumpUntilRendersEnd());
        reads.push_back(Tiles->Reads);
    } while (reads.size() < 9 && (reads.size() < 2 || reads.back() != reads[reads.size() - 2]));
    EXPECT_EQ(reads, (std::vector<int>{1, 2, 6, 8, 8}));
    Paint(map);
    EXPECT_EQ(Layer->GetCurrentThread(), nullptr);
    map.Viewport.SetTranslation({40, 10});
    PaintSharp(map);
    map.Viewport.SetScale(4); // a zoom: what is missing is shown from the coarser level meanwhile
    Paint(map);
    ASSERT_TRUE(PumpUntilRendersEnd());
    EXPECT_NE(Layer->GetBufferedBitmap()->Bitmap.Pixel(700, 350) | Layer->GetBufferedBitmap()->Bitmap.Pixel(701, 350),
              0U);
    EXPECT_EQ(Tiles->Reads, 8);
}

TEST_F(TiledRasterMapLayer, APictureThatMustBeMadeComesToItsEndWithoutACache) {
    Cache->SetCapacity(0);
    Tiles = std::make_shared<TNumberedTiles>(
        std::vector<TTileLevel>{{8000, 4000}, {4000, 2000}, {2000, 1000}, {1000, 500}}, Globe, 1);
    Layer->SetSource(Tiles);
    TTestMap map(720, 360);
    map.Viewport.SetScale(2);
    map.Viewport.SetCenter({0, 0});
    for (int step = 0; step < 3; ++step) {
        Paint(map);
        ASSERT_TRUE(PumpUntilRendersEnd());
    }
    Paint(map);
    EXPECT_EQ(Layer->GetCurrentThread(), nullptr);
    const TMapPoint place = map.Viewport.PointToMapPoint({500, 300});
    const float cell = Tiles->Cell(3, static_cast<std::int32_t>((place.X + 180) * 1000 / 360),
                                   static_cast<std::int32_t>((90 - place.Y) * 500 / 180));
    EXPECT_EQ(Layer->GetBufferedBitmap()->Bitmap.Pixel(500, 300),
              TSpatialConst::IsFlag(cell) ? 0 : TOwnColors().GetColor(cell));
}

TEST_F(TiledRasterMapLayer, TheRangeOfItsValuesIsWhatIsKnownOfIt) {
    EXPECT_EQ(Layer->FindValueRange(), TValueRange::Empty());
    Show({{2560, 2560}, {40, 20}}, {0, 20, 40, 0}); // the overview has rows 0, 128, ... and columns 0, 64, ...
    EXPECT_EQ(Layer->FindValueRange(), TValueRange(0, 920'984)); // column 1984 of row 1920
    const int reads = Tiles->Reads;
    EXPECT_EQ(reads, 1);
    EXPECT_EQ(Layer->FindValueRange().Low, 0);
    EXPECT_EQ(Tiles->Reads, reads); // from the cache
    TTestMap map(64, 64);
    map.Viewport.SetScale(64);
    map.Viewport.SetCenter({0.5L, 19.75L});
    PaintSharp(map);
    const TValueRange seen = Layer->FindValueRange();
    EXPECT_GE(seen.Low, 0);
    EXPECT_LE(seen.High, 95'063);
    EXPECT_GT(seen.High, 90'000);
    Layer->SetValueRange({-5, 5});
    EXPECT_EQ(Layer->FindValueRange(), TValueRange(-5, 5));
}

TEST_F(TiledRasterMapLayer, TwoViewsBothBecomeSharp) {
    Show({{7200, 3600}, {450, 225}});
    TTestMap left(200, 100);
    TTestMap right(200, 100);
    left.Viewport.SetScale(20);
    left.Viewport.SetCenter({-100, 0});
    right.Viewport.SetScale(20);
    right.Viewport.SetCenter({100, 0});
    for (int round = 0; round < 6; ++round) {
        Paint(left);
        Paint(right);
        ASSERT_TRUE(PumpUntilRendersEnd());
    }
    Tiles->Reads = 0;
    for (TTestMap* const map : {&left, &right}) {
        Paint(*map);
        EXPECT_EQ(Layer->GetCurrentThread(), nullptr);
        const TMapPoint place = map->Viewport.PointToMapPoint({0, 0});
        const auto column = static_cast<std::int32_t>((place.X + 180) * 20 + 0.5L);
        const auto row = static_cast<std::int32_t>((90 - place.Y) * 20 + 0.5L);
        const float cell = Tiles->Cell(0, column, row);
        EXPECT_EQ(map->Bitmap.Pixel(0, 0), TSpatialConst::IsFlag(cell) ? 0 : TOwnColors().GetColor(cell));
    }
    EXPECT_EQ(Tiles->Reads, 0);
}

TEST_F(TiledRasterMapLayer, WhatCannotBeReadIsToldOnceAndShowsNothing) {
    Show({{300, 150}});
    Tiles->DamagedLevel = 0;
    TTestMap map(360, 180);
    PaintSharp(map);
    EXPECT_EQ(Failures, QStringList(2, QStringLiteral("numbers.tif: damaged"))); // two tiles
    EXPECT_EQ(Layer->GetBufferedBitmap()->Bitmap.Pixel(100, 100), 0U);
    map.Viewport.SetTranslation({5, 5});
    PaintSharp(map);
    EXPECT_EQ(Failures.size(), 2);
}

TEST_F(TiledRasterMapLayer, MayGoWhileItReads) {
    Show({{300, 150}});
    Tiles->HeldLevel = 0;
    TTestMap map(360, 180);
    Paint(map);
    ASSERT_TRUE(WaitUntil([&] { return Tiles->Reads == 1; }));
    Layer.reset();
    ASSERT_TRUE(PumpUntilRendersEnd()); // the reading was withdrawn, with the gate still shut
    EXPECT_FALSE(Cache->Has({Tiles->GetId(), 0, 0, 0}));
}

TEST_F(TiledRasterMapLayer, AFailureThatIsToldMayFreeTheLayer) {
    Show({{300, 150}});
    Tiles->DamagedLevel = 0;
    Layer->SetOnReadFailed([this](TTiledRasterMapLayer*, const QString&) { Layer.reset(); });
    TTestMap map(360, 180);
    Paint(map);
    ASSERT_TRUE(PumpUntilRendersEnd());
    EXPECT_EQ(Layer, nullptr);
}

TEST_F(TiledRasterMapLayer, HalfTransparentCellsLetTheMapShineThrough) {
    Show({{1, 1}});
    Layer->SetOpacity(51);
    TTestMap map(360, 180);
    PaintSharp(map);
    map.Bitmap.Clear(0xFF0000FF);
    Layer->Paint(&map.World, &map.Viewport, map.Bitmap);
    EXPECT_EQ(map.Bitmap.Pixel(50, 50), 0xFF0000CCU); // a fifth of black
}

TEST_F(TiledRasterMapLayer, KnowsTheValuesThatAreAtHand) {
    Show({{720, 360}}, {0, 90, 360, -90});
    EXPECT_FALSE(Layer->GetCachedValue({0.25L, 89.75L}).GetHasValue());
    TTestMap map(360, 180);
    map.Viewport.SetScale(2);
    map.Viewport.SetCenter({-100, 30});
    PaintSharp(map);
    const auto value = Layer->GetCachedValue({-99.75L, 30.25L}); // column 520, row 119
    EXPECT_EQ((520 + 119) % 7, 2);
    ASSERT_TRUE(value.GetHasValue());
    EXPECT_EQ(value.GetValue(), 119520.0F);
    EXPECT_FALSE(Layer->GetCachedValue({-99.25L, 30.25L}).GetHasValue()); // no data
    EXPECT_FALSE(Layer->GetCachedValue({-99.75L, 90.5L}).GetHasValue());
    const extended nan = std::numeric_limits<extended>::quiet_NaN();
    EXPECT_FALSE(Layer->GetCachedValue({nan, nan}).GetHasValue());
}

TEST_F(TiledRasterMapLayer, AnotherSourceDropsThePictureAndAnotherCalculatorKeepsItMeanwhile) {
    Show({{300, 150}});
    TTestMap map(360, 180);
    PaintSharp(map);
    Layer->SetColorCalc(std::make_shared<TOwnColors>());
    EXPECT_NE(Layer->GetBufferedBitmap(), nullptr);
    Paint(map);
    EXPECT_NE(Layer->GetCurrentThread(), nullptr);
    ASSERT_TRUE(PumpUntilRendersEnd());
    Show({{20, 10}}, {0, 10, 20, 0});
    EXPECT_EQ(Layer->GetBufferedBitmap(), nullptr);
    EXPECT_EQ(Layer->GetLayerArea().Area, TMapArea(0, 10, 20, 0));
    Layer->SetSource(nullptr);
    PaintSharp(map);
    EXPECT_EQ(Layer->GetBufferedBitmap(), nullptr);
}

TEST_F(TiledRasterMapLayer, ItsLegendIsThatOfItsCalculator) {
    Show({{20, 10}});
    EXPECT_EQ(Layer->GetLegendComponent(), nullptr);
    Layer->SetColorCalc(TGradientColorCalculatorFactory::GetObject());
    EXPECT_NE(dynamic_cast<TMapViewGradientLegendControl*>(Layer->GetLegendComponent()), nullptr);
    Layer->SetSource(nullptr);
    EXPECT_EQ(Layer->GetLegendComponent(), nullptr);
}

TEST_F(TiledRasterMapLayer, TellsPicturesOfItsData) {
    EXPECT_EQ(Layer->DescribeData().FileName, "");
    Show({{10, 5}});
    EXPECT_EQ(Layer->DescribeData().Colors, Layer->GetColorCalc());
    EXPECT_EQ(Layer->DescribeData().Lineage, "");
    EXPECT_FALSE(Layer->DescribeData().ValueRange) << "nothing is read for it";
    TTestMap map(300, 200);
    PaintSharp(map);
    EXPECT_EQ(Layer->DescribeData().ValueRange, Layer->FindValueRange());
    Layer->SetValueRange({1, 2});
    EXPECT_EQ(Layer->DescribeData().ValueRange, TValueRange(1, 2));

    const QTemporaryDir folder;
    const QString path = folder.filePath("heights.tif");
    TTiffOf16Bits tiff;
    tiff.Describe = [](GDALRasterBand& band) { band.SetUnitType("K"); };
    tiff.Write(path);
    Layer->SetSource(std::make_shared<TGeoTiffTiles>(path));
    const TMapPictureLayer told = TMapPictureLayer::Of(*Layer);
    EXPECT_EQ(told.FileName, path);
    EXPECT_EQ(told.Lineage, "Band 1");
    EXPECT_EQ(told.Units, "°C");
    EXPECT_EQ(told.ValueRange, TValueRange(1, 2));
    EXPECT_EQ(told.Palette, "colours of its own");
}

TEST_F(TiledRasterMapLayer, ADuplicateSharesTheSourceAndOwnsItsColours) {
    Show({{20, 10}});
    Layer->SetOpacity(77);
    Layer->SetValueRange({1, 2});
    Layer->SetClimateVariable(TClimateVariable::cvTas);
    Layer->SetLayerName(QStringLiteral("Heat"));
    const auto duplicate = Layer->Duplicate(Manager);
    const auto& copy = dynamic_cast<TTiledRasterMapLayer&>(*duplicate);
    EXPECT_EQ(copy.GetSource(), Layer->GetSource());
    EXPECT_NE(copy.GetColorCalc(), nullptr);
    EXPECT_NE(copy.GetColorCalc(), Layer->GetColorCalc());
    EXPECT_EQ(copy.GetOpacity(), 77);
    EXPECT_TRUE(copy.GetValueRange().Equals({1, 2}));
    EXPECT_EQ(copy.GetClimateVariable().GetValue(), TClimateVariable::cvTas);
    EXPECT_EQ(copy.GetLayerName(), "Heat");
}

} // namespace
} // namespace lmx
