#include <lmx/Raster/lmxBaseRasterFrame.h>

#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxExtended.h>

#include <cmath>
#include <limits>

namespace lmx {

namespace {

constexpr std::int32_t NoIndex = -1; // out of the range of every frame

// A whole number as an index; what no index can hold is out of range.
std::int32_t ToIndex(double wholeNumber) {
    if (std::isnan(wholeNumber))
        throw EInvalidOp(QStringLiteral("Invalid floating point operation"));
    const bool isIndex = wholeNumber >= 0 && wholeNumber <= std::numeric_limits<std::int32_t>::max();
    return isIndex ? static_cast<std::int32_t>(wholeNumber) : NoIndex;
}

// The cell at or before a cell coordinate, and the step to the next one: 0 in the last cell, whose value reaches to the
// edge.
struct TBilinearAxis {
    std::int32_t Index;
    std::int32_t Step;
    extended Weight; // of the next cell

    TBilinearAxis(double coordinate, std::int32_t count)
        : Index(ToIndex(std::floor(coordinate))),
          Step(Index == count - 1 ? 0 : 1),
          Weight(Step == 0 ? 0 : static_cast<extended>(coordinate) - Index) {}
};

} // namespace

double TBaseRasterFrame::Read(double x, double y) const {
    return Read(x, y, TInterpolationOption::ioNearestNeighbor);
}

double TBaseRasterFrame::Read(double x, double y, TInterpolationOption option) const {
    double row = 0;
    double col = 0;
    XYToRowCol(x, y, row, col);
    switch (option) {
    case TInterpolationOption::ioDefault:
    case TInterpolationOption::ioNearestNeighbor:
        return ReadCell(ToIndex(std::nearbyint(row)), ToIndex(std::nearbyint(col)));
    case TInterpolationOption::ioBilinear:
        return ReadBilinear(row, col);
    }
    throw EInvalidOperation(QStringLiteral("InptOpt not supported"));
}

double TBaseRasterFrame::ReadBilinear(double row, double col) const {
    const TBilinearAxis y(row, FHeight);
    const TBilinearAxis x(col, FWidth);
    const extended nw = ReadCell(y.Index, x.Index);
    const extended ne = ReadCell(y.Index, x.Index + x.Step);
    const extended sw = ReadCell(y.Index + y.Step, x.Index);
    const extended se = ReadCell(y.Index + y.Step, x.Index + x.Step);
    const extended top = (ne - nw) * x.Weight + nw;
    const extended bottom = (se - sw) * x.Weight + sw;
    return static_cast<double>((bottom - top) * y.Weight + top);
}

void TBaseRasterFrame::Save(const QString&) const {
    throw ENotImplemented(QStringLiteral("No default Save implementation exists for RasterFrame"));
}

std::uint64_t TBaseRasterFrame::CellCountOf(std::int32_t width, std::int32_t height) {
    if (width < 0 || height < 0)
        throw EArgumentException(QStringLiteral("Frame size is negative"));
    return static_cast<std::uint64_t>(width) * static_cast<std::uint64_t>(height);
}

TDataKind TBaseRasterFrame::BufferKindOf(TDataKind kind) {
    switch (kind) {
    case TDataKind::dkIndexed:
    case TDataKind::dkRanged:
    case TDataKind::dkColor32:
        return TDataKind::dkInt;
    default:
        return kind;
    }
}

void TBaseRasterFrame::SetFrame(const TMapArea& bounds, std::int32_t width, std::int32_t height, TDataKind kind) {
    CellCountOf(width, height);
    FBounds = bounds;
    FWidth = width;
    FHeight = height;
    FKind = kind;
    FBufferKind = BufferKindOf(kind);
}

} // namespace lmx
