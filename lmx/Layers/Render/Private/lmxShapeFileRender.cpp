#include <lmx/Layers/Render/Private/lmxShapeFileRender.h>

#include <lmx/Coordinates/Private/wskPixelConverter.h>
#include <lmx/Formats/Shapes/lmxShpFile.h>
#include <lmx/Layers/Render/Private/lmxOutlineRenderer.h>

#include <utility>

namespace lmx {

namespace {

constexpr extended FullTurn = 360;

/// Draws by a projection of the host: nothing is known of it, so every vertex goes through it and nothing is skipped.
class TProjectedDrawing {
public:
    TProjectedDrawing(const IShapeFileProjection& projection, const TWorldViewportLocal& viewport, extended shift,
                      TBitmap32& bitmap, const TThreadPoolThread& thread)
        : FProjection(projection),
          FViewport(viewport),
          FShift(shift),
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
        place.X += FShift;
        return FViewport.MapPointToPoint(place).ToPoint();
    }

    const IShapeFileProjection& FProjection;
    const TWorldViewportLocal& FViewport;
    extended FShift;
    TBitmap32& FBitmap;
    const TThreadPoolThread& FThread;
};

} // namespace

TShapeFileLayerRenderThreadHandler::TShapeFileLayerRenderThreadHandler(
    TSize viewSize, const TMapArea& visibleMapArea, const TWorldViewportLocal& vpLocal,
    std::shared_ptr<const TShpData> data, std::shared_ptr<const IShapeFileProjection> projection, TColor32 color,
    TSeamFolding folding)
    : TRenderThreadHandler(viewSize, visibleMapArea, vpLocal),
      FData(std::move(data)),
      FProjection(std::move(projection)),
      FColor(color),
      FFolding(folding) {}

bool TShapeFileLayerRenderThreadHandler::GetHasContent() const {
    return FData != nullptr;
}

void TShapeFileLayerRenderThreadHandler::Draw(TBitmap32& bitmap, const TThreadPoolThread& thread) const {
    bitmap.SetPenColor(FColor);
    DrawShifted(bitmap, 0, thread);
    if (FFolding.HasWest)
        DrawShifted(bitmap, FullTurn, thread);
    if (FFolding.HasEast)
        DrawShifted(bitmap, -FullTurn, thread);
    if (FFolding.IsOn)
        ClearBeyondWorld(bitmap);
}

void TShapeFileLayerRenderThreadHandler::DrawShifted(TBitmap32& bitmap, extended shift,
                                                     const TThreadPoolThread& thread) const {
    if (FProjection && !dynamic_cast<const TWGS84ShapeFileProjection*>(FProjection.get())) {
        const TProjectedDrawing drawing(*FProjection, VPLocal, shift, bitmap, thread);
        drawing.DrawPoints(FData->Points);
        drawing.DrawOutlines(FData->Polygons);
        drawing.DrawOutlines(FData->PolyLines);
        return;
    }
    const TPixelConverter converter(VPLocal, shift);
    DrawPointSquares(*FData, converter, bitmap, thread);
    DrawOutlines(FData->Polygons, converter, bitmap, thread);
    DrawOutlines(FData->PolyLines, converter, bitmap, thread);
}

// The pixels of both edges stay, for lines along them.
void TShapeFileLayerRenderThreadHandler::ClearBeyondWorld(TBitmap32& bitmap) const {
    const TMapArea& world = VPLocal.GetWorldSystem().Area();
    const int left = VPLocal.MapPointToPoint({world.Left, world.Top}).ToPoint().X;
    const int right = VPLocal.MapPointToPoint({world.Right, world.Top}).ToPoint().X;
    bitmap.FillRectS(0, 0, left, bitmap.GetHeight(), 0);
    bitmap.FillRectS(right + 1, 0, bitmap.GetWidth(), bitmap.GetHeight(), 0);
}

} // namespace lmx
