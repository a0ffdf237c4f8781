#include <lmx/Coordinates/wskWorld.h>
#include <lmx/Layers/lmxBufferedMapLayer.h>
#include <lmx/Layers/Render/lmxRenderThreadHandler.h>
#include <lmx/Layers/Render/Private/lmxRenderThreadPool.h>
#include <lmx/Runtime/lmxExceptions.h>

#include <mutex>
#include <utility>

namespace lmx {

namespace {

using TView = std::weak_ptr<const void>;

bool IsSameView(const TView& a, const TView& b) {
    return !a.owner_before(b) && !b.owner_before(a);
}

/// Whether the picture shows exactly what is visible, once it is drawn where its map area lies.
bool DrawPicture(const TBufferedBitmap& buffered, const TWorldViewport& viewport, TBitmap32& bitmap) {
    const TMapArea& area = buffered.MapArea;
    const TMapArea pixels(viewport.MapPointToPoint(area.GetTopLeft()), viewport.MapPointToPoint(area.GetBottomRight()));
    bitmap.Draw(pixels.ToRect(), buffered.Bitmap.GetBounds(), buffered.Bitmap);
    return viewport.GetVisibleMapArea().Equals(area);
}

} // namespace

/// What the threads of StartRenderThread share with their layer, and keep when it has gone.
class TBufferedMapLayer::TRenderThreads {
public:
    /// On a new thread: runs `proc` when its turn has come.
    void Run(const TRenderThreadProc& proc) {
        const auto thread = TThread::GetCurrentThread()->shared_from_this();
        const std::lock_guard turn(FLock);
        if (!Enter(thread))
            return;
        try {
            if (!TThread::CheckTerminated())
                proc(*thread);
        } catch (...) {
            // By contract: nobody is left to hear of it.
        }
        Leave(thread);
    }

    std::shared_ptr<TThread> GetCurrent() const {
        const std::lock_guard guard(FGuard);
        return FCurrent;
    }
    void StopCurrent() {
        if (const auto thread = TakeCurrent())
            thread->Terminate();
    }
    /// The layer goes: no proc runs any more.
    void Close() {
        {
            const std::lock_guard guard(FGuard);
            FClosed = true;
        }
        StopCurrent();
    }

private:
    bool Enter(const std::shared_ptr<TThread>& thread) {
        const std::lock_guard guard(FGuard);
        if (!FClosed)
            FCurrent = thread;
        return !FClosed;
    }
    void Leave(const std::shared_ptr<TThread>& thread) {
        const std::lock_guard guard(FGuard);
        if (FCurrent == thread)
            FCurrent = nullptr;
    }
    std::shared_ptr<TThread> TakeCurrent() {
        const std::lock_guard guard(FGuard);
        return std::exchange(FCurrent, nullptr);
    }

    std::mutex FLock;          // held for the whole of a proc
    mutable std::mutex FGuard; // held for a moment only, so the main thread may take it
    std::shared_ptr<TThread> FCurrent;
    bool FClosed = false;
};

TBufferedMapLayer::TBufferedMapLayer(const std::shared_ptr<ILayerManager>& layerManager)
    : TBaseLayerManagerLayer(layerManager),
      FRenderThreads(std::make_shared<TRenderThreads>()) {}

TBufferedMapLayer::~TBufferedMapLayer() {
    FRenderThreads->Close();
    CancelRender();
}

void TBufferedMapLayer::Paint(TWorld* world, TWorldViewport* viewport, TBitmap32& bitmap) {
    TBaseLayerManagerLayer::Paint(world, viewport, bitmap);
    FPaintedView = viewport->GetLivenessToken();
    const TViewPicture& picture = PictureFor(*viewport);
    if (picture.Buffered && DrawPicture(*picture.Buffered, *viewport, bitmap) && !picture.IsOutdated)
        return;
    RenderBuffer(viewport->GetViewSize(), viewport->GetVisibleMapArea(), viewport->GetLocal());
}

// A view that has none of its own yet is shown the newest one.
const TBufferedMapLayer::TViewPicture& TBufferedMapLayer::PictureFor(const TWorldViewport& viewport) const {
    const TView view = viewport.GetLivenessToken();
    for (const TViewPicture& other : FOtherPictures)
        if (IsSameView(other.View, view))
            return other;
    return FPicture;
}

void TBufferedMapLayer::Invalidate() {
    TBaseLayerManagerLayer::Invalidate();
}

void TBufferedMapLayer::Invalidate(bool clearBuffer) {
    if (clearBuffer) {
        CancelRender();
        FPicture = {};
        FOtherPictures.clear();
    }
    Invalidate();
}

void TBufferedMapLayer::SetBufferedBitmap(std::unique_ptr<TBufferedBitmap> buffered) {
    FOtherPictures.clear();
    ShowPicture({std::move(buffered), {}});
}

void TBufferedMapLayer::StartRender(std::shared_ptr<TRenderThreadHandler> handler) {
    CancelRender();
    handler->FLayer = this;
    handler->FLayerLiveness = GetLivenessToken();
    const auto thread = RenderThreadPool().GetThread();
    thread->SetOnExecute([execute = handler.get()](TThreadPoolThread& onThread) { execute->ThreadExecute(onThread); });
    thread->SetData(std::move(handler));
    FCurrentThread = thread;
    FCurrentView = FPaintedView;
    thread->StartOperation();
}

void TBufferedMapLayer::CancelRender() {
    if (const auto thread = std::exchange(FCurrentThread, nullptr))
        thread->CancelOperation();
}

void TBufferedMapLayer::OutdateBuffer() {
    CancelRender();
    FPicture.IsOutdated = true;
    for (TViewPicture& other : FOtherPictures)
        other.IsOutdated = true;
}

// The end of every render, on the main thread. A render that has been superseded changes nothing.
void TBufferedMapLayer::FinishRender(const TThreadPoolThread& thread, std::unique_ptr<TBufferedBitmap> buffered) {
    if (FCurrentThread.get() != &thread)
        return;
    const auto liveness = GetLivenessToken();
    if (buffered && !thread.ShouldStop())
        ShowPicture({std::move(buffered), FCurrentView});
    if (!liveness.expired() && FCurrentThread.get() == &thread)
        FCurrentThread = nullptr;
}

// Two views at different places would take one picture from each other without end.
void TBufferedMapLayer::ShowPicture(TViewPicture picture) {
    std::erase_if(FOtherPictures, [&](const TViewPicture& other) {
        return other.View.expired() || IsSameView(other.View, picture.View);
    });
    if (FPicture.Buffered && !FPicture.View.expired() && !picture.View.expired() &&
        !IsSameView(FPicture.View, picture.View))
        FOtherPictures.push_back(std::move(FPicture));
    FPicture = std::move(picture);
    Invalidate();
}

std::shared_ptr<TThread> TBufferedMapLayer::StartRenderThread(TRenderThreadProc proc, bool stopCurrent, bool startNow) {
    if (!proc)
        throw EExArgumentNilException(QStringLiteral("TBufferedMapLayer.StartRenderThread"), QStringLiteral("Proc"));
    if (stopCurrent)
        StopCurrentRenderThread();
    auto thread =
        TThread::CreateAnonymousThread([threads = FRenderThreads, proc = std::move(proc)] { threads->Run(proc); });
    if (startNow)
        thread->Start();
    return thread;
}

void TBufferedMapLayer::StopCurrentRenderThread() {
    FRenderThreads->StopCurrent();
}

std::shared_ptr<TThread> TBufferedMapLayer::GetRenderThread() const {
    return FRenderThreads->GetCurrent();
}

} // namespace lmx
