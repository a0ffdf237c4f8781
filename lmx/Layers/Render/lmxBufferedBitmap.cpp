
#include <lmx/Layers/Render/lmxBufferedBitmap.h>

namespace lmx {

std::unique_ptr<TBufferedBitmap> CreateBufferedBitmap(TSize size, const TMapArea& mapArea) {
    auto buffered = std::make_unique<TBufferedBitmap>();
    buffered->Bitmap.SetSize(size.cx, size.cy); // reads 0, which is transparent
    buffered->Bitmap.SetDrawMode(TDrawMode::dmTransparent);
    buffered->MapArea = mapArea;
    return buffered;
}

} // namespace lmx
