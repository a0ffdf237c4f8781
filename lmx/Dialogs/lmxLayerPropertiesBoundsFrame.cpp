#include <lmx/Dialogs/lmxLayerPropertiesBoundsFrame.h>

#include <lmx/Dialogs/Private/lmxBoundsPanel.h>
#include <lmx/Layers/lmxBaseMapLayer.h>
#include <lmx/Runtime/lmxExceptions.h>

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace lmx {

TLayerPropertiesBoundsFrame::TLayerPropertiesBoundsFrame(const TBaseMapLayer& layer, QWidget* parent)
    : TLayerPropertiesBoundsFrame(layer.GetLayerTypeName(), layer.GetLayerArea().Area, parent) {}

TLayerPropertiesBoundsFrame::TLayerPropertiesBoundsFrame(const QString& layerTypeName, const TMapArea& area,
                                                         QWidget* parent)
    : QWidget(parent) {
    auto* typeName = new QLabel(layerTypeName, this);
    typeName->setObjectName(QStringLiteral("lbStatus"));
    typeName->setTextFormat(Qt::PlainText);
    auto* type = new QHBoxLayout;
    type->addWidget(new QLabel(QStringLiteral("Layer type: "), this));
    type->addWidget(typeName, 1);

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addLayout(type);
    column->addWidget(new TBoundsContainerPanel(area, this));
    column->addStretch();
}

TLayerPropertiesBoundsOptionFrame::TLayerPropertiesBoundsOptionFrame(const TBaseMapLayer* layer)
    : TLateOptionFrame(QStringLiteral("Extent")) {
    if (!layer)
        throw EExArgumentNilException(QStringLiteral("TLayerPropertiesBoundsOptionFrame.Create"),
                                      QStringLiteral("Layer"));
    FLayerTypeName = layer->GetLayerTypeName();
    FArea = layer->GetLayerArea().Area;
}

std::unique_ptr<QWidget> TLayerPropertiesBoundsOptionFrame::MakeFrame() const {
    return std::make_unique<TLayerPropertiesBoundsFrame>(FLayerTypeName, FArea);
}

} // namespace lmx
