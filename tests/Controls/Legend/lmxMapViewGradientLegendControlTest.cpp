#include <lmx/Colour/Legend/lmxGradientLegendPainter.h>
#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/Controls/Legend/lmxMapViewGradientLegendControl.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Graphics/lmxGradient.h>
#include <tests/Support/WidgetPictures.h>

#include <QFontMetrics>

#include <gtest/gtest.h>

namespace lmx {
namespace {

using tests::PictureOf;

std::shared_ptr<IGradientColorCalculator> Calculator(TColor32 low = 0xFF000000) {
    return TGradientColorCalculatorFactory::GetObject(
        0, 8, TGradientFactory::GetObject(std::vector<TColorStop>{{0, low}, {1, 0xFFFFFFFF}}));
}

QImage Expected(const TMapViewGradientLegendControl& control) {
    const double ratio = control.devicePixelRatioF();
    const auto pixels = [ratio](int units) { return static_cast<std::int32_t>(units * ratio + 0.5); };
    TBitmap32 bitmap(pixels(control.width()), pixels(control.height()));
    bitmap.SetDeviceRatio(ratio);
    GradientLegendPainter_Paint(bitmap, TLegendOrientation::loVertical, pixels(control.GetBarSize()),
                                control.GetGradient().get(), control.GetTicks(), Color32(clBtnFace), Color32(clBtnText),
                                Color32(clBtnText), control.font().family(), control.font().pointSize(), {},
                                QStringLiteral("%.3f"));
    return bitmap.ToQImage();
}

TEST(MapViewGradientLegendControl, BeginsWithAllTicksAndABarOf24) {
    const TMapViewGradientLegendControl control;
    EXPECT_EQ(control.GetBarSize(), 24);
    EXPECT_EQ(control.GetTicks().Bits(), 31U);
    EXPECT_EQ(control.GetBorderColor(), clBtnShadow);
    EXPECT_EQ(control.GetGradient(), nullptr);
    EXPECT_EQ(control.GetSuggestedHeight(), 300);
    EXPECT_TRUE(control.objectName().startsWith(QStringLiteral("TMapViewGradientLegendControl_")));
}

TEST(MapViewGradientLegendControl, PaintsWhatThePainterPaints) {
    QWidget form;
    auto* control = TMapViewGradientLegendControl::CreateComp(&form, Calculator());
    EXPECT_EQ(control->parentWidget(), &form);
    control->resize(90, 160);
    EXPECT_EQ(PictureOf(*control), Expected(*control));
    control->SetBarSize(40);
    control->SetTicks({TTick::tkMid});
    EXPECT_EQ(PictureOf(*control), Expected(*control));
    control->SetGradient(nullptr);
    EXPECT_EQ(PictureOf(*control), Expected(*control));
}

TEST(MapViewGradientLegendControl, ReadsItsCalculatorAtEachPaint) {
    TMapViewGradientLegendControl control;
    const auto calculator = Calculator();
    control.SetGradient(calculator);
    control.resize(90, 160);
    const QImage before = PictureOf(control);
    calculator->SetMaxVal(80);
    const QImage after = PictureOf(control);
    EXPECT_NE(after, before);
    EXPECT_EQ(after, Expected(control));
}

TEST(MapViewGradientLegendControl, TheBorderColorHasNoUse) {
    TMapViewGradientLegendControl control;
    control.SetGradient(Calculator());
    const QImage before = PictureOf(control);
    control.SetBorderColor(TColor{0x0000FF});
    EXPECT_EQ(control.GetBorderColor(), TColor{0x0000FF});
    EXPECT_EQ(PictureOf(control), before);
}

TEST(MapViewGradientLegendControl, KeepsTheMeasuresOfItsParts) {
    TMapViewGradientLegendControl control;
    control.resize(90, 161);
    const int line = QFontMetrics(control.font()).height();
    const int half = line / 2;
    EXPECT_EQ(control.GetBarRect(), TRect(0, half, 24, 161 - half));
    EXPECT_EQ(control.GetTickRect(TTick::tkLow), TRect(28, 161 - half - half, 90, 161 - half - half + line));
    const int middle = half + (161 - 2 * half) / 2;
    EXPECT_EQ(control.GetTickRect(TTick::tkMid), TRect(28, middle - half, 90, middle - half + line));
    EXPECT_EQ(control.GetTickRect(TTick::tkHigh), TRect(28, 0, 90, line));
    EXPECT_EQ(control.GetTickRect(TTick::tkLowMid), TRect());
    control.SetTicks({TTick::tkMid, TTick::tkMidHigh});
    EXPECT_EQ(control.GetBarRect(), TRect(0, 0, 24, 161)) << "without ends the bar takes the whole height";
    EXPECT_EQ(control.GetTickRect(TTick::tkLow), TRect());
    EXPECT_EQ(control.GetTickRect(TTick::tkHigh), TRect());
    EXPECT_EQ(control.GetTickRect(TTick::tkMidHigh), TRect());
    control.SetBarSize(5);
    EXPECT_EQ(control.GetBarRect().Right, 5);
}

} // namespace
} // namespace lmx
