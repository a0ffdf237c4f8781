#include <lmx/Controls/Legend/lmxVectorFileLayerLegendControl.h>
#include <lmx/Coordinates/wskWorld.h>
#include <lmx/Formats/Idrisi/lmxVector.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Layers/lmxLayerManagerConfig.h>
#include <lmx/Layers/lmxVectorFileLayer.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Formats/ImageFiles.h>
#include <tests/Layers/PlainOutlines.h>
#include <tests/Support/CoordinatePrinters.h>
#include <tests/Support/Printers.h>
#include <tests/Support/ScriptedServices.h>
#include <tests/Support/TestBufferedLayer.h>
#include <tests/Support/VectorBytes.h>

#include <QBuffer>

#include <QPointer>

#include <gtest/gtest.h>

namespace lmx {
namespace {

using namespace tests;
using enum TVectorObjectType;

constexpr TColor32 Red = 0xFFFF0000;

std::unique_ptr<TVector> Load(QByteArray bytes) {
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    auto vector = std::make_unique<TVector>();
    vector->LoadFromStream(buffer);
    return vector;
}

std::unique_ptr<TVector> Line(float latitude) {
    return Load(TVectorBytes(vtLine).Line(1, {{22, latitude}, {28, latitude}}).File());
}

class VectorFileLayer : public testing::Test {
protected:
    VectorFileLayer() {
        Viewport.SetViewSize({60, 40});
        Viewport.SetScale(2);
        Viewport.SetCenter({25, 35});
        Layer->SetColor(Red);
    }
    ~VectorFileLayer() override {
        Layer = nullptr;
        EXPECT_TRUE(PumpUntilRendersEnd());
    }

    void Paint() {
        Target.Clear(0);
        Layer->Paint(&World, &Viewport, Target);
    }
    void PaintAndRender() {
        Paint();
        ASSERT_TRUE(PumpUntilRendersEnd());
        ASSERT_NE(Layer->GetBufferedBitmap(), nullptr);
    }
    // The row of the picture that holds a line.
    int RowOfLine() const {
        for (int y = 0; y < 40; ++y)
            if (Layer->GetBufferedBitmap()->Bitmap.Pixel(30, y) == Red)
                return y;
        return -1;
    }

