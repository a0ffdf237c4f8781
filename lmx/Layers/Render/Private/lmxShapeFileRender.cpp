#include <lmx/Layers/Render/Private/lmxShapeFileRender.h>

#include <lmx/Coordinates/Private/wskPixelConverter.h>
#include <lmx/Formats/Shapes/lmxShpFile.h>
#include <lmx/Layers/Render/Private/lmxOutlineRenderer.h>

#include <utility>

namespace lmx {

namespace {

/// Draws by a projection of the host: nothing is known of it, so every vertex goes through it and nothing is skipped.
class TProjectedDrawing {
public:
    TProjectedDrawing(const IShapeFileProjection& projection, const TWorldViewportLocal& viewport, TBitmap32& bitmap,
                      const TThreadPoolThread& thread)
        : FProjection(projection),
          FViewport(viewport),
          FBitmap(bitmap),
          FThread(thread) {}

    void DrawPoints(std::span<const TShpPoint> points) const {
        for (const TShpPoint& point : points) {
            if (FThread.ShouldStop())
                return;
            DrawPointSquare(ToPixel(point), FBitmap);
        }
    }
    void DrawOutlines(const TShpOutlines& outlines) const {
        for (std::size_t shape = 0; shape < outlines.GetShapeCount(); ++shape)
            for (std::size_t part = 0; part < outlines.GetPartCount(shape); ++part)
                DrawLine(outlines.GetPart(shape, part));
    }

private:
    void DrawLine(TShpPointArr line) const {
        bool isFirst = true;
        for (const TShpPoint& vertex : line) {
            if (FThread.ShouldStop())
                return;
            const TPoint pixel = ToPixel(vertex);
            if (std::exchange(isFirst, false))
                FBitmap.MoveTo(pixel.X, pixel.Y);
            else
                FBitmap.LineToS(pixel.X, pixel.Y);
        }
    }
    TPoint ToPixel(const TShpPoint& point) const {
        TMapPoint place;
        FProjection.Convert(point.X, point.Y, place.X, place.Y);
        return FViewport.MapPointToPoint(place).ToPoint();
    }

    const IShapeFileProjection& FProjection;
    const TWorldViewportLocal& FViewport;
    TBitmap32& FBitmap;
    const TThreadPoolThread& FThread;
};

} // namespace

TShapeFileLayerRenderThreadHandler::TShapeFileLayerRenderThreadHandler(
    TSize viewSize, const TMapArea& visibleMapArea, const TWorldViewportLocal& vpLocal,
    std::shared_ptr<const TShpData> data, std::shared_ptr<const IShapeFileProjection> projection, TColor32 color)
    : TRenderThreadHandler(viewSize, visibleMapArea, vpLocal),
      FData(std::move(data)),
      FProjection(std::move(projection)),
      FColor(color) {}

bool TShapeFileLayerRenderThreadHandler::GetHasContent() const {
    return FData != nullptr;
}

void TShapeFileLayerRenderThreadHandler::Draw(TBitmap32& bitmap, const TThreadPoolThread& thread) const {
    bitmap.SetPenColor(FColor);
    if (FProjection && !dynamic_cast<const TWGS84ShapeFileProjection*>(FProjection.get())) {
        DrawProjected(bitmap, thread);
        return;
    }
    const TPixelConverter converter(VPLocal);
    DrawPointSquares(*FData, converter, bitmap, thread);
    DrawOutlines(FData->Polygons, converter, bitmap, thread);
    DrawOutlines(FData->PolyLines, converter, bitmap, thread);
}

void TShapeFileLayerRenderThreadHandler::DrawProjected(TBitmap32& bitmap, const TThreadPoolThread& thread) const {
    const TProjectedDrawing drawing(*FProjection, VPLocal, bitmap, thread);
    drawing.DrawPoints(FData->Points);
    drawing.DrawOutlines(FData->Polygons);
    drawing.DrawOutlines(FData->PolyLines);
}

} // namespace lmx
