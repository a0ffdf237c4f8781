#include <lmx/Coordinates/wskWorld.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Support/CoordinatePrinters.h>
#include <tests/Support/Printers.h>
#include <tests/Support/ShownView.h>
#include <tests/Support/TestBufferedLayer.h>

#include <QElapsedTimer>

#include <gtest/gtest.h>

#include <memory>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <utility>
#include <vector>

namespace lmx {
namespace {

using namespace tests;

constexpr TColor32 White = 0xFFFFFFFF;
constexpr TColor32 Black = 0xFF000000;

/// A layer in a view of 6 x 4 pixels whose top left one is the corner of the world, at a pixel for each degree.
class BufferedMapLayer : public testing::Test {
protected:
    BufferedMapLayer() {
        Viewport->SetViewSize({6, 4});
        Viewport->SetTranslation({0, 0});
        Layer->SetColor(Black);
        FEvents = Layer->GetOnInvalidated().Add([this](TBaseMapLayer*) { ++Invalidations; });
    }
    ~BufferedMapLayer() override {
        Script->IsOpen = true;
        EXPECT_TRUE(PumpUntilRendersEnd());
        EXPECT_TRUE(WaitUntil([this] { return Script->Handlers == 0; }));
    }

    /// Paints onto white.
    void Paint() {
        Target.Clear(White);
        Layer->Paint(World.get(), Viewport.get(), Target);
    }
    /// Makes a picture of what is visible now.
    void PaintAndRender() {
        Paint();
        ASSERT_TRUE(PumpUntilRendersEnd());
        ASSERT_EQ(Layer->GetCurrentThread(), nullptr);
    }
    /// Begins a render that does not end by itself.
    void PaintAndHoldRender() {
        Script->IsOpen = false;
        const int begun = Script->Begun;
        Paint();
        ASSERT_TRUE(WaitUntil([&] { return Script->Begun == begun + 1; }));
    }
    void ExpectAllWhite() const {
        for (int y = 0; y < 4; ++y)
            for (int x = 0; x < 6; ++x)
                EXPECT_EQ(Target.Pixel(x, y), White) << x << ", " << y;
    }

