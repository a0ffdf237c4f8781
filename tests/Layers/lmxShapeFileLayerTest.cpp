#include <lmx/Controls/Legend/lmxShapeFileLayerLegendControl.h>
#include <lmx/Controls/Legend/lmxVectorFileLayerLegendControl.h>
#include <lmx/Coordinates/wskWorld.h>
#include <lmx/Formats/Shapes/lmxShpFile.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Layers/lmxLayerManagerConfig.h>
#include <lmx/Layers/lmxShapeFileLayer.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Formats/ImageFiles.h>
#include <tests/Layers/PlainOutlines.h>
#include <tests/Support/CoordinatePrinters.h>
#include <tests/Support/Printers.h>
#include <tests/Support/ScriptedServices.h>
#include <tests/Support/ShapeBytes.h>
#include <tests/Support/ShownView.h>
#include <tests/Support/TestBufferedLayer.h>

#include <QBuffer>
#include <QElapsedTimer>

#include <QPointer>

#include <gtest/gtest.h>

#include <random>

namespace lmx {
namespace {

using namespace tests;

constexpr TColor32 Red = 0xFFFF0000;
constexpr TColor32 Blue = 0xFF0000FF;
constexpr TColor32 White = 0xFFFFFFFF;

std::unique_ptr<TShpFile> Load(QByteArray bytes) {
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    return TShpFile::LoadFromStream(buffer, QStringLiteral("x.shp"), nullptr);
}

/// A square of 10 degrees with its south-western corner at 20 E, 30 N.
QByteArray SquareBytes(double x = 20, double y = 30) {
    return TShapeBytes().Lines(5, {{{x, y}, {x, y + 10}, {x + 10, y + 10}, {x + 10, y}, {x, y}}}).File(5);
}

std::unique_ptr<TShpFile> Square() {
    return Load(SquareBytes());
}

class TDoublingProjection : public IShapeFileProjection {
public:
    void Convert(extended x, extended y, extended& outX, extended& outY) const override {
        outX = 2 * x;
        outY = y / 2;
    }
};

class TFailingProjection : public IShapeFileProjection {
public:
    void Convert(extended, extended, extended&, extended&) const override {
        throw EInvalidOp(QStringLiteral("no place"));
    }
};

class TCountingFactory : public ILayerComponentFactory {
public:
    bool GetLegendComponent(TBaseMapLayer* layer, TBaseLegendControl*& component) override {
        Asked.push_back(layer);
        component = Component;
        return Answer;
    }
    TBaseLegendControl* Component = nullptr;
    bool Answer = true;
    std::vector<TBaseMapLayer*> Asked;
};

class ShapeFileLayer : public testing::Test {
protected:
    ShapeFileLayer() {
        Viewport.SetViewSize({60, 40});
        Viewport.SetScale(2);
        Viewport.SetCenter({25, 35});
        Layer->SetColor(Red);
    }
    ~ShapeFileLayer() override {
        Layer = nullptr;
        EXPECT_TRUE(PumpUntilRendersEnd());
    }

    void Paint() {
        Target.Clear(White);
        Layer->Paint(&World, &Viewport, Target);
    }
    void PaintAndRender() {
        Paint();
        ASSERT_TRUE(PumpUntilRendersEnd());
    }

