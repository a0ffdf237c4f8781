#include <lmx/Widgets/lmxDrawnListView.h>

#include <lmx/Runtime/lmxBorrowed.h>
#include <lmx/Widgets/Private/lmxDeviceGrid.h>
#include <lmx/Widgets/Private/lmxListModel.h>
#include <lmx/Widgets/lmxEventGuard.h>

#include <QHeaderView>
#include <QMouseEvent>

#include <algorithm>
#include <utility>

namespace lmx {

namespace {

/// Whether Qt may change the selection in an event of that type. A timer is that of scrolling while a button is held.
bool Selects(QEvent::Type type) {
    switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::MouseButtonRelease:
    case QEvent::KeyPress:
    case QEvent::FocusIn:
    case QEvent::Timer:
        return true;
    default:
        return false;
    }
}

} // namespace

TDrawnListView::TDrawnListView(QWidget* parent) : QTreeView(parent), FModel(new TListModel(*this)) {
    setModel(FModel);
    setRootIsDecorated(false);
    setIndentation(0);
    setItemsExpandable(false);
    setExpandsOnDoubleClick(false);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    header()->setStretchLastSection(false);
    header()->setSectionsMovable(false);
    connect(selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this](const QItemSelection& selected, const QItemSelection& deselected) {
                const bool isReal = !selected.isEmpty() || !deselected.isEmpty(); // Qt also tells of nothing
                TellAfter([&] { FSelectionChanged |= isReal; });
            });
}

// Qt's own code goes on after its signals, and rows are not yet what they will be: so nobody is told in the middle.
template<class Work>
void TDrawnListView::TellAfter(Work&& work) {
    const TBorrowed self(this);
    ++FWorking;
    try {
        work();
    } catch (...) {
        if (self)
            --FWorking;
        throw;
    }
    if (!self)
        return;
    --FWorking;
    Tell();
}

void TDrawnListView::Tell() {
    if (FWorking > 0)
        return;
    const TBorrowed self(this);
    const QPersistentModelIndex doubleClickedRow = std::exchange(FDoubleClickedRow, {});
    if (std::exchange(FSelectionChanged, false))
        FOnSelectionChanged.Send(this);
    if (self && doubleClickedRow.isValid())
        FOnRowDoubleClick.Send(this, doubleClickedRow.row());
}

void TDrawnListView::SetColumns(const std::vector<TListColumn>& columns) {
    while (!FColumns.empty())
        RemoveColumn(0);
    for (const TListColumn& column : columns)
        AddColumn(column);
}

void TDrawnListView::AddColumn(const TListColumn& column) {
    const int index = static_cast<int>(FColumns.size());
    FColumns.push_back(column);
    FModel->InsertColumn(index, column.Title);
    header()->resizeSection(index, std::max(column.Width, header()->sectionSizeHint(index)));
    header()->setSectionResizeMode(index, column.TakesRest ? QHeaderView::Stretch : QHeaderView::Interactive);
}

void TDrawnListView::RemoveColumn(int column) {
    if (column < 0 || column >= FModel->columnCount())
        return;
    FColumns.erase(FColumns.begin() + column);
    TellAfter([&] { FModel->RemoveColumn(column); });
}

void TDrawnListView::SetColumnTitle(int column, const QString& title) {
    if (column < 0 || column >= FModel->columnCount())
        return;
    FColumns[static_cast<std::size_t>(column)].Title = title;
    FModel->SetTitle(column, title);
    WidenColumn(column);
}

void TDrawnListView::WidenColumn(int column) {
    if (const int needed = header()->sectionSizeHint(column); columnWidth(column) < needed)
        header()->resizeSection(column, needed);
}

void TDrawnListView::WidenColumns() {
    for (int column = 0; column < FModel->columnCount(); ++column)
        WidenColumn(column);
}

// A reset takes the selection away without a word.
void TDrawnListView::SetRows(std::shared_ptr<const IListRows> rows) {
    FDrawFailed = false;
    TellAfter([&] {
        const bool hadSelection = HasSelection();
        FModel->SetRows(std::move(rows));
        FSelectionChanged |= hadSelection;
    });
}

void TDrawnListView::RowsReset() {
    FDrawFailed = false;
    TellAfter([this] {
        const bool hadSelection = HasSelection();
        FModel->Reset();
        FSelectionChanged |= hadSelection;
    });
}

int TDrawnListView::GetRowCount() const {
    return FModel->rowCount();
}

void TDrawnListView::RowsInserted(int first, int count) {
    FDrawFailed = false;
    TellAfter([&] { FModel->Insert(first, count); });
}

void TDrawnListView::RowsRemoved(int first, int count) {
    FDrawFailed = false;
    TellAfter([&] { FModel->Remove(first, count); });
}

