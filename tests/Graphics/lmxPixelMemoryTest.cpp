#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Graphics/lmxPixelMemory.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Support/MemoryLimit.h>

#include <QImage>

#include <gtest/gtest.h>

#include <limits>
#include <utility>

namespace lmx {
namespace {

constexpr std::int32_t Highest = std::numeric_limits<std::int32_t>::max();

TPixelMemory Made(std::int32_t width, std::int32_t height) {
    TPixelMemory memory;
    memory.SetSize(width, height);
    return memory;
}

void ExpectSize(const TPixelMemory& memory, std::int32_t width, std::int32_t height) {
    EXPECT_EQ(memory.GetWidth(), width);
    EXPECT_EQ(memory.GetHeight(), height);
    EXPECT_EQ(memory.GetCount(), static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
}

TEST(PixelMemory, BeginsEmptyAndReadsZero) {
    ExpectSize(TPixelMemory(), 0, 0);
    TPixelMemory memory = Made(3, 2);
    ExpectSize(memory, 3, 2);
    memory.GetPixels()[5] = 7;
    memory.SetSize(2, 3);
    ExpectSize(memory, 2, 3);
    for (std::size_t i = 0; i < 6; ++i)
        EXPECT_EQ(memory.GetPixels()[i], 0U);
}

TEST(PixelMemory, WithoutPixelsNoneIsHeld) {
    for (const auto& [width, height] : {std::pair(0, 0), std::pair(0, 9), std::pair(-1, 9)}) {
        TPixelMemory memory = Made(300, 200);
        EXPECT_GE(memory.GetCapacity(), 60000U);
        memory.SetSize(width, height);
        ExpectSize(memory, 0, height);
        EXPECT_EQ(memory.GetCapacity(), 0U);
    }
}

TEST(PixelMemory, CopiesAreIndependentAndMovedOnesEmpty) {
    TPixelMemory memory = Made(3, 2);
    memory.GetPixels()[0] = 1;
    TPixelMemory copy = memory;
    copy.GetPixels()[0] = 2;
    EXPECT_EQ(memory.GetPixels()[0], 1U);

    const TColor32* pixels = copy.GetPixels();
    TPixelMemory taken = std::move(copy);
    ExpectSize(copy, 0, 0); // NOLINT(bugprone-use-after-move)
    EXPECT_EQ(taken.GetPixels(), pixels);
    memory = std::move(taken);
    ExpectSize(taken, 0, 0); // NOLINT(bugprone-use-after-move)
    ExpectSize(memory, 3, 2);
    EXPECT_EQ(memory.GetPixels(), pixels);

    TPixelMemory& same = memory;
    memory = std::move(same);
    ExpectSize(memory, 3, 2);
    memory = same;
    EXPECT_EQ(memory.GetPixels()[0], 2U);
}

TEST(PixelMemory, MoreThanAMachineHoldsIsRefusedWithoutTrying) {
    TPixelMemory memory = Made(3, 2);
    memory.GetPixels()[5] = 7;
    EXPECT_THROW(memory.SetSize(Highest, Highest), EOutOfMemory);
    ExpectSize(memory, 3, 2);
    EXPECT_EQ(memory.GetPixels()[5], 7U);
}

// Sanitizers take address space of their own, which cannot be limited.
#ifndef LMX_SANITIZED

constexpr std::size_t Megabyte = 1 << 20;

TEST(PixelMemory, WhatTheSystemRefusesLeavesEverythingAsItWas) {
    TPixelMemory large = Made(8192, 8192); // 256 MiB
    large.GetPixels()[5] = 7;
    TPixelMemory small = Made(3, 2);
    const tests::TMemoryLimit limit(128 * Megabyte);
    EXPECT_THROW(small = large, EOutOfMemory);
    ExpectSize(small, 3, 2);
    EXPECT_THROW(TPixelMemory{large}, EOutOfMemory);
    EXPECT_THROW(large.SetSize(10000, 8192), EOutOfMemory);
    ExpectSize(large, 8192, 8192);
    EXPECT_EQ(large.GetPixels()[5], 7U);
}

TEST(PixelMemory, BitmapsRaiseTheSame) {
    TBitmap32 large(8192, 8192);
    large.SetPenColor(1);
    TBitmap32 small(3, 2);
    const tests::TMemoryLimit limit(128 * Megabyte);
    EXPECT_THROW(small = large, EOutOfMemory);
    EXPECT_EQ(small.GetBounds(), TRect(0, 0, 3, 2));
    EXPECT_EQ(small.GetPenColor(), clWhite32);
    EXPECT_THROW(TBitmap32{large}, EOutOfMemory);
    EXPECT_THROW(large.Draw(1, 1, large), EOutOfMemory);
    EXPECT_THROW(large.Stretched(large.GetBounds(), 8000, 8000), EOutOfMemory);
    EXPECT_THROW(large.ToQImage(), EOutOfMemory);
}

#endif

} // namespace
} // namespace lmx
