#pragma once

#include <lmx/Climate/lmxClimateVariable.h>
#include <lmx/DataSources/lmxDataSourcesExport.h>
#include <lmx/Runtime/lmxNullable.h>

#include <QString>

namespace lmx {

/// What a file says of a variable, as far as it tells which climate variable that is. Unknown texts are empty.
struct TClimateNames {
    QString Name; ///< in the file
    QString StandardName;
    QString LongName;
    QString Units;
    QString CellMethods;
    QString MipEra;         ///< "CMIP6" of the whole file
    bool HasLevels = false; ///< a level axis, or a pressure as a scalar coordinate
    QString GribElement;    ///< "TMP"; empty for other files
    QString GribLevel;      ///< "2-HTGL", "85000-ISBL"
};

/// The climate variable that the names decide, or nil: nothing is guessed.
///
/// The first that decides: a short name of the table whose standard name, if the file has one, is the table's; a
/// standard name that one variable of the table has, or that level, cell methods and era tell apart, if the units
/// convert; other standard names in use; the elements of GRIB.
LMX_DATASOURCES_EXPORT TNullable<TClimateVariable> FindClimateVariable(const TClimateNames& names);

/// What the long name suggests where the names decide nothing, to be offered to the user and not to be set by itself.
LMX_DATASOURCES_EXPORT TNullable<TClimateVariable> SuggestClimateVariable(const TClimateNames& names);

} // namespace lmx
