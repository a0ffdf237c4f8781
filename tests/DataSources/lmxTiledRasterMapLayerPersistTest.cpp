#include <lmx/DataSources/lmxTiledRasterMapLayerPersist.h>

#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/DataSources/lmxGeoTiffTiles.h>
#include <lmx/DataSources/lmxTiledRasterMapLayer.h>
#include <lmx/Graphics/lmxGradient.h>
#include <tests/DataSources/NumberedTiles.h>
#include <tests/DataSources/TiffFiles.h>
#include <tests/MapDoc/DocumentMap.h>

#include <gtest/gtest.h>

#include <memory>

namespace lmx {
namespace {

using namespace tests;

class TiledRasterMapLayerPersist : public testing::Test, TWithPoint {
protected:
    TiledRasterMapLayerPersist() {
        RegisterDataSourceLayers(FLayers, FPersists);
        TTiffOf16Bits().Write(FPath);
    }

    QString Written(const TTiledRasterMapLayer& layer) {
        const TXmlDocument document(QStringLiteral("data"));
        TMapDocResourcePersist resources(FFolder.Path("archive"), pmWrite);
        TTiledRasterMapLayerPersist().WriteLayer(resources, &layer, document.GetRoot(), erpEmbedIfPossible);
        return document.ToText().mid(static_cast<int>(qstrlen("<?xml version=\"1.0\"?>")));
    }
    template<class Failure = Exception>
    QString RefusalOf(const QString& children) {
        TMapDocResourcePersist(FFolder.Path("archive"), pmWrite).Finish();
        TMapDocResourcePersist resources(FFolder.Path("archive"), pmRead);
        const auto document = TXmlDocument::FromText(QStringLiteral("<data>%1</data>").arg(children));
        TTiledRasterMapLayer layer(FManager);
        return MessageOf<Failure>(
            [&] { TTiledRasterMapLayerPersist().ReadLayer(resources, &layer, document.GetRoot()); });
    }

