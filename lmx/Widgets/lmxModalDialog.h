#pragma once

#include <lmx/Runtime/lmxExport.h>

#include <QDialog>
#include <QString>

QT_BEGIN_NAMESPACE
class QHBoxLayout;
class QVBoxLayout;
QT_END_NAMESPACE

namespace lmx {

/// How a dialog was closed. These are also the numbers of QDialog::result and of the signal `finished`.
enum class TModalResult { mrNone, mrOk, mrCancel, mrAbort, mrRetry, mrIgnore, mrYes, mrNo };

/// A dialog with a heading, room for its controls, and the buttons "&OK" and "&Cancel". A derived constructor adds its
/// controls to GetContent in the order of the tab key and calls AddButtons at its end.
///
/// The enter key presses the push button that has the keyboard, and elsewhere OK; the key that opened a dialog and is
/// still held does not confirm it. Escape and the window's close button cancel. When the
/// dialog comes up, the keyboard is on the first control of the tab key, or on the one that has been given it, and a
/// text there is selected to be typed over.
class LMX_EXPORT TModalDialog : public QDialog {
public:
    /// Shows the dialog and waits until it is closed: mrOk or mrCancel. A dialog that is destroyed or hidden meanwhile
    /// is cancelled. Callers that do not own it use TOwnedDialog.
    TModalResult ShowModal();
    TModalResult GetModalResult() const { return static_cast<TModalResult>(result()); }

    void setVisible(bool visible) override;
    void reject() override { done(static_cast<int>(TModalResult::mrCancel)); }

protected:
    TModalDialog(const QString& caption, const QString& heading, QWidget* parent);

    QVBoxLayout* GetContent() const { return FContent; }
    /// Adds the row of buttons below the content, "&OK" and "&Cancel" at its right end, and gives it for further ones.
    QHBoxLayout* AddButtons(const QString& okName = QStringLiteral("btnOK"),
                            const QString& cancelName = QStringLiteral("btnCancel"));
    /// The OK button was pressed. Here: closes with mrOk. What an override raises is shown, and the dialog stays.
    virtual void OkClick() { accept(); }

    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    QVBoxLayout* FContent;
};

} // namespace lmx
