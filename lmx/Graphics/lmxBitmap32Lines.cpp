// Lines one pixel thick: of whole pixels, antialiased, stippled.

#include <lmx/Graphics/Private/lmxBlend.h>
#include <lmx/Graphics/Private/lmxPixelRows.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Runtime/Private/lmxMemory.h>

#include <algorithm>
#include <cmath>
#include <tuple>
#include <utility>

namespace lmx {

namespace {

__extension__ typedef __int128 TInt128;

/// floor(numerator / denominator), denominator > 0
TInt128 FloorDiv(TInt128 numerator, TInt128 denominator) {
    return numerator / denominator - (numerator % denominator < 0 ? 1 : 0);
}

/// One axis of a line of whole pixels: where it begins, which way it goes, and the side of the bitmap.
struct TLineAxis {
    std::int64_t Begin;
    std::int64_t Direction; // 1 or -1
    std::int64_t Length;    // steps
    std::int64_t Limit;     // positions 0 .. Limit - 1 are visible

    TLineAxis(std::int64_t begin, std::int64_t end, std::int64_t limit)
        : Begin(begin),
          Direction(end < begin ? -1 : 1),
          Length(end < begin ? begin - end : end - begin),
          Limit(limit) {}

    // The steps from Begin at which the position is visible.
    std::int64_t FirstVisible() const { return Direction > 0 ? -Begin : Begin - (Limit - 1); }
    std::int64_t LastVisible() const { return Direction > 0 ? Limit - 1 - Begin : Begin; }
};

/// The visible steps of a line along its major axis, by division: step k is floor((2 k m + n) / 2 n) steps along the
/// minor axis, with n and m the lengths.
std::pair<std::int64_t, std::int64_t> VisibleSteps(const TLineAxis& major, const TLineAxis& minor) {
    const TInt128 n = major.Length;
    const TInt128 m = minor.Length;
    TInt128 first = std::max<std::int64_t>(major.FirstVisible(), 0);
    TInt128 last = std::min(major.LastVisible(), major.Length - 1);
    if (m > 0) {
        const auto firstStepAt = [&](TInt128 minorSteps) { return -FloorDiv(-(2 * n * minorSteps - n), 2 * m); };
        first = std::max(first, firstStepAt(minor.FirstVisible()));
        last = std::min(last, firstStepAt(TInt128{minor.LastVisible()} + 1) - 1);
    } else if (minor.FirstVisible() > 0 || minor.LastVisible() < 0) {
        return {0, -1};
    }
    if (first > last)
        return {0, -1};
    return {static_cast<std::int64_t>(first), static_cast<std::int64_t>(last)};
}

} // namespace

void TBitmap32::LineToS(std::int32_t x, std::int32_t y) {
    TLineAxis major(FPen.X, x, GetWidth());
    TLineAxis minor(FPen.Y, y, GetHeight());
    std::int64_t majorStride = major.Direction;
    std::int64_t minorStride = minor.Direction * GetWidth();
    if (major.Length < minor.Length) {
        std::swap(major, minor);
        std::swap(majorStride, minorStride);
    }
    const TPoint begin = std::exchange(FPen, TPoint(x, y));
    if (major.Length == 0)
        return;
    std::int64_t first = 0;
    std::int64_t last = major.Length - 1;
    const std::int64_t whole = 2 * major.Length;
    std::int64_t remainder = major.Length;
    std::int64_t offset = std::int64_t{begin.Y} * GetWidth() + begin.X;
    if (!GetBounds().Contains(begin) || !GetBounds().Contains(FPen)) { // else every step is visible
        std::tie(first, last) = VisibleSteps(major, minor);
        if (first > last)
            return;
        const TInt128 progress = TInt128{2} * first * minor.Length + major.Length;
        remainder = static_cast<std::int64_t>(progress % whole);
        offset += first * majorStride + static_cast<std::int64_t>(progress / whole) * minorStride;
    }
    for (std::int64_t k = first; k <= last; ++k) {
        FMemory.GetPixels()[offset] = FPenColor;
        offset += majorStride;
        remainder += 2 * minor.Length;
        if (remainder >= whole) {
            remainder -= whole;
            offset += minorStride;
        }
    }
}

// Dense outlines are made of lines one pixel long, which are worth a short way.
void TBitmap32::LinesToS(std::span<const TPoint> points) {
    TColor32* const pixels = FMemory.GetPixels();
    const TRect bounds = GetBounds();
    for (const TPoint& end : points) {
        const auto dx = static_cast<std::uint64_t>(std::int64_t{end.X} - FPen.X + 1); // 0, 1 or 2 for a neighbour
        const auto dy = static_cast<std::uint64_t>(std::int64_t{end.Y} - FPen.Y + 1);
        if (dx > 2 || dy > 2) {
            LineToS(end.X, end.Y);
            continue;
        }
        if (end != FPen && bounds.Contains(FPen))
            pixels[RowOffset(FPen.Y) + static_cast<std::size_t>(FPen.X)] = FPenColor;
        FPen = end;
    }
}

namespace {

/// A position in 256ths of a pixel: the pixel it begins in and the weight of the next one.
struct TSamplePlace {
    std::int64_t Cell;
    std::uint32_t NextWeight; // 0 .. 255

