// Bitmaps on bitmaps.

#include <lmx/Graphics/Private/lmxPixelRows.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Runtime/Private/lmxMemory.h>
#include <lmx/Runtime/Private/lmxRowBands.h>

#include <algorithm>
#include <array>

namespace lmx {

namespace {

__extension__ typedef __int128 TInt128; // products of a 64-bit and a 32-bit number

/// Puts rows of a source onto rows of a destination as the modes of both say.
class TRowTransfer {
public:
    TRowTransfer(const TBitmap32& destination, const TBitmap32& source, TDrawMode mode)
        : FMode(mode),
          FMerges(destination.GetCombineMode() == TCombineMode::cmMerge),
          FMasterAlpha(source.GetMasterAlpha()),
          FOuterColor(source.GetOuterColor()) {}

    bool IsPlainCopy() const { return FMode == TDrawMode::dmOpaque || FMode == TDrawMode::dmCustom; }

    void operator()(TColor32* to, const TColor32* from, std::size_t count) const {
        if (IsPlainCopy())
            PixelRows::Copy(to, from, count);
        else if (FMode == TDrawMode::dmTransparent)
            PixelRows::CopyExcept(to, from, count, FOuterColor);
        else if (FMasterAlpha == 255)
            Combine(to, from, count);
        else if (FMasterAlpha != 0)
            CombineScaled(to, from, count);
    }

private:
    void Combine(TColor32* to, const TColor32* from, std::size_t count) const {
        if (FMerges)
            PixelRows::Merge(to, from, count);
        else
            PixelRows::Blend(to, from, count);
    }

    void CombineScaled(TColor32* to, const TColor32* from, std::size_t count) const {
        std::array<TColor32, 256> scaled;
        for (std::size_t done = 0; done < count; done += scaled.size()) {
            const std::size_t part = std::min(scaled.size(), count - done);
            PixelRows::ScaleAlphas(scaled.data(), from + done, part, FMasterAlpha);
            Combine(to + done, scaled.data(), part);
        }
    }

    TDrawMode FMode;
    bool FMerges;
    std::uint8_t FMasterAlpha;
    TColor32 FOuterColor;
};

/// One axis of a stretch: destination pixels [To, To + ToSize) show source pixels [From, From + FromSize).
struct TStretchAxis {
    TInt128 To;
    TInt128 ToSize;
    std::int64_t From;
    std::int64_t FromSize;

    TStretchAxis(std::int64_t toBegin, std::int64_t toEnd, std::int64_t fromBegin, std::int64_t fromEnd)
        : To(toBegin),
          ToSize(static_cast<TInt128>(toEnd) - toBegin),
          From(fromBegin),
          FromSize(fromEnd - fromBegin) {}

    bool IsEmpty() const { return ToSize <= 0 || FromSize <= 0; }

    /// Cuts what lies outside of [0, limit) off the source; the destination follows, rounded inwards at its beginning
    /// and outwards at its end.
    void CutSource(std::int64_t limit) {
        const std::int64_t before = std::max<std::int64_t>(-From, 0);
        const std::int64_t behind = std::max<std::int64_t>(From + FromSize - limit, 0);
        if (before + behind >= FromSize) {
            FromSize = 0;
            return;
        }
        const TInt128 cutBegin = (before * ToSize + FromSize - 1) / FromSize;
        const TInt128 cutEnd = behind * ToSize / FromSize;
        To += cutBegin;
        ToSize -= cutBegin + cutEnd;
        From += before;
        FromSize -= before + behind;
    }

    /// A destination one pixel short shows all but the last of its source: floor(i * n / (n - 1)) is i. So it is a
    /// copy.
    void LeaveOutLast() {
        if (ToSize == FromSize - 1)
            --FromSize;
    }

    bool IsCopy() const { return ToSize == FromSize; }

    /// The visible pixels of the destination.
    std::int32_t VisibleBegin(std::int32_t visible) const {
        return static_cast<std::int32_t>(std::clamp<TInt128>(To, 0, visible));
    }
    std::int32_t VisibleEnd(std::int32_t visible) const {
        return static_cast<std::int32_t>(std::clamp<TInt128>(To + ToSize, 0, visible));
    }
};

/// The visible part of a stretched axis: destination pixel Begin + i shows source pixel Sources[i].
struct TStretchSteps {
    std::int32_t Begin = 0;
    std::vector<std::int32_t> Sources;

