#pragma once

#include <lmx/Runtime/lmxExport.h>
#include <lmx/Widgets/lmxDrawnListView.h>

#include <memory>
#include <vector>

namespace lmx {

class TRulerItem;

/// Draws a ruler's row of three cells: its location with three decimals, its line as it stands on the map, and its
/// colour without alpha.
LMX_EXPORT void DrawRulerItem(QPainter& canvas, const TListRow& row, const TRulerItem& ruler);

/// A list of rulers, drawn always from their present values. It borrows the rulers: each has to leave the list before
/// it is freed.
class LMX_EXPORT TRulerListView : public TDrawnListView {
public:
    explicit TRulerListView(QWidget* parent = nullptr);

    void AddRuler(TRulerItem* ruler); ///< at the end; nil does nothing
    /// Takes the first row of that ruler out, if there is any.
    void RemoveRuler(const TRulerItem* ruler);
    /// Lists these instead, none of them selected. None of them is nil.
    void SetRulers(const std::vector<TRulerItem*>& rulers);

    TRulerItem* GetRuler(int row) const;  ///< nil for a row outside the list
    TRulerItem* GetSelectedRuler() const; ///< nil if no row is selected

private:
    class TRulerRows;

    std::shared_ptr<TRulerRows> FRulers;
};

} // namespace lmx
