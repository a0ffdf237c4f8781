#pragma once

#include <QByteArray>
#include <QString>

namespace lmx {

/// Text of an old data file, whose code page nothing names: UTF-8 if the bytes are valid UTF-8, otherwise
/// Windows-1252 (its five unused bytes become control characters). A byte order mark is skipped.
QString DecodeAnsiText(const QByteArray& bytes);

/// Bytes that DecodeAnsiText turns back into `text`: Windows-1252, which other programs expect, if it holds every
/// character and the result does not read as UTF-8; otherwise UTF-8.
QByteArray EncodeAnsiText(const QString& text);

} // namespace lmx