    std::shared_ptr<ILayerManager> Manager = TLayerManagerFactory::GetObject();
    std::unique_ptr<TVectorFileLayer> Layer = std::make_unique<TVectorFileLayer>(Manager);
    TWorld World{TLatLonWorldSystemFactory::GetObject()};
    TWorldViewport Viewport{&World};
    TBitmap32 Target{60, 40};
};

TEST_F(VectorFileLayer, BeginsWithoutAFile) {
    EXPECT_EQ(Layer->GetVectorFile(), nullptr);
    EXPECT_FALSE(Layer->GetHasContent());
    EXPECT_EQ(Layer->GetLayerTypeName(), "Vector");
    EXPECT_EQ(Layer->GetLayerClassName(), "VectorFileLayer");
    EXPECT_TRUE(Layer->GetLayerOptionFlags().Contains(TLayerOptionFlag::lofDuplicate));
    EXPECT_TRUE(Layer->GetLayerOptionFlags().Contains(TLayerOptionFlag::lofProperties));
    Paint();
    ASSERT_TRUE(PumpUntilRendersEnd());
    EXPECT_EQ(Layer->GetBufferedBitmap(), nullptr);
}

TEST_F(VectorFileLayer, AFileIsDrawnAndSetsNoArea) {
    Layer->SetVectorFile(Line(35));
    EXPECT_TRUE(Layer->GetHasContent());
    EXPECT_TRUE(Layer->GetIsReadyToDraw());
    EXPECT_EQ(Layer->GetLayerArea().WorldSystem, nullptr);
    PaintAndRender();
    TBitmap32 plain(60, 40);
    plain.SetPenColor(Red);
    DrawPlainly(*Layer->GetVectorFile()->GetData(), Viewport.GetLocal(), plain);
    EXPECT_EQ(CountPixels(plain), 12);
    EXPECT_TRUE(SamePixels(Layer->GetBufferedBitmap()->Bitmap, plain));
}

TEST_F(VectorFileLayer, TheOldPictureIsShownUntilThereIsANewOne) {
    Layer->SetVectorFile(Line(35));
    PaintAndRender();
    EXPECT_EQ(RowOfLine(), 20);
    const TBufferedBitmap* const picture = Layer->GetBufferedBitmap();
    int invalidations = 0;
    const auto subscription = Layer->GetOnInvalidated().Add([&](TBaseMapLayer*) { ++invalidations; });
    Layer->SetVectorFile(Line(30));
    EXPECT_EQ(invalidations, 1);
    EXPECT_EQ(Layer->GetBufferedBitmap(), picture);
    Paint();
    EXPECT_EQ(Target.Pixel(29, 20), Red) << "the old line";
    ASSERT_TRUE(PumpUntilRendersEnd());
    EXPECT_EQ(RowOfLine(), 30);
}

TEST_F(VectorFileLayer, NoFileIsAFileToo) {
    Layer->SetVectorFile(Line(35));
    Layer->SetVectorFile(nullptr);
    EXPECT_FALSE(Layer->GetHasContent());
    int invalidations = 0;
    const auto subscription = Layer->GetOnInvalidated().Add([&](TBaseMapLayer*) { ++invalidations; });
    Layer->SetVectorFile(nullptr);
    EXPECT_EQ(invalidations, 0);
    Layer->SetVectorFile(Line(35));
    Layer->DeleteVectorFile();
    EXPECT_EQ(Layer->GetVectorFile(), nullptr);
    EXPECT_EQ(invalidations, 1) << "deleting tells nobody";
}

TEST_F(VectorFileLayer, AnOutlineOutlivesItsFileUntilItIsDropped) {
    for (const bool tells : {true, false}) {
        Layer->SetVectorFile(Line(35));
        PaintAndRender();
        const TBufferedBitmap* const picture = Layer->GetBufferedBitmap();
        ASSERT_NE(picture, nullptr);
        if (tells)
            Layer->SetVectorFile(nullptr);
        else
            Layer->DeleteVectorFile();
        Viewport.SetTranslation({-3, 0}); // a pan
        PaintAndRender();
        EXPECT_EQ(Layer->GetBufferedBitmap(), picture);
        Layer->SetColor(tells ? 0xFF00FF00 : 0xFF0000FF);
        EXPECT_EQ(Layer->GetBufferedBitmap(), nullptr);
    }
}

TEST_F(VectorFileLayer, AFileOfPointsGivesAnEmptyPicture) {
    Layer->SetVectorFile(Load(TVectorBytes(vtPoint).Point(1, {25, 35}).File()));
    PaintAndRender();
    EXPECT_EQ(CountPixels(Layer->GetBufferedBitmap()->Bitmap), 0);
}

TEST_F(VectorFileLayer, AFileMayGoWhileItIsRendered) {
    Layer->SetVectorFile(Line(35));
    Paint();
    Layer->DeleteVectorFile();
    ASSERT_TRUE(PumpUntilRendersEnd());
    ASSERT_NE(Layer->GetBufferedBitmap(), nullptr);
    EXPECT_EQ(RowOfLine(), 20);
}

TEST_F(VectorFileLayer, ADuplicateReadsTheFileAgain) {
    const TImageFolder folder;
    folder.Write("line.vct", TVectorBytes(vtLine).Line(7, {{22, 35}, {28, 35}}).File());
    Layer->SetVectorFile(std::make_unique<TVector>(folder.Path("line.vct")));
    Layer->SetLayerName(QStringLiteral("line"));
    const auto other = TLayerManagerFactory::GetObject();
    const auto copy = Layer->Duplicate(other);
    auto* duplicate = dynamic_cast<TVectorFileLayer*>(copy.get());
    ASSERT_NE(duplicate, nullptr);
    EXPECT_NE(duplicate->GetVectorFile(), Layer->GetVectorFile());
    EXPECT_EQ(duplicate->GetVectorFile()->GetFileName(), folder.Path("line.vct"));
    EXPECT_EQ(duplicate->GetVectorFile()->GetFeature(0).GetId(), 7);
    EXPECT_EQ(duplicate->GetColor(), Red);
    EXPECT_EQ(duplicate->GetLayerName(), "line");
    EXPECT_EQ(duplicate->GetLayerManager(), other);
    folder.Write("line.vct", "damaged");
    EXPECT_EQ(MessageOf<EFileFormatException>([&] { Layer->Duplicate(other); }),
              folder.Path("line.vct") + ": its objects are of an unknown type");
    EXPECT_EQ(other->GetLayers().Count(), 0U);
}

TEST_F(VectorFileLayer, ADuplicateOfAVectorFromAStreamIsACopy) {
    Layer->SetVectorFile(Line(35));
    const auto copy = Layer->Duplicate(Manager);
    auto* duplicate = dynamic_cast<TVectorFileLayer*>(copy.get());
    ASSERT_NE(duplicate, nullptr);
    EXPECT_NE(duplicate->GetVectorFile(), Layer->GetVectorFile());
    EXPECT_EQ(duplicate->GetVectorFile()->GetFileName(), "");
    EXPECT_EQ(duplicate->GetVectorFile()->GetFeature(0).GetId(), 1);
    Layer->DeleteVectorFile();
    EXPECT_EQ(duplicate->GetVectorFile()->GetFeature(0).GetPoint(1), (TGeoPoint{28, 35}));
}

TEST_F(VectorFileLayer, ADuplicateOfAnEmptyLayerIsEmpty) {
    EXPECT_FALSE(Layer->Duplicate(Manager)->GetHasContent());
}

TEST_F(VectorFileLayer, ItsLegendIsItsOwnAndItAsksNobodyForOne) {
    struct TFactory : ILayerComponentFactory {
        bool GetLegendComponent(TBaseMapLayer*, TBaseLegendControl*&) override {
            ++Asked;
            return false;
        }
        int Asked = 0;
    };
    const auto factory = std::make_shared<TFactory>();
    Manager->GetConfig()->SetLayerComponentFactory(factory);
    Layer->SetVectorFile(Line(35));
    EXPECT_EQ(factory->Asked, 0);
    auto* legend = dynamic_cast<TVectorFileLayerLegendControl*>(Layer->GetLegendComponent());
    ASSERT_TRUE(legend);
    EXPECT_EQ(legend->GetShapeColor(), WinColor(Layer->GetColor()));
}

TEST_F(VectorFileLayer, AColorThatIsChosenInTheLegendIsTheLayers) {
    Layer->SetColor(Red);
    auto* legend = dynamic_cast<TVectorFileLayerLegendControl*>(Layer->GetLegendComponent());
    ASSERT_TRUE(legend);
    const QPointer<QWidget> old = legend;
    tests::TScriptedColorChooser chooser;
    chooser->Answers = {0xFF123456};
    legend->ChooseColor();
    EXPECT_EQ(Layer->GetColor(), 0xFF123456U);
    EXPECT_NE(Layer->GetLegendComponent(), old.data());
    EXPECT_EQ(Layer->GetBufferedBitmap(), nullptr);
}

} // namespace
} // namespace lmx
