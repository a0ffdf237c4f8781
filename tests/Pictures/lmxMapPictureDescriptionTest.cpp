#include <lmx/Colour/lmxBasicPaletteColorCalculator.h>
#include <lmx/Colour/lmxColorClassCalculator.h>
#include <lmx/Colour/lmxMultipartGradient.h>
#include <lmx/Formats/Shapes/lmxShpFile.h>
#include <lmx/Layers/lmxLayerData.h>
#include <lmx/Layers/lmxShapeFileLayer.h>
#include <tests/Pictures/PictureMap.h>
#include <tests/Support/Printers.h>
#include <tests/Support/TestLayer.h>

#include <gtest/gtest.h>

namespace lmx {
namespace {

using namespace tests;

QString PaletteOf(TPictureMap& map, const std::shared_ptr<IBaseColorCalculator>& colors) {
    map.Raster->SetColorCalc(colors);
    return TMapPictureLayer::Of(*map.Raster).Palette;
}

TEST(MapPictureDescription, TellsWhatALayerShows) {
    TPictureMap map;
    const TMapPictureLayer raster = TMapPictureLayer::Of(*map.Raster);
    EXPECT_EQ(raster.Name, "Halves");
    EXPECT_EQ(raster.Type, "Idrisi Image (Raster)");
    EXPECT_EQ(raster.FileName, "");
    EXPECT_EQ(raster.Units, "K");
    EXPECT_EQ(raster.ValueRange, TValueRange(11, 12));
    EXPECT_EQ(raster.Palette, "gradient (0:#FF0000FF),(1:#FFFF0000) from 11 to 12");
    const QString path = QStringLiteral(LMX_SOURCE_DIR "/tests/data/shp/ne_110m_coastline.shp");
    TShapeFileLayer coast(map.Manager);
    coast.SetColor(0xFF24303C);
    coast.TakeShpFile(TShpFile::LoadFromFile(path, nullptr));
    EXPECT_EQ(TMapPictureLayer::Of(coast).FileName, coast.GetShpFile()->GetFileName());
    EXPECT_EQ(TMapPictureLayer::Of(coast).Palette, "#FF24303C");
    EXPECT_FALSE(TMapPictureLayer::Of(coast).ValueRange);
}

/// A layer of another library.
class TForeignLayer : public TTestLayer, public ILayerWithData {
public:
    using TTestLayer::TTestLayer;
    TLayerData DescribeData() const override { return Data; }
    TLayerData Data;
};

TEST(MapPictureDescription, AsksLayersThatItDoesNotKnow) {
    TPictureMap map;
    auto layer = std::make_unique<TForeignLayer>(map.Manager);
    layer->SetLayerName("Land cover");
    EXPECT_EQ(TMapPictureLayer::Of(*layer).FileName, "");
    EXPECT_EQ(TMapPictureLayer::Of(*layer).Palette, "");
    EXPECT_FALSE(TMapPictureLayer::Of(*layer).ValueRange);
    layer->Data = {"/data/cover.tif", "Band 2", "m", TValueRange(1, 5),
                   TGradientColorCalculatorFactory::GetObject(0, 1, TGradientFactory::GetObject({{0, 0xFF000000}}))};
    layer->SetIsReadyToDraw(true);
    map.Manager->GetLayers().Add(std::move(layer));
    TMapPictureDescription picture;
    picture.Layers = TMapPictureDescription::LayersOf(*map.Manager);
    EXPECT_EQ(picture.LayersText().section(u'\n', -1),
              "Land cover; Test; units m; values 1 to 5; colours gradient (0:#FF000000) from 0 to 1; file "
              "/data/cover.tif; made from Band 2");
}

TEST(MapPictureDescription, TellsEveryKindOfColours) {
    TPictureMap map;
    EXPECT_EQ(PaletteOf(map, TBasicPaletteColorCalculatorFactory::GetObject(
                                 {0, 0.5}, {{"low", 0xFF010203}, {"high", 0xFF040506}}, false)),
              "palette (\"low\":#FF010203),(\"high\":#FF040506) from 0 to 0.5");
    EXPECT_EQ(PaletteOf(map, TColorClassCalculatorFactory::GetObject({TColorClass("cold", -1.5F, 0, 0xFF0000FF)})),
              "classes cold (-1.5 to 0) #FF0000FF");
    const auto part = TGradientColorCalculatorFactory::GetObject(0, 1, TGradientFactory::GetObject({{0, 0xFF000000}}));
    EXPECT_EQ(PaletteOf(map, TMultipartGradientColorCalculatorFactory::GetObject(0, 2, {part, part})),
              "gradient (0:#FF000000) from 0 to 1; gradient (0:#FF000000) from 0 to 1");
    EXPECT_EQ(PaletteOf(map, nullptr), "");
}

TEST(MapPictureDescription, SaysItInASentence) {
    TMapPictureDescription picture;
    picture.IsGeographic = true;
    picture.World = QStringLiteral("Lat/lon");
    picture.Extent = TMapArea(-179.5L, 80, 0, -45.25L);
    EXPECT_EQ(
        picture.AlternativeText(),
        QStringLiteral("Map from 179.5\u00B0 W to 0\u00B0 and from 45.25\u00B0 S to 80\u00B0 N, without a layer."));
    picture.Title = QStringLiteral("Sea");
    picture.Time = QStringLiteral("January 1991");
    TMapPictureLayer raster;
    raster.Name = QStringLiteral("Temperature");
    raster.Units = QStringLiteral("K");
    raster.ValueRange = TValueRange(271.5, 304);
    TMapPictureLayer coast;
    coast.Name = QStringLiteral("Coasts");
    picture.Layers = {raster, coast};
    EXPECT_EQ(picture.AlternativeText(),
              QStringLiteral("Map \"Sea\" from 179.5\u00B0 W to 0\u00B0 and from 45.25\u00B0 S to 80\u00B0 N, January "
                             "1991, showing Temperature (271.5 to 304 K) and Coasts."));
    picture.IsGeographic = false;
    picture.World = QStringLiteral("Grid");
    picture.Extent = TMapArea(0, 2000.5L, 1000, 500);
    picture.Time.clear();
    picture.Layers = {coast};
    EXPECT_EQ(picture.AlternativeText(),
              "Map \"Sea\" from 0 to 1000 east and from 500 to 2000.5 north (Grid), showing Coasts.");
}

TEST(MapPictureDescription, ListsAllOfIt) {
    TMapPictureDescription picture;
    picture.Title = QStringLiteral("Sea");
    picture.World = QStringLiteral("Grid");
    picture.Extent = TMapArea(0, 20, 10, 5);
    picture.Pixels = {300, 200};
    picture.Density = 1.5;
    TMapPictureLayer raster;
    raster.Name = QStringLiteral("Depth");
    raster.Type = QStringLiteral("Raster");
    raster.Units = QStringLiteral("m");
    raster.ValueRange = TValueRange(-10, 0);
    raster.Palette = QStringLiteral("gradient");
    raster.FileName = QStringLiteral("/data/depth.rst");
    picture.Layers = {raster, raster};
    const QString line =
        QStringLiteral("Depth; Raster; units m; values -10 to 0; colours gradient; file /data/depth.rst");
    EXPECT_EQ(picture.LayersText(), line + u'\n' + line);
    EXPECT_EQ(picture.ToText(),
              "Title: Sea\n"
              "Description: Map \"Sea\" from 0 to 10 east and from 5 to 20 north (Grid), showing Depth "
              "(-10 to 0 m) and Depth (-10 to 0 m).\n"
              "World: Grid\n"
              "Extent: west 0, south 5, east 10, north 20\n"
              "Time: \n"
              "Size: 300 x 200 pixels, 1.5 to the unit\n"
              "Layers:\n" +
                  line + u'\n' + line + u'\n');
}

TEST(MapPictureDescription, HoldsTheLayersThatArePainted) {
    TPictureMap map;
    TTestBufferedLayer* coast = map.AddBuffered(QStringLiteral("Coast"));
    EXPECT_EQ(TMapPictureDescription::LayersOf(*map.Manager).size(), 2U);
    coast->SetIsVisible(false);
    const auto layers = TMapPictureDescription::LayersOf(*map.Manager);
    ASSERT_EQ(layers.size(), 1U);
    EXPECT_EQ(layers[0].Name, "Halves");
}

} // namespace
} // namespace lmx
