#include "Places.h"

#include <lmx/Coordinates/wskWorldSystem.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Graphics/lmxPolygons.h>
#include <lmx/Layers/lmxLayerFactory.h>
#include <lmx/MapDoc/lmxMapDocLayerPersist.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxFormat.h>
#include <lmx/Runtime/lmxNumberText.h>
#include <lmx/Runtime/lmxTextStreams.h>

#include <QFile>

#include <algorithm>
#include <array>

namespace {

const QString ClassName = QStringLiteral("PlacesLayer");
const QString FileNode = QStringLiteral("filename");
constexpr double DotRadius = 3.5;
constexpr double RingWidth = 1.5;
constexpr double LabelGap = 3;
constexpr int Smooth = 1; // level of antialiasing that labels are measured and drawn with
constexpr lmx::TColor32 DotColor = 0xFF1B1F24;
constexpr lmx::TColor32 RingColor = 0xFFFFFFFF;
constexpr lmx::TColor32 TextColor = 0xFF1B1F24;
constexpr lmx::TColor32 HaloColor = 0xB0FFFFFF;

void DrawDot(lmx::TBitmap32& bitmap, const lmx::TMapPoint& at, double ratio) {
    const auto x = static_cast<double>(at.X);
    const auto y = static_cast<double>(at.Y);
    lmx::PolygonFS(bitmap, lmx::CirclePolygon(x, y, (DotRadius + RingWidth) * ratio), RingColor);
    lmx::PolygonFS(bitmap, lmx::CirclePolygon(x, y, DotRadius * ratio), DotColor);
}

/// A line of text with a halo, which reads on dark and light ground alike.
void DrawLabel(lmx::TBitmap32& bitmap, lmx::TPoint at, const QString& text, double ratio) {
    const int halo = std::max(1, static_cast<int>(ratio));
    for (int dy = -halo; dy <= halo; ++dy)
        for (int dx = -halo; dx <= halo; ++dx)
            if (dx != 0 || dy != 0)
                bitmap.RenderText(at.X + dx, at.Y + dy, text, Smooth, HaloColor);
    bitmap.RenderText(at.X, at.Y, text, Smooth, TextColor);
}

/// Where a label of that size may stand: right, left, above and below.
std::array<lmx::TFloatRect, 4> LabelSides(const lmx::TMapPoint& at, lmx::TSize size, double ratio) {
    const auto x = static_cast<double>(at.X);
    const auto y = static_cast<double>(at.Y);
    const double away = (DotRadius + RingWidth + LabelGap) * ratio;
    const auto box = [&](double left, double top) { return lmx::TFloatRect{left, top, left + size.cx, top + size.cy}; };
    return {box(x + away, y - size.cy / 2.0), box(x - away - size.cx, y - size.cy / 2.0),
            box(x - size.cx / 2.0, y - away - size.cy), box(x - size.cx / 2.0, y + away)};
}

bool Overlap(const lmx::TFloatRect& a, const lmx::TFloatRect& b) {
    return a.Left < b.Right && b.Left < a.Right && a.Top < b.Bottom && b.Top < a.Bottom;
}

lmx::TFloatRect United(const lmx::TFloatRect& a, const lmx::TFloatRect& b) {
    return {std::min(a.Left, b.Left), std::min(a.Top, b.Top), std::max(a.Right, b.Right), std::max(a.Bottom, b.Bottom)};
}

std::unique_ptr<lmx::TPin> ReadPlace(const QString& line) {
    const QStringList fields = line.split(',');
    double longitude = 0;
    double latitude = 0;
    const lmx::TFormatSettings point{u'.'};
    if (fields.size() != 4 || !lmx::TryStrToFloat(fields[1], longitude, point) ||
        !lmx::TryStrToFloat(fields[2], latitude, point))
        return nullptr;
    auto pin = std::make_unique<lmx::TPin>(fields[0], longitude, latitude);
    pin->GetAttributes().Add(std::make_unique<lmx::TPinAttribute>("country", fields[3]));
    return pin;
}

class TPlacesLayerPersist : public lmx::IMapDocLayerPersist {
public:
    void ReadLayer(lmx::TMapDocResourcePersist&, lmx::TBaseMapLayer* layer, lmx::TXmlNode data) override {
        dynamic_cast<TPlacesLayer&>(*layer).Load(data.Child(FileNode).GetText());
    }
    void WriteLayer(lmx::TMapDocResourcePersist&, const lmx::TBaseMapLayer* layer, lmx::TXmlNode data,
                    lmx::TMapDocExternalResourcePolicy) override {
        data.AddChild(FileNode).SetText(dynamic_cast<const TPlacesLayer&>(*layer).GetFileName());
    }
    bool IsDecoration() const override { return true; } // lmx-picture does not know the type
};

} // namespace

