#pragma once

#include <lmx/Runtime/lmxExport.h>
#include <lmx/Widgets/lmxFlatButton.h>

#include <QColor>
#include <QImage>
#include <QString>

namespace lmx {

/// A button that shows an image of TExternalResources and is as large as it.
class LMX_EXPORT TPngButton : public TFlatButton {
public:
    /// @throws EArgumentException if there is no image of that name.
    TPngButton(QWidget* parent, const QString& imageName, const QString& hint);

    const QString& GetImageName() const { return FImageName; }
    /// Shows another image and takes its size.
    /// @throws as the constructor; then nothing has changed.
    void SetImageName(const QString& imageName);

    QSize sizeHint() const override { return minimumSize(); }

protected:
    void PaintContent(QPainter& canvas) override;

private:
    QString FImageName;
    QImage FImage; ///< for this ratio and ink
    double FRatio = 0;
    QColor FInk;
};

} // namespace lmx
