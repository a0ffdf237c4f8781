// The ready ways to colour a raster, over ranges of every kind.

#include "ColorSchemes.h"

#include <lmx/Colour/lmxBaseColorCalculator.h>
#include <lmx/Colour/lmxValueRange.h>
#include <lmx/Graphics/lmxColor32.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

namespace lmx {
namespace {

const QString DataFolder = QStringLiteral(LMX_EXAMPLE_DATA);

class ColorSchemesOver : public testing::TestWithParam<TValueRange> {};

TEST_P(ColorSchemesOver, ShowTheValuesInside) {
    for (const QString& name : ColorSchemeNames()) {
        const auto calculator = MakeColorScheme(name, GetParam(), DataFolder);
        for (const double value : {GetParam().Low, (GetParam().Low + GetParam().High) / 2, GetParam().High})
            EXPECT_EQ(AlphaComponent(calculator->GetColor(static_cast<float>(value))), 255)
                << name.toStdString() << ' ' << value;
    }
}

INSTANTIATE_TEST_SUITE_P(Ranges, ColorSchemesOver,
                         testing::Values(TValueRange(-100, 300), TValueRange(8000, 10500), TValueRange(-3, -1),
                                         TValueRange(0, 5e-5), TValueRange::Empty(), TValueRange(5, 5),
                                         TValueRange(-1e20, -1e20)));

TEST(ColorSchemesOfOneValue, ShowItInTheMiddleOfTheScale) {
    const auto calculator = MakeColorScheme(QStringLiteral("Gradient: blue to red"), TValueRange(5, 5), DataFolder);
    EXPECT_EQ(calculator->GetColor(5), 0xFFF7F7F7U);
}

} // namespace
} // namespace lmx
