
#include <lmx/Layers/Render/lmxRenderThreadHandler.h>

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

} // namespace lmx