    TStretchSteps(const TStretchAxis& axis, std::int32_t visible) {
        Begin = axis.VisibleBegin(visible);
        const std::int32_t end = axis.VisibleEnd(visible);
        if (Begin >= end)
            return;
        Sources.resize(static_cast<std::size_t>(end - Begin));
        if (axis.ToSize == 1)
            Sources[0] = static_cast<std::int32_t>((2 * axis.From + axis.FromSize - 1) / 2);
        else
            FillSources(axis, Begin - axis.To);
    }

    /// What the visible pixel behind the i-th one shows; the last one stands for itself.
    std::int32_t SourceAfter(std::size_t i) const { return Sources[std::min(i + 1, Sources.size() - 1)]; }

private:
    /// floor(i * FromSize / ToSize) for consecutive i, by quotient and remainder.
    void FillSources(const TStretchAxis& axis, TInt128 first) {
        const std::int64_t whole = static_cast<std::int64_t>(axis.FromSize / axis.ToSize);
        const TInt128 part = axis.FromSize % axis.ToSize;
        TInt128 remainder = first * axis.FromSize % axis.ToSize;
        std::int64_t source = axis.From + static_cast<std::int64_t>(first * axis.FromSize / axis.ToSize);
        for (std::int32_t& entry : Sources) {
            entry = static_cast<std::int32_t>(source);
            source += whole;
            remainder += part;
            if (remainder >= axis.ToSize) {
                remainder -= axis.ToSize;
                ++source;
            }
        }
    }
};

/// Equal sizes: pixel for pixel, without tables.
void CopyPixels(TBitmap32& to, const TStretchAxis& horizontal, const TStretchAxis& vertical, const TBitmap32& from,
                const TRowTransfer& transfer) {
    const std::int32_t left = horizontal.VisibleBegin(to.GetWidth());
    const std::int32_t right = horizontal.VisibleEnd(to.GetWidth());
    const std::int32_t top = vertical.VisibleBegin(to.GetHeight());
    if (left >= right)
        return;
    const auto column = static_cast<std::int32_t>(horizontal.From + (left - horizontal.To));
    TRowBands::Run(vertical.VisibleEnd(to.GetHeight()) - top, right - left, [&](std::int32_t first, std::int32_t end) {
        for (std::int32_t y = top + first; y < top + end; ++y) {
            const auto row = static_cast<std::int32_t>(vertical.From + (y - vertical.To));
            transfer(to.ScanLine(y) + left, from.ScanLine(row) + column, static_cast<std::size_t>(right - left));
        }
    });
}

/// Both axes of a stretch.
struct TStretchTables {
    TStretchSteps Columns;
    TStretchSteps Rows;

