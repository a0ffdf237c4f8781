#pragma once

#include <lmx/Formats/Idrisi/lmxImageHeader.h>

#include <QByteArray>
#include <QString>

#include <cstdint>

namespace lmx {

/// What the text of a documentation file says, and which of the entries that matter for the cells it leaves out.
struct TImageDocumentation {
    TImageHeader Header;
    bool HasDataType = false;   ///< otherwise the length of the data file tells
    bool HasValueRange = false; ///< minimum and maximum; otherwise the cells tell
};

/// The two written forms: "file format" first and `code` legend lines, or the older one with `category` lines.
enum class TDocumentationForm { dfWindows, dfDos };

/// Reads the text of a documentation file. One entry a line, key and value separated by the first colon. Of the key
/// only its letters and digits count, in any case. Unknown keys and lines without a colon are skipped, of a repeated
/// entry the first counts, and a number that is none counts as absent. A number in `flag value` declares a flag unless
/// the flag's meaning is "none".
/// @throws EFileFormatException with `fileName` if columns, rows or a bound are missing or unusable, or a type is
/// unknown; it names the line if there is one.
TImageDocumentation ParseImageDocumentation(const QByteArray& text, const QString& fileName);

/// Settles the data type of documentation without one: real for text, otherwise the type whose cells fill a data file
/// of `dataSize` bytes.
/// @throws EFileFormatException with `fileName` if none does, or the data are packed.
void SettleDataType(TImageDocumentation& documentation, std::uint64_t dataSize, const QString& fileName);

/// Text of a documentation file: fixed keys in fixed order, lines ended by CRLF.
QByteArray FormatImageDocumentation(const TImageHeader& header, TDocumentationForm form);

} // namespace lmx
