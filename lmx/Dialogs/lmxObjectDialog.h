#pragma once

#include <lmx/Layers/Objects/lmxGeneralOptions.h>
#include <lmx/Runtime/lmxExport.h>
#include <lmx/Widgets/lmxModalDialog.h>

QT_BEGIN_NAMESPACE
class QPushButton;
QT_END_NAMESPACE

namespace lmx {

/// A dialog of an annotation that leads on to the options that all annotations have in common. What is confirmed there
/// is in its options at once, and stays there whatever this dialog is answered.
class LMX_EXPORT TObjectDialog : public TModalDialog {
public:
    /// To be filled before the dialog is shown and read when it was confirmed.
    TGeneralOptions& GetGeneralOptions() { return FGeneralOptions; }
    const TGeneralOptions& GetGeneralOptions() const { return FGeneralOptions; }

protected:
    TObjectDialog(const QString& caption, const QString& heading, QWidget* parent);

    /// The button "More options...", which opens TGeneralOptionsObjectDialog; for the derived constructor to place.
    QPushButton* CreateMoreOptionsButton();

private:
    void MoreOptionsClick();

    TGeneralOptions FGeneralOptions;
};

} // namespace lmx
