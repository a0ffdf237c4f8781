#include <lmx/Formats/Shapes/Private/lmxShpDataLoader.h>

#include <lmx/Formats/Private/lmxPlaceOrder.h>
#include <lmx/Formats/Private/lmxVertexBlocks.h>
#include <lmx/Runtime/lmxExceptions.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace lmx {

namespace {

// Writers mark a missing coordinate by the lowest double, or by one that is no number.
constexpr double FarthestCoordinate = 1e300;

bool IsPlace(const TShpPoint& point) {
    return std::abs(point.X) <= FarthestCoordinate && std::abs(point.Y) <= FarthestCoordinate;
}

// Closes the gaps of vertices from `first` on that have no place, and moves the starts of parts along.
void DropUnplaced(std::vector<TShpPoint>& vertices, std::size_t first, std::span<std::uint32_t> partStarts) {
    const auto begin = vertices.begin() + static_cast<std::ptrdiff_t>(first);
    std::size_t kept = static_cast<std::size_t>(std::find_if_not(begin, vertices.end(), IsPlace) - vertices.begin());
    if (kept == vertices.size())
        return;
    auto part = std::ranges::upper_bound(partStarts, kept);
    for (std::size_t i = kept; i < vertices.size(); ++i) {
        for (; part != partStarts.end() && *part == i; ++part)
            *part = static_cast<std::uint32_t>(kept);
        if (IsPlace(vertices[i]))
            vertices[kept++] = vertices[i];
    }
    std::fill(part, partStarts.end(), static_cast<std::uint32_t>(kept));
    vertices.resize(kept);
}

TPlace MiddleOf(TShpPointArr part) {
    double xMin = part.front().X;
    double yMin = part.front().Y;
    double xMax = xMin;
    double yMax = yMin;
    for (const TShpPoint& vertex : part) {
        xMin = std::min(xMin, vertex.X);
        yMin = std::min(yMin, vertex.Y);
        xMax = std::max(xMax, vertex.X);
        yMax = std::max(yMax, vertex.Y);
    }
    return {xMin / 2 + xMax / 2, yMin / 2 + yMax / 2};
}

/// The parts of some lines in the order of the file, before any of them is moved.
class TPartsOfFile {
public:
    TPartsOfFile(std::span<const TShpPoint> vertices, std::span<const std::uint32_t> starts)
        : FVertices(vertices),
          FStarts(starts) {}

    std::size_t GetCount() const { return FStarts.size(); }
    std::size_t LengthOf(std::size_t part) const {
        return (part + 1 < FStarts.size() ? FStarts[part + 1] : FVertices.size()) - FStarts[part];
    }
    TShpPointArr operator[](std::size_t part) const { return FVertices.subspan(FStarts[part], LengthOf(part)); }

    /// Parts so short that several share a run of vertices.
    bool IsShort(std::size_t part) const { return LengthOf(part) > 0 && LengthOf(part) < ShortestVertexBlock; }
    /// None if all of them together are too few to be noticed.
    std::vector<std::uint32_t> GetShort() const {
        constexpr std::size_t Noticeable = 64;
        std::vector<std::uint32_t> parts;
        std::size_t vertices = 0;
        for (std::size_t part = 0; part < GetCount(); ++part)
            if (IsShort(part)) {
                parts.push_back(static_cast<std::uint32_t>(part));
                vertices += LengthOf(part);
            }
        if (vertices * Noticeable < FVertices.size())
            parts.clear();
        return parts;
    }

private:
    std::span<const TShpPoint> FVertices;
    std::span<const std::uint32_t> FStarts;
};

} // namespace

TShpData TShpDataLoader::Load() {
    Reserve();
    FReader.Restart();
    FData.DamagedRecords = 0;
    while (Next())
        ReadShape();
    Finish(FData.Polygons);
    Finish(FData.PolyLines);
    OrderPoints();
    FData.PointRecords.Shrink();
    FData.PointBlocks = MakeVertexBlocks(std::span<const TShpPoint>(FData.Points), {});
    FData.PointBlockGroups = MakeBlockGroups(FData.PointBlocks);
    return std::move(FData);
}

// The next good record.
bool TShpDataLoader::Next() {
    auto state = FReader.Next();
    for (; state == TShapeRecordState::rsDamaged; state = FReader.Next())
        TakeDamaged();
    return state == TShapeRecordState::rsGood;
}

void TShpDataLoader::TakeDamaged() {
    if (!FOptions.SkipDamagedRecords)
        FReader.Refuse();
    ++FData.DamagedRecords;
}

void TShpDataLoader::Reserve() {
    TCounts points;
    TCounts polygons;
    TCounts polyLines;
    while (Next()) {
        const TShapeKind kind = FReader.GetKind();
        TCounts& counts = kind == TShapeKind::skPolygon    ? polygons
                          : kind == TShapeKind::skPolyLine ? polyLines
                                                           : points;
        if (kind == TShapeKind::skNull)
            continue;
        ++counts.Shapes;
        counts.Parts += FReader.GetPartCount();
        counts.Points += FReader.GetPointCount();
    }
    Reserve(FData.Polygons, polygons);
    Reserve(FData.PolyLines, polyLines);
    FData.Points.reserve(Checked(points.Points));
}

