#include <lmx/Pictures/Private/lmxScaleBarItem.h>

#include <lmx/Coordinates/wskWorld.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Runtime/lmxExtended.h>
#include <lmx/Runtime/lmxNumberText.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace lmx {

namespace {

constexpr double EarthRadius = 6371008.8; // metres: mean radius of the reference ellipsoid GRS 80, (2 a + b) / 3
constexpr double SmallestCosine = 1e-6;
constexpr int BarHeight = 6;
constexpr int FontSize = 8;
constexpr int Segments = 4;
constexpr TColor32 Ink = 0xFF202020;

bool IsGeographic(const IWorldSystem& system) {
    return system.GetGroup() == QStringLiteral("latlon");
}

QString LatitudeText(double latitude) {
    const QString degrees = FloatToGeneral(RoundToPixel(std::abs(latitude)), 3) + QChar(0xB0);
    if (degrees == QStringLiteral("0") + QChar(0xB0))
        return QStringLiteral("the equator");
    return degrees + (latitude < 0 ? QStringLiteral(" S") : QStringLiteral(" N"));
}

} // namespace

double TScaleBarItem::MetresPerUnit(const IWorldSystem& system, double y) {
    if (!IsGeographic(system))
        return 1;
    const double cosine = std::cos(y * std::numbers::pi / 180);
    return cosine > SmallestCosine && std::abs(y) < 90 ? EarthRadius * cosine * std::numbers::pi / 180 : 0;
}

double TScaleBarItem::RoundLength(double length) {
    if (!(length > 0) || !std::isfinite(length))
        return 0;
    const double power = std::pow(10, std::floor(std::log10(length)));
    for (const double factor : {5.0, 2.0, 1.0})
        if (factor * power <= length * (1 + 1e-12)) // a length of 0.5 is the round one
            return factor * power;
    return power / 2; // the logarithm was rounded up
}

QString TScaleBarItem::LengthText(double metres) {
    return metres >= 1000 ? FloatToGeneral(metres / 1000, 6) + QStringLiteral(" km")
                          : FloatToGeneral(metres, 6) + QStringLiteral(" m");
}

QString TScaleBarItem::GetObjectType() const {
    return QStringLiteral("Scale bar");
}

QString TScaleBarItem::GetObjectClassType() const {
    return {};
}

void TScaleBarItem::Paint(TWorld* world, TWorldViewport* viewport, TBitmap32& bitmap) {
    TBaseObjectLayerItem::Paint(world, viewport, bitmap);
    const IWorldSystem& system = *viewport->GetWorld()->GetWorldSystem();
    const auto middle = static_cast<double>(viewport->GetCenter().Y);
    const double metresPerPixel = MetresPerUnit(system, middle) / static_cast<double>(viewport->GetScale());
    const TRect& place = GetRect();
    const double metres = RoundLength(place.GetWidth() * metresPerPixel);
    if (!(metres > 0))
        return;
    const std::int32_t length = RoundToPixel(metres / metresPerPixel);
    const std::int32_t height = ToDevicePixels(BarHeight);
    const std::int32_t line = std::max(1, ToDevicePixels(1));
    bitmap.FillRectS(place.Left, place.Top, place.Left + length, place.Top + height, Ink);
    for (int segment = 1; segment < Segments; segment += 2)
        bitmap.FillRectS(place.Left + length * segment / Segments, place.Top + line,
                         place.Left + length * (segment + 1) / Segments - (segment + 1 == Segments ? line : 0),
                         place.Top + height - line, clWhite32);
    TFont32 font;
    font.Size = FontSize;
    font.Ratio = GetDeviceRatio();
    bitmap.SetFont(font);
    QString text = LengthText(metres);
    if (IsGeographic(system))
        text += QStringLiteral(" at ") + LatitudeText(middle);
    bitmap.RenderText(place.Left, place.Top + height + ToDevicePixels(2), text, 1, Ink);
}

} // namespace lmx
