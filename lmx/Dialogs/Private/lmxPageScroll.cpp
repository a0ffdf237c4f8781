#include <lmx/Dialogs/Private/lmxPageScroll.h>

#include <lmx/Dialogs/Private/lmxScreenPlace.h>

#include <QEvent>

namespace lmx {

TPageScroll::TPageScroll(QWidget* page, QWidget* parent) : QScrollArea(parent) {
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus); // the page's controls have it, and come into sight with it
    setWidgetResizable(true);
    setWidget(page);
    page->setAutoFillBackground(false);
    viewport()->setAutoFillBackground(false);
}

// The rest of the dialog needs some of the screen, too.
QSize TPageScroll::Fitted(const QSize& wanted) const {
    return wanted.boundedTo(RoomOnScreen(*window()).size() * 2 / 3);
}

QSize TPageScroll::sizeHint() const {
    return Fitted(widget()->sizeHint());
}

QSize TPageScroll::minimumSizeHint() const {
    return Fitted(widget()->minimumSizeHint());
}

// A scroll area does not pass on that its content wants another size.
bool TPageScroll::eventFilter(QObject* watched, QEvent* event) {
    const bool isDone = QScrollArea::eventFilter(watched, event);
    if (watched == widget() && event->type() == QEvent::LayoutRequest)
        updateGeometry();
    return isDone;
}

} // namespace lmx