    std::shared_ptr<ILayerManager> Manager = TLayerManagerFactory::GetObject();
    std::unique_ptr<TTestBufferedLayer> Layer = std::make_unique<TTestBufferedLayer>(Manager);
    std::shared_ptr<TRenderScript> Script = Layer->Script;
    std::unique_ptr<TWorld> World = std::make_unique<TWorld>(TLatLonWorldSystemFactory::GetObject());
    std::unique_ptr<TWorldViewport> Viewport = std::make_unique<TWorldViewport>(World.get());
    TBitmap32 Target{6, 4};
    int Invalidations = 0;

private:
    TSubscription FEvents;
};

// --- Painting -------------------------------------------------------------------------------------------------------

TEST_F(BufferedMapLayer, BeginsWithoutPictureAndRender) {
    EXPECT_EQ(Layer->GetBufferedBitmap(), nullptr);
    EXPECT_EQ(Layer->GetCurrentThread(), nullptr);
    EXPECT_EQ(Layer->GetRenderThread(), nullptr);
}

TEST_F(BufferedMapLayer, TheFirstPaintShowsNothingAndStartsARender) {
    PaintAndHoldRender();
    ExpectAllWhite();
    EXPECT_EQ(Layer->Renders, 1);
    EXPECT_NE(Layer->GetCurrentThread(), nullptr);
    EXPECT_EQ(Layer->GetBufferedBitmap(), nullptr);
}

TEST_F(BufferedMapLayer, TheFinishedPictureIsHandedOverAndInvalidates) {
    Paint();
    Invalidations = 0;
    ASSERT_TRUE(PumpUntilRendersEnd());
    ASSERT_NE(Layer->GetBufferedBitmap(), nullptr);
    EXPECT_EQ(Layer->GetCurrentThread(), nullptr);
    EXPECT_EQ(Invalidations, 1);
    EXPECT_TRUE(Layer->GetIsReadyToDraw());
    const TBufferedBitmap& buffered = *Layer->GetBufferedBitmap();
    EXPECT_EQ(buffered.MapArea, TMapArea(-180, 90, -175, 87));
    EXPECT_EQ(buffered.Bitmap.GetWidth(), 6);
    EXPECT_EQ(buffered.Bitmap.GetHeight(), 4);
    EXPECT_EQ(buffered.Bitmap.GetDrawMode(), TDrawMode::dmTransparent);
}

TEST_F(BufferedMapLayer, ACurrentPictureIsDrawnAndNothingIsStarted) {
    PaintAndRender();
    Paint();
    EXPECT_EQ(Layer->Renders, 1);
    EXPECT_EQ(Layer->GetCurrentThread(), nullptr);
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 5; ++x)
            EXPECT_EQ(Target.Pixel(x, y), Black + static_cast<TColor32>(100 * y + x)) << x << ", " << y;
}

// The visible area reaches from the first to the last pixel, and where the last one lies the picture ends.
TEST_F(BufferedMapLayer, TheLastColumnAndRowOfTheViewShowNothing) {
    PaintAndRender();
    Paint();
    for (int x = 0; x < 6; ++x)
        EXPECT_EQ(Target.Pixel(x, 3), White);
    for (int y = 0; y < 4; ++y)
        EXPECT_EQ(Target.Pixel(5, y), White);
}

TEST_F(BufferedMapLayer, TransparentPixelsOfThePictureShowWhatIsBelow) {
    auto buffered = CreateBufferedBitmap({6, 4}, Viewport->GetVisibleMapArea());
    buffered->Bitmap.Pixel(1, 1) = 0x80112233;
    Layer->SetBufferedBitmap(std::move(buffered));
    Paint();
    EXPECT_EQ(Target.Pixel(1, 1), 0x80112233U);
    EXPECT_EQ(Target.Pixel(2, 1), White);
    EXPECT_EQ(Layer->Renders, 0);
}

TEST_F(BufferedMapLayer, AfterAPanTheOldPictureIsShownAtItsNewPlaceAndARenderStarted) {
    PaintAndRender();
    Viewport->SetTranslation({2, 1});
    Paint();
    EXPECT_EQ(Layer->Renders, 2);
    EXPECT_EQ(Target.Pixel(2, 1), Black);
    EXPECT_EQ(Target.Pixel(5, 3), Black + 203);
    for (int x = 0; x < 6; ++x)
        EXPECT_EQ(Target.Pixel(x, 0), White);
    for (int y = 0; y < 4; ++y) {
        EXPECT_EQ(Target.Pixel(0, y), White);
        EXPECT_EQ(Target.Pixel(1, y), White);
    }
}

// Twice the scale around (-177, 88): the picture lies on (-3, -2) to (7, 4), each side of 6 and 4 pixels on 10 and 6.
TEST_F(BufferedMapLayer, ZoomedInTheOldPictureIsStretchedBeyondTheView) {
    PaintAndRender();
    Viewport->SetScale(2);
    Paint();
    EXPECT_EQ(Viewport->GetTranslation(), TPoint(-3, -2));
    const int columns[] = {1, 2, 3, 3, 4, 4};
    const int rows[] = {1, 2, 2, 3};
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 6; ++x)
            EXPECT_EQ(Target.Pixel(x, y), Black + static_cast<TColor32>(100 * rows[y] + columns[x])) << x << ", " << y;
    EXPECT_EQ(Layer->Renders, 2);
}

// Half the scale: the picture lies on (1, 1) to (3.5, 2.5), rounded to even.
TEST_F(BufferedMapLayer, ZoomedOutTheOldPictureShrinksAndTheEdgesStayEmpty) {
    PaintAndRender();
    Viewport->SetScale(0.5L);
    Paint();
    EXPECT_EQ(Viewport->GetTranslation(), TPoint(1, 1));
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 6; ++x) {
            const bool inside = y == 1 && x >= 1 && x <= 3;
            EXPECT_EQ(Target.Pixel(x, y), inside ? Black + static_cast<TColor32>(100 + 2 * (x - 1)) : White)
                << x << ", " << y;
        }
}

TEST_F(BufferedMapLayer, TheNextPictureReplacesTheOldOne) {
    PaintAndRender();
    Viewport->SetTranslation({2, 1});
    PaintAndRender();
    Paint();
    EXPECT_EQ(Target.Pixel(0, 0), Black);
    EXPECT_EQ(Target.Pixel(4, 2), Black + 204);
    EXPECT_EQ(Layer->GetBufferedBitmap()->MapArea, TMapArea(-182, 91, -177, 88));
    EXPECT_EQ(Layer->Renders, 2);
}

TEST_F(BufferedMapLayer, AnEmptyViewIsRenderedIntoAnEmptyPicture) {
    Viewport->SetViewSize({0, 0});
    PaintAndRender();
    ASSERT_NE(Layer->GetBufferedBitmap(), nullptr);
    EXPECT_TRUE(Layer->GetBufferedBitmap()->Bitmap.IsEmpty());
    Paint();
    ExpectAllWhite();
}

