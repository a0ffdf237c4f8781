#pragma once

#include <lmx/DataSources/lmxDataSourcesExport.h>
#include <lmx/Runtime/lmxExceptions.h>

namespace lmx {

/// A climate file that cannot be read, or whose content cannot be shown truly. The problem names the variable and the
/// step if it lies in one, and tells what to do about it where something can be done.
class LMX_DATASOURCES_EXPORT EClimateFile : public EFileException {
public:
    using EFileException::EFileException;
};

} // namespace lmx
