#pragma once

#include <QDialog>
#include <QPointer>

namespace lmx {

/// A dialog that is shown and waited for. It belongs to its parent, and the parent may go while the dialog is open:
/// then it counts as cancelled and is gone, too.
template<class Dialog>
class TOwnedDialog {
public:
    explicit TOwnedDialog(QWidget* parent) : FDialog(new Dialog(parent)) {}
    TOwnedDialog(const TOwnedDialog&) = delete;
    TOwnedDialog& operator=(const TOwnedDialog&) = delete;
    ~TOwnedDialog() { delete FDialog; }

    Dialog* Get() const { return FDialog; } ///< nil once it is gone
    Dialog* operator->() const { return FDialog; }

    /// Shows it until it is closed, and gives its answer; QDialog::Rejected if it is gone.
    int Execute() {
        const int answer = FDialog ? FDialog->exec() : static_cast<int>(QDialog::Rejected);
        return FDialog ? answer : static_cast<int>(QDialog::Rejected);
    }

private:
    QPointer<Dialog> FDialog;
};

} // namespace lmx
