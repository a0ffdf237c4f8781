#pragma once

#include <QPersistentModelIndex>
#include <QTableView>

namespace lmx {

class TIQPAItemDelegate;
class TIQPAItems;

/// The table in which points are entered. The tab key leads from field to field and row to row and behind the last on
/// to the next control; the space bar chooses a colour and removes a row. Nothing is made for a row that is not seen.
class TIQPAItemsControl final : public QTableView {
public:
    explicit TIQPAItemsControl(QWidget* parent);

    TIQPAItems& GetItems() const { return *FItems; }
    void EditItem(int row); ///< gives the keyboard to the first field of that row

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    bool focusNextPrevChild(bool next) override;
    void focusInEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void FitToFont();
    void EditCell(const QModelIndex& index);
    void Press(const QModelIndex& index); ///< a colour that is chosen, a row that goes
    void ChooseColor(const QModelIndex& index);
    void SetPressed(const QModelIndex& index);

    TIQPAItems* FItems;
    TIQPAItemDelegate* FDelegate;
    QPersistentModelIndex FHeld; ///< the button on which the mouse went down
};

} // namespace lmx
