#include <lmx/Graphics/lmxColor32.h>

#include <gtest/gtest.h>

namespace lmx {
namespace {

TEST(Color32, PacksAlphaRedGreenBlue) {
    EXPECT_EQ(Color32(0x11, 0x22, 0x33, 0x44), 0x44112233U);
    EXPECT_EQ(Color32(1, 2, 3), 0xFF010203U);
}

TEST(Color32, ComponentsUnpack) {
    EXPECT_EQ(AlphaComponent(0x44112233U), 0x44);
    EXPECT_EQ(RedComponent(0x44112233U), 0x11);
    EXPECT_EQ(GreenComponent(0x44112233U), 0x22);
    EXPECT_EQ(BlueComponent(0x44112233U), 0x33);
}

TEST(Color32, SetAlphaClamps) {
    EXPECT_EQ(SetAlpha(0xAA112233U, 7), 0x07112233U);
    EXPECT_EQ(SetAlpha(0xAA112233U, -1), 0x00112233U);
    EXPECT_EQ(SetAlpha(0xAA112233U, 256), 0xFF112233U);
}

TEST(WinColor, SwapsRedAndBlueAndDropsAlpha) {
    EXPECT_EQ(WinColor(0x80112233U).Value, 0x00332211);
    EXPECT_EQ(WinColor(clWhite32), clWhite);
    EXPECT_FALSE(WinColor(0xFFFFFFFFU).IsSystemColor());
}

} // namespace
} // namespace lmx
