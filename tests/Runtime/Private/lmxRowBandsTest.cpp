#include <lmx/Runtime/Private/lmxRowBands.h>

#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Support/SharedCores.h>

#include <gtest/gtest.h>

#include <atomic>
#include <cfenv>
#include <condition_variable>
#include <latch>
#include <mutex>
#include <random>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace lmx {
namespace {

using tests::TSharedCores;

/// How often each row was asked for.
std::vector<int> CountRows(std::int32_t rowCount, std::int32_t width) {
    std::vector<int> counts(static_cast<std::size_t>(rowCount));
    TRowBands::Run(rowCount, width, [&](std::int32_t first, std::int32_t end) {
        EXPECT_LT(first, end);
        for (std::int32_t row = first; row < end; ++row)
            ++counts[static_cast<std::size_t>(row)];
    });
    return counts;
}

TEST(RowBands, CoverEachRowOnce) {
    std::mt19937 random(3);
    for (const int cores : {1, 2, 3, 8}) {
        const TSharedCores shared(cores);
        for (std::int32_t rowCount = 0; rowCount < 70; ++rowCount)
            EXPECT_EQ(CountRows(rowCount, 1), std::vector<int>(static_cast<std::size_t>(rowCount), 1)) << rowCount;
        for (int round = 0; round < 200; ++round) {
            const auto rowCount = static_cast<std::int32_t>(random() % 5000);
            ASSERT_EQ(CountRows(rowCount, 3), std::vector<int>(static_cast<std::size_t>(rowCount), 1)) << rowCount;
        }
    }
}

TEST(RowBands, WithoutRowsNothingIsCalled) {
    const TSharedCores shared(4);
    for (const std::int32_t none : {0, -5})
        TRowBands::Run(none, 1000, [](std::int32_t, std::int32_t) { ADD_FAILURE(); });
}

TEST(RowBands, SmallWorkIsOneBandOfTheCaller) {
    const TSharedCores shared(4, TRowBands::DefaultLeastPixels);
    EXPECT_FALSE(TRowBands::Pays(100, 100));
    EXPECT_FALSE(TRowBands::Pays(1, 1 << 30)) << "one row is not cut";
    EXPECT_TRUE(TRowBands::Pays(1 << 30, 1 << 30));
    EXPECT_TRUE(TRowBands::Pays(512, 256));
    EXPECT_FALSE(TRowBands::Pays(511, 256));
    int calls = 0;
    TRowBands::Run(100, 100, [&](std::int32_t first, std::int32_t end) {
        ++calls;
        EXPECT_EQ(first, 0);
        EXPECT_EQ(end, 100);
    });
    EXPECT_EQ(calls, 1);
}

TEST(RowBands, WithOneCoreEverythingRunsOnTheCallersThread) {
    const TSharedCores shared(1);
    const std::thread::id caller = std::this_thread::get_id();
    TRowBands::Run(1000, 1000, [&](std::int32_t first, std::int32_t end) {
        EXPECT_EQ(std::this_thread::get_id(), caller);
        EXPECT_EQ(end - first, 1000);
    });
}

TEST(RowBands, OtherThreadsHelp) {
    const TSharedCores shared(2);
    std::latch both(2); // each band waits for one on another thread
    std::atomic<int> bands = 0;
    std::mutex mutex;
    std::set<std::thread::id> threads;
    TRowBands::Run(8, 1, [&](std::int32_t, std::int32_t) {
        if (bands++ < 2)
            both.arrive_and_wait();
        const std::lock_guard lock(mutex);
        threads.insert(std::this_thread::get_id());
    });
    EXPECT_EQ(bands, 8);
    EXPECT_EQ(threads.size(), 2U);
    EXPECT_TRUE(threads.contains(std::this_thread::get_id()));
}

TEST(RowBands, NoMoreThreadsThanCores) {
    CountRows(100, 1);
    {
        const TSharedCores shared(6);
        CountRows(100, 1); // makes five threads
    }
    const TSharedCores shared(2);
    for (int round = 0; round < 50; ++round) {
        std::mutex mutex;
        std::set<std::thread::id> threads;
        TRowBands::Run(64, 1, [&](std::int32_t, std::int32_t) {
            std::this_thread::yield();
            const std::lock_guard lock(mutex);
            threads.insert(std::this_thread::get_id());
        });
        ASSERT_LE(threads.size(), 2U);
    }
}

TEST(RowBands, BandsWithinABandRunInIt) {
    const TSharedCores shared(4);
    std::vector<int> counts(64);
    TRowBands::Run(64, 1, [&](std::int32_t first, std::int32_t end) {
        const std::thread::id outer = std::this_thread::get_id();
        TRowBands::Run(end - first, 1, [&](std::int32_t innerFirst, std::int32_t innerEnd) {
            EXPECT_EQ(std::this_thread::get_id(), outer);
            EXPECT_EQ(innerEnd - innerFirst, end - first);
            for (std::int32_t row = innerFirst; row < innerEnd; ++row)
                ++counts[static_cast<std::size_t>(first + row)];
        });
    });
    EXPECT_EQ(counts, std::vector<int>(64, 1));
}

TEST(RowBands, ManyThreadsMayAskAtOnce) {
    const TSharedCores shared(3);
    std::vector<std::thread> threads;
    std::atomic<int> wrong = 0;
    for (int i = 0; i < 6; ++i)
        threads.emplace_back([&] {
            for (int round = 0; round < 300; ++round)
                if (CountRows(round % 40, 2) != std::vector<int>(static_cast<std::size_t>(round % 40), 1))
                    ++wrong;
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(wrong, 0);
}

TEST(RowBands, WhileBandsRunAnotherThreadGoesOnAlone) {
    const TSharedCores shared(2);
    std::mutex mutex;
    std::condition_variable changed;
    bool isInside = false;
    bool mayEnd = false;
    std::thread first([&] {
        TRowBands::Run(2, 1, [&](std::int32_t, std::int32_t) {
            std::unique_lock lock(mutex);
            isInside = true;
            changed.notify_all();
            changed.wait(lock, [&] { return mayEnd; });
        });
    });
    {
        std::unique_lock lock(mutex);
        changed.wait(lock, [&] { return isInside; });
    }
    EXPECT_EQ(CountRows(40, 1), std::vector<int>(40, 1)) << "waits for nobody";
    {
        const std::lock_guard lock(mutex);
        mayEnd = true;
    }
    changed.notify_all();
    first.join();
}

TEST(RowBands, WhatABandRaisesComesToTheCaller) {
    for (const int cores : {1, 2, 4}) {
        const TSharedCores shared(cores);
        for (int round = 0; round < 100; ++round) {
            try {
                TRowBands::Run(64, 1, [&](std::int32_t first, std::int32_t end) {
                    for (std::int32_t row = first; row < end; ++row)
                        if (row == 20 || row == 21 || row == 40 || row == 63)
                            throw EInvalidOp(QString(row, u'x'));
                });
                FAIL();
            } catch (const EInvalidOp& failure) {
                ASSERT_EQ(failure.Message().size(), 20) << "the topmost one";
            }
            ASSERT_EQ(CountRows(64, 1), std::vector<int>(64, 1)) << "and the next ones run";
        }
    }
}

TEST(RowBands, BandsCalculateAsTheCallerDoes) {
    const TSharedCores shared(2);
    std::fesetround(FE_UPWARD);
    std::latch both(2);
    std::atomic<int> bands = 0;
    std::atomic<int> upward = 0;
    TRowBands::Run(8, 1, [&](std::int32_t, std::int32_t) {
        if (bands++ < 2)
            both.arrive_and_wait();
        upward += std::fegetround() == FE_UPWARD ? 1 : 0;
    });
    std::fesetround(FE_TONEAREST);
    EXPECT_EQ(upward, 8);
}

} // namespace
} // namespace lmx
