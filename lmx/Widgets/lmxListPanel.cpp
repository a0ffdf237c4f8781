#include <lmx/Widgets/lmxListPanel.h>

#include <lmx/Widgets/lmxEventGuard.h>
#include <lmx/Widgets/lmxListKeys.h>
#include <lmx/Widgets/lmxPngButton.h>
#include <lmx/Widgets/lmxToggleButtonBar.h>

#include <QFocusEvent>
#include <QHBoxLayout>
#include <QVBoxLayout>

namespace lmx {

TListPanel::TListPanel(TDrawnListView* list, const QString& listName, QWidget* parent)
    : QWidget(parent),
      FButtonBar(new TToggleButtonBar(this)),
      FList(list),
      FBody(new QHBoxLayout),
      FKeys(new TListKeys(list)),
      FSelectionSubscription(list->GetOnSelectionChanged().Add([this](TDrawnListView*) { UpdateButtons(); })) {
    list->setAccessibleName(listName);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(FButtonBar);
    FBody->addWidget(list);
    column->addLayout(FBody);
}

TPngButton* TListPanel::AddCommand(const TListCommand& command) {
    auto* button = new TPngButton(FButtonBar, command.ImageName, command.Hint);
    FButtonBar->AddButton(button);
    LeadTabTo(*button);
    GuardClick(button, command.Execute);
    FKeys->Add(command.Keys, button);
    FButtons.push_back({button, command.CanExecute});
    UpdateButtons();
    return button;
}

// The list was there before its buttons, but stands below them. Qt orders only what takes the tab key, so the bar does
// for a moment.
void TListPanel::LeadTabTo(QWidget& button) {
    if (!FButtons.empty()) {
        setTabOrder(FButtons.back().Button, &button);
        return;
    }
    FButtonBar->setFocusPolicy(Qt::TabFocus);
    setTabOrder(FButtonBar, &button);
    FButtonBar->setFocusPolicy(Qt::NoFocus);
}

void TListPanel::SetDoubleClickButton(QAbstractButton* button) {
    FDoubleClickSubscription = FList->GetOnRowDoubleClick().Add([button](TDrawnListView*, int) { button->click(); });
}

// No focus proxy: the tab key would go to it and pass the buttons by.
void TListPanel::focusInEvent(QFocusEvent* event) {
    FList->setFocus(event->reason());
}

void TListPanel::AddSide(QWidget* side) {
    FBody->addWidget(side);
}

void TListPanel::UpdateButtons() {
    for (const TButton& button : FButtons)
        button.Button->setEnabled(!button.CanExecute || button.CanExecute());
}

} // namespace lmx
