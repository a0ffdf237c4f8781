#pragma once

#include <lmx/Runtime/lmxExport.h>

#include <cstdint>
#include <memory>
#include <span>
#include <variant>
#include <vector>

class QString;

namespace lmx {

struct TMapArea;
class TAttributeTable;
class TIndexTable;
class TRangeTable;

/// What the values of a raster are. The first four are also the ways in which values are stored; the others mean
/// something by their integers: a key of the index table, a value that falls into a band of the range table, a colour.
enum class TDataKind { dkByte, dkInt, dkFloat, dkDouble, dkIndexed, dkRanged, dkColor32 };

/// How a value between the cells is read.
enum class TInterpolationOption { ioDefault, ioBilinear, ioNearestNeighbor };

/// Whether an axis grows or falls along the columns or rows.
enum class TOrder { doAsc, doDesc };

/// The cells of one row in the buffer, typed by how they are stored. The index of the alternative is the ordinal of the
/// frame's buffer kind.
using TScanLine = std::variant<std::span<std::uint8_t>, std::span<std::int32_t>, std::span<float>, std::span<double>>;
using TConstScanLine = std::variant<std::span<const std::uint8_t>, std::span<const std::int32_t>,
                                    std::span<const float>, std::span<const double>>;

/// A rectangular grid of numbers and the map area that it covers.
///
/// Two kinds of coordinates meet here. Map coordinates are X and Y of the area, whose edges are the outer edges of the
/// grid. Cell coordinates are a row and a column: row 0 lies at `Top`, column 0 at `Left`, and whole numbers are the
/// top-left corners of the cells, so column `GetWidth()` is the right edge of the last column. Converting neither
/// rounds nor clips; a frame without width or height gives infinities and NaN.
///
/// No lock: any number of threads may read while nobody writes.
class LMX_EXPORT IRasterFrame {
public:
    virtual ~IRasterFrame() = default;

    virtual TMapArea GetBounds() const = 0;
    /// Moves the frame on the map. The resolution and the directions of the axes stay as they were.
    virtual void SetBounds(const TMapArea& bounds) = 0;

    /// The value at a map point, by nearest neighbour.
    virtual double Read(double x, double y) const = 0;
    /// The value at a map point.
    ///
    /// `ioNearestNeighbor`, also `ioDefault`: the cell whose top-left corner is nearest, ties to the even one. The
    /// right half of the last column and the lower half of the last row are nearest to a cell that is not there; half a
    /// cell left of and above the frame there is one.
    /// `ioBilinear`: between the top-left corners of the four cells around; the last column and row extend to the edge.
    /// Flag values are blended like any others.
    /// @throws EArgumentException "Row index is out of range", "Col index is out of range", the row being tested first.
    /// @throws EInvalidOp "Invalid floating point operation" if a cell coordinate is no number, as that of a NaN.
    /// @throws EInvalidOperation "InptOpt not supported" for any other option.
    virtual double Read(double x, double y, TInterpolationOption option) const = 0;

    /// The row without its last column: `GetWidth() - 1` values (docs/oddities.md).
    /// @throws EArgumentException as ScanLine; EOutOfMemory.
    virtual std::vector<double> ReadRow(std::int32_t row) const = 0;
    /// `GetHeight()` values from the top.
    /// @throws EArgumentException as ReadCell; EOutOfMemory. A frame without rows gives no values for any column.
    virtual std::vector<double> ReadCol(std::int32_t col) const = 0;

    /// @throws EArgumentException "Row index is out of range", "Col index is out of range", in this order.
    virtual double ReadCell(std::int32_t row, std::int32_t col) const = 0;
    /// Stores a value: bytes and integers rounded, ties to even, keeping their low bits; floats narrowed.
    /// @throws EArgumentException as ReadCell; EInvalidOp if a byte or an integer is made from what does not round to
    /// 64 bits. The cell is unchanged then.
    virtual void WriteCell(std::int32_t row, std::int32_t col, double value) = 0;

    virtual void RowColToXY(double row, double col, double& x, double& y) const = 0;
    virtual void XYToRowCol(double x, double y, double& row, double& col) const = 0;
    virtual double XToCol(double x) const = 0;
    virtual double YToRow(double y) const = 0;
    virtual double ColToX(double col) const = 0;
    virtual double RowToY(double row) const = 0;

    /// The cells of a row where they stand, valid as long as the frame.
    /// @throws EArgumentException "Row index is out of range"; "Col index is out of range" for a frame without columns.
    virtual TScanLine ScanLine(std::int32_t row) = 0;
    virtual TConstScanLine ScanLine(std::int32_t row) const = 0;

    virtual std::int32_t GetWidth() const = 0;  ///< columns
    virtual std::int32_t GetHeight() const = 0; ///< rows
    virtual TDataKind GetKind() const = 0;
    virtual TDataKind GetBufferKind() const = 0; ///< one of the first four

    virtual TAttributeTable& GetAttributes() = 0;
    virtual const TAttributeTable& GetAttributes() const = 0;
    virtual TIndexTable& GetIndexTable() = 0;
    virtual const TIndexTable& GetIndexTable() const = 0;
    virtual TRangeTable& GetRangeTable() = 0;
    virtual const TRangeTable& GetRangeTable() const = 0;

    virtual bool GetIsLinear() const = 0; ///< whether rows and columns are equally spaced

    /// A frame of its own with the same cells and empty tables.
    /// @throws EOutOfMemory; ENotSupportedException with class and operation for a frame that cannot be cloned.
    virtual std::shared_ptr<IRasterFrame> Clone() const = 0;

    /// Stores one value in all cells, as WriteCell does. A frame of doubles stays as it is (docs/oddities.md).
    /// @throws EInvalidOp as WriteCell.
    virtual void Fill(double value) = 0;

    /// @throws ENotImplemented "No default Save implementation exists for RasterFrame".
    virtual void Save(const QString& fileName) const = 0;
};

/// A grid of equally spaced rows and columns.
class LMX_EXPORT ILinearRasterFrame : public virtual IRasterFrame {
public:
    /// Map units a column, taken from the width alone when the frame was made; rows may be spaced otherwise.
    virtual double GetResolution() const = 0;
};

/// A grid whose rows or columns are not equally spaced.
class LMX_EXPORT INonLinearRasterFrame : public virtual IRasterFrame {};

} // namespace lmx