void TShpDataLoader::Reserve(TShpOutlines& outlines, const TCounts& counts) const {
    outlines.FVertices.reserve(Checked(counts.Points));
    outlines.FPartStarts.reserve(Checked(counts.Parts));
    if (counts.Shapes > 0)
        outlines.FShapeStarts.reserve(Checked(counts.Shapes) + 1);
}

std::size_t TShpDataLoader::Checked(std::size_t count) const {
    if (count >= std::numeric_limits<std::uint32_t>::max())
        throw EFileFormatException(FFileName, QStringLiteral("too many vertices"));
    return count;
}

void TShpDataLoader::ReadShape() {
    if (FReader.GetKind() == TShapeKind::skPolygon)
        ReadLines(FData.Polygons);
    else if (FReader.GetKind() == TShapeKind::skPolyLine)
        ReadLines(FData.PolyLines);
    else if (FReader.GetPointCount() > 0)
        ReadPlaces();
}

void TShpDataLoader::ReadLines(TShpOutlines& outlines) {
    const std::size_t firstPart = outlines.FPartStarts.size();
    const std::size_t first = outlines.FVertices.size();
    if (!FReader.ReadPartStarts(static_cast<std::uint32_t>(first), outlines.FPartStarts)) {
        outlines.FPartStarts.resize(firstPart);
        TakeDamaged();
        return;
    }
    outlines.FShapeStarts.push_back(static_cast<std::uint32_t>(firstPart));
    outlines.FRecords.Append(FReader.GetRecord());
    if (FReader.GetPartCount() > 0) // vertices of no part belong to no line
        FReader.ReadPoints(outlines.FVertices);
    KeepPlaces(outlines.FVertices, first, std::span(outlines.FPartStarts).subspan(firstPart));
}

void TShpDataLoader::ReadPlaces() {
    const std::size_t first = FData.Points.size();
    FReader.ReadPoints(FData.Points);
    KeepPlaces(FData.Points, first, {});
    FData.PointRecords.Append(FReader.GetRecord(), FData.Points.size() - first);
}

// Converts the vertices from `first` on; those stay that have a place before and after.
void TShpDataLoader::KeepPlaces(std::vector<TShpPoint>& vertices, std::size_t first,
                                std::span<std::uint32_t> partStarts) const {
    DropUnplaced(vertices, first, partStarts);
    if (!FConverter)
        return;
    FConverter->Convert(std::span(vertices).subspan(first));
    DropUnplaced(vertices, first, partStarts);
}

void TShpDataLoader::Finish(TShpOutlines& outlines) {
    if (!outlines.FShapeStarts.empty())
        outlines.FShapeStarts.push_back(static_cast<std::uint32_t>(outlines.FPartStarts.size()));
    outlines.FRecords.Shrink();
    OrderParts(outlines);
    outlines.FBlocks = MakeVertexBlocks(outlines.GetVertices(), outlines.GetPartStarts());
    outlines.FBlockGroups = MakeBlockGroups(outlines.FBlocks);
}

// Short parts by place, then the other ones as they come: each of those has runs of its own.
void TShpDataLoader::OrderParts(TShpOutlines& outlines) {
    const TPartsOfFile parts(outlines.FVertices, outlines.FPartStarts);
    std::vector<std::uint32_t> shortParts = parts.GetShort();
    const auto order = OrderByPlace(shortParts.size(), [&](std::size_t i) { return MiddleOf(parts[shortParts[i]]); });
    if (order.empty())
        return;
    std::vector<TShpPoint> vertices;
    std::vector<std::uint32_t> starts;
    std::vector<std::uint32_t> places(parts.GetCount());
    vertices.reserve(outlines.FVertices.size());
    starts.reserve(parts.GetCount());
    const auto take = [&](std::size_t part) {
        places[part] = static_cast<std::uint32_t>(starts.size());
        starts.push_back(static_cast<std::uint32_t>(vertices.size()));
        vertices.insert(vertices.end(), parts[part].begin(), parts[part].end());
    };
    for (const std::uint32_t i : order)
        take(shortParts[i]);
    for (std::size_t part = 0; part < parts.GetCount(); ++part)
        if (!parts.IsShort(part))
            take(part);
    outlines.FVertices = std::move(vertices);
    outlines.FPartStarts = std::move(starts);
    outlines.FPartPlaces = std::move(places);
}

void TShpDataLoader::OrderPoints() {
    const auto order = OrderByPlace(FData.Points.size(), [&](std::size_t i) {
        return TPlace{FData.Points[i].X, FData.Points[i].Y};
    });
    if (order.empty())
        return;
    std::vector<TShpPoint> points(order.size());
    FData.PointPlaces.resize(order.size());
    for (std::size_t i = 0; i < order.size(); ++i) {
        points[i] = FData.Points[order[i]];
        FData.PointPlaces[order[i]] = static_cast<std::uint32_t>(i);
    }
    FData.Points = std::move(points);
}

} // namespace lmx