    TDocumentFolder FFolder;
    const QString FPath = FFolder.Path("heights.tif");
    std::shared_ptr<ILayerFactory> FLayers = DefaultLayerFactory();
    std::shared_ptr<IMapDocLayerPersistFactory> FPersists = DefaultPersistFactory();
    std::shared_ptr<ILayerManager> FManager = TLayerManagerFactory::GetObject();
};

TEST_F(TiledRasterMapLayerPersist, ADocumentKeepsItByItsFile) {
    TDocumentMap map;
    auto layer = std::make_unique<TTiledRasterMapLayer>(map.Manager);
    layer->SetColorCalc(TGradientColorCalculatorFactory::GetObject(
        5, 60, TGradientFactory::GetObject({{0, 0xFF0000FF}, {1, 0xFFFF0000}})));
    layer->SetOpacity(99);
    layer->SetClimateVariable(TClimateVariable::cvOrog);
    layer->SetLayerName(QStringLiteral("Heights"));
    layer->SetSource(std::make_shared<TGeoTiffTiles>(FPath));
    map.Manager->GetLayers().Add(std::move(layer));
    const QString document = FFolder.Path("map.lmx");
    TMapDocWriter(QStringLiteral("Test"), FPersists).Write(document, &map.View, erpEmbedIfPossible);
    TDocumentMap other;
    TMapDocReader(QStringLiteral("Test"), FLayers, FPersists).Read(document, &other.View);
    const auto& read = other.LayerAt<TTiledRasterMapLayer>(0);
    EXPECT_EQ(read.GetLayerName(), "Heights");
    EXPECT_EQ(read.GetOpacity(), 99);
    ASSERT_TRUE(read.GetClimateVariable().GetHasValue());
    EXPECT_EQ(read.GetClimateVariable().GetValue(), TClimateVariable::cvOrog);
    const auto calculator = std::dynamic_pointer_cast<IGradientColorCalculator>(read.GetColorCalc());
    ASSERT_NE(calculator, nullptr);
    EXPECT_EQ(calculator->GetMinVal(), 5);
    EXPECT_EQ(calculator->GetMaxVal(), 60);
    ASSERT_NE(read.GetSource(), nullptr);
    EXPECT_EQ(read.GetSource()->GetFileName(), FPath);
    EXPECT_EQ(read.GetLayerArea().Area, TMapArea(-180, 90, 180, -90));
}

TEST_F(TiledRasterMapLayerPersist, WritesALinkWhateverThePolicy) {
    TTiledRasterMapLayer layer(FManager);
    layer.SetSource(std::make_shared<TGeoTiffTiles>(FPath));
    EXPECT_EQ(Written(layer), QStringLiteral("<data><resource>linked</resource><filename>%1</filename>"
                                             "<band>1</band><opacity>255</opacity></data>")
                                  .arg(FPath));
}

TEST_F(TiledRasterMapLayerPersist, ARasterOfNoFileCannotBeSaved) {
    TTiledRasterMapLayer layer(FManager);
    layer.SetLayerName(QStringLiteral("Heights"));
    EXPECT_EQ(MessageOf<EInvalidOperation>([&] { Written(layer); }), "Layer Heights: no tiled raster of a file");
    layer.SetSource(std::make_shared<TNumberedTiles>(std::vector<TTileLevel>{{4, 4}}, TMapArea(0, 1, 1, 0)));
    EXPECT_EQ(MessageOf<EInvalidOperation>([&] { Written(layer); }), "Layer Heights: no tiled raster of a file");
}

TEST_F(TiledRasterMapLayerPersist, RefusesWhatIsNoSuchLayer) {
    const QString file = QStringLiteral("<filename>%1</filename>").arg(FPath);
    EXPECT_EQ(RefusalOf(QString()), "Missing required node: resource");
    EXPECT_EQ(RefusalOf("<resource>embedded</resource>"), "Unsupported resource type: embedded");
    EXPECT_EQ(RefusalOf("<resource>linked</resource>"), "Missing required node: opacity");
    EXPECT_EQ(RefusalOf("<resource>linked</resource><opacity>255</opacity>"), "Missing required node: filename");
    EXPECT_EQ(RefusalOf("<resource>linked</resource><opacity>255</opacity>" + file), "Missing required node: band");
    EXPECT_EQ(RefusalOf<EConvertError>("<resource>linked</resource><opacity>x</opacity>" + file),
              "'x' is not a valid integer value");
    EXPECT_TRUE(RefusalOf<EClimateFile>("<resource>linked</resource><opacity>255</opacity><band>7</band>" + file)
                    .endsWith(QStringLiteral("has no band 7")));
    EXPECT_TRUE(RefusalOf<EClimateFile>("<resource>linked</resource><opacity>255</opacity><band>1</band>"
                                        "<filename>/dev/zero</filename>")
                    .startsWith(QStringLiteral("/dev/zero")));
}

TEST_F(TiledRasterMapLayerPersist, AnotherLayerIsAnError) {
    TIdrisiMapLayer layer(FManager);
    const TXmlDocument document(QStringLiteral("data"));
    TMapDocResourcePersist resources(FFolder.Path("archive"), pmWrite);
    TTiledRasterMapLayerPersist persist;
    EXPECT_EQ(MessageOf<EArgumentException>([&] { persist.ReadLayer(resources, &layer, document.GetRoot()); }),
              "Layer");
    EXPECT_EQ(MessageOf<EArgumentException>(
                  [&] { persist.WriteLayer(resources, &layer, document.GetRoot(), erpKeepExternal); }),
              "Layer");
}

TEST_F(TiledRasterMapLayerPersist, IsRegisteredOnce) {
    EXPECT_EQ(MessageOf<EListError>([&] { RegisterDataSourceLayers(FLayers, FPersists); }), "Duplicates not allowed");
    EXPECT_EQ(MessageOf<EExArgumentNilException>([&] { RegisterDataSourceLayers(nullptr, FPersists); }),
              "RegisterDataSourceLayers: argument Layers is nil");
    EXPECT_EQ(MessageOf<EExArgumentNilException>([&] { RegisterDataSourceLayers(FLayers, nullptr); }),
              "RegisterDataSourceLayers: argument Persists is nil");
}

} // namespace
} // namespace lmx
