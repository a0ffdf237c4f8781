#include <lmx/Dialogs/lmxCompassRoseObjectDialog.h>
#include <lmx/Widgets/lmxColorShape.h>
#include <tests/Dialogs/FormControls.h>
#include <tests/Support/DialogChecks.h>
#include <tests/Support/Printers.h>

#include <QLabel>

#include <memory>

namespace lmx {
namespace {

using tests::Find;

using TAnswer = tests::TModalAnswer<TCompassRoseObjectDialog>;

struct TColorAccess {
    const char* Shape;
    QString Label;
    TColor32 (TCompassRoseObjectDialog::*Get)() const;
    void (TCompassRoseObjectDialog::*Set)(TColor32);
};

const TColorAccess Colors[] = {
    {"shpDark", "Dark color:", &TCompassRoseObjectDialog::GetDarkColor, &TCompassRoseObjectDialog::SetDarkColor},
    {"shpLight", "Light color:", &TCompassRoseObjectDialog::GetLightColor, &TCompassRoseObjectDialog::SetLightColor},
    {"shpFont", "Font color:", &TCompassRoseObjectDialog::GetFontColor, &TCompassRoseObjectDialog::SetFontColor},
    {"shpLine", "Line color:", &TCompassRoseObjectDialog::GetLineColor, &TCompassRoseObjectDialog::SetLineColor},
};

struct CompassRoseObjectDialog : testing::Test {
    tests::TScriptedColorChooser Chooser;
    TCompassRoseObjectDialog Dialog;
};

TEST_F(CompassRoseObjectDialog, SaysWhatItIsAbout) {
    EXPECT_EQ(Dialog.windowTitle(), "Compass rose options");
    EXPECT_EQ(tests::HeadingOf(Dialog), "Compass rose options");
    QStringList labels;
    for (const QLabel* label : Dialog.findChildren<QLabel*>())
        if (label->buddy())
            labels.append(label->buddy()->objectName() + u' ' + label->text().remove(u'&'));
    QStringList expected;
    for (const TColorAccess& color : Colors)
        expected.append(QString::fromLatin1(color.Shape) + u' ' + color.Label);
    EXPECT_EQ(labels, expected);
}

TEST_F(CompassRoseObjectDialog, IsReadAndOperatedAtEveryFontSize) {
    tests::CheckForm([] { return std::make_unique<TCompassRoseObjectDialog>(); });
}

TEST_F(CompassRoseObjectDialog, HoldsFourColoursWithoutTheirAlpha) {
    TColor32 alpha = 0;
    for (const TColorAccess& color : Colors) {
        alpha += 0x20000000U;
        (Dialog.*color.Set)(alpha | 0x00102030U);
        EXPECT_EQ((Dialog.*color.Get)(), 0xFF102030U) << color.Shape;
        EXPECT_EQ(Find<TColorShape>(Dialog, color.Shape).GetColor(), TColor{0x00302010}) << color.Shape;
        (Dialog.*color.Set)(0xFFFFFFFFU);
    }
}

TEST_F(CompassRoseObjectDialog, LetsTheUserChooseEachColourAtAPress) {
    tests::ShowActive(Dialog);
    TColor32 before = 0xFF000010U;
    for (const TColorAccess& color : Colors)
        (Dialog.*color.Set)(before++);
    TColor32 chosen = 0x80AA0000U;
    before = 0xFF000010U;
    for (const TColorAccess& color : Colors) {
        Chooser->Answers = {std::nullopt, ++chosen};
        QTest::mousePress(&Find<TColorShape>(Dialog, color.Shape), Qt::LeftButton);
        EXPECT_EQ((Dialog.*color.Get)(), before) << "cancelled";
        QTest::mousePress(&Find<TColorShape>(Dialog, color.Shape), Qt::RightButton);
        EXPECT_EQ((Dialog.*color.Get)(), SetAlpha(chosen, 255));
        EXPECT_EQ(Chooser->Shown, (std::vector<TColor32>{before, before}));
        Chooser->Shown.clear();
        ++before;
    }
    EXPECT_EQ(Chooser->Made, std::vector<TColorChooserDialogOptions>(8)) << "of plain colours";
}

TEST_F(CompassRoseObjectDialog, ClosesWithOkWithoutATest) {
    const TAnswer answer([](TCompassRoseObjectDialog& dialog) { tests::ClickOk(dialog); });
    EXPECT_EQ(Dialog.ShowModal(), TModalResult::mrOk);
}

TEST_F(CompassRoseObjectDialog, IsOperatedByTheKeyboardAlone) {
    Chooser->Answers = {0xFF010203U, 0xFF040506U};
    const TAnswer answer([](TCompassRoseObjectDialog& dialog) {
        tests::PressKey(dialog, Qt::Key_Space);
        tests::PressKey(dialog, Qt::Key_Tab);
        tests::PressKey(dialog, Qt::Key_Tab);
        tests::PressKey(dialog, Qt::Key_Tab);
        EXPECT_EQ(dialog.focusWidget()->objectName(), "shpLine");
        tests::PressKey(dialog, Qt::Key_Space);
        tests::PressKey(dialog, Qt::Key_Return);
    });
    EXPECT_EQ(Dialog.ShowModal(), TModalResult::mrOk);
    EXPECT_EQ(Dialog.GetDarkColor(), 0xFF010203U);
    EXPECT_EQ(Dialog.GetLineColor(), 0xFF040506U);
}

TEST_F(CompassRoseObjectDialog, IsCancelledByEscapeAndByClosing) {
    {
        const TAnswer answer([](TCompassRoseObjectDialog& dialog) { tests::PressKey(dialog, Qt::Key_Escape); });
        EXPECT_EQ(Dialog.ShowModal(), TModalResult::mrCancel);
    }
    const TAnswer answer([](TCompassRoseObjectDialog& dialog) { dialog.close(); });
    EXPECT_EQ(Dialog.ShowModal(), TModalResult::mrCancel);
}

} // namespace
} // namespace lmx
