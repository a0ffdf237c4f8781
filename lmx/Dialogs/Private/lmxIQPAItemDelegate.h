#pragma once

#include <QPersistentModelIndex>
#include <QStyledItemDelegate>

namespace lmx {

/// Draws the row of a point as what it is: three fields to type in, a field of its colour, and a button; and makes the
/// real field where somebody types. What is typed goes into the row with each key. The enter key and Escape are left to
/// the dialog, and so is going back from the first field of all.
class TIQPAItemDelegate final : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    /// Shows the button of that row pressed; of none for an index that is not valid.
    void SetPressed(const QModelIndex& index) { FPressed = index; }
    const QPersistentModelIndex& GetPressed() const { return FPressed; }

    static int RowHeight(const QWidget& table);   ///< at least 24 pixels, and what a field needs
    static int RemoveWidth(const QWidget& table); ///< what the button needs

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const override;

protected:
    bool eventFilter(QObject* editor, QEvent* event) override;

private:
    QPersistentModelIndex FPressed;
};

} // namespace lmx
