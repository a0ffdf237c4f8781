#pragma once

#include <lmx/Formats/Idrisi/lmxVectorData.h>

#include <QByteArray>
#include <QString>

namespace lmx {

/// Reads the bytes of a vector file of the newer generation (.vct): binary, of any object type.
/// @throws EFileFormatException with `fileName` if it is cut short, its counts contradict its length or each other, or
/// a coordinate is no finite number of single precision.
TVectorData ParseVectorBytes(const QByteArray& bytes, const QString& fileName);

/// The bytes of such a file. They read back as exactly the same data.
QByteArray FormatVectorBytes(const TVectorData& data);

/// Reads the bytes of a vector file of the older generation (.vec): numbers as text, or in binary. `type` is what the
/// documentation says. Texts are points, whose labels stand elsewhere; where it does not say, the features tell.
/// Files in binary were written in several layouts: the first one counts that uses up the file.
/// @throws EFileFormatException with `fileName` as above, or if no layout fits.
TVectorData ParseOldVectorBytes(const QByteArray& bytes, TVectorObjectType type, const QString& fileName);

} // namespace lmx
