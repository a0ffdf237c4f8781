#include <lmx/Colour/lmxBasicPaletteColorCalculator.h>
#include <lmx/Colour/lmxColorClassCalculator.h>
#include <lmx/Colour/lmxColorKey.h>
#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/Colour/lmxMultipartGradient.h>
#include <lmx/Controls/Legend/lmxMapViewBasicPaletteLegendControl.h>
#include <lmx/Controls/Legend/lmxMapViewClassPaletteLegendControl.h>
#include <lmx/Controls/Legend/lmxMapViewGradientLegendControl.h>
#include <lmx/Controls/Legend/lmxMapViewMultipartGradientLegendControl.h>
#include <lmx/Coordinates/wskWorld.h>
#include <lmx/Formats/Idrisi/lmxIdrisiImageExporter.h>
#include <lmx/Formats/Idrisi/lmxIdrisiImages.h>
#include <lmx/Formats/Idrisi/lmxImageFactory.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Graphics/lmxGradient.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Support/Printers.h>
#include <tests/Support/ScriptedServices.h>
#include <tests/Support/TestWorldSystem.h>

#include <QFileInfo>
#include <QTemporaryDir>

#include <QPointer>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace lmx {
namespace {

constexpr TColor32 White = 0xFFFFFFFF;

/// An image of `columns` x `rows` whose cell at (column, row) holds 10 * row + column.
std::unique_ptr<TRealImage> NumberedImage(int columns, int rows, const TMapArea& area) {
    TImageHeader header;
    header.SetWidth(columns);
    header.SetHeight(rows);
    header.SetMinX(static_cast<float>(area.Left));
    header.SetMaxX(static_cast<float>(area.Right));
    header.SetMinY(static_cast<float>(area.Bottom));
    header.SetMaxY(static_cast<float>(area.Top));
    header.SetRefSystem(QStringLiteral("latlong"));
    header.SetMinValue(1);
    header.SetMaxValue(99);
    auto image = std::make_unique<TRealImage>(QString(), header);
    for (int row = 1; row <= rows; ++row)
        for (int column = 1; column <= columns; ++column)
            image->SetCell(column, row, static_cast<float>(10 * row + column));
    return image;
}

/// Says a value by an opaque colour: 0xFF000000 plus the value.
class TValueAsColor : public IBaseColorCalculator {
public:
    TColor32 GetColor(float value) const override { return 0xFF000000U + static_cast<TColor32>(value); }
    std::shared_ptr<IBaseColorCalculator> Clone() const override { return std::make_shared<TValueAsColor>(); }
};

class TLayer : public TIdrisiMapLayer {
public:
    using TIdrisiMapLayer::TIdrisiMapLayer;
    void CreateLegendComponent() override {
        ++Legends;
        PixelAtLegend = GetBitmap() ? GetBitmap()->Pixel(0, 0) : 0;
        TIdrisiMapLayer::CreateLegendComponent();
    }
    int Legends = 0;
    TColor32 PixelAtLegend = 0; ///< of the picture, when the last legend was made
};

class IdrisiMapLayer : public testing::Test {
protected:
    TLayer& AddRendered(std::unique_ptr<TRealImage> image) {
        Layer.TakeImage(std::move(image));
        Layer.SetColorCalc(std::make_shared<TValueAsColor>());
        Layer.Render();
        return Layer;
    }

    std::shared_ptr<ILayerManager> Manager = TLayerManagerFactory::GetObject();
    TLayer Layer{Manager};
};

/// A view of a world at a scale, its top left corner at the world's.
struct TView {
    TView(const std::shared_ptr<IWorldSystem>& system, extended scale, int width, int height)
        : World(system),
          Viewport(&World),
          Buffer(width, height) {
        Viewport.SetViewSize({width, height});
        Viewport.SetScale(scale);
        Viewport.SetTranslation({0, 0});
        Buffer.Clear(White);
    }
    std::vector<TColor32> Row(int y) const { return {Buffer.ScanLine(y), Buffer.ScanLine(y) + Buffer.GetWidth()}; }

