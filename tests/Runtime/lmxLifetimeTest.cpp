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

} // namespace
} // namespace lmx
