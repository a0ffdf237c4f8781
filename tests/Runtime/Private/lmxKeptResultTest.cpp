#include <lmx/Runtime/Private/lmxKeptResult.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

namespace lmx {
namespace {

TEST(KeptResult, IsMadeOnceForACount) {
    TKeptResult<int> kept;
    int made = 0;
    const auto get = [&](std::uint64_t count) { return kept.Get(count, [&] { return ++made; }); };
    EXPECT_EQ(get(0), 1);
    EXPECT_EQ(get(0), 1);
    EXPECT_EQ(get(7), 2);
    EXPECT_EQ(get(7), 2);
}

TEST(KeptResult, StaysWhereTheCountSpokeOfSomethingElse) {
    TKeptResult<int> kept;
    int made = 0;
    int asked = 0;
    bool isStill = true;
    const auto get = [&](std::uint64_t count) {
        return kept.Get(
            count, [&] { return ++made; }, [&](int) { return ++asked, isStill; });
    };
    EXPECT_EQ(get(1), 1);
    EXPECT_EQ(asked, 0);
    EXPECT_EQ(get(2), 1);
    EXPECT_EQ(get(2), 1);
    EXPECT_EQ(asked, 1);
    isStill = false;
    EXPECT_EQ(get(3), 2);
}

TEST(KeptResult, KeepsNothingOfWhatRaises) {
    TKeptResult<int> kept;
    const auto raise = []() -> int { throw EInvalidOperation(QStringLiteral("not now")); };
    EXPECT_EQ(tests::MessageOf<EInvalidOperation>([&] { kept.Get(0, raise); }), "not now");
    EXPECT_EQ(kept.Get(0, [] { return 5; }), 5);
    EXPECT_EQ(tests::MessageOf<EInvalidOperation>([&] { kept.Get(1, raise); }), "not now");
    EXPECT_EQ(kept.Get(0, raise), 5);
}

TEST(KeptResult, IsTheSameForAllThreads) {
    TKeptResult<std::vector<int>> kept;
    std::atomic<int> made = 0;
    std::atomic<int> wrong = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&] {
            for (std::uint64_t count = 0; count < 2000; ++count) {
                const std::vector<int>& values = kept.Get(
                    count / 100, [&] { return ++made, std::vector<int>(100, 3); },
                    [](const std::vector<int>&) { return true; });
                wrong += values.size() == 100 && values.back() == 3 ? 0 : 1;
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(made, 1);
    EXPECT_EQ(wrong, 0);
}

} // namespace
} // namespace lmx
