#pragma once

#include <lmx/Coordinates/wskWorld.h>
#include <lmx/Layers/Render/lmxBufferedBitmap.h>
#include <lmx/Runtime/lmxExport.h>
#include <lmx/Runtime/lmxThreadPool.h>

#include <memory>

namespace lmx {

/// One render of a buffered layer on a thread of the pool. It works on copies and on shared data that nobody changes,
/// never on the layer, its view or its world, all of which may be replaced or gone at any moment. A concrete handler is
/// made on the main thread, where it takes a share of everything that it draws, and overrides Draw.
class LMX_EXPORT TRenderThreadHandler {
public:
    TRenderThreadHandler(TSize viewSize, const TMapArea& visibleMapArea, const TWorldViewportLocal& vpLocal)
        : ViewSize(viewSize),
          VisibleMapArea(visibleMapArea),
          VPLocal(vpLocal) {}
    virtual ~TRenderThreadHandler();
    TRenderThreadHandler(const TRenderThreadHandler&) = delete;
    TRenderThreadHandler& operator=(const TRenderThreadHandler&) = delete;

    const TSize ViewSize;          ///< of the picture, in pixels
    const TMapArea VisibleMapArea; ///< what the picture shows
    const TWorldViewportLocal VPLocal;

    /// The picture; nil if there is nothing to draw or the operation was cancelled. Any thread.
    std::unique_ptr<TBufferedBitmap> Render(const TThreadPoolThread& thread) const;

protected:
    /// Whether there is anything to draw; without it no picture is made. Here: true.
    virtual bool GetHasContent() const;
    /// Draws into a transparent bitmap of the view's size, all positions converted by VPLocal. Asks thread.ShouldStop()
    /// before every vertex and returns at once when it is told so. What it raises ends the render without a picture.
    virtual void Draw(TBitmap32& bitmap, const TThreadPoolThread& thread) const = 0;
};

} // namespace lmx
