#include <lmx/Layers/lmxBufferedMapLayer.h>

#include <lmx/Coordinates/wskWorld.h>
#include <lmx/Layers/Render/Private/lmxRenderThreadPool.h>
#include <lmx/Layers/Render/lmxRenderThreadHandler.h>
#include <lmx/Runtime/lmxBorrowed.h>
#include <lmx/Runtime/lmxExceptions.h>

#include <algorithm>
#include <cstddef>
#include <mutex>
#include <utility>

namespace lmx {

namespace {

constexpr std::size_t MostPictures = 8;

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
    FPaintedView = viewport->GetLifetime().Watch();
    DropPicturesOfTheGone();
    const TViewPicture* picture = PictureFor(*viewport);
    if (picture && DrawPicture(*picture->Buffered, *viewport, bitmap) && !picture->IsOutdated)
        return;
    RenderBuffer(viewport->GetViewSize(), viewport->GetVisibleMapArea(), viewport->GetLocal());
}

const TBufferedBitmap* TBufferedMapLayer::GetBufferedBitmap() const {
    return FPictures.empty() ? nullptr : FPictures.front().Buffered.get();
}

// A view that has none of its own yet is shown the newest one.
const TBufferedMapLayer::TViewPicture* TBufferedMapLayer::PictureFor(const TWorldViewport& viewport) const {
    if (FPictures.empty())
        return nullptr;
    const TLifeWatch view = viewport.GetLifetime().Watch();
    const auto own = std::find_if(FPictures.begin(), FPictures.end(),
                                  [&](const TViewPicture& picture) { return picture.View == view; });
    return own != FPictures.end() ? &*own : &FPictures.front();
}

// The last one stays, so that a new view has something to show.
void TBufferedMapLayer::DropPicturesOfTheGone() {
    const auto isOfTheGone = [](const TViewPicture& picture) { return picture.View.IsOver(); };
    if (!std::all_of(FPictures.begin(), FPictures.end(), isOfTheGone))
        std::erase_if(FPictures, isOfTheGone);
}

void TBufferedMapLayer::Invalidate() {
    TBaseLayerManagerLayer::Invalidate();
}

void TBufferedMapLayer::Invalidate(bool clearBuffer) {
    if (clearBuffer)
        DropBuffer();
    Invalidate();
}

void TBufferedMapLayer::DropBuffer() {
    CancelRender();
    FPictures.clear();
}

void TBufferedMapLayer::SetBufferedBitmap(std::unique_ptr<TBufferedBitmap> buffered) {
    FPictures.clear();
    if (buffered)
        KeepPicture({std::move(buffered), {}});
    Invalidate();
}

void TBufferedMapLayer::StartRender(std::shared_ptr<TRenderThreadHandler> handler) {
    CancelRender();
    const auto thread = RenderThreadPool().GetThread();
    thread->SetOnExecute([render = handler.get(), layer = TBorrowed(this)](TThreadPoolThread& onThread) {
        ThreadExecute(*render, layer, onThread);
    });
    thread->SetData(std::move(handler));
    FCurrentThread = thread;
    FCurrentView = FPaintedView;
    thread->StartOperation();
}

// On the pool's thread: the layer is for the main thread only, and there only while its liveness says so.
void TBufferedMapLayer::ThreadExecute(const TRenderThreadHandler& handler, const TBorrowed<TBufferedMapLayer>& layer,
                                      TThreadPoolThread& thread) {
    struct TResult {
        std::shared_ptr<TThreadPoolThread> Thread;
        std::unique_ptr<TBufferedBitmap> Picture;
    };
    const auto result = std::make_shared<TResult>();
    result->Thread = thread.shared_from_this();
    try {
        result->Picture = handler.Render(thread);
    } catch (...) {
        // By contract: the layer stays without a new picture, and its next paint starts a render again.
    }
    TThread::Synchronize([layer, result] {
        if (layer)
            layer->FinishRender(*result->Thread, std::move(result->Picture));
    });
}

void TBufferedMapLayer::CancelRender() {
    if (const auto thread = std::exchange(FCurrentThread, nullptr))
        thread->CancelOperation();
}

void TBufferedMapLayer::OutdateBuffer() {
    CancelRender();
    for (TViewPicture& picture : FPictures)
        picture.IsOutdated = true;
}

// The end of every render, on the main thread. A render that has been superseded changes nothing.
void TBufferedMapLayer::FinishRender(const TThreadPoolThread& thread, std::unique_ptr<TBufferedBitmap> buffered) {
    if (FCurrentThread.get() != &thread)
        return;
    const TBorrowed self(this);
    if (buffered && !thread.ShouldStop()) {
        KeepPicture({std::move(buffered), FCurrentView});
        Invalidate(); // also where it is not kept: its render may have cut off that of a view
    }
    if (self && FCurrentThread.get() == &thread)
        FCurrentThread = nullptr;
}

// Two views at different places would take one picture from each other without end, so each has its own. A host's own
// is for all of them until a view has one.
void TBufferedMapLayer::KeepPicture(TViewPicture picture) {
    DropPicturesOfTheGone();
    const bool isOfTheGone = picture.View.IsOver();
    if (isOfTheGone && !FPictures.empty() && !FPictures.front().View.IsOver())
        return;
    std::erase_if(FPictures,
                  [&](const TViewPicture& other) { return other.View == picture.View || other.View.IsOver(); });
    FPictures.insert(FPictures.begin(), std::move(picture));
    if (FPictures.size() > MostPictures)
        FPictures.pop_back();
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