// --- Superseded renders ---------------------------------------------------------------------------------------------

TEST_F(BufferedMapLayer, ASecondPaintCancelsTheRenderAndStartsAnother) {
    PaintAndHoldRender();
    const auto first = Layer->GetCurrentThread();
    Viewport->SetTranslation({2, 1});
    Paint();
    EXPECT_TRUE(first->ShouldStop());
    ASSERT_NE(Layer->GetCurrentThread(), nullptr);
    EXPECT_NE(Layer->GetCurrentThread(), first);
    EXPECT_FALSE(Layer->GetCurrentThread()->ShouldStop());
    ASSERT_TRUE(WaitUntil([this] { return Script->Stopped == 1 && Script->Handlers == 1; }));
    Script->IsOpen = true;
    ASSERT_TRUE(PumpUntilRendersEnd());
    EXPECT_EQ(Layer->GetBufferedBitmap()->MapArea, TMapArea(-182, 91, -177, 88));
}

TEST_F(BufferedMapLayer, APaintOfTheSameAreaStartsTheRenderAnew) {
    PaintAndHoldRender();
    const auto first = Layer->GetCurrentThread();
    Paint();
    EXPECT_TRUE(first->ShouldStop());
    EXPECT_NE(Layer->GetCurrentThread(), first);
    EXPECT_EQ(Layer->Renders, 2);
}

// The first render is over and its picture on the way when the second one supersedes it.
TEST_F(BufferedMapLayer, APictureThatArrivesAfterItsRenderWasSupersededIsDropped) {
    PaintAndRender();
    const TBufferedBitmap* shown = Layer->GetBufferedBitmap();
    Viewport->SetTranslation({1, 0});
    Paint();
    ASSERT_TRUE(WaitUntil([this] { return RenderThreadPool().GetRunningCount() == 0 && Script->Begun == 2; }));
    Viewport->SetTranslation({2, 0});
    PaintAndHoldRender();
    const auto second = Layer->GetCurrentThread();
    Invalidations = 0;
    ASSERT_TRUE(PumpUntilHandedOver());
    EXPECT_EQ(Layer->GetBufferedBitmap(), shown);
    EXPECT_EQ(Layer->GetCurrentThread(), second);
    EXPECT_EQ(Invalidations, 0);
}

TEST_F(BufferedMapLayer, ARenderThatWasCancelledFromOutsideLeavesNoPictureAndNoThread) {
    PaintAndHoldRender();
    Layer->GetCurrentThread()->CancelOperation();
    ASSERT_TRUE(PumpUntil([this] { return !Layer->GetCurrentThread(); }));
    EXPECT_EQ(Layer->GetBufferedBitmap(), nullptr);
    EXPECT_EQ(Script->Stopped, 1);
}

TEST_F(BufferedMapLayer, WithNothingToDrawThereIsNoPicture) {
    Script->HasContent = false;
    Paint();
    Invalidations = 0;
    ASSERT_TRUE(PumpUntilRendersEnd());
    EXPECT_EQ(Layer->GetBufferedBitmap(), nullptr);
    EXPECT_EQ(Layer->GetCurrentThread(), nullptr);
    EXPECT_EQ(Script->Begun, 0);
    EXPECT_EQ(Invalidations, 0);
}

TEST_F(BufferedMapLayer, ARenderThatRaisesLeavesThePictureAndTheNextPaintStartsAgain) {
    PaintAndRender();
    const TBufferedBitmap* shown = Layer->GetBufferedBitmap();
    Script->Raises = true;
    Viewport->SetTranslation({1, 0});
    PaintAndRender();
    EXPECT_EQ(Layer->GetBufferedBitmap(), shown);
    Script->Raises = false;
    PaintAndRender();
    EXPECT_NE(Layer->GetBufferedBitmap(), shown);
    EXPECT_EQ(Layer->Renders, 3);
}

// --- Invalidating ---------------------------------------------------------------------------------------------------

TEST_F(BufferedMapLayer, InvalidateKeepsThePictureAndRepaints) {
    PaintAndRender();
    const TBufferedBitmap* shown = Layer->GetBufferedBitmap();
    Invalidations = 0;
    Layer->Invalidate();
    Layer->Invalidate(false);
    EXPECT_EQ(Layer->GetBufferedBitmap(), shown);
    EXPECT_EQ(Invalidations, 2);
    Paint();
    EXPECT_EQ(Target.Pixel(4, 2), Black + 204);
    EXPECT_EQ(Layer->Renders, 1);
}

