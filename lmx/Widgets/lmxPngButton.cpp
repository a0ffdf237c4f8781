#include <lmx/Widgets/lmxPngButton.h>

#include <lmx/Widgets/Private/lmxDeviceGrid.h>
#include <lmx/Widgets/lmxExternalResources.h>

namespace lmx {

TPngButton::TPngButton(QWidget* parent, const QString& imageName, const QString& hint) : TFlatButton(parent) {
    SetImageName(imageName);
    SetHint(hint);
}

void TPngButton::SetImageName(const QString& imageName) {
    setFixedSize(TExternalResources::GetImageSize(imageName));
    FImageName = imageName;
    FImage = QImage();
    update();
}

void TPngButton::PaintContent(QPainter& canvas) {
    const double ratio = devicePixelRatioF();
    if (FImage.isNull() || ratio != FRatio || GetInk() != FInk) {
        FImage = TExternalResources::GetImage(FImageName, ratio, GetInk());
        FRatio = ratio;
        FInk = GetInk();
    }
    DrawImageOnGrid(canvas, {0, 0}, FImage);
}

} // namespace lmx
