#include <lmx/Runtime/lmxWeakReference.h>

#include <gtest/gtest.h>

namespace lmx {
namespace {

TEST(WeakReference, GoesNilWithItsTarget) {
    auto target = std::make_shared<int>(5);
    const TWeakReference<int> reference(target);
    EXPECT_EQ(reference.Get(), target);
    EXPECT_TRUE(reference.IsSet());
    target.reset();
    EXPECT_EQ(reference.Get(), nullptr);
    EXPECT_FALSE(reference.IsSet());
}

TEST(WeakReference, KeepsItsTargetOnlyWhileACopyIsHeld) {
    auto target = std::make_shared<int>(5);
    const TWeakReference<int> reference(target);
    auto copy = reference.Get();
    target.reset();
    EXPECT_TRUE(reference.IsSet());
    copy.reset();
    EXPECT_FALSE(reference.IsSet());
}

TEST(WeakReference, IsSetAnewAndCleared) {
    const auto first = std::make_shared<int>(1);
    const auto second = std::make_shared<int>(2);
    TWeakReference<int> reference;
    EXPECT_FALSE(reference.IsSet());
    reference.Set(first);
    reference.Set(second);
    EXPECT_EQ(reference.Get(), second);
    reference.Clear();
    EXPECT_EQ(reference.Get(), nullptr);
}

} // namespace
} // namespace lmx