TEST_F(BufferedMapLayer, InvalidateFalseLetsARenderGoOn) {
    PaintAndHoldRender();
    const auto thread = Layer->GetCurrentThread();
    Layer->Invalidate(false);
    EXPECT_EQ(Layer->GetCurrentThread(), thread);
    EXPECT_FALSE(thread->ShouldStop());
}

TEST_F(BufferedMapLayer, InvalidateTrueDropsThePictureBeforeAnyoneHears) {
    PaintAndRender();
    std::optional<bool> hadPicture;
    const auto subscription =
        Layer->GetOnInvalidated().Add([&](TBaseMapLayer*) { hadPicture = Layer->GetBufferedBitmap() != nullptr; });
    Layer->Invalidate(true);
    EXPECT_EQ(hadPicture, false);
    Paint();
    ExpectAllWhite();
    EXPECT_EQ(Layer->Renders, 2);
}

TEST_F(BufferedMapLayer, InvalidateTrueGivesTheRenderUp) {
    PaintAndHoldRender();
    const auto thread = Layer->GetCurrentThread();
    Layer->Invalidate(true);
    EXPECT_TRUE(thread->ShouldStop());
    EXPECT_EQ(Layer->GetCurrentThread(), nullptr);
    ASSERT_TRUE(PumpUntilRendersEnd());
    EXPECT_EQ(Layer->GetBufferedBitmap(), nullptr);
}

TEST_F(BufferedMapLayer, AnOutdatedPictureIsShownUntilTheNextOneAndThatOneIsRendered) {
    PaintAndRender();
    Layer->OutdateBuffer();
    PaintAndHoldRender();
    EXPECT_EQ(Target.Pixel(4, 2), Black + 204);
    EXPECT_EQ(Layer->Renders, 2);
    Script->IsOpen = true;
    ASSERT_TRUE(PumpUntilRendersEnd());
    Paint();
    EXPECT_EQ(Layer->Renders, 2);
}

TEST_F(BufferedMapLayer, OutdatingGivesTheRenderUp) {
    PaintAndHoldRender();
    const auto thread = Layer->GetCurrentThread();
    Layer->OutdateBuffer();
    EXPECT_TRUE(thread->ShouldStop());
    EXPECT_EQ(Layer->GetCurrentThread(), nullptr);
}

TEST_F(BufferedMapLayer, SetBufferedBitmapTakesThePictureAndInvalidates) {
    auto buffered = CreateBufferedBitmap({2, 1}, {1, 2, 3, 4});
    const TBufferedBitmap* address = buffered.get();
    Invalidations = 0;
    Layer->SetBufferedBitmap(std::move(buffered));
    EXPECT_EQ(Layer->GetBufferedBitmap(), address);
    EXPECT_EQ(Invalidations, 1);
    Layer->SetBufferedBitmap(nullptr);
    EXPECT_EQ(Layer->GetBufferedBitmap(), nullptr);
    EXPECT_EQ(Invalidations, 2);
}

// --- The pool -------------------------------------------------------------------------------------------------------

TEST_F(BufferedMapLayer, AllLayersShareAPoolOfTenAndTheEleventhRenderWaitsForAThread) {
    EXPECT_EQ(RenderThreadPool().GetCount(), 10);
    std::vector<std::unique_ptr<TTestBufferedLayer>> layers;
    for (int i = 0; i < 11; ++i) {
        layers.push_back(std::make_unique<TTestBufferedLayer>(Manager));
        layers.back()->Script = Script;
    }
    Script->IsOpen = false;
    QElapsedTimer elapsed;
    elapsed.start();
    for (const auto& layer : layers)
        layer->Paint(World.get(), Viewport.get(), Target);
    EXPECT_LT(elapsed.elapsed(), 1000);
    ASSERT_TRUE(WaitUntil([this] { return Script->Begun == 10; }));
    EXPECT_EQ(RenderThreadPool().GetRunningCount(), 10);
    EXPECT_EQ(RenderThreadPool().GetQueuedCount(), 1);
    layers.back()->Paint(World.get(), Viewport.get(), Target); // a pan while all are busy leaves one request waiting
    EXPECT_EQ(RenderThreadPool().GetQueuedCount(), 1);
    Script->IsOpen = true;
    ASSERT_TRUE(PumpUntilRendersEnd());
    for (const auto& layer : layers)
        EXPECT_NE(layer->GetBufferedBitmap(), nullptr);
}

