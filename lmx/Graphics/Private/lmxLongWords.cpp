#include <lmx/Graphics/Private/lmxLongWords.h>

#include <lmx/Graphics/lmxBitmap32.h>

#include <QFontMetricsF>
#include <QTextBoundaryFinder>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <unordered_map>

namespace lmx {

namespace {

constexpr qsizetype ItemLength = 4096;               // that Qt shapes at a time
constexpr qsizetype ShortestRun = 3 * ItemLength;    // of which something can go
constexpr qsizetype LongestEnd = 8 * ItemLength;     // of a word, that is looked at
constexpr qsizetype LongestMixture = 4 * ItemLength; // of scripts and directions
constexpr std::size_t MostKeptWidths = 1024;

/// Letters from Begin to before End.
struct TStretch {
    qsizetype Begin;
    qsizetype End;

    qsizetype GetLength() const { return End - Begin; }
};

/// Letters of one script and one level of direction, which Qt cuts into items from the first one on.
using TRun = TStretch;

/// Follows a text that begins from left to right, and finds the places where Qt begins another item.
class TItemFinder {
public:
    void Take(qsizetype place, char32_t letter) {
        const QChar::Direction direction = QChar::direction(letter);
        if (letter == QChar::LineSeparator || letter == QChar::ObjectReplacementCharacter ||
            IsDirectionSign(direction)) {
            FBegins.push_back(place);
            FBegins.push_back(place + 1);
        }
        TakeScript(place, letter);
        TakeDirection(place, direction);
    }

    /// The stretches that are long enough, of which the last one ends at `end`.
    std::vector<TRun> GetLongRuns(qsizetype end) {
        SettleNeutrals(false);
        FBegins.push_back(end);
        std::sort(FBegins.begin(), FBegins.end());
        std::vector<TRun> runs;
        for (std::size_t i = 0; i + 1 < FBegins.size(); ++i)
            if (FBegins[i + 1] - FBegins[i] >= ShortestRun)
                runs.push_back({FBegins[i], FBegins[i + 1]});
        return runs;
    }

private:
    /// Signs of all scripts, and marks, belong to the script before them; at first, to the one behind.
    void TakeScript(qsizetype place, char32_t letter) {
        const QChar::Script script = QChar::script(letter);
        if (script == FScript || script <= QChar::Script_Common)
            return;
        const bool isFirst = FScript <= QChar::Script_Common;
        if (!isFirst && QChar::isMark(letter))
            return;
        FScript = script;
        if (!isFirst)
            FBegins.push_back(place);
    }

    void TakeDirection(qsizetype place, QChar::Direction direction) {
        switch (direction) {
        case QChar::DirL:
            FIsHebrewBefore = false;
            return Enter(place, 0);
        case QChar::DirR:
        case QChar::DirAL:
            FIsHebrewBefore = true;
            return Enter(place, 1);
        case QChar::DirAN:
            return Enter(place, 2);
        case QChar::DirEN:
            return Enter(place, FIsHebrewBefore ? 2 : 0);
        case QChar::DirNSM:
        case QChar::DirBN:
            return;
        default:
            if (FFirstNeutral < 0)
                FFirstNeutral = place;
        }
    }

    void Enter(qsizetype place, int level) {
        SettleNeutrals(level > 0);
        SetLevel(place, level);
    }

    /// Neutral letters run to the left where both their neighbours do.
    void SettleNeutrals(bool runsToTheLeftBehind) {
        if (FFirstNeutral >= 0)
            SetLevel(FFirstNeutral, FLevel > 0 && runsToTheLeftBehind ? 1 : 0);
        FFirstNeutral = -1;
    }

    void SetLevel(qsizetype place, int level) {
        if (level != FLevel)
            FBegins.push_back(place);
        FLevel = level;
    }

