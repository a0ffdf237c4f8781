#pragma once

#include <lmx/Coordinates/wskMappingTypes.h>
#include <lmx/Raster/lmxRasterFrame.h>
#include <lmx/Raster/lmxRasterTables.h>
#include <lmx/Runtime/lmxExport.h>

#include <cstdint>

namespace lmx {

/// Root of the raster frames: place, size, kinds and tables. How cells are stored and where they lie is up to the
/// derived classes. A new frame has no cells.
class LMX_EXPORT TBaseRasterFrame : public virtual IRasterFrame {
public:
    TBaseRasterFrame(const TBaseRasterFrame&) = delete;
    TBaseRasterFrame& operator=(const TBaseRasterFrame&) = delete;

    TMapArea GetBounds() const final { return FBounds; }
    void SetBounds(const TMapArea& bounds) final { FBounds = bounds; }
    double Read(double x, double y) const final;
    double Read(double x, double y, TInterpolationOption option) const final;
    std::int32_t GetWidth() const final { return FWidth; }
    std::int32_t GetHeight() const final { return FHeight; }
    TDataKind GetKind() const final { return FKind; }
    TDataKind GetBufferKind() const final { return FBufferKind; }
    TAttributeTable& GetAttributes() final { return FAttributes; }
    const TAttributeTable& GetAttributes() const final { return FAttributes; }
    TIndexTable& GetIndexTable() final { return FIndexTable; }
    const TIndexTable& GetIndexTable() const final { return FIndexTable; }
    TRangeTable& GetRangeTable() final { return FRangeTable; }
    const TRangeTable& GetRangeTable() const final { return FRangeTable; }
    void Save(const QString& fileName) const override;

protected:
    TBaseRasterFrame() = default;

    /// @throws EArgumentException "Frame size is negative".
    static std::uint64_t CellCountOf(std::int32_t width, std::int32_t height);
    /// How values of a kind are stored: the three kinds that mean something by their integers as integers.
    static TDataKind BufferKindOf(TDataKind kind);

    /// Sets place, size and kinds.
    /// @throws EArgumentException "Frame size is negative"; the frame is unchanged then.
    void SetFrame(const TMapArea& bounds, std::int32_t width, std::int32_t height, TDataKind kind);

private:
    double ReadBilinear(double row, double col) const;

    TMapArea FBounds;
    std::int32_t FWidth = 0;
    std::int32_t FHeight = 0;
    TDataKind FKind = TDataKind::dkByte;
    TDataKind FBufferKind = TDataKind::dkByte;
    TAttributeTable FAttributes;
    TIndexTable FIndexTable;
    TRangeTable FRangeTable;
};

} // namespace lmx
