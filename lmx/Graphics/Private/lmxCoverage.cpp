
#include <lmx/Graphics/Private/lmxCoverage.h>

#include <utility>

namespace lmx {

namespace {

// Both go by the share of the edge, which lies between 0 and 1: nothing overflows on edges that are nearly level.

double XAt(TFloatPoint top, TFloatPoint bottom, double y) {
    return top.X + (y - top.Y) / (bottom.Y - top.Y) * (bottom.X - top.X);
}

double YAt(TFloatPoint top, TFloatPoint bottom, double x) {
    const double y = top.Y + (x - top.X) / (bottom.X - top.X) * (bottom.Y - top.Y);
    return std::clamp(y, top.Y, bottom.Y);
}

} // namespace

TCoverage::TCoverage(std::int32_t width, std::int32_t height)
    : FWidth(static_cast<std::size_t>(std::max(width, 0))),
      FHeight(std::max(height, 0)),
      FDeltas(FWidth + 2) {}

void TCoverage::AddContour(std::span<const TFloatPoint> points) {
    if (points.empty() || FWidth == 0 || FHeight == 0 || !std::all_of(points.begin(), points.end(), IsUsable))
        return;
    TFloatPoint from = points.back();
    for (const TFloatPoint& to : points)
        AddEdge(std::exchange(from, to), to);
}

void TCoverage::AddEdge(TFloatPoint from, TFloatPoint to) {
    const double sign = from.Y < to.Y ? 1 : -1;
    if (sign < 0)
        std::swap(from, to);
    if (to.Y <= 0 || from.Y >= FHeight)
        return;
    const TFloatPoint top = from.Y < 0 ? TFloatPoint{XAt(from, to, 0), 0} : from;
    const double lowest = FHeight;
    const TFloatPoint bottom = to.Y > lowest ? TFloatPoint{XAt(from, to, lowest), lowest} : to;
    AddVisible(top, bottom, sign);
}

/// What lies to the left of the grid covers its rows from column 0 on; what lies to the right covers nothing.
void TCoverage::AddVisible(TFloatPoint top, TFloatPoint bottom, double sign) {
    const auto rightmost = static_cast<double>(FWidth);
    const auto [left, right] = std::minmax(top.X, bottom.X);
    if (top.Y >= bottom.Y || left >= rightmost)
        return;
    const auto split = [&](double x) {
        const TFloatPoint middle = {x, YAt(top, bottom, x)};
        AddVisible(top, middle, sign);
        AddVisible(middle, bottom, sign);
    };
    if (right <= 0)
        FEdges.push_back({{0, top.Y}, {0, bottom.Y}, sign});
    else if (left < 0)
        split(0);
    else if (right > rightmost)
        split(rightmost);
    else
        FEdges.push_back({top, bottom, sign});
}

void TCoverage::AccumulateRow(std::int32_t y) {
    FFirstTouched = FWidth;
    FLastTouched = 0;
    const auto rightmost = static_cast<double>(FWidth);
    for (const std::size_t index : FActive) {
        const TEdge& edge = FEdges[index];
        const double top = std::max(edge.Top.Y, static_cast<double>(y));
        const double bottom = std::min(edge.Bottom.Y, y + 1.0);
        const double x1 = top == edge.Top.Y ? edge.Top.X : XAt(edge.Top, edge.Bottom, top);
        const double x2 = bottom == edge.Bottom.Y ? edge.Bottom.X : XAt(edge.Top, edge.Bottom, bottom);
        Accumulate(std::clamp(x1, 0.0, rightmost), std::clamp(x2, 0.0, rightmost), (bottom - top) * edge.Sign);
    }
}

/// Adds the area to the right of an edge that passes `cover` of the row's height between x1 and x2. From one side of
/// the edge to the other the covered height grows linearly with x, so the area in a pixel is a square of its width.
void TCoverage::Accumulate(double x1, double x2, double cover) {
    if (x1 > x2)
        std::swap(x1, x2);
    const auto first = static_cast<std::size_t>(x1);
    const auto last = static_cast<std::size_t>(x2);
    Touch(first, last + 1);
    if (first == last) {
        const double passed = (x1 + x2) / 2 - static_cast<double>(first);
        FDeltas[first] += cover * (1 - passed);
        FDeltas[first + 1] += cover * passed;
        return;
    }
    const double slope = cover / (x2 - x1);
    const double inFirst = static_cast<double>(first + 1) - x1;
    double area = slope * inFirst * inFirst / 2;
    FDeltas[first] += area;
    for (std::size_t x = first + 1; x < last; ++x) {
        const double here = slope * (static_cast<double>(x) + 0.5 - x1);
        FDeltas[x] += here - area;
        area = here;
    }
    const double inLast = x2 - static_cast<double>(last);
    const double here = cover - slope * inLast * inLast / 2;
    FDeltas[last] += here - area;
    FDeltas[last + 1] += cover - here;
}

void TCoverage::Touch(std::size_t first, std::size_t last) {
    FFirstTouched = std::min(FFirstTouched, first);
    FLastTouched = std::max(FLastTouched, last);
}

} // namespace lmx
