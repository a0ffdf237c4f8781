#include <lmx/Graphics/Private/lmxStroke.h>

#include <lmx/Graphics/Private/lmxCoverage.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <utility>

namespace lmx {

namespace {

constexpr double ShortestEdge = 1e-4;

TFloatPoint operator-(TFloatPoint v) {
    return {-v.X, -v.Y};
}

double Distance(TFloatPoint a, TFloatPoint b) {
    return std::hypot(b.X - a.X, b.Y - a.Y);
}

TFloatPoints DropShortEdges(std::span<const TFloatPoint> points, bool closed) {
    TFloatPoints result;
    for (const TFloatPoint& point : points)
        if (result.empty() || Distance(result.back(), point) > ShortestEdge)
            result.push_back(point);
    while (closed && result.size() > 1 && Distance(result.back(), result.front()) <= ShortestEdge)
        result.pop_back();
    return result;
}

/// Walks along the vertices and writes the points of the contour on the side that the normals point to.
class TStroker {
public:
    TStroker(TFloatPoints vertices, const TStroke& stroke) : FVertices(std::move(vertices)), FStroke(stroke) {
        for (std::size_t i = 0; i < FVertices.size(); ++i) {
            const TFloatPoint from = FVertices[i];
            const TFloatPoint to = FVertices[(i + 1) % FVertices.size()];
            const double length = Distance(from, to);
            FNormals.push_back({(to.Y - from.Y) / length, (from.X - to.X) / length});
        }
    }

    std::vector<TFloatPoints> Open() {
        const std::size_t last = FVertices.size() - 1;
        for (std::size_t i = 1; i < last; ++i)
            AddJoin(FVertices[i], FNormals[i - 1], FNormals[i]);
        AddEnd(FVertices[last], FNormals[last - 1]);
        for (std::size_t i = last - 1; i > 0; --i)
            AddJoin(FVertices[i], -FNormals[i], -FNormals[i - 1]);
        AddEnd(FVertices[0], -FNormals[0]);
        return {std::move(FContour)};
    }

    std::vector<TFloatPoints> Closed() {
        const std::size_t count = FVertices.size();
        for (std::size_t i = 0; i < count; ++i)
            AddJoin(FVertices[i], FNormals[(i + count - 1) % count], FNormals[i]);
        TFloatPoints oneSide = std::exchange(FContour, {});
        for (std::size_t i = count; i-- > 0;)
            AddJoin(FVertices[i], -FNormals[i], -FNormals[(i + count - 1) % count]);
        return {std::move(oneSide), std::move(FContour)};
    }

private:
    double Half() const { return FStroke.Width / 2; }
    void Add(TFloatPoint vertex, TFloatPoint offset, double factor) {
        FContour.push_back({vertex.X + offset.X * factor, vertex.Y + offset.Y * factor});
    }

    void AddJoin(TFloatPoint vertex, TFloatPoint before, TFloatPoint after) {
        const double cosine = before.X * after.X + before.Y * after.Y;
        const double sine = before.X * after.Y - before.Y * after.X;
        const double r = 1 + cosine;
        if (FStroke.Join == TJoinStyle::jsMiter && r >= 2 / (FStroke.MiterLimit * FStroke.MiterLimit))
            return Add(vertex, {before.X + after.X, before.Y + after.Y}, Half() / r);
        Add(vertex, before, Half());
        if (FStroke.Join == TJoinStyle::jsRound && sine > 0)
            AddArc(vertex, before, std::atan2(sine, cosine));
        Add(vertex, after, Half());
    }

    /// From one side of the line around its end to the other side.
    void AddEnd(TFloatPoint vertex, TFloatPoint normal) {
        const TFloatPoint ahead = {-normal.Y, normal.X};
        if (FStroke.End == TEndStyle::esSquare) {
            Add(vertex, {normal.X + ahead.X, normal.Y + ahead.Y}, Half());
            Add(vertex, {ahead.X - normal.X, ahead.Y - normal.Y}, Half());
            return;
        }
        Add(vertex, normal, Half());
        if (FStroke.End == TEndStyle::esRound)
            AddArc(vertex, normal, std::numbers::pi);
        Add(vertex, -normal, Half());
    }

    /// The inner points of an arc that begins at `normal` and goes on by `angle`.
    void AddArc(TFloatPoint vertex, TFloatPoint normal, double angle) {
        const double full = 2 * std::numbers::pi;
        const int steps = static_cast<int>(std::ceil(angle / full * std::max(CircleSteps(Half()), 8)));
        for (int i = 1; i < steps; ++i) {
            const double c = std::cos(angle * i / steps);
            const double s = std::sin(angle * i / steps);
            Add(vertex, {normal.X * c - normal.Y * s, normal.X * s + normal.Y * c}, Half());
        }
    }

    TFloatPoints FVertices;
    TFloatPoints FNormals; // of the edge from each vertex to the next
    TStroke FStroke;
    TFloatPoints FContour;
};

} // namespace

std::vector<TFloatPoints> StrokeContours(std::span<const TFloatPoint> points, bool closed, const TStroke& stroke) {
    if (!(stroke.Width > 0) || !std::all_of(points.begin(), points.end(), TCoverage::IsUsable))
        return {};
    TFloatPoints vertices = DropShortEdges(points, closed);
    if (vertices.size() < 2)
        return {};
    TStroker stroker(std::move(vertices), stroke);
    return closed ? stroker.Closed() : stroker.Open();
}

int CircleSteps(double radius) {
    constexpr double deviation = 0.125;
    constexpr double most = 1 << 20;
    if (!std::isfinite(radius))
        return 0;
    const double r = std::abs(radius);
    return static_cast<int>(std::min(std::numbers::pi / std::acos(r / (r + deviation)), most));
}

} // namespace lmx
