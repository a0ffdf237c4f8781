#include <lmx/Pictures/Private/lmxPicturePainting.h>

#include <lmx/Coordinates/wskWorld.h>
#include <lmx/Layers/Private/lmxPaintedLayer.h>
#include <lmx/Layers/lmxBufferedMapLayer.h>
#include <lmx/Layers/lmxInfoQueryPointLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Layers/lmxLayerStackPainter.h>
#include <lmx/Layers/lmxRulerMapLayer.h>
#include <lmx/Pictures/Private/lmxAnnotationCopies.h>
#include <lmx/Pictures/Private/lmxPictureSheet.h>
#include <lmx/Runtime/lmxNumberText.h>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QTimer>

#include <cmath>
#include <optional>
#include <vector>

namespace lmx {

namespace {

constexpr std::int32_t MostPixels = 65535; // a side
constexpr double LeastDensity = 0.01;
constexpr double MostDensity = 100;
constexpr int WakeInterval = 20; // milliseconds: ends of renders that tell nobody are noticed

[[noreturn]] void Refuse(const char* problem) {
    throw EArgumentException(QString::fromLatin1(problem));
}

std::int32_t PixelsOf(std::int32_t units, double density) {
    const std::int32_t pixels = RoundToPixel(units * density);
    if (pixels < 1 || pixels > MostPixels)
        Refuse("The size of the picture is out of range");
    return pixels;
}

TSize PixelsOf(const TMapPictureOptions& options) {
    if (!(options.Density >= LeastDensity && options.Density <= MostDensity))
        Refuse("The density of the picture is out of range");
    return {PixelsOf(options.Size.cx, options.Density), PixelsOf(options.Size.cy, options.Density)};
}

bool IsEmpty(const TMapArea& area) {
    return !(std::isfinite(area.Left) && std::isfinite(area.Top) && std::isfinite(area.Right) &&
             std::isfinite(area.Bottom) && area.GetWidth() > 0 && area.GetHeight() > 0);
}

/// The area that is shown as large as it fits, or none if a place is shown.
std::optional<TMapArea> AreaOf(const TPictureOrder& order) {
    if (const auto& place = order.Options.Place) {
        if (!(place->Scale > 0) || !std::isfinite(place->Scale) || !std::isfinite(place->Center.X) ||
            !std::isfinite(place->Center.Y))
            Refuse("The scale of the picture is out of range");
        return std::nullopt;
    }
    const TMapArea area = order.Options.Area.value_or(order.WorldSystem->Area());
    if (IsEmpty(area))
        Refuse("The area of the picture is empty");
    return area;
}

double AspectOf(const std::optional<TMapArea>& area) {
    return area ? static_cast<double>(area->GetWidth() / area->GetHeight()) : 0;
}

/// The sheet, and a world of its own that shows the map on it.
struct TStage {
    explicit TStage(const TPictureOrder& order)
        : Pixels(PixelsOf(order.Options)),
          Area(AreaOf(order)),
          Sheet(order.Manager, order.Options, Pixels, AspectOf(Area)),
          World(order.WorldSystem),
          Viewport(&World) {
        Viewport.SetViewSize({Sheet.GetMapRect().GetWidth(), Sheet.GetMapRect().GetHeight()});
        if (Area) {
            Viewport.ZoomTo(*Area);
            return;
        }
        Viewport.SetScale(order.Options.Place->Scale * order.Options.Density);
        Viewport.SetCenter(order.Options.Place->Center);
    }

