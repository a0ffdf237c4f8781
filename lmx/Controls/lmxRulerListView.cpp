#include <lmx/Controls/lmxRulerListView.h>

#include <lmx/Graphics/lmxSystemColors.h>
#include <lmx/Layers/lmxRulerMapLayer.h>
#include <lmx/Runtime/lmxFormat.h>
#include <lmx/Widgets/Private/lmxDeviceGrid.h>

#include <algorithm>
#include <deque>

namespace lmx {

namespace {

enum TColumn { coLocation, coType, coColor };

QColor OpaqueColor(const TRulerItem& ruler) {
    return QColor::fromRgb(Color32(WinColor(ruler.GetColor())));
}

QString LocationText(const TRulerItem& ruler) {
    return Format(u"%.3f", {ruler.GetLocation()});
}

QString TypeText(const TRulerItem& ruler) {
    return ruler.GetOrientation() == TRulerOrientation::roVertical ? QStringLiteral("Vertical")
                                                                   : QStringLiteral("Horizontal");
}

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

void DrawRulerItem(QPainter& canvas, const TListRow& row, const TRulerItem& ruler) {
    DrawRowGround(canvas, row);
    DrawCellText(canvas, row.Cells[coLocation].adjusted(2, 0, -2, 0), LocationText(ruler));
    DrawLine(canvas, row.Cells[coType].adjusted(2, 2, -2, -2), ruler.GetOrientation(), row.Ink());
    DrawBoxOnGrid(canvas, row.Cells[coColor].adjusted(3, 4, -3, -4), row.Ink(), OpaqueColor(ruler));
}

class TRulerListView::TRulerRows final : public IListRows {
public:
    std::deque<TRulerItem*> Items; ///< a layer that empties its lists takes them from the front

    int GetCount() const override { return static_cast<int>(Items.size()); }
    QString GetText(int row, int column) const override {
        const TRulerItem& ruler = *Items[static_cast<std::size_t>(row)];
        switch (column) {
        case coLocation:
            return LocationText(ruler);
        case coType:
            return TypeText(ruler);
        default:
            return OpaqueColor(ruler).name().toUpper();
        }
    }
    void Draw(QPainter& canvas, const TListRow& place, int row) const override {
        DrawRulerItem(canvas, place, *Items[static_cast<std::size_t>(row)]);
    }
};

TRulerListView::TRulerListView(QWidget* parent) : TDrawnListView(parent), FRulers(std::make_shared<TRulerRows>()) {
    SetColumns({{QStringLiteral("Location"), 70}, {QStringLiteral("Type"), 50}, {QStringLiteral("Color"), 60}});
    SetRows(FRulers);
}

void TRulerListView::AddRuler(TRulerItem* ruler) {
    if (!ruler)
        return;
    FRulers->Items.push_back(ruler);
    RowsInserted(FRulers->GetCount() - 1);
}

void TRulerListView::RemoveRuler(const TRulerItem* ruler) {
    auto& items = FRulers->Items;
    const auto found = std::find(items.begin(), items.end(), ruler);
    if (found == items.end())
        return;
    const auto row = static_cast<int>(found - items.begin());
    items.erase(found);
    RowsRemoved(row);
}

void TRulerListView::SetRulers(const std::vector<TRulerItem*>& rulers) {
    FRulers->Items.assign(rulers.begin(), rulers.end());
    RowsReset();
}

TRulerItem* TRulerListView::GetRuler(int row) const {
    return row >= 0 && row < FRulers->GetCount() ? FRulers->Items[static_cast<std::size_t>(row)] : nullptr;
}

TRulerItem* TRulerListView::GetSelectedRuler() const {
    return GetRuler(GetSelectedRow());
}

} // namespace lmx
