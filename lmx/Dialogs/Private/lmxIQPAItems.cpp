#include <lmx/Dialogs/Private/lmxIQPAItems.h>

#include <lmx/Graphics/lmxSystemColors.h>

#include <QColor>

#include <array>
#include <iterator>

namespace lmx {

namespace {

constexpr std::array<const char16_t*, TIQPAItems::ColumnCount> Titles = {u"X", u"Y", u"Label (optional)", u"Color",
                                                                         u""};
constexpr std::array<QString TIQPAItem::*, 3> Texts = {&TIQPAItem::X, &TIQPAItem::Y, &TIQPAItem::Label};

bool IsText(const QModelIndex& index) {
    return index.isValid() && index.column() < static_cast<int>(Texts.size());
}

QString TIQPAItem::*TextOf(const QModelIndex& index) {
    return Texts[static_cast<std::size_t>(index.column())];
}

} // namespace

void TIQPAItems::Add(std::vector<TIQPAItem> items) {
    if (items.empty())
        return;
    const int first = rowCount();
    beginInsertRows({}, first, first + static_cast<int>(items.size()) - 1);
    FItems.insert(FItems.end(), std::make_move_iterator(items.begin()), std::make_move_iterator(items.end()));
    endInsertRows();
}

void TIQPAItems::Remove(int row) {
    if (row < 0 || row >= rowCount())
        return;
    beginRemoveRows({}, row, row);
    FItems.erase(FItems.begin() + row);
    endRemoveRows();
}

void TIQPAItems::SetColor(int row, TColor color) {
    if (row < 0 || row >= rowCount())
        return;
    FItems[static_cast<std::size_t>(row)].Color = color;
    Q_EMIT dataChanged(index(row, clColor), index(row, clColor));
}

int TIQPAItems::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(FItems.size());
}

Qt::ItemFlags TIQPAItems::flags(const QModelIndex& index) const {
    if (!index.isValid())
        return Qt::NoItemFlags;
    const Qt::ItemFlags plain = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
    return IsText(index) ? plain | Qt::ItemIsEditable : plain;
}

QString TIQPAItems::TextAt(const QModelIndex& index) const {
    if (IsText(index))
        return ItemAt(index).*TextOf(index);
    if (index.column() == clColor)
        return QColor::fromRgb(Color32(ItemAt(index).Color)).name().toUpper();
    return QStringLiteral("Remove");
}

QVariant TIQPAItems::data(const QModelIndex& index, int role) const {
    const bool isAsked = role == Qt::DisplayRole || role == Qt::EditRole || role == Qt::AccessibleTextRole;
    return index.isValid() && isAsked ? QVariant(TextAt(index)) : QVariant();
}

bool TIQPAItems::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (!IsText(index) || role != Qt::EditRole)
        return false;
    FItems[static_cast<std::size_t>(index.row())].*TextOf(index) = value.toString();
    Q_EMIT dataChanged(index, index);
    return true;
}

QVariant TIQPAItems::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 || section >= ColumnCount)
        return {};
    return QString::fromUtf16(Titles[static_cast<std::size_t>(section)]);
}

} // namespace lmx