// --- Destruction ----------------------------------------------------------------------------------------------------

TEST_F(BufferedMapLayer, DestroyingItDuringALongRenderReturnsAtOnce) {
    PaintAndHoldRender();
    const auto thread = Layer->GetCurrentThread();
    QElapsedTimer elapsed;
    elapsed.start();
    Layer.reset();
    EXPECT_LT(elapsed.elapsed(), 50);
    EXPECT_TRUE(thread->ShouldStop());
    EXPECT_TRUE(WaitUntil([this] { return Script->Stopped == 1; }));
}

TEST_F(BufferedMapLayer, DestroyingItReturnsAtOnceThoughTheRenderNeverLooks) {
    Script->IsDeaf = true;
    PaintAndHoldRender();
    QElapsedTimer elapsed;
    elapsed.start();
    Layer.reset();
    EXPECT_LT(elapsed.elapsed(), 50);
    EXPECT_EQ(Script->Handlers, 1);
}

TEST_F(BufferedMapLayer, APictureThatArrivesAfterTheLayerHasGoneIsFreed) {
    Paint();
    ASSERT_TRUE(WaitUntil([this] { return RenderThreadPool().GetRunningCount() == 0 && Script->Begun == 1; }));
    Layer.reset();
    EXPECT_TRUE(PumpUntilHandedOver());
}

TEST_F(BufferedMapLayer, TheViewMayGoDuringARender) {
    PaintAndHoldRender();
    Viewport.reset();
    World.reset();
    Script->IsOpen = true;
    ASSERT_TRUE(PumpUntilRendersEnd());
    EXPECT_NE(Layer->GetBufferedBitmap(), nullptr);
}

TEST_F(BufferedMapLayer, WhoHearsOfANewPictureMayDestroyTheLayer) {
    Paint();
    const auto subscription = Layer->GetOnInvalidated().Add([this](TBaseMapLayer*) { Layer.reset(); });
    ASSERT_TRUE(PumpUntil([this] { return !Layer; }));
}

TEST_F(BufferedMapLayer, WhoHearsThatItIsReadyMayDestroyTheLayer) {
    Layer->SetIsReadyToDraw(true);
    Paint();
    const auto subscription = Layer->GetOnReadyToDrawChanged().Add([this](TBaseMapLayer*) { Layer.reset(); });
    ASSERT_TRUE(PumpUntil([this] { return !Layer; }));
}

TEST_F(BufferedMapLayer, WhoHearsOfANewPictureMayPaintAtOnceAndThatRenderStays) {
    Paint();
    Script->IsOpen = false;
    Viewport->SetTranslation({3, 0});
    const auto subscription = Layer->GetOnInvalidated().Add([this](TBaseMapLayer*) {
        if (Layer->Renders == 1)
            Layer->Paint(World.get(), Viewport.get(), Target);
    });
    Script->IsOpen = true;
    ASSERT_TRUE(PumpUntil([this] { return Layer->Renders == 2 && !Layer->GetCurrentThread(); }));
    EXPECT_EQ(Layer->GetBufferedBitmap()->MapArea, TMapArea(-183, 90, -178, 87));
}

// --- Several views --------------------------------------------------------------------------------------------------

/// A second view of the same world, three degrees further to the east.
class BufferedMapLayerInTwoViews : public BufferedMapLayer {
protected:
    BufferedMapLayerInTwoViews() {
        Second->SetViewSize({6, 4});
        Second->SetTranslation({-3, 0});
    }

    /// Paints both views after each picture, as views do that hear of it, until none is on its way.
    void PaintBothUntilQuiet() {
        do {
            Paint();
            Layer->Paint(World.get(), Second.get(), SecondTarget);
            ASSERT_TRUE(PumpUntilRendersEnd());
        } while (Layer->Renders < 100 && Painted() < Layer->Renders);
    }
    /// How many renders there had been at the last call.
    int Painted() { return std::exchange(FRenders, Layer->Renders); }

    std::unique_ptr<TWorldViewport> Second = std::make_unique<TWorldViewport>(World.get());
    TBitmap32 SecondTarget{6, 4};

private:
    int FRenders = 0;
};

TEST_F(BufferedMapLayerInTwoViews, EachShowsItsOwnPictureAndTheLoopEnds) {
    PaintBothUntilQuiet();
    EXPECT_EQ(Layer->Renders, 3); // the first one gave way to the other view's
    EXPECT_EQ(Target.Pixel(0, 0), Black);
    EXPECT_EQ(Target.Pixel(4, 2), Black + 204);
    EXPECT_EQ(SecondTarget.Pixel(0, 0), Black);
    EXPECT_EQ(SecondTarget.Pixel(4, 2), Black + 204);
}

