// The ready ways to colour a raster, over ranges of every kind.

#include "ColorSchemes.h"

#include <lmx/Colour/lmxBaseColorCalculator.h>
#include <lmx/Colour/lmxBasicPaletteColorCalculator.h>
#include <lmx/Colour/lmxColorClassCalculator.h>
#include <lmx/Colour/lmxColorClassList.h>
#include <lmx/Colour/lmxColorKey.h>
#include <lmx/Colour/lmxColorPack.h>
#include <lmx/Colour/lmxValueRange.h>
#include <lmx/Graphics/lmxColor32.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

#include <cmath>

namespace lmx {
namespace {

TColor32 ColorOf(const char* scheme, const TValueRange& range, float value) {
    return MakeColorScheme(QString::fromLatin1(scheme), range)->GetColor(value);
}

TEST(ColorSchemes, AreThoseOfThePackAndFourMore) {
    QStringList names;
    QStringList groups;
    for (const TColorSchemeName& scheme : ColorSchemeNames()) {
        names += scheme.Name;
        if (groups.isEmpty() || groups.last() != scheme.Group)
            groups += scheme.Group;
    }
    QStringList expected;
    for (const TColorScale& scale : TColorPack::GetScales())
        expected += scale.Name;
    expected += {"Even palette: viridis", "Even palette: cividis", "Classes: six of viridis", "Two gradients"};
    EXPECT_EQ(names, expected);
    EXPECT_EQ(groups, (QStringList{"Sequential", "Diverging", "Cyclic", "Categorical", "Climate", "Steps", "Parts"}));
}

class ColorSchemesOver : public testing::TestWithParam<TValueRange> {};

TEST_P(ColorSchemesOver, ShowTheValuesInside) {
    for (const TColorSchemeName& scheme : ColorSchemeNames()) {
        const auto calculator = MakeColorScheme(scheme.Name, GetParam());
        for (const double value : {GetParam().Low, (GetParam().Low + GetParam().High) / 2, GetParam().High})
            EXPECT_EQ(AlphaComponent(calculator->GetColor(static_cast<float>(value))), 255)
                << scheme.Name.toStdString() << ' ' << value;
    }
}

INSTANTIATE_TEST_SUITE_P(Ranges, ColorSchemesOver,
                         testing::Values(TValueRange(-100, 300), TValueRange(8000, 10500), TValueRange(-3, -1),
                                         TValueRange(0, 5e-5), TValueRange::Empty(), TValueRange(5, 5),
                                         TValueRange(-1e20, -1e20)));

TEST(ColorSchemes, RunFromEndToEndOfAScale) {
    for (const TColorScale& scale : TColorPack::GetScales()) {
        const auto calculator = MakeColorScheme(scale.Name, TValueRange(-100, 300));
        EXPECT_EQ(calculator->GetColor(-100), scale.Colors.front()) << scale.Name.toStdString();
        EXPECT_EQ(calculator->GetColor(300), scale.Colors.back()) << scale.Name.toStdString();
    }
}

TEST(ColorSchemes, ShowTheOneValueOfARangeInTheMiddle) {
    EXPECT_EQ(ColorOf("Blue to red", TValueRange(5, 5), 5), 0xFFF7F7F7U);
}

TEST(ColorSchemes, PartLandFromSeaAtZero) {
    const std::vector<TColor32>& colors = TColorPack::Find("Relief")->Colors;
    const TValueRange world(-9000, 6000);
    EXPECT_EQ(ColorOf("Relief", world, std::nextafter(-0.01F, -1.0F)), colors[colors.size() / 2 - 1]);
    EXPECT_EQ(ColorOf("Relief", world, 0.01F), colors[colors.size() / 2]);
    EXPECT_EQ(ColorOf("Relief", world, -4500), colors[4]) << "halfway down, of nine colours";
    EXPECT_EQ(ColorOf("Relief", TValueRange(0, 6000), 0), colors.front()) << "there is no sea";
}

TEST(ColorSchemes, GoInSteps) {
    const std::vector<TColor32>& colors = TColorPack::Find("Cividis")->Colors;
    const auto even = MakeColorScheme("Even palette: cividis", TValueRange(0, 16));
    ASSERT_NE(std::dynamic_pointer_cast<IBasicPaletteColorCalculator>(even), nullptr);
    EXPECT_EQ(even->GetColor(0.5F), colors[0]);
    EXPECT_EQ(even->GetColor(15.5F), colors[15]);
    const auto classes =
        std::dynamic_pointer_cast<IColorClassCalculator>(MakeColorScheme("Classes: six of viridis", TValueRange(0, 6)));
    ASSERT_NE(classes, nullptr);
    EXPECT_EQ(classes->GetColorClasses()->GetClasses().Count(), 6);
    EXPECT_EQ(classes->GetColor(7), 0xFFFDE725U) << "the nearest class";
}

TEST(ColorSchemes, MeetAtZero) {
    const auto calculator = MakeColorScheme("Two gradients", TValueRange(-100, 300));
    EXPECT_EQ(calculator->GetColor(0), 0xFFD1E5F0U);
    EXPECT_EQ(calculator->GetColor(std::nextafter(0.0F, 1.0F)), 0xFFE9E3C8U);
}

TEST(ColorSchemes, RefuseAnUnknownName) {
    EXPECT_EQ(tests::MessageOf<EArgumentException>([] { MakeColorScheme("x", {}); }), QStringLiteral("name"));
}

} // namespace
} // namespace lmx