bool TPlaceRenderer::RenderPin(lmx::TBitmap32& bitmap, lmx::TPinMapLayer* layer, lmx::TPin* pin,
                               const lmx::TMapPoint& viewPoint, lmx::TFloatRect& renderRect) {
    const double ratio = bitmap.GetDeviceRatio();
    const double reach = (DotRadius + RingWidth) * ratio;
    const auto x = static_cast<double>(viewPoint.X);
    const auto y = static_cast<double>(viewPoint.Y);
    renderRect = {x - reach, y - reach, x + reach, y + reach};
    if (!Overlap(renderRect, {0, 0, static_cast<double>(bitmap.GetWidth()), static_cast<double>(bitmap.GetHeight())}))
        return false;
    DrawDot(bitmap, viewPoint, ratio);

    lmx::TFont32 font;
    font.Size = 9;
    font.Ratio = ratio;
    bitmap.SetFont(font);
    for (const lmx::TFloatRect& side : LabelSides(viewPoint, bitmap.TextExtent(pin->GetName(), Smooth), ratio)) {
        if (!HasRoom(bitmap, *layer, side))
            continue;
        DrawLabel(bitmap, lmx::TMapPoint(side.Left, side.Top).ToPoint(), pin->GetName(), ratio);
        renderRect = United(renderRect, side);
        break;
    }
    return true;
}

// The layer knows by now what this paint has drawn before.
bool TPlaceRenderer::HasRoom(const lmx::TBitmap32& bitmap, const lmx::TPinMapLayer& layer,
                             const lmx::TFloatRect& label) const {
    if (label.Left < 0 || label.Top < 0 || label.Right > bitmap.GetWidth() || label.Bottom > bitmap.GetHeight())
        return false;
    return std::ranges::none_of(layer.GetRenderRects(),
                                [&](const auto& drawn) { return Overlap(drawn.second, label); });
}

TPlacesLayer::TPlacesLayer(const std::shared_ptr<lmx::ILayerManager>& manager) : TPinMapLayer(manager) {
    SetLayerName("Places");
    SetPinRenderer(&FRenderer);
}

void TPlacesLayer::Load(const QString& fileName) {
    const auto file = lmx::OpenForReading(fileName);
    lmx::TStreamReader reader(*file);
    reader.ReadLine(); // the headings
    std::vector<std::unique_ptr<lmx::TPin>> places;
    for (int number = 2; reader.BytesLeft() > 0; ++number) {
        const QString line = reader.ReadLine();
        if (line.isEmpty())
            continue;
        places.push_back(ReadPlace(line));
        if (!places.back())
            throw lmx::EFileFormatException(fileName, lmx::Format(u"line %d is no place", {number}));
    }
    for (auto& place : places)
        GetPins().Add(std::move(place));
    FFileName = fileName;
    Invalidate();
}

QString TPlacesLayer::GetLayerClassName() const {
    return ClassName;
}

void TPlacesLayer::FoldInto(const lmx::IWorldSystem& world) {
    for (lmx::TPin* pin : GetPins())
        pin->SetLon(world.ToWorldPoint({pin->GetLon(), pin->GetLat()}).X);
    Invalidate();
}

const lmx::TPin* TPlacesLayer::PlaceAt(const lmx::TMapPoint& pixel) const {
    for (const auto& [pin, rect] : GetRenderRects())
        if (pixel.X >= rect.Left && pixel.X < rect.Right && pixel.Y >= rect.Top && pixel.Y < rect.Bottom)
            return pin;
    return nullptr;
}

void RegisterPlaces(lmx::ILayerFactory& makers) {
    makers.Register(ClassName, [](const auto& manager) { return std::make_unique<TPlacesLayer>(manager); });
}

void RegisterPlaces(lmx::IMapDocLayerPersistFactory& keepers) {
    keepers.Register(ClassName, std::make_shared<TPlacesLayerPersist>());
}
