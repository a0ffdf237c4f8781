#pragma once

#include <QColor>
#include <QImage>
#include <QString>

namespace lmx {

/// The library's own image of a name that TExternalResources lists; null for any other name.
QImage DefaultImage(const QString& name, double ratio, const QColor& ink);

} // namespace lmx
