#include <lmx/Graphics/Private/lmxBlend.h>
#include <lmx/Graphics/Private/lmxPixelRows.h>
#include <tests/Graphics/Pictures.h>

#include <functional>
#include <numeric>

namespace lmx {
namespace {

using tests::RandomColor;

/// A kernel that reads a row and changes another one, and what it does to one pixel.
struct TKernel {
    const char* Name;
    std::function<void(TColor32*, const TColor32*, std::size_t)> Run;
    std::function<TColor32(TColor32 over, TColor32 under)> Definition;
};

std::vector<TKernel> Kernels() {
    return {
        {"Blend", PixelRows::Blend, BlendColor},
        {"Merge", PixelRows::Merge, MergeColor},
        {"Copy", PixelRows::Copy, [](TColor32 over, TColor32) { return over; }},
        {"CopyExcept", [](auto* to, auto* from, auto count) { PixelRows::CopyExcept(to, from, count, 0x11U); },
         [](TColor32 over, TColor32 under) { return over == 0x11U ? under : over; }},
        {"ScaleAlphas", [](auto* to, auto* from, auto count) { PixelRows::ScaleAlphas(to, from, count, 77); },
         [](TColor32 over, TColor32) { return ScaleColorAlpha(over, 77); }},
    };
}

class PixelRowsKernels : public testing::TestWithParam<int> {};

// Every length up to 70 at every alignment, the pixels around the row watched; runs of equal alphas meet the shortcuts.
TEST_P(PixelRowsKernels, EqualTheirDefinitions) {
    const TKernel kernel = Kernels()[static_cast<std::size_t>(GetParam())];
    std::mt19937 random(20);
    for (std::size_t count = 0; count <= 70; ++count)
        for (std::size_t offset = 0; offset < 8; ++offset) {
            std::vector<TColor32> from(count + 16);
            std::vector<TColor32> to(count + 16);
            for (std::size_t i = 0; i < from.size(); ++i) {
                const bool repeats = i > 0 && random() % 2 == 0;
                from[i] = repeats ? (from[i - 1] & 0xFF000000U) | (random() & 0x00FFFFFFU) : RandomColor(random);
                if (random() % 8 == 0)
                    from[i] = 0x11U;
                to[i] = RandomColor(random);
            }
            std::vector<TColor32> expected = to;
            for (std::size_t i = offset; i < offset + count; ++i)
                expected[i] = kernel.Definition(from[i], to[i]);
            kernel.Run(to.data() + offset, from.data() + offset, count);
            ASSERT_EQ(to, expected) << kernel.Name << ", " << count << " pixels from " << offset;
        }
}

INSTANTIATE_TEST_SUITE_P(All, PixelRowsKernels, testing::Range(0, 5), [](const auto& tested) {
    return std::string(Kernels()[static_cast<std::size_t>(tested.param)].Name);
});

class PixelRowsBlend : public testing::TestWithParam<std::size_t> {};

/// Every alpha with every pair of channel values, so every sum that the division by 255 can meet, in rows of a length
/// that one of the widths of the kernel takes.
TEST_P(PixelRowsBlend, IsExactForEveryAlphaAndChannel) {
    std::vector<TColor32> from(256 * 256);
    std::vector<TColor32> to(256 * 256);
    for (TColor32 alpha = 0; alpha < 256; ++alpha) {
        for (TColor32 over = 0; over < 256; ++over)
            for (TColor32 under = 0; under < 256; ++under) {
                from[over * 256 + under] = alpha << 24 | over << 16 | over << 8 | under;
                to[over * 256 + under] = 0x55000000U | under << 16 | under << 8 | over;
            }
        std::vector<TColor32> expected = to;
        for (std::size_t i = 0; i < to.size(); ++i)
            expected[i] = BlendColor(from[i], to[i]);
        for (std::size_t i = 0; i < to.size(); i += GetParam())
            PixelRows::Blend(to.data() + i, from.data() + i, GetParam());
        ASSERT_EQ(to, expected) << "alpha " << alpha;
    }
}

INSTANTIATE_TEST_SUITE_P(Lengths, PixelRowsBlend, testing::Values(1, 4, 8, 64));

TEST(PixelRows, ScaleAlphasIsExactForEveryAlphaAndFactor) {
    std::vector<TColor32> from(256);
    for (TColor32 alpha = 0; alpha < 256; ++alpha)
        from[alpha] = alpha << 24 | 0x123456U;
    for (unsigned factor = 0; factor < 256; ++factor) {
        std::vector<TColor32> to(256);
        PixelRows::ScaleAlphas(to.data(), from.data(), to.size(), factor);
        for (std::size_t i = 0; i < 256; ++i)
            ASSERT_EQ(to[i], ScaleColorAlpha(from[i], factor)) << factor;
    }
}

TEST(PixelRows, FillsOfOneColorEqualTheirDefinitions) {
    std::mt19937 random(21);
    for (std::size_t count = 0; count <= 70; ++count)
        for (int round = 0; round < 8; ++round) {
            const TColor32 color = RandomColor(random);
            std::vector<TColor32> before(count + 2);
            for (TColor32& pixel : before)
                pixel = RandomColor(random);
            std::vector<TColor32> filled = before, blended = before, merged = before;
            PixelRows::Fill(filled.data() + 1, count, color);
            PixelRows::BlendFill(blended.data() + 1, count, color);
            PixelRows::MergeFill(merged.data() + 1, count, color);
            for (std::size_t i = 0; i < before.size(); ++i) {
                const bool inside = i > 0 && i <= count;
                ASSERT_EQ(filled[i], inside ? color : before[i]);
                ASSERT_EQ(blended[i], inside ? BlendColor(color, before[i]) : before[i]);
                ASSERT_EQ(merged[i], inside ? MergeColor(color, before[i]) : before[i]);
            }
        }
}

TEST(PixelRows, CombineFillIsExactForEveryChannelAndWeight) {
    std::mt19937 random(21);
    for (int round = 0; round < 3000; ++round) {
        const TColor32 color = RandomColor(random);
        const auto weight =
            static_cast<std::uint32_t>(round % 10 == 0 ? random() % 3 * (CombineOne / 2) : random() % (CombineOne + 1));
        std::vector<TColor32> to(300);
        for (std::size_t i = 0; i < to.size(); ++i)
            to[i] = i < 256 ? static_cast<TColor32>(i) * 0x01010101U : RandomColor(random);
        std::vector<TColor32> expected = to;
        const std::size_t offset = random() % 8;
        const std::size_t count = round % 2 == 0 ? to.size() - 8 : random() % 40;
        for (std::size_t i = offset; i < offset + count; ++i)
            expected[i] = CombineColor(color, to[i], weight);
        PixelRows::CombineFill(to.data() + offset, count, color, weight);
        ASSERT_EQ(to, expected) << std::hex << color << " with weight " << weight;
    }
}

TEST(PixelRows, CombineFillColumnsTouchesTwoPixelsOfEachRow) {
    std::mt19937 random(22);
    const auto anyWeight = [&] {
        return static_cast<std::uint32_t>(random() % 5 == 0 ? random() % 2 * CombineOne : random() % (CombineOne + 1));
    };
    for (int round = 0; round < 500; ++round) {
        const TColor32 color = RandomColor(random);
        const std::uint32_t weight = anyWeight();
        const std::uint32_t nextWeight = anyWeight();
        std::vector<TColor32> to(7 * 50);
        for (TColor32& pixel : to)
            pixel = RandomColor(random);
        std::vector<TColor32> expected = to;
        const std::size_t count = random() % 45;
        for (std::size_t place = 2 * 7 + 3; place < (2 + count) * 7; place += 7) {
            expected[place] = CombineColor(color, to[place], weight);
            expected[place + 1] = CombineColor(color, to[place + 1], nextWeight);
        }
        PixelRows::CombineFillColumns(to.data() + 2 * 7 + 3, 7, count, color, weight, nextWeight);
        ASSERT_EQ(to, expected) << std::hex << color << " with weights " << weight << ", " << nextWeight;
    }
}

TEST(PixelRows, GatherFollowsTheColumns) {
    std::mt19937 random(22);
    std::vector<TColor32> from(3000);
    std::iota(from.begin(), from.end(), 1000U);
    for (const std::int32_t step : {0, 1, 2, 5, 40})
        for (std::size_t count = 0; count <= 70; ++count) {
            std::vector<std::int32_t> columns(count);
            for (std::size_t i = 0; i < count; ++i)
                columns[i] = static_cast<std::int32_t>(i) * step + 3;
            std::vector<TColor32> to(count + 1, 7);
            PixelRows::Gather(to.data(), from.data(), columns.data(), count, from.data());
            for (std::size_t i = 0; i < count; ++i)
                ASSERT_EQ(to[i], 1000U + static_cast<TColor32>(columns[i]));
            ASSERT_EQ(to[count], 7U);
        }
}

} // namespace
} // namespace lmx
