#pragma once

#include <lmx/Runtime/lmxExport.h>

#include <cstdint>

namespace lmx {

/// Map or cookie data that keeps its cells in memory, row by row. A renderer reads whole rows of it instead of asking
/// for each cell.
class LMX_EXPORT IRasterRows {
public:
    virtual ~IRasterRows() = default;

    /// The numbers of row `y`, as GetMapCell gives them; null if they have to be asked for one by one.
    virtual const float* GetMapRow(std::int32_t y) const = 0;

    /// The cookies of row `y`, as GetCookieCell gives them; null if they have to be asked for one by one.
    virtual const std::uint8_t* GetCookieRow(std::int32_t y) const = 0;
};

} // namespace lmx
