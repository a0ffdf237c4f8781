#pragma once

#include <lmx/Graphics/Private/lmxLongWords.h>
#include <lmx/Runtime/lmxGeometry.h>

#include <QFont>
#include <QString>

QT_BEGIN_NAMESPACE
class QPainter;
QT_END_NAMESPACE

namespace lmx {

/// From this length on a text is worth looking for what is seen of it.
constexpr qsizetype LongText = 4096;

/// What must be laid out of a text for what is seen of it to look as if all were: a text of a megabyte in a small box
/// costs what the box shows. `width` and `seenEnd`, the corner at the bottom right of what is seen, are pixels counted
/// from the corner of the box; `flags` are TTextFlags.
///
/// Lines that are broken between words look the same pixel by pixel, whichever way their letters run; with words too
/// wide for a line, too, but for the exceptions that ShortenWords names. Where brackets or signs of direction stand
/// among letters that run to the left, those are heard that stand within 65,536 letters behind the beginning, or
/// within twice of what is seen if that is more. Lines that are not broken are cut if they stand on the left and run to
/// the right, else not.
TLaidText SeenText(const QString& text, const QFont& font, int width, unsigned flags, TPoint seenEnd);

/// Draws a text as QPainter::drawText would in a box of that size at (0, 0), from left to right.
void DrawLaidText(QPainter& painter, const TLaidText& text, TSize box, unsigned flags);

} // namespace lmx
