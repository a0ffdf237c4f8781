#pragma once

#include <lmx/Graphics/lmxColor32.h>
#include <lmx/Widgets/lmxDrawnListView.h>

#include <QPointer>
#include <QWidget>

#include <functional>
#include <memory>
#include <vector>

QT_BEGIN_NAMESPACE
class QHBoxLayout;
class QPushButton;
class QVBoxLayout;
QT_END_NAMESPACE

namespace lmx {

/// Rows that end with the swatch of a colour, which is drawn opaque.
class IColorListRows : public IListRows {
public:
    virtual TColor32 GetColor(int row) const = 0;
    void Draw(QPainter& canvas, const TListRow& place, int row) const override;
};

/// A list of which an editor for one kind of colouring consists, and the buttons below it.
class TListPage : public QWidget {
protected:
    /// What has to be selected for a button to mean something.
    enum class TNeeds { neNothing, neOneRow, neRows };

    TListPage(const QString& listObjectName, const QString& listName, QWidget* parent);

    QVBoxLayout* GetColumn() const { return FColumn; }
    TDrawnListView* GetList() const { return FList; }
    /// Adds a button behind the others; what `click` raises is shown as an error.
    QPushButton* AddCommand(const QString& text, const QString& objectName, TNeeds needs, std::function<void()> click);
    void SetDoubleClickButton(QPushButton* button);
    void SetDeleteButton(QPushButton* button); ///< of the delete key

    /// Shows the rows anew. The selection stays at its index, if there still is one.
    void ShowRowsAnew();
    /// Removes rows that have gone: their numbers rise.
    void ForgetRows(const std::vector<int>& rows);

private:
    struct TCommand {
        QPushButton* Button;
        TNeeds Needs;
    };

    void UpdateButtons();

    TDrawnListView* FList;
    QVBoxLayout* FColumn;
    QHBoxLayout* FButtons;
    std::vector<TCommand> FCommands;
    TSubscription FSelectionSubscription;
    TSubscription FDoubleClickSubscription;
};

} // namespace lmx
