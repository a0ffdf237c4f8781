#pragma once

#include <lmx/Runtime/lmxEventList.h>
#include <lmx/Runtime/lmxExport.h>
#include <lmx/Runtime/lmxLifetime.h>
#include <lmx/Widgets/lmxListRows.h>

#include <QPersistentModelIndex>
#include <QTreeView>

#include <memory>
#include <vector>

namespace lmx {

class TListModel;

/// A column of a drawn list.
struct TListColumn {
    QString Title;
    int Width = 100;        ///< in logical pixels; a title that needs more gets it
    bool TakesRest = false; ///< as wide as what the others leave
};

/// A list in columns whose rows are drawn by the rows themselves (IListRows), in the colours of the system, with a mark
/// around the row that has the keyboard. Nothing is kept for each row but Qt's place of it, so a million rows are no
/// burden. Rows are selected whole: one, or with SetMultiSelect several.
///
/// Whoever changes the rows tells the list afterwards; the selection follows its rows. The list tells of the selection
/// and of double clicks at the end of its work, when it and the rows agree: whoever is told may change the rows, and
/// destroy the list.
class LMX_EXPORT TDrawnListView : public QTreeView {
public:
    using TEvents = TEventList<TDrawnListView*>;
    using TRowEvents = TEventList<TDrawnListView*, int>;

    explicit TDrawnListView(QWidget* parent = nullptr);

    /// Puts these columns in the place of all that there are.
    void SetColumns(const std::vector<TListColumn>& columns);
    void AddColumn(const TListColumn& column); ///< at the end
    void RemoveColumn(int column);             ///< a column outside the list does nothing; so below
    void SetColumnTitle(int column, const QString& title);

    /// Shows these rows, of which none is selected; nil shows none.
    void SetRows(std::shared_ptr<const IListRows> rows);
    int GetRowCount() const; ///< of the rows that the list was told of

    /// The rows have changed. What lies outside the list does nothing.
    void RowsInserted(int first, int count = 1);
    void RowsRemoved(int first, int count = 1);
    void RowsChanged(int first, int count = 1);
    void RowsReset(); ///< they are others now, none of them selected

    void SetMultiSelect(bool multiSelect);    ///< off at first
    bool HasSelection() const;                ///< whether any row is selected
    int GetSelectedRow() const;               ///< the only one; -1 if none or several are
    std::vector<int> GetSelectedRows() const; ///< from the first to the last
    bool IsRowSelected(int row) const;
    /// Selects that row alone, gives it the keyboard's mark and scrolls to it; a row outside the list does nothing.
    void SelectRow(int row);

    /// Follows a row while rows come and go around it. Not valid for a row outside the list, nor once the row is
    /// removed or the rows are reset; its `row()` is the place of the row.
    QPersistentModelIndex MarkRow(int row) const;
    QRect RowRect(int row) const; ///< on the viewport; empty for a row outside the list

    TEvents& GetOnSelectionChanged() { return FOnSelectionChanged; }
    TRowEvents& GetOnRowDoubleClick() { return FOnRowDoubleClick; } ///< with the left button

    const TLifetime& GetLifetime() const { return FLifetime; }

    void dataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight,
                     const QList<int>& roles = QList<int>()) override;

protected:
    bool event(QEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void drawRow(QPainter* painter, const QStyleOptionViewItem& options, const QModelIndex& index) const override;

private:
    template<class Work>
    void TellAfter(Work&& work);
    void Tell();
    void WidenColumn(int column);
    void WidenColumns();
    void DrawFocusMark(QPainter& painter, const TListRow& row) const;
    bool IsMarked(int row, bool isSelected) const;

    TListModel* FModel;
    std::vector<TListColumn> FColumns;
    TEvents FOnSelectionChanged;
    TRowEvents FOnRowDoubleClick;
    int FWorking = 0; ///< depth of work at whose end something may be told
    bool FSelectionChanged = false;
    QPersistentModelIndex FDoubleClickedRow;
    mutable std::vector<QRect> FCells; ///< of the row that is drawn
    mutable bool FDrawFailed = false;
    TLifetime FLifetime; // the last member: it ends before the others go
};

} // namespace lmx
