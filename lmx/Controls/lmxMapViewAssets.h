#pragma once

#include <lmx/Runtime/lmxExport.h>
#include <lmx/Widgets/lmxImageList.h>

#include <QObject>

namespace lmx {

/// The images of the buttons in a layer's row: closed, open, hidden, visible, an unused one, and the sign of a menu, at
/// indexes 0 to 5. Each has 12 x 12 logical pixels, is drawn for the density of the screen and takes the text colour of
/// the theme. A host may replace any of them.
class LMX_EXPORT TMapViewAssets : public QObject {
public:
    /// The one instance, made on first use; the application owns it.
    static TMapViewAssets& GetInstance();

    TImageList& GetLayerPanelAssets() { return FLayerPanelAssets; }

private:
    explicit TMapViewAssets(QObject* owner);

    TImageList FLayerPanelAssets{TSize(12, 12)};
};

} // namespace lmx