    std::vector<qsizetype> FBegins = {0};
    qsizetype FFirstNeutral = -1; ///< of those that are not settled, or -1
    QChar::Script FScript = QChar::Script_Common;
    int FLevel = 0;               ///< of the last letter that is settled
    bool FIsHebrewBefore = false; ///< or Arabic: such a letter was the last one, others than letters aside
};

std::vector<TRun> LongRunsOf(const QString& text) {
    TItemFinder finder;
    for (qsizetype place = 0; place < text.size(); ++place) {
        const QChar unit = text[place];
        if (unit.isHighSurrogate() && place + 1 < text.size() && text[place + 1].isLowSurrogate()) {
            finder.Take(place, QChar::surrogateToUcs4(unit, text[place + 1]));
            ++place;
        } else {
            finder.Take(place, unit.unicode());
        }
    }
    return finder.GetLongRuns(text.size());
}

/// Whether letters of Hebrew, Arabic and the like fill a run.
bool RunsToTheLeft(const QString& text, const TRun& run) {
    for (qsizetype place = run.Begin; place < run.End; ++place) {
        const QChar::Direction direction = text[place].isHighSurrogate() && place + 1 < run.End
                                               ? QChar::direction(QChar::surrogateToUcs4(text[place], text[place + 1]))
                                               : text[place].direction();
        if (direction == QChar::DirR || direction == QChar::DirAL)
            return true;
        if (direction == QChar::DirL || direction == QChar::DirEN || direction == QChar::DirAN)
            return false;
    }
    return false;
}

bool IsBlank(QChar letter) {
    return letter == u' ' || letter == QChar::LineSeparator;
}

/// The stretches of so many letters at least that no line can break in.
std::vector<TStretch> LongWordsOf(const QString& text, TStretch within, qsizetype shortest) {
    std::vector<TStretch> words;
    for (qsizetype begin = within.Begin; begin < within.End;) {
        const auto at = [&](qsizetype place) { return text.cbegin() + place; };
        const qsizetype end = std::find_if(at(begin), at(within.End), IsBlank) - text.cbegin();
        if (end - begin >= shortest) {
            QTextBoundaryFinder breaks(QTextBoundaryFinder::Line, text.constData() + begin, end - begin);
            qsizetype last = 0;
            for (qsizetype next = breaks.toNextBoundary(); next >= 0; next = breaks.toNextBoundary()) {
                if (next - last >= shortest)
                    words.push_back({begin + last, begin + next});
                last = next;
            }
        }
        begin = end + 1;
    }
    return words;
}

bool HoldsLongWord(const QString& text) {
    qsizetype begin = 0;
    for (qsizetype place = 0; place < text.size(); ++place) {
        if (IsBlank(text[place]))
            begin = place + 1;
        else if (place - begin >= ShortestRun)
            return true;
    }
    return false;
}

/// Widths of items in one font. They are kept, since a text is laid out again with each size of its box.
class TItemWidths {
public:
    double Of(const QFont& font, const QString& item) {
        if (!(font == FFont) || FWidths.size() > MostKeptWidths)
            FWidths.clear();
        FFont = font;
        const auto [place, isNew] = FWidths.try_emplace(item);
        if (isNew)
            place->second = QFontMetricsF(font).horizontalAdvance(item);
        return place->second;
    }

private:
    struct THash {
        std::size_t operator()(const QString& text) const { return qHash(text); }
    };

    QFont FFont;
    std::unordered_map<QString, double, THash> FWidths;
};

double WidthOf(const QFont& font, const QString& text, TStretch items) {
    thread_local TItemWidths widths;
    double width = 0;
    for (qsizetype place = items.Begin; place < items.End; place += ItemLength)
        width += widths.Of(font, text.mid(place, std::min(ItemLength, items.End - place)));
    return width;
}

/// Shortens one word after the other, the last one first.
class TWordCutter {
public:
    TWordCutter(TLaidText& text, const QFont& font, unsigned flags, int seenWidth)
        : FText(text),
          FFont(font),
          FIsCentered((flags & dtCenter) != 0),
          FSeenWidth(seenWidth + 16 * QFontMetricsF(font).maxWidth()) {}

    void Cut(const TRun& run, const TStretch& word) {
        const TStretch items = ItemsOf(run, word);
        if (items.GetLength() < ShortestRun || HoldsUnderlined(items))
            return;
        if (FIsCentered)
            KeepMiddle(run, items);
        else
            KeepEnds(items);
    }

    /// Leaves both ends of a word of any letters.
    void CutMixture(const TStretch& word) {
        TStretch middle = {word.Begin + LongestMixture / 2, word.End - LongestMixture / 2};
        for (qsizetype* place : {&middle.Begin, &middle.End})
            *place += FText.Text[*place].isLowSurrogate() ? 1 : 0;
        if (!HoldsUnderlined(middle))
            FText.Remove(middle.Begin, middle.GetLength());
    }

private:
    static TStretch ItemsOf(const TRun& run, const TStretch& word) {
        const auto itemsBefore = [&](qsizetype place) { return (place - run.Begin) / ItemLength; };
        return {run.Begin + (itemsBefore(word.Begin) + 1) * ItemLength, run.Begin + itemsBefore(word.End) * ItemLength};
    }

    bool HoldsUnderlined(const TStretch& items) const {
        const auto& places = FText.Underlined;
        const auto first = std::lower_bound(places.begin(), places.end(), items.Begin);
        return first != places.end() && *first < items.End;
    }

    /// Items from an end of others on.
    struct TEnd {
        double Width;
        qsizetype Length;
    };

    /// The fewest items that fill what is seen, or as many as are looked at.
    qsizetype SeenFrom(const TStretch& items, bool fromEnd) const {
        const qsizetype most = std::min(LongestEnd, items.GetLength());
        qsizetype length = 0;
        for (double width = 0; length < most && width < FSeenWidth; length += ItemLength)
            width += WidthOfItem(items, length, fromEnd);
        return length;
    }

