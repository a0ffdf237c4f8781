#pragma once

#include <QImage>
#include <QTest>
#include <QWidget>

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

// Widgets as their users meet them: shown with the keyboard on them, and as pictures in device pixels.

namespace lmx::tests {

/// Shows a window and gives it the keyboard.
inline void ShowActive(QWidget& window) {
    window.show();
    window.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
}

/// What the widget paints, in device pixels.
inline QImage PictureOf(QWidget& widget) {
    return widget.grab().toImage().convertToFormat(QImage::Format_ARGB32);
}

/// The pixel of a widget's picture that covers the middle of a logical one.
inline QPoint DevicePixel(const QWidget& widget, QPoint logical) {
    const QPointF middle = (QPointF(logical) + QPointF(0.5, 0.5)) * widget.devicePixelRatioF();
    return {static_cast<int>(middle.x()), static_cast<int>(middle.y())};
}

/// A row or a column of an image as the letters of its colours; `?` for a colour without one.
inline std::string Letters(const QImage& image, QPoint from, QPoint step, const std::map<QRgb, char>& letters) {
    std::string text;
    for (QPoint at = from; image.rect().contains(at); at += step) {
        const auto found = letters.find(image.pixel(at));
        text += found == letters.end() ? '?' : found->second;
    }
    return text;
}

/// The cover of each pixel: `.` none, `#` whole, `+` in between.
inline std::vector<std::string> Cover(const QImage& image) {
    std::vector<std::string> rows;
    for (int y = 0; y < image.height(); ++y) {
        std::string& row = rows.emplace_back();
        for (int x = 0; x < image.width(); ++x) {
            const int alpha = qAlpha(image.pixel(x, y));
            row += alpha == 0 ? '.' : alpha == 255 ? '#' : '+';
        }
    }
    return rows;
}

} // namespace lmx::tests