    TSize Pixels;
    std::optional<TMapArea> Area;
    TPictureSheet Sheet;
    TWorld World;
    TWorldViewport Viewport;
};

TMapPictureDescription DescriptionOf(const TPictureOrder& order, const TStage& stage) {
    TMapPictureDescription description;
    description.Title = order.Options.Title.isEmpty() ? order.Manager->GetTitle() : order.Options.Title.simplified();
    description.Time = order.Options.Time.simplified();
    description.World = order.WorldSystem->Name();
    description.IsGeographic = order.WorldSystem->GetGroup() == QStringLiteral("latlon");
    const TSize size = stage.Viewport.GetViewSize();
    const TMapArea seen(stage.Viewport.PointToMapPoint(TMapPoint(0, 0)),
                        stage.Viewport.PointToMapPoint(TMapPoint(size.cx, size.cy))); // edge to edge
    description.Extent = order.WorldSystem->ConstrainRect(seen);
    description.Pixels = stage.Pixels;
    description.Density = order.Options.Density;
    description.Layers = TMapPictureDescription::LayersOf(*order.Manager);
    return description;
}

std::vector<TBorrowed<TBaseMapLayer>> MarksOf(const TPictureOrder& order) {
    std::vector<TBorrowed<TBaseMapLayer>> marks;
    if (order.Options.ShowsMarks)
        for (TBaseMapLayer* layer : order.Manager->GetSpecialLayers())
            if (dynamic_cast<TRulerMapLayer*>(layer) || dynamic_cast<TInfoQueryPointLayer*>(layer))
                marks.emplace_back(layer);
    return marks;
}

/// The first layer that is painted and is still being drawn, or nil.
const TBufferedMapLayer* BusyLayer(const ILayerManager& manager) {
    const TBufferedMapLayer* busy = nullptr;
    manager.GetLayers().ForEach([&busy](const TBaseMapLayer* layer) {
        const auto* buffered = dynamic_cast<const TBufferedMapLayer*>(layer);
        if (buffered && IsPainted(*layer) && (buffered->GetCurrentThread() || buffered->GetRenderThread()))
            busy = buffered;
        return !busy;
    });
    return busy;
}

/// Waits for what layers draw in the background.
class TSettling {
public:
    explicit TSettling(const TPictureOrder& order)
        : FManager(*order.Manager),
          FTimeLimit(order.Options.TimeLimit),
          FDeadline(order.Options.TimeLimit) {
        FInvalidated =
            order.Manager->GetOnLayerInvalidated().Add([this](ILayerManager*, TBaseMapLayer*) { FHasNews = true; });
    }

    /// After a paint: whether another one would show more. Returns when no layer is being drawn.
    /// @throws EMapPictureTimeLimit
    bool WaitForMore() {
        FHasNews = false;
        if (!BusyLayer(FManager))
            return false;
        QTimer wake;
        wake.start(WakeInterval);
        while (const TBufferedMapLayer* busy = BusyLayer(FManager)) {
            if (FDeadline.hasExpired())
                throw EMapPictureTimeLimit(
                    QStringLiteral("The picture was not ready within %1 seconds: the layer \"%2\" is still being drawn")
                        .arg(FloatToGeneral(FTimeLimit / 1000.0L, 6), busy->GetLayerName()));
            QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents | QEventLoop::WaitForMoreEvents);
        }
        return FHasNews;
    }

private:
    ILayerManager& FManager;
    int FTimeLimit;
    QDeadlineTimer FDeadline;
    bool FHasNews = false;
    TSubscription FInvalidated;
};

/// Paints the map, again and again until all of it is there. `bitmap` has the size of the viewport.
void PaintMap(const TPictureOrder& order, TStage& stage, TBitmap32& bitmap) {
    std::optional<TAnnotationCopies> annotations;
    if (order.Options.ShowsAnnotations)
        annotations.emplace(order.Manager, order.Options.Density).LayOut(stage.Viewport);
    TSettling settling(order);
    do {
        bitmap.Clear(order.Options.MapColor.value_or(order.Options.BackgroundColor));
        std::vector<TBorrowed<TBaseMapLayer>> above = MarksOf(order);
        if (annotations)
            above.emplace_back(annotations->GetLayer());
        PaintLayerStack(order.Manager, stage.Viewport, bitmap, above);
    } while (settling.WaitForMore());
}

} // namespace

TPaintedPicture PaintPicture(const TPictureOrder& order) {
    TStage stage(order);
    TPaintedPicture painted;
    const TRect& place = stage.Sheet.GetMapRect();
    TBitmap32 map(place.GetWidth(), place.GetHeight());
    map.SetDeviceRatio(order.Options.Density);
    PaintMap(order, stage, map);
    painted.Description = DescriptionOf(order, stage);
    if (!stage.Sheet.IsFramed()) {
        painted.Bitmap = std::move(map);
        return painted;
    }
    painted.Bitmap.SetSize(stage.Pixels.cx, stage.Pixels.cy);
    painted.Bitmap.SetDeviceRatio(order.Options.Density);
    painted.Bitmap.Clear(order.Options.BackgroundColor);
    map.SetDrawMode(TDrawMode::dmOpaque);
    painted.Bitmap.Draw(place.Left, place.Top, map);
    stage.Sheet.Paint(stage.Viewport, painted.Bitmap);
    return painted;
}

TMapPictureDescription DescribePicture(const TPictureOrder& order) {
    const TStage stage(order);
    return DescriptionOf(order, stage);
}

} // namespace lmx