void TDrawnListView::RowsChanged(int first, int count) {
    FDrawFailed = false;
    FModel->Change(first, count);
}

void TDrawnListView::SetMultiSelect(bool multiSelect) {
    setSelectionMode(multiSelect ? QAbstractItemView::ExtendedSelection : QAbstractItemView::SingleSelection);
}

bool TDrawnListView::HasSelection() const {
    return selectionModel()->hasSelection();
}

bool TDrawnListView::IsRowSelected(int row) const {
    return selectionModel()->isSelected(FModel->index(row, 0));
}

std::vector<int> TDrawnListView::GetSelectedRows() const {
    std::vector<int> rows;
    for (const QItemSelectionRange& range : selectionModel()->selection())
        for (int row = range.top(); range.left() == 0 && row <= range.bottom(); ++row)
            rows.push_back(row);
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    return rows;
}

int TDrawnListView::GetSelectedRow() const {
    int only = -1;
    for (const QItemSelectionRange& range : selectionModel()->selection()) {
        if (range.left() != 0)
            continue;
        if (range.height() > 1 || (only >= 0 && only != range.top()))
            return -1;
        only = range.top();
    }
    return only;
}

void TDrawnListView::SelectRow(int row) {
    const QModelIndex index = FModel->index(row, 0);
    if (!index.isValid())
        return;
    TellAfter([&] {
        selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
        scrollTo(index);
    });
}

QPersistentModelIndex TDrawnListView::MarkRow(int row) const {
    return FModel->index(row, 0);
}

QRect TDrawnListView::RowRect(int row) const {
    const QRect cell = visualRect(FModel->index(row, 0));
    return cell.isEmpty() ? QRect() : QRect(0, cell.top(), viewport()->width(), cell.height());
}

// A tree asks all changed rows for their heights, and the first one for its texts. Here all are as high as the font
// says.
void TDrawnListView::dataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight, const QList<int>& roles) {
    QAbstractItemView::dataChanged(topLeft, bottomRight, roles); // NOLINT(bugprone-parent-virtual-call)
}

bool TDrawnListView::event(QEvent* event) {
    if (!Selects(event->type()))
        return QTreeView::event(event);
    bool result = false;
    TellAfter([&] { result = QTreeView::event(event); });
    return result;
}

bool TDrawnListView::viewportEvent(QEvent* event) {
    if (!Selects(event->type()))
        return QTreeView::viewportEvent(event);
    bool result = false;
    TellAfter([&] { result = QTreeView::viewportEvent(event); });
    return result;
}

void TDrawnListView::changeEvent(QEvent* event) {
    QTreeView::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        WidenColumns();
}

// A second press on another row than the first is a press like any other.
void TDrawnListView::mouseDoubleClickEvent(QMouseEvent* event) {
    const QModelIndex index = indexAt(event->pos());
    if (event->button() != Qt::LeftButton || !index.isValid() || index.row() != currentIndex().row())
        mousePressEvent(event);
    else
        FDoubleClickedRow = index;
}

bool TDrawnListView::IsMarked(int row, bool isSelected) const {
    const bool isTold = isSelected && selectionMode() == QAbstractItemView::SingleSelection;
    return hasFocus() && currentIndex().row() == row && !isTold;
}

void TDrawnListView::DrawFocusMark(QPainter& painter, const TListRow& row) const {
    const QRect& frame = row.Whole;
    const auto dot = [&](int x, int y) { FillRectOnGrid(painter, QRectF(x, y, 1, 1), row.Ink()); };
    for (int x = frame.left(); x <= frame.right(); x += 2) {
        dot(x, frame.top());
        dot(x, frame.bottom());
    }
    for (int y = frame.top(); y <= frame.bottom(); y += 2) {
        dot(frame.left(), y);
        dot(frame.right(), y);
    }
}

void TDrawnListView::drawRow(QPainter* painter, const QStyleOptionViewItem& options, const QModelIndex& index) const {
    FCells.clear();
    for (int column = 0; column < FModel->columnCount(); ++column)
        FCells.emplace_back(columnViewportPosition(column), options.rect.top(), columnWidth(column),
                            options.rect.height());
    const TListRow row{options.rect, FCells, IsRowSelected(index.row())};
    painter->save();
    if (FDrawFailed || !FModel->HasRow(index.row()))
        DrawRowGround(*painter, row);
    else
        FDrawFailed = !GuardEvent(viewport(), [&] { FModel->GetRows()->Draw(*painter, row, index.row()); });
    painter->restore();
    painter->save();
    if (IsMarked(index.row(), row.IsSelected))
        DrawFocusMark(*painter, row);
    painter->restore();
}

} // namespace lmx
