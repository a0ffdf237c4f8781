#include <lmx/Colour/lmxBasicPaletteColorCalculator.h>
#include <lmx/Colour/lmxColorClassCalculator.h>
#include <lmx/Colour/lmxColorKey.h>
#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/Colour/lmxMultipartGradient.h>
#include <lmx/Controls/Legend/lmxMapViewBasicPaletteLegendControl.h>
#include <lmx/Controls/Legend/lmxMapViewClassPaletteLegendControl.h>
#include <lmx/Controls/Legend/lmxMapViewGradientLegendControl.h>
#include <lmx/Controls/Legend/lmxMapViewMultipartGradientLegendControl.h>
#include <lmx/Formats/Idrisi/lmxIdrisiImages.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Graphics/lmxGradient.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Layers/IdrisiMapLayerFixture.h>
#include <tests/Support/Printers.h>

#include <QPointer>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace lmx {
namespace {

using namespace tests;

using TLayer = TCountingLayer;
using IdrisiMapLayer = TIdrisiMapLayerTest;

TEST_F(IdrisiMapLayer, NamesItsTypeAndClass) {
    EXPECT_EQ(Layer.GetLayerTypeName(), QStringLiteral("Idrisi Image (Raster)"));
    EXPECT_EQ(TIdrisiMapLayer(Manager).GetLayerClassName(), QStringLiteral("IdrisiMapLayer"));
}

TEST_F(IdrisiMapLayer, CanBeDuplicated) {
    EXPECT_EQ(Layer.GetLayerOptionFlags(),
              (TLayerOptionFlags{TLayerOptionFlag::lofDelete, TLayerOptionFlag::lofRename,
                                 TLayerOptionFlag::lofProperties, TLayerOptionFlag::lofDuplicate}));
}

TEST_F(IdrisiMapLayer, AnImageGivesItsAreaAndValueRange) {
    const auto image = NumberedImage(4, 2, {0, 90, 360, -90});
    Layer.SetImage(image.get());
    EXPECT_EQ(Layer.GetImage(), image.get());
    EXPECT_FALSE(Layer.GetOwnsImage());
    EXPECT_TRUE(Layer.GetLayerArea().Area.Equals(TMapArea(0, 90, 360, -90)));
    EXPECT_EQ(Layer.GetLayerArea().WorldSystem, TLatLonAntimeridianWorldSystemFactory::GetObject());
    EXPECT_TRUE(Layer.GetValueRange().Equals({1, 99}));
    EXPECT_EQ(Layer.Legends, 1);
}

TEST_F(IdrisiMapLayer, ThePresentImageDoesNothing) {
    const auto image = NumberedImage(2, 2, {0, 10, 10, 0});
    Layer.SetImage(image.get());
    Layer.SetImage(image.get());
    EXPECT_EQ(Layer.Legends, 1);
}

TEST_F(IdrisiMapLayer, NoImageLeavesAnEmptyRangeAndNoExports) {
    const auto image = NumberedImage(2, 2, {0, 10, 10, 0});
    Layer.SetImage(image.get());
    Layer.SetImage(nullptr);
    EXPECT_EQ(Layer.GetImage(), nullptr);
    EXPECT_TRUE(Layer.GetValueRange().Equals(TValueRange::Empty()));
    std::vector<TLayerMenuItem> items;
    Layer.GetContextMenuItems(&items);
    ASSERT_EQ(items.size(), 5U); // the area is still there
    EXPECT_FALSE(items[2].FEnabled);
    EXPECT_FALSE(items[3].FEnabled);
    EXPECT_FALSE(items[4].FEnabled);
    Layer.SetColorCalc(std::make_shared<TValueAsColor>());
    Layer.Render();
    EXPECT_EQ(Layer.GetBitmap(), nullptr);
}

TEST_F(IdrisiMapLayer, AnotherImageLeavesTheOldPictureUntilRender) {
    AddRendered(NumberedImage(2, 2, {0, 10, 10, 0}));
    const auto other = NumberedImage(3, 3, {0, 10, 10, 0});
    int invalidations = 0;
    const TSubscription count = Layer.GetOnInvalidated().Add([&](TBaseMapLayer*) { ++invalidations; });
    Layer.SetImage(other.get());
    EXPECT_EQ(invalidations, 1);
    ASSERT_NE(Layer.GetBitmap(), nullptr);
    EXPECT_EQ(Layer.GetBitmap()->GetWidth(), 2);
    Layer.Render();
    EXPECT_EQ(Layer.GetBitmap()->GetWidth(), 3);
}

/// Counts what it is asked, or its clones.
class TCountedColors final : public IBaseColorCalculator {
public:
    TColor32 GetColor(float value) const override {
        ++*Asked;
        return 0xFF000000U + static_cast<TColor32>(value);
    }
    std::shared_ptr<IBaseColorCalculator> Clone() const override { return std::make_shared<TCountedColors>(*this); }
    std::shared_ptr<int> Asked = std::make_shared<int>(0);
};

// A player gives frame after frame: each is coloured once.
TEST_F(IdrisiMapLayer, TheOldPictureIsNotColouredAgainForItsLastMoment) {
    AddRendered(NumberedImage(2, 2, {0, 10, 10, 0}));
    const auto colors = std::make_shared<TCountedColors>();
    Layer.SetColorCalc(colors);
    EXPECT_GT(*colors->Asked, 0);
    const TBitmap32* const shown = Layer.GetBitmap();
    *colors->Asked = 0;
    Layer.TakeImage(NumberedImage(2, 2, {0, 10, 10, 0}));
    EXPECT_EQ(*colors->Asked, 0);
    EXPECT_EQ(Layer.GetBitmap(), shown);
    EXPECT_TRUE(Layer.GetIsReadyToDraw());
    Layer.Invalidate();
    EXPECT_GT(*colors->Asked, 0) << "whose calculator may have changed in place";
    *colors->Asked = 0;
    const auto other = NumberedImage(2, 2, {0, 10, 10, 0});
    Layer.SetImage(other.get());
    EXPECT_GT(*colors->Asked, 0) << "SetImage colours the old data once more";
    Layer.SetImage(nullptr);
}

// What a subscriber changes in that moment shows.
TEST_F(IdrisiMapLayer, ALastMomentMayHaveOtherColours) {
    AddRendered(NumberedImage(2, 2, {0, 10, 10, 0}));
    const TColor32 before = Layer.GetBitmap()->ScanLine(0)[0];
    bool isFirst = true;
    const TSubscription ready = Layer.GetOnReadyToDrawChanged().Add([&](TBaseMapLayer*) {
        if (std::exchange(isFirst, false))
            Layer.SetOpacity(100);
    });
    Layer.TakeImage(NumberedImage(3, 3, {0, 10, 10, 0}));
    EXPECT_EQ(Layer.GetBitmap()->GetWidth(), 2);
    EXPECT_NE(Layer.GetBitmap()->ScanLine(0)[0], before);
}

TEST_F(IdrisiMapLayer, ATakenImageIsFreedWhenAnotherReplacesIt) {
    AddRendered(NumberedImage(2, 2, {0, 10, 10, 0}));
    std::weak_ptr<TAbstractImage> replaced = Layer.GetSharedImage();
    for (int frame = 0; frame < 3; ++frame) {
        Layer.TakeImage(NumberedImage(2, 2, {0, 10, 10, 0}));
        EXPECT_TRUE(replaced.expired());
        replaced = Layer.GetSharedImage();
    }
    Layer.TakeImage(nullptr);
    EXPECT_TRUE(replaced.expired());
    EXPECT_EQ(Layer.GetImage(), nullptr);
}

TEST_F(IdrisiMapLayer, AReplacedImageIsThereUntilAllHaveBeenTold) {
    AddRendered(NumberedImage(2, 2, {0, 10, 10, 0}));
    TAbstractImage* const first = Layer.GetImage();
    std::vector<float> seen;
    const auto look = [&](TBaseMapLayer*) { seen.push_back(first->GetCell(2, 2)); };
    const TSubscription invalidated = Layer.GetOnInvalidated().Add(look);
    const TSubscription area = Layer.GetOnLayerAreaChanged().Add(look);
    Layer.TakeImage(NumberedImage(3, 3, {0, 20, 20, 0}));
    EXPECT_EQ(seen, (std::vector<float>{22, 22}));
}

TEST_F(IdrisiMapLayer, AShareKeepsAReplacedImage) {
    Layer.TakeImage(NumberedImage(2, 2, {0, 10, 10, 0}));
    const std::shared_ptr<TAbstractImage> share = Layer.GetSharedImage();
    Layer.TakeImage(NumberedImage(3, 3, {0, 10, 10, 0}));
    EXPECT_EQ(share->GetCell(2, 2), 22.0F);
}

TEST_F(IdrisiMapLayer, TheHostsImageStaysTheHostsBehindOneThatWasTaken) {
    const auto mine = NumberedImage(2, 2, {0, 10, 10, 0});
    {
        TIdrisiMapLayer layer(Manager);
        layer.TakeImage(NumberedImage(3, 3, {0, 10, 10, 0}));
        EXPECT_TRUE(layer.GetOwnsImage());
        layer.SetImage(mine.get());
        EXPECT_FALSE(layer.GetOwnsImage());
        layer.TakeImage(NumberedImage(3, 3, {0, 10, 10, 0}));
        EXPECT_TRUE(layer.GetOwnsImage());
        layer.SetImage(mine.get());
    }
    EXPECT_EQ(mine->GetCell(2, 2), 22.0F);
}

TEST_F(IdrisiMapLayer, WhatADuplicateIsGivenStaysTheHosts) {
    const auto mine = NumberedImage(2, 2, {0, 10, 10, 0});
    Layer.TakeImage(NumberedImage(3, 3, {0, 10, 10, 0}));
    {
        const auto duplicate = Layer.Duplicate(Manager);
        dynamic_cast<TIdrisiMapLayer&>(*duplicate).SetImage(mine.get());
    }
    EXPECT_EQ(mine->GetCell(2, 2), 22.0F);
}

// The host has said so, before or after: whatever it gives is freed once, with the layer.
TEST_F(IdrisiMapLayer, GivenImagesGoWithTheLayerIfTheHostSaysSo) {
    std::vector<std::weak_ptr<TAbstractImage>> images;
    {
        TIdrisiMapLayer layer(Manager);
        TAbstractImage* const first = NumberedImage(2, 2, {0, 10, 10, 0}).release();
        layer.SetImage(first);
        layer.SetOwnsImage(true);
        images.emplace_back(layer.GetSharedImage());
        layer.SetImage(NumberedImage(3, 3, {0, 10, 10, 0}).release());
        EXPECT_TRUE(layer.GetOwnsImage());
        images.emplace_back(layer.GetSharedImage());
        EXPECT_EQ(first->GetCell(2, 2), 22.0F) << "replaced, and not freed yet";
        layer.SetImage(first);
        EXPECT_EQ(layer.GetImage(), first);
        layer.SetImage(nullptr);
    }
    EXPECT_TRUE(images[0].expired());
    EXPECT_TRUE(images[1].expired());
}

TEST_F(IdrisiMapLayer, ATakenImageCanBeGivenBack) {
    auto image = NumberedImage(2, 2, {0, 10, 10, 0});
    const TAbstractImage* const address = image.get();
    std::unique_ptr<TAbstractImage> mine;
    {
        TIdrisiMapLayer layer(Manager);
        layer.TakeImage(std::move(image));
        layer.SetOwnsImage(false);
        mine.reset(layer.GetImage());
    }
    EXPECT_EQ(mine.get(), address);
    EXPECT_EQ(mine->GetCell(2, 2), 22.0F);
}

TEST_F(IdrisiMapLayer, ASubscriberMayShowAnotherImageMeanwhile) {
    const auto other = NumberedImage(3, 3, {0, 20, 20, 0});
    other->getHeader()->SetMaxValue(7);
    const TSubscription replace =
        Layer.GetOnLayerAreaChanged().Add([&](TBaseMapLayer*) { Layer.SetImage(other.get()); });
    Layer.TakeImage(NumberedImage(2, 2, {0, 10, 10, 0}));
    EXPECT_EQ(Layer.GetImage(), other.get());
    EXPECT_FALSE(Layer.GetOwnsImage());
    EXPECT_TRUE(Layer.GetValueRange().Equals({1, 7})) << "that of the image that is shown";
    EXPECT_TRUE(Layer.GetLayerArea().Area.Equals({0, 20, 20, 0}));
}

TEST_F(IdrisiMapLayer, AnImageThatCannotBeReadChangesNothing) {
    AddRendered(NumberedImage(2, 2, {0, 10, 10, 0}));
    const TAbstractImage* const first = Layer.GetImage();
    auto broken = NumberedImage(2, 2, {0, 10, 10, 0});
    broken->getHeader()->SetWidth(100); // more than it holds
    EXPECT_THROW(Layer.TakeImage(std::move(broken)), Exception);
    EXPECT_EQ(Layer.GetImage(), first);
    EXPECT_NE(Layer.GetBitmap(), nullptr);
}

TEST_F(IdrisiMapLayer, TheImageThatItHasCanBecomeItsOwn) {
    auto image = NumberedImage(2, 2, {0, 10, 10, 0});
    Layer.SetImage(image.get());
    Layer.TakeImage(std::move(image));
    EXPECT_TRUE(Layer.GetOwnsImage());
    EXPECT_EQ(Layer.Legends, 1);
    EXPECT_EQ(Layer.GetImage()->GetCell(2, 2), 22.0F);
}

TEST_F(IdrisiMapLayer, ASubscriberMayFreeTheLayerThatGetsAnImage) {
    auto layer = std::make_unique<TIdrisiMapLayer>(Manager);
    const TSubscription subscription = layer->GetOnLayerAreaChanged().Add([&](TBaseMapLayer*) { layer.reset(); });
    layer->TakeImage(NumberedImage(2, 2, {0, 10, 10, 0}));
    EXPECT_EQ(layer, nullptr);
}

/// A host's layer whose legend fails.
class TFailingLegendLayer : public TIdrisiMapLayer {
public:
    using TIdrisiMapLayer::TIdrisiMapLayer;
    void CreateLegendComponent() override { throw EInvalidOperation(QStringLiteral("no legend")); }
};

TEST_F(IdrisiMapLayer, AnImageIsTheLayersOwnAlsoIfItsLegendFails) {
    TFailingLegendLayer layer(Manager);
    EXPECT_EQ(tests::MessageOf<EInvalidOperation>([&] {
                  layer.TakeImage(NumberedImage(2, 2, {0, 10, 10, 0}));
              }),
              QStringLiteral("no legend"));
    ASSERT_NE(layer.GetImage(), nullptr);
    EXPECT_TRUE(layer.GetOwnsImage());
    EXPECT_EQ(layer.GetImage()->GetCell(2, 2), 22.0F);
}

TEST_F(IdrisiMapLayer, TheImageIsNotReadAfterItIsSet) {
    auto image = NumberedImage(2, 1, {0, 10, 10, 0});
    Layer.SetImage(image.get());
    image.reset();
    Layer.SetColorCalc(std::make_shared<TValueAsColor>());
    Layer.Render();
    EXPECT_EQ(Layer.GetBitmap()->ScanLine(0)[1], 0xFF00000CU);
}

TEST_F(IdrisiMapLayer, RendersOnePixelForEachCellWithoutFlags) {
    auto image = NumberedImage(3, 2, {0, 10, 10, 0});
    image->SetCell(2, 1, -9999);
    AddRendered(std::move(image));
    const TBitmap32& bitmap = *Layer.GetBitmap();
    EXPECT_EQ(bitmap.GetWidth(), 3);
    EXPECT_EQ(bitmap.GetHeight(), 2);
    EXPECT_EQ(bitmap.ScanLine(0)[0], 0xFF00000BU);
    EXPECT_EQ(bitmap.ScanLine(0)[1], 0U);
    EXPECT_EQ(bitmap.ScanLine(1)[2], 0xFF000017U);
    EXPECT_TRUE(Layer.GetIsReadyToDraw());
}

TEST_F(IdrisiMapLayer, WithoutCalculatorRenderLeavesTheBitmapAsItIs) {
    Layer.TakeImage(NumberedImage(2, 2, {0, 10, 10, 0}));
    Layer.Render();
    EXPECT_EQ(Layer.GetBitmap(), nullptr);
    EXPECT_FALSE(Layer.GetIsReadyToDraw());
}

TEST_F(IdrisiMapLayer, OpacityScalesTheAlphaOfTheColors) {
    AddRendered(NumberedImage(1, 1, {0, 10, 10, 0}));
    Layer.SetOpacity(128);
    EXPECT_EQ(Layer.GetBitmap()->ScanLine(0)[0], 0x8000000BU);
    Layer.SetOpacity(0);
    EXPECT_EQ(Layer.GetBitmap()->ScanLine(0)[0], 0x0000000BU);
}

TEST_F(IdrisiMapLayer, AValueRangeResetsTheDefaultColorOfAGradient) {
    const auto gradient = TGradientFactory::GetObject(std::vector<TColorStop>{{0, 0xFF000000}, {1, clWhite32}});
    Layer.TakeImage(NumberedImage(1, 1, {0, 10, 10, 0}));
    Layer.SetColorCalc(TGradientColorCalculatorFactory::GetObject(0, 1, 0xFFABCDEF, gradient));
    Layer.Render();
    EXPECT_EQ(Layer.GetBitmap()->ScanLine(0)[0], 0xFFABCDEFU);
    Layer.SetValueRange({0, 2});
    EXPECT_EQ(Layer.GetBitmap()->ScanLine(0)[0], 0U);
}

TEST_F(IdrisiMapLayer, ALegendIsAskedForWithEachCalculator) {
    Layer.TakeImage(NumberedImage(1, 1, {0, 10, 10, 0}));
    Layer.SetColorCalc(std::make_shared<TValueAsColor>());
    EXPECT_EQ(Layer.Legends, 2);
    EXPECT_EQ(Layer.GetLegendComponent(), nullptr);
    Layer.Render();
    const auto gradient = TGradientFactory::GetObject(std::vector<TColorStop>{{0, 0xFFABCDEF}});
    Layer.SetColorCalc(TGradientColorCalculatorFactory::GetObject(0, 99, gradient));
    EXPECT_EQ(Layer.Legends, 3);
    EXPECT_EQ(Layer.PixelAtLegend, 0xFFABCDEFU) << "the picture comes before the legend";
}

TEST_F(IdrisiMapLayer, HandsOutTheLegendOfItsCalculator) {
    const auto gradient = TGradientFactory::GetObject(std::vector<TColorStop>{{0, 0xFFABCDEF}});
    const std::vector<TColorKeyItem> colors = {{"all", 1}};
    const auto legend = [&](const std::shared_ptr<IBaseColorCalculator>& calculator) {
        Layer.SetColorCalc(calculator);
        return Layer.GetLegendComponent();
    };
    const auto ofGradient = TGradientColorCalculatorFactory::GetObject(0, 99, gradient);
    EXPECT_EQ(legend(ofGradient), nullptr) << "no image";
    Layer.TakeImage(NumberedImage(1, 1, {0, 10, 10, 0}));
    auto* first = dynamic_cast<TMapViewGradientLegendControl*>(Layer.GetLegendComponent());
    ASSERT_TRUE(first);
    EXPECT_EQ(first->GetGradient(), ofGradient);
    EXPECT_EQ(first->parent(), nullptr);
    EXPECT_TRUE(dynamic_cast<TMapViewBasicPaletteLegendControl*>(
        legend(TBasicPaletteColorCalculatorFactory::GetObject(TValueRange(0, 1), colors, false))));
    EXPECT_TRUE(dynamic_cast<TMapViewClassPaletteLegendControl*>(
        legend(TColorClassCalculatorFactory::GetObject(TColorClassesFactory::GetObject()))));
    EXPECT_TRUE(dynamic_cast<TMapViewMultipartGradientLegendControl*>(
        legend(TMultipartGradientColorCalculatorFactory::GetObject(0, 1))));
    EXPECT_EQ(legend(std::make_shared<TValueAsColor>()), nullptr);
    EXPECT_EQ(legend(nullptr), nullptr);
    legend(ofGradient);
    Layer.SetImage(nullptr);
    EXPECT_EQ(Layer.GetLegendComponent(), nullptr);
}

// A form may own the legend and free it, and a layer takes off what it has handed out.
TEST_F(IdrisiMapLayer, ALegendInAHostsFormNeverHurts) {
    const auto gradient = TGradientFactory::GetObject(std::vector<TColorStop>{{0, 0xFFABCDEF}});
    Layer.TakeImage(NumberedImage(1, 1, {0, 10, 10, 0}));
    Layer.SetColorCalc(TGradientColorCalculatorFactory::GetObject(0, 99, gradient));
    {
        QWidget form;
        Layer.GetLegendComponent()->setParent(&form);
    }
    EXPECT_EQ(Layer.GetLegendComponent(), nullptr) << "gone with its form";
    QWidget form;
    Layer.SetColorCalc(TGradientColorCalculatorFactory::GetObject(0, 98, gradient));
    const QPointer<QWidget> shown = Layer.GetLegendComponent();
    shown->setParent(&form);
    Layer.SetColorCalc(TGradientColorCalculatorFactory::GetObject(0, 97, gradient));
    EXPECT_NE(Layer.GetLegendComponent(), shown.data()) << "another calculator, another control";
    EXPECT_TRUE(!shown || !shown->parent());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(shown, nullptr);
}

/// A calculator of a host's that meddles while it is asked.
class TMeddlingCalculator : public TValueAsColor {
public:
    explicit TMeddlingCalculator(std::function<void()> meddle) : FMeddle(std::move(meddle)) {}
    TColor32 GetColor(float value) const override {
        if (const auto meddle = std::exchange(FMeddle, nullptr))
            meddle();
        return TValueAsColor::GetColor(value);
    }
    std::shared_ptr<IBaseColorCalculator> Clone() const override {
        if (const auto meddle = std::exchange(FMeddle, nullptr))
            meddle();
        return TValueAsColor::Clone();
    }

private:
    mutable std::function<void()> FMeddle;
};

TEST_F(IdrisiMapLayer, ACalculatorMayFreeTheLayerThatRenders) {
    auto layer = std::make_unique<TIdrisiMapLayer>(Manager);
    layer->TakeImage(NumberedImage(2, 2, {0, 10, 10, 0}));
    layer->SetColorCalc(std::make_shared<TMeddlingCalculator>([&] { layer.reset(); }));
    layer->Render();
    EXPECT_EQ(layer, nullptr);
}

TEST_F(IdrisiMapLayer, ACalculatorMayReplaceTheImageThatIsRendered) {
    Layer.TakeImage(NumberedImage(2, 2, {0, 10, 10, 0}));
    Layer.SetColorCalc(std::make_shared<TMeddlingCalculator>([this] {
        Layer.TakeImage(NumberedImage(3, 3, {0, 10, 10, 0}));
    }));
    Layer.Render();
    ASSERT_NE(Layer.GetBitmap(), nullptr);
    EXPECT_EQ(Layer.GetBitmap()->ScanLine(1)[1], 0xFF000016U);
}

TEST_F(IdrisiMapLayer, ACalculatorMayFreeTheLayerThatIsDuplicated) {
    auto layer = std::make_unique<TIdrisiMapLayer>(Manager);
    layer->TakeImage(NumberedImage(2, 2, {0, 10, 10, 0}));
    layer->SetColorCalc(std::make_shared<TMeddlingCalculator>([&] { layer.reset(); }));
    const TIdrisiMapLayer& source = *layer;
    EXPECT_NE(source.Duplicate(Manager), nullptr);
    EXPECT_EQ(layer, nullptr);
}

TEST_F(IdrisiMapLayer, ADuplicateOwnsAFullCopyAndIsOpaque) {
    const auto image = NumberedImage(2, 2, {0, 10, 10, 0});
    Layer.SetImage(image.get());
    Layer.SetColorCalc(std::make_shared<TValueAsColor>());
    Layer.Render();
    Layer.SetOpacity(100);
    const auto other = TLayerManagerFactory::GetObject();
    const auto duplicate = Layer.Duplicate(other);
    auto* copy = dynamic_cast<TIdrisiMapLayer*>(duplicate.get());
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->GetLayerManager(), other);
    EXPECT_EQ(copy->GetOpacity(), 255);
    EXPECT_TRUE(copy->GetOwnsImage());
    EXPECT_NE(copy->GetImage(), image.get());
    image->SetCell(1, 1, 77);
    EXPECT_EQ(copy->GetImage()->GetCell(1, 1), 11.0F);
    ASSERT_NE(copy->GetBitmap(), nullptr);
    EXPECT_EQ(copy->GetBitmap()->ScanLine(0)[0], 0xFF00000BU);
    EXPECT_EQ(Layer.GetOpacity(), 100);
    EXPECT_FALSE(Layer.GetOwnsImage());
}

