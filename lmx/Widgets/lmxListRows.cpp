#include <lmx/Widgets/lmxListRows.h>

#include <lmx/Graphics/lmxSystemColors.h>
#include <lmx/Widgets/Private/lmxDeviceGrid.h>

namespace lmx {

namespace {

QColor ToQColor(TColor color) {
    return QColor::fromRgb(Color32(color));
}

} // namespace

QColor TListRow::Ground() const {
    return ToQColor(IsSelected ? clHighlight : clWindow);
}

QColor TListRow::Ink() const {
    return ToQColor(IsSelected ? clHighlightText : clWindowText);
}

void DrawRowGround(QPainter& canvas, const TListRow& row) {
    FillRectOnGrid(canvas, row.Whole, row.Ground());
    canvas.setPen(row.Ink());
}

void DrawCellText(QPainter& canvas, const QRect& room, const QString& text) {
    if (!room.isEmpty())
        canvas.drawText(room, Qt::TextSingleLine | Qt::AlignVCenter, text);
}

void IListRows::Draw(QPainter& canvas, const TListRow& place, int row) const {
    DrawRowGround(canvas, place);
    for (std::size_t column = 0; column < place.Cells.size(); ++column) {
        const QRect& cell = place.Cells[column];
        if (!cell.isEmpty() && cell.intersects(place.Whole))
            DrawCellText(canvas, cell.adjusted(2, 0, -2, 0), GetText(row, static_cast<int>(column)));
    }
}

} // namespace lmx
