#include <lmx/Colour/lmxBasicPaletteColorCalculator.h>
#include <lmx/Colour/lmxColorClassCalculator.h>
#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/Formats/Idrisi/lmxVector.h>
#include <lmx/Formats/Shapes/lmxShpFile.h>
#include <lmx/Graphics/lmxGradient.h>
#include <lmx/Layers/Objects/lmxLegendObjectLayerItem.h>
#include <lmx/Layers/Objects/lmxRectangleObjectTypeItem.h>
#include <lmx/Layers/Objects/lmxTextBoxObjectLayerItem.h>
#include <lmx/Layers/lmxShapeFileLayer.h>
#include <lmx/Layers/lmxVectorFileLayer.h>
#include <tests/MapDoc/DocumentMap.h>
#include <tests/Support/CoordinatePrinters.h>
#include <tests/Support/VectorBytes.h>

#include <gtest/gtest.h>

// A whole map goes into a document and comes back.

namespace lmx {
namespace {

using namespace tests;

class MapDocRoundTrip : public testing::Test {
protected:
    void SetUp() override {
        FMap.Manager->SetTitle(QStringLiteral("Whole"));
        FMap.View.GetViewport()->SetScale(1.5L);
        AddRasters();
        AddOverlays();
        AddMarks();
    }

    void AddRasters() {
        AddImageLayer(FMap, SmallImage(),
                      TGradientColorCalculatorFactory::GetObject(
                          1, 4, 7, TGradientFactory::GetObject({{0, 0xFF0000FF}, {1, 0xFFFF0000}})),
                      QStringLiteral("Gradient"))
            ->SetIsVisible(false);
        AddImageLayer(
            FMap, SmallImage(),
            TBasicPaletteColorCalculatorFactory::GetObject(
                TValueRange(1, 4), {{QStringLiteral("low"), 0xFF000001}, {QStringLiteral("high"), 0xFF000002}}, false),
            QStringLiteral("Palette"));
        AddImageLayer(FMap, SmallImage(),
                      TColorClassCalculatorFactory::GetObject({{QStringLiteral("all"), 0, 5, 0xFF123456}}),
                      QStringLiteral("Classes"))
            ->SetOpacity(100);
    }
    void AddOverlays() {
        auto vectors = std::make_unique<TVectorFileLayer>(FMap.Manager);
        vectors->SetLayerName(QStringLiteral("Vector"));
        vectors->SetVectorFile(std::make_unique<TVector>(
            FFolder.Write("lines.vct", TVectorBytes(TVectorObjectType::vtLine).Line(1, {{1, 2}, {3, 4}}).File())));
        vectors->SetColor(0xFF00FF00);
        FMap.Manager->GetLayers().Add(std::move(vectors));
        auto shapes = std::make_unique<TShapeFileLayer>(FMap.Manager);
        shapes->SetLayerName(QStringLiteral("Shapes"));
        shapes->TakeShpFile(
            TShpFile::LoadFromFile(FFolder.Write("places.shp", TShapeBytes().Point(1, {3, 4}).File(1)), nullptr));
        shapes->SetColor(0xFF0000FF);
        FMap.Manager->GetLayers().Add(std::move(shapes));
    }
    void AddMarks() {
        FMap.Rulers().Add(std::make_unique<TRulerItem>(TRulerOrientation::roHorizontal, 12.25L, 9));
        FMap.Points().GetPoints().Add(std::make_unique<TInfoQueryPoint>(nullptr, TMapPoint(1.5L, -2.5L), 8));
        auto& objects = FMap.Objects().GetObjects();
        auto legend = std::make_unique<TLegendObjectLayerItem>(&FMap.Objects());
        legend->SetLegendLayer(FMap.Manager->GetLayers()[1]);
        objects.Add(std::move(legend));
        auto text = std::make_unique<TTextBoxObjectLayerItem>(&FMap.Objects());
        text->SetText(QStringLiteral("Hello"));
        objects.Add(std::move(text));
        objects.Add(std::make_unique<TRectangleObjectTypeItem>(&FMap.Objects()));
    }

