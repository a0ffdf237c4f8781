#include <lmx/Widgets/lmxImageList.h>

#include <lmx/Widgets/Private/lmxDeviceGrid.h>

#include <utility>

namespace lmx {

int TImageList::Add(TPicture picture) {
    FPictures.push_back(std::move(picture));
    return GetCount() - 1;
}

TImageList::TPicture TImageList::Replace(int index, TPicture picture) {
    if (!Contains(index))
        return nullptr;
    return std::exchange(FPictures[static_cast<std::size_t>(index)], std::move(picture));
}

QImage TImageList::GetImage(int index, double ratio, const QColor& ink) const {
    if (!Contains(index))
        return {};
    const TPicture picture = FPictures[static_cast<std::size_t>(index)]; // it may replace itself
    return picture ? picture(ratio, ink) : QImage();
}

void TImageList::Draw(QPainter& canvas, TPoint topLeft, int index, const QColor& ink) const {
    DrawImageOnGrid(canvas, topLeft.ToQPoint(), GetImage(index, canvas.device()->devicePixelRatioF(), ink));
}

} // namespace lmx
