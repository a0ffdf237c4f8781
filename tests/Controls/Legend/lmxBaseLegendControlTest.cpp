#include <lmx/Controls/Legend/lmxBaseLegendControl.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

namespace lmx {
namespace {

TEST(BaseLegendControl, IsNamedByItsClassAndAddress) {
    QWidget form;
    const TBaseLegendControl first(&form);
    const TBaseLegendControl second(&form, QStringLiteral("TRainLegend"));
    EXPECT_EQ(first.objectName(), QStringLiteral("TBaseLegendControl_%1").arg(reinterpret_cast<std::intptr_t>(&first)));
    EXPECT_EQ(second.objectName(), QStringLiteral("TRainLegend_%1").arg(reinterpret_cast<std::intptr_t>(&second)));
}

TEST(BaseLegendControl, SuggestsNoHeight) {
    EXPECT_EQ(TBaseLegendControl(nullptr).GetSuggestedHeight(), 0);
}

} // namespace
} // namespace lmx