    TDocumentFolder FFolder;
    TDocumentMap FMap;
};

TEST_F(MapDocRoundTrip, AWholeMapComesBack) {
    const TWithPoint point;
    FMap.Save(FFolder.Path(), erpEmbedIfPossible);
    TDocumentMap other(false);
    other.Load(FFolder.Path());
    EXPECT_EQ(other.Manager->GetTitle(), "Whole");
    EXPECT_EQ(other.View.GetViewport()->GetScale(), 1.5L);
    EXPECT_EQ(other.LayerNames(), (QStringList{"Gradient", "Palette", "Classes", "Vector", "Shapes"}));
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(other.Manager->GetLayers()[i]->GetLayerID(), FMap.Manager->GetLayers()[i]->GetLayerID()) << i;
        EXPECT_EQ(other.Manager->GetLayers()[i]->GetIsVisible(), i != 0);
        EXPECT_EQ(other.Manager->GetLayers()[i]->GetLayerArea(), FMap.Manager->GetLayers()[i]->GetLayerArea()) << i;
    }
    for (int i = 0; i < 3; ++i)
        for (int cell = 0; cell < 4; ++cell)
            EXPECT_EQ(other.LayerAt<TIdrisiMapLayer>(i).GetBitmap()->Pixel(cell % 2, cell / 2),
                      FMap.LayerAt<TIdrisiMapLayer>(i).GetBitmap()->Pixel(cell % 2, cell / 2));
    EXPECT_EQ(other.LayerAt<TIdrisiMapLayer>(2).GetOpacity(), 100);
    EXPECT_EQ(other.LayerAt<TVectorFileLayer>(3).GetVectorFile()->GetCount(), 1);
    EXPECT_EQ(other.LayerAt<TVectorFileLayer>(3).GetColor(), 0xFF00FF00);
    EXPECT_EQ(other.LayerAt<TShapeFileLayer>(4).GetShpFile()->GetPointCount(), 1U);
    EXPECT_EQ(other.Rulers().GetHRulers()[0]->GetLocation(), 12.25L);
    EXPECT_EQ(other.Points().GetPoints()[0]->GetPoint(), TMapPoint(1.5L, -2.5L));
    ASSERT_EQ(other.Objects().GetObjects().Count(), 3);
    EXPECT_EQ(dynamic_cast<TLegendObjectLayerItem&>(*other.Objects().GetObjects()[0]).GetLegendLayer(),
              other.Manager->GetLayers()[1]);
    EXPECT_EQ(dynamic_cast<TTextBoxObjectLayerItem&>(*other.Objects().GetObjects()[1]).GetText(), "Hello");
    EXPECT_EQ(other.Objects().GetObjects()[2]->GetObjectClassType(), "RECTANGLE");
}

// What one save keeps the next one keeps, too, but for the crossing of borders and backgrounds.
TEST_F(MapDocRoundTrip, ASecondSaveGivesTheSameLayers) {
    const TWithPoint point;
    FMap.Objects().GetObjects().Clear();
    FMap.View.SetCenter({});
    FMap.Save(FFolder.Path("a"), erpEmbedIfPossible);
    TDocumentMap other(false);
    other.Load(FFolder.Path("a"));
    other.Objects().SetPrevViewSize(FMap.Objects().GetPrevViewSize());
    other.Save(FFolder.Path("b"), erpEmbedIfPossible);
    EXPECT_EQ(ManifestOf(FFolder.Path("a")), ManifestOf(FFolder.Path("b")));
}

TEST_F(MapDocRoundTrip, ALegendWhoseLayerIsLostComesBackWithoutOne) {
    const TWithPoint point;
    const QString path = FFolder.Path("image.rst");
    SmallImage()->SaveToFile(path);
    auto image = std::make_unique<TRealImage>(path, true);
    FMap.LayerAt<TIdrisiMapLayer>(1).TakeImage(std::move(image));
    FMap.Save(FFolder.Path());
    ASSERT_TRUE(QFile::remove(path));
    TDocumentMap other;
    other.Load(FFolder.Path());
    EXPECT_EQ(other.LayerNames(), (QStringList{"Gradient", "Classes", "Vector", "Shapes"}));
    ASSERT_EQ(other.Objects().GetObjects().Count(), 3);
    EXPECT_EQ(dynamic_cast<TLegendObjectLayerItem&>(*other.Objects().GetObjects()[0]).GetLegendLayer(), nullptr);
    EXPECT_EQ(other.LayerAt<TVectorFileLayer>(2).GetVectorFile(), nullptr); // linked: without shapes
}

// Numbers that are joined by commas are torn apart at decimal commas: the layers are lost, and the map is loaded.
TEST_F(MapDocRoundTrip, UnderADecimalCommaTheLayersAreLost) {
    const TFormatSettingsScope comma({u','});
    FMap.Save(FFolder.Path());
    EXPECT_TRUE(ManifestOf(FFolder.Path()).contains(QStringLiteral("zoomScale=\"1,5\"")));
    TDocumentMap other(false);
    other.Load(FFolder.Path());
    EXPECT_EQ(other.Manager->GetTitle(), "Whole");
    EXPECT_EQ(other.View.GetViewport()->GetScale(), 1.5L);
    EXPECT_EQ(other.Manager->GetLayers().Count(), 0);
    EXPECT_EQ(other.Rulers().GetHRulers().Count(), 0);
}

TEST_F(MapDocRoundTrip, ADocumentOfAnotherLocaleKeepsWhatReadsTheSame) {
    {
        const TWithPoint point;
        FMap.Save(FFolder.Path());
    }
    const TFormatSettingsScope comma({u','});
    TDocumentMap other;
    EXPECT_EQ(MessageOf<EConvertError>([&] { other.Load(FFolder.Path()); }),
              "'1.5' is not a valid floating point value");
    EXPECT_EQ(other.Manager->GetTitle(), "");
}

} // namespace
} // namespace lmx
