#pragma once

#include <QString>

#include <memory>
#include <vector>

namespace lmx {
class IBaseColorCalculator;
struct TValueRange;
} // namespace lmx

// Ready ways to colour a raster: the scales of the library's pack, some of them in steps, and two gradients that meet
// at zero.

struct TColorSchemeName {
    QString Name;
    QString Group; ///< those of a group stand together
};

/// The schemes, in the order of a list.
std::vector<TColorSchemeName> ColorSchemeNames();

/// A calculator for values of a range; the one value of a range without width is in its middle.
/// @throws lmx::EArgumentException "name" for an unknown name.
std::shared_ptr<lmx::IBaseColorCalculator> MakeColorScheme(const QString& name, const lmx::TValueRange& range);
