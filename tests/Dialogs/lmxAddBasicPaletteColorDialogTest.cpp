#include <lmx/Dialogs/lmxAddBasicPaletteColorDialog.h>
#include <lmx/Widgets/Private/lmxFormHeading.h>
#include <lmx/Widgets/lmxColor32Button.h>
#include <tests/Support/DialogChecks.h>
#include <tests/Support/ModalAnswer.h>
#include <tests/Support/Printers.h>
#include <tests/Support/ScriptedServices.h>
#include <tests/Support/WidgetPictures.h>

#include <QLabel>
#include <QLineEdit>

namespace lmx {
namespace {

struct AddBasicPaletteColorDialog : testing::Test {
    tests::TScriptedColorChooser Chooser; // there before the dialog makes its own
    TAddBasicPaletteColorDialog Dialog;
};

TEST_F(AddBasicPaletteColorDialog, SaysWhatItIsAbout) {
    EXPECT_EQ(Dialog.windowTitle(), "Basic palette color");
    EXPECT_EQ(Dialog.findChild<TFormHeading*>()->text(), "Set color");
    QStringList texts;
    for (const QLabel* label : Dialog.findChildren<QLabel*>())
        texts += QString(label->text()).remove(u'&');
    for (const char* text : {"Label:", "Color:", "Leave blank to use default range label"})
        EXPECT_TRUE(texts.contains(text)) << text;
}

TEST_F(AddBasicPaletteColorDialog, GivesBackWhatItShowsAndChecksNothing) {
    Dialog.SetPalLabel("ice");
    Dialog.SetPalColor(0x80FFFFFF);
    const tests::TModalAnswer<TAddBasicPaletteColorDialog> answer([](TAddBasicPaletteColorDialog& dialog) {
        ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
        EXPECT_EQ(dialog.focusWidget()->objectName(), "edLabel");
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Delete);
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
    });
    EXPECT_EQ(Dialog.ShowModal(), TModalResult::mrOk);
    EXPECT_EQ(Dialog.GetPalLabel(), "");
    EXPECT_EQ(Dialog.GetPalColor(), 0x80FFFFFFU);
}

TEST_F(AddBasicPaletteColorDialog, LetsTheUserChooseAColorWithAlpha) {
    Chooser->Answers = {0x40123456U};
    tests::ShowActive(Dialog);
    QTest::mouseClick(Dialog.findChild<TColor32Button*>("btnColorShape"), Qt::LeftButton);
    EXPECT_EQ(Dialog.GetPalColor(), 0x40123456U);
    EXPECT_EQ(Chooser->Shown, std::vector<TColor32>{0xFFFFFFFF});
    EXPECT_EQ(Chooser->Made, std::vector<TColorChooserDialogOptions>{{TColorChooserDialogOption::coColor32}});
}

TEST_F(AddBasicPaletteColorDialog, IsReadAndOperatedAtEveryFontSize) {
    tests::CheckForm([] { return std::make_unique<TAddBasicPaletteColorDialog>(); });
}

} // namespace
} // namespace lmx
