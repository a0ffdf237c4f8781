#include <lmx/Layers/Render/Private/lmxOutlineRenderer.h>

#include <lmx/Formats/Shapes/lmxShpFile.h>
#include <lmx/Graphics/lmxBitmap32.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>

namespace lmx {

namespace {

constexpr std::int32_t HalfSquare = 2;

// The pixels of a line without those that repeat the one before, to which LineToS draws nothing.
std::span<const TPoint> DistinctPixels(std::span<const TShpPoint> line, const TPixelConverter& converter,
                                       std::span<TPoint> pixels) {
    if (line.empty())
        return {};
    converter.ToPixels(line, pixels.data());
    std::size_t count = 1;
    auto before = std::bit_cast<std::uint64_t>(pixels[0]);
    for (std::size_t i = 1; i < line.size(); ++i) { // without a branch, which could not be foreseen
        const auto pixel = std::bit_cast<std::uint64_t>(pixels[i]);
        pixels[count] = pixels[i];
        count += pixel != before ? 1 : 0;
        before = pixel;
    }
    return pixels.first(count);
}

// Calls `draw` with the index of each run that may be seen, until it answers false.
template<class Draw>
void ForEachVisible(std::span<const TVertexBlock> blocks, std::span<const TVertexBlock> groups, const TReach& reach,
                    const Draw& draw) {
    for (std::size_t group = 0; group + 1 < groups.size(); ++group) {
        if (reach.Misses(groups[group]))
            continue;
        for (std::size_t i = groups[group].First; i < groups[group + 1].First; ++i)
            if (!reach.Misses(blocks[i]) && !draw(i))
                return;
    }
}

} // namespace

TReach::TReach(const TPixelConverter& converter, const TBitmap32& bitmap) {
    // Squares of points reach a little beyond their pixel.
    const TMapArea area = converter.GetReach({bitmap.GetWidth() + HalfSquare, bitmap.GetHeight() + HalfSquare});
    FXMin = static_cast<double>(area.Left);
    FYMin = static_cast<double>(area.Bottom);
    FXMax = static_cast<double>(area.Right);
    FYMax = static_cast<double>(area.Top);
}

void DrawOutlines(const TShpOutlines& outlines, const TPixelConverter& converter, TBitmap32& bitmap,
                  const TThreadPoolThread& thread) {
    const auto vertices = outlines.GetVertices();
    const auto partStarts = outlines.GetPartStarts();
    const auto blocks = outlines.GetBlocks();
    std::array<TPoint, LongestVertexBlock + 1> pixels;
    ForEachVisible(blocks, outlines.GetBlockGroups(), TReach(converter, bitmap), [&](std::size_t i) {
        if (thread.ShouldStop())
            return false;
        // The lines that begin in a block end in it or at the first vertex of the next one.
        const std::size_t end = std::min<std::size_t>(blocks[i + 1].First + 1, vertices.size());
        auto part = std::upper_bound(partStarts.begin(), partStarts.end(), blocks[i].First);
        for (std::size_t first = blocks[i].First; first < end; ++part) {
            const std::size_t partEnd = part != partStarts.end() ? std::min<std::size_t>(*part, end) : end;
            const auto line = vertices.subspan(first, partEnd - first);
            const auto distinct = DistinctPixels(line, converter, pixels);
            if (!distinct.empty()) {
                bitmap.MoveTo(distinct.front().X, distinct.front().Y);
                bitmap.LinesToS(distinct.subspan(1));
            }
            first = partEnd;
        }
        return true;
    });
}

void DrawPointSquares(const TShpData& data, const TPixelConverter& converter, TBitmap32& bitmap,
                      const TThreadPoolThread& thread) {
    const auto& blocks = data.PointBlocks;
    ForEachVisible(blocks, data.PointBlockGroups, TReach(converter, bitmap), [&](std::size_t i) {
        for (std::size_t point = blocks[i].First; point < blocks[i + 1].First; ++point) {
            if (thread.ShouldStop())
                return false;
            DrawPointSquare(converter.ToPixel(data.Points[point].X, data.Points[point].Y), bitmap);
        }
        return true;
    });
}

void DrawPointSquare(TPoint pixel, TBitmap32& bitmap) {
    bitmap.FillRectS(pixel.X - HalfSquare, pixel.Y - HalfSquare, pixel.X + HalfSquare, pixel.Y + HalfSquare,
                     bitmap.GetPenColor());
}

} // namespace lmx
