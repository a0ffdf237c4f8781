#include "ElidedLabel.h"

#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

QSize TElidedLabel::sizeHint() const {
    return {fontMetrics().horizontalAdvance(text()) + 1, fontMetrics().height()};
}

bool TElidedLabel::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip || sizeHint().width() <= width())
        return QLabel::event(event);
    QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), text().toHtmlEscaped(), this);
    return true;
}

void TElidedLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::Active, isEnabled() ? QPalette::WindowText : QPalette::PlaceholderText));
    painter.drawText(rect(), Qt::AlignVCenter, fontMetrics().elidedText(text(), FMode, width()));
}