TEST_F(BufferedMapLayerInTwoViews, AViewWithoutAPictureOfItsOwnShowsTheNewest) {
    PaintAndRender();
    Script->IsOpen = false;
    SecondTarget.Clear(White);
    Layer->Paint(World.get(), Second.get(), SecondTarget);
    EXPECT_EQ(SecondTarget.Pixel(0, 0), Black + 3);
    EXPECT_EQ(SecondTarget.Pixel(1, 0), Black + 4);
    EXPECT_EQ(SecondTarget.Pixel(2, 0), White);
}

TEST_F(BufferedMapLayerInTwoViews, APanOfOneLeavesTheOther) {
    PaintBothUntilQuiet();
    Second->SetTranslation({-5, 0});
    PaintBothUntilQuiet();
    EXPECT_EQ(Layer->Renders, 4);
    EXPECT_EQ(Layer->GetBufferedBitmap()->MapArea, TMapArea(-175, 90, -170, 87));
}

TEST_F(BufferedMapLayerInTwoViews, NewContentIsRenderedForBoth) {
    PaintBothUntilQuiet();
    Layer->OutdateBuffer();
    PaintBothUntilQuiet();
    EXPECT_EQ(Layer->Renders, 6);
    Layer->SetColor(0xFF100000);
    PaintBothUntilQuiet();
    EXPECT_EQ(Layer->Renders, 9);
    EXPECT_EQ(Target.Pixel(1, 0), 0xFF100001U);
    EXPECT_EQ(SecondTarget.Pixel(1, 0), 0xFF100001U);
}

TEST_F(BufferedMapLayerInTwoViews, APictureOfAHostsOwnIsForBoth) {
    PaintBothUntilQuiet();
    auto buffered = CreateBufferedBitmap({6, 4}, Viewport->GetVisibleMapArea());
    buffered->Bitmap.Clear(0xFF123456);
    Layer->SetBufferedBitmap(std::move(buffered));
    Script->IsOpen = false;
    SecondTarget.Clear(White);
    Layer->Paint(World.get(), Second.get(), SecondTarget);
    EXPECT_EQ(SecondTarget.Pixel(1, 0), 0xFF123456U);
    EXPECT_EQ(SecondTarget.Pixel(2, 0), White);
}

TEST_F(BufferedMapLayerInTwoViews, OneThatHasGoneLeavesTheOther) {
    PaintBothUntilQuiet();
    Second.reset();
    Viewport->SetTranslation({1, 0});
    PaintAndRender();
    Paint();
    EXPECT_EQ(Layer->Renders, 4);
    EXPECT_EQ(Target.Pixel(0, 0), Black);
}

// --- In a view ------------------------------------------------------------------------------------------------------

TEST(BufferedMapLayerInAView, TheLoopOfPaintsAndRendersEndsWhenTheViewStopsMoving) {
    TShownView shown;
    auto owned = std::make_unique<TTestBufferedLayer>(shown.Manager);
    TTestBufferedLayer& layer = *owned;
    layer.SetLayerArea(LatLonArea({0, 10, 20, 0}));
    layer.SetColor(Black);
    shown.Manager->GetLayers().Add(std::move(owned));
    const auto isCurrent = [&] {
        return layer.GetBufferedBitmap() && !layer.GetCurrentThread() &&
               layer.GetBufferedBitmap()->MapArea == shown.View.GetViewport()->GetVisibleMapArea();
    };
    ASSERT_TRUE(PumpUntil(isCurrent));
    for (int i = 0; i < 10; ++i) {
        shown.View.GetViewport()->SetTranslation({i, -i});
        shown.Settle();
    }
    ASSERT_TRUE(PumpUntil(isCurrent));
    shown.Settle();
    const int renders = layer.Renders;
    for (int i = 0; i < 20; ++i) {
        shown.View.RepaintMap();
        shown.Settle();
    }
    EXPECT_EQ(layer.Renders, renders);
    EXPECT_EQ(shown.PixelAt(7, 5), Black + 507);
    EXPECT_TRUE(PumpUntilRendersEnd());
}

// --- Render threads of a host ---------------------------------------------------------------------------------------

