#include <lmx/Runtime/lmxSet.h>

#include <gtest/gtest.h>

namespace lmx {
namespace {

enum class TFlag { flFirst, flSecond, flLast = 31 };
using TFlags = TSet<TFlag>;

TEST(Set, HoldsItsMembers) {
    TFlags flags{TFlag::flFirst, TFlag::flLast};
    EXPECT_TRUE(flags.Contains(TFlag::flFirst));
    EXPECT_FALSE(flags.Contains(TFlag::flSecond));
    EXPECT_EQ(flags.Bits(), 0x80000001U);
    flags.Include(TFlag::flSecond);
    flags.Exclude(TFlag::flLast);
    flags.Exclude(TFlag::flLast);
    EXPECT_EQ(flags, (TFlags{TFlag::flSecond, TFlag::flFirst}));
    EXPECT_TRUE(TFlags().IsEmpty());
    EXPECT_FALSE(flags.IsEmpty());
}

TEST(Set, AddsAndSubtracts) {
    const TFlags first{TFlag::flFirst};
    const TFlags both{TFlag::flFirst, TFlag::flSecond};
    EXPECT_EQ(first + TFlags{TFlag::flSecond}, both);
    EXPECT_EQ(both - first, TFlags{TFlag::flSecond});
    EXPECT_EQ(first - both, TFlags());
    EXPECT_EQ(TFlags::FromBits(3), both);
}

} // namespace
} // namespace lmx
