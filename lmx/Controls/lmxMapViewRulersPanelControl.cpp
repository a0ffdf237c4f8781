#include <lmx/Controls/lmxMapViewRulersPanelControl.h>
#include <lmx/Controls/lmxRulerListView.h>
#include <lmx/Dialogs/lmxRulerDialog.h>
#include <lmx/Layers/lmxRulerMapLayer.h>
#include <lmx/Widgets/lmxEventGuard.h>
#include <lmx/Widgets/lmxPngButton.h>
#include <lmx/Widgets/lmxToggleButtonBar.h>

#include <QPointer>
#include <QScopeGuard>
#include <QShortcut>
#include <QVBoxLayout>

#include <memory>

namespace lmx {

TMapViewRulersPanelControl::TMapViewRulersPanelControl(QWidget* parent)
    : QWidget(parent),
      FButtonBar(new TToggleButtonBar(this)),
      FAddButton(AddBarButton(QStringLiteral("MapWindowFactory.AddLayer"), QStringLiteral("Add ruler"),
                              &TMapViewRulersPanelControl::AddButton_Click)),
      FDelButton(AddBarButton(QStringLiteral("MapWindowFactory.DeleteLayer"), QStringLiteral("Delete ruler"),
                              &TMapViewRulersPanelControl::DelButton_Click)),
      FEditButton(AddBarButton(QStringLiteral("MapWindowFactory.Edit"), QStringLiteral("Edit ruler"),
                               &TMapViewRulersPanelControl::EditButton_Click)),
      FListView(new TRulerListView(this)) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(FButtonBar);
    column->addWidget(FListView);
    FListView->setAccessibleName(QStringLiteral("Rulers"));
    setFocusProxy(FListView);
    ConnectList();
    UpdateButtons();
}

TPngButton* TMapViewRulersPanelControl::AddBarButton(const QString& imageName, const QString& hint,
                                                     void (TMapViewRulersPanelControl::*click)()) {
    auto* button = new TPngButton(FButtonBar, imageName, hint);
    FButtonBar->AddButton(button);
    GuardClick(button, [this, click] { (this->*click)(); });
    return button;
}

void TMapViewRulersPanelControl::ConnectList() {
    connect(FListView, &QTreeWidget::itemSelectionChanged, this, [this] { UpdateButtons(); });
    connect(FListView, &QTreeWidget::itemDoubleClicked, FEditButton, [this] { FEditButton->click(); });
    const auto press = [this](Qt::Key key, TPngButton* button) {
        auto* shortcut = new QShortcut(key, FListView);
        shortcut->setContext(Qt::WidgetShortcut);
        connect(shortcut, &QShortcut::activated, button, [button] { button->click(); });
    };
    press(Qt::Key_Insert, FAddButton);
    press(Qt::Key_Delete, FDelButton);
    press(Qt::Key_Return, FEditButton);
    press(Qt::Key_Enter, FEditButton);
    press(Qt::Key_F2, FEditButton);
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
    FEditedRuler = nullptr;
    FListView->clear();
    if (const TRulerMapLayer* layer = GetRulersLayer()) {
        for (TRulerItem* ruler : layer->GetHRulers())
            AddRulerListItem(ruler);
        for (TRulerItem* ruler : layer->GetVRulers())
            AddRulerListItem(ruler);
    }
    UpdateButtons();
}

void TMapViewRulersPanelControl::UpdateButtons() {
    const bool isSelected = FListView->GetSelectedRuler() != nullptr;
    FAddButton->setEnabled(GetRulersLayer() != nullptr);
    FDelButton->setEnabled(isSelected);
    FEditButton->setEnabled(isSelected);
}

void TMapViewRulersPanelControl::AddRulerListItem(TRulerItem* ruler) {
    FListView->AddRuler(ruler);
}

void TMapViewRulersPanelControl::RulersLayer_Added(TRulerMapLayer*, TRulerItem* ruler) {
    AddRulerListItem(ruler);
}

void TMapViewRulersPanelControl::RulersLayer_Removed(TRulerMapLayer*, TRulerItem* ruler) {
    if (ruler == FEditedRuler)
        FEditedRuler = nullptr;
    FListView->RemoveRuler(ruler);
}

// Another panel or the host has edited a ruler.
void TMapViewRulersPanelControl::RulersLayer_Invalidated(TBaseMapLayer*) {
    FListView->viewport()->update();
}

// The dialogs are children of the panel, so that one that is open when the panel goes goes with it.

void TMapViewRulersPanelControl::AddButton_Click() {
    if (!GetRulersLayer())
        return;
    const QPointer<TRulerDialog> dialog = new TRulerDialog(this);
    const auto cleanUp = qScopeGuard([dialog] { delete dialog; });
    if (dialog->ShowModal() != TModalResult::mrOk || !GetRulersLayer())
        return;
    GetRulersLayer()->Add(std::make_unique<TRulerItem>(dialog->GetRulerOrientation(), dialog->GetRulerLocation(),
                                                       dialog->GetRulerColor()));
}

void TMapViewRulersPanelControl::DelButton_Click() {
    TRulerMapLayer* layer = GetRulersLayer();
    const TRulerItem* ruler = FListView->GetSelectedRuler();
    if (!layer || !ruler)
        return;
    layer->Delete(ruler);
    if (GetRulersLayer() == layer) // whoever was told may have let it go
        layer->Invalidate();
}

void TMapViewRulersPanelControl::EditButton_Click() {
    FEditedRuler = FListView->GetSelectedRuler();
    if (!FEditedRuler)
        return;
    const QPointer<TRulerDialog> dialog = new TRulerDialog(this);
    const auto cleanUp = qScopeGuard([dialog] { delete dialog; });
    dialog->SetRulerLocation(static_cast<float>(FEditedRuler->GetLocation()));
    dialog->SetRulerOrientation(FEditedRuler->GetOrientation());
    dialog->SetRulerColor(FEditedRuler->GetColor());
    if (dialog->ShowModal() != TModalResult::mrOk || !FEditedRuler)
        return;
    const TRulerItem edited(dialog->GetRulerOrientation(), dialog->GetRulerLocation(), dialog->GetRulerColor());
    *FEditedRuler = edited;
    if (TRulerMapLayer* layer = GetRulersLayer())
        layer->Invalidate();
    FListView->viewport()->update();
}

} // namespace lmx
