#pragma once

#include <lmx/Graphics/lmxFloatPoint.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace lmx {

/// Exact area that contours cover in each pixel of a grid; pixel (i, j) is the area from (i, j) to (i+1, j+1).
/// Contours are collected by AddContour and given out row by row by Sweep. Memory grows with the visible edges and the
/// width of the grid, not with the area.
class TCoverage {
public:
    TCoverage(std::int32_t width, std::int32_t height);

    /// Adds a closed contour. Edges outside the grid are cut off exactly; a contour with a coordinate beyond
    /// ±CoordinateLimit, or none at all, is left out.
    void AddContour(std::span<const TFloatPoint> points);

    /// Calls tell(y, x, count, area) for runs of pixels in row `y` that begin at `x` and have the same signed area, the
    /// sum over all contours: 1 or -1 where one contour covers a pixel whole. Rows and runs come in ascending order;
    /// pixels that no run names are not covered.
    template<class Emit>
    void Sweep(Emit tell);

    static constexpr double CoordinateLimit = 1e30;
    static bool IsUsable(TFloatPoint point) {
        return std::abs(point.X) <= CoordinateLimit && std::abs(point.Y) <= CoordinateLimit;
    }

private:
    /// A piece of a contour inside the grid, Top < Bottom.
    struct TEdge {
        TFloatPoint Top;
        TFloatPoint Bottom;
        double Sign; // 1 if the contour goes down here, else -1
    };

    void AddEdge(TFloatPoint from, TFloatPoint to);
    void AddVisible(TFloatPoint top, TFloatPoint bottom, double sign);
    void AccumulateRow(std::int32_t y);
    void Accumulate(double x1, double x2, double cover);
    void Touch(std::size_t first, std::size_t last);
    template<class Emit>
    void EmitRow(std::int32_t y, Emit& tell);

    std::size_t FWidth;
    std::int32_t FHeight;
    std::vector<TEdge> FEdges;
    std::vector<std::size_t> FActive; // edges that cross the present row
    std::vector<double> FDeltas;      // change of the area from each pixel of the row to the next
    std::size_t FFirstTouched = 0;
    std::size_t FLastTouched = 0;
};

template<class Emit>
void TCoverage::Sweep(Emit tell) {
    std::sort(FEdges.begin(), FEdges.end(), [](const TEdge& a, const TEdge& b) { return a.Top.Y < b.Top.Y; });
    FActive.reserve(FEdges.size()); // so that nothing is raised once rows are told
    std::size_t next = 0;
    for (std::int32_t y = 0; y < FHeight; ++y) {
        if (FActive.empty()) {
            if (next == FEdges.size())
                return;
            y = std::max(y, static_cast<std::int32_t>(std::floor(FEdges[next].Top.Y)));
        }
        for (; next < FEdges.size() && FEdges[next].Top.Y < y + 1.0; ++next)
            FActive.push_back(next);
        AccumulateRow(y);
        EmitRow(y, tell);
        std::erase_if(FActive, [&](std::size_t edge) { return FEdges[edge].Bottom.Y <= y + 1.0; });
    }
}

template<class Emit>
void TCoverage::EmitRow(std::int32_t y, Emit& tell) {
    if (FFirstTouched > FLastTouched)
        return;
    const auto deltas = FDeltas.begin();
    const std::size_t touchedEnd = std::min(FLastTouched + 1, FWidth);
    double area = 0;
    for (std::size_t x = FFirstTouched; x < FWidth;) {
        area += FDeltas[x];
        std::size_t end = x + 1;
        while (end < touchedEnd && FDeltas[end] == 0)
            ++end;
        if (end >= touchedEnd)
            end = FWidth;
        tell(y, static_cast<std::int32_t>(x), end - x, area);
        x = end;
    }
    std::fill(deltas + static_cast<std::ptrdiff_t>(FFirstTouched),
              deltas + static_cast<std::ptrdiff_t>(FLastTouched) + 1, 0.0);
}

} // namespace lmx
