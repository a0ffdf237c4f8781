#include <lmx/Controls/Legend/lmxObjectLayerLegendControl.h>

#include <lmx/Controls/Legend/Private/lmxObjectItemDialogs.h>
#include <lmx/Layers/Objects/lmxCompassRoseObjectLayerItem.h>
#include <lmx/Layers/Objects/lmxLegendObjectLayerItem.h>
#include <lmx/Layers/Objects/lmxRectangleObjectTypeItem.h>
#include <lmx/Layers/Objects/lmxShapeLegendObjectLayerItem.h>
#include <lmx/Layers/Objects/lmxTextBoxObjectLayerItem.h>
#include <lmx/Layers/lmxObjectMapLayer.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Widgets/Private/lmxWidgetMenu.h>
#include <lmx/Widgets/lmxAnchorEditor.h>
#include <lmx/Widgets/lmxListPanel.h>
#include <lmx/Widgets/lmxPngButton.h>

#include <QFocusEvent>
#include <QFrame>
#include <QVBoxLayout>

#include <cstdint>
#include <deque>
#include <functional>

namespace lmx {

namespace {

constexpr int AnchorsWidth = 100;
constexpr int LeastListHeight = 40; // some rows in a control of the suggested height

using TItem = TBaseObjectLayerItem;

template<class Item>
bool Is(const TItem* item) {
    return dynamic_cast<const Item*>(item) != nullptr;
}

bool HasEditor(const TItem* item) {
    return Is<TTextBoxObjectLayerItem>(item) || Is<TLegendObjectLayerItem>(item) ||
           Is<TCompassRoseObjectLayerItem>(item) || Is<TRectangleObjectTypeItem>(item);
}

template<class Item>
void AddNew(TObjectMapLayer& layer) {
    layer.GetObjects().Add(std::make_unique<Item>(&layer));
}

template<class Item>
void Edit(QWidget* parent, Item* item) {
    if (!item)
        throw EExArgumentNilException(QStringLiteral("TObjectLayerLegendControl.EditItem"), QStringLiteral("Item"));
    EditAnnotation(parent, *item);
}

} // namespace

class TObjectLayerLegendControl::TObjectRows final : public IListRows {
public:
    std::deque<TBorrowed<TItem>> Items; ///< a layer that empties its list takes them from the front
    std::uint64_t Changes = 0;          ///< of the layer's list, up to which these follow it

