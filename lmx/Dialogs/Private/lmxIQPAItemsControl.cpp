#include <lmx/Dialogs/Private/lmxIQPAItemsControl.h>

#include <lmx/Dialogs/Private/lmxIQPAItemDelegate.h>
#include <lmx/Dialogs/Private/lmxIQPAItems.h>
#include <lmx/Widgets/lmxColorChooser.h>
#include <lmx/Widgets/lmxEventGuard.h>

#include <QFocusEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPointer>
#include <QScrollBar>

#include <algorithm>
#include <array>

namespace lmx {

namespace {

constexpr std::array<int, 4> Widths = {70, 70, 150, 70};
constexpr int RowsOfHint = 10;
constexpr int RowsOfMinimum = 3;

bool IsEditable(const QModelIndex& index) {
    return index.flags().testFlag(Qt::ItemIsEditable);
}

} // namespace

TIQPAItemsControl::TIQPAItemsControl(QWidget* parent)
    : QTableView(parent),
      FItems(new TIQPAItems(this)),
      FDelegate(new TIQPAItemDelegate(this)) {
    setModel(FItems);
    setItemDelegate(FDelegate);
    setEditTriggers(QAbstractItemView::AllEditTriggers);
    setSelectionMode(QAbstractItemView::NoSelection);
    setShowGrid(false);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    viewport()->setBackgroundRole(QPalette::Window);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    QHeaderView& header = *horizontalHeader();
    header.setObjectName(QStringLiteral("ColHeader"));
    header.setHighlightSections(false);
    header.setSectionsClickable(false);
    header.setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    for (std::size_t column = 0; column < Widths.size(); ++column)
        header.resizeSection(static_cast<int>(column), Widths[column]);
    FitToFont();
}

void TIQPAItemsControl::FitToFont() {
    QHeaderView& header = *horizontalHeader();
    for (int column = 0; column < TIQPAItems::ColumnCount; ++column) {
        const int needed =
            column == TIQPAItems::clRemove ? TIQPAItemDelegate::RemoveWidth(*this) : header.sectionSizeHint(column);
        header.resizeSection(column, std::max(header.sectionSize(column), needed));
    }
    verticalHeader()->setMinimumSectionSize(1);
    verticalHeader()->setDefaultSectionSize(TIQPAItemDelegate::RowHeight(*this));
}

void TIQPAItemsControl::changeEvent(QEvent* event) {
    QTableView::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        FitToFont();
}

QSize TIQPAItemsControl::sizeHint() const {
    const int frame = 2 * frameWidth();
    return {horizontalHeader()->length() + verticalScrollBar()->sizeHint().width() + frame,
            horizontalHeader()->sizeHint().height() + RowsOfHint * verticalHeader()->defaultSectionSize() + frame};
}

QSize TIQPAItemsControl::minimumSizeHint() const {
    const int height = horizontalHeader()->sizeHint().height() + RowsOfMinimum * verticalHeader()->defaultSectionSize();
    return {horizontalHeader()->sectionSize(0), height + 2 * frameWidth()};
}

void TIQPAItemsControl::EditItem(int row) {
    setFocus(Qt::OtherFocusReason);
    EditCell(FItems->index(row, TIQPAItems::clX));
}

void TIQPAItemsControl::EditCell(const QModelIndex& index) {
    if (!index.isValid())
        return;
    setCurrentIndex(index);
    scrollTo(index);
    if (IsEditable(index) && state() != EditingState)
        edit(index);
}

bool TIQPAItemsControl::focusNextPrevChild(bool next) {
    const QModelIndex end =
        next ? FItems->index(FItems->rowCount() - 1, TIQPAItems::ColumnCount - 1) : FItems->index(0, 0);
    if (currentIndex().isValid() && currentIndex() != end)
        return QTableView::focusNextPrevChild(next);
    setFocus(Qt::OtherFocusReason); // a field that is open has its own place in the order
    return QWidget::focusNextPrevChild(next);
}

void TIQPAItemsControl::focusInEvent(QFocusEvent* event) {
    QTableView::focusInEvent(event);
    const QModelIndex first = FItems->index(0, 0);
    switch (event->reason()) {
    case Qt::TabFocusReason:
        return EditCell(first);
    case Qt::BacktabFocusReason:
        return EditCell(FItems->index(FItems->rowCount() - 1, TIQPAItems::ColumnCount - 1));
    case Qt::ActiveWindowFocusReason:
        return EditCell(currentIndex().isValid() ? currentIndex() : first);
    default:
        return;
    }
}

void TIQPAItemsControl::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Escape:
        return event->ignore(); // the dialog's
    case Qt::Key_Space:
    case Qt::Key_Select:
        if (currentIndex().isValid() && !IsEditable(currentIndex()))
            return Press(currentIndex());
        [[fallthrough]];
    default:
        QTableView::keyPressEvent(event);
    }
}

void TIQPAItemsControl::SetPressed(const QModelIndex& index) {
    FDelegate->SetPressed(index);
    viewport()->update();
}

// A colour is chosen as any button goes down, a row is removed as it goes up.
void TIQPAItemsControl::mousePressEvent(QMouseEvent* event) {
    const QPersistentModelIndex index = indexAt(event->pos());
    QTableView::mousePressEvent(event);
    if (index.isValid() && index.column() == TIQPAItems::clColor)
        return Press(index);
    if (!index.isValid() || event->button() != Qt::LeftButton)
        return;
    if (index.column() == TIQPAItems::clRemove) {
        FHeld = index;
        return SetPressed(index);
    }
    if (state() != EditingState)
        edit(index);
}

void TIQPAItemsControl::mouseDoubleClickEvent(QMouseEvent* event) {
    mousePressEvent(event);
}

void TIQPAItemsControl::mouseMoveEvent(QMouseEvent* event) {
    if (!FHeld.isValid())
        return QTableView::mouseMoveEvent(event);
    SetPressed(indexAt(event->pos()) == FHeld ? QModelIndex(FHeld) : QModelIndex());
}

void TIQPAItemsControl::mouseReleaseEvent(QMouseEvent* event) {
    QTableView::mouseReleaseEvent(event);
    const QPersistentModelIndex held = std::exchange(FHeld, {});
    SetPressed({});
    if (held.isValid() && event->button() == Qt::LeftButton && indexAt(event->pos()) == held)
        Press(held);
}

void TIQPAItemsControl::Press(const QModelIndex& index) {
    if (index.column() == TIQPAItems::clRemove)
        FItems->Remove(index.row());
    else
        GuardEvent(this, [&] { ChooseColor(index); });
}

// The table, and the row, may go while the user chooses.
void TIQPAItemsControl::ChooseColor(const QModelIndex& index) {
    const QPointer<TIQPAItemsControl> self(this);
    const QPersistentModelIndex row(index);
    const auto chooser = TColorChooserFactory::GetObject();
    chooser->SetColor(FItems->GetItems()[static_cast<std::size_t>(index.row())].Color);
    if (chooser->Execute(window()) && self && row.isValid())
        FItems->SetColor(row.row(), chooser->GetColor());
}

} // namespace lmx
