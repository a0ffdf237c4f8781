#include <lmx/Runtime/lmxNullable.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

namespace lmx {
namespace {

TEST(Nullable, HasNoValueAtFirst) {
    const TNullable<int> nullable;
    EXPECT_FALSE(nullable.GetHasValue());
    EXPECT_EQ(tests::MessageOf<EInvalidOperation>([&] { nullable.GetValue(); }), "Nullable type has no value");
}

TEST(Nullable, TakesAndGivesUpAValue) {
    TNullable<QString> nullable(QStringLiteral("a"));
    EXPECT_EQ(nullable.GetValue(), "a");
    nullable.SetValue(QStringLiteral("b"));
    EXPECT_EQ(nullable.GetValue(), "b");
    nullable.Clear();
    EXPECT_FALSE(nullable.GetHasValue());
}

TEST(Nullable, NothingEqualsNothingWhateverItOnceHeld) {
    TNullable<int> cleared(5);
    cleared.Clear();
    EXPECT_EQ(cleared, TNullable<int>());
    EXPECT_EQ(TNullable<int>(5), TNullable<int>(5));
    EXPECT_FALSE(TNullable<int>(0) == TNullable<int>());
}

} // namespace
} // namespace lmx
