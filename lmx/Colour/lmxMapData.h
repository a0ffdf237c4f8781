#pragma once

#include <lmx/Runtime/lmxExport.h>

#include <cstdint>

namespace lmx {

/// The numbers of a raster. Columns and rows count from 0, row 0 in the north.
class LMX_EXPORT IMapData {
public:
    virtual ~IMapData() = default;

    /// Number of a cell inside the raster; the position is not checked.
    virtual float GetMapCell(std::int32_t x, std::int32_t y) const = 0;
    virtual std::int32_t GetWidth() const = 0;
    virtual std::int32_t GetHeight() const = 0;
};

/// Says which cells of a raster hold data.
class LMX_EXPORT ICookieData {
public:
    virtual ~ICookieData() = default;

    /// 1 for a cell with data; any other number for one without. The position is not checked.
    virtual std::uint8_t GetCookieCell(std::int32_t x, std::int32_t y) const = 0;
    virtual std::int32_t GetWidth() const = 0;
    virtual std::int32_t GetHeight() const = 0;
};

} // namespace lmx
