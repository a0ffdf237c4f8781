#include <lmx/Widgets/Private/lmxFormHeading.h>

#include <QFontInfo>
#include <QPainter>

namespace lmx {

namespace {

constexpr int SideRoom = 12;
constexpr int EdgeRoom = 8;

} // namespace

TFormHeading::TFormHeading(const QString& text, QWidget* parent) : QLabel(parent) {
    setTextFormat(Qt::PlainText);
    setText(text);
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::Base);
    setForegroundRole(QPalette::Text);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

// Made from the present font, so the heading follows the dialog's.
QFont TFormHeading::HeadingFont() const {
    QFont large = font();
    large.setPixelSize(QFontInfo(large).pixelSize() * 5 / 4);
    large.setBold(true);
    return large;
}

QSize TFormHeading::sizeHint() const {
    return QFontMetrics(HeadingFont()).size(0, text()) + QSize(2 * SideRoom, 2 * EdgeRoom);
}

void TFormHeading::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setFont(HeadingFont());
    painter.setPen(palette().color(QPalette::Text));
    painter.drawText(rect().adjusted(SideRoom, 0, -SideRoom, 0), Qt::AlignVCenter, text());
    painter.fillRect(0, height() - 1, width(), 1, palette().color(QPalette::Mid));
}

} // namespace lmx
