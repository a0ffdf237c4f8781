#include <lmx/Widgets/lmxColorChooser.h>
#include <tests/Support/ModalAnswer.h>
#include <tests/Support/ScriptedServices.h>

#include <QColorDialog>

namespace lmx {
namespace {

using tests::TModalAnswer;

constexpr TColor32 HalfRed = 0x80FF0000U;
const TColorChooserDialogOptions WithAlpha{TColorChooserDialogOption::coColor32};

TEST(ColorChooser, ConvertsBetweenItsTwoKindsOfColour) {
    const auto chooser = TColorChooserFactory::GetObject(WithAlpha);
    EXPECT_EQ(chooser->GetColor32(), clBlack32);
    chooser->SetColor32(0x80102030U);
    EXPECT_EQ(chooser->GetColor32(), 0x80102030U);
    EXPECT_EQ(chooser->GetColor(), TColor{0x302010});
    chooser->SetColor(TColor{0x302010});
    EXPECT_EQ(chooser->GetColor32(), 0xFF102030U);
}

TEST(ColorChooser, GivesTheConfirmedColourWithItsAlphaIfAsked) {
    const auto chooser = TColorChooserFactory::GetObject(WithAlpha);
    chooser->SetColor32(HalfRed);
    const TModalAnswer<QColorDialog> answer([](QColorDialog& dialog) {
        EXPECT_TRUE(dialog.testOption(QColorDialog::ShowAlphaChannel));
        EXPECT_EQ(dialog.currentColor().rgba(), HalfRed);
        dialog.setCurrentColor(QColor::fromRgba(0x01020304U));
        dialog.accept();
    });
    EXPECT_TRUE(chooser->Execute());
    EXPECT_EQ(chooser->GetColor32(), 0x01020304U);
}

TEST(ColorChooser, GivesAnOpaqueColourOtherwise) {
    const auto chooser = TColorChooserFactory::GetObject();
    chooser->SetColor32(HalfRed);
    const TModalAnswer<QColorDialog> answer([](QColorDialog& dialog) {
        EXPECT_FALSE(dialog.testOption(QColorDialog::ShowAlphaChannel));
        dialog.accept();
    });
    EXPECT_TRUE(chooser->Execute());
    EXPECT_EQ(chooser->GetColor32(), 0xFFFF0000U);
}

TEST(ColorChooser, KeepsItsColourWhenCancelled) {
    const auto chooser = TColorChooserFactory::GetObject();
    chooser->SetColor32(HalfRed);
    const TModalAnswer<QColorDialog> answer([](QColorDialog& dialog) {
        dialog.setCurrentColor(Qt::green);
        dialog.reject();
    });
    EXPECT_FALSE(chooser->Execute());
    EXPECT_EQ(chooser->GetColor32(), HalfRed);
}

TEST(ColorChooser, IsReplacedForAScope) {
    const tests::TScriptedColorChooser script;
    script->Answers = {HalfRed, std::nullopt};
    const auto chooser = TColorChooserFactory::GetObject(WithAlpha);
    EXPECT_TRUE(chooser->Execute());
    EXPECT_EQ(chooser->GetColor32(), HalfRed);
    EXPECT_FALSE(chooser->Execute());
    EXPECT_EQ(script->Made, std::vector<TColorChooserDialogOptions>{WithAlpha});
    EXPECT_EQ(script->Shown, (std::vector<TColor32>{clBlack32, HalfRed}));
}

} // namespace
} // namespace lmx
