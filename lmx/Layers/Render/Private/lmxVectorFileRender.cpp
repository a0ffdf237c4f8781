#include <lmx/Layers/Render/Private/lmxVectorFileRender.h>

#include <lmx/Coordinates/Private/wskPixelConverter.h>
#include <lmx/Formats/Idrisi/lmxVectorData.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Layers/Render/Private/lmxOutlineRenderer.h>
#include <lmx/Runtime/lmxExtended.h>

#include <algorithm>
#include <utility>

namespace lmx {

namespace {

// A mark that lifts the pen. Single precision makes the tolerance of SameValue an absolute 0.0001.
bool IsPenUp(const TGeoPoint& point) {
    return SameValue(point.X, 0.0F) && SameValue(point.Y, 0.0F);
}

/// Draws the features of lines or polygons. Whether a line goes from a vertex to the next one depends on these two
/// alone: so runs of vertices that cannot be seen are passed over.
class TVectorDrawing {
public:
    TVectorDrawing(const TVectorData& data, const TWorldViewportLocal& viewport, TBitmap32& bitmap,
                   const TThreadPoolThread& thread)
        : FData(data),
          FSystem(viewport.GetWorldSystem()),
          FConverter(viewport),
          FReach(FConverter, bitmap),
          FBitmap(bitmap),
          FThread(thread) {}

    void Draw() {
        for (std::size_t i = 0; i + 1 < FData.Blocks.size() && !FThread.ShouldStop(); ++i)
            if (!Misses(FData.Blocks[i]))
                DrawBlock(FData.Blocks[i].First, FData.Blocks[i + 1].First);
    }

private:
    // A run on both sides of the seam shows on both sides of the world.
    bool Misses(const TVertexBlock& block) const {
        const TMapPoint corner1(block.XMin, block.YMin);
        const TMapPoint corner2(block.XMax, block.YMax);
        if (FSystem.Wraps(corner1, corner2))
            return false;
        const TMapPoint folded1 = FSystem.ToWorldPoint(corner1);
        const TMapPoint folded2 = FSystem.ToWorldPoint(corner2);
        return FReach.Misses(static_cast<double>(folded1.X), static_cast<double>(folded1.Y),
                             static_cast<double>(folded2.X), static_cast<double>(folded2.Y));
    }

    // The lines that begin in a run, the last of which ends at the first vertex of the next one.
    void DrawBlock(std::size_t first, std::size_t next) {
        const auto& starts = FData.FeatureStarts;
        auto feature = std::upper_bound(starts.begin(), starts.end(), first);
        bool penUp = true;
        for (std::size_t i = first; i <= next && i < FData.Vertices.size(); ++i) {
            if (FThread.ShouldStop())
                return;
            if (feature != starts.end() && *feature == i) {
                penUp = true;
                feature = std::upper_bound(feature, starts.end(), i);
            }
            penUp = DrawVertex(i, penUp);
        }
    }

    // Gives whether the pen is up afterwards.
    bool DrawVertex(std::size_t i, bool penUp) {
        const TGeoPoint& vertex = FData.Vertices[i];
        if (IsPenUp(vertex))
            return true;
        const TMapPoint place(vertex);
        if (!penUp)
            penUp = FSystem.Wraps(place, TMapPoint(FData.Vertices[i - 1]));
        const TPoint pixel = FConverter.ToPixel(FSystem.ToWorldPoint(place));
        if (penUp)
            FBitmap.MoveTo(pixel.X, pixel.Y);
        else
            FBitmap.LineToS(pixel.X, pixel.Y);
        return false;
    }

    const TVectorData& FData;
    const IWorldSystem& FSystem;
    TPixelConverter FConverter;
    TReach FReach;
    TBitmap32& FBitmap;
    const TThreadPoolThread& FThread;
};

} // namespace

TVectorFileLayerRenderThreadHandler::TVectorFileLayerRenderThreadHandler(TSize viewSize, const TMapArea& visibleMapArea,
                                                                         const TWorldViewportLocal& vpLocal,
                                                                         std::shared_ptr<const TVectorData> data,
                                                                         TColor32 color)
    : TRenderThreadHandler(viewSize, visibleMapArea, vpLocal),
      FData(std::move(data)),
      FColor(color) {}

bool TVectorFileLayerRenderThreadHandler::GetHasContent() const {
    return FData != nullptr;
}

void TVectorFileLayerRenderThreadHandler::Draw(TBitmap32& bitmap, const TThreadPoolThread& thread) const {
    if (FData->Type != TVectorObjectType::vtLine && FData->Type != TVectorObjectType::vtPolygon)
        return;
    bitmap.SetPenColor(FColor);
    TVectorDrawing(*FData, VPLocal, bitmap, thread).Draw();
}

} // namespace lmx
