#pragma once

#include <QString>
#include <QStringList>

#include <memory>

namespace lmx {
class IBaseColorCalculator;
struct TValueRange;
} // namespace lmx

// Ready ways to colour a raster: the scales of examples/data as gradients and as even palettes, classes, and two
// gradients that meet at zero.

/// Names of the schemes, in the order of a list.
QStringList ColorSchemeNames();

/// A calculator for values of a range; the one value of a range without width is in its middle. `folder` holds the
/// folders "gradients" and "palettes".
/// @throws lmx::EArgumentException "name" for an unknown name; lmx::Exception if a scale cannot be read.
std::shared_ptr<lmx::IBaseColorCalculator> MakeColorScheme(const QString& name, const lmx::TValueRange& range,
                                                           const QString& folder);
