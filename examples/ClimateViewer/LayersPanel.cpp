#include "LayersPanel.h"

#include <lmx/Layers/lmxBaseShapeLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Layers/lmxRasterMapLayer.h>
#include <lmx/Runtime/lmxBorrowed.h>
#include <lmx/Widgets/lmxColorChooser.h>
#include <lmx/Widgets/lmxEventGuard.h>

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QMenu>
#include <QPushButton>
#include <QSlider>
#include <QToolButton>
#include <QVBoxLayout>

#include <vector>

#include "ColorSchemes.h"

namespace {

// The layer's own entries, such as its exports. What fails is shown in an error box.
void FillMenu(QMenu& menu, lmx::TBaseMapLayer& layer) {
    std::vector<lmx::TLayerMenuItem> items;
    layer.GetContextMenuItems(&items);
    menu.clear();
    for (const lmx::TLayerMenuItem& item : items) {
        QAction* entry = menu.addAction(item.FText);
        entry->setSeparator(item.FText == "-");
        entry->setEnabled(item.FEnabled);
        QObject::connect(entry, &QAction::triggered, &menu, [&menu, event = item.FEvent] {
            if (event)
                lmx::GuardEvent(menu.parentWidget(), event);
        });
    }
}

} // namespace

TLayersPanel::TLayersPanel(std::shared_ptr<lmx::ILayerManager> manager, const QString& dataFolder, QWidget* parent)
    : QWidget(parent),
      FManager(std::move(manager)),
      FDataFolder(dataFolder),
      FRows(new QVBoxLayout(this)) {
    // The removed event comes while the layer is still on its way out, so the rows are made anew a little later.
    const auto rebuildLater = [this] {
        QMetaObject::invokeMethod(
            this, [this] { Rebuild(); }, Qt::QueuedConnection);
    };
    FAdded = FManager->GetOnLayerAdded().Add([=](lmx::ILayerManager*, lmx::TBaseMapLayer*) { rebuildLater(); });
    FRemoved = FManager->GetOnLayerRemoved().Add([=](lmx::ILayerManager*, lmx::TBaseMapLayer*) { rebuildLater(); });
    FMoved = FManager->GetOnLayerMoved().Add([=](lmx::ILayerManager*, int, int) { rebuildLater(); });
    setMinimumWidth(230);
    Rebuild();
}

void TLayersPanel::Rebuild() {
    while (QLayoutItem* item = FRows->takeAt(0)) {
        delete item->widget();
        delete item;
    }
    lmx::TObjectList<lmx::TBaseMapLayer>& layers = FManager->GetLayers();
    for (int i = layers.Count() - 1; i >= 0; --i)
        if (layers[i]->GetShowsInLayersList())
            FRows->addWidget(MakeRow(layers[i]));
    FRows->addStretch();
}

QWidget* TLayersPanel::MakeRow(lmx::TBaseMapLayer* layer) {
    auto* row = new QWidget(this);
    auto* column = new QVBoxLayout(row);
    column->setContentsMargins(0, 0, 0, 8);
    auto* visible = new QCheckBox(layer->GetLayerName(), row);
    visible->setChecked(layer->GetIsVisible());
    auto* commands = new QToolButton(row);
    commands->setText(QChar(0x22EE));
    commands->setAccessibleName(tr("Commands of %1").arg(layer->GetLayerName()));
    commands->setPopupMode(QToolButton::InstantPopup);
    commands->setMenu(new QMenu(row));
    auto* heading = new QHBoxLayout;
    heading->addWidget(visible, 1);
    heading->addWidget(commands);
    column->addLayout(heading);

    // The row may outlive its layer by a moment.
    const lmx::TBorrowed life(layer);
    connect(commands->menu(), &QMenu::aboutToShow, this, [=] {
        if (life)
            FillMenu(*commands->menu(), *layer);
    });
    connect(visible, &QCheckBox::toggled, this, [=](bool checked) {
        if (life)
            layer->SetIsVisible(checked);
    });
    if (auto* raster = dynamic_cast<lmx::TRasterMapLayer*>(layer)) {
        column->addWidget(MakeOpacitySlider(raster, row));
        column->addWidget(MakeColorChoice(raster, row));
    }
    if (auto* shapes = dynamic_cast<lmx::TBaseShapeLayer*>(layer))
        column->addWidget(MakeColorButton(shapes, row));
    return row;
}

QWidget* TLayersPanel::MakeColorButton(lmx::TBaseShapeLayer* layer, QWidget* row) {
    auto* button = new QPushButton(tr("Colour..."), row);
    button->setAccessibleName(tr("Colour of %1").arg(layer->GetLayerName()));
    connect(button, &QPushButton::clicked, this, [=, this, life = lmx::TBorrowed(layer)] {
        const auto chooser = lmx::TColorChooserFactory::GetObject();
        if (life)
            chooser->SetColor32(layer->GetColor());
        if (chooser->Execute(this) && life)
            layer->SetColor(chooser->GetColor32());
    });
    return button;
}

QWidget* TLayersPanel::MakeOpacitySlider(lmx::TRasterMapLayer* layer, QWidget* row) {
    auto* opacity = new QSlider(Qt::Horizontal, row);
    opacity->setRange(0, 255);
    opacity->setValue(layer->GetOpacity());
    opacity->setAccessibleName(tr("Opacity of %1").arg(layer->GetLayerName()));
    opacity->setToolTip(tr("Opacity"));
    connect(opacity, &QSlider::valueChanged, this, [layer, life = lmx::TBorrowed(layer)](int value) {
        if (life)
            layer->SetOpacity(static_cast<std::uint8_t>(value));
    });
    return opacity;
}

QWidget* TLayersPanel::MakeColorChoice(lmx::TRasterMapLayer* layer, QWidget* row) {
    auto* colors = new QComboBox(row);
    colors->addItem(tr("Colours..."));
    colors->addItems(ColorSchemeNames());
    colors->setAccessibleName(tr("Colours of %1").arg(layer->GetLayerName()));
    connect(colors, &QComboBox::textActivated, this, [=, this, life = lmx::TBorrowed(layer)](const QString& name) {
        if (!life || colors->currentIndex() == 0)
            return;
        lmx::GuardEvent(this, [&] { layer->SetColorCalc(MakeColorScheme(name, layer->GetValueRange(), FDataFolder)); });
    });
    return colors;
}