TEST_F(IdrisiMapLayer, ADuplicateTakesItsRangeFromTheImageAndTheCalculatorAsItIs) {
    Layer.TakeImage(NumberedImage(1, 1, {0, 10, 10, 0}));
    Layer.SetColorCalc(TGradientColorCalculatorFactory::GetObject(0, 1, 0xFFABCDEF, TGradientFactory::GetObject()));
    Layer.SetValueRange({5, 6});
    const auto duplicate = Layer.Duplicate(Manager);
    const auto& copy = dynamic_cast<TIdrisiMapLayer&>(*duplicate);
    EXPECT_TRUE(copy.GetValueRange().Equals({1, 99}));
    const auto calculator = std::dynamic_pointer_cast<IGradientColorCalculator>(copy.GetColorCalc());
    ASSERT_NE(calculator, nullptr);
    EXPECT_NE(calculator, Layer.GetColorCalc());
    EXPECT_EQ(calculator->GetMinVal(), 5);
    EXPECT_EQ(calculator->GetMaxVal(), 6);
}

TEST_F(IdrisiMapLayer, ALayerWithoutImageDuplicatesToOneWithout) {
    const auto duplicate = Layer.Duplicate(Manager);
    EXPECT_EQ(dynamic_cast<TIdrisiMapLayer&>(*duplicate).GetImage(), nullptr);
    EXPECT_FALSE(duplicate->GetIsReadyToDraw());
}

} // namespace
} // namespace lmx