class RenderThreads : public BufferedMapLayer {
protected:
    /// A proc that is held up at `gate` and notes whether it was terminated.
    TRenderThreadProc Proc(const TGate& gate, int number) {
        return [log = Log, number, wait = gate.GetWaiter()](TThread& thread) {
            log->Add(log->Begun, number);
            wait([&] { return thread.GetTerminated(); });
            log->Add(thread.GetTerminated() ? log->Stopped : log->Done, number);
        };
    }
    static bool WaitUntilFinished(const std::shared_ptr<TThread>& thread) {
        return WaitUntil([&] { return thread->GetFinished(); });
    }

    struct TLog {
        void Add(std::vector<int>& list, int number) {
            const std::lock_guard lock(Mutex);
            list.push_back(number);
        }
        std::vector<int> Get(const std::vector<int>& list) {
            const std::lock_guard lock(Mutex);
            return list;
        }
        std::mutex Mutex;
        std::vector<int> Begun, Done, Stopped;
    };
    std::shared_ptr<TLog> Log = std::make_shared<TLog>();
    TGate Gate;
};

TEST_F(RenderThreads, RunTheProcOnAThreadOfItsOwnWhichIsTheLayersMeanwhile) {
    const auto thread = Layer->StartRenderThread(Proc(Gate, 1));
    ASSERT_TRUE(WaitUntil([this] { return Log->Get(Log->Begun).size() == 1; }));
    EXPECT_EQ(Layer->GetRenderThread(), thread);
    Gate.Open();
    ASSERT_TRUE(WaitUntilFinished(thread));
    EXPECT_EQ(Layer->GetRenderThread(), nullptr);
    EXPECT_EQ(Log->Done, std::vector<int>{1});
}

TEST_F(RenderThreads, GiveTheProcTheThreadOnWhichItRuns) {
    std::atomic<TThread*> given = nullptr;
    std::atomic<TThread*> current = nullptr;
    const auto thread = Layer->StartRenderThread([&](TThread& self) {
        given = &self;
        current = TThread::GetCurrentThread();
    });
    ASSERT_TRUE(WaitUntilFinished(thread));
    EXPECT_EQ(given, thread.get());
    EXPECT_EQ(current, thread.get());
}

TEST_F(RenderThreads, TheShortFormStopsTheProcThatRuns) {
    const auto first = Layer->StartRenderThread(Proc(Gate, 1));
    ASSERT_TRUE(WaitUntil([this] { return Log->Get(Log->Begun).size() == 1; }));
    TGate second;
    const auto next = Layer->StartRenderThread(Proc(second, 2));
    EXPECT_TRUE(first->GetTerminated());
    ASSERT_TRUE(WaitUntilFinished(first));
    second.Open();
    ASSERT_TRUE(WaitUntilFinished(next));
    EXPECT_EQ(Log->Stopped, std::vector<int>{1});
    EXPECT_EQ(Log->Done, std::vector<int>{2});
}

TEST_F(RenderThreads, WithoutStopCurrentRunOneAtATime) {
    const auto first = Layer->StartRenderThread(Proc(Gate, 1), false);
    ASSERT_TRUE(WaitUntil([this] { return Log->Get(Log->Begun).size() == 1; }));
    TGate second;
    const auto next = Layer->StartRenderThread(Proc(second, 2), false);
    EXPECT_FALSE(first->GetTerminated());
    EXPECT_EQ(Layer->GetRenderThread(), first);
    EXPECT_EQ(Log->Get(Log->Begun), std::vector<int>{1});
    Gate.Open();
    ASSERT_TRUE(WaitUntil([this] { return Log->Get(Log->Begun).size() == 2; }));
    EXPECT_EQ(Log->Get(Log->Done), std::vector<int>{1}); // over before the second began
    EXPECT_EQ(Layer->GetRenderThread(), next);
    second.Open();
    ASSERT_TRUE(WaitUntilFinished(next));
}

TEST_F(RenderThreads, OneThatIsTerminatedWhileItWaitsForItsTurnDoesNothing) {
    const auto first = Layer->StartRenderThread(Proc(Gate, 1), false);
    ASSERT_TRUE(WaitUntil([this] { return Log->Get(Log->Begun).size() == 1; }));
    const auto next = Layer->StartRenderThread(Proc(Gate, 2), false);
    next->Terminate();
    Gate.Open();
    ASSERT_TRUE(WaitUntilFinished(next));
    EXPECT_EQ(Log->Begun, std::vector<int>{1});
}

TEST_F(RenderThreads, WithoutStartNowTheCallerStartsIt) {
    Gate.Open();
    const auto thread = Layer->StartRenderThread(Proc(Gate, 1), true, false);
    EXPECT_FALSE(thread->GetFinished());
    EXPECT_EQ(Layer->GetRenderThread(), nullptr);
    thread->Start();
    ASSERT_TRUE(WaitUntilFinished(thread));
    EXPECT_EQ(Log->Done, std::vector<int>{1});
}

