#include <lmx/Raster/lmxBaseLinearRasterFrame.h>

#include <lmx/Raster/Private/lmxNewValues.h>
#include <lmx/Runtime/Private/lmxClassName.h>
#include <lmx/Runtime/Private/lmxMemory.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxExtended.h>

#include <algorithm>
#include <concepts>
#include <limits>
#include <type_traits>
#include <typeinfo>
#include <utility>

namespace lmx {

namespace {

[[noreturn]] void RaiseNoBuffer(const char* operation) {
    throw EInvalidOperation(QStringLiteral("Cannot %1 buffer. Unsupported BufferKind").arg(QLatin1String(operation)));
}

// A value as a cell: integers keep the low bits of the rounded value.
template<class Cell>
Cell ToCell(double value) {
    if constexpr (std::integral<Cell>)
        return static_cast<Cell>(Round(value));
    else
        return static_cast<Cell>(value);
}

/// An axis of the map along rows or columns, from its first edge over `Extent` map units to `Count` cells.
struct TAxis {
    extended Start;
    extended Extent; // never negative
    std::int32_t Count;
    TOrder Order;

    double ToCell(double map) const {
        const extended distance = Order == TOrder::doAsc ? map - Start : Start - map;
        return static_cast<double>(distance / Extent * Count);
    }
    double ToMap(double cell) const {
        const extended distance = static_cast<extended>(cell) / Count * Extent;
        return static_cast<double>(Order == TOrder::doAsc ? Start + distance : Start - distance);
    }
};

TAxis XAxis(const TBaseLinearRasterFrame& frame) {
    const TMapArea bounds = frame.GetBounds();
    return {bounds.Left, bounds.GetWidth(), frame.GetWidth(), frame.GetXOrder()};
}

TAxis YAxis(const TBaseLinearRasterFrame& frame) {
    const TMapArea bounds = frame.GetBounds();
    return {bounds.Top, bounds.GetHeight(), frame.GetHeight(), frame.GetYOrder()};
}

// One row of any of the four buffers.
template<class Line, class Buffer>
Line LineOf(Buffer& buffer, std::size_t start, std::int32_t width) {
    return std::visit(
        [&](auto& cells) -> Line {
            if constexpr (std::is_same_v<std::remove_cvref_t<decltype(cells)>, std::monostate>)
                RaiseNoBuffer("create");
            else
                return std::span(cells).subspan(start, static_cast<std::size_t>(width));
        },
        buffer);
}

} // namespace

double TBaseLinearRasterFrame::ReadCell(std::int32_t row, std::int32_t col) const {
    const std::size_t index = GetIndex(row, col);
    return std::visit(
        [index](const auto& cells) -> double {
            if constexpr (std::is_same_v<std::remove_cvref_t<decltype(cells)>, std::monostate>)
                RaiseNoBuffer("create");
            else
                return cells[index];
        },
        FBuffer);
}

void TBaseLinearRasterFrame::WriteCell(std::int32_t row, std::int32_t col, double value) {
    const std::size_t index = GetIndex(row, col);
    std::visit(
        [index, value]<class Cells>(Cells& cells) {
            if constexpr (std::is_same_v<Cells, std::monostate>)
                RaiseNoBuffer("create");
            else
                cells[index] = ToCell<typename Cells::value_type>(value);
        },
        FBuffer);
}

TScanLine TBaseLinearRasterFrame::ScanLine(std::int32_t row) {
    return LineOf<TScanLine>(FBuffer, GetIndex(row, 0), GetWidth());
}

TConstScanLine TBaseLinearRasterFrame::ScanLine(std::int32_t row) const {
    return LineOf<TConstScanLine>(FBuffer, GetIndex(row, 0), GetWidth());
}

void TBaseLinearRasterFrame::RowColToXY(double row, double col, double& x, double& y) const {
    x = ColToX(col);
    y = RowToY(row);
}

void TBaseLinearRasterFrame::XYToRowCol(double x, double y, double& row, double& col) const {
    col = XToCol(x);
    row = YToRow(y);
}

std::vector<double> TBaseLinearRasterFrame::ReadRow(std::int32_t row) const {
    const TConstScanLine cells = ScanLine(row);
    return WithinMemory([&cells] {
        return std::visit([](const auto& line) { return std::vector<double>(line.begin(), line.end() - 1); }, cells);
    });
}

std::vector<double> TBaseLinearRasterFrame::ReadCol(std::int32_t col) const {
    std::vector<double> values;
    WithinMemory([&] { values.reserve(static_cast<std::size_t>(GetHeight())); });
    for (std::int32_t row = 0; row < GetHeight(); ++row)
        values.push_back(ReadCell(row, col));
    return values;
}

void TBaseLinearRasterFrame::Fill(double value) {
    std::visit(
        [value]<class Cells>(Cells& cells) {
            if constexpr (std::is_same_v<Cells, std::monostate>)
                RaiseNoBuffer("fill");
            else if constexpr (!std::is_same_v<Cells, std::vector<double>>) // callers fill doubles cell by cell
                std::ranges::fill(cells, ToCell<typename Cells::value_type>(value));
        },
        FBuffer);
}

std::shared_ptr<IRasterFrame> TBaseLinearRasterFrame::Clone() const {
    throw ENotSupportedException(ClassNameOf(typeid(*this)) + QStringLiteral(".Clone"));
}

double TBaseLinearRasterFrame::XToCol(double x) const {
    return XAxis(*this).ToCell(x);
}

double TBaseLinearRasterFrame::YToRow(double y) const {
    return YAxis(*this).ToCell(y);
}

double TBaseLinearRasterFrame::ColToX(double col) const {
    return XAxis(*this).ToMap(col);
}

double TBaseLinearRasterFrame::RowToY(double row) const {
    return YAxis(*this).ToMap(row);
}

void TBaseLinearRasterFrame::Init(const TMapArea& area, std::int32_t width, std::int32_t height, TDataKind kind) {
    TBuffer buffer = NewBuffer(CellCountOf(width, height), BufferKindOf(kind));
    SetGeometry(area, width, height, kind);
    FBuffer = std::move(buffer);
}

void TBaseLinearRasterFrame::Init(const TMapArea& area, std::int32_t width, std::int32_t height,
                                  std::vector<float> cells) {
    Adopt(area, width, height, TDataKind::dkFloat, std::move(cells));
}

void TBaseLinearRasterFrame::Init(const TMapArea& area, std::int32_t width, std::int32_t height,
                                  std::vector<std::int32_t> cells) {
    Adopt(area, width, height, TDataKind::dkInt, std::move(cells));
}

void TBaseLinearRasterFrame::Init(const TBaseLinearRasterFrame& source) {
    const std::uint64_t count = CellCountOf(source.GetWidth(), source.GetHeight());
    const bool hasCells = !std::holds_alternative<std::monostate>(source.FBuffer);
    if (!hasCells && count > 0)
        RaiseNoBuffer("clone");
    TBuffer buffer = hasCells ? CopyOf(source.FBuffer) : NewBuffer(count, source.GetBufferKind());
    SetGeometry(source.GetBounds(), source.GetWidth(), source.GetHeight(), source.GetKind());
    FBuffer = std::move(buffer);
}

void TBaseLinearRasterFrame::SetGeometry(const TMapArea& area, std::int32_t width, std::int32_t height,
                                         TDataKind kind) {
    SetFrame(area, width, height, kind);
    FResolution = static_cast<double>(area.GetWidth() / width);
    FXOrder = area.Left < area.Right ? TOrder::doAsc : TOrder::doDesc;
    FYOrder = area.Top < area.Bottom ? TOrder::doAsc : TOrder::doDesc;
    FBuffer = std::monostate();
}

std::size_t TBaseLinearRasterFrame::GetIndex(std::int32_t row, std::int32_t col) const {
    if (row < 0 || row >= GetHeight())
        throw EArgumentException(QStringLiteral("Row index is out of range"));
    if (col < 0 || col >= GetWidth())
        throw EArgumentException(QStringLiteral("Col index is out of range"));
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(GetWidth()) + static_cast<std::size_t>(col);
}

TBaseLinearRasterFrame::TBuffer TBaseLinearRasterFrame::NewBuffer(std::uint64_t count, TDataKind kind) {
    switch (kind) {
    case TDataKind::dkByte:
        return NewValues<std::uint8_t>(count);
    case TDataKind::dkInt:
        return NewValues<std::int32_t>(count);
    case TDataKind::dkFloat:
        return NewValues<float>(count);
    case TDataKind::dkDouble:
        return NewValues<double>(count);
    default:
        RaiseNoBuffer("create");
    }
}

TBaseLinearRasterFrame::TBuffer TBaseLinearRasterFrame::CopyOf(const TBuffer& buffer) {
    return WithinMemory([&buffer] { return buffer; });
}

template<class Cell>
void TBaseLinearRasterFrame::Adopt(const TMapArea& area, std::int32_t width, std::int32_t height, TDataKind kind,
                                   std::vector<Cell> cells) {
    if (cells.size() != CellCountOf(width, height))
        throw EArgumentException(QStringLiteral("Number of cells does not match"));
    SetGeometry(area, width, height, kind);
    FBuffer = std::move(cells);
}

} // namespace lmx
