#pragma once

#include <lmx/Runtime/lmxGeometry.h>

#include <QFont>
#include <QString>

namespace lmx {

/// How many letters of a text must be laid out for what is seen of it to look as if all were: a text of a megabyte in a
/// small box costs what the box shows. All of them where that cannot be told from the beginning of the text alone.
/// `width` and `seenEnd`, the corner at the bottom right of what is seen, are pixels counted from the corner of the
/// box; `flags` are TTextFlags.
qsizetype SeenLength(const QString& text, const QFont& font, int width, unsigned flags, TPoint seenEnd);

} // namespace lmx