    TColor32* ToLine(TBitmap32& to, std::size_t i) const {
        return to.ScanLine(Rows.Begin + static_cast<std::int32_t>(i)) + Columns.Begin;
    }
};

/// Equal widths: the columns follow each other. Like the two below this draws the rows first .. end - 1 of the tables.
void CopyRows(TBitmap32& to, const TStretchTables& tables, const TBitmap32& from, const TRowTransfer& transfer,
              std::size_t first, std::size_t end) {
    for (std::size_t i = first; i < end; ++i)
        transfer(tables.ToLine(to, i), from.ScanLine(tables.Rows.Sources[i]) + tables.Columns.Sources.front(),
                 tables.Columns.Sources.size());
}

/// Plain copies: a row that shows the same source row as the one above copies it.
void StretchRows(TBitmap32& to, const TStretchTables& tables, const TBitmap32& from, std::size_t first,
                 std::size_t end) {
    const TStretchSteps& rows = tables.Rows;
    const std::size_t count = tables.Columns.Sources.size();
    for (std::size_t i = first; i < end; ++i) {
        TColor32* const line = tables.ToLine(to, i);
        if (i > first && rows.Sources[i] == rows.Sources[i - 1])
            PixelRows::Copy(line, tables.ToLine(to, i - 1), count);
        else
            PixelRows::Gather(line, from.ScanLine(rows.Sources[i]), tables.Columns.Sources.data(), count,
                              from.ScanLine(rows.SourceAfter(i)));
    }
}

/// All other modes: the stretched line is made aside, once for all rows that show it. It is made and used by and by, so
/// that the next row comes out of memory while this one is blended.
void StretchRows(TBitmap32& to, const TStretchTables& tables, const TBitmap32& from, const TRowTransfer& transfer,
                 std::size_t first, std::size_t end) {
    constexpr std::size_t portion = 64;
    const TStretchSteps& rows = tables.Rows;
    const std::size_t count = tables.Columns.Sources.size();
    std::vector<TColor32> line(count);
    for (std::size_t i = first; i < end; ++i) {
        TColor32* const toLine = tables.ToLine(to, i);
        if (i > first && rows.Sources[i] == rows.Sources[i - 1]) {
            transfer(toLine, line.data(), count);
            continue;
        }
        const TColor32* const fromLine = from.ScanLine(rows.Sources[i]);
        const TColor32* const nextLine = from.ScanLine(rows.SourceAfter(i));
        for (std::size_t x = 0; x < count; x += portion) {
            const std::size_t part = std::min(portion, count - x);
            PixelRows::Gather(line.data() + x, fromLine, tables.Columns.Sources.data() + x, part, nextLine);
            transfer(toLine + x, line.data() + x, part);
        }
    }
}

} // namespace

void TBitmap32::Draw(std::int32_t x, std::int32_t y, const TBitmap32& source) {
    const TRect whole = source.GetBounds();
    Draw(TWideRect(x, y, std::int64_t{x} + whole.Right, std::int64_t{y} + whole.Bottom), whole, source);
}

void TBitmap32::Draw(const TRect& destination, const TRect& sourceRect, const TBitmap32& source) {
    Draw(TWideRect(destination), sourceRect, source);
}

void TBitmap32::Draw(const TWideRect& destination, const TRect& sourceRect, const TBitmap32& source) {
    WithinMemory([&] {
        if (&source == this)
            DrawStretched(destination, sourceRect, TBitmap32(source), FDrawMode);
        else
            DrawStretched(destination, sourceRect, source, source.FDrawMode);
    });
}

TBitmap32 TBitmap32::Stretched(const TRect& sourceRect, std::int32_t width, std::int32_t height) const {
    TBitmap32 result(width, height);
    result.FDrawMode = FDrawMode;
    result.FMasterAlpha = FMasterAlpha;
    result.FOuterColor = FOuterColor;
    WithinMemory([&] { result.DrawStretched(TWideRect(result.GetBounds()), sourceRect, *this, TDrawMode::dmOpaque); });
    return result;
}

void TBitmap32::DrawStretched(const TWideRect& destination, const TRect& sourceRect, const TBitmap32& source,
                              TDrawMode mode) {
    TStretchAxis horizontal(destination.Left, destination.Right, sourceRect.Left, sourceRect.Right);
    TStretchAxis vertical(destination.Top, destination.Bottom, sourceRect.Top, sourceRect.Bottom);
    if (horizontal.IsEmpty() || vertical.IsEmpty())
        return;
    horizontal.CutSource(source.GetWidth());
    vertical.CutSource(source.GetHeight());
    if (horizontal.IsEmpty() || vertical.IsEmpty())
        return;

    horizontal.LeaveOutLast();
    vertical.LeaveOutLast();
    const TRowTransfer transfer(*this, source, mode);
    if (horizontal.IsCopy() && vertical.IsCopy()) {
        CopyPixels(*this, horizontal, vertical, source, transfer);
        return;
    }

    const TStretchTables tables = {TStretchSteps(horizontal, GetWidth()), TStretchSteps(vertical, GetHeight())};
    const auto width = static_cast<std::int32_t>(tables.Columns.Sources.size());
    const auto height = static_cast<std::int32_t>(tables.Rows.Sources.size());
    if (width == 0)
        return;
    TRowBands::Run(height, width, [&](std::int32_t firstRow, std::int32_t endRow) {
        const auto first = static_cast<std::size_t>(firstRow);
        const auto end = static_cast<std::size_t>(endRow);
        if (horizontal.IsCopy())
            CopyRows(*this, tables, source, transfer, first, end);
        else if (transfer.IsPlainCopy())
            StretchRows(*this, tables, source, first, end);
        else
            StretchRows(*this, tables, source, transfer, first, end);
    });
}

} // namespace lmx
