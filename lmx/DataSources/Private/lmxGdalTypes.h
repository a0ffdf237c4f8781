#pragma once

#include <lmx/DataSources/Private/lmxClimateCells.h>

#include <gdal.h>

namespace lmx {

/// @param cells only written if it is a type of real numbers
inline bool CellTypeOf(GDALDataType type, TClimateCellType& cells) {
    switch (type) {
    case GDT_Byte:
        cells = TClimateCellType::ctUInt8;
        return true;
    case GDT_UInt16:
        cells = TClimateCellType::ctUInt16;
        return true;
    case GDT_Int16:
        cells = TClimateCellType::ctInt16;
        return true;
    case GDT_UInt32:
        cells = TClimateCellType::ctUInt32;
        return true;
    case GDT_Int32:
        cells = TClimateCellType::ctInt32;
        return true;
    case GDT_UInt64:
        cells = TClimateCellType::ctUInt64;
        return true;
    case GDT_Int64:
        cells = TClimateCellType::ctInt64;
        return true;
    case GDT_Float32:
        cells = TClimateCellType::ctFloat;
        return true;
    case GDT_Float64:
        cells = TClimateCellType::ctDouble;
        return true;
    default:
        break;
    }
#if GDAL_VERSION_NUM >= 3070000
    if (type == GDT_Int8) {
        cells = TClimateCellType::ctInt8;
        return true;
    }
#endif
    return false;
}

/// A dataset of GDAL, given back on the thread that the owner chooses.
struct TCloseDataset {
    void operator()(void* dataset) const { GDALClose(dataset); }
};

} // namespace lmx
