#pragma once

#include <lmx/Runtime/lmxEventList.h>
#include <lmx/Widgets/lmxModalDialog.h>
#include <lmx/Widgets/lmxResBrowser.h>

#include <memory>
#include <vector>

QT_BEGIN_NAMESPACE
class QLabel;
class QLineEdit;
class QPushButton;
QT_END_NAMESPACE

namespace lmx {

class TDrawnListView;

/// The resources of some sources, as swatches with names: all of them, or those of one source or folder, whose names
/// hold the text that is searched. Below them stands what the sources note.
class TResBrowserDialog final : public TModalDialog {
public:
    explicit TResBrowserDialog(QWidget* parent = nullptr);

    /// What a source raises leaves it out, and is told once the dialog is up.
    void SetSources(const std::vector<std::shared_ptr<IResBrowserSource>>& sources);
    TResource GetResource() const; ///< the selected one; an empty one if none is

private:
    class TFolderRows;
    class TResourceRows;

    void ShowNotes(const QStringList& notes);
    void Filter();
    void UpdateButtons();

    std::shared_ptr<TFolderRows> FFolders;
    std::shared_ptr<TResourceRows> FResources;
    QLineEdit* FSearch;
    TDrawnListView* FFolderList;
    TDrawnListView* FResourceList;
    QLabel* FNotes;
    QPushButton* FOk = nullptr;
    std::vector<TSubscription> FSubscriptions;
};

} // namespace lmx
