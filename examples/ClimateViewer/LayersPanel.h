#pragma once

#include <lmx/Runtime/lmxEventList.h>

#include <QWidget>

#include <memory>

class QVBoxLayout;

namespace lmx {
class ILayerManager;
class TBaseMapLayer;
class TBaseShapeLayer;
class TRasterMapLayer;
} // namespace lmx

/// The layers of a map, the top one first, each with a box that shows or hides it and, for a raster, its opacity and a
/// choice of colours, for an overlay its colour.
class TLayersPanel : public QWidget {
public:
    /// `dataFolder` holds the colour scales.
    TLayersPanel(std::shared_ptr<lmx::ILayerManager> manager, const QString& dataFolder, QWidget* parent);

private:
    void Rebuild();
    QWidget* MakeRow(lmx::TBaseMapLayer* layer);
    QWidget* MakeOpacitySlider(lmx::TRasterMapLayer* layer, QWidget* row);
    QWidget* MakeColorButton(lmx::TBaseShapeLayer* layer, QWidget* row);
    QWidget* MakeColorChoice(lmx::TRasterMapLayer* layer, QWidget* row);

    std::shared_ptr<lmx::ILayerManager> FManager;
    QString FDataFolder;
    QVBoxLayout* FRows;
    lmx::TSubscription FAdded;
    lmx::TSubscription FRemoved;
    lmx::TSubscription FMoved;
};
