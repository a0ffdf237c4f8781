#pragma once

#include <lmx/Formats/Shapes/Private/lmxCodePage.h>
#include <lmx/Formats/Shapes/Private/lmxDBFHeader.h>
#include <lmx/Formats/Shapes/Private/lmxDBFMemo.h>

#include <QByteArrayView>
#include <QString>

namespace lmx {

/// The text of a field in one record, of which `record` holds all bytes. Texts lose blanks at their end, numbers and
/// dates at both ends, and stand as in the file otherwise. Binary numbers are converted: integers and currency (four
/// decimals) in decimal, doubles by FloatToStr with a point, date-times as "YYYYMMDD hh:mm:ss", bytes in hexadecimal.
/// Empty is what is missing: blanks, NULs, a date of zeros, a value whose null flag is set, a picture.
QString DBFCellText(const TDBFHeader& header, const TDBFColumn& column, QByteArrayView record,
                    const ICodePage& codePage, TDBFMemo& memo);

} // namespace lmx
