#include <lmx/Graphics/Private/lmxBlend.h>
#include <tests/Graphics/Pictures.h>
#include <tests/Support/SharedCores.h>

#include <limits>
#include <numeric>

namespace lmx {
namespace {

using tests::AllPixels;
using tests::Between;
using tests::RandomBitmap;
using tests::Row;

constexpr std::int64_t Lowest64 = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t Highest64 = std::numeric_limits<std::int64_t>::max();

/// A row of pixels 1, 2, 3, ...
TBitmap32 Numbered(std::int32_t width, std::int32_t height = 1) {
    TBitmap32 bitmap(width, height);
    std::iota(bitmap.ScanLine(0), bitmap.ScanLine(0) + width * height, 1U);
    return bitmap;
}

using TNumbers = std::vector<TColor32>;

TNumbers Stretched(std::int32_t bitmapWidth, const TRect& destination, const TRect& source, std::int32_t sourceWidth) {
    TBitmap32 bitmap(bitmapWidth, 1);
    bitmap.Draw(destination, source, Numbered(sourceWidth));
    return Row(bitmap, 0);
}

// --- Modes -----------------------------------------------------------------------------------------------------------

struct TModeRow {
    const char* Name;
    TDrawMode Mode;
    int MasterAlpha;
    TCombineMode Combine;
    TColor32 Source;
    TColor32 Expected; // over 0x40102030, outer color 0x80112233
};
void PrintTo(const TModeRow& row, std::ostream* stream) {
    *stream << row.Name;
}

class Bitmap32DrawModes : public testing::TestWithParam<TModeRow> {};

TEST_P(Bitmap32DrawModes, RuleATransfer) {
    const TModeRow& row = GetParam();
    TBitmap32 source(300, 2);
    source.Clear(row.Source);
    source.SetDrawMode(row.Mode);
    source.SetMasterAlpha(static_cast<std::uint8_t>(row.MasterAlpha));
    source.SetOuterColor(0x80112233U);
    TBitmap32 bitmap(300, 2);
    bitmap.SetCombineMode(row.Combine);
    bitmap.Clear(0x40102030U);
    TBitmap32 stretched = bitmap;
    bitmap.Draw(0, 0, source);
    stretched.Draw(TRect(0, 0, 300, 2), TRect(0, 0, 7, 1), source);
    EXPECT_EQ(AllPixels(bitmap), TNumbers(600, row.Expected));
    EXPECT_EQ(AllPixels(stretched), TNumbers(600, row.Expected));
}

constexpr TColor32 Under = 0x40102030U;
constexpr TCombineMode OntoOpaque = TCombineMode::cmBlend;
constexpr TCombineMode OntoTransparent = TCombineMode::cmMerge;

INSTANTIATE_TEST_SUITE_P(
    Modes, Bitmap32DrawModes,
    testing::Values(
        TModeRow{"OpaqueCopies", TDrawMode::dmOpaque, 255, OntoOpaque, 0x11223344U, 0x11223344U},
        TModeRow{"OpaqueIgnoresMasterAlpha", TDrawMode::dmOpaque, 0, OntoOpaque, 0x11223344U, 0x11223344U},
        TModeRow{"CustomCopies", TDrawMode::dmCustom, 7, OntoTransparent, 0x11223344U, 0x11223344U},
        TModeRow{"TransparentSkipsTheOuterColor", TDrawMode::dmTransparent, 255, OntoOpaque, 0x80112233U, Under},
        TModeRow{"TransparentCopiesTheRestRaw", TDrawMode::dmTransparent, 3, OntoOpaque, 0x81112233U, 0x81112233U},
        TModeRow{"TransparentComparesAlphaToo", TDrawMode::dmTransparent, 255, OntoOpaque, 0x00112233U, 0x00112233U},
        TModeRow{"BlendOpaque", TDrawMode::dmBlend, 255, OntoOpaque, 0xFF112233U, 0xFF112233U},
        TModeRow{"BlendInvisible", TDrawMode::dmBlend, 255, OntoOpaque, 0x00112233U, Under},
        TModeRow{"BlendHalf", TDrawMode::dmBlend, 255, OntoOpaque, 0x80FFFFFFU, BlendColor(0x80FFFFFFU, Under)},
        TModeRow{"BlendMasterAlphaZero", TDrawMode::dmBlend, 0, OntoOpaque, 0xFF112233U, Under},
        TModeRow{"BlendMasterAlphaScales", TDrawMode::dmBlend, 100, OntoOpaque, 0x80FFFFFFU,
                 BlendColor(0x32FFFFFFU, Under)},
        TModeRow{"MergeHalf", TDrawMode::dmBlend, 255, OntoTransparent, 0x80FFFFFFU, MergeColor(0x80FFFFFFU, Under)},
        TModeRow{"MergeMasterAlphaScales", TDrawMode::dmBlend, 100, OntoTransparent, 0x80FFFFFFU,
                 MergeColor(0x32FFFFFFU, Under)}),
    [](const auto& tested) { return std::string(tested.param.Name); });

// --- Unstretched -----------------------------------------------------------------------------------------------------

TEST(Bitmap32Draw, UnstretchedIsClippedToBothBitmaps) {
    TBitmap32 bitmap(3, 2);
    bitmap.Draw(-1, -1, Numbered(3, 3));
    EXPECT_EQ(AllPixels(bitmap), (TNumbers{5, 6, 0, 8, 9, 0}));
    bitmap.Clear(0);
    Numbered(3, 3).DrawTo(bitmap, 2, 1);
    EXPECT_EQ(AllPixels(bitmap), (TNumbers{0, 0, 0, 0, 0, 1}));
    bitmap.Clear(0);
    for (const TPoint outside : {TPoint(3, 0), TPoint(-3, 0), TPoint(0, 2), TPoint(0, -3),
                                 TPoint(std::numeric_limits<std::int32_t>::max(), 0)})
        bitmap.Draw(outside.X, outside.Y, Numbered(3, 3));
    EXPECT_EQ(AllPixels(bitmap), TNumbers(6, 0));
}

TEST(Bitmap32Draw, UnstretchedOntoItselfReadsWhatWasThere) {
    TBitmap32 bitmap = Numbered(2, 3);
    bitmap.Draw(0, 1, bitmap);
    EXPECT_EQ(AllPixels(bitmap), (TNumbers{1, 2, 1, 2, 3, 4}));
}

// --- Stretched -------------------------------------------------------------------------------------------------------

TEST(Bitmap32Draw, StretchingIsAnchoredAtTheLeftEdge) {
    EXPECT_EQ(Stretched(4, {0, 0, 4, 1}, {0, 0, 3, 1}, 3), (TNumbers{1, 1, 2, 3}));
    EXPECT_EQ(Stretched(6, {0, 0, 6, 1}, {0, 0, 3, 1}, 3), (TNumbers{1, 1, 2, 2, 3, 3}));
    EXPECT_EQ(Stretched(3, {0, 0, 3, 1}, {0, 0, 7, 1}, 7), (TNumbers{1, 3, 5}));
}

TEST(Bitmap32Draw, ADestinationOfOnePixelShowsTheMiddle) {
    EXPECT_EQ(Stretched(3, {1, 0, 2, 1}, {0, 0, 7, 1}, 7), (TNumbers{0, 4, 0}));
    EXPECT_EQ(Stretched(3, {1, 0, 2, 1}, {1, 0, 7, 1}, 7), (TNumbers{0, 4, 0})) << "(1 + 7 - 1) / 2 = 3";
    EXPECT_EQ(Stretched(3, {1, 0, 2, 1}, {2, 0, 3, 1}, 7), (TNumbers{0, 3, 0}));
}

TEST(Bitmap32Draw, RowsFollowTheSameRule) {
    TBitmap32 bitmap(1, 4);
    bitmap.Draw(TRect(0, 0, 1, 4), TRect(0, 0, 1, 3), Numbered(1, 3));
    EXPECT_EQ(AllPixels(bitmap), (TNumbers{1, 1, 2, 3}));
}

TEST(Bitmap32Draw, ClippingNeverChangesTheMapping) {
    const TNumbers whole = Stretched(20, {0, 0, 20, 1}, {0, 0, 7, 1}, 7);
    for (std::int32_t left = -20; left <= 5; ++left) {
        const TNumbers part = Stretched(5, {left, 0, left + 20, 1}, {0, 0, 7, 1}, 7);
        for (std::int32_t x = 0; x < 5; ++x) {
            const std::int32_t i = x - left;
            ASSERT_EQ(part[static_cast<std::size_t>(x)], i >= 0 && i < 20 ? whole[static_cast<std::size_t>(i)] : 0U);
        }
    }
}

TEST(Bitmap32Draw, EqualSizesCopy) {
    EXPECT_EQ(Stretched(5, {1, 0, 4, 1}, {2, 0, 5, 1}, 6), (TNumbers{0, 3, 4, 5, 0}));
}

TEST(Bitmap32Draw, OnePixelShortLeavesOutTheLast) {
    EXPECT_EQ(Stretched(7, {1, 0, 6, 1}, {0, 0, 6, 1}, 6), (TNumbers{0, 1, 2, 3, 4, 5, 0}));
    EXPECT_EQ(Stretched(3, {1, 0, 2, 1}, {0, 0, 2, 1}, 2), (TNumbers{0, 1, 0}));
}

TEST(Bitmap32Draw, ASourceRectangleThatLeavesTheSourceIsCut) {
    // Twice as wide; one source pixel is missing on the left and two on the right.
    EXPECT_EQ(Stretched(12, {0, 0, 12, 1}, {-1, 0, 5, 1}, 3), (TNumbers{0, 0, 1, 1, 2, 2, 3, 3, 0, 0, 0, 0}));
    // 5 / 3 wide: the left edge moves in by ceil(5 / 3) = 2, the right one by floor(5 / 3) = 1.
    EXPECT_EQ(Stretched(5, {0, 0, 5, 1}, {-1, 0, 2, 1}, 2), (TNumbers{0, 0, 1, 1, 2}));
    EXPECT_EQ(Stretched(5, {0, 0, 5, 1}, {0, 0, 3, 1}, 2), (TNumbers{1, 1, 2, 2, 0}));
    TBitmap32 bitmap(1, 6);
    bitmap.Draw(TRect(0, 0, 1, 6), TRect(0, -1, 1, 2), Numbered(1, 2));
    EXPECT_EQ(AllPixels(bitmap), (TNumbers{0, 0, 1, 1, 2, 2}));
}

struct TNothing {
    const char* Name;
    TRect Destination;
    TRect Source;
};
void PrintTo(const TNothing& row, std::ostream* stream) {
    *stream << row.Name;
}

class Bitmap32DrawNothing : public testing::TestWithParam<TNothing> {};

TEST_P(Bitmap32DrawNothing, LeavesTheBitmap) {
    TBitmap32 bitmap(4, 4);
    bitmap.Draw(GetParam().Destination, GetParam().Source, Numbered(4, 4));
    EXPECT_EQ(AllPixels(bitmap), TNumbers(16, 0));
}

INSTANTIATE_TEST_SUITE_P(Rects, Bitmap32DrawNothing,
                         testing::Values(TNothing{"EmptyDestination", {1, 0, 1, 4}, {0, 0, 4, 4}},
                                         TNothing{"InvertedDestination", {4, 0, 0, 4}, {0, 0, 4, 4}},
                                         TNothing{"InvertedDestinationY", {0, 4, 4, 0}, {0, 0, 4, 4}},
                                         TNothing{"EmptySource", {0, 0, 4, 4}, {0, 2, 4, 2}},
                                         TNothing{"InvertedSource", {0, 0, 4, 4}, {4, 0, 0, 4}},
                                         TNothing{"BothInverted", {4, 0, 0, 4}, {4, 0, 0, 4}},
                                         TNothing{"SourceToTheLeft", {0, 0, 4, 4}, {-4, 0, 0, 4}},
                                         TNothing{"SourceBelow", {0, 0, 4, 4}, {0, 4, 4, 8}},
                                         TNothing{"DestinationToTheRight", {4, 0, 8, 4}, {0, 0, 4, 4}},
                                         TNothing{"DestinationAbove", {0, -9, 4, 0}, {0, 0, 4, 4}}),
                         [](const auto& tested) { return std::string(tested.param.Name); });

TEST(Bitmap32Draw, AnEmptySourceDrawsNothing) {
    TBitmap32 bitmap(2, 2);
    bitmap.Draw(TRect(0, 0, 2, 2), TRect(0, 0, 2, 2), TBitmap32(0, 5));
    EXPECT_EQ(AllPixels(bitmap), TNumbers(4, 0));
}

TEST(Bitmap32Draw, StretchedOntoItselfReadsWhatWasThere) {
    TBitmap32 bitmap = Numbered(6);
    bitmap.Draw(TRect(0, 0, 6, 1), TRect(0, 0, 3, 1), bitmap);
    EXPECT_EQ(AllPixels(bitmap), (TNumbers{1, 1, 2, 2, 3, 3}));
}

TEST(Bitmap32Draw, WideRectanglesKeepTheMappingBeyond32Bits) {
    // A cell of 10^12 pixels: pixel x lies 3 pixels before the border between the second and the third cell.
    constexpr std::int64_t cell = 1'000'000'000'000;
    TBitmap32 bitmap(6, 1);
    bitmap.Draw(TWideRect(3 - 2 * cell, 0, 3 + 3 * cell, 1), TRect(0, 0, 5, 1), Numbered(5));
    EXPECT_EQ(Row(bitmap, 0), (TNumbers{2, 2, 2, 3, 3, 3}));
}

TEST(Bitmap32Draw, WideRectanglesReachTheEndsOf64Bits) {
    TBitmap32 bitmap(4, 2);
    bitmap.Draw(TWideRect(Lowest64, Lowest64, Highest64, Highest64), TRect(0, 0, 2, 2), Numbered(2, 2));
    // Of 2^64 - 1 columns the first 2^63 show column 0: up to pixel -1.
    EXPECT_EQ(AllPixels(bitmap), (TNumbers{4, 4, 4, 4, 4, 4, 4, 4}));
    bitmap.Draw(TWideRect(Lowest64, 0, Lowest64 + 10, 2), TRect(0, 0, 2, 2), Numbered(2, 2));
    bitmap.Draw(TWideRect(0, Highest64 - 9, 4, Highest64), TRect(0, 0, 2, 2), Numbered(2, 2));
    EXPECT_EQ(AllPixels(bitmap), TNumbers(8, 4)) << "outside";
}

// --- Against the definition, pixel by pixel --------------------------------------------------------------------------

__extension__ typedef __int128 TInt128;

struct TAxis {
    TInt128 To, ToSize, From, FromSize;
};

TAxis CutToSource(TInt128 to, TInt128 toEnd, TInt128 from, TInt128 fromEnd, TInt128 limit) {
    const TInt128 toSize = toEnd - to;
    const TInt128 fromSize = fromEnd - from;
    const TInt128 before = from < 0 ? -from : 0;
    const TInt128 behind = fromEnd > limit ? fromEnd - limit : 0;
    to += (before * toSize + fromSize - 1) / fromSize;
    toEnd -= behind * toSize / fromSize;
    return {to, toEnd - to, from + before, fromSize - before - behind};
}

std::int32_t SourceOf(const TAxis& axis, std::int32_t position) {
    if (axis.ToSize <= 0 || axis.FromSize <= 0 || position < axis.To || position >= axis.To + axis.ToSize)
        return -1;
    if (axis.ToSize == 1)
        return static_cast<std::int32_t>((axis.From + axis.From + axis.FromSize - 1) / 2);
    return static_cast<std::int32_t>(axis.From + (position - axis.To) * axis.FromSize / axis.ToSize);
}

TColor32 Transferred(const TBitmap32& source, TCombineMode combine, TColor32 over, TColor32 under) {
    switch (source.GetDrawMode()) {
    case TDrawMode::dmBlend:
        over = ScaleColorAlpha(over, source.GetMasterAlpha());
        return combine == TCombineMode::cmMerge ? MergeColor(over, under) : BlendColor(over, under);
    case TDrawMode::dmTransparent:
        return over == source.GetOuterColor() ? under : over;
    default:
        return over;
    }
}

void DrawPlainly(TBitmap32& bitmap, const TWideRect& to, const TRect& from, const TBitmap32& source) {
    if (to.IsEmpty() || from.IsEmpty())
        return;
    const TAxis horizontal = CutToSource(to.Left, to.Right, from.Left, from.Right, source.GetWidth());
    const TAxis vertical = CutToSource(to.Top, to.Bottom, from.Top, from.Bottom, source.GetHeight());
    for (std::int32_t y = 0; y < bitmap.GetHeight(); ++y)
        for (std::int32_t x = 0; x < bitmap.GetWidth(); ++x) {
            const std::int32_t column = SourceOf(horizontal, x);
            const std::int32_t row = SourceOf(vertical, y);
            if (column >= 0 && row >= 0)
                bitmap.Pixel(x, y) =
                    Transferred(source, bitmap.GetCombineMode(), source.Pixel(column, row), bitmap.Pixel(x, y));
        }
}

class Bitmap32DrawOnCores : public testing::TestWithParam<int> {};

TEST_P(Bitmap32DrawOnCores, EqualsTheDefinitionForRandomRectangles) {
    const tests::TSharedCores shared(GetParam());
    std::mt19937 random(23);
    for (int round = 0; round < 4000; ++round) {
        TBitmap32 source = RandomBitmap(random, Between(random, 1, 40), Between(random, 1, 12));
        source.SetDrawMode(static_cast<TDrawMode>(Between(random, 0, 3)));
        source.SetMasterAlpha(static_cast<std::uint8_t>(random() % 3 == 0 ? Between(random, 0, 255) : 255));
        source.SetOuterColor(source.Pixel(0, 0));
        TBitmap32 fast = RandomBitmap(random, Between(random, 1, 90), Between(random, 1, round % 2 ? 12 : 50));
        fast.SetCombineMode(static_cast<TCombineMode>(Between(random, 0, 1)));
        TBitmap32 plain = fast;
        const std::int32_t reach = round % 4 == 0 ? 3 : 60;
        const std::int64_t factor = round % 7 == 0 ? 1'000'000'007 : 1;
        const TRect from(Between(random, -5, 20), Between(random, -3, 6), Between(random, 10, 45),
                         Between(random, 4, 16));
        TWideRect to(factor * Between(random, -reach, 40), factor * Between(random, -reach, 10),
                     factor * Between(random, 0, 40 + reach), factor * Between(random, 0, 10 + reach));
        if (round % 5 == 0)
            to.Right = to.Left + from.Right - from.Left - Between(random, 0, 2);
        if (round % 3 == 0)
            to.Bottom = to.Top + from.Bottom - from.Top - Between(random, 0, 2);
        fast.Draw(to, from, source);
        DrawPlainly(plain, to, from, source);
        ASSERT_EQ(AllPixels(fast), AllPixels(plain)) << "round " << round;
    }
}

INSTANTIATE_TEST_SUITE_P(Cores, Bitmap32DrawOnCores, testing::Values(1, 2, 5));

TEST(Bitmap32Draw, OnSeveralCoresABitmapStillShowsItselfAsItWas) {
    std::mt19937 random(29);
    TBitmap32 bitmap = RandomBitmap(random, 60, 50);
    TBitmap32 expected = bitmap;
    expected.Draw(TRect(3, 5, 50, 47), TRect(0, 0, 60, 50), TBitmap32(bitmap));
    const tests::TSharedCores shared(4);
    bitmap.Draw(TRect(3, 5, 50, 47), TRect(0, 0, 60, 50), bitmap);
    EXPECT_EQ(AllPixels(bitmap), AllPixels(expected));
}

} // namespace
} // namespace lmx
