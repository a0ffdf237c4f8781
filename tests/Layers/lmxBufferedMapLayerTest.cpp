#include <tests/Layers/BufferedMapLayerFixture.h>
#include <tests/Support/CoordinatePrinters.h>
#include <tests/Support/Printers.h>
#include <tests/Support/TestBufferedLayer.h>

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace lmx {
namespace {

using namespace tests;

class BufferedMapLayer : public TBufferedMapLayerFixture {};

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
    for (const auto& layer : layers)
        layer->Paint(World.get(), Viewport.get(), Target);
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
    Layer.reset();
    EXPECT_TRUE(thread->ShouldStop());
    EXPECT_TRUE(WaitUntil([this] { return Script->Stopped == 1; }));
}

TEST_F(BufferedMapLayer, DestroyingItReturnsAtOnceThoughTheRenderNeverLooks) {
    Script->IsDeaf = true;
    PaintAndHoldRender();
    Layer.reset();
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

} // namespace
} // namespace lmx
