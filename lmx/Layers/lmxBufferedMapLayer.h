#pragma once

#include <lmx/Layers/Render/lmxBufferedBitmap.h>
#include <lmx/Layers/lmxBaseLayerManagerLayer.h>
#include <lmx/Runtime/lmxBorrowed.h>
#include <lmx/Runtime/lmxExport.h>
#include <lmx/Runtime/lmxThread.h>
#include <lmx/Runtime/lmxThreadPool.h>

#include <functional>
#include <memory>
#include <vector>

namespace lmx {

class TRenderThreadHandler;
class TWorldViewportLocal;

/// What a caller of StartRenderThread has run; it is given the thread on which it runs.
using TRenderThreadProc = std::function<void(TThread& thread)>;

/// A layer that never draws its content in Paint. It keeps one finished picture and the map area that the picture
/// shows, and stretches it onto the view. While that is not exactly the area now visible, each paint starts a fresh
/// render on a thread of the pool and gives up the one before it; the picture of the newest one is handed over on the
/// main thread and repaints the view. So panning and zooming never wait for drawing, and the loop ends by itself when
/// the view stops moving. Where several views show the layer, the newest picture of each is kept, for up to eight of
/// them; a picture for a viewport that has gone by then, as one made beside the views may, takes none of theirs away.
///
/// Everything here belongs to the main thread. A render holds a share of all that it draws (TRenderThreadHandler), so
/// the layer and its content may be changed, replaced or destroyed at any moment; nothing waits for a render.
class LMX_EXPORT TBufferedMapLayer : public TBaseLayerManagerLayer {
public:
    explicit TBufferedMapLayer(const std::shared_ptr<ILayerManager>& layerManager);
    /// Asks renders and render threads to stop, and returns at once.
    ~TBufferedMapLayer() override;

    /// Draws the picture, if there is one, stretched to where its map area lies; starts a render unless it shows
    /// exactly the visible area.
    void Paint(TWorld* world, TWorldViewport* viewport, TBitmap32& bitmap) override;
    /// Asks the view to repaint; the picture stays.
    void Invalidate() override;
    /// The same; with `clearBuffer` the picture and a render under way are dropped first. For content that has changed
    /// so that the old picture would mislead.
    void Invalidate(bool clearBuffer);

    const TBufferedBitmap* GetBufferedBitmap() const; ///< the newest one, or nil
    /// Replaces the picture (nil: by none), for all views, and repaints. Main thread only.
    void SetBufferedBitmap(std::unique_ptr<TBufferedBitmap> buffered);

    /// The pool's thread of the newest render while that is under way, else nil.
    const std::shared_ptr<TThreadPoolThread>& GetCurrentThread() const { return FCurrentThread; }

    /// Starts a render of `visibleMapArea` into a picture of `viewSize` pixels. A concrete layer calls StartRender with
    /// a handler of its own.
    virtual void RenderBuffer(TSize viewSize, const TMapArea& visibleMapArea, const TWorldViewportLocal& vpLocal) = 0;

    /// A thread of its own for a host's work, outside the pool. The procs of one layer run one at a time, in the order
    /// in which their threads get the layer's lock, which each holds for the whole of its proc. A proc does not run if
    /// its thread was terminated, or the layer destroyed, before its turn. A proc must not touch the layer but through
    /// TThread::Synchronize, and there only while a TBorrowed of it, made before, is not nil; it asks
    /// thread.GetTerminated() to learn when to stop. What it raises ends with it.
    /// With `stopCurrent` the proc now running is asked to stop. Without `startNow` the caller starts the thread.
    /// @throws EExArgumentNilException naming "TBufferedMapLayer.StartRenderThread" and "Proc" if `proc` is empty.
    std::shared_ptr<TThread> StartRenderThread(TRenderThreadProc proc, bool stopCurrent = true, bool startNow = true);
    /// Asks the proc now running to stop; never waits.
    void StopCurrentRenderThread();
    /// The thread whose proc is running, or nil.
    std::shared_ptr<TThread> GetRenderThread() const;

protected:
    /// Gives up the render under way and starts `handler` on a thread of the pool.
    void StartRender(std::shared_ptr<TRenderThreadHandler> handler);
    /// Gives up the render under way, if any; its picture will not be taken.
    void CancelRender();
    /// Drops the pictures and gives up the render under way, and tells nobody.
    void DropBuffer();
    /// Goes on showing the picture until another one comes, and gives up the render under way: the next paint starts a
    /// render whatever the area. For content that has changed when the old picture serves meanwhile.
    void OutdateBuffer();

private:
    class TRenderThreads;

    /// A picture and the viewport that it was rendered for; a host's own is for all.
    struct TViewPicture {
        std::unique_ptr<TBufferedBitmap> Buffered;
        TLifeWatch View;
        bool IsOutdated = false; // shows content of before
    };
    using TViewPictures = std::vector<TViewPicture>;

    /// Renders and has the main thread finish the render of `layer`, if that is still there.
    static void ThreadExecute(const TRenderThreadHandler& handler, const TBorrowed<TBufferedMapLayer>& layer,
                              TThreadPoolThread& thread);
    void FinishRender(const TThreadPoolThread& thread, std::unique_ptr<TBufferedBitmap> buffered);
    void KeepPicture(TViewPicture picture);
    void DropPicturesOfTheGone();
    const TViewPicture* PictureFor(const TWorldViewport& viewport) const;

    TViewPictures FPictures; // the newest one of each view, the newest of all first
    TLifeWatch FPaintedView; // the viewport of the newest paint
    TLifeWatch FCurrentView; // the one that the newest render is for
    std::shared_ptr<TThreadPoolThread> FCurrentThread;
    std::shared_ptr<TRenderThreads> FRenderThreads; // the threads of StartRenderThread hold it too
};

} // namespace lmx
