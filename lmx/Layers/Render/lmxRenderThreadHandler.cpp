#include <lmx/Layers/lmxBufferedMapLayer.h>
#include <lmx/Layers/Render/lmxRenderThreadHandler.h>
#include <lmx/Runtime/lmxThread.h>

#include <utility>

namespace lmx {

TRenderThreadHandler::~TRenderThreadHandler() = default;

std::unique_ptr<TBufferedBitmap> TRenderThreadHandler::Render(const TThreadPoolThread& thread) const {
    if (!GetHasContent() || thread.ShouldStop())
        return nullptr;
    auto picture = CreateBufferedBitmap(ViewSize, VisibleMapArea);
    Draw(picture->Bitmap, thread);
    return thread.ShouldStop() ? nullptr : std::move(picture);
}

bool TRenderThreadHandler::GetHasContent() const {
    return true;
}

void TRenderThreadHandler::ThreadExecute(TThreadPoolThread& thread) const {
    struct TResult {
        std::shared_ptr<TThreadPoolThread> Thread;
        std::unique_ptr<TBufferedBitmap> Picture;
    };
    const auto result = std::make_shared<TResult>();
    result->Thread = thread.shared_from_this();
    try {
        result->Picture = Render(thread);
    } catch (...) {
        // By contract: the layer stays without a new picture, and its next paint starts a render again.
    }
    TThread::Synchronize([layer = FLayer, liveness = FLayerLiveness, result] {
        if (!liveness.expired())
            layer->FinishRender(*result->Thread, std::move(result->Picture));
    });
}

} // namespace lmx
