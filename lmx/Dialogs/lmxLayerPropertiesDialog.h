#pragma once

#include <lmx/Dialogs/lmxOptionFrame.h>
#include <lmx/Runtime/lmxEventList.h>
#include <lmx/Runtime/lmxExport.h>
#include <lmx/Runtime/lmxLifetime.h>
#include <lmx/Runtime/lmxObjectList.h>
#include <lmx/Widgets/lmxModalDialog.h>

#include <memory>
#include <vector>

QT_BEGIN_NAMESPACE
class QLabel;
class QPushButton;
class QSplitter;
QT_END_NAMESPACE

namespace lmx {

class TDrawnListView;

/// All properties of a layer: a list of pages on the left, the selected page on the right. The layer brings the pages:
///
///     TOwnedDialog<TLayerPropertiesDialog> dialog(window);
///     layer->InitPropertiesDialog(dialog.Get());
///     dialog.Execute();
///
/// The dialog grows with what a page needs, as far as the screen has room; larger pages are scrolled.
///
/// OK and "&Apply" apply every page, those that nobody has looked at included. A dialog is for one showing.
class LMX_EXPORT TLayerPropertiesDialog : public TModalDialog {
public:
    explicit TLayerPropertiesDialog(QWidget* parent = nullptr);
    ~TLayerPropertiesDialog() override; ///< frees the pages and their frames

    /// Adds a page behind the others. Its frame gets its parent when it is selected for the first time; the first page
    /// is when the dialog comes up and none has been.
    /// @throws EArgumentException "OptionFrame is null", "OptionFrame Name is empty", "OptionFrame.Frame is null".
    void AddOptionFrame(std::unique_ptr<TOptionFrame> optionFrame);
    /// Shows the first page of that name. False if there is none.
    bool SelectPage(const QString& name);
    const TObjectList<TOptionFrame>& GetOptionFrames() const { return FOptionFrames; }

    /// Applies the pages in their order. The first that raises ends it: its message is shown ("Error applying
    /// changes: ..."), the pages behind it are not applied, and those before it stay applied. True if none raised.
    bool ApplyChanges();

    const TLifetime& GetLifetime() const { return FLifetime; }

protected:
    void OkClick() override;
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    class TPageRows;

    void BuildPages();
    void BuildButtons();
    void WidenPageList();
    void lvPagesSelectionChanged();
    void lvPagesSelectItem(TOptionFrame& page, bool isSelected);
    void AddToHost(QWidget* frame);

    TObjectList<TOptionFrame> FOptionFrames;
    TOptionFrame* FSelected = nullptr;
    TDrawnListView* FPages;
    QSplitter* FSplitter;
    QLabel* FPageTitle;
    QWidget* FHost;
    std::vector<QPushButton*> FButtons; ///< in the order of the tab key
    TSubscription FSelectionSubscription;
    TLifetime FLifetime; // the last member: it ends before the others go
};

} // namespace lmx
