#include <lmx/Colour/lmxMultipartGradient.h>
#include <lmx/Controls/Legend/lmxMapViewGradientLegendControl.h>
#include <lmx/Controls/Legend/lmxMapViewMultipartGradientLegendControl.h>
#include <lmx/Graphics/lmxGradient.h>
#include <tests/Support/WidgetPictures.h>

#include <QPointer>

#include <gtest/gtest.h>

#include <limits>

namespace lmx {
namespace {

std::shared_ptr<IMultipartGradientColorCalculator> Parts(float min, float max,
                                                         std::vector<std::pair<float, float>> ranges) {
    std::vector<std::shared_ptr<IGradientColorCalculator>> parts;
    for (const auto& [low, high] : ranges)
        parts.push_back(TGradientColorCalculatorFactory::GetObject(low, high, nullptr));
    return TMultipartGradientColorCalculatorFactory::GetObject(min, max, parts);
}

QRect Bounds(TMapViewMultipartGradientLegendControl& control, int index) {
    tests::PictureOf(control); // what is not shown is laid out when it is painted
    return control.GetInnerLegend(index)->geometry();
}

TEST(MapViewMultipartGradientLegendControl, StacksItsPartsByTheirShareOfTheValues) {
    QWidget form;
    auto* control = TMapViewMultipartGradientLegendControl::CreateComp(&form, Parts(-10, 30, {{-10, 0}, {0, 30}}));
    control->resize(81, 402);
    EXPECT_EQ(control->parentWidget(), &form);
    ASSERT_EQ(control->GetInnerLegendCount(), 2);
    // From the top: 30 at 0, 0 at 301.5, which is even at 302, and -10 at 402.
    EXPECT_EQ(Bounds(*control, 0), QRect(0, 302, 80, 100));
    EXPECT_EQ(Bounds(*control, 1), QRect(0, 0, 80, 302));
    EXPECT_EQ(control->GetInnerLegend(0)->GetTicks().Bits(), 31U) << "each labels its own five values";
    EXPECT_EQ(control->GetInnerLegend(1)->parentWidget(), control);
    EXPECT_EQ(control->GetInnerLegend(2), nullptr);
    EXPECT_EQ(control->GetInnerLegend(-1), nullptr);
    EXPECT_EQ(control->GetSuggestedHeight(), 0);
}

TEST(MapViewMultipartGradientLegendControl, WithoutARangeEachPartHasTheWholeHeight) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    for (const auto& [min, max] :
         {std::pair{5.0F, 5.0F}, {nan, 1.0F}, {0.0F, std::numeric_limits<float>::infinity()}}) {
        TMapViewMultipartGradientLegendControl control;
        control.SetMultipartGradient(Parts(min, max, {{0, 1}, {1, 2}}));
        control.resize(50, 200);
        EXPECT_EQ(Bounds(control, 0), QRect(0, 0, 49, 200));
        EXPECT_EQ(Bounds(control, 1), QRect(0, 0, 49, 200));
    }
}

TEST(MapViewMultipartGradientLegendControl, AnotherCalculatorBringsOtherLegends) {
    TMapViewMultipartGradientLegendControl control;
    control.SetMultipartGradient(Parts(0, 2, {{0, 1}, {1, 2}}));
    const QPointer<QWidget> first = control.GetInnerLegend(0);
    control.SetMultipartGradient(Parts(0, 1, {{0, 1}}));
    EXPECT_EQ(first, nullptr);
    EXPECT_EQ(control.GetInnerLegendCount(), 1);
    control.SetMultipartGradient(nullptr);
    EXPECT_EQ(control.GetInnerLegendCount(), 0);
    control.SetMultipartGradient(Parts(0, 1, {}));
    EXPECT_EQ(control.GetInnerLegendCount(), 0);
}

TEST(MapViewMultipartGradientLegendControl, APartOfItMayBeDeletedByOthers) {
    TMapViewMultipartGradientLegendControl control;
    control.SetMultipartGradient(Parts(0, 2, {{0, 1}, {1, 2}}));
    delete control.GetInnerLegend(0);
    control.resize(50, 200);
    EXPECT_EQ(control.GetInnerLegend(0), nullptr);
    EXPECT_EQ(Bounds(control, 1), QRect(0, 0, 49, 100));
    control.SetMultipartGradient(nullptr);
}

} // namespace
} // namespace lmx