    TWorld World;
    TWorldViewport Viewport;
    TBitmap32 Buffer;
};

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
    const auto gradient = TGradientFactory::GetObject(std::vector<TColorStop>{{0, 0xFF000000}, {1, White}});
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

TEST_F(IdrisiMapLayer, PaintsTheCellsWhereTheyLie) {
    AddRendered(NumberedImage(2, 2, {-180, 90, 180, -90}));
    TView view(TLatLonWorldSystemFactory::GetObject(), 1.0L / 90, 4, 2);
    Layer.Paint(&view.World, &view.Viewport, view.Buffer);
    EXPECT_EQ(view.Row(0), (std::vector<TColor32>{0xFF00000B, 0xFF00000B, 0xFF00000C, 0xFF00000C}));
    EXPECT_EQ(view.Row(1), (std::vector<TColor32>{0xFF000015, 0xFF000015, 0xFF000016, 0xFF000016}));
}

TEST_F(IdrisiMapLayer, CutsARasterOf0To360AtTheSeamOfAMeridianWorld) {
    AddRendered(NumberedImage(4, 1, {0, 90, 360, -90}));
    TView view(TLatLonWorldSystemFactory::GetObject(), 1.0L / 90, 4, 2);
    Layer.Paint(&view.World, &view.Viewport, view.Buffer);
    EXPECT_EQ(view.Row(0), (std::vector<TColor32>{0xFF00000D, 0xFF00000E, 0xFF00000B, 0xFF00000C}));
}

TEST_F(IdrisiMapLayer, CutsARasterOf180To180AtTheSeamOfAnAntimeridianWorld) {
    AddRendered(NumberedImage(4, 1, {-180, 90, 180, -90}));
    TView view(TLatLonAntimeridianWorldSystemFactory::GetObject(), 1.0L / 90, 4, 2);
    Layer.Paint(&view.World, &view.Viewport, view.Buffer);
    EXPECT_EQ(view.Row(1), (std::vector<TColor32>{0xFF00000D, 0xFF00000E, 0xFF00000B, 0xFF00000C}));
}

struct THalfColumnRow {
    int Columns;
    std::vector<TColor32> Pixels;
};

class HalfColumn : public testing::TestWithParam<THalfColumnRow> {};

TEST_P(HalfColumn, GoesToTheEvenSideOfTheCut) {
    const auto manager = TLayerManagerFactory::GetObject();
    TIdrisiMapLayer layer(manager);
    layer.TakeImage(NumberedImage(GetParam().Columns, 1, {0, 90, 360, -90}));
    layer.SetColorCalc(std::make_shared<TValueAsColor>());
    layer.Render();
    TView view(TLatLonWorldSystemFactory::GetObject(), 1.0L / 30, 12, 6);
    layer.Paint(&view.World, &view.Viewport, view.Buffer);
    std::vector<TColor32> columns = view.Row(0);
    for (TColor32& column : columns)
        column &= 0xFF;
    EXPECT_EQ(columns, GetParam().Pixels);
}

// The cut at 180 degrees goes through the middle of the third of five columns and of the fourth of seven.
INSTANTIATE_TEST_SUITE_P(Rows, HalfColumn,
                         testing::Values(THalfColumnRow{5, {13, 13, 14, 14, 15, 15, 11, 11, 11, 12, 12, 12}},
                                         THalfColumnRow{7, {15, 15, 16, 16, 17, 17, 11, 11, 12, 13, 13, 14}}));

TEST_F(IdrisiMapLayer, APieceTakesItsPartOfTheBitmap) {
    AddRendered(NumberedImage(4, 1, {170, 90, 190, -90})); // five degrees a cell, two cells on either side of 180
    TView view(TLatLonWorldSystemFactory::GetObject(), 0.2L, 72, 36);
    Layer.Paint(&view.World, &view.Viewport, view.Buffer);
    const std::vector<TColor32> row = view.Row(0);
    EXPECT_EQ(row[0], 0xFF00000DU);
    EXPECT_EQ(row[1], 0xFF00000EU);
    EXPECT_EQ(row[2], White);
    EXPECT_EQ(row[69], White);
    EXPECT_EQ(row[70], 0xFF00000BU);
    EXPECT_EQ(row[71], 0xFF00000CU);
}

TEST_F(IdrisiMapLayer, RepeatedPaintsShowEachNewPicture) {
    AddRendered(NumberedImage(8, 4, {-180, 90, 180, -90}));
    TView view(TLatLonWorldSystemFactory::GetObject(), 1.0L / 90, 4, 2);
    const auto painted = [&] {
        Layer.Paint(&view.World, &view.Viewport, view.Buffer);
        return view.Row(0);
    };
    const std::vector<TColor32> first = painted();
    EXPECT_EQ(first, (std::vector<TColor32>{0xFF00000B, 0xFF00000D, 0xFF00000F, 0xFF000011}));
    EXPECT_EQ(painted(), first);
    EXPECT_EQ(painted(), first);
    view.Viewport.SetTranslation({1, 0});
    view.Buffer.Clear(White);
    EXPECT_EQ(painted(), (std::vector<TColor32>{White, 0xFF00000B, 0xFF00000D, 0xFF00000F}));
    view.Viewport.SetTranslation({0, 0});
    Layer.TakeImage(NumberedImage(4, 4, {-180, 90, 180, -90}));
    Layer.Render();
    EXPECT_EQ(painted(), (std::vector<TColor32>{0xFF00000B, 0xFF00000C, 0xFF00000D, 0xFF00000E}));
}

TEST_F(IdrisiMapLayer, ANewPictureOfTheSameSizeIsShownAtOnce) {
    AddRendered(NumberedImage(8, 4, {-180, 90, 180, -90}));
    TView view(TLatLonWorldSystemFactory::GetObject(), 1.0L / 90, 4, 2);
    for (int i = 0; i < 3; ++i)
        Layer.Paint(&view.World, &view.Viewport, view.Buffer);
    const auto gradient = TGradientFactory::GetObject(std::vector<TColorStop>{{0, 0xFFABCDEF}});
    Layer.SetColorCalc(TGradientColorCalculatorFactory::GetObject(0, 99, gradient));
    Layer.Paint(&view.World, &view.Viewport, view.Buffer);
    EXPECT_EQ(view.Row(0), std::vector<TColor32>(4, 0xFFABCDEF));
}

TEST_F(IdrisiMapLayer, BlendsOntoWhatLiesBelow) {
    AddRendered(NumberedImage(1, 1, {-180, 90, 180, -90}));
    Layer.SetOpacity(128);
    TView view(TLatLonWorldSystemFactory::GetObject(), 1.0L / 90, 4, 2);
    Layer.Paint(&view.World, &view.Viewport, view.Buffer);
    // (255 * 127 + 127) / 255 = 127 in red and green, (11 * 128 + 255 * 127 + 127) / 255 = 133 in blue
    EXPECT_EQ(view.Row(0)[0], 0xFF7F7F85U);
}

TEST_F(IdrisiMapLayer, StaysRightAtTheLargestScaleOfAWorld) {
    AddRendered(NumberedImage(2, 1, {-180, 90, 180, -90}));
    TView view(TLatLonWorldSystemFactory::GetObject(), 100000, 4, 2);
    view.Viewport.SetCenter({0, 0}); // the border of the two cells is in the middle of the view
    Layer.Paint(&view.World, &view.Viewport, view.Buffer);
    EXPECT_EQ(view.Row(0), (std::vector<TColor32>{0xFF00000B, 0xFF00000B, 0xFF00000C, 0xFF00000C}));
}

TEST_F(IdrisiMapLayer, StaysRightWhereTheRectangleLeaves32Bits) {
    auto image = NumberedImage(2, 1, {1900000, 7000000, 3100000, 5000000});
    image->getHeader()->SetRefSystem(QStringLiteral("plane"));
    AddRendered(std::move(image));
    EXPECT_EQ(Layer.GetLayerArea().WorldSystem, TNZMGWorldSystemFactory::GetObject());
    TView view(TNZMGWorldSystemFactory::GetObject(), 1000, 4, 2); // 1.2e9 x 2e9 pixels
    view.Viewport.SetCenter({2500000, 6000000});
    Layer.Paint(&view.World, &view.Viewport, view.Buffer);
    EXPECT_EQ(view.Row(1), (std::vector<TColor32>{0xFF00000B, 0xFF00000B, 0xFF00000C, 0xFF00000C}));
}

TEST_F(IdrisiMapLayer, PaintsNothingWithoutABitmap) {
    Layer.TakeImage(NumberedImage(2, 2, {-180, 90, 180, -90}));
    TView view(TLatLonWorldSystemFactory::GetObject(), 1.0L / 90, 4, 2);
    Layer.Paint(&view.World, &view.Viewport, view.Buffer);
    EXPECT_EQ(view.Row(0), std::vector<TColor32>(4, White));
}

class EmptyArea : public testing::TestWithParam<TMapArea> {};

TEST_P(EmptyArea, DrawsNothing) {
    const auto manager = TLayerManagerFactory::GetObject();
    TIdrisiMapLayer layer(manager);
    layer.TakeImage(NumberedImage(2, 2, {-180, 90, 180, -90}));
    layer.SetColorCalc(std::make_shared<TValueAsColor>());
    layer.Render();
    layer.SetLayerArea({GetParam(), TLatLonWorldSystemFactory::GetObject()});
    TView view(TLatLonWorldSystemFactory::GetObject(), 1.0L / 90, 4, 2);
    layer.Paint(&view.World, &view.Viewport, view.Buffer);
    EXPECT_EQ(view.Row(0), std::vector<TColor32>(4, White));
    EXPECT_EQ(view.Row(1), std::vector<TColor32>(4, White));
}

constexpr extended Nan = std::numeric_limits<extended>::quiet_NaN();
constexpr extended Infinite = std::numeric_limits<extended>::infinity();
INSTANTIATE_TEST_SUITE_P(Rows, EmptyArea,
                         testing::Values(TMapArea(0, 90, 0, -90), TMapArea(-180, 0, 180, 0),
                                         TMapArea(Nan, 90, 180, -90), TMapArea(-180, 90, Infinite, -90)));

/// A world that grows to the left, or downwards.
class TTurnedWorldSystem final : public tests::TTestWorldSystem {
public:
    explicit TTurnedWorldSystem(TMapOrientation orientation) : TTestWorldSystem({-180, 90, 180, -90}, orientation) {}