    explicit TSamplePlace(double position) {
        const auto scaled = static_cast<std::int64_t>(std::floor(position * 256 + 0.5));
        Cell = scaled >> 8;
        NextWeight = static_cast<std::uint32_t>(scaled & 255);
    }
};

/// Spreads a colour over the 2 x 2 pixels around (x, y); `strength` scales it.
void CombineSample(TBitmap32& bitmap, double x, double y, TColor32 color, double strength) {
    if (!(x > -2 && x < bitmap.GetWidth() + 1.0 && y > -2 && y < bitmap.GetHeight() + 1.0))
        return;
    const TSamplePlace column(x);
    const TSamplePlace row(y);
    for (int down = 0; down < 2; ++down) {
        const std::int64_t pixelY = row.Cell + down;
        if (pixelY < 0 || pixelY >= bitmap.GetHeight())
            continue;
        TColor32* line = bitmap.ScanLine(static_cast<std::int32_t>(pixelY));
        const std::uint32_t rowWeight = down ? row.NextWeight : 256 - row.NextWeight;
        for (int right = 0; right < 2; ++right) {
            const std::int64_t pixelX = column.Cell + right;
            const std::uint32_t weight =
                rowWeight * (right ? column.NextWeight : 256 - column.NextWeight) * AlphaComponent(color);
            if (weight == 0 || pixelX < 0 || pixelX >= bitmap.GetWidth())
                continue;
            const auto scaled = static_cast<std::uint32_t>(weight * strength + 0.5);
            line[pixelX] = CombineColor(color, line[pixelX], scaled);
        }
    }
}

/// The samples of an antialiased line: at unit distance from its beginning, and a last one for the rest of its length.
struct TSampledLine {
    TFloatPoint Begin;
    TFloatPoint Direction; // of length 1
    double Whole = 0;      // number of whole samples
    double Rest = 0;       // 0 <= Rest < 1

    TSampledLine(TFloatPoint begin, TFloatPoint end) : Begin(begin) {
        const double length = std::hypot(end.X - begin.X, end.Y - begin.Y);
        if (!(length > 0) || !std::isfinite(length))
            return;
        Direction = {(end.X - begin.X) / length, (end.Y - begin.Y) / length};
        Whole = std::floor(length);
        Rest = length - Whole;
    }

    TFloatPoint At(double distance) const {
        return {Begin.X + distance * Direction.X, Begin.Y + distance * Direction.Y};
    }

