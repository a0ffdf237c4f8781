#pragma once

#include <lmx/Runtime/lmxEventList.h>
#include <lmx/Runtime/lmxExport.h>
#include <lmx/Widgets/lmxDrawnListView.h>

#include <QWidget>

#include <functional>
#include <vector>

QT_BEGIN_NAMESPACE
class QAbstractButton;
class QHBoxLayout;
QT_END_NAMESPACE

namespace lmx {

class TListKeys;
class TPngButton;
class TToggleButtonBar;

/// What a button of a list panel shows and does.
struct TListCommand {
    QString ImageName; ///< of TExternalResources
    QString Hint;
    std::vector<Qt::Key> Keys;        ///< that press the button while the list has the keyboard
    std::function<void()> Execute;    ///< what it raises is shown as an error
    std::function<bool()> CanExecute; ///< whether there is something to do at the moment; nil: always
};

/// A list under a bar of buttons, which are enabled where they mean something. The keyboard goes to the list.
class LMX_EXPORT TListPanel : public QWidget {
public:
    /// Takes the list in, under a name that says what it lists.
    TListPanel(TDrawnListView* list, const QString& listName, QWidget* parent = nullptr);

    TDrawnListView* GetList() const { return FList; }
    TToggleButtonBar* GetButtonBar() const { return FButtonBar; }

    /// Adds a button on the right of the others. The tab key leads through them to the list.
    /// @throws EArgumentException if there is no image of that name.
    TPngButton* AddCommand(const TListCommand& command);
    /// Presses that button, if it is enabled, at a double click on a row.
    void SetDoubleClickButton(QAbstractButton* button);
    /// Puts a widget beside the list, on its right, and takes it in.
    void AddSide(QWidget* side);

    /// Asks each command whether it can be executed. Happens by itself when the selection changes.
    void UpdateButtons();

    QSize sizeHint() const override { return {200, 240}; }

protected:
    void focusInEvent(QFocusEvent* event) override;

private:
    struct TButton {
        QAbstractButton* Button;
        std::function<bool()> CanExecute;
    };

    void LeadTabTo(QWidget& button);

    TToggleButtonBar* FButtonBar;
    TDrawnListView* FList;
    QHBoxLayout* FBody;
    TListKeys* FKeys;
    std::vector<TButton> FButtons;
    TSubscription FSelectionSubscription;
    TSubscription FDoubleClickSubscription;
};

} // namespace lmx
