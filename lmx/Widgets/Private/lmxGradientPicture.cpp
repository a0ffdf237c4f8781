#include <lmx/Widgets/Private/lmxGradientPicture.h>

#include <lmx/Runtime/lmxExtended.h>
#include <lmx/Runtime/lmxNumberText.h>
#include <lmx/Widgets/Private/lmxSquaredGround.h>

#include <QPolygonF>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

namespace lmx {

namespace {

constexpr int SquareSize = 6;

// A row of the bar where its first square is light, and one where it is dark.
void RenderRows(const IGradient& gradient, int square, std::vector<QRgb>& light, std::vector<QRgb>& dark) {
    const auto width = static_cast<int>(light.size());
    for (int x = 0; x < width; ++x) {
        const TColor32 color = gradient.GetColor(width > 1 ? static_cast<double>(x) / (width - 1) : 0);
        const bool isLight = x / square % 2 == 0;
        light[static_cast<std::size_t>(x)] = Over(color, isLight ? LightGround : DarkGround);
        dark[static_cast<std::size_t>(x)] = Over(color, isLight ? DarkGround : LightGround);
    }
}

double RoundStep(double least) {
    const double power = std::pow(10.0, std::floor(std::log10(least)));
    for (const double factor : {1.0, 2.0, 5.0})
        if (power * factor >= least * (1 - 1e-9))
            return power * factor;
    return power * 10;
}

} // namespace

QImage RenderGradientBar(QSize size, double ratio, const IGradient& gradient, const QColor& frame) {
    if (size.isEmpty())
        return {};
    const auto pixels = [ratio](int logical) { return std::max(RoundToPixel(logical * ratio), 1); };
    QImage image(pixels(size.width()), pixels(size.height()), QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    image.fill(frame);
    const int line = pixels(1);
    const int width = image.width() - 2 * line;
    if (width <= 0)
        return image;
    std::vector<QRgb> light(static_cast<std::size_t>(width));
    std::vector<QRgb> dark = light;
    RenderRows(gradient, pixels(SquareSize), light, dark);
    for (int y = line; y < image.height() - line; ++y) {
        const auto& row = (y - line) / pixels(SquareSize) % 2 == 0 ? light : dark;
        std::memcpy(reinterpret_cast<QRgb*>(image.scanLine(y)) + line, row.data(), row.size() * sizeof(QRgb));
    }
    return image;
}

std::vector<double> RoundTicks(double from, double to, int most) {
    if (!std::isfinite(from) || !std::isfinite(to) || most < 1)
        return {};
    const double range = std::abs(to - from);
    const double step = range > 0 && std::isfinite(range) ? RoundStep(range / most) : 0;
    const double low = std::min(from, to);
    const double first = step > 0 ? std::ceil(low / step - 1e-9) : 0;
    std::vector<double> ticks;
    for (int i = 0; step > 0 && i <= most; ++i) {
        const double tick = (first + i) * step;
        if (tick > std::max(from, to) + step * 1e-9)
            break;
        ticks.push_back(tick + 0.0);
    }
    if (ticks.empty())
        ticks = range > 0 ? std::vector<double>{low, std::max(from, to)} : std::vector<double>{low};
    if (from > to)
        std::reverse(ticks.begin(), ticks.end());
    return ticks;
}

// Whole numbers are written out up to a thousand million.
QString AxisText(double value, double low, double high) {
    constexpr double wholeDigits = 10;
    constexpr double mostDigits = 15;
    const double range = std::abs(high - low);
    if (std::abs(value) < range * 1e-9) // what is left of a sum that should be 0
        value = 0;
    const double largest = std::max(std::abs(low), std::abs(high));
    const double told = range > 0 ? std::ceil(std::log10(largest / range * 1000)) : mostDigits;
    const double whole = largest >= 1 ? std::floor(std::log10(largest)) + 1 : 1;
    return FloatToGeneral(value,
                          static_cast<int>(std::clamp(std::max(told, std::min(whole, wholeDigits)), 1.0, mostDigits)));
}

std::vector<TPlacedLabel> PlaceLabels(const std::vector<double>& middles, int first, int left, int right, int gap,
                                      const std::function<QString(int index)>& text,
                                      const std::function<int(const QString& text)>& width) {
    const auto place = [&](int index) {
        TPlacedLabel label{0, 0, text(index)};
        label.Width = width(label.Text);
        const int wished = RoundToPixel(middles[static_cast<std::size_t>(index)] - label.Width / 2.0);
        label.Left = std::max(std::min(wished, right - label.Width), left);
        return label;
    };
    std::vector<TPlacedLabel> placed;
    const bool hasFirst = first >= 0 && first < static_cast<int>(middles.size());
    const TPlacedLabel preferred = hasFirst ? place(first) : TPlacedLabel{};
    int end = left - gap; // of what stands already
    int narrowest = right - left;
    for (int i = 0; i < static_cast<int>(middles.size()); ++i) {
        if (i == first)
            continue;
        if (!placed.empty() && middles[static_cast<std::size_t>(i)] - narrowest / 2.0 < end + gap)
            continue;
        const TPlacedLabel label = place(i);
        narrowest = std::min(narrowest, label.Width);
        const bool isFree = label.Left >= end + gap && label.Left + label.Width <= right;
        const bool isBeside = !hasFirst || label.Left >= preferred.Left + preferred.Width + gap ||
                              label.Left + label.Width + gap <= preferred.Left;
        if (!isFree || !isBeside)
            continue;
        placed.push_back(label);
        end = label.Left + label.Width;
    }
    if (hasFirst)
        placed.push_back(preferred);
    return placed;
}

void DrawGrabber(QPainter& painter, QPointF tip, double width, double height, TColor32 color, const QColor& outline,
                 double lineWidth) {
    const double half = width / 2;
    const double roof = half;
    const QPolygonF house({tip,
                           {tip.x() + half, tip.y() + roof},
                           {tip.x() + half, tip.y() + height},
                           {tip.x() - half, tip.y() + height},
                           {tip.x() - half, tip.y() + roof}});
    painter.setPen(QPen(outline, lineWidth, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    painter.setBrush(QColor::fromRgb(Over(color, LightGround)));
    painter.drawPolygon(house);
}

} // namespace lmx
