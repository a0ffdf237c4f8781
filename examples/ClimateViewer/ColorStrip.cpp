#include "ColorStrip.h"

#include <lmx/Colour/lmxBaseColorCalculator.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxNumberText.h>

#include <QFontInfo>
#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

#include <algorithm>
#include <cmath>

namespace {

constexpr int BarHeight = 12;
constexpr int SquareSide = 4; // of the ground that shows through translucent colours

QString NumberText(double value) {
    return std::abs(value) < 1000 ? lmx::FloatToGeneral(value, 4) : lmx::FloatToFixed(value, 0);
}

void DrawGround(QPainter& painter, const QRect& bar) {
    painter.fillRect(bar, Qt::white);
    for (int y = 0; y < bar.height(); y += SquareSide)
        for (int x = y / SquareSide % 2 * SquareSide; x < bar.width(); x += 2 * SquareSide)
            painter.fillRect(QRect(bar.x() + x, bar.y() + y, SquareSide, SquareSide).intersected(bar), Qt::lightGray);
}

} // namespace

TColorStrip::TColorStrip(QWidget* parent) : QWidget(parent) {
    QFont small = font();
    small.setPointSizeF(fontInfo().pointSizeF() * 0.85);
    setFont(small);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void TColorStrip::SetColors(std::shared_ptr<lmx::IBaseColorCalculator> calculator, const lmx::TValueRange& range,
                            const QString& units) {
    const auto spread = std::dynamic_pointer_cast<lmx::IBaseMinMaxColorCalculator>(calculator);
    FRange = spread ? lmx::TValueRange(spread->GetMinVal(), spread->GetMaxVal()) : range;
    FCalculator = std::move(calculator);
    FUnits = units;
    setAccessibleDescription(FCalculator ? tr("%1 to %2 %3").arg(NumberText(FRange.Low), NumberText(FRange.High), units)
                                         : QString());
    update();
}

QSize TColorStrip::sizeHint() const {
    return {120, BarHeight + fontMetrics().height() + 3};
}

QRect TColorStrip::Bar() const {
    return {0, 0, width(), BarHeight};
}

QImage TColorStrip::ColorsOf(int count) const {
    QImage colors(count, 1, QImage::Format_ARGB32);
    colors.fill(Qt::transparent);
    try {
        for (int i = 0; i < count; ++i)
            colors.setPixel(i, 0, FCalculator->GetColor(static_cast<float>(ValueAt((i + 0.5) / count))));
    } catch (const lmx::Exception&) { // an unfinished calculator has no colours, and the map shows none
    }
    return colors;
}

void TColorStrip::paintEvent(QPaintEvent*) {
    if (!FCalculator)
        return;
    QPainter painter(this);
    const QRect bar = Bar();
    DrawGround(painter, bar);
    painter.drawImage(bar, ColorsOf(std::max(1, static_cast<int>(bar.width() * devicePixelRatioF()))));
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRect(bar.adjusted(0, 0, -1, -1));
    painter.setPen(palette().color(QPalette::WindowText));
    const QRect text = rect().adjusted(0, BarHeight + 1, 0, 0);
    painter.drawText(text, Qt::AlignLeft | Qt::AlignTop, NumberText(FRange.Low));
    painter.drawText(text, Qt::AlignHCenter | Qt::AlignTop, FUnits);
    painter.drawText(text, Qt::AlignRight | Qt::AlignTop, NumberText(FRange.High));
}

bool TColorStrip::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip || !FCalculator)
        return QWidget::event(event);
    const auto* help = static_cast<QHelpEvent*>(event);
    QToolTip::showText(help->globalPos(), NumberText(ValueAt((help->pos().x() + 0.5) / width())) + ' ' + FUnits, this);
    return true;
}
