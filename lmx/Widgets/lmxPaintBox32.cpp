#include <lmx/Widgets/lmxPaintBox32.h>

#include <lmx/Runtime/lmxExtended.h>
#include <lmx/Widgets/lmxEventGuard.h>

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
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
    update();
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
            update();
            Guard([this] { FollowSize(); }); // at last: who is told may destroy the control
        });
}

bool TPaintBox32::Guard(const std::function<void()>& action) {
    return GuardEvent(this, action);
}

void TPaintBox32::paintEvent(QPaintEvent*) {
    const bool painted = Guard([this] {
        FollowSize();
        if (!FBufferValid)
            DoPaintBuffer();
    });
    if (!painted)
        FBufferValid = true; // or the fault would come again with each exposure
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