    /// Narrows [first, last] to the samples that can touch the pixels 0 .. limit - 1 of an axis, a few more at most.
    static void Clip(double begin, double direction, double limit, double& first, double& last) {
        constexpr double margin = 1.5;
        double enter = -margin - begin;
        double leave = limit - 1 + margin - begin;
        if (direction == 0) {
            if (enter > 0 || leave < 0)
                last = -1;
            return;
        }
        enter /= direction;
        leave /= direction;
        if (enter > leave)
            std::swap(enter, leave);
        first = std::max(first, std::floor(enter) - 1);
        last = std::min(last, std::ceil(leave) + 1);
    }
};

/// The visible samples of a line, all but the last one for its rest.
struct TVisibleSamples {
    double First = 0;
    double Last;

    TVisibleSamples(const TBitmap32& bitmap, const TSampledLine& line) : Last(line.Whole - 1) {
        TSampledLine::Clip(line.Begin.X, line.Direction.X, bitmap.GetWidth(), First, Last);
        TSampledLine::Clip(line.Begin.Y, line.Direction.Y, bitmap.GetHeight(), First, Last);
    }

    std::int64_t GetCount() const { return First <= Last ? static_cast<std::int64_t>(Last - First) + 1 : 0; }
};

/// Draws the visible samples; colorAt(k) gives the colour of the k-th one.
template<class ColorAt>
void DrawSamples(TBitmap32& bitmap, const TSampledLine& line, ColorAt colorAt) {
    const TVisibleSamples visible(bitmap, line);
    for (std::int64_t i = 0; i < visible.GetCount(); ++i) {
        const double k = visible.First + static_cast<double>(i);
        const TFloatPoint place = line.At(k);
        CombineSample(bitmap, place.X, place.Y, colorAt(k), 1.0);
    }
}

/// Draws the rest of a line.
void DrawRest(TBitmap32& bitmap, const TSampledLine& line, TColor32 color) {
    const TFloatPoint place = line.At(line.Whole + line.Rest / 2 - 0.5);
    CombineSample(bitmap, place.X, place.Y, color, line.Rest);
}

/// Whether all samples of a line along an axis that begins at `begin` have one and the same fraction: those 1024ths can
/// be added to any number of steps without rounding.
bool HasOneFraction(double begin) {
    return std::abs(begin) < 0x1p40 && std::floor(begin * 1024) == begin * 1024;
}

/// A run of pixels along an axis, each combined with the same weights: across the axis, that of the cell and that of
/// the next one.
struct TStraightRun {
    std::int64_t Begin; // along the axis; the end is left out
    std::int64_t End;
    std::int64_t Cell; // across it
    std::uint32_t Weight;
    std::uint32_t NextWeight;

