
#include <lmx/Controls/Private/lmxControlDialogs.h>

#include <lmx/Dialogs/lmxRulerDialog.h>
#include <lmx/Layers/lmxRulerMapLayer.h>
#include <lmx/Widgets/lmxOwnedDialog.h>

namespace lmx {

std::optional<TRulerItem> AskForRuler(QWidget* parent, const TRulerItem* present) {
    TOwnedDialog<TRulerDialog> dialog(parent);
    if (present) {
        dialog->SetRulerLocation(static_cast<float>(present->GetLocation()));
        dialog->SetRulerOrientation(present->GetOrientation());
        dialog->SetRulerColor(present->GetColor());
    }
    if (dialog.Execute() != static_cast<int>(TModalResult::mrOk))
        return std::nullopt;
    return TRulerItem(dialog->GetRulerOrientation(), dialog->GetRulerLocation(), dialog->GetRulerColor());
}

std::optional<TQueryPointAnswer> AskForQueryPoint(QWidget*, const TInfoQueryPoint*) {
    return std::nullopt;
}

std::vector<TQueryPointAnswer> AskForQueryPoints(QWidget*) {
    return {};
}

} // namespace lmx
