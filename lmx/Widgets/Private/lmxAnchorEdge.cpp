#include <lmx/Widgets/Private/lmxAnchorEdge.h>

#include <lmx/Widgets/Private/lmxDeviceGrid.h>

#include <QPainter>
#include <QStyle>
#include <QStyleOptionFocusRect>

#include <algorithm>
#include <utility>

namespace lmx {

namespace {

constexpr int Dot = 2; // its side, and the gap to the next

QString NameOf(TAnchorKind kind) {
    switch (kind) {
    case TAnchorKind::akLeft:
        return QStringLiteral("Left edge");
    case TAnchorKind::akTop:
        return QStringLiteral("Top edge");
    case TAnchorKind::akRight:
        return QStringLiteral("Right edge");
    default:
        return QStringLiteral("Bottom edge");
    }
}

} // namespace

TAnchorEdge::TAnchorEdge(TAnchorKind kind, QWidget* parent) : QAbstractButton(parent), FKind(kind) {
    setCheckable(true);
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(NameOf(kind));
    setToolTip(NameOf(kind));
}

bool TAnchorEdge::IsHorizontal() const {
    return FKind == TAnchorKind::akLeft || FKind == TAnchorKind::akRight;
}

QRect TAnchorEdge::Piece(int from, int to, int thickness) const {
    return IsHorizontal() ? QRect(from, (height() - thickness) / 2, to - from, thickness)
                          : QRect((width() - thickness) / 2, from, thickness, to - from);
}

// A bar that ends in a foot on the edge.
void TAnchorEdge::PaintBar(QPainter& canvas) const {
    const auto [length, breadth] = IsHorizontal() ? std::pair(width(), height()) : std::pair(height(), width());
    const int thickness = std::max(3, breadth / 8);
    const QColor color = palette().color(QPalette::Active, QPalette::Highlight);
    const bool isAtStart = FKind == TAnchorKind::akLeft || FKind == TAnchorKind::akTop;
    FillRectOnGrid(canvas, Piece(0, length, thickness), color);
    FillRectOnGrid(
        canvas, isAtStart ? Piece(0, thickness, breadth / 2) : Piece(length - thickness, length, breadth / 2), color);
}

void TAnchorEdge::PaintDots(QPainter& canvas) const {
    const int length = IsHorizontal() ? width() : height();
    const QColor color = palette().color(QPalette::Active, QPalette::Text);
    for (int from = Dot; from + Dot <= length; from += 2 * Dot)
        FillRectOnGrid(canvas, Piece(from, from + Dot, 1), color);
}

void TAnchorEdge::paintEvent(QPaintEvent*) {
    QPainter canvas(this);
    if (isEnabled() && (isDown() || underMouse())) {
        QColor light = palette().color(QPalette::Highlight);
        light.setAlpha(isDown() ? 80 : 40);
        canvas.fillRect(rect(), light);
    }
    canvas.setOpacity(isEnabled() ? 1 : 0.4);
    isChecked() ? PaintBar(canvas) : PaintDots(canvas);
    if (!hasFocus())
        return;
    QStyleOptionFocusRect mark;
    mark.initFrom(this);
    mark.backgroundColor = palette().color(QPalette::Base);
    style()->drawPrimitive(QStyle::PE_FrameFocusRect, &mark, &canvas, this);
}

} // namespace lmx
