#include <lmx/DataSources/Private/lmxTiledDisplayPage.h>

#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/Controls/Legend/lmxMapViewGradientLegendControl.h>
#include <lmx/DataSources/lmxTiledRasterMapLayer.h>
#include <lmx/Dialogs/lmxLayerPropertiesDialog.h>
#include <lmx/Dialogs/lmxLayerPropertiesDisplayFrame.h>
#include <lmx/Graphics/lmxGradient.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <tests/DataSources/NumberedTiles.h>
#include <tests/Support/Printers.h>
#include <tests/Support/TestBufferedLayer.h>
#include <tests/Support/TestMap.h>

#include <QLineEdit>
#include <QSlider>

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace lmx {
namespace {

using namespace tests;

class TiledDisplayPage : public testing::Test {
protected:
    TiledDisplayPage() {
        Layer->SetColorCalc(TGradientColorCalculatorFactory::GetObject(
            0, 40'000, TGradientFactory::GetObject({{0, 0xFF0000FF}, {1, 0xFFFF0000}})));
    }
    void Show() {
        Tiles = std::make_shared<TNumberedTiles>(std::vector<TTileLevel>{{90, 40}}, TMapArea(-180, 90, 180, -90));
        Layer->SetSource(Tiles);
    }
    QStringList PagesOf(const TLayerPropertiesDialog& dialog) {
        QStringList pages;
        for (const TOptionFrame* frame : dialog.GetOptionFrames())
            pages += frame->GetName();
        return pages;
    }
    template<class Part>
    Part& PartOf(const TLayerPropertiesDialog& dialog, const char* name) {
        for (const TOptionFrame* frame : dialog.GetOptionFrames())
            if (auto* const part = frame->GetFrame()->findChild<Part*>(QString::fromLatin1(name)))
                return *part;
        throw Exception(QStringLiteral("no ") + QString::fromLatin1(name));
    }
    void PaintSharp() {
        for (int round = 0; round < 3; ++round) {
            Layer->Paint(&Map.World, &Map.Viewport, Map.Bitmap);
            ASSERT_TRUE(PumpUntilRendersEnd());
        }
    }

    std::shared_ptr<ILayerManager> Manager = TLayerManagerFactory::GetObject();
    std::unique_ptr<TTiledRasterMapLayer> Layer =
        std::make_unique<TTiledRasterMapLayer>(Manager, std::make_shared<TTileCache>());
    std::shared_ptr<TNumberedTiles> Tiles;
    TTestMap Map{360, 180};
    TLayerPropertiesDialog Dialog;
};

TEST_F(TiledDisplayPage, StandsAmongThePagesOnceThereIsSomethingToDisplay) {
    Layer->InitPropertiesDialog(&Dialog);
    EXPECT_EQ(PagesOf(Dialog), (QStringList{"Extent", "Layer attributes"}));
    Show();
    TLayerPropertiesDialog dialog;
    Layer->InitPropertiesDialog(&dialog);
    EXPECT_EQ(PagesOf(dialog), (QStringList{"Extent", "Raster display", "Layer attributes"}));
    EXPECT_EQ(MessageOf<EExArgumentNilException>([&] { Layer->InitPropertiesDialog(nullptr); }),
              "TTiledRasterMapLayer.InitPropertiesDialog: argument Dialog is nil");
    Layer->SetColorCalc(nullptr);
    TLayerPropertiesDialog other;
    EXPECT_EQ(MessageOf<EArgumentException>([&] { Layer->InitPropertiesDialog(&other); }), "ColorCalc is null");
}

TEST_F(TiledDisplayPage, ApplyColoursAnewFromTheTilesAtHand) {
    Show();
    PaintSharp();
    const TColor32 before = Layer->GetBufferedBitmap()->Bitmap.Pixel(100, 100);
    EXPECT_NE(before, 0U);
    const int reads = Tiles->Reads;
    const auto calculator = Layer->GetColorCalc();
    Layer->InitPropertiesDialog(&Dialog);
    PartOf<QSlider>(Dialog, "rbOpacity").setValue(51);
    EXPECT_TRUE(Dialog.ApplyChanges());
    EXPECT_NE(Layer->GetColorCalc(), calculator);
    EXPECT_EQ(Layer->GetOpacity(), 51);
    EXPECT_NE(dynamic_cast<TMapViewGradientLegendControl*>(Layer->GetLegendComponent()), nullptr);
    PaintSharp();
    EXPECT_NE(Layer->GetBufferedBitmap()->Bitmap.Pixel(100, 100), before);
    EXPECT_EQ(Tiles->Reads, reads);
}

TEST_F(TiledDisplayPage, AppliesNothingOnceTheLayerHasGone) {
    Show();
    Layer->InitPropertiesDialog(&Dialog);
    Layer.reset();
    EXPECT_TRUE(Dialog.ApplyChanges());
    EXPECT_EQ(PagesOf(Dialog), (QStringList{"Extent", "Raster display", "Layer attributes"}));
}

TEST_F(TiledDisplayPage, WhoeverHearsOfTheColoursMayEndTheLayer) {
    Show();
    Layer->InitPropertiesDialog(&Dialog);
    const TSubscription subscription = Layer->GetOnInvalidated().Add([this](auto&&...) { Layer.reset(); });
    EXPECT_TRUE(Dialog.ApplyChanges());
    EXPECT_EQ(Layer, nullptr);
}

} // namespace
} // namespace lmx
