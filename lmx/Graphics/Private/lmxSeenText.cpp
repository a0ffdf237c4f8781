#include <lmx/Graphics/Private/lmxSeenText.h>

#include <lmx/Graphics/lmxBitmap32.h>

#include <QFontMetrics>
#include <QTextLayout>
#include <QTextOption>

#include <algorithm>

namespace lmx {

namespace {

constexpr qsizetype ShortestPart = 2048;
constexpr int SpareLines = 3; // what is cut off must not change the lines that are seen

/// Whether the letters stand from the left to the right, all of them, by themselves.
bool RunsToTheRight(const QString& text) {
    bool isKnown = false;
    for (const char32_t letter : text.toUcs4()) {
        switch (QChar::direction(letter)) {
        case QChar::DirL:
            isKnown = true;
            break;
        case QChar::DirR:
        case QChar::DirAL:
        case QChar::DirAN:
        case QChar::DirLRE:
        case QChar::DirLRO:
        case QChar::DirRLE:
        case QChar::DirRLO:
        case QChar::DirPDF:
        case QChar::DirLRI:
        case QChar::DirRLI:
        case QChar::DirFSI:
        case QChar::DirPDI:
            return false;
        default:
            break;
        }
    }
    return isKnown;
}

/// The beginning of a text, cut behind a blank if there is one near.
QString PartOf(const QString& text, qsizetype length) {
    const qsizetype blank = text.lastIndexOf(u' ', length - 1);
    return text.left(blank > length - length / 4 ? blank + 1 : length);
}

/// Whether what follows `part` is not seen.
bool IsEnough(const QString& part, const QFont& font, int width, unsigned flags, TPoint seenEnd) {
    QString lines = part;
    lines.replace(QStringLiteral("\r\n"), QStringLiteral("\n")).replace(u'\r', u'\n');
    lines.replace(u'\n', flags & dtSingleLine ? QChar(u' ') : QChar(QChar::LineSeparator));
    const QFontMetrics metrics(font);
    const double below = seenEnd.Y + 1.0 * SpareLines * metrics.lineSpacing();
    const double beside = seenEnd.X + 16.0 * metrics.maxWidth();
    constexpr double Endless = 1 << 24;
    QTextLayout layout(lines, font);
    QTextOption option;
    option.setWrapMode(flags & dtWordBreak ? QTextOption::WordWrap : QTextOption::ManualWrap);
    layout.setTextOption(option);
    layout.beginLayout();
    double height = 0;
    double last = 0; // width of the last line
    for (QTextLine line = layout.createLine(); line.isValid() && height <= below; line = layout.createLine()) {
        line.setLineWidth(flags & dtWordBreak ? std::max(width, 0) : Endless);
        height += line.height();
        last = line.naturalTextWidth();
        if (line.textStart() + line.textLength() >= lines.size())
            break;
    }
    const bool isCutBelow = height > below && layout.lineCount() > 0;
    layout.endLayout();
    // A line that is cut begins where it would begin whole, if it stands on the left.
    return isCutBelow || (!(flags & (dtCenter | dtRight)) && last > beside);
}

} // namespace

qsizetype SeenLength(const QString& text, const QFont& font, int width, unsigned flags, TPoint seenEnd) {
    for (qsizetype length = ShortestPart; length < text.size() / 2; length *= 2) {
        const QString part = PartOf(text, length);
        if (!RunsToTheRight(part))
            break;
        if (IsEnough(part, font, width, flags, seenEnd))
            return part.size();
    }
    return text.size();
}

} // namespace lmx