    std::shared_ptr<ILayerManager> Manager = TLayerManagerFactory::GetObject();
    std::unique_ptr<TShapeFileLayer> Layer = std::make_unique<TShapeFileLayer>(Manager);
    TWorld World{TLatLonWorldSystemFactory::GetObject()};
    TWorldViewport Viewport{&World};
    TBitmap32 Target{60, 40};
};

// --- The file -------------------------------------------------------------------------------------------------------

TEST_F(ShapeFileLayer, BeginsWithoutAFile) {
    EXPECT_EQ(Layer->GetShpFile(), nullptr);
    EXPECT_TRUE(Layer->GetOwnsShpFile());
    EXPECT_FALSE(Layer->GetHasContent());
    EXPECT_NE(dynamic_cast<const TWGS84ShapeFileProjection*>(Layer->GetProjection().get()), nullptr);
    EXPECT_EQ(Layer->GetLayerTypeName(), "Shape file");
    EXPECT_EQ(Layer->GetLayerClassName(), "ShapeFileLayer");
    EXPECT_TRUE(Layer->GetLayerOptionFlags().Contains(TLayerOptionFlag::lofDuplicate));
    EXPECT_TRUE(Layer->GetLayerOptionFlags().Contains(TLayerOptionFlag::lofDelete));
    PaintAndRender();
    EXPECT_EQ(Layer->GetBufferedBitmap(), nullptr) << "nothing to draw gives no picture";
}

TEST_F(ShapeFileLayer, AFileGivesTheAreaInLongitudesAndLatitudes) {
    auto file = Square();
    TShpFile* const square = file.get();
    Layer->SetShpFile(file.release());
    EXPECT_EQ(Layer->GetShpFile(), square);
    EXPECT_TRUE(Layer->GetHasContent());
    EXPECT_TRUE(Layer->GetIsReadyToDraw());
    EXPECT_EQ(Layer->GetLayerArea().Area, TMapArea(20, 40, 30, 30));
    EXPECT_EQ(Layer->GetLayerArea().WorldSystem, TLatLonWorldSystemFactory::GetObject());
}

TEST_F(ShapeFileLayer, TheAreaIsTheProjectedBounds) {
    Layer->SetProjection(std::make_shared<TDoublingProjection>());
    Layer->TakeShpFile(Square());
    EXPECT_EQ(Layer->GetLayerArea().Area, TMapArea(40, 20, 60, 15));
    EXPECT_EQ(Layer->ProjectMapPoint(3, 4), TMapPoint(6, 2));
}

TEST_F(ShapeFileLayer, ANilProjectionLeavesPointsAsTheyAre) {
    Layer->SetProjection(nullptr);
    EXPECT_EQ(Layer->ProjectMapPoint(3, 4), TMapPoint(3, 4));
    Layer->TakeShpFile(Square());
    EXPECT_EQ(Layer->GetLayerArea().Area, TMapArea(20, 40, 30, 30));
    PaintAndRender();
    ASSERT_NE(Layer->GetBufferedBitmap(), nullptr);
    EXPECT_GT(CountPixels(Layer->GetBufferedBitmap()->Bitmap), 0);
}

// --- The seam -------------------------------------------------------------------------------------------------------

class ShapesAtTheSeam : public ShapeFileLayer {
protected:
    /// Where a world is shown at a pixel for each two degrees: its western edge at pixel 10, the equator at 10.
    void ShowWorld(const std::shared_ptr<IWorldSystem>& system) {
        World.SetWorldSystem(system);
        Viewport.SetViewSize({200, 20});
        Target.SetSize(200, 20);
        Viewport.SetScale(0.5L);
        Viewport.SetTranslation({10, -35});
        Layer->Invalidate(true);
        PaintAndRender();
        Paint();
    }
    bool IsDrawnAt(extended longitude, extended latitude = 0) const {
        const TPoint pixel = Viewport.MapPointToPoint({longitude, latitude}).ToPoint();
        return Target.GetPixelS(pixel.X, pixel.Y) == Red;
    }
    /// A line along the equator.
    void TakeLine(double west, double east) {
        Layer->TakeShpFile(Load(TShapeBytes().Lines(3, {{{west, 0}, {east, 0}}}).File(3)));
    }
};

TEST_F(ShapesAtTheSeam, AreFoldedOnlyIfAHostAsksForIt) {
    TakeLine(-60, -40);
    EXPECT_FALSE(Layer->GetFoldsAtSeam());
    ShowWorld(TLatLonAntimeridianWorldSystemFactory::GetObject());
    EXPECT_FALSE(IsDrawnAt(310));
    int invalidations = 0;
    const auto subscription = Layer->GetOnInvalidated().Add([&](TBaseMapLayer*) { ++invalidations; });
    Layer->SetFoldsAtSeam(true);
    Layer->SetFoldsAtSeam(true);
    EXPECT_EQ(invalidations, 1);
    ShowWorld(TLatLonAntimeridianWorldSystemFactory::GetObject());
    EXPECT_TRUE(IsDrawnAt(310));
    EXPECT_FALSE(IsDrawnAt(330));
    ShowWorld(TLatLonWorldSystemFactory::GetObject());
    EXPECT_TRUE(IsDrawnAt(-50));
    EXPECT_FALSE(IsDrawnAt(130));
}

TEST_F(ShapesAtTheSeam, AreFoldedFromBothSides) {
    Layer->SetFoldsAtSeam(true);
    TakeLine(170, 200);
    ShowWorld(TLatLonWorldSystemFactory::GetObject());
    EXPECT_TRUE(IsDrawnAt(175));
    EXPECT_TRUE(IsDrawnAt(-170));
    EXPECT_FALSE(IsDrawnAt(-150));
    ShowWorld(TLatLonAntimeridianWorldSystemFactory::GetObject());
    EXPECT_TRUE(IsDrawnAt(190));
    TakeLine(-20, 20);
    ShowWorld(TLatLonAntimeridianWorldSystemFactory::GetObject());
    EXPECT_TRUE(IsDrawnAt(10));
    EXPECT_TRUE(IsDrawnAt(350));
    EXPECT_FALSE(IsDrawnAt(330));
}

TEST_F(ShapesAtTheSeam, AreNotDrawnBeyondTheEdgesOfTheirWorld) {
    TakeLine(-20, 20);
    ShowWorld(TLatLonAntimeridianWorldSystemFactory::GetObject());
    EXPECT_TRUE(IsDrawnAt(-6)) << "nothing is folded";
    Layer->SetFoldsAtSeam(true);
    ShowWorld(TLatLonAntimeridianWorldSystemFactory::GetObject());
    EXPECT_FALSE(IsDrawnAt(-6));
    EXPECT_TRUE(IsDrawnAt(0)) << "the edges are inside";
    EXPECT_TRUE(IsDrawnAt(360));
    EXPECT_FALSE(IsDrawnAt(364));
}

TEST_F(ShapesAtTheSeam, PointsAndHostsProjectionsAreFoldedToo) {
    Layer->SetFoldsAtSeam(true);
    Layer->SetProjection(std::make_shared<TDoublingProjection>());
    Layer->TakeShpFile(Load(TShapeBytes().Point(1, {-25, 0}).File(1)));
    ShowWorld(TLatLonAntimeridianWorldSystemFactory::GetObject());
    EXPECT_TRUE(IsDrawnAt(310));
    Layer->DeleteShpFile();
    Layer->SetProjection(nullptr);
    Layer->TakeShpFile(Load(TShapeBytes().Point(1, {-30, 0}).File(1)));
    ShowWorld(TLatLonAntimeridianWorldSystemFactory::GetObject());
    EXPECT_TRUE(IsDrawnAt(330));
}

TEST_F(ShapesAtTheSeam, AGridOfMetresHasNone) {
    Layer->SetFoldsAtSeam(true);
    TakeLine(-60, 60);
    ShowWorld(TNZMGWorldSystemFactory::GetObject());
    EXPECT_FALSE(IsDrawnAt(World.GetWorldSystem()->Area().Left));
}

TEST_F(ShapeFileLayer, ADuplicateFoldsAsItsOriginal) {
    Layer->SetFoldsAtSeam(true);
    const auto duplicate = Layer->Duplicate(Manager);
    EXPECT_TRUE(dynamic_cast<TShapeFileLayer&>(*duplicate).GetFoldsAtSeam());
}

// --- The projection -------------------------------------------------------------------------------------------------

TEST_F(ShapeFileLayer, TheProjectionMustComeFirst) {
    const auto projection = Layer->GetProjection();
    Layer->TakeShpFile(Square());
    EXPECT_EQ(MessageOf<EInvalidOperation>([&] { Layer->SetProjection(std::make_shared<TDoublingProjection>()); }),
              "Projection must be set before ShapeFile is set");
    EXPECT_EQ(Layer->GetProjection(), projection);
    Layer->DeleteShpFile();
    Layer->SetProjection(nullptr);
    EXPECT_EQ(Layer->GetProjection(), nullptr);
}

TEST_F(ShapeFileLayer, SettingTheSameFileDoesNothing) {
    Layer->TakeShpFile(Square());
    PaintAndRender();
    const TBufferedBitmap* const picture = Layer->GetBufferedBitmap();
    ASSERT_NE(picture, nullptr);
    Layer->SetShpFile(Layer->GetShpFile());
    EXPECT_EQ(Layer->GetBufferedBitmap(), picture);
    EXPECT_EQ(Layer->GetCurrentThread(), nullptr);
}

TEST_F(ShapeFileLayer, AnotherFileDropsThePictureAtOnce) {
    Layer->TakeShpFile(Square());
    PaintAndRender();
    int invalidations = 0;
    const auto subscription = Layer->GetOnInvalidated().Add([&](TBaseMapLayer*) { ++invalidations; });
    Layer->TakeShpFile(Load(SquareBytes(15, 25)));
    EXPECT_EQ(Layer->GetBufferedBitmap(), nullptr);
    EXPECT_EQ(invalidations, 1);
    EXPECT_EQ(Layer->GetLayerArea().Area, TMapArea(15, 35, 25, 25));
}

TEST_F(ShapeFileLayer, AnOutlineOutlivesItsFileUntilItIsDropped) {
    Layer->TakeShpFile(Square());
    PaintAndRender();
    const TBufferedBitmap* const picture = Layer->GetBufferedBitmap();
    ASSERT_NE(picture, nullptr);
    int invalidations = 0;
    const auto subscription = Layer->GetOnInvalidated().Add([&](TBaseMapLayer*) { ++invalidations; });
    Layer->DeleteShpFile();
    EXPECT_EQ(invalidations, 0) << "deleting tells nobody";
    for (const std::int32_t x : {-3, -6}) { // a pan
        Viewport.SetTranslation({x, 0});
        PaintAndRender();
        EXPECT_EQ(Layer->GetBufferedBitmap(), picture);
    }
    Layer->SetColor(0xFF00FF00);
    EXPECT_EQ(Layer->GetBufferedBitmap(), nullptr);
    PaintAndRender();
    EXPECT_EQ(Layer->GetBufferedBitmap(), nullptr) << "there is nothing to render";
}

TEST_F(ShapeFileLayer, AnOwnedFileGoesWithItsLayerOrItsSuccessor) {
    Layer->SetShpFile(Square().release());
    const auto first = Layer->GetShpFile()->GetLifetime().Watch();
    Layer->SetShpFile(Square().release());
    EXPECT_TRUE(first.IsOver());
    const auto second = Layer->GetShpFile()->GetLifetime().Watch();
    Layer = nullptr;
    EXPECT_TRUE(second.IsOver());
}

TEST_F(ShapeFileLayer, AFileThatIsNotOwnedStaysAlive) {
    const auto first = Square();
    const auto second = Square();
    Layer->SetOwnsShpFile(false);
    Layer->SetShpFile(first.get());
    Layer->SetShpFile(second.get());
    EXPECT_FALSE(first->GetLifetime().Watch().IsOver());
    Layer->DeleteShpFile();
    EXPECT_EQ(Layer->GetShpFile(), nullptr);
    Layer->SetShpFile(first.get());
    Layer->TakeShpFile(Square());
    EXPECT_TRUE(Layer->GetOwnsShpFile());
    Layer = nullptr;
    EXPECT_EQ(first->GetPolygonCount(), 1U);
    EXPECT_EQ(second->GetPolygonCount(), 1U);
}

TEST_F(ShapeFileLayer, AFileThatTheHostDestroysIsNoLongerThere) {
    auto file = Square();
    Layer->SetOwnsShpFile(false);
    Layer->SetShpFile(file.get());
    Paint();
    file = nullptr; // while it is rendered
    EXPECT_EQ(Layer->GetShpFile(), nullptr);
    EXPECT_FALSE(Layer->GetHasContent());
    ASSERT_TRUE(PumpUntilRendersEnd());
    ASSERT_NE(Layer->GetBufferedBitmap(), nullptr) << "the render had a share of the geometry";
    EXPECT_GT(CountPixels(Layer->GetBufferedBitmap()->Bitmap), 0);
}

TEST_F(ShapeFileLayer, RefusesNoFile) {
    Layer->TakeShpFile(Square());
    TShpFile* const file = Layer->GetShpFile();
    EXPECT_EQ(MessageOf<EExArgumentNilException>([&] { Layer->SetShpFile(nullptr); }),
              "TShapeFileLayer.SetShpFile: argument ShpFile is nil");
    EXPECT_EQ(MessageOf<EExArgumentNilException>([&] { Layer->TakeShpFile(nullptr); }),
              "TShapeFileLayer.SetShpFile: argument ShpFile is nil");
    EXPECT_EQ(Layer->GetShpFile(), file);
}

TEST_F(ShapeFileLayer, AProjectionThatFailsLeavesTheLayerAsItWas) {
    Layer->SetProjection(std::make_shared<TFailingProjection>());
    auto file = Square();
    EXPECT_EQ(MessageOf<EInvalidOp>([&] { Layer->SetShpFile(file.get()); }), "no place");
    EXPECT_EQ(MessageOf<EInvalidOp>([&] { Layer->TakeShpFile(Square()); }), "no place");
    EXPECT_EQ(Layer->GetShpFile(), nullptr);
    EXPECT_EQ(Layer->GetLayerArea().WorldSystem, nullptr);
}

TEST_F(ShapeFileLayer, ASubscriberMayDestroyTheLayerThatGetsAFile) {
    const auto subscription = Layer->GetOnInvalidated().Add([&](TBaseMapLayer*) { Layer = nullptr; });
    auto file = Square();
    const auto lifetime = file->GetLifetime().Watch();
    Layer->TakeShpFile(std::move(file));
    EXPECT_EQ(Layer, nullptr);
    EXPECT_TRUE(lifetime.IsOver());
}

// --- Pictures -------------------------------------------------------------------------------------------------------

TEST_F(ShapeFileLayer, TheFilesOutlinesComeOutInTheColour) {
    Layer->TakeShpFile(Square());
    PaintAndRender();
    ASSERT_NE(Layer->GetBufferedBitmap(), nullptr);
    TBitmap32 plain(60, 40);
    plain.SetPenColor(Red);
    DrawPlainly(*Layer->GetShpFile(), Viewport.GetLocal(), plain);
    EXPECT_EQ(CountPixels(plain), 80);
    EXPECT_TRUE(SamePixels(Layer->GetBufferedBitmap()->Bitmap, plain));
    EXPECT_EQ(Layer->GetBufferedBitmap()->MapArea, Viewport.GetVisibleMapArea());
}

TEST_F(ShapeFileLayer, ANewColourDropsThePicture) {
    Layer->TakeShpFile(Square());
    PaintAndRender();
    const TBufferedBitmap* const picture = Layer->GetBufferedBitmap();
    Layer->SetColor(Red);
    EXPECT_EQ(Layer->GetBufferedBitmap(), picture);
    Layer->SetColor(Blue);
    EXPECT_EQ(Layer->GetBufferedBitmap(), nullptr);
    PaintAndRender();
    EXPECT_EQ(Layer->GetBufferedBitmap()->Bitmap.Pixel(20, 10), Blue);
}

TEST_F(ShapeFileLayer, ARenderGoesOnWithWhatItBeganWith) {
    Layer->TakeShpFile(Square());
    Paint();
    const auto render = Layer->GetCurrentThread();
    Layer->TakeShpFile(Load(SquareBytes(15, 25)));
    EXPECT_TRUE(render->ShouldStop());
    ASSERT_TRUE(PumpUntilRendersEnd());
    EXPECT_EQ(Layer->GetBufferedBitmap(), nullptr) << "a picture of the old file is not taken";
}

TEST_F(ShapeFileLayer, DestroyingTheLayerDuringALongRenderReturnsAtOnce) {
    std::vector<TShpPoint> line; // some seconds of work
    for (int i = 0; i < 1'000'000; ++i)
        line.push_back({i % 2 == 0 ? -170.0 : 170.0, i % 3 == 0 ? 80.0 : -80.0});
    Layer->TakeShpFile(Load(TShapeBytes().Lines(3, {line}).File(3)));
    Paint();
    const auto render = Layer->GetCurrentThread();
    ASSERT_TRUE(WaitUntil([] { return RenderThreadPool().GetRunningCount() == 1; }));
    QElapsedTimer elapsed;
    elapsed.start();
    Layer = nullptr;
    EXPECT_LT(elapsed.elapsed(), 1000);
    EXPECT_TRUE(render->ShouldStop());
    EXPECT_TRUE(PumpUntilRendersEnd());
}

// Paints, pans, recolours, replaces and destroys at random, over all threads of the pool.
TEST(ShapeFileLayerStress, AnythingMayHappenDuringARender) {
    TShownView shown;
    std::mt19937 random(11);
    const auto below = [&](unsigned limit) { return static_cast<int>(random() % limit); };
    const auto coast = QStringLiteral(LMX_SOURCE_DIR "/tests/data/shp/ne_110m_coastline.shp");
    auto borrowed = TShpFile::LoadFromFile(coast, nullptr);
    std::vector<TShapeFileLayer*> layers;
    const auto add = [&] {
        auto layer = std::make_unique<TShapeFileLayer>(shown.Manager);
        layer->SetColor(Red);
        if (below(3) == 0 && borrowed) {
            layer->SetOwnsShpFile(false);
            layer->SetShpFile(borrowed.get());
        } else {
            layer->TakeShpFile(TShpFile::LoadFromFile(coast, nullptr));
        }
        layers.push_back(layer.get());
        shown.Manager->GetLayers().Add(std::move(layer));
    };
    for (int i = 0; i < 12; ++i)
        add();
    int pictures = 0;
    for (int step = 0; step < 3000; ++step) {
        TShapeFileLayer* layer = layers[static_cast<std::size_t>(below(static_cast<unsigned>(layers.size())))];
        switch (below(9)) {
        case 0:
            layer->SetColor(White - static_cast<TColor32>(below(5)));
            break;
        case 1:
            layer->TakeShpFile(below(2) == 0 ? Square() : TShpFile::LoadFromFile(coast, nullptr));
            break;
        case 2:
            layer->DeleteShpFile();
            break;
        case 3:
            std::erase(layers, layer);
            shown.Manager->GetLayers().Remove(layer);
            add();
            break;
        case 4:
            borrowed = step % 2 == 0 ? nullptr : TShpFile::LoadFromFile(coast, nullptr);
            break;
        case 5:
            shown.View.GetViewport()->SetScale(1 + below(40));
            break;
        case 6:
            layer->Invalidate(below(2) == 0);
            break;
        default:
            shown.View.GetViewport()->SetTranslation({below(200) - 100, below(200) - 100});
        }
        if (below(3) == 0)
            shown.View.DoPaintBuffer();
        if (below(6) == 0)
            QCoreApplication::processEvents();
        if (step % 20 == 0) { // else hardly a picture would ever be finished
            ASSERT_TRUE(PumpUntilRendersEnd());
        }
        pictures += layer && std::ranges::count(layers, layer) > 0 && layer->GetBufferedBitmap() ? 1 : 0;
    }
    EXPECT_GT(pictures, 100);
    shown.Manager->GetLayers().Clear();
    EXPECT_TRUE(PumpUntilRendersEnd());
}

// --- Copies and legends ---------------------------------------------------------------------------------------------

TEST_F(ShapeFileLayer, ADuplicateReadsTheFileAgain) {
    const TImageFolder folder;
    folder.Write("square.shp", SquareBytes());
    Layer->TakeShpFile(TShpFile::LoadFromFile(folder.Path("square.shp"), nullptr));
    Layer->SetLayerName(QStringLiteral("square"));
    const auto other = TLayerManagerFactory::GetObject();
    const auto copy = Layer->Duplicate(other);
    auto* duplicate = dynamic_cast<TShapeFileLayer*>(copy.get());
    ASSERT_NE(duplicate, nullptr);
    EXPECT_NE(duplicate->GetShpFile(), Layer->GetShpFile());
    EXPECT_EQ(duplicate->GetShpFile()->GetFileName(), Layer->GetShpFile()->GetFileName());
    EXPECT_TRUE(duplicate->GetOwnsShpFile());
    EXPECT_EQ(duplicate->GetColor(), Red);
    EXPECT_EQ(duplicate->GetLayerName(), "square");
    EXPECT_EQ(duplicate->GetProjection(), Layer->GetProjection());
    EXPECT_EQ(duplicate->GetLayerManager(), other);
    EXPECT_EQ(duplicate->GetLayerArea(), Layer->GetLayerArea());
    EXPECT_EQ(other->GetLayers().Count(), 0U);
}

TEST_F(ShapeFileLayer, ADuplicateIsConvertedAsTheProjectionFileSays) {
    const TImageFolder folder;
    folder.Write("nz.shp", TShapeBytes().Point(1, {174, -41}).File(1));
    folder.Write("nz.prj", R"(GEOGCS["GCS_New_Zealand_1949",DATUM["D_New_Zealand_1949",)"
                           R"(SPHEROID["International_1924",6378388.0,297.0]],PRIMEM["Greenwich",0.0],)"
                           R"(UNIT["Degree",0.0174532925199433]])");
    Layer->TakeShpFile(TShpFile::LoadFromFile(folder.Path("nz.shp"), nullptr));
    const auto copy = Layer->Duplicate(Manager);
    const auto* duplicate = dynamic_cast<TShapeFileLayer*>(copy.get());
    EXPECT_EQ(Layer->GetShpFile()->GetPoint(0).X, 174) << "the original was read without a converter";
    EXPECT_NEAR(duplicate->GetShpFile()->GetPoint(0).X, 174.000186162, 2e-9);
    EXPECT_NEAR(duplicate->GetShpFile()->GetPoint(0).Y, -40.998259197, 2e-9);
}

TEST_F(ShapeFileLayer, ADuplicateSkipsDamagedRecordsAsTheOriginalDid) {
    const TImageFolder folder;
    folder.Write("x.shp", TShapeBytes().Point(1, {1, 2}).Point(2, {1, 1}).Point(1, {3, 4}).File(1));
    TShpLoadOptions options;
    options.SkipDamagedRecords = true;
    Layer->TakeShpFile(TShpFile::LoadFromFile(folder.Path("x.shp"), nullptr, options));
    const auto copy = Layer->Duplicate(Manager);
    const auto* duplicate = dynamic_cast<TShapeFileLayer*>(copy.get());
    EXPECT_EQ(duplicate->GetShpFile()->GetPointCount(), 2U);
    EXPECT_EQ(duplicate->GetShpFile()->GetDamagedRecordCount(), 1U);
}

TEST_F(ShapeFileLayer, ADuplicateFailsAsTheFileDoes) {
    Layer->TakeShpFile(Square()); // of a stream: there is no file of its name
    EXPECT_EQ(MessageOf<EFileException>([&] { Layer->Duplicate(Manager); }),
              "x.shp: cannot be opened: No such file or directory");
    EXPECT_EQ(Manager->GetLayers().Count(), 0U);
}

TEST_F(ShapeFileLayer, ADuplicateOfAnEmptyLayerIsEmpty) {
    const auto copy = Layer->Duplicate(Manager);
    EXPECT_FALSE(copy->GetHasContent());
}

TShapeFileLayerLegendControl* ShapeLegend(const TBaseMapLayer& layer) {
    return dynamic_cast<TShapeFileLayerLegendControl*>(layer.GetLegendComponent());
}

TEST_F(ShapeFileLayer, ItsLegendShowsItsColorAndKnowsItsFile) {
    Layer->TakeShpFile(Square());
    Layer->SetColor(Blue);
    ASSERT_TRUE(ShapeLegend(*Layer));
    EXPECT_EQ(ShapeLegend(*Layer)->GetShapeColor(), WinColor(Blue));
    EXPECT_EQ(ShapeLegend(*Layer)->GetShpFile(), Layer->GetShpFile());
    EXPECT_EQ(ShapeLegend(*Layer)->parent(), nullptr);
}

// The chosen colour replaces the control in whose event it was chosen.
TEST_F(ShapeFileLayer, AColorThatIsChosenInTheLegendIsTheLayers) {
    Layer->TakeShpFile(Square());
    const QPointer<TShapeFileLayerLegendControl> old = ShapeLegend(*Layer);
    tests::TScriptedColorChooser chooser;
    chooser->Answers.push_back(0xFF123456);
    old->ChooseColor();
    EXPECT_EQ(Layer->GetColor(), 0xFF123456U);
    EXPECT_NE(ShapeLegend(*Layer), old.data());
    EXPECT_EQ(ShapeLegend(*Layer)->GetShapeColor(), WinColor(0xFF123456));
    ASSERT_TRUE(old) << "it goes when its event is over";
    EXPECT_EQ(old->GetShapeColor(), WinColor(0xFF123456)) << "and is shown the colour";
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(old);
}

TEST_F(ShapeFileLayer, ALayerThatGoesWhileAColorIsChosenDoesNotHurt) {
    Layer->TakeShpFile(Square());
    QWidget form;
    TShapeFileLayerLegendControl* legend = ShapeLegend(*Layer);
    legend->setParent(&form);
    tests::TScriptedColorChooser chooser;
    chooser->Answers.push_back(0xFF123456);
    chooser->WhileOpen = [this] { Layer.reset(); };
    legend->ChooseColor();
    EXPECT_EQ(Layer, nullptr);
}

TEST_F(ShapeFileLayer, TheHostIsAskedForTheLegend) {
    const auto factory = std::make_shared<TCountingFactory>();
    Manager->GetConfig()->SetLayerComponentFactory(factory);
    Layer->TakeShpFile(Square());
    EXPECT_EQ(factory->Asked, std::vector<TBaseMapLayer*>{Layer.get()});
    Layer->SetColor(Blue);
    EXPECT_EQ(factory->Asked.size(), 2U);
    EXPECT_EQ(Layer->GetLegendComponent(), nullptr);
}

TEST_F(ShapeFileLayer, OnlyALegendOfShapeFilesIsTakenFromTheHost) {
    const auto factory = std::make_shared<TCountingFactory>();
    Manager->GetConfig()->SetLayerComponentFactory(factory);
    auto* own = new TShapeFileLayerLegendControl;
    factory->Component = own;
    Layer->TakeShpFile(Square());
    EXPECT_EQ(Layer->GetLegendComponent(), own);
    tests::TScriptedColorChooser chooser;
    chooser->Answers.push_back(0xFF123456);
    const std::unique_ptr<TVectorFileLayerLegendControl> other = std::make_unique<TVectorFileLayerLegendControl>();
    factory->Component = other.get();
    own->ChooseColor();
    EXPECT_EQ(Layer->GetColor(), 0xFF123456U) << "a host's control tells the layer, too";
    EXPECT_EQ(Layer->GetLegendComponent(), nullptr) << "of another class";
    factory->Component = new TShapeFileLayerLegendControl;
    factory->Answer = false;
    Layer->SetColor(Blue);
    EXPECT_EQ(Layer->GetLegendComponent(), nullptr) << "the factory declined";
    delete factory->Component;
}

} // namespace
} // namespace lmx
