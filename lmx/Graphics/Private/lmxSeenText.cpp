#include <lmx/Graphics/Private/lmxSeenText.h>

#include <lmx/Graphics/lmxBitmap32.h>

#include <QFontMetrics>
#include <QPainter>
#include <QTextLayout>
#include <QTextOption>

#include <algorithm>
#include <cmath>
#include <utility>

namespace lmx {

namespace {

constexpr qsizetype ShortestPart = 2048;
constexpr qsizetype ShortestDoubtfulPart = 65536;
constexpr int SpareLines = 3; // what is cut off must not change the lines that are seen
constexpr double EndlessWidth = 1 << 24;

/// What the letters of a text say about how it runs.
struct TDirections {
    explicit TDirections(const QString& text) {
        for (const char32_t letter : text.toUcs4()) {
            const QChar::Direction direction = QChar::direction(letter);
            HasLetters |= QChar::script(letter) > QChar::Script_Common;
            HasBrackets |= QChar::hasMirrored(letter);
            HasSigns |= IsDirectionSign(direction);
            RunsToTheLeft |= direction == QChar::DirR || direction == QChar::DirAL || direction == QChar::DirAN;
        }
    }

    /// Whether letters far behind could decide how these run.
    bool IsDoubtful() const { return !HasLetters || HasSigns || (RunsToTheLeft && HasBrackets); }

    bool HasLetters = false; ///< that tell the script
    bool HasBrackets = false;
    bool HasSigns = false; ///< of direction
    bool RunsToTheLeft = false;
};

bool IsStrong(QChar letter) {
    const QChar::Direction direction = letter.direction();
    return direction == QChar::DirL || direction == QChar::DirR || direction == QChar::DirAL;
}

/// The beginning of a text, cut behind a blank if there is one near: one that follows a letter, so that what stands
/// before it runs the same way with all that follows.
QString PartOf(const QString& text, qsizetype length) {
    for (qsizetype blank = length - 1; blank > length - length / 4; --blank)
        if (text[blank] == u' ' && IsStrong(text[blank - 1]))
            return text.left(blank + 1);
    return text.left(length);
}

/// Lines of a text as QPainter::drawText lays them out in a box of that width.
class TLines {
public:
    TLines(const QString& text, const QFont& font, int width, unsigned flags)
        : FLayout(text, font),
          FLeading(QFontMetricsF(font).leading()),
          FWidth(flags & dtWordBreak ? std::max(width, 0) : EndlessWidth),
          FHeight(-FLeading) {
        QTextOption option;
        option.setTextDirection(Qt::LeftToRight);
        option.setAlignment(Qt::AlignLeft);
        FLayout.setTextOption(option);
        FLayout.setCacheEnabled(true);
    }

    /// As many as reach down to there.
    void LayOut(double bottom) {
        FLayout.beginLayout();
        for (QTextLine line = FLayout.createLine(); line.isValid(); line = FLayout.createLine()) {
            line.setLineWidth(FWidth);
            FHeight = std::ceil(FHeight + FLeading);
            line.setPosition({0, FHeight});
            FHeight += line.height();
            if (FHeight >= bottom)
                break;
        }
        FLayout.endLayout();
    }