TEST_F(RenderThreads, StopCurrentTerminatesTheOneThatRunsAndNeverWaits) {
    Layer->StopCurrentRenderThread(); // none
    const auto thread = Layer->StartRenderThread([this](TThread&) {
        Log->Add(Log->Begun, 1);
        Gate.GetWaiter()([] { return false; }); // never looks
    });
    ASSERT_TRUE(WaitUntil([this] { return Log->Get(Log->Begun).size() == 1; }));
    Layer->StopCurrentRenderThread();
    EXPECT_TRUE(thread->GetTerminated());
    EXPECT_FALSE(thread->GetFinished());
    EXPECT_EQ(Layer->GetRenderThread(), nullptr);
    Layer->StopCurrentRenderThread(); // again none
    Gate.Open();
    ASSERT_TRUE(WaitUntilFinished(thread));
}

TEST_F(RenderThreads, WhatAProcRaisesEndsWithItAndTheNextOneRuns) {
    Gate.Open();
    const auto first = Layer->StartRenderThread([](TThread&) { throw std::runtime_error("lost"); });
    ASSERT_TRUE(WaitUntilFinished(first));
    EXPECT_EQ(Layer->GetRenderThread(), nullptr);
    ASSERT_TRUE(WaitUntilFinished(Layer->StartRenderThread(Proc(Gate, 2))));
    EXPECT_EQ(Log->Done, std::vector<int>{2});
}

TEST_F(RenderThreads, ANilProcIsRefused) {
    EXPECT_EQ(MessageOf<EExArgumentNilException>([this] { Layer->StartRenderThread(nullptr); }),
              "TBufferedMapLayer.StartRenderThread: argument Proc is nil");
}

TEST_F(RenderThreads, DestroyingTheLayerStopsTheProcAndReturnsAtOnce) {
    const auto thread = Layer->StartRenderThread(Proc(Gate, 1));
    ASSERT_TRUE(WaitUntil([this] { return Log->Get(Log->Begun).size() == 1; }));
    QElapsedTimer elapsed;
    elapsed.start();
    Layer.reset();
    EXPECT_LT(elapsed.elapsed(), 50);
    ASSERT_TRUE(WaitUntilFinished(thread));
    EXPECT_EQ(Log->Stopped, std::vector<int>{1});
}

TEST_F(RenderThreads, AProcWhoseTurnComesAfterTheLayerHasGoneDoesNotRun) {
    TGate deafGate;
    const auto first = Layer->StartRenderThread([log = Log, wait = deafGate.GetWaiter()](TThread&) {
        log->Add(log->Begun, 1);
        wait([] { return false; });
    });
    ASSERT_TRUE(WaitUntil([this] { return Log->Get(Log->Begun).size() == 1; }));
    const auto waiting = Layer->StartRenderThread(Proc(Gate, 2), false);
    const auto unstarted = Layer->StartRenderThread(Proc(Gate, 3), false, false);
    Layer.reset();
    unstarted->Start();
    deafGate.Open();
    ASSERT_TRUE(WaitUntilFinished(first));
    ASSERT_TRUE(WaitUntilFinished(waiting));
    ASSERT_TRUE(WaitUntilFinished(unstarted));
    EXPECT_EQ(Log->Begun, std::vector<int>{1});
}

TEST_F(RenderThreads, APictureOfAHostsOwnIsHandedOverOnTheMainThread) {
    const auto area = Viewport->GetVisibleMapArea();
    const auto liveness = Layer->GetLivenessToken();
    Layer->StartRenderThread([layer = Layer.get(), liveness, area](TThread& thread) {
        auto picture = std::make_shared<std::unique_ptr<TBufferedBitmap>>(CreateBufferedBitmap({6, 4}, area));
        (*picture)->Bitmap.Clear(0xFF123456);
        if (!thread.GetTerminated())
            TThread::Synchronize([=] {
                if (!liveness.expired())
                    layer->SetBufferedBitmap(std::move(*picture));
            });
    });
    ASSERT_TRUE(PumpUntil([this] { return Layer->GetBufferedBitmap() != nullptr; }));
    Paint();
    EXPECT_EQ(Target.Pixel(0, 0), 0xFF123456U);
    EXPECT_EQ(Layer->Renders, 0);
}

} // namespace
} // namespace lmx
