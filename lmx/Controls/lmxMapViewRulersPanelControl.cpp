#include <lmx/Controls/lmxMapViewRulersPanelControl.h>

#include <lmx/Controls/Private/lmxControlDialogs.h>
#include <lmx/Controls/lmxRulerListView.h>
#include <lmx/Layers/lmxRulerMapLayer.h>
#include <lmx/Widgets/lmxPngButton.h>

#include <memory>
#include <vector>

namespace lmx {

TMapViewRulersPanelControl::TMapViewRulersPanelControl(QWidget* parent)
    : TMapViewRulersPanelControl(new TRulerListView, parent) {}

TMapViewRulersPanelControl::TMapViewRulersPanelControl(TRulerListView* list, QWidget* parent)
    : TListPanel(list, QStringLiteral("Rulers"), parent),
      FListView(list) {
    const auto hasLayer = [this] { return GetRulersLayer() != nullptr; };
    const auto hasRuler = [this] { return FListView->GetSelectedRuler() != nullptr; };
    FAddButton = AddCommand({QStringLiteral("MapWindowFactory.AddLayer"),
                             QStringLiteral("Add ruler"),
                             {Qt::Key_Insert},
                             [this] { AddButton_Click(); },
                             hasLayer});
    FDelButton = AddCommand({QStringLiteral("MapWindowFactory.DeleteLayer"),
                             QStringLiteral("Delete ruler"),
                             {Qt::Key_Delete},
                             [this] { DelButton_Click(); },
                             hasRuler});
    FEditButton = AddCommand({QStringLiteral("MapWindowFactory.Edit"),
                              QStringLiteral("Edit ruler"),
                              {Qt::Key_Return, Qt::Key_Enter, Qt::Key_F2},
                              [this] { EditButton_Click(); },
                              hasRuler});
    SetDoubleClickButton(FEditButton);
}

void TMapViewRulersPanelControl::SetRulersLayer(TRulerMapLayer* layer) {
    if (layer == GetRulersLayer())
        return;
    RegisterRulersLayerEvents(GetRulersLayer(), false);
    FRulersLayer = layer;
    RegisterRulersLayerEvents(layer, true);
    UpdateList();
}

void TMapViewRulersPanelControl::RegisterRulersLayerEvents(TRulerMapLayer* layer, bool registering) {
    if (!layer)
        return;
    const auto wire = [&](auto& list, auto method) {
        registering ? list.Add(this, method) : list.Remove(this, method);
    };
    wire(layer->GetOnRulerAdded(), &TMapViewRulersPanelControl::RulersLayer_Added);
    wire(layer->GetOnRulerRemoved(), &TMapViewRulersPanelControl::RulersLayer_Removed);
    wire(layer->GetOnInvalidated(), &TMapViewRulersPanelControl::RulersLayer_Invalidated);
}

void TMapViewRulersPanelControl::UpdateList() {
    std::vector<TRulerItem*> rulers;
    if (const TRulerMapLayer* layer = GetRulersLayer()) {
        rulers.assign(layer->GetHRulers().begin(), layer->GetHRulers().end());
        rulers.insert(rulers.end(), layer->GetVRulers().begin(), layer->GetVRulers().end());
    }
    UpdateButtons();
    FListView->SetRulers(rulers); // at last: it may tell of the selection
}

void TMapViewRulersPanelControl::AddRulerListItem(TRulerItem* ruler) {
    FListView->AddRuler(ruler);
}

void TMapViewRulersPanelControl::RulersLayer_Added(TRulerMapLayer*, TRulerItem* ruler) {
    AddRulerListItem(ruler);
}

void TMapViewRulersPanelControl::RulersLayer_Removed(TRulerMapLayer*, TRulerItem* ruler) {
    FListView->RemoveRuler(ruler);
}

// Another panel or the host has edited a ruler.
void TMapViewRulersPanelControl::RulersLayer_Invalidated(TBaseMapLayer*) {
    FListView->viewport()->update();
}

// Whoever is told, and whoever comes while a dialog is open, may let the layer go, and the panel.

void TMapViewRulersPanelControl::AddButton_Click() {
    if (!GetRulersLayer())
        return;
    const TBorrowed self(this);
    const auto ruler = AskForRuler(this, nullptr);
    if (ruler && self && GetRulersLayer())
        GetRulersLayer()->Add(std::make_unique<TRulerItem>(*ruler));
}

void TMapViewRulersPanelControl::DelButton_Click() {
    const TBorrowed<TRulerMapLayer> layer = GetRulersLayer();
    TRulerItem* ruler = FListView->GetSelectedRuler();
    if (!layer || !ruler)
        return;
    layer->Delete(ruler);
    if (layer)
        layer->Invalidate();
}

void TMapViewRulersPanelControl::EditButton_Click() {
    const QPersistentModelIndex row = FListView->MarkRow(FListView->GetSelectedRow());
    if (!row.isValid())
        return;
    const TBorrowed self(this);
    const auto edited = AskForRuler(this, FListView->GetRuler(row.row()));
    if (!edited || !self || !row.isValid())
        return;
    *FListView->GetRuler(row.row()) = *edited;
    if (TRulerMapLayer* layer = GetRulersLayer())
        layer->Invalidate();
    if (self)
        FListView->viewport()->update();
}

} // namespace lmx
