#include <lmx/Colour/Legend/lmxPaletteLegendPainter.h>
#include <lmx/Colour/lmxBasicPaletteColorCalculator.h>
#include <lmx/Colour/lmxColorClassCalculator.h>
#include <lmx/Colour/lmxColorKey.h>
#include <lmx/Controls/Legend/lmxMapViewBasicPaletteLegendControl.h>
#include <lmx/Controls/Legend/lmxMapViewClassPaletteLegendControl.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <tests/Support/ScriptedServices.h>
#include <tests/Support/WidgetPictures.h>

#include <QCoreApplication>

#include <gtest/gtest.h>

namespace lmx {
namespace {

using tests::PictureOf;

std::shared_ptr<IBasicPaletteColorCalculator> Palette() {
    const std::vector<TColorKeyItem> colors = {{"sea", 0xFF0000FF}, {"land", 0xFF00FF00}, {"ice", 0xFFFFFFFF}};
    return TBasicPaletteColorCalculatorFactory::GetObject(TValueRange(0, 3), colors, false);
}

std::shared_ptr<IColorClassCalculator> Classes() {
    const TColorClass low("low", 0, 1, 0xFF111111);
    const TColorClass high("high", 1, 2, 0xFF222222);
    const std::vector<const TColorClass*> classes = {&low, &high};
    return TColorClassCalculatorFactory::GetObject(classes);
}

QImage Expected(const TPaletteLegendControl& control) {
    const double ratio = control.devicePixelRatioF();
    const auto pixels = [ratio](int units) { return static_cast<std::int32_t>(units * ratio + 0.5); };
    TBitmap32 bitmap(pixels(control.width()), pixels(control.height()));
    bitmap.SetDeviceRatio(ratio);
    bitmap.Clear(Color32(control.GetColor()));
    PaletteLegendPainter_Paint(&bitmap, TLegendOrientation::loVertical, control.GetItems(), pixels(16), pixels(8), 0,
                               pixels(2), 0xFF000000, control.font().family(), control.font().pointSize(),
                               Color32(clWindowText));
    return bitmap.ToQImage();
}

TEST(PaletteLegendControl, PaintsWhatThePainterPaints) {
    QWidget form;
    auto* control = TMapViewBasicPaletteLegendControl::CreateComp(&form, Palette());
    control->resize(100, 50); // the last row is cut off
    EXPECT_EQ(control->parentWidget(), &form);
    EXPECT_TRUE(control->objectName().startsWith(QStringLiteral("TMapViewBasicPaletteLegendControl_")));
    EXPECT_EQ(PictureOf(*control), Expected(*control));
    control->SetColor(TColor{0x00FF00FF});
    EXPECT_EQ(PictureOf(*control), Expected(*control));
}

TEST(PaletteLegendControl, SuggestsTwentyForEachRow) {
    const std::unique_ptr<TMapViewBasicPaletteLegendControl> palette(
        TMapViewBasicPaletteLegendControl::CreateComp(nullptr, Palette()));
    const std::unique_ptr<TMapViewClassPaletteLegendControl> classes(
        TMapViewClassPaletteLegendControl::CreateComp(nullptr, Classes()));
    EXPECT_EQ(palette->GetSuggestedHeight(), 60);
    EXPECT_EQ(classes->GetSuggestedHeight(), 40);
    EXPECT_EQ(palette->accessibleDescription(), "sea; land; ice");
    EXPECT_EQ(classes->accessibleDescription(), "low; high");
}

// Rows are those of the moment at which the calculator was set.
TEST(PaletteLegendControl, HoldsASnapshotOfItsCalculator) {
    TMapViewBasicPaletteLegendControl palette;
    const auto calculator = Palette();
    palette.SetPalette(calculator);
    calculator->GetColorKey()->GetColors().clear();
    palette.SetPalette(calculator);
    EXPECT_EQ(palette.GetItems().size(), 3U) << "the same calculator changes nothing";
    palette.SetPalette(Palette());
    EXPECT_EQ(palette.GetItems().size(), 3U);
    palette.SetPalette(calculator);
    EXPECT_TRUE(palette.GetItems().empty());

    TMapViewClassPaletteLegendControl classes;
    const auto classCalculator = Classes();
    classes.SetColorClasses(classCalculator);
    classCalculator->GetColorClasses()->GetClasses().Clear();
    EXPECT_EQ(classes.GetItems().size(), 2U);
    classes.SetColorClasses(nullptr);
    EXPECT_TRUE(classes.GetItems().empty());
}

// A control without rows must not be shown. The failure is told once, and the program goes on.
TEST(PaletteLegendControl, WithoutRowsItsPaintFailsItsAssertion) {
    tests::TScriptedMsgBox messages;
    TMapViewBasicPaletteLegendControl control;
    control.resize(30, 20);
    for (int i = 0; i < 3; ++i) {
        PictureOf(control);
        QCoreApplication::processEvents();
    }
    ASSERT_EQ(messages->Shown.size(), 1U);
    EXPECT_EQ(messages->Shown[0].Text, "Assertion failure");
    control.SetPalette(Palette());
    EXPECT_EQ(PictureOf(control), Expected(control)) << "and works again";
    control.SetPalette(nullptr);
    PictureOf(control);
    QCoreApplication::processEvents();
    EXPECT_EQ(messages->Shown.size(), 2U);
}

} // namespace
} // namespace lmx
