#pragma once

#include <lmx/DataSources/lmxDataSourcesExport.h>

#include <QString>

#include <optional>

namespace lmx {

/// Which picture of which climate file an image shows. The lineage in the image's header keeps it, in documents too.
struct LMX_DATASOURCES_EXPORT TClimateOrigin {
    QString FileName; ///< with its whole path, or the address of a file on a host
    QString Variable;
    QString TimeCaption;  ///< empty if there is no time
    QString LevelCaption; ///< empty if there are no levels

    /// A line for each, as far as there are any.
    QString ToLineage() const;
    /// The inverse. None for a lineage that says something else.
    static std::optional<TClimateOrigin> FromLineage(const QString& lineage);

    friend bool operator==(const TClimateOrigin&, const TClimateOrigin&) = default;
};

} // namespace lmx
