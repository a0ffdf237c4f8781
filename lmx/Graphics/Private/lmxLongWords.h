#pragma once

#include <QChar>
#include <QFont>
#include <QString>

#include <vector>

namespace lmx {

/// A text as it is laid out, which may have lost letters that are not seen.
struct TLaidText {
    /// A line that has lost letters on both sides does not stand where it would with them.
    struct TOffset {
        qsizetype Place; ///< of a letter in the line
        double Right;    ///< pixels by which the line has to move
    };

    QString Text;
    std::vector<qsizetype> Underlined; ///< places of letters, ascending
    std::vector<TOffset> Offsets;      ///< by place, ascending

    /// Takes letters out. None of the underlined ones is among them.
    void Remove(qsizetype place, qsizetype count);
};

/// Whether such letters are not seen, but turn the direction of others.
bool IsDirectionSign(QChar::Direction direction);

/// Takes out of words that are far too wide for a line what is not seen of them: a line of one such word shows its
/// beginning, its end or its middle, as it is aligned. The rest stands where it would, pixel by pixel: Qt shapes a
/// text in items of 4096 letters, and what goes is whole items of one script and direction.
///
/// Some words lose more, so that no megabyte has to be laid out, and may look different. Where 32,768 letters do not
/// fill what is seen, no more are looked at. Of letters that change scripts or directions all the time, no more than
/// 16,384 in a word stay, the first and the last ones, joined. And a word wider than 2^23 pixels, which Qt would break
/// there, stands in one line.
///
/// `flags` are TTextFlags with dtWordBreak; `seenWidth` is what can be seen of a line, in pixels.
void ShortenWords(TLaidText& text, const QFont& font, unsigned flags, int seenWidth);

} // namespace lmx
