#include <lmx/Dialogs/lmxAddMPGradientDialog.h>
#include <lmx/Dialogs/lmxGradientEditorFrame.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxFormatSettings.h>
#include <lmx/Widgets/Private/lmxFormHeading.h>
#include <lmx/Widgets/lmxGradientEditor.h>
#include <tests/Support/DialogChecks.h>
#include <tests/Support/ModalAnswer.h>
#include <tests/Support/Printers.h>
#include <tests/Support/ScriptedServices.h>
#include <tests/Support/WidgetPictures.h>

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace lmx {
namespace {

using tests::MessageOf;
using tests::TShownMessage;

struct AddMPGradientDialog : testing::Test {
    QLineEdit& Edit(const char* name) { return *Dialog.findChild<QLineEdit*>(QString::fromLatin1(name)); }

    const TFormatSettingsScope Point{TFormatSettings{u'.'}};
    TAddMPGradientDialog Dialog;
    TGradientEditor& Editor = *Dialog.GetGradEditFrame()->GetGradEdit();
};

TEST_F(AddMPGradientDialog, SaysWhatItIsAbout) {
    EXPECT_EQ(Dialog.windowTitle(), "Gradient");
    EXPECT_EQ(Dialog.findChild<TFormHeading*>()->text(), "Gradient range");
    Dialog.SetValueRange({-1, 2.5});
    EXPECT_EQ(Dialog.findChild<QLabel*>("lbFullRange")->text(), "-1.000 - 2.500");
    QStringList texts;
    for (const QLabel* label : Dialog.findChildren<QLabel*>())
        texts += QString(label->text()).remove(u'&');
    for (const char* text : {"Full range: ", "Min value:", "Max value:", "Color:", "Location:", "%", "Value:"})
        EXPECT_TRUE(texts.contains(text)) << text;
    EXPECT_EQ(Dialog.findChild<QPushButton*>("btnOK")->text(), "&OK");
    EXPECT_EQ(Dialog.findChild<QPushButton*>("btnCancel")->text(), "&Cancel");
    EXPECT_EQ(Dialog.GetGradEditFrame()->objectName(), "GradEditFrame");
}

TEST_F(AddMPGradientDialog, ShowsAGradientAndItsPart) {
    TMPGradItem item;
    item.Stops = {{1, 0xFF112233}, {0.25, 0x80112233}};
    item.Min = -2.5F;
    item.Max = 7;
    Dialog.SetData(item);
    EXPECT_EQ(Edit("edMin").text(), "-2.500");
    EXPECT_EQ(Edit("edMax").text(), "7.000");
    EXPECT_EQ(Editor.GetLowValue(), -2.5);
    EXPECT_EQ(Editor.GetHighValue(), 7);
    EXPECT_EQ(Dialog.GetStops(), item.Stops);
    EXPECT_EQ(Dialog.GetMin(), -2.5F);
    EXPECT_EQ(Dialog.GetMax(), 7.0F);
}

TEST_F(AddMPGradientDialog, TakesBackNothingThatItWasGiven) {
    TMPGradItem item;
    item.Stops = {{0, 0xFF112233}, {1, 0x80112233}};
    Dialog.SetData(item);
    tests::ShowActive(Dialog);
    Editor.setFocus();
    QTest::keySequence(&Editor, QKeySequence(QKeySequence::Undo));
    EXPECT_EQ(Dialog.GetStops(), item.Stops);
    QTest::keyClick(&Editor, Qt::Key_Delete);
    EXPECT_EQ(Dialog.GetStops().size(), 2U) << "none is selected";
    QTest::keyClick(&Editor, Qt::Key_Right);
    QTest::keyClick(&Editor, Qt::Key_Delete);
    EXPECT_EQ(Dialog.GetStops().size(), 1U);
    QTest::keySequence(&Editor, QKeySequence(QKeySequence::Undo));
    EXPECT_EQ(Dialog.GetStops(), item.Stops);
}

TEST_F(AddMPGradientDialog, GivesBackThreeDecimalsOfThePart) {
    TMPGradItem item;
    item.Min = 0.00004F;
    item.Max = 1.0625F;
    Dialog.SetData(item);
    EXPECT_EQ(Edit("edMin").text(), "0.000");
    EXPECT_EQ(Edit("edMax").text(), "1.063") << "a half is rounded up";
    EXPECT_EQ(Dialog.GetMin(), 0.0F) << "though nobody touched it";
    EXPECT_EQ(Dialog.GetMax(), 1.063F);
}

TEST_F(AddMPGradientDialog, FollowsTheDecimalSeparator) {
    const TFormatSettingsScope comma{TFormatSettings{u','}};
    Dialog.SetValueRange({-1, 2.5});
    EXPECT_EQ(Dialog.findChild<QLabel*>("lbFullRange")->text(), "-1,000 - 2,500");
    Edit("edMin").setText("-2,5");
    Edit("edMax").setText("7.5");
    EXPECT_EQ(Editor.GetLowValue(), -2.5);
    EXPECT_EQ(Editor.GetHighValue(), 1) << "a number with a point is none";
    EXPECT_EQ(Dialog.GetMin(), -2.5F);
    EXPECT_EQ(MessageOf<EConvertError>([&] { Dialog.GetMax(); }), "'7.5' is not a valid floating point value");
}

TEST_F(AddMPGradientDialog, SurvivesEndsThatNoEditorCanShow) {
    const tests::TScriptedMsgBox messages;
    Editor.Select(Editor.Add(0xFF112233, 0.5));
    tests::ShowActive(Dialog);
    for (const QString& far : {QString("1e308"), QString("1e400"), QString("nan"), QString("1e38"), QString("0")}) {
        Edit("edMin").setText('-' + far);
        Edit("edMax").setText(far);
        tests::PictureOf(Dialog);
        QTest::keyClick(&Editor, Qt::Key_Right);
        tests::PictureOf(Dialog);
    }
    EXPECT_EQ(Editor.GetSelected().GetLocation(), 0.55);
    EXPECT_EQ(Dialog.GetMin(), 0.0F);
    QCoreApplication::processEvents();
    EXPECT_TRUE(messages->Shown.empty());
}

TEST_F(AddMPGradientDialog, TheEditorFollowsTheEndsThatAreNumbers) {
    tests::ShowActive(Dialog);
    EXPECT_TRUE(Edit("edMin").hasFocus());
    QTest::keyClicks(&Edit("edMin"), "-");
    EXPECT_EQ(Editor.GetLowValue(), 0);
    QTest::keyClicks(&Edit("edMin"), "3");
    EXPECT_EQ(Editor.GetLowValue(), -3);
    EXPECT_EQ(Editor.GetHighValue(), 1);
    QTest::keyClicks(&Edit("edMax"), "9e1x");
    EXPECT_EQ(Editor.GetHighValue(), 90);
    EXPECT_EQ(MessageOf<EConvertError>([&] { Dialog.GetMax(); }), "'9e1x' is not a valid floating point value");
    Edit("edMin").clear();
    EXPECT_EQ(Editor.GetLowValue(), -3);
    EXPECT_EQ(MessageOf<EConvertError>([&] { Dialog.GetMin(); }), "'' is not a valid floating point value");
}

TEST_F(AddMPGradientDialog, WantsTwoNumbersAndAStop) {
    const tests::TScriptedMsgBox messages;
    const tests::TModalAnswer<TAddMPGradientDialog> answer([&](TAddMPGradientDialog& dialog) {
        const auto ok = [&] { QTest::mouseClick(dialog.findChild<QPushButton*>("btnOK"), Qt::LeftButton); };
        ok();
        Edit("edMin").setText("5");
        ok();
        Edit("edMax").setText("1e39");
        ok();
        ASSERT_EQ(messages->Shown.size(), 3U);
        for (const TShownMessage& shown : messages->Shown)
            EXPECT_EQ(shown, (TShownMessage{"Error", "Please enter a min and max value.", "Value", &dialog}));
        Edit("edMax").setText("1");
        ok();
        ASSERT_EQ(messages->Shown.size(), 4U);
        EXPECT_EQ(messages->Shown[3],
                  (TShownMessage{"Error", "Please add one or more colors to the gradient.", "Colors", &dialog}));
        ASSERT_TRUE(dialog.isVisible());
        Editor.Add(0xFF000000, 0.5);
        ok();
    });
    EXPECT_EQ(Dialog.ShowModal(), TModalResult::mrOk);
    EXPECT_EQ(Dialog.GetMin(), 5.0F) << "above the greatest, as it was entered";
    EXPECT_EQ(Dialog.GetMax(), 1.0F);
}

TEST_F(AddMPGradientDialog, IsReadAndOperatedAtEveryFontSize) {
    tests::CheckForm(
        [] {
            auto dialog = std::make_unique<TAddMPGradientDialog>();
            dialog->SetValueRange({-30, 45});
            return dialog;
        },
        {QStringLiteral("Alt+C")});
}

} // namespace
} // namespace lmx
