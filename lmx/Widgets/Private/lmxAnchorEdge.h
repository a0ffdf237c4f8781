#pragma once

#include <lmx/Runtime/lmxAnchors.h>

#include <QAbstractButton>

namespace lmx {

/// One edge of an anchor editor, on or off: the line between the edge and the thing inside. It covers the room between
/// the two.
class TAnchorEdge final : public QAbstractButton {
public:
    TAnchorEdge(TAnchorKind kind, QWidget* parent);

    bool IsHorizontal() const; ///< its line runs from left to right

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void PaintBar(QPainter& canvas) const;
    void PaintDots(QPainter& canvas) const;
    /// A piece of the line, from `from` to `to` along it, in the middle of the room.
    QRect Piece(int from, int to, int thickness) const;

    TAnchorKind FKind;
};

} // namespace lmx
