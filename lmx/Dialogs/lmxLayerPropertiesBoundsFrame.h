#pragma once

#include <lmx/Coordinates/wskMappingTypes.h>
#include <lmx/Dialogs/lmxOptionFrame.h>
#include <lmx/Runtime/lmxExport.h>

#include <QString>
#include <QWidget>

#include <memory>

namespace lmx {

class TBaseMapLayer;

/// What type a layer is of and where it lies: the four edges of its area in map units, three decimals each, about a
/// cross. All of it as it was when the frame was made.
class LMX_EXPORT TLayerPropertiesBoundsFrame : public QWidget {
public:
    explicit TLayerPropertiesBoundsFrame(const TBaseMapLayer& layer, QWidget* parent = nullptr);
    TLayerPropertiesBoundsFrame(const QString& layerTypeName, const TMapArea& area, QWidget* parent = nullptr);
};

/// The page "Extent", which is for reading: the layer as it was when the page was made.
class LMX_EXPORT TLayerPropertiesBoundsOptionFrame : public TLateOptionFrame {
public:
    /// @throws EExArgumentNilException if `layer` is nil.
    explicit TLayerPropertiesBoundsOptionFrame(const TBaseMapLayer* layer);

protected:
    std::unique_ptr<QWidget> MakeFrame() const override;

private:
    QString FLayerTypeName;
    TMapArea FArea;
};

} // namespace lmx
