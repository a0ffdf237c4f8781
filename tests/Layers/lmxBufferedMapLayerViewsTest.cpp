#include <lmx/Coordinates/wskWorld.h>
#include <tests/Layers/BufferedMapLayerFixture.h>
#include <tests/Support/CoordinatePrinters.h>
#include <tests/Support/ShownView.h>
#include <tests/Support/TestBufferedLayer.h>

#include <gtest/gtest.h>

#include <memory>
#include <utility>
#include <vector>

namespace lmx {
namespace {

using namespace tests;

/// A second view of the same world, three degrees further to the east.
class BufferedMapLayerInTwoViews : public TBufferedMapLayerFixture {
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

TEST_F(BufferedMapLayerInTwoViews, ARenderForOneThatGoesTakesNoPictureAway) {
    PaintAndRender();
    Layer->Paint(World.get(), Second.get(), SecondTarget);
    Second.reset();
    ASSERT_TRUE(PumpUntilRendersEnd());
    Script->IsOpen = false;
    Paint();
    EXPECT_EQ(Layer->Renders, 2);
    EXPECT_EQ(Target.Pixel(0, 0), Black);
    EXPECT_EQ(Target.Pixel(4, 2), Black + 204);
}

TEST_F(BufferedMapLayerInTwoViews, ARenderForOneThatGoesHasTheOtherGoOn) {
    Script->IsOpen = false;
    Paint();
    Layer->Paint(World.get(), Second.get(), SecondTarget); // cuts off the first view's
    Second.reset();
    Invalidations = 0;
    Script->IsOpen = true;
    ASSERT_TRUE(PumpUntilRendersEnd());
    EXPECT_EQ(Invalidations, 1); // whereupon the first view paints
    PaintAndRender();
    Paint();
    EXPECT_EQ(Layer->Renders, 3);
    EXPECT_EQ(Target.Pixel(4, 2), Black + 204);
}

TEST_F(BufferedMapLayerInTwoViews, PicturesOfThoseThatHaveGoneGoWithTheNextPaint) {
    PaintBothUntilQuiet();
    Second->SetTranslation({-5, 0});
    PaintBothUntilQuiet();
    ASSERT_EQ(Layer->GetBufferedBitmap()->MapArea, Second->GetVisibleMapArea());
    Second.reset();
    Paint();
    EXPECT_EQ(Layer->GetBufferedBitmap()->MapArea, Viewport->GetVisibleMapArea());
    EXPECT_EQ(Layer->Renders, 4);
}

TEST_F(BufferedMapLayerInTwoViews, PicturesOfEightViewsAreKept) {
    std::vector<std::unique_ptr<TWorldViewport>> views;
    for (int i = 0; i < 9; ++i) {
        views.push_back(std::make_unique<TWorldViewport>(World.get()));
        views.back()->SetViewSize({6, 4});
        views.back()->SetTranslation({-i, 0});
        Layer->Paint(World.get(), views.back().get(), SecondTarget);
        ASSERT_TRUE(PumpUntilRendersEnd());
    }
    EXPECT_EQ(Layer->Renders, 9);
    for (int i = 8; i > 0; --i)
        Layer->Paint(World.get(), views[static_cast<std::size_t>(i)].get(), SecondTarget);
    EXPECT_EQ(Layer->Renders, 9);
    Layer->Paint(World.get(), views[0].get(), SecondTarget);
    EXPECT_EQ(Layer->Renders, 10);
}

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

} // namespace
} // namespace lmx
