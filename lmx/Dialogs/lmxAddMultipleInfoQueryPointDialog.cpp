#include <lmx/Dialogs/lmxAddMultipleInfoQueryPointDialog.h>

#include <lmx/Dialogs/Private/lmxIQPAItems.h>
#include <lmx/Dialogs/Private/lmxIQPAItemsControl.h>
#include <lmx/Dialogs/lmxAddMultipleInfoQueryPointPasteDialog.h>
#include <lmx/Graphics/lmxColorText.h>
#include <lmx/Graphics/lmxSystemColors.h>
#include <lmx/Widgets/lmxClipboard.h>
#include <lmx/Widgets/lmxEventGuard.h>
#include <lmx/Widgets/lmxOwnedDialog.h>

#include <QHBoxLayout>
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>

namespace lmx {

namespace {

TIQPAItem NewItem() {
    return {{}, {}, {}, WinColor(GetRandomColor32())};
}

} // namespace

TAddMultipleInfoQueryPointDialog::TAddMultipleInfoQueryPointDialog(QWidget* parent)
    : TModalDialog(QStringLiteral("Add multiple"), QStringLiteral("Add multiple info query points"), parent) {
    auto* add = new QPushButton(QStringLiteral("&Add "), this);
    auto* paste = new QPushButton(QStringLiteral("&Paste"), this);
    add->setObjectName(QStringLiteral("Button3"));
    paste->setObjectName(QStringLiteral("Button4"));
    FItemsControl = new TIQPAItemsControl(this); // behind the buttons for the tab key
    FItemsControl->setObjectName(QStringLiteral("sbRoot"));
    FItemsControl->setAccessibleName(QStringLiteral("Points"));
    GuardClick(add, [this] { AddClick(); });
    GuardClick(paste, [this] { Paste(); });

    auto* commands = new QHBoxLayout;
    commands->addWidget(add);
    commands->addWidget(paste);
    commands->addStretch();
    GetContent()->addLayout(commands);
    GetContent()->addWidget(FItemsControl, 1);
    AddButtons();
    AddItem();
    FItemsControl->setFocus(); // a user begins with the first row
}

const std::vector<TIQPAItem>& TAddMultipleInfoQueryPointDialog::GetItems() const {
    return FItemsControl->GetItems().GetItems();
}

void TAddMultipleInfoQueryPointDialog::AddItem() {
    FItemsControl->GetItems().Add({NewItem()});
}

void TAddMultipleInfoQueryPointDialog::AddClick() {
    AddItem();
    FItemsControl->EditItem(FItemsControl->GetItems().rowCount() - 1);
}

// The dialog may go while the other one is open.
void TAddMultipleInfoQueryPointDialog::Paste() {
    const QPointer<TIQPAItemsControl> table(FItemsControl);
    TOwnedDialog<TAddMultipleInfoQueryPointPasteDialog> dialog(this);
    dialog->LoadFromText(TClipboard::GetAsText());
    if (dialog.Execute() != static_cast<int>(TModalResult::mrOk) || !table)
        return;
    const int count = dialog->GetItemCount();
    std::vector<TIQPAItem> items;
    items.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        TIQPAItem& item = items.emplace_back(NewItem());
        dialog->GetItem(i, item.X, item.Y, item.Label);
    }
    table->GetItems().Add(std::move(items));
}

} // namespace lmx
