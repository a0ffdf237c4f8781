#pragma once

#include <lmx/Coordinates/wskMappingTypes.h>
#include <lmx/Runtime/lmxExport.h>

#include <cstdint>
#include <functional>
#include <span>

namespace lmx {

class IRasterFrame;
class TAbstractImage;

/// A grid of numbers as computations see it, whatever holds it: equal cells between outer edges, read row by row. What
/// it was made of must outlive it and not change meanwhile.
struct LMX_EXPORT TField {
    TMapArea Bounds; ///< outer edges: row 0 at Top, column 0 at Left
    std::int32_t Width = 0;
    std::int32_t Height = 0;
    bool IsGeographic = false; ///< bounds are degrees of longitude and latitude; else the cells are of one area
    /// Reads row `row`, counted from 0; `numbers` has the field's width. A number that TSpatialConst calls a flag is
    /// missing.
    std::function<void(std::int32_t row, std::span<double> numbers)> ReadRow;

    /// Cells in degrees are told by the header.
    /// @throws EOutOfMemory if there is no room for a row.
    static TField Of(const TAbstractImage& image);
    /// Frames do not say what their units are: `isGeographic` does.
    static TField Of(const IRasterFrame& frame, bool isGeographic);
};

} // namespace lmx
