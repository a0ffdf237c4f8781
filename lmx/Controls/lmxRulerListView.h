#pragma once

#include <lmx/Runtime/lmxExport.h>

#include <QTreeWidget>

#include <array>

namespace lmx {

class TRulerItem;

/// The places of a ruler's row in a list: the whole row, and the cells of location, type and colour.
struct TRulerRow {
    QRect Whole;
    std::array<QRect, 3> Cells;
};

/// Draws a ruler's row: its location with three decimals, its line as it stands on the map, and its colour without
/// alpha. Colours are those of the system.
LMX_EXPORT void DrawRulerItem(QPainter& canvas, const TRulerRow& row, const TRulerItem& ruler, bool isSelected);

/// A list of rulers that draws its rows itself, always from the rulers' present values. It borrows the rulers: each has
/// to leave the list before it is freed.
class LMX_EXPORT TRulerListView : public QTreeWidget {
public:
    explicit TRulerListView(QWidget* parent = nullptr);

    void AddRuler(TRulerItem* ruler); ///< at the end; nil does nothing
    /// Takes the first row of that ruler out, if there is any.
    void RemoveRuler(const TRulerItem* ruler);

    TRulerItem* GetRuler(int row) const;  ///< nil for a row outside the list
    TRulerItem* GetSelectedRuler() const; ///< nil if no row is selected

protected:
    void drawRow(QPainter* painter, const QStyleOptionViewItem& options, const QModelIndex& index) const override;
};

} // namespace lmx
