#include <lmx/Runtime/lmxCores.h>
#include <tests/Support/SharedCores.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

namespace lmx {
namespace {

TEST(Cores, BeginWithTheCallersAlone) {
    EXPECT_EQ(TCores::GetCount(), 1);
    EXPECT_FALSE(TRowBands::Pays(10000, 10000));
}

TEST(Cores, AreCountedOrAllThatTheMachineHas) {
    const tests::TSharedCores restored(1);
    TCores::SetCount(3);
    EXPECT_EQ(TCores::GetCount(), 3);
    TCores::SetCount(1000000);
    EXPECT_EQ(TCores::GetCount(), 64);
    for (const int all : {0, -1}) {
        TCores::SetCount(all);
        EXPECT_EQ(TCores::GetCount(), std::clamp(static_cast<int>(std::thread::hardware_concurrency()), 1, 64));
    }
}

} // namespace
} // namespace lmx
