#pragma once

#include <lmx/Runtime/lmxExport.h>

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <limits>

namespace lmx {

/// Takes characters up to U+0020 off both ends, and no others.
LMX_EXPORT QString Trim(const QString& text);

/// Pieces between separators, empty ones kept. An empty text has no pieces.
LMX_EXPORT QStringList Split(const QString& text, QChar separator);

/// Whether two texts are equal when the letters A to Z and a to z are taken as the same.
LMX_EXPORT bool SameText(QStringView a, QStringView b);

/// Lines of a text; they end at LF, CR or CRLF. A final line break adds no empty line.
LMX_EXPORT QStringList SplitLines(const QString& text);

/// The line break of written files and of clipboard text.
LMX_EXPORT QString LineBreak();

/// Content of a file, or what a pipe or device gives until its end.
/// @throws EFileException if it cannot be read or "does not fit into memory".
/// @throws EFileFormatException if it holds more than `mostBytes`; no more of it is read then, of a file nothing.
LMX_EXPORT QByteArray ReadFile(const QString& fileName, qint64 mostBytes = std::numeric_limits<qint64>::max());

/// Lines of a UTF-8 text file; a byte order mark is skipped.
/// @throws EFileException and EFileFormatException as ReadFile.
LMX_EXPORT QStringList ReadLines(const QString& fileName, qint64 mostBytes = std::numeric_limits<qint64>::max());

/// Replaces a file in one step: after a failure the old content is still there.
/// @throws EFileException if it cannot be written.
LMX_EXPORT void WriteFile(const QString& fileName, const QByteArray& content);

/// Replaces a file by UTF-8 lines, each ended by the line break, without a byte order mark.
/// @throws EFileException if it cannot be written.
LMX_EXPORT void WriteLines(const QString& fileName, const QStringList& lines);

/// The file beside `fileName` with its suffix replaced by `suffix` (no dot), found without regard to case.
/// Empty if there is none.
LMX_EXPORT QString FindSisterFile(const QString& fileName, const QString& suffix);

} // namespace lmx
