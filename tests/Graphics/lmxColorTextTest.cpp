#include <lmx/Graphics/lmxColorText.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

#include <set>

namespace lmx {
namespace {

using tests::MessageOf;

TEST(ColorText, WritesAlphaFirstInUpperCase) {
    EXPECT_EQ(Color32ToString(0xFF00A1BCU), "#FF00A1BC");
    EXPECT_EQ(Color32ToString(0), "#00000000");
    EXPECT_EQ(Color32ToString(0x01234567U), "#01234567");
    EXPECT_EQ(Color32ToString(0x89ABCDEFU), "#89ABCDEF");
}

TEST(ColorText, ReadsDigitsOfEitherCase) {
    EXPECT_EQ(StringToColor32(QStringLiteral("#89abcdef")), 0x89ABCDEFU);
    EXPECT_EQ(StringToColor32(QStringLiteral("#89AbCdEf")), 0x89ABCDEFU);
    EXPECT_EQ(StringToColor32(QStringLiteral("#01234567")), 0x01234567U);
}

TEST(ColorText, RestoresEveryByteInEveryPlace) {
    for (TColor32 byte = 0; byte < 256; ++byte)
        for (int shift = 0; shift < 32; shift += 8)
            EXPECT_EQ(StringToColor32(Color32ToString(byte << shift)), byte << shift);
}

class RefusedColorText : public testing::TestWithParam<QString> {};

TEST_P(RefusedColorText, RaisesWithTheTextInTheMessage) {
    EXPECT_EQ(MessageOf<EConvertError>([] { StringToColor32(GetParam()); }),
              u'\'' + GetParam() + QStringLiteral("' is not a valid color value"));
}

INSTANTIATE_TEST_SUITE_P(Texts, RefusedColorText,
                         testing::Values(QString(), QStringLiteral("#"), QStringLiteral("#FF00FF0"),
                                         QStringLiteral("#FF00FF000"), QStringLiteral("FF00FF000"),
                                         QStringLiteral("#FF00FG00"), QStringLiteral(" #FF00FF0"),
                                         QStringLiteral("#FF00FF0 "), QStringLiteral("#-F00FF00"),
                                         QStringLiteral("#FF00FF0\u0660"), QStringLiteral("red")));

TEST(ColorText, RandomColorsAreOpaqueAndDiffer) {
    std::set<TColor32> colors;
    for (int i = 0; i < 100; ++i) {
        const TColor32 color = GetRandomColor32();
        EXPECT_EQ(AlphaComponent(color), 255);
        colors.insert(color);
    }
    EXPECT_GT(colors.size(), 90U);
}

} // namespace
} // namespace lmx