    /// Cuts off what lies beyond the lengths of the two axes.
    void Clip(std::int32_t along, std::int32_t across) {
        Begin = std::max<std::int64_t>(Begin, 0);
        End = std::min<std::int64_t>(End, along);
        if (Cell < 0 || Cell >= across)
            Weight = 0;
        if (Cell + 1 < 0 || Cell + 1 >= across)
            NextWeight = 0;
    }
    bool IsEmpty() const { return Begin >= End || (Weight == 0 && NextWeight == 0); }
};

void DrawLevelRun(TBitmap32& bitmap, TStraightRun run, TColor32 color) {
    run.Clip(bitmap.GetWidth(), bitmap.GetHeight());
    if (run.IsEmpty())
        return;
    const auto x = static_cast<std::int32_t>(run.Begin);
    const auto y = static_cast<std::int32_t>(run.Cell);
    const auto count = static_cast<std::size_t>(run.End - run.Begin);
    if (run.Weight != 0)
        PixelRows::CombineFill(&bitmap.Pixel(x, y), count, color, run.Weight);
    if (run.NextWeight != 0)
        PixelRows::CombineFill(&bitmap.Pixel(x, y + 1), count, color, run.NextWeight);
}

void DrawUprightRun(TBitmap32& bitmap, TStraightRun run, TColor32 color) {
    run.Clip(bitmap.GetHeight(), bitmap.GetWidth());
    if (run.IsEmpty())
        return;
    if (run.Cell < 0) { // the next one alone
        ++run.Cell;
        run.Weight = std::exchange(run.NextWeight, 0);
    }
    PixelRows::CombineFillColumns(
        &bitmap.Pixel(static_cast<std::int32_t>(run.Cell), static_cast<std::int32_t>(run.Begin)),
        static_cast<std::size_t>(bitmap.GetWidth()), static_cast<std::size_t>(run.End - run.Begin), color, run.Weight,
        run.NextWeight);
}

/// DrawSamples for a line of one colour along an axis whose samples have one fraction: what takes most of the time of
/// many rulers. Each pixel gets the near share of one sample and the far share of its neighbour, in the order in which
/// the line passes.
void DrawStraight(TBitmap32& bitmap, const TSampledLine& line, bool isLevel, TColor32 color) {
    const TVisibleSamples visible(bitmap, line);
    const std::int64_t count = visible.GetCount();
    if (count == 0)
        return;
    const TFloatPoint one = line.At(visible.First);
    const TFloatPoint other = line.At(visible.First + static_cast<double>(count - 1));
    const bool isForward = isLevel ? line.Direction.X > 0 : line.Direction.Y > 0;
    const TSamplePlace along(isLevel ? std::min(one.X, other.X) : std::min(one.Y, other.Y));
    const TSamplePlace across(isLevel ? one.Y : one.X);
    const auto run = [&](std::int64_t begin, std::uint32_t share) {
        const std::uint32_t whole = share * AlphaComponent(color);
        return TStraightRun{begin, begin + count, across.Cell, whole * (256 - across.NextWeight),
                            whole * across.NextWeight};
    };
    const TStraightRun nearShares = run(along.Cell, 256 - along.NextWeight);
    const TStraightRun farShares = run(along.Cell + 1, along.NextWeight);
    const auto draw = isLevel ? DrawLevelRun : DrawUprightRun;
    draw(bitmap, isForward ? farShares : nearShares, color);
    draw(bitmap, isForward ? nearShares : farShares, color);
}

} // namespace

void TBitmap32::LineToFS(double x, double y) {
    const TSampledLine line(std::exchange(FPenF, TFloatPoint{x, y}), {x, y});
    if (IsEmpty())
        return;
    const bool isLevel = line.Direction.Y == 0;
    if (isLevel ? HasOneFraction(line.Begin.X) : line.Direction.X == 0 && HasOneFraction(line.Begin.Y))
        DrawStraight(*this, line, isLevel, FPenColor);
    else
        DrawSamples(*this, line, [this](double) { return FPenColor; });
    DrawRest(*this, line, FPenColor);
}

void TBitmap32::LineToFSP(double x, double y) {
    const TSampledLine line(std::exchange(FPenF, TFloatPoint{x, y}), {x, y});
    const auto colorAt = [this](double k) { return StippleColor(FStippleCounter + k * FStippleStep); };
    if (!IsEmpty()) {
        DrawSamples(*this, line, colorAt);
        DrawRest(*this, line, colorAt(line.Whole));
    }
    FStippleCounter += (line.Whole + 1) * FStippleStep;
    if (!FStipple.empty())
        FStippleCounter = std::fmod(FStippleCounter, static_cast<double>(FStipple.size()));
}

void TBitmap32::SetStipple(std::span<const TColor32> colors) {
    WithinMemory([&] { FStipple.assign(colors.begin(), colors.end()); });
    FStippleCounter = 0;
}

TColor32 TBitmap32::StippleColor(double counter) const {
    if (FStipple.empty())
        return clBlack32;
    const auto count = static_cast<double>(FStipple.size());
    counter = std::fmod(counter, count);
    if (counter < 0)
        counter += count;
    if (!(counter < count)) // no number, or rounded up from just below 0
        counter = 0;
    const double whole = std::floor(counter);
    const auto index = static_cast<std::size_t>(whole);
    const auto weight = static_cast<std::uint32_t>((counter - whole) * CombineOne + 0.5);
    return CombineColor(FStipple[(index + 1) % FStipple.size()], FStipple[index], weight);
}

} // namespace lmx
