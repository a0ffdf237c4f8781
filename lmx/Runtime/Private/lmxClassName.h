#pragma once

#include <QString>

#include <typeinfo>

namespace lmx {

/// Name of a class without its namespaces, as it stands in the source: "TIdrisiMapLayer".
QString ClassNameOf(const std::type_info& type);

} // namespace lmx