    TMapOrientation GetOrientation() const override {
        return ++FAsked > FPixelQuestions ? TTestWorldSystem::GetOrientation() : TMapOrientation{1, -1};
    }

    /// How often the viewport may ask before the turned orientation is told.
    void AllowPixelQuestions(int count) { FPixelQuestions = FAsked + count; }

private:
    mutable int FAsked = 0;
    int FPixelQuestions = 1000;
};

class TurnedWorld : public testing::TestWithParam<TMapOrientation> {};

TEST_P(TurnedWorld, IsNotImplemented) {
    const auto manager = TLayerManagerFactory::GetObject();
    TIdrisiMapLayer layer(manager);
    layer.TakeImage(NumberedImage(2, 2, {-180, 90, 180, -90}));
    layer.SetColorCalc(std::make_shared<TValueAsColor>());
    layer.Render();
    const auto system = std::make_shared<TTurnedWorldSystem>(GetParam());
    TView view(system, 1.0L / 90, 4, 2);
    // The viewport refuses such a world by itself; here it is turned only once the viewport has its pixels.
    for (int questions = 0;; ++questions) {
        system->AllowPixelQuestions(questions);
        const QString message =
            tests::MessageOf<ENotImplemented>([&] { layer.Paint(&view.World, &view.Viewport, view.Buffer); });
        if (!message.startsWith(QStringLiteral("MapPointToPoint"))) {
            EXPECT_EQ(message, QStringLiteral("Not implemented"));
            break;
        }
        ASSERT_LT(questions, 10);
    }
    EXPECT_EQ(view.Row(0), std::vector<TColor32>(4, White));
}

INSTANTIATE_TEST_SUITE_P(Rows, TurnedWorld, testing::Values(TMapOrientation{-1, -1}, TMapOrientation{1, 1}));

TEST_F(IdrisiMapLayer, TheMenuOffersTheExports) {
    Layer.TakeImage(NumberedImage(2, 2, {0, 10, 10, 0}));
    std::vector<TLayerMenuItem> items;
    Layer.GetContextMenuItems(&items);
    ASSERT_EQ(items.size(), 5U);
    EXPECT_EQ(items[0].FText, QStringLiteral("&Goto Extent"));
    EXPECT_EQ(items[1].FText, QStringLiteral("-"));
    EXPECT_TRUE(items[1].FEnabled);
    EXPECT_FALSE(items[1].FEvent);
    EXPECT_EQ(items[2].FText, QStringLiteral("Export IdrisiImage..."));
    EXPECT_EQ(items[3].FText, QStringLiteral("Export ArcInfo Grid ASCII..."));
    EXPECT_EQ(items[4].FText, QStringLiteral("Export XYZ ASCII..."));
    for (std::size_t i = 2; i < 5; ++i)
        EXPECT_TRUE(items[i].FEnabled);
}

struct TExportRow {
    std::size_t MenuItem;
    const char* Filter;
    const char* Extension;
};

class Export : public testing::TestWithParam<TExportRow> {};

TEST_P(Export, AsksForAFileAndWritesTheWholeImage) {
    const QTemporaryDir folder;
    const QString extension = QString::fromLatin1(GetParam().Extension);
    const QString fileName = folder.filePath(QStringLiteral("out.") + extension);
    tests::TScriptedFileDialog dialogs;
    dialogs->Answers = {fileName};
    const auto manager = TLayerManagerFactory::GetObject();
    TIdrisiMapLayer layer(manager);
    layer.TakeImage(NumberedImage(2, 2, {0, 10, 10, 0}));
    std::vector<TLayerMenuItem> items;
    layer.GetContextMenuItems(&items);
    items.at(GetParam().MenuItem).FEvent();
    ASSERT_EQ(dialogs->Saved.size(), 1U);
    EXPECT_EQ(dialogs->Saved[0].Filter, QString::fromLatin1(GetParam().Filter));
    EXPECT_EQ(dialogs->Saved[0].DefaultExtension, extension);
    EXPECT_TRUE(dialogs->Saved[0].OverwritePrompt);
    EXPECT_GT(QFileInfo(fileName).size(), 0);
}

INSTANTIATE_TEST_SUITE_P(Rows, Export,
                         testing::Values(TExportRow{2, "Idrisi Image|*.img", "img"},
                                         TExportRow{3, "ArcInfo Grid Ascii|*.asc", "asc"},
                                         TExportRow{4, "XYZ Ascii|*.xyz", "xyz"}));

TEST_F(IdrisiMapLayer, ACancelledExportIsNoFailure) {
    tests::TScriptedFileDialog dialogs;
    dialogs->Answers = {std::nullopt};
    Layer.TakeImage(NumberedImage(2, 2, {0, 10, 10, 0}));
    TXYZAsciiExporter exporter;
    Layer.DoExport(QStringLiteral("XYZ Ascii"), QStringLiteral("xyz"), exporter);
    EXPECT_EQ(dialogs->Saved.size(), 1U);
}

TEST_F(IdrisiMapLayer, AFailedExportReachesTheCaller) {
    tests::TScriptedFileDialog dialogs;
    dialogs->Answers = {QStringLiteral("no-such-folder/out.xyz")};
    Layer.TakeImage(NumberedImage(2, 2, {0, 10, 10, 0}));
    TXYZAsciiExporter exporter;
    EXPECT_THROW(Layer.DoExport(QStringLiteral("XYZ Ascii"), QStringLiteral("xyz"), exporter), EFileException);
}

TEST_F(IdrisiMapLayer, ALayerThatGoesWhileTheDialogIsOpenExportsNothing) {
    const QTemporaryDir folder;
    const QString fileName = folder.filePath(QStringLiteral("out.xyz"));
    auto layer = std::make_unique<TIdrisiMapLayer>(Manager);
    layer->TakeImage(NumberedImage(2, 2, {0, 10, 10, 0}));
    std::vector<TLayerMenuItem> items;
    layer->GetContextMenuItems(&items);
    tests::TScriptedFileDialog dialogs;
    dialogs->Answers = {fileName};
    dialogs->WhileOpen = [&layer] { layer.reset(); };
    items.at(4).FEvent();
    EXPECT_EQ(dialogs->Saved.size(), 1U);
    EXPECT_FALSE(QFileInfo::exists(fileName));
}

/// Writes nothing, and has the image replaced while it does so.
class TReplacingExporter final : public IIdrisiImageExporter {
public:
    explicit TReplacingExporter(TIdrisiMapLayer& layer) : FLayer(layer) {}
    void Export(const TAbstractImage& image, const QString&) override {
        FLayer.TakeImage(NumberedImage(3, 3, {0, 10, 10, 0}));
        Seen = image.GetCell(2, 2);
    }
    float Seen = 0;

private:
    TIdrisiMapLayer& FLayer;
};

TEST_F(IdrisiMapLayer, AnImageThatIsReplacedWhileItIsWrittenStaysUntilItIs) {
    tests::TScriptedFileDialog dialogs;
    dialogs->Answers = {QStringLiteral("nowhere")};
    Layer.TakeImage(NumberedImage(2, 2, {0, 10, 10, 0}));
    TReplacingExporter exporter(Layer);
    Layer.DoExport(QStringLiteral("XYZ Ascii"), QStringLiteral("xyz"), exporter);
    EXPECT_EQ(exporter.Seen, 22.0F);
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
