#include <lmx/Dialogs/lmxObjectDialog.h>

#include <lmx/Dialogs/lmxGeneralOptionsObjectDialog.h>
#include <lmx/Widgets/lmxEventGuard.h>
#include <lmx/Widgets/lmxOwnedDialog.h>

#include <QPushButton>

namespace lmx {

TObjectDialog::TObjectDialog(const QString& caption, const QString& heading, QWidget* parent)
    : TModalDialog(caption, heading, parent) {}

QPushButton* TObjectDialog::CreateMoreOptionsButton() {
    auto* button = new QPushButton(QStringLiteral("&More options..."), this);
    button->setObjectName(QStringLiteral("Button3"));
    button->setAutoDefault(false);
    GuardClick(button, [this] { MoreOptionsClick(); });
    return button;
}

// Whatever the answer: OK has changed the options in place.
void TObjectDialog::MoreOptionsClick() {
    TOwnedDialog<TGeneralOptionsObjectDialog> dialog(this);
    dialog->SetOptions(&FGeneralOptions);
    dialog.Execute();
}

} // namespace lmx
