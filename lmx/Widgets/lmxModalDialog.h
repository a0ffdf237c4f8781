#pragma once

#include <lmx/Runtime/lmxExport.h>

#include <QDialog>
#include <QString>

QT_BEGIN_NAMESPACE
class QVBoxLayout;
QT_END_NAMESPACE

namespace lmx {

/// How a dialog was closed. These are also the numbers of QDialog::result and of the signal `finished`.
enum class TModalResult { mrNone, mrOk, mrCancel, mrAbort, mrRetry, mrIgnore, mrYes, mrNo };

/// A dialog with a heading, room for its controls, and the buttons "&OK" (also the enter key) and "&Cancel" (also
/// Escape and the window's close button). A derived constructor adds its controls to GetContent in the order of the tab
/// key and calls AddButtons at its end. Push buttons of its own need setAutoDefault(false), or the enter key presses
/// them.
class LMX_EXPORT TModalDialog : public QDialog {
public:
    /// Shows the dialog and waits until it is closed: mrOk or mrCancel.
    TModalResult ShowModal();
    TModalResult GetModalResult() const { return static_cast<TModalResult>(result()); }

    void reject() override { done(static_cast<int>(TModalResult::mrCancel)); }

protected:
    TModalDialog(const QString& caption, const QString& heading, QWidget* parent);

    QVBoxLayout* GetContent() const { return FContent; }
    void AddButtons();
    /// The OK button was pressed. Here: closes with mrOk. What an override raises is shown, and the dialog stays.
    virtual void OkClick() { accept(); }

private:
    QVBoxLayout* FContent;
};

} // namespace lmx
