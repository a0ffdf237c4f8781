#include <lmx/Dialogs/lmxLayerPropertiesBoundsFrame.h>

#include <lmx/Dialogs/Private/lmxBoundsPanel.h>
#include <lmx/Layers/lmxBaseMapLayer.h>
#include <lmx/Runtime/lmxExceptions.h>

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace lmx {

TLayerPropertiesBoundsFrame::TLayerPropertiesBoundsFrame(const TBaseMapLayer& layer, QWidget* parent)
    : QWidget(parent) {
    auto* typeName = new QLabel(layer.GetLayerTypeName(), this);
    typeName->setObjectName(QStringLiteral("lbStatus"));
    typeName->setTextFormat(Qt::PlainText);
    auto* type = new QHBoxLayout;
    type->addWidget(new QLabel(QStringLiteral("Layer type: "), this));
    type->addWidget(typeName, 1);

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addLayout(type);
    column->addWidget(new TBoundsContainerPanel(layer.GetLayerArea().Area, this));
    column->addStretch();
}

TLayerPropertiesBoundsOptionFrame::TLayerPropertiesBoundsOptionFrame(const TBaseMapLayer* layer)
    : TOptionFrame(QStringLiteral("Extent")) {
    if (!layer)
        throw EExArgumentNilException(QStringLiteral("TLayerPropertiesBoundsOptionFrame.Create"),
                                      QStringLiteral("Layer"));
    FFrame = new TLayerPropertiesBoundsFrame(*layer);
    TakeFrame(FFrame);
}

} // namespace lmx
