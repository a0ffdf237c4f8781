#include <lmx/Runtime/lmxLifetime.h>

#include <gtest/gtest.h>

#include <memory>

namespace lmx {
namespace {

TEST(Lifetime, EndsWithItsObject) {
    auto lifetime = std::make_unique<TLifetime>();
    const auto watch = lifetime->Watch();
    EXPECT_FALSE(watch.IsOver());
    lifetime.reset();
    EXPECT_TRUE(watch.IsOver());
}

TEST(Lifetime, OfACopyIsItsOwn) {
    auto original = std::make_unique<TLifetime>();
    TLifetime copy(*original);
    copy = *original;
    const auto watch = copy.Watch();
    original.reset();
    EXPECT_FALSE(watch.IsOver());
}

TEST(Lifetime, MayEndBeforeItsObject) {
    TLifetime lifetime;
    const auto watch = lifetime.Watch();
    lifetime.End();
    EXPECT_TRUE(watch.IsOver());
    EXPECT_TRUE(lifetime.Watch().IsOver());
    lifetime.End();
}

TEST(Lifetime, WatchesAreEqualIfTheyWatchTheSameObjectAlsoWhenItHasGone) {
    auto first = std::make_unique<TLifetime>();
    const auto watch = first->Watch();
    const auto copy = first->Watch();
    TLifetime second;
    EXPECT_EQ(watch, copy);
    EXPECT_FALSE(watch == second.Watch());
    first.reset();
    EXPECT_EQ(watch, copy);
    EXPECT_FALSE(watch == TLifeWatch());
    EXPECT_TRUE(TLifeWatch().IsOver());
    EXPECT_EQ(TLifeWatch(), TLifeWatch());
}

} // namespace
} // namespace lmx
