#include <lmx/Dialogs/Private/lmxCSVPreview.h>

namespace lmx {

namespace {

constexpr qsizetype ShownCharacters = 100;

} // namespace

void TCSVPreview::Show(const TCSVReader& reader, bool hasHeader) {
    beginResetModel();
    FReader = reader;
    FHasHeader = hasHeader;
    endResetModel();
}

int TCSVPreview::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(FReader.GetRowCount()) - (FHasHeader ? 1 : 0);
}

int TCSVPreview::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(FReader.GetColumnNames().size());
}

QString TCSVPreview::TextAt(int row, int column) const {
    return FReader.GetCell(static_cast<std::size_t>(row), static_cast<std::size_t>(column))
        .left(ShownCharacters)
        .toString()
        .replace(u'\n', u' ');
}

QVariant TCSVPreview::data(const QModelIndex& index, int role) const {
    return index.isValid() && role == Qt::DisplayRole
               ? QVariant(TextAt(index.row() + (FHasHeader ? 1 : 0), index.column()))
               : QVariant();
}

QVariant TCSVPreview::headerData(int section, Qt::Orientation orientation, int role) const {
    const bool isAsked = orientation == Qt::Horizontal && role == Qt::DisplayRole;
    return isAsked && FHasHeader && section < columnCount() ? QVariant(TextAt(0, section)) : QVariant();
}

} // namespace lmx
