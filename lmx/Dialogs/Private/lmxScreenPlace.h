#pragma once

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

namespace lmx {

/// The part of the screen that a window may cover.
inline QRect RoomOnScreen(const QWidget& window) {
    const QScreen* screen = window.screen() ? window.screen() : QGuiApplication::primaryScreen();
    return screen ? screen->availableGeometry() : QRect(QPoint(0, 0), window.size());
}

/// Puts a window that is about to come up into the middle of its screen.
inline void CentreOnScreen(QWidget& window) {
    const QRect room = RoomOnScreen(window);
    const QSize size = window.frameGeometry().size();
    window.move(qMax(room.left(), room.left() + (room.width() - size.width()) / 2),
                qMax(room.top(), room.top() + (room.height() - size.height()) / 2));
}

/// Moves a window that has grown beyond an edge of its screen back, its top left corner first.
inline void KeepOnScreen(QWidget& window) {
    const QRect room = RoomOnScreen(window);
    const QRect frame = window.frameGeometry();
    const QPoint place(qMax(room.left(), qMin(frame.left(), room.right() + 1 - frame.width())),
                       qMax(room.top(), qMin(frame.top(), room.bottom() + 1 - frame.height())));
    if (place != frame.topLeft())
        window.move(place);
}

} // namespace lmx
