#pragma once

#include <lmx/Raster/lmxBaseLinearRasterFrame.h>
#include <lmx/Runtime/lmxExport.h>

#include <cstdint>
#include <memory>

namespace lmx {

/// A raster in memory that belongs to no file.
class LMX_EXPORT TLinearRasterFrame : public TBaseLinearRasterFrame {
public:
    /// A frame of zeros.
    /// @throws EArgumentException "Frame size is negative"; EOutOfMemory if there is no room for the cells.
    /// @throws EInvalidOperation "Cannot create buffer. Unsupported BufferKind" for a kind outside the enumeration.
    TLinearRasterFrame(const TMapArea& area, std::int32_t width, std::int32_t height, TDataKind kind);

    /// A copy of a frame that is a TBaseLinearRasterFrame: area, size, kind and cells, not the tables.
    /// @throws EInvalidOperation "Source not supported" for any other frame, and for null; EOutOfMemory as above.
    explicit TLinearRasterFrame(const IRasterFrame* source);

    std::shared_ptr<IRasterFrame> Clone() const override;
};

} // namespace lmx
