#include <lmx/Widgets/Private/lmxListModel.h>

#include <algorithm>
#include <utility>

namespace lmx {

namespace {

constexpr int RowRoom = 6;  // above and below a text together
constexpr int CellRoom = 8; // left and right of it

} // namespace

void TListModel::SetRows(std::shared_ptr<const IListRows> rows) {
    const int count = rows ? rows->GetCount() : 0; // rows of a host's may raise
    beginResetModel();
    FRows = std::move(rows);
    FCount = count;
    endResetModel();
}

void TListModel::Reset() {
    SetRows(FRows);
}

void TListModel::Insert(int first, int count) {
    first = std::clamp(first, 0, FCount);
    if (!FRows || count <= 0)
        return;
    beginInsertRows({}, first, first + count - 1);
    FCount += count;
    endInsertRows();
}

void TListModel::Remove(int first, int count) {
    const int end = std::min(first + count, FCount);
    if (first < 0 || first >= end)
        return;
    beginRemoveRows({}, first, end - 1);
    FCount -= end - first;
    endRemoveRows();
}

void TListModel::Change(int first, int count) {
    const int end = std::min(first + count, FCount);
    if (first >= 0 && first < end && !FTitles.isEmpty())
        Q_EMIT dataChanged(index(first, 0), index(end - 1, columnCount() - 1));
}

void TListModel::InsertColumn(int column, const QString& title) {
    beginInsertColumns({}, column, column);
    FTitles.insert(column, title);
    endInsertColumns();
}

void TListModel::RemoveColumn(int column) {
    beginRemoveColumns({}, column, column);
    FTitles.removeAt(column);
    endRemoveColumns();
}

void TListModel::SetTitle(int column, const QString& title) {
    FTitles[column] = title;
    Q_EMIT headerDataChanged(Qt::Horizontal, column, column);
}

int TListModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(FTitles.size());
}

Qt::ItemFlags TListModel::flags(const QModelIndex& index) const {
    return index.isValid() ? Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren : Qt::NoItemFlags;
}

// The one place where a failure is dropped: by contract such a cell says nothing.
QString TListModel::TextOf(const QModelIndex& index) const {
    try {
        return HasRow(index.row()) ? FRows->GetText(index.row(), index.column()) : QString();
    } catch (...) {
        return {};
    }
}

int TListModel::WidthOf(const QString& text) const {
    return FView.fontMetrics().horizontalAdvance(text) + CellRoom;
}

QVariant TListModel::data(const QModelIndex& index, int role) const {
    switch (role) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
        return TextOf(index);
    case Qt::ToolTipRole: { // where it is cut off
        const QString text = TextOf(index);
        return WidthOf(text) > FView.columnWidth(index.column()) ? text.toHtmlEscaped() : QVariant();
    }
    case Qt::SizeHintRole:
        return QSize(WidthOf(TextOf(index)), FView.fontMetrics().height() + RowRoom);
    default:
        return {};
    }
}

QVariant TListModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || section < 0 || section >= FTitles.size())
        return {};
    if (role == Qt::TextAlignmentRole)
        return int{Qt::AlignLeft | Qt::AlignVCenter};
    return role == Qt::DisplayRole ? QVariant(FTitles[section]) : QVariant();
}

} // namespace lmx
