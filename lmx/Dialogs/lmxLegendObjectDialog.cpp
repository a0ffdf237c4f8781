#include <lmx/Dialogs/lmxLegendObjectDialog.h>

#include <lmx/Layers/lmxRasterMapLayer.h>
#include <lmx/Runtime/lmxBorrowed.h>
#include <lmx/Widgets/lmxDrawnListView.h>
#include <lmx/Widgets/lmxMsgBox.h>

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QVBoxLayout>

namespace lmx {

namespace {

constexpr int LayerColumnWidth = 300;

QRadioButton* MakeRadio(const char* name, const QString& text, QWidget* parent) {
    auto* button = new QRadioButton(text, parent);
    button->setObjectName(QString::fromLatin1(name));
    return button;
}

} // namespace

class TLegendObjectDialog::TLayerRows final : public IListRows {
public:
    struct TItem {
        QString Name;
        TBorrowed<TBaseMapLayer> Layer;
    };
    std::vector<TItem> Items;

    int GetCount() const override { return static_cast<int>(Items.size()); }
    QString GetText(int row, int) const override { return Items[static_cast<std::size_t>(row)].Name; }
    TBaseMapLayer* GetLayer(int row) const { return Items[static_cast<std::size_t>(row)].Layer.Get(); }
};

TLegendObjectDialog::TLegendObjectDialog(QWidget* parent)
    : TObjectDialog(QStringLiteral("LegendObjectDialog"), QStringLiteral("Legend object"), parent),
      FRows(std::make_shared<TLayerRows>()),
      FLayers(new TDrawnListView(this)),
      FVertical(MakeRadio("rbOVert", QStringLiteral("&Vertical"), this)),
      FHorizontal(MakeRadio("rbOHoriz", QStringLiteral("&Horizontal"), this)) {
    FLayers->setObjectName(QStringLiteral("lvLayers"));
    FLayers->setAccessibleName(QStringLiteral("Layers"));
    FLayers->SetColumns({{QStringLiteral("Layer"), LayerColumnWidth}});
    FLayers->setMinimumWidth(LayerColumnWidth + 2 * FLayers->frameWidth() +
                             FLayers->verticalScrollBar()->sizeHint().width());
    FLayers->SetRows(FRows);
    FVertical->setChecked(true);

    auto* orientation = new QHBoxLayout;
    orientation->addWidget(new QLabel(QStringLiteral("Orientation:"), this));
    orientation->addWidget(FVertical);
    orientation->addWidget(FHorizontal);
    orientation->addStretch();
    auto* more = new QHBoxLayout;
    more->addWidget(CreateMoreOptionsButton());
    more->addStretch();
    GetContent()->addWidget(FLayers, 1);
    GetContent()->addLayout(orientation);
    GetContent()->addLayout(more);
    AddButtons();
}

void TLegendObjectDialog::SetLayers(const std::vector<TBaseMapLayer*>& layers) {
    FRows->Items.clear();
    for (TBaseMapLayer* layer : layers)
        if (dynamic_cast<const TRasterMapLayer*>(layer))
            FRows->Items.push_back({layer->GetLayerName(), layer});
    FLayers->RowsReset();
}

TBaseMapLayer* TLegendObjectDialog::GetSelectedLayer() const {
    const int row = FLayers->GetSelectedRow();
    return row < 0 ? nullptr : FRows->GetLayer(row);
}

void TLegendObjectDialog::SetSelectedLayer(const TBaseMapLayer* layer) {
    for (int row = 0; layer && row < FRows->GetCount(); ++row)
        if (FRows->GetLayer(row) == layer)
            return FLayers->SelectRow(row);
}

TLegendOrientation TLegendObjectDialog::GetLOrientation() const {
    return FVertical->isChecked() ? TLegendOrientation::loVertical : TLegendOrientation::loHorizontal;
}

void TLegendObjectDialog::SetLOrientation(TLegendOrientation orientation) {
    (orientation == TLegendOrientation::loVertical ? FVertical : FHorizontal)->setChecked(true);
}

// The rows are made anew, or the list would select a neighbour in the place of what has gone.
void TLegendObjectDialog::DropGoneLayers() {
    if (std::erase_if(FRows->Items, [](const TLayerRows::TItem& item) { return !item.Layer; }) > 0)
        FLayers->RowsReset();
}

void TLegendObjectDialog::OkClick() {
    if (GetSelectedLayer())
        return accept();
    DropGoneLayers();
    TMsgBox::Info(QStringLiteral("Please select a layer."), QStringLiteral("Layer"), this);
}

} // namespace lmx
