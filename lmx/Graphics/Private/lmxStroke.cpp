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
    TStroker(TFloatPoints vertices, const TStroke& stroke, const TRect& visible)
        : FVertices(std::move(vertices)),
          FStroke(stroke),
          FVisible(visible) {
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

    /// The inner points of an arc that begins at `normal` and goes on by `angle`, at most half a circle.
    void AddArc(TFloatPoint vertex, TFloatPoint normal, double angle) {
        const double full = 2 * std::numbers::pi;
        const int steps = static_cast<int>(std::ceil(angle / full * std::max(CircleSteps(Half()), 8)));
        AddArcPoints({vertex, normal, angle / steps}, 0, steps);
    }

    /// An arc about a vertex in equal steps.
    struct TArc {
        TFloatPoint Vertex;
        TFloatPoint Normal;
        double Step; // angle
    };

    /// The points between two steps of an arc, as far as they can be told from the chord.
    void AddArcPoints(const TArc& arc, int first, int last) {
        if (last - first < 2 || !IsSeen(arc, first, last))
            return;
        const int middle = first + (last - first) / 2;
        AddArcPoints(arc, first, middle);
        Add(arc.Vertex, NormalAt(arc, middle), Half());
        AddArcPoints(arc, middle, last);
    }

    static TFloatPoint NormalAt(const TArc& arc, double step) {
        const double c = std::cos(arc.Step * step);
        const double s = std::sin(arc.Step * step);
        return {arc.Normal.X * c - arc.Normal.Y * s, arc.Normal.X * s + arc.Normal.Y * c};
    }

    /// What lies between an arc and its chord lies in the circle about the arc's middle through its ends.
    bool IsSeen(const TArc& arc, int first, int last) const {
        const TFloatPoint ahead = NormalAt(arc, (first + last) / 2.0);
        const TFloatPoint middle = {arc.Vertex.X + ahead.X * Half(), arc.Vertex.Y + ahead.Y * Half()};
        const double reach = 2 * Half() * std::sin(arc.Step * (last - first) / 4);
        const double rounding = 1 + 1e-12 * (Half() + std::abs(arc.Vertex.X) + std::abs(arc.Vertex.Y));
        const TFloatPoint nearest = {std::clamp<double>(middle.X, FVisible.Left, FVisible.Right),
                                     std::clamp<double>(middle.Y, FVisible.Top, FVisible.Bottom)};
        return !(Distance(middle, nearest) > reach + rounding);
    }

    TFloatPoints FVertices;
    TFloatPoints FNormals; // of the edge from each vertex to the next
    TStroke FStroke;
    TRect FVisible;
    TFloatPoints FContour;
};

} // namespace

std::vector<TFloatPoints> StrokeContours(std::span<const TFloatPoint> points, bool closed, const TStroke& stroke,
                                         const TRect& visible) {
    if (visible.IsEmpty() || !(stroke.Width > 0) || !std::all_of(points.begin(), points.end(), TCoverage::IsUsable))
        return {};
    TFloatPoints vertices = DropShortEdges(points, closed);
    if (vertices.size() < 2)
        return {};
    TStroker stroker(std::move(vertices), stroke, visible);
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
