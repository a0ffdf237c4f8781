#pragma once

#include <lmx/Raster/lmxBaseRasterFrame.h>
#include <lmx/Runtime/lmxExport.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <variant>
#include <vector>

namespace lmx {

/// A grid of equally spaced rows and columns whose cells are in memory, row after row, in the narrowest type that holds
/// them. Frames of one size and kind are made by Init in the constructors of the derived classes.
///
/// Messages about a buffer kind ("... Unsupported BufferKind") come from frames whose cells were never created.
class LMX_EXPORT TBaseLinearRasterFrame : public TBaseRasterFrame, public virtual ILinearRasterFrame {
public:
    double ReadCell(std::int32_t row, std::int32_t col) const override;
    void WriteCell(std::int32_t row, std::int32_t col, double value) override;
    TScanLine ScanLine(std::int32_t row) override;
    TConstScanLine ScanLine(std::int32_t row) const override;
    bool GetIsLinear() const override { return true; }
    void RowColToXY(double row, double col, double& x, double& y) const override;
    void XYToRowCol(double x, double y, double& row, double& col) const override;
    std::vector<double> ReadRow(std::int32_t row) const override;
    std::vector<double> ReadCol(std::int32_t col) const override;
    void Fill(double value) override;
    std::shared_ptr<IRasterFrame> Clone() const override;
    double XToCol(double x) const override;
    double YToRow(double y) const override;
    double ColToX(double col) const override;
    double RowToY(double row) const override;
    double GetResolution() const override { return FResolution; }

    TOrder GetXOrder() const { return FXOrder; } ///< doAsc if X grows along the columns
    TOrder GetYOrder() const { return FYOrder; } ///< doAsc if Y grows along the rows; north-up frames have doDesc

protected:
    TBaseLinearRasterFrame() = default;

    /// Makes this a frame of zeros. An area without width or height has descending axes.
    /// Whatever an Init raises, the frame is as it was.
    /// @throws EArgumentException "Frame size is negative"; EOutOfMemory if there is no room for the cells.
    /// @throws EInvalidOperation "Cannot create buffer. Unsupported BufferKind" for a kind outside the enumeration.
    void Init(const TMapArea& area, std::int32_t width, std::int32_t height, TDataKind kind);

    /// Makes this a frame of cells that are there already; the kind follows from their type.
    /// @throws EArgumentException "Frame size is negative", "Number of cells does not match".
    void Init(const TMapArea& area, std::int32_t width, std::int32_t height, std::vector<float> cells);
    void Init(const TMapArea& area, std::int32_t width, std::int32_t height, std::vector<std::int32_t> cells);

    /// Makes this a copy of another frame's area, size, kind and cells. The tables are not copied.
    /// @throws EInvalidOperation "Cannot clone buffer. Unsupported BufferKind" if the source's cells were never
    /// created; EOutOfMemory as above.
    void Init(const TBaseLinearRasterFrame& source);

    /// What Init does before it creates the cells.
    void SetGeometry(const TMapArea& area, std::int32_t width, std::int32_t height, TDataKind kind);

    /// Place of a cell in the buffer.
    /// @throws EArgumentException as ReadCell.
    std::size_t GetIndex(std::int32_t row, std::int32_t col) const;

private:
    // The alternative in use is the one of the buffer kind; none before the cells are created.
    using TBuffer = std::variant<std::monostate, std::vector<std::uint8_t>, std::vector<std::int32_t>,
                                 std::vector<float>, std::vector<double>>;

    static TBuffer NewBuffer(std::uint64_t count, TDataKind kind);
    static TBuffer CopyOf(const TBuffer& buffer);
    template<class Cell>
    void Adopt(const TMapArea& area, std::int32_t width, std::int32_t height, TDataKind kind, std::vector<Cell> cells);

    double FResolution = 0;
    TBuffer FBuffer;
    TOrder FXOrder = TOrder::doDesc;
    TOrder FYOrder = TOrder::doDesc;
};

} // namespace lmx
