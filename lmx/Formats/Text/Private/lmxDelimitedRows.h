#pragma once

#include <QChar>
#include <QStringView>

#include <algorithm>

// The grammar of delimited text (TCSVReader). What becomes of the cells is up to the caller.

namespace lmx {

/// Walks over a text row by row. Both it and the text must outlive the walk.
class TDelimitedRows {
public:
    TDelimitedRows(QStringView text, QChar delimiter)
        : FAt(text.utf16()),
          FEnd(FAt + text.size()),
          FDelimiter(delimiter.unicode()) {
        constexpr char16_t byteOrderMark = 0xFEFF;
        if (FAt != FEnd && *FAt == byteOrderMark)
            ++FAt;
    }

    /// Reads the next row: `take` gets the pieces of each cell's text, then `endCell` is called. False behind the last.
    template<class Take, class EndCell>
    bool Next(Take&& take, EndCell&& endCell) {
        while (FAt != FEnd && IsLineBreak(*FAt)) // of the row before, and of lines without a character
            ++FAt;
        if (FAt == FEnd)
            return false;
        while (true) {
            ReadCell(take);
            endCell();
            if (FAt == FEnd || *FAt != FDelimiter)
                return true;
            ++FAt;
        }
    }

private:
    static constexpr bool IsLineBreak(char16_t c) { return c == u'\n' || c == u'\r'; }

    template<class Take>
    void ReadCell(Take&& take) {
        if (FAt != FEnd && *FAt == u'"') {
            ++FAt;
            ReadQuoted(take);
        }
        const char16_t delimiter = FDelimiter;
        TakeUpTo(std::find_if(FAt, FEnd, [delimiter](char16_t c) { return c == delimiter || IsLineBreak(c); }), take);
    }

    // Behind the opening quote, up to and over the closing one. Of two quotes the second begins the next piece.
    template<class Take>
    void ReadQuoted(Take&& take) {
        TakeUpTo(std::find(FAt, FEnd, u'"'), take);
        while (FAt != FEnd) {
            const char16_t* const behind = FAt + 1;
            FAt = behind;
            if (behind == FEnd || *behind != u'"')
                return;
            TakeUpTo(std::find(behind + 1, FEnd, u'"'), take);
        }
    }

    template<class Take>
    void TakeUpTo(const char16_t* end, Take&& take) {
        take(QStringView(FAt, end));
        FAt = end;
    }

    const char16_t* FAt;
    const char16_t* FEnd;
    char16_t FDelimiter;
};

} // namespace lmx
