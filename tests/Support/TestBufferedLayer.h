#pragma once

#include <lmx/Layers/Render/Private/lmxRenderThreadPool.h>
#include <lmx/Layers/Render/lmxRenderThreadHandler.h>
#include <lmx/Layers/lmxBaseShapeLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <tests/Support/Threads.h>

#include <atomic>
#include <memory>
#include <stdexcept>
#include <thread>
#include <utility>

namespace lmx::tests {

/// What the renders of a test layer do and have done; they share it with the test.
struct TRenderScript {
    std::atomic<bool> IsOpen = true;     ///< a render waits until it is, or until it is cancelled
    std::atomic<bool> IsDeaf = false;    ///< renders do not look whether they are cancelled
    std::atomic<bool> Raises = false;    ///< renders end with an exception
    std::atomic<bool> HasContent = true; ///< there is something to draw
    std::atomic<int> Begun = 0;          ///< renders that came to draw
    std::atomic<int> Stopped = 0;        ///< those that saw that they were cancelled
    std::atomic<int> Handlers = 0;       ///< those that still hold what they draw
};

/// Draws pixel (x, y) in the colour plus 100 * y + x.
class TTestRenderHandler final : public TRenderThreadHandler {
public:
    TTestRenderHandler(TSize viewSize, const TMapArea& visibleMapArea, const TWorldViewportLocal& vpLocal,
                       std::shared_ptr<TRenderScript> script, TColor32 color)
        : TRenderThreadHandler(viewSize, visibleMapArea, vpLocal),
          FScript(std::move(script)),
          FColor(color) {
        ++FScript->Handlers;
    }
    ~TTestRenderHandler() override { --FScript->Handlers; }

protected:
    bool GetHasContent() const override { return FScript->HasContent; }
    void Draw(TBitmap32& bitmap, const TThreadPoolThread& thread) const override {
        ++FScript->Begun;
        while (!FScript->IsOpen && (FScript->IsDeaf || !thread.ShouldStop()))
            std::this_thread::yield();
        if (FScript->Raises)
            throw std::runtime_error("lost");
        for (int y = 0; y < bitmap.GetHeight(); ++y)
            for (int x = 0; x < bitmap.GetWidth(); ++x) {
                if (thread.ShouldStop()) {
                    ++FScript->Stopped;
                    return;
                }
                bitmap.Pixel(x, y) = FColor + static_cast<TColor32>(100 * y + x);
            }
    }

private:
    std::shared_ptr<TRenderScript> FScript;
    TColor32 FColor;
};

class TTestBufferedLayer : public TBaseShapeLayer {
public:
    using TBaseShapeLayer::OutdateBuffer;
    using TBaseShapeLayer::TBaseShapeLayer;
    using TBaseShapeLayer::UpdateDuplicateBaseShapeLayer;

    QString GetLayerTypeName() const override { return QStringLiteral("Test"); }
    void CreateLegendComponent() override { ++Legends; }
    void RenderBuffer(TSize viewSize, const TMapArea& visibleMapArea, const TWorldViewportLocal& vpLocal) override {
        ++Renders;
        StartRender(std::make_shared<TTestRenderHandler>(viewSize, visibleMapArea, vpLocal, Script, GetColor()));
    }

    std::shared_ptr<TRenderScript> Script = std::make_shared<TRenderScript>();
    int Renders = 0;
    int Legends = 0;
};

/// Whether every render of the process has ended and what it handed over has arrived.
inline bool PumpUntilRendersEnd() {
    return PumpUntil([] { return RenderThreadPool().GetRunningCount() + RenderThreadPool().GetQueuedCount() == 0; }) &&
           PumpUntilHandedOver();
}

} // namespace lmx::tests