    QTextLayout& GetLayout() { return FLayout; }
    double GetHeight() const { return FHeight; }

private:
    QTextLayout FLayout;
    double FLeading;
    double FWidth;
    double FHeight;
};

/// Whether what follows `part` is not seen. `isLastLine` is whether it ends in the last line of the text.
bool IsEnough(const QString& part, bool isLastLine, const QFont& font, int width, unsigned flags, TPoint seenEnd) {
    const QFontMetrics metrics(font);
    TLines lines(part, font, width, flags);
    const double bottom = seenEnd.Y + 1.0 * SpareLines * metrics.lineSpacing();
    lines.LayOut(bottom);
    const QTextLayout& layout = lines.GetLayout();
    if (layout.lineCount() == 0)
        return false;
    const QTextLine last = layout.lineAt(layout.lineCount() - 1);
    if (lines.GetHeight() >= bottom && last.textStart() + last.textLength() < part.size())
        return true;
    // A line that is cut begins where it would begin whole, if it stands on the left and runs to the right.
    return isLastLine && !(flags & (dtCenter | dtRight)) && !TDirections(part).RunsToTheLeft &&
           last.naturalTextWidth() > seenEnd.X + 16.0 * metrics.maxWidth();
}

qsizetype SeenLength(const QString& text, const QFont& font, int width, unsigned flags, TPoint seenEnd) {
    const qsizetype lastLine = text.lastIndexOf(QChar::LineSeparator) + 1;
    for (qsizetype length = ShortestPart; length < text.size() / 2; length *= 2) {
        const QString part = PartOf(text, length);
        const TDirections directions(part);
        const bool isCutBetweenWords = part.endsWith(u' ') && IsStrong(part[part.size() - 2]);
        if (directions.RunsToTheLeft && !isCutBetweenWords)
            continue;
        if (directions.IsDoubtful() && length < ShortestDoubtfulPart)
            continue;
        const bool isLastLine = !(flags & dtWordBreak) && part.size() > lastLine;
        if (IsEnough(part, isLastLine, font, width, flags, seenEnd))
            return part.size();
    }
    return text.size();
}

/// A text as it is laid out: ends of lines are line separators or blanks, and a letter behind & is underlined.
TLaidText Laid(const QString& text, unsigned flags) {
    const QChar lineEnd = flags & dtSingleLine ? QChar(u' ') : QChar(QChar::LineSeparator);
    TLaidText laid = {text, {}, {}};
    laid.Text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    laid.Text.replace(u'\n', lineEnd).replace(u'\r', lineEnd).replace(u'\t', u' ');
    if (flags & dtNoPrefix)
        return laid;
    const QString marked = std::exchange(laid.Text, QString());
    laid.Text.reserve(marked.size());
    for (qsizetype begin = 0; begin < marked.size();) {
        const qsizetype sign = marked.indexOf(u'&', begin);
        laid.Text += QStringView(marked).sliced(begin, (sign < 0 ? marked.size() : sign) - begin);
        if (sign < 0 || sign + 1 == marked.size())
            break;
        if (marked[sign + 1] != u'&')
            laid.Underlined.push_back(laid.Text.size());
        laid.Text += marked[sign + 1];
        begin = sign + 2;
    }
    return laid;
}

QList<QTextLayout::FormatRange> FormatsOf(const TLaidText& text) {
    QList<QTextLayout::FormatRange> formats;
    for (const qsizetype place : text.Underlined) {
        QTextLayout::FormatRange range;
        range.start = static_cast<int>(place);
        range.length = 1;
        range.format.setFontUnderline(true);
        formats.append(range);
    }
    return formats;
}

/// By which a line has to move: the sum for the words in it that were cut.
double OffsetOf(const QTextLine& line, const TLaidText& text) {
    double right = 0;
    for (const TLaidText::TOffset& offset : text.Offsets)
        if (offset.Place >= line.textStart() && offset.Place < line.textStart() + line.textLength())
            right += offset.Right;
    return right;
}

} // namespace

TLaidText SeenText(const QString& text, const QFont& font, int width, unsigned flags, TPoint seenEnd) {
    TLaidText seen = Laid(text, flags);
    if (text.size() < LongText)
        return seen;
    if (flags & dtWordBreak)
        ShortenWords(seen, font, flags, std::max(width, seenEnd.X));
    const qsizetype length = SeenLength(seen.Text, font, width, flags, seenEnd);
    seen.Text.truncate(length);
    std::erase_if(seen.Underlined, [=](qsizetype place) { return place >= length; });
    return seen;
}

void DrawLaidText(QPainter& painter, const TLaidText& text, TSize box, unsigned flags) {
    if (text.Text.isEmpty())
        return;
    TLines lines(text.Text, painter.font(), box.cx, flags);
    lines.GetLayout().setFormats(FormatsOf(text));
    lines.LayOut(flags & dtNoClip ? HUGE_VAL : box.cy);
    const bool isInTheMiddle = (flags & dtVCenter) && (flags & dtSingleLine);
    const double top = isInTheMiddle ? (box.cy - lines.GetHeight()) / 2 : 0;
    for (int i = 0; i < lines.GetLayout().lineCount(); ++i) {
        const QTextLine line = lines.GetLayout().lineAt(i);
        const double space = box.cx - line.horizontalAdvance();
        const double left = flags & dtCenter ? space / 2 : flags & dtRight ? space : 0;
        line.draw(&painter, {left + OffsetOf(line, text), top});
    }
}

} // namespace lmx
