#include <lmx/Widgets/lmxPaintBox32.h>

#include <lmx/Runtime/lmxExtended.h>
#include <lmx/Widgets/lmxEventGuard.h>

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QWindow>

#include <algorithm>
#include <optional>

namespace lmx {

namespace {

constexpr std::int32_t LargestOversize = 4096;

std::optional<TMouseButton> ButtonOf(const QMouseEvent& event) {
    switch (event.button()) {
    case Qt::LeftButton:
        return TMouseButton::mbLeft;
    case Qt::RightButton:
        return TMouseButton::mbRight;
    case Qt::MiddleButton:
        return TMouseButton::mbMiddle;
    default:
        return std::nullopt;
    }
}

} // namespace

TPaintBox32::TPaintBox32(QWidget* parent) : QWidget(parent), FBuffer(1, 1) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAttribute(Qt::WA_NoSystemBackground);
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setContextMenuPolicy(Qt::PreventContextMenu); // it would open with the press; menus here open after the release
}

TPaintBox32::~TPaintBox32() {
    QObject::disconnect(FScreenConnection);
}

void TPaintBox32::Invalidate() {
    FBufferValid = false;
    PaintAhead();
    update();
}

// Inside a paint event of the platform nobody may destroy the widget, and what is painted runs code of layers and
// hosts. So the buffer is painted by an event of its own, just before the platform's, and the paint event copies it.
// That event paints only what is out of date all the same: when somebody grabs the widget, or uncovers it.
void TPaintBox32::PaintAhead() {
    if (FPaintsAhead || !isVisible())
        return;
    FPaintsAhead = true;
    const auto paint = [this] {
        FPaintsAhead = false;
        const QWindow* window = this->window()->windowHandle();
        if (window && window->isExposed() && updatesEnabled() && !visibleRegion().isEmpty())
            PaintBuffer();
    };
    QMetaObject::invokeMethod(this, paint, Qt::QueuedConnection);
}

// What is painted may have the widget painted again, give it another size, and destroy it.
bool TPaintBox32::PaintBuffer() {
    if (FIsPainting)
        return true;
    const QPointer<TPaintBox32> self(this);
    const bool followed = Guard([this] { FollowSize(); });
    if (!self)
        return false;
    if (FBufferValid)
        return true;
    FIsPainting = true;
    FResizedMeanwhile = false;
    const bool painted = followed && Guard([this] { DoPaintBuffer(); });
    if (!self)
        return false;
    FIsPainting = false;
    if (!painted)
        FBufferValid = true; // or the fault would come again with each exposure
    else if (FResizedMeanwhile)
        Invalidate();
    return true;
}

void TPaintBox32::SetBufferOversize(std::int32_t pixels) {
    pixels = std::clamp(pixels, 0, LargestOversize);
    if (pixels == FBufferOversize)
        return;
    FBufferOversize = pixels;
    Resize();
}

TSize TPaintBox32::GetDeviceSize() const {
    const extended ratio = GetDeviceRatio();
    return {SaturateToInt32(Floor(width() * ratio + 0.5L)), SaturateToInt32(Floor(height() * ratio + 0.5L))};
}

TPoint TPaintBox32::ToDevicePoint(QPointF position) const {
    const extended ratio = GetDeviceRatio();
    return {SaturateToInt32(Floor(position.x() * ratio)), SaturateToInt32(Floor(position.y() * ratio))};
}

void TPaintBox32::Resize() {
    FResizedMeanwhile = true;
    const TSize size = GetDeviceSize();
    FBuffer.SetSize(std::max(size.cx, 1) + 2 * FBufferOversize, std::max(size.cy, 1) + 2 * FBufferOversize);
    FBuffer.SetDeviceRatio(GetDeviceRatio());
    Invalidate();
}

void TPaintBox32::FollowSize() {
    const TSize size = GetDeviceSize();
    const double ratio = GetDeviceRatio();
    if (size == FFollowedSize && ratio == FFollowedRatio)
        return;
    FFollowedSize = size;
    FFollowedRatio = ratio;
    Resize();
}

// A window that moves to another screen may get another ratio, and no event of the widget tells.
void TPaintBox32::WatchScreen() {
    QObject::disconnect(FScreenConnection);
    if (const QWindow* handle = window()->windowHandle())
        FScreenConnection = QObject::connect(handle, &QWindow::screenChanged, this, [this] {
            const QPointer<TPaintBox32> self(this); // whoever hears of the size may destroy it
            Guard([this] { FollowSize(); });
            if (self)
                update();
        });
}

bool TPaintBox32::Guard(const std::function<void()>& action) {
    return GuardEvent(this, action);
}

void TPaintBox32::paintEvent(QPaintEvent*) {
    if (!PaintBuffer())
        return;
    const double ratio = GetDeviceRatio();
    QPainter painter(this);
    painter.translate(-FBufferOversize / ratio, -FBufferOversize / ratio);
    FBuffer.PaintTo(painter, ratio);
}

void TPaintBox32::resizeEvent(QResizeEvent*) {
    Guard([this] { FollowSize(); });
}

void TPaintBox32::showEvent(QShowEvent*) {
    WatchScreen();
    Guard([this] { FollowSize(); });
}

void TPaintBox32::mousePressEvent(QMouseEvent* event) {
    if (const auto button = ButtonOf(*event))
        Guard([&] { MouseDown(*button, ToDevicePoint(event->position())); });
}

void TPaintBox32::mouseDoubleClickEvent(QMouseEvent* event) {
    mousePressEvent(event);
}

void TPaintBox32::mouseMoveEvent(QMouseEvent* event) {
    Guard([&] { MouseMove(ToDevicePoint(event->position())); });
}

void TPaintBox32::mouseReleaseEvent(QMouseEvent* event) {
    if (const auto button = ButtonOf(*event))
        Guard([&] { MouseUp(*button, ToDevicePoint(event->position())); });
}

void TPaintBox32::keyPressEvent(QKeyEvent* event) {
    event->ignore(); // what is not ours goes on to the parent
    Guard([&] { KeyDown(event->key()); });
}

void TPaintBox32::keyReleaseEvent(QKeyEvent* event) {
    event->ignore();
    if (!event->isAutoRepeat())
        Guard([&] { KeyUp(event->key()); });
}

void TPaintBox32::focusInEvent(QFocusEvent*) {
    Guard([this] { DoEnter(); });
}

void TPaintBox32::focusOutEvent(QFocusEvent*) {
    Guard([this] { DoExit(); });
}

} // namespace lmx
