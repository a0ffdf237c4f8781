#include <lmx/Widgets/Private/lmxGradientEditorPicture.h>

#include <lmx/Runtime/lmxExtended.h>
#include <lmx/Runtime/lmxNumberText.h>
#include <lmx/Widgets/Private/lmxDeviceGrid.h>
#include <lmx/Widgets/Private/lmxGradientPicture.h>

#include <QFontMetrics>

#include <algorithm>
#include <utility>
#include <vector>

namespace lmx {

namespace {

constexpr int Margin = 8; ///< left and right of the bar: half a handle and its line
constexpr int GrabberWidth = 13;
constexpr int GrabberHeight = 18;
constexpr int LeastBarHeight = 16;
constexpr int TickLength = 4;
constexpr int TickGap = 2; ///< between a tick and its text
constexpr int LabelGap = 6;
constexpr int EdgeGap = 2;   ///< between a text and the edge of the editor
constexpr int TickRoom = 70; ///< for a tick of an axis, about

double XOn(const QRect& bar, double location) {
    return bar.left() + std::clamp(location, 0.0, 1.0) * (bar.width() - 1) + 0.5;
}

} // namespace

int TGradientEditorPicture::LineHeight() const {
    return FEditor.fontMetrics().height();
}

int TGradientEditorPicture::AxisHeight() const {
    return LineHeight() + TickGap + TickLength;
}

int TGradientEditorPicture::LeastHeight() const {
    int height = AxisHeight() + LeastBarHeight;
    if (Shows(TGradientEditorOption::geoShowGrabbers))
        height += GrabberHeight;
    if (Shows(TGradientEditorOption::geoShowLabels))
        height += LineHeight();
    if (Shows(TGradientEditorOption::geoValueRange))
        height += AxisHeight();
    return height;
}

QRect TGradientEditorPicture::BarRect() const {
    const int below = LeastHeight() - AxisHeight() - LeastBarHeight;
    const int top = AxisHeight();
    return {Margin, top, std::max(FEditor.width() - 2 * Margin, 1),
            std::max(FEditor.height() - top - below, LeastBarHeight)};
}

double TGradientEditorPicture::XAt(double location) const {
    return XOn(BarRect(), location);
}

double TGradientEditorPicture::LocationAt(double x) const {
    const QRect bar = BarRect();
    return bar.width() > 1 ? (x - 0.5 - bar.left()) / (bar.width() - 1) : 0;
}

QRectF TGradientEditorPicture::GrabberRect(double location) const {
    return {XAt(location) - GrabberWidth / 2.0, BarRect().bottom() + 1.0, GrabberWidth, GrabberHeight};
}

QImage TGradientEditorPicture::NewLayer() const {
    QImage layer(FKey.Size * FKey.Ratio, QImage::Format_ARGB32_Premultiplied);
    layer.setDevicePixelRatio(FKey.Ratio);
    layer.fill(Qt::transparent);
    return layer;
}

void TGradientEditorPicture::UpdateKey() {
    const TKey key{FEditor.size(),      FEditor.devicePixelRatioF(), FEditor.font(),        FEditor.palette(),
                   FEditor.isEnabled(), FEditor.GetOptions(),        FEditor.GetLowValue(), FEditor.GetHighValue()};
    if (key == FKey)
        return;
    FKey = key;
    FAxes = FBar = FOthers = {};
}

void TGradientEditorPicture::UpdateAxes() {
    if (!FAxes.isNull())
        return;
    FAxes = NewLayer();
    QPainter painter(&FAxes);
    painter.setFont(FEditor.font());
    DrawAxis(painter, false);
    if (Shows(TGradientEditorOption::geoValueRange))
        DrawAxis(painter, true);
}

void TGradientEditorPicture::UpdateBar() {
    if (!FBar.isNull() && FBarChange == FEditor.GetStops().GetChangeCount())
        return;
    FBarChange = FEditor.GetStops().GetChangeCount();
    FBar = RenderGradientBar(BarRect().size(), FKey.Ratio, *FEditor.GetGradient(),
                             FEditor.palette().color(QPalette::WindowText));
}

// Of handles that cover each other to the pixel only the last one is seen.
void TGradientEditorPicture::UpdateOthers() {
    const TGradientStops& stops = FEditor.GetStops();
    if (!FOthers.isNull() && FOthersChange == stops.GetOthersChangeCount() && FOthersSelected == stops.GetSelected())
        return;
    FOthersChange = stops.GetOthersChangeCount();
    FOthersSelected = stops.GetSelected();
    FOthers = NewLayer();
    QPainter painter(&FOthers);
    painter.setRenderHint(QPainter::Antialiasing);
    std::vector<TGradientStops::TId> seen;
    std::int32_t covered = -1;
    const auto& order = stops.GetOrder();
    const QRect bar = BarRect();
    for (auto id = order.rbegin(); id != order.rend(); ++id) {
        const std::int32_t pixel = RoundToPixel(XOn(bar, stops.Get(*id).Location) * FKey.Ratio);
        if (*id != FOthersSelected && pixel != std::exchange(covered, pixel))
            seen.push_back(*id);
    }
    for (auto id = seen.rbegin(); id != seen.rend(); ++id)
        DrawStop(painter, *id, false);
}

void TGradientEditorPicture::DrawAxis(QPainter& painter, bool isValues) const {
    const QRect bar = BarRect();
    const double low = isValues ? FEditor.GetLowValue() : 0;
    const double high = isValues ? FEditor.GetHighValue() : 100;
    const std::vector<double> ticks = RoundTicks(low, high, std::clamp(bar.width() / TickRoom, 2, 50));
    std::vector<double> middles;
    const QColor ink = FEditor.palette().color(QPalette::WindowText);
    const int textTop = isValues ? FEditor.height() - LineHeight() : 0;
    const int tickTop = isValues ? textTop - TickGap - TickLength : bar.top() - TickLength;
    for (const double tick : ticks) {
        middles.push_back(XAt(high == low ? 0 : (tick - low) / (high - low)));
        FillRectOnGrid(painter, QRectF(middles.back() - 0.5, tickTop, 1, TickLength), ink);
    }
    if (isValues) // the bar is far
        FillRectOnGrid(painter, QRectF(bar.left(), tickTop, bar.width(), 1), ink);
    painter.setPen(ink);
    const QFontMetrics metrics = FEditor.fontMetrics();
    const auto text = [&](int index) {
        const QString number = AxisText(ticks[static_cast<std::size_t>(index)], low, high);
        return isValues ? number : number + QStringLiteral(" %");
    };
    for (const TPlacedLabel& label :
         PlaceLabels(middles, -1, EdgeGap, FEditor.width() - EdgeGap, LabelGap, text,
                     [&](const QString& shown) { return metrics.horizontalAdvance(shown) + 1; }))
        painter.drawText(label.Left, textTop + metrics.ascent(), label.Text);
}

void TGradientEditorPicture::DrawStop(QPainter& painter, TGradientStops::TId id, bool isSelected) const {
    const TColorStop stop = FEditor.GetStops().Get(id);
    const QPalette& palette = FEditor.palette();
    const QRectF room = GrabberRect(stop.Location).adjusted(1, 1, -1, -1);
    const QPointF tip(room.center().x(), room.top());
    const QColor ring = palette.color(FEditor.hasFocus() ? QPalette::Highlight : QPalette::WindowText);
    if (isSelected) // a ring around the handle that stands off any colour
        DrawGrabber(painter, tip - QPointF(0, 1), room.width() + 2, room.height() + 2, ring.rgb(), ring, 3);
    DrawGrabber(painter, tip, room.width(), room.height(), stop.Color,
                palette.color(isSelected ? QPalette::Window : QPalette::WindowText), 1);
}

QString TGradientEditorPicture::LabelOf(TGradientStops::TId id) const {
    const double location = FEditor.GetStops().Get(id).Location;
    const double low = FEditor.GetLowValue();
    const double high = FEditor.GetHighValue();
    return Shows(TGradientEditorOption::geoValueRange) ? AxisText(low + location * (high - low), low, high)
                                                       : AxisText(location * 100, 0, 100) + QStringLiteral(" %");
}

void TGradientEditorPicture::DrawLabels(QPainter& painter) const {
    const TGradientStops& stops = FEditor.GetStops();
    const auto& order = stops.GetOrder();
    const QRect bar = BarRect();
    std::vector<double> middles;
    middles.reserve(order.size());
    int selected = -1;
    for (const TGradientStops::TId id : order) {
        if (id == stops.GetSelected())
            selected = static_cast<int>(middles.size());
        middles.push_back(XOn(bar, stops.Get(id).Location));
    }
    const QFontMetrics metrics = FEditor.fontMetrics();
    const bool hasGrabbers = Shows(TGradientEditorOption::geoShowGrabbers);
    const int top = bar.bottom() + 1 + (hasGrabbers ? GrabberHeight : 0);
    painter.setPen(FEditor.palette().color(QPalette::WindowText));
    for (const TPlacedLabel& label : PlaceLabels(
             middles, selected, EdgeGap, FEditor.width() - EdgeGap, LabelGap,
             [&](int index) { return LabelOf(order[static_cast<std::size_t>(index)]); },
             [&](const QString& shown) { return metrics.horizontalAdvance(shown) + 1; }))
        painter.drawText(label.Left, top + metrics.ascent(), label.Text);
}

// Around the bar, where no stop shows that the keyboard is here.
void TGradientEditorPicture::DrawFocusMark(QPainter& painter) const {
    const QRect bar = BarRect();
    const QColor color = FEditor.palette().color(QPalette::Highlight);
    for (const QRect& side :
         {QRect(bar.left() - 2, bar.top() - 2, bar.width() + 4, 2),
          QRect(bar.left() - 2, bar.bottom() + 1, bar.width() + 4, 2),
          QRect(bar.left() - 2, bar.top(), 2, bar.height()), QRect(bar.right() + 1, bar.top(), 2, bar.height())})
        FillRectOnGrid(painter, side, color);
}

void TGradientEditorPicture::Paint(QPainter& painter) {
    UpdateKey();
    UpdateAxes();
    UpdateBar();
    painter.drawImage(0, 0, FAxes);
    DrawImageOnGrid(painter, BarRect().topLeft(), FBar);
    if (FEditor.hasFocus() && !FEditor.GetStops().Has(FEditor.GetStops().GetSelected()))
        DrawFocusMark(painter);
    if (Shows(TGradientEditorOption::geoShowGrabbers)) {
        UpdateOthers();
        painter.drawImage(0, 0, FOthers);
        painter.setRenderHint(QPainter::Antialiasing);
        if (FEditor.GetStops().Has(FEditor.GetStops().GetSelected()))
            DrawStop(painter, FEditor.GetStops().GetSelected(), true);
        painter.setRenderHint(QPainter::Antialiasing, false);
    }
    if (Shows(TGradientEditorOption::geoShowLabels))
        DrawLabels(painter);
}

} // namespace lmx
