#include <lmx/Layers/lmxLayerTypes.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

namespace lmx {
namespace {

TEST(LayerMenuItem, HoldsItsThreeParts) {
    int clicks = 0;
    const TLayerMenuItem item(QStringLiteral("&Open"), false, [&clicks] { ++clicks; });
    EXPECT_EQ(item.FText, QStringLiteral("&Open"));
    EXPECT_FALSE(item.FEnabled);
    item.FEvent();
    EXPECT_EQ(clicks, 1);
}

} // namespace
} // namespace lmx
