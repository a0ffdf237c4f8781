#include <lmx/Graphics/lmxSystemColors.h>

#include <QGuiApplication>
#include <QPalette>

#include <gtest/gtest.h>

#include <memory>

namespace lmx {
namespace {

TEST(SystemColors, PlainColorsAreOpaqueWithRedAndBlueSwapped) {
    EXPECT_EQ(Color32(TColor{0x00332211}), 0xFF112233U);
    EXPECT_EQ(Color32(clBlack), clBlack32);
    EXPECT_EQ(Color32(WinColor(0x40112233U)), 0xFF112233U);
}

TEST(SystemColors, PositiveSpecialValuesAreReadAsPlainColors) {
    EXPECT_EQ(Color32(TColor{0x1FFFFFFF}), clWhite32);
    EXPECT_EQ(Color32(TColor{0x20000000}), clBlack32);
}

TEST(SystemColors, FixedValues) {
    const TSystemColorsScope scope(std::make_shared<TFixedSystemColors>());
    EXPECT_EQ(Color32(clWindow), 0xFFFFFFFFU);
    EXPECT_EQ(Color32(clWindowText), 0xFF000000U);
    EXPECT_EQ(Color32(clHighlight), 0xFF0078D7U);
    EXPECT_EQ(Color32(clHighlightText), 0xFFFFFFFFU);
    EXPECT_EQ(Color32(clBtnFace), 0xFFF0F0F0U);
    EXPECT_EQ(Color32(clBtnShadow), 0xFFA0A0A0U);
    EXPECT_EQ(Color32(clBtnText), 0xFF000000U);
    EXPECT_EQ(Color32(SystemColor(200)), clBlack32);
}

TEST(SystemColors, OnlyTheLowEightBitsNameTheColor) {
    const TSystemColorsScope scope(std::make_shared<TFixedSystemColors>());
    EXPECT_EQ(Color32(TColor{static_cast<std::int32_t>(0x80ABCD0FU)}), 0xFFF0F0F0U);
}

TEST(SystemColors, ComeFromThePaletteByDefault) {
    const QPalette before = QGuiApplication::palette();
    QPalette palette = before;
    palette.setColor(QPalette::Highlight, QColor(1, 2, 3));
    palette.setColor(QPalette::Dark, QColor(4, 5, 6));
    QGuiApplication::setPalette(palette);
    EXPECT_EQ(Color32(clHighlight), 0xFF010203U);
    EXPECT_EQ(Color32(clBtnShadow), 0xFF040506U);
    EXPECT_EQ(Color32(SystemColor(200)), clBlack32);
    QGuiApplication::setPalette(before);
}

TEST(SystemColors, ScopeRestoresTheSource) {
    const TSystemColors* before = &TSystemColors::Current();
    {
        const auto fixed = std::make_shared<TFixedSystemColors>();
        const TSystemColorsScope scope(fixed);
        EXPECT_EQ(&TSystemColors::Current(), fixed.get());
    }
    EXPECT_EQ(&TSystemColors::Current(), before);
}

} // namespace
} // namespace lmx