    int GetCount() const override { return static_cast<int>(Items.size()); }
    TItem* GetItem(int row) const {
        return row >= 0 && row < GetCount() ? Items[static_cast<std::size_t>(row)].Get() : nullptr;
    }
    QString GetText(int row, int) const override {
        const TItem* item = GetItem(row);
        return item ? item->GetObjectType() : QString();
    }
    int RowOf(const TItem* item) const {
        for (int row = 0; item && row < GetCount(); ++row)
            if (GetItem(row) == item)
                return row;
        return -1;
    }
};

TObjectLayerLegendControl::TObjectLayerLegendControl(QWidget* parent)
    : TBaseLegendControl(parent, QStringLiteral("TObjectLayerLegendControl")),
      FRows(std::make_shared<TObjectRows>()),
      FLayerList(new TDrawnListView),
      FPanel(new TListPanel(FLayerList, QStringLiteral("Objects"), this)) {
    FLayerList->SetColumns({{QStringLiteral("Object"), 100, true}});
    FLayerList->SetMultiSelect(true);
    FLayerList->SetRows(FRows);
    FLayerList->setMinimumHeight(LeastListHeight);
    CreateCommands();
    CreateAddMenu();
    CreateAnchorsPanel();
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(FPanel);
    FSelectionSubscription =
        FLayerList->GetOnSelectionChanged().Add([this](TDrawnListView*) { LayerList_SelectionChanged(); });
}

TObjectLayerLegendControl::~TObjectLayerLegendControl() {
    StopReceiving();
}

TObjectLayerLegendControl* TObjectLayerLegendControl::CreateComp(QWidget* owner, TObjectMapLayer* layer) {
    auto* control = new TObjectLayerLegendControl(owner);
    control->SetLayer(layer);
    return control;
}

void TObjectLayerLegendControl::CreateCommands() {
    const auto hasLayer = [this] { return GetLayer() != nullptr; };
    const auto hasItem = [this] { return GetLayer() && GetSelectedObjectItem(); };
    const auto hasEditor = [this] { return HasEditor(GetSelectedObjectItem()); };
    FAddButton = FPanel->AddCommand({QStringLiteral("MapWindowFactory.AddLayer"),
                                     QStringLiteral("Add Object"),
                                     {Qt::Key_Insert},
                                     [this] { AddButton_OnClick(); },
                                     hasLayer});
    FDelButton = FPanel->AddCommand({QStringLiteral("MapWindowFactory.DeleteLayer"),
                                     QStringLiteral("Delete Object"),
                                     {Qt::Key_Delete},
                                     [this] { DelButton_OnClick(); },
                                     hasItem});
    FEditButton = FPanel->AddCommand({QStringLiteral("MapWindowFactory.Edit"),
                                      QStringLiteral("Edit Object"),
                                      {Qt::Key_Return, Qt::Key_Enter, Qt::Key_F2},
                                      [this] { EditButton_OnClick(); },
                                      hasEditor});
    FPanel->SetDoubleClickButton(FEditButton);
}

void TObjectLayerLegendControl::CreateAddMenu() {
    auto* const menu = new TWidgetMenu(this);
    FAddMenu = menu;
    const auto add = [this, menu](const QString& text, const std::function<void(TObjectMapLayer&)>& work) {
        menu->AddEntry(text, [this, work] {
            if (TObjectMapLayer* layer = GetLayer())
                work(*layer);
        });
    };
    add(QStringLiteral("Compass rose"), AddNew<TCompassRoseObjectLayerItem>);
    add(QStringLiteral("Text box"), [this](auto& layer) { AddTextBox(this, layer); });
    add(QStringLiteral("Legend"), [this](auto& layer) { AddLegend(this, layer); });
    add(QStringLiteral("Shape key"), AddNew<TShapeLegendObjectLayerItem>);
    add(QStringLiteral("Rectangle"), AddNew<TRectangleObjectTypeItem>);
}

// The editor is as large as the room allows, up to its own size.
void TObjectLayerLegendControl::CreateAnchorsPanel() {
    FAnchorsPanel = new QFrame;
    FAnchorsPanel->setFrameShape(QFrame::NoFrame);
    FAnchorsPanel->setFixedWidth(AnchorsWidth);
    FAnchorsEditor = new TAnchorEditor(FAnchorsPanel);
    FAnchorsEditor->setMaximumSize(FAnchorsEditor->sizeHint());
    FAnchorsEditor->hide();
    FAnchorsEditor->SetOnChanged([this](TAnchorEditor*) { AnchorsEditor_Changed(); });
    auto* column = new QVBoxLayout(FAnchorsPanel);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(FAnchorsEditor, 1);
    column->addStretch();
    FPanel->AddSide(FAnchorsPanel);
}

QWidget* TObjectLayerLegendControl::GetAnchorsPanel() const {
    return FAnchorsPanel;
}

int TObjectLayerLegendControl::GetSuggestedHeight() const {
    return 100;
}

// No focus proxy: the tab key would go to it and pass the buttons by.
void TObjectLayerLegendControl::focusInEvent(QFocusEvent* event) {
    FLayerList->setFocus(event->reason());
}

// ---- The list in step with the layer

void TObjectLayerLegendControl::SetLayer(TObjectMapLayer* layer) {
    if (layer == GetLayer())
        return;
    RegisterLayerEvents(false);
    FLayer = layer;
    RegisterLayerEvents(true);
    UpdateLayerList();
}

void TObjectLayerLegendControl::RegisterLayerEvents(bool registering) {
    TObjectMapLayer* layer = GetLayer();
    if (!layer)
        return;
    const auto wire = [&](TObjectLayerEventList& list, auto method) {
        registering ? list.Add(this, method) : list.Remove(this, method);
    };
    wire(layer->GetOnObjectAdded(), &TObjectLayerLegendControl::Layer_OnObjectAdded);
    wire(layer->GetOnObjectRemoved(), &TObjectLayerLegendControl::Layer_OnObjectRemoved);
    wire(layer->GetOnObjectChanged(), &TObjectLayerLegendControl::Layer_OnObjectChanged);
    wire(layer->GetOnObjectSelected(), &TObjectLayerLegendControl::Layer_OnObjectSelected);
}

// A row that was selected alone stays selected.
void TObjectLayerLegendControl::UpdateLayerList() {
    const TItem* selected = GetSelectedObjectItem();
    FRows->Items.clear();
    if (const TObjectMapLayer* layer = GetLayer()) {
        FRows->Items.assign(layer->GetObjects().begin(), layer->GetObjects().end());
        FRows->Changes = layer->GetObjects().GetChangeCount();
    }
    const TBorrowed self(this);
    FLayerList->RowsReset(); // whoever is told of the selection may do anything
    if (!self)
        return;
    FPanel->UpdateButtons();
    FLayerList->SelectRow(FRows->RowOf(selected));
}

bool TObjectLayerLegendControl::IsOneChangeBehind() const {
    return GetLayer() && GetLayer()->GetObjects().GetChangeCount() == FRows->Changes + 1;
}

void TObjectLayerLegendControl::Layer_OnObjectAdded(TObjectMapLayer* layer, TItem* item) {
    if (!IsOneChangeBehind())
        return UpdateLayerList();
    const int row = layer->GetObjects().IndexOf(item);
    FRows->Items.insert(FRows->Items.begin() + row, item);
    ++FRows->Changes;
    FLayerList->RowsInserted(row);
}

void TObjectLayerLegendControl::Layer_OnObjectRemoved(TObjectMapLayer*, TItem* item) {
    const int row = FRows->RowOf(item);
    if (row < 0 || !IsOneChangeBehind())
        return UpdateLayerList();
    FRows->Items.erase(FRows->Items.begin() + row);
    ++FRows->Changes;
    FLayerList->RowsRemoved(row);
}

// Rows are drawn from what the annotations say now.
void TObjectLayerLegendControl::Layer_OnObjectChanged(TObjectMapLayer*, TItem*) {
    FLayerList->viewport()->update();
}

void TObjectLayerLegendControl::Layer_OnObjectSelected(TObjectMapLayer*, TItem* item) {
    const int row = FRows->RowOf(item);
    if (!FLayerList->IsRowSelected(row))
        FLayerList->SelectRow(row); // one that is not listed does nothing
}

void TObjectLayerLegendControl::LayerList_SelectionChanged() {
    TItem* item = GetSelectedObjectItem();
    FAnchorsEditor->setVisible(item != nullptr);
    if (!item)
        return;
    FAnchorsEditor->SetAnchors(item->GetAnchors());
    if (TObjectMapLayer* layer = GetLayer())
        layer->SetSelectedObject(item);
}

// The distances to the view's edges stay as they were measured last.
void TObjectLayerLegendControl::AnchorsEditor_Changed() {
    if (TItem* item = GetSelectedObjectItem())
        item->SetAnchors(FAnchorsEditor->GetAnchors());
}

TItem* TObjectLayerLegendControl::GetSelectedObjectItem() const {
    return FRows->GetItem(FLayerList->GetSelectedRow());
}

// ---- Adding, deleting, editing. Whoever is told, and whoever comes while a dialog is open, may let the layer go, and
// this control.

void TObjectLayerLegendControl::AddButton_OnClick() {
    if (GetLayer())
        FAddMenu->popup(FAddButton->mapToGlobal(QPoint(0, FAddButton->height())));
}

void TObjectLayerLegendControl::DelButton_OnClick() {
    TItem* item = GetSelectedObjectItem();
    if (item && GetLayer())
        GetLayer()->GetObjects().Remove(item);
}

void TObjectLayerLegendControl::EditButton_OnClick() {
    TItem* item = GetSelectedObjectItem();
    if (auto* text = dynamic_cast<TTextBoxObjectLayerItem*>(item))
        EditItem(text);
    else if (auto* legend = dynamic_cast<TLegendObjectLayerItem*>(item))
        EditItem(legend);
    else if (auto* rose = dynamic_cast<TCompassRoseObjectLayerItem*>(item))
        EditItem(rose);
    else if (auto* rectangle = dynamic_cast<TRectangleObjectTypeItem*>(item))
        EditItem(rectangle);
}

void TObjectLayerLegendControl::EditItem(TTextBoxObjectLayerItem* item) {
    Edit(this, item);
}

void TObjectLayerLegendControl::EditItem(TLegendObjectLayerItem* item) {
    Edit(this, item);
}

void TObjectLayerLegendControl::EditItem(TCompassRoseObjectLayerItem* item) {
    Edit(this, item);
}

void TObjectLayerLegendControl::EditItem(TRectangleObjectTypeItem* item) {
    Edit(this, item);
}

} // namespace lmx
