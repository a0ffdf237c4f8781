
#include <lmx/Widgets/Private/lmxFormHeading.h>

#include <QFontInfo>
#include <QPainter>

namespace lmx {

TFormHeading::TFormHeading(const QString& text, QWidget* parent) : QLabel(parent) {
    setTextFormat(Qt::PlainText);
    setText(text);
    QFont large = font();
    large.setPixelSize(QFontInfo(large).pixelSize() * 5 / 4);
    large.setBold(true);
    setFont(large);
    setContentsMargins(12, 8, 12, 8);
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::Base);
    setForegroundRole(QPalette::Text);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void TFormHeading::paintEvent(QPaintEvent* event) {
    QLabel::paintEvent(event);
    QPainter(this).fillRect(0, height() - 1, width(), 1, palette().color(QPalette::Mid));
}

} // namespace lmx
