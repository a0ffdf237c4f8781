#pragma once

#include <lmx/Coordinates/Private/wskPixelConverter.h>
#include <lmx/Formats/Shapes/lmxShpOutlines.h>
#include <lmx/Formats/lmxVertexBlock.h>
#include <lmx/Runtime/lmxThreadPool.h>

namespace lmx {

class TBitmap32;
struct TShpData;

/// What a bitmap can show of the map, to be asked of boxes of vertices.
class TReach {
public:
    TReach(const TPixelConverter& converter, const TBitmap32& bitmap);

    /// Whether nothing can be seen of the lines within the box.
    bool Misses(double xMin, double yMin, double xMax, double yMax) const {
        return xMax < FXMin || xMin > FXMax || yMax < FYMin || yMin > FYMax;
    }
    bool Misses(const TVertexBlock& block) const { return Misses(block.XMin, block.YMin, block.XMax, block.YMax); }

private:
    double FXMin;
    double FYMin;
    double FXMax;
    double FYMax;
};

/// Draws every part of `outlines` as a line in the bitmap's pen colour: its first vertex gets the pen, and LineToS goes
/// to each further one. Runs of vertices that cannot be seen are passed over. Ends at once when the thread is told to
/// stop.
void DrawOutlines(const TShpOutlines& outlines, const TPixelConverter& converter, TBitmap32& bitmap,
                  const TThreadPoolThread& thread);

/// Draws every point as a square of 4 x 4 pixels in the bitmap's pen colour, from two pixels left of and above the
/// point's pixel. Ends at once when the thread is told to stop.
void DrawPointSquares(const TShpData& data, const TPixelConverter& converter, TBitmap32& bitmap,
                      const TThreadPoolThread& thread);

/// The square of DrawPointSquares around one pixel.
void DrawPointSquare(TPoint pixel, TBitmap32& bitmap);

} // namespace lmx
