#include <lmx/Controls/lmxRulerListView.h>

#include <lmx/Graphics/lmxSystemColors.h>
#include <lmx/Layers/lmxRulerMapLayer.h>
#include <lmx/Runtime/lmxFormat.h>
#include <lmx/Widgets/Private/lmxDeviceGrid.h>

#include <QColor>
#include <QHeaderView>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionFocusRect>

namespace lmx {

namespace {

enum TColumn { LocationColumn, TypeColumn, ColorColumn };

QColor ToQColor(TColor color) {
    return QColor::fromRgb(Color32(color));
}

QString LocationText(const TRulerItem& ruler) {
    return Format(u"%.3f", {ruler.GetLocation()});
}

/// A row. It shows no texts of its own; screen readers are told what is drawn.
class TRulerListItem final : public QTreeWidgetItem {
public:
    TRulerListItem(QTreeWidget* list, TRulerItem& ruler) : QTreeWidgetItem(list), FRuler(ruler) {}

    TRulerItem& GetRuler() const { return FRuler; }

    QVariant data(int column, int role) const override {
        if (role == Qt::AccessibleTextRole)
            return Description(column);
        if (role == Qt::SizeHintRole)
            return QSize(0, treeWidget()->fontMetrics().height() + 6);
        return QTreeWidgetItem::data(column, role);
    }

private:
    QString Description(int column) const {
        switch (column) {
        case LocationColumn:
            return LocationText(FRuler);
        case TypeColumn:
            return FRuler.GetOrientation() == TRulerOrientation::roVertical ? QStringLiteral("Vertical")
                                                                            : QStringLiteral("Horizontal");
        default:
            return ToQColor(WinColor(FRuler.GetColor())).name().toUpper();
        }
    }

    TRulerItem& FRuler;
};

// Vertical rulers are lines from left to right, horizontal ones from top to bottom.
void DrawLine(QPainter& canvas, const QRect& cell, TRulerOrientation orientation, const QColor& pen) {
    const int middleX = cell.left() + cell.width() / 2;
    const int middleY = cell.top() + cell.height() / 2;
    if (orientation == TRulerOrientation::roVertical)
        FillRectOnGrid(canvas, QRectF(cell.left(), middleY, cell.width(), 1), pen);
    else
        FillRectOnGrid(canvas, QRectF(middleX, cell.top(), 1, cell.height()), pen);
}

} // namespace

void DrawRulerItem(QPainter& canvas, const TRulerRow& row, const TRulerItem& ruler, bool isSelected) {
    const QColor pen = ToQColor(isSelected ? clHighlightText : clWindowText);
    FillRectOnGrid(canvas, row.Whole, ToQColor(isSelected ? clHighlight : clWindow));

    canvas.setPen(pen);
    canvas.drawText(row.Cells[LocationColumn].adjusted(2, 0, -2, 0), Qt::TextSingleLine | Qt::AlignVCenter,
                    LocationText(ruler));
    DrawLine(canvas, row.Cells[TypeColumn].adjusted(2, 2, -2, -2), ruler.GetOrientation(), pen);
    DrawBoxOnGrid(canvas, row.Cells[ColorColumn].adjusted(3, 4, -3, -4), pen, ToQColor(WinColor(ruler.GetColor())));
}

TRulerListView::TRulerListView(QWidget* parent) : QTreeWidget(parent) {
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setHeaderLabels({QStringLiteral("Location"), QStringLiteral("Type"), QStringLiteral("Color")});
    header()->setStretchLastSection(false);
    header()->setSectionsMovable(false);
    header()->resizeSection(LocationColumn, 70);
    header()->resizeSection(TypeColumn, 50);
    header()->resizeSection(ColorColumn, 60);
}

void TRulerListView::AddRuler(TRulerItem* ruler) {
    if (ruler)
        new TRulerListItem(this, *ruler); // the list owns it
}

void TRulerListView::RemoveRuler(const TRulerItem* ruler) {
    for (int row = 0; row < topLevelItemCount(); ++row) {
        if (GetRuler(row) == ruler) {
            delete topLevelItem(row);
            return;
        }
    }
}

TRulerItem* TRulerListView::GetRuler(int row) const {
    const auto* item = static_cast<TRulerListItem*>(topLevelItem(row));
    return item ? &item->GetRuler() : nullptr;
}

TRulerItem* TRulerListView::GetSelectedRuler() const {
    const QModelIndexList rows = selectionModel()->selectedRows();
    return rows.isEmpty() ? nullptr : GetRuler(rows.first().row());
}

void TRulerListView::drawRow(QPainter* painter, const QStyleOptionViewItem& options, const QModelIndex& index) const {
    const TRulerItem* ruler = GetRuler(index.row());
    if (!ruler)
        return;
    TRulerRow row{options.rect, {}};
    for (const TColumn column : {LocationColumn, TypeColumn, ColorColumn})
        row.Cells[column] = visualRect(index.siblingAtColumn(column));
    const bool isSelected = selectionModel()->isSelected(index);
    painter->save();
    DrawRulerItem(*painter, row, *ruler, isSelected);
    painter->restore();
    if (isSelected || !hasFocus() || currentIndex().row() != index.row())
        return;
    QStyleOptionFocusRect mark;
    mark.QStyleOption::operator=(options);
    mark.state |= QStyle::State_KeyboardFocusChange | QStyle::State_Item;
    style()->drawPrimitive(QStyle::PE_FrameFocusRect, &mark, painter, this);
}

} // namespace lmx
