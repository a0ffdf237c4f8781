#include <lmx/Widgets/lmxAnchorEditor.h>

#include <lmx/Widgets/Private/lmxAnchorEdge.h>
#include <lmx/Widgets/Private/lmxDeviceGrid.h>
#include <lmx/Widgets/lmxEventGuard.h>

#include <QKeyEvent>
#include <QPainter>

#include <optional>

namespace lmx {

namespace {

constexpr std::array Kinds = {TAnchorKind::akLeft, TAnchorKind::akTop, TAnchorKind::akRight, TAnchorKind::akBottom};

std::optional<TAnchorKind> EdgeOfKey(const QKeyEvent& event) {
    switch (event.key()) {
    case Qt::Key_Left:
        return TAnchorKind::akLeft;
    case Qt::Key_Up:
        return TAnchorKind::akTop;
    case Qt::Key_Right:
        return TAnchorKind::akRight;
    case Qt::Key_Down:
        return TAnchorKind::akBottom;
    default:
        return std::nullopt;
    }
}

} // namespace

TAnchorEditor::TAnchorEditor(QWidget* parent) : QWidget(parent) {
    setAccessibleName(QStringLiteral("Anchors"));
    for (const TAnchorKind kind : Kinds) {
        auto* edge = new TAnchorEdge(kind, this);
        edge->installEventFilter(this);
        GuardClick(edge, [this] { FOnChanged(this); });
        FEdges[static_cast<std::size_t>(kind)] = edge;
    }
    setFocusProxy(FEdges.front());
    SetAnchors({TAnchorKind::akLeft, TAnchorKind::akTop});
}

QAbstractButton* TAnchorEditor::GetEdge(TAnchorKind edge) const {
    return FEdges[static_cast<std::size_t>(edge)];
}

TAnchors TAnchorEditor::GetAnchors() const {
    TAnchors anchors;
    for (const TAnchorKind kind : Kinds)
        if (GetEdge(kind)->isChecked())
            anchors.Include(kind);
    return anchors;
}

void TAnchorEditor::SetAnchors(TAnchors anchors) {
    for (const TAnchorKind kind : Kinds)
        GetEdge(kind)->setChecked(anchors.Contains(kind));
}

bool TAnchorEditor::eventFilter(QObject* sender, QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        if (const auto edge = EdgeOfKey(*static_cast<QKeyEvent*>(event))) {
            GetEdge(*edge)->setFocus(Qt::TabFocusReason);
            return true;
        }
    }
    return QWidget::eventFilter(sender, event);
}

QRect TAnchorEditor::Inside() const {
    const int side = width() * 3 / 10;
    const int above = height() * 3 / 10;
    return rect().adjusted(side, above, -side, -above);
}

void TAnchorEditor::resizeEvent(QResizeEvent*) {
    const QRect inside = Inside();
    const int right = inside.right() + 1;
    const int bottom = inside.bottom() + 1;
    GetEdge(TAnchorKind::akLeft)->setGeometry(1, inside.top(), inside.left() - 1, inside.height());
    GetEdge(TAnchorKind::akTop)->setGeometry(inside.left(), 1, inside.width(), inside.top() - 1);
    GetEdge(TAnchorKind::akRight)->setGeometry(right, inside.top(), width() - right - 1, inside.height());
    GetEdge(TAnchorKind::akBottom)->setGeometry(inside.left(), bottom, inside.width(), height() - bottom - 1);
}

void TAnchorEditor::paintEvent(QPaintEvent*) {
    QPainter canvas(this);
    const QColor line = palette().color(QPalette::Text);
    DrawBoxOnGrid(canvas, rect(), line, palette().color(QPalette::Base));
    DrawBoxOnGrid(canvas, Inside(), line, palette().color(QPalette::Button));
}

} // namespace lmx
