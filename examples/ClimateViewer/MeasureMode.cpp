#include "MeasureMode.h"

#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Graphics/lmxPolygons.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Runtime/lmxNumberText.h>

#include <array>
#include <cmath>
#include <numbers>
#include <vector>

namespace {

constexpr double EarthRadius = 6371.0088; // mean radius of the earth, km
constexpr int Steps = 128;                // pieces of a way

using Vector = std::array<double, 3>;

Vector Direction(const lmx::TMapPoint& place) {
    const double longitude = static_cast<double>(place.X) * std::numbers::pi / 180;
    const double latitude = static_cast<double>(place.Y) * std::numbers::pi / 180;
    return {std::cos(latitude) * std::cos(longitude), std::cos(latitude) * std::sin(longitude), std::sin(latitude)};
}

/// The angle between two directions; exact for small ones and for opposite ones.
double AngleBetween(const Vector& a, const Vector& b) {
    const double sine = std::hypot(a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]);
    return std::atan2(sine, a[0] * b[0] + a[1] * b[1] + a[2] * b[2]);
}

} // namespace

double DistanceOnEarth(const lmx::TMapPoint& from, const lmx::TMapPoint& to) {
    return EarthRadius * AngleBetween(Direction(from), Direction(to));
}

lmx::TMapPoint PlaceOnWay(const lmx::TMapPoint& from, const lmx::TMapPoint& to, double share) {
    const Vector a = Direction(from);
    const Vector b = Direction(to);
    const double angle = AngleBetween(a, b);
    const double sine = std::sin(angle);
    if (sine < 1e-9)
        return share < 1 ? from : to;
    const double weightA = std::sin((1 - share) * angle) / sine;
    const double weightB = std::sin(share * angle) / sine;
    const double x = weightA * a[0] + weightB * b[0];
    const double y = weightA * a[1] + weightB * b[1];
    const double z = weightA * a[2] + weightB * b[2];
    return {std::atan2(y, x) * 180 / std::numbers::pi, std::atan2(z, std::hypot(x, y)) * 180 / std::numbers::pi};
}

TWayLayer::TWayLayer(const std::shared_ptr<lmx::ILayerManager>& manager) : TBaseLayerManagerLayer(manager) {
    SetLayerName("Way");
    SetIsReadyToDraw(true);
}

void TWayLayer::SetWay(const lmx::TMapPoint& from, const lmx::TMapPoint& to) {
    FFrom = from;
    FTo = to;
    Invalidate();
}

// A step of more than half the world has gone over the seam.
void TWayLayer::Paint(lmx::TWorld* world, lmx::TWorldViewport* viewport, lmx::TBitmap32& bitmap) {
    const auto system = world->GetWorldSystem();
    std::vector<lmx::TFloatPoints> pieces(1);
    lmx::TMapPoint before;
    for (int i = 0; i <= Steps; ++i) {
        const lmx::TMapPoint place = system->ToWorldPoint(PlaceOnWay(FFrom, FTo, static_cast<double>(i) / Steps));
        if (i > 0 && std::abs(place.X - before.X) > system->Area().GetWidth() / 2)
            pieces.emplace_back();
        before = place;
        const lmx::TMapPoint pixel = viewport->MapPointToPoint(place);
        pieces.back().push_back({static_cast<double>(pixel.X), static_cast<double>(pixel.Y)});
    }
    const double ratio = bitmap.GetDeviceRatio();
    const auto stroke = [ratio](double width) {
        return lmx::TStroke{width * ratio, lmx::TJoinStyle::jsRound, lmx::TEndStyle::esRound};
    };
    lmx::PolyPolylineFS(bitmap, pieces, 0xC0FFFFFF, false, stroke(5));
    lmx::PolyPolylineFS(bitmap, pieces, 0xFFB01E5A, false, stroke(2));
    for (const lmx::TFloatPoint& end : {pieces.front().front(), pieces.back().back()})
        lmx::PolygonFS(bitmap, lmx::CirclePolygon(end.X, end.Y, 4 * ratio), 0xFFB01E5A);
}

void TMeasureMode::MouseDown(lmx::TMapViewControl* sender, const lmx::TPoint& point, const lmx::TMapPoint& mapPoint) {
    const auto& manager = sender->GetLayerManager();
    if (!manager)
        return;
    auto& layers = manager->GetLayers();
    if (!layers.Contains(FWay.Get())) { // or it is on the map that the view showed before
        Clear();
        FWay = layers.Add(std::make_unique<TWayLayer>(manager));
    }
    manager->MoveLayer(layers.IndexOf(FWay.Get()), layers.Count() - 1);
    FFrom = mapPoint;
    FIsMeasuring = true;
    MouseMove(sender, point, mapPoint);
}

void TMeasureMode::MouseMove(lmx::TMapViewControl*, const lmx::TPoint&, const lmx::TMapPoint& mapPoint) {
    TWayLayer* way = FWay.Get();
    if (!FIsMeasuring || !way)
        return;
    way->SetWay(FFrom, mapPoint);
    FTell(lmx::FloatToFixed(DistanceOnEarth(FFrom, mapPoint), 0) + " km");
}

void TMeasureMode::MouseUp(lmx::TMapViewControl*, const lmx::TPoint&, const lmx::TMapPoint&) {
    FIsMeasuring = false;
}

void TMeasureMode::Clear() {
    FIsMeasuring = false;
    if (const auto manager = FWay ? FWay->GetLayerManager() : nullptr)
        manager->GetLayers().Remove(FWay.Get());
}
