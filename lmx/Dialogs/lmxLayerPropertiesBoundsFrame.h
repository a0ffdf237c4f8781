#pragma once

#include <lmx/Dialogs/lmxOptionFrame.h>
#include <lmx/Runtime/lmxExport.h>

#include <QWidget>

namespace lmx {

class TBaseMapLayer;

/// What type a layer is of and where it lies: the four edges of its area in map units, three decimals each, about a
/// cross. All of it as it was when the frame was made.
class LMX_EXPORT TLayerPropertiesBoundsFrame : public QWidget {
public:
    explicit TLayerPropertiesBoundsFrame(const TBaseMapLayer& layer, QWidget* parent = nullptr);
};

/// The page "Extent", which is for reading.
class LMX_EXPORT TLayerPropertiesBoundsOptionFrame : public TOptionFrame {
public:
    /// @throws EExArgumentNilException if `layer` is nil.
    explicit TLayerPropertiesBoundsOptionFrame(const TBaseMapLayer* layer);

    QWidget* GetFrame() const override { return FFrame; }

private:
    QPointer<QWidget> FFrame;
};

} // namespace lmx
