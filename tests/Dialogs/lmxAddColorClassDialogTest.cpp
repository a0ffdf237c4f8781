#include <lmx/Dialogs/lmxAddColorClassDialog.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxFormatSettings.h>
#include <lmx/Widgets/Private/lmxFormHeading.h>
#include <lmx/Widgets/lmxColor32Button.h>
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

struct AddColorClassDialog : testing::Test {
    QLineEdit& Edit(const char* name) { return *Dialog.findChild<QLineEdit*>(QString::fromLatin1(name)); }

    const TFormatSettingsScope Point{TFormatSettings{u'.'}};
    tests::TScriptedColorChooser Chooser; // there before the dialog makes its own
    TAddColorClassDialog Dialog;
};

TEST_F(AddColorClassDialog, SaysWhatItIsAbout) {
    EXPECT_EQ(Dialog.windowTitle(), "Color class");
    EXPECT_EQ(Dialog.findChild<TFormHeading*>()->text(), "Set color class");
    Dialog.SetValueRange({0, 100});
    EXPECT_EQ(Dialog.findChild<QLabel*>("lbFullRange")->text(), "0.000 - 100.000");
    QStringList texts;
    for (const QLabel* label : Dialog.findChildren<QLabel*>())
        texts += QString(label->text()).remove(u'&');
    for (const char* text : {"Full range: ", "Min value:", "Max value:", "Class label:", "Color:",
                             "Leave blank to use default range label"})
        EXPECT_TRUE(texts.contains(text)) << text;
}

TEST_F(AddColorClassDialog, GivesBackWhatItShows) {
    Dialog.SetMin(-1.23456F);
    Dialog.SetMax(2);
    Dialog.SetClassLabel("warm");
    Dialog.SetClassColor(0x80FF0000);
    EXPECT_EQ(Edit("edMin").text(), "-1.235");
    EXPECT_EQ(Dialog.GetMin(), -1.235F);
    EXPECT_EQ(Dialog.GetMax(), 2.0F);
    EXPECT_EQ(Dialog.GetClassLabel(), "warm");
    EXPECT_EQ(Dialog.GetClassColor(), 0x80FF0000U);
}

TEST_F(AddColorClassDialog, WantsTwoNumbers) {
    const tests::TScriptedMsgBox messages;
    const tests::TModalAnswer<TAddColorClassDialog> answer([&](TAddColorClassDialog& dialog) {
        const auto press = [&] { QTest::keyClick(dialog.focusWidget(), Qt::Key_Return); };
        ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
        std::size_t count = 0;
        for (const char* bad : {"", " ", "abc", "1e39", "1e400", "nan", "inf", "1 2", "1,5", "0x10"}) {
            Edit("edMin").setText(bad);
            Edit("edMax").setText("1");
            press();
            Edit("edMin").setText("1");
            Edit("edMax").setText(bad);
            press();
            count += 2;
            ASSERT_TRUE(dialog.isVisible());
            ASSERT_EQ(messages->Shown.size(), count) << bad;
        }
        for (const TShownMessage& shown : messages->Shown)
            EXPECT_EQ(shown, (TShownMessage{"Error", "Please enter the min and max range for the color class.", "Range",
                                            &dialog}));
        Edit("edMax").setText("0");
        press();
    });
    EXPECT_EQ(Dialog.ShowModal(), TModalResult::mrOk);
    EXPECT_EQ(Dialog.GetMin(), 1.0F);
    EXPECT_EQ(Dialog.GetMax(), 0.0F);
}

TEST_F(AddColorClassDialog, FollowsTheDecimalSeparator) {
    const TFormatSettingsScope comma{TFormatSettings{u','}};
    Dialog.SetValueRange({0.0625, 100});
    EXPECT_EQ(Dialog.findChild<QLabel*>("lbFullRange")->text(), "0,063 - 100,000");
    Dialog.SetMin(-1.5F);
    EXPECT_EQ(Edit("edMin").text(), "-1,500");
    EXPECT_EQ(Dialog.GetMin(), -1.5F);
    Edit("edMax").setText(" 2,5 ");
    EXPECT_EQ(Dialog.GetMax(), 2.5F) << "blanks around a number are none of it";
    Edit("edMax").setText("2.5");
    EXPECT_EQ(MessageOf<EConvertError>([&] { Dialog.GetMax(); }), "'2.5' is not a valid floating point value");
}

TEST_F(AddColorClassDialog, LetsTheUserChooseAColorWithAlpha) {
    Chooser->Answers = {0x40123456U, std::nullopt};
    Dialog.SetClassColor(0xFF00FF00);
    tests::ShowActive(Dialog);
    auto* button = Dialog.findChild<TColor32Button*>("btnColorShape");
    QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_EQ(Dialog.GetClassColor(), 0x40123456U);
    QTest::mouseClick(button, Qt::LeftButton); // and cancel
    EXPECT_EQ(Dialog.GetClassColor(), 0x40123456U);
    EXPECT_EQ(Chooser->Shown, (std::vector<TColor32>{0xFF00FF00, 0x40123456}));
    EXPECT_EQ(Chooser->Made, std::vector<TColorChooserDialogOptions>{{TColorChooserDialogOption::coColor32}});
}

TEST_F(AddColorClassDialog, IsReadAndOperatedAtEveryFontSize) {
    tests::CheckForm([] {
        auto dialog = std::make_unique<TAddColorClassDialog>();
        dialog->SetValueRange({-30, 45});
        return dialog;
    });
}

} // namespace
} // namespace lmx
