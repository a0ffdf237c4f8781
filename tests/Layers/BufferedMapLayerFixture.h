#pragma once

#include <lmx/Coordinates/wskWorld.h>
#include <tests/Support/TestBufferedLayer.h>

#include <gtest/gtest.h>

#include <memory>

namespace lmx::tests {

inline constexpr TColor32 White = 0xFFFFFFFF;
inline constexpr TColor32 Black = 0xFF000000;

/// A layer in a view of 6 x 4 pixels whose top left one is the corner of the world, at a pixel for each degree.
class TBufferedMapLayerFixture : public testing::Test {
protected:
    TBufferedMapLayerFixture() {
        Viewport->SetViewSize({6, 4});
        Viewport->SetTranslation({0, 0});
        Layer->SetColor(Black);
        FEvents = Layer->GetOnInvalidated().Add([this](TBaseMapLayer*) { ++Invalidations; });
    }
    ~TBufferedMapLayerFixture() override {
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

} // namespace lmx::tests