    /// The most items that are not wider together.
    TEnd ItemsWithin(const TStretch& items, double width, bool fromEnd) const {
        TEnd end = {0, 0};
        while (end.Length < items.GetLength()) {
            const double next = end.Width + WidthOfItem(items, end.Length, fromEnd);
            if (!(next <= width))
                break;
            end = {next, end.Length + ItemLength};
        }
        return end;
    }

    double WidthOfItem(const TStretch& items, qsizetype length, bool fromEnd) const {
        const qsizetype place = fromEnd ? items.End - length - ItemLength : items.Begin + length;
        return WidthOf(FFont, FText.Text, {place, place + ItemLength});
    }

    /// Keeps what is seen of both ends, or `least` letters of each if that is more.
    void KeepEnds(const TStretch& items, qsizetype least = 0) {
        const qsizetype before = std::max(SeenFrom(items, false), least);
        const qsizetype behind = std::max(SeenFrom(items, true), least);
        if (before + behind < items.GetLength())
            FText.Remove(items.Begin + before, items.GetLength() - before - behind);
    }

    /// Keeps what is seen around the middle of the word that the items are part of.
    void KeepMiddle(const TRun& run, const TStretch& items) {
        const TStretch word = WordAround(items);
        const double left = WidthOf(FFont, FText.Text, {word.Begin, items.Begin});
        const double right = left + WidthOf(FFont, FText.Text, items);
        const double width = right + WidthOf(FFont, FText.Text, {items.End, word.End});
        const double middle = width / 2 - OffsetIn(word);
        const bool isMirrored = RunsToTheLeft(FText.Text, run);
        const TEnd atLeft = ItemsWithin(items, middle - FSeenWidth - left, isMirrored);
        const TEnd atRight = ItemsWithin(items, right - middle - FSeenWidth, !isMirrored);
        if (atLeft.Length + atRight.Length == 0)
            return KeepEnds(items, LongestEnd);
        const qsizetype before = isMirrored ? atRight.Length : atLeft.Length;
        const qsizetype behind = isMirrored ? atLeft.Length : atRight.Length;
        FText.Remove(items.End - behind, behind);
        FText.Remove(items.Begin, before);
        FText.Offsets.insert(FText.Offsets.begin(), {word.Begin, (atLeft.Width - atRight.Width) / 2});
    }

    /// By which the word will move for what it has lost already.
    double OffsetIn(const TStretch& word) const {
        double right = 0;
        for (const TLaidText::TOffset& offset : FText.Offsets)
            right += offset.Place >= word.Begin && offset.Place < word.End ? offset.Right : 0;
        return right;
    }

    TStretch WordAround(const TStretch& items) const {
        const auto at = [&](qsizetype place) { return FText.Text.cbegin() + place; };
        const auto begin = std::find_if(std::make_reverse_iterator(at(items.Begin)), FText.Text.crend(), IsBlank);
        return {begin.base() - FText.Text.cbegin(),
                std::find_if(at(items.End), FText.Text.cend(), IsBlank) - FText.Text.cbegin()};
    }

    TLaidText& FText;
    QFont FFont;
    bool FIsCentered;
    double FSeenWidth;
};

} // namespace

bool IsDirectionSign(QChar::Direction direction) {
    switch (direction) {
    case QChar::DirLRE:
    case QChar::DirLRO:
    case QChar::DirRLE:
    case QChar::DirRLO:
    case QChar::DirPDF:
    case QChar::DirLRI:
    case QChar::DirRLI:
    case QChar::DirFSI:
    case QChar::DirPDI:
        return true;
    default:
        return false;
    }
}

void TLaidText::Remove(qsizetype place, qsizetype count) {
    Text.remove(place, count);
    for (qsizetype& underlined : Underlined)
        underlined -= underlined >= place ? count : 0;
    for (TOffset& offset : Offsets)
        offset.Place -= offset.Place >= place ? count : 0;
}

void ShortenWords(TLaidText& text, const QFont& font, unsigned flags, int seenWidth) {
    if (!HoldsLongWord(text.Text))
        return;
    TWordCutter cutter(text, font, flags, seenWidth);
    const auto cutEach = [&](const TStretch& within, qsizetype shortest, auto cut) {
        const std::vector<TStretch> words = LongWordsOf(text.Text, within, shortest);
        for (auto word = words.rbegin(); word != words.rend(); ++word)
            cut(*word);
    };
    const std::vector<TRun> runs = LongRunsOf(text.Text);
    qsizetype end = text.Text.size();
    for (auto run = runs.rbegin(); run != runs.rend(); ++run) {
        cutEach({run->End, end}, LongestMixture + 2, [&](const TStretch& word) { cutter.CutMixture(word); });
        cutEach(*run, ShortestRun, [&](const TStretch& word) { cutter.Cut(*run, word); });
        end = run->Begin;
    }
    cutEach({0, end}, LongestMixture + 2, [&](const TStretch& word) { cutter.CutMixture(word); });
}

} // namespace lmx
