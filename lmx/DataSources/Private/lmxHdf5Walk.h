#pragma once

#include <QString>

namespace lmx {

/// Looks at all that an HDF5 file holds before anything is read from it, on the reader thread. A file that takes its
/// cells from other files would show any file of the user to who gave it to him.
/// @throws EClimateFile if it stores cells outside of itself, joins data sets of other files or links to other files;
/// if its groups lie deeper than 32 or it holds more than 10,000 things; or if it is damaged.
void CheckHdf5(const QString& path);

} // namespace lmx
