#include <lmx/Controls/lmxMapViewRulersPanelControl.h>

#include <lmx/Controls/Private/lmxControlDialogs.h>
#include <lmx/Controls/lmxRulerListView.h>
#include <lmx/Layers/lmxRulerMapLayer.h>
#include <lmx/Widgets/lmxEventGuard.h>
#include <lmx/Widgets/lmxPngButton.h>
#include <lmx/Widgets/lmxToggleButtonBar.h>

#include <QKeyEvent>
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
    FListView->installEventFilter(this);
}

TPngButton* TMapViewRulersPanelControl::ButtonOfKey(const QKeyEvent& event) const {
    if ((event.modifiers() & ~Qt::KeypadModifier) != Qt::NoModifier)
        return nullptr;
    switch (event.key()) {
    case Qt::Key_Insert:
        return FAddButton;
    case Qt::Key_Delete:
        return FDelButton;
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_F2:
        return FEditButton;
    default:
        return nullptr;
    }
}

// The keys of the list. It takes them before a shortcut of the host that has the same key; a key that is held counts
// once.
bool TMapViewRulersPanelControl::eventFilter(QObject* sender, QEvent* event) {
    if (event->type() != QEvent::KeyPress && event->type() != QEvent::ShortcutOverride)
        return QWidget::eventFilter(sender, event);
    const auto& key = *static_cast<QKeyEvent*>(event);
    TPngButton* button = ButtonOfKey(key);
    if (!button)
        return QWidget::eventFilter(sender, event);
    event->accept();
    if (event->type() == QEvent::KeyPress && !key.isAutoRepeat())
        button->click();
    return true;
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
    FEditedRuler = FListView->GetSelectedRuler();
    if (!FEditedRuler)
        return;
    const TBorrowed self(this);
    const auto edited = AskForRuler(this, FEditedRuler);
    if (!edited || !self || !FEditedRuler)
        return;
    *FEditedRuler = *edited;
    if (TRulerMapLayer* layer = GetRulersLayer())
        layer->Invalidate();
    if (self)
        FListView->viewport()->update();
}

} // namespace lmx
