#pragma once

#include <lmx/Runtime/lmxExport.h>

#include <QColor>
#include <QPainter>
#include <QRect>
#include <QString>

#include <span>

namespace lmx {

/// The place and the state of a row that is drawn. All in the units of the painter.
struct TListRow {
    QRect Whole;                  ///< from edge to edge of the list
    std::span<const QRect> Cells; ///< of the columns in their order; may reach beyond `Whole`
    bool IsSelected = false;

    QColor Ground() const; ///< of the system: highlight if selected, else window
    QColor Ink() const;    ///< what stands on the ground: highlight text if selected, else window text
};

/// Fills the whole row with its ground and takes its ink as the pen.
LMX_EXPORT void DrawRowGround(QPainter& canvas, const TListRow& row);

/// Writes one line with the present pen, vertically centred. What does not fit is cut off at the edges of `room`.
LMX_EXPORT void DrawCellText(QPainter& canvas, const QRect& room, const QString& text);

/// The rows of a drawn list. The list asks for a row when it shows it, so nothing is kept for each row, and what it
/// asks for is always a row that it was told of and that there still is.
class LMX_EXPORT IListRows {
public:
    virtual ~IListRows() = default;

    virtual int GetCount() const = 0;
    /// What a cell says: written by the plain drawing, found by typing, and told to screen readers. A cell whose text
    /// raises an exception says nothing.
    virtual QString GetText(int row, int column) const = 0;
    /// Draws a row. Here: its ground, and the text of each cell that can be seen, two pixels from its sides. Pen, brush
    /// and clip need not be restored. What it raises is shown once, until rows change.
    virtual void Draw(QPainter& canvas, const TListRow& place, int row) const;
};

} // namespace lmx
