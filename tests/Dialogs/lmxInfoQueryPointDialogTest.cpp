#include <lmx/Dialogs/lmxInfoQueryPointDialog.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxFormatSettings.h>
#include <lmx/Widgets/Private/lmxFormHeading.h>
#include <lmx/Widgets/lmxColorShape.h>
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
using tests::TModalAnswer;
using tests::TShownMessage;

struct InfoQueryPointDialog : testing::Test {
    template<class Widget>
    Widget& Find(const char* name) {
        return *Dialog.findChild<Widget*>(QString::fromLatin1(name));
    }
    /// The point of a number as the present settings write it.
    static QString Local(QString text) { return text.replace(u'.', TFormatSettings::Current().DecimalSeparator); }
    void Press(Qt::Key key) { QTest::keyClick(Dialog.focusWidget(), key); }

    TInfoQueryPointDialog Dialog;
    QLineEdit& X = Find<QLineEdit>("edPointX");
    QLineEdit& Y = Find<QLineEdit>("edPointY");
    QLineEdit& Label = Find<QLineEdit>("edPointLabel");
    TColorShape& Color = Find<TColorShape>("shpColor");
};

TEST_F(InfoQueryPointDialog, SaysWhatItIsAbout) {
    EXPECT_EQ(Dialog.windowTitle(), "Info query point");
    EXPECT_EQ(Dialog.findChild<TFormHeading*>()->text(), "Info query point");
    QStringList labels;
    for (const QLabel* label : Dialog.findChildren<QLabel*>())
        if (label->buddy())
            labels += QString(label->text()).remove(u'&') + label->buddy()->objectName();
    EXPECT_EQ(labels, (QStringList{"X:edPointX", "Y:edPointY", "Label (optional):edPointLabel", "Color:shpColor"}));
}

TEST_F(InfoQueryPointDialog, BeginsWithEmptyTextsAndWhite) {
    EXPECT_EQ(X.text() + Y.text() + Label.text(), "");
    EXPECT_EQ(Dialog.GetPointColor(), 0xFFFFFFFFU);
    tests::ShowActive(Dialog);
    EXPECT_TRUE(X.hasFocus());
}

TEST_F(InfoQueryPointDialog, ShowsAPlaceWithFiveDecimals) {
    Dialog.SetPointX(174.776234567L);
    Dialog.SetPointY(-41.2864959L);
    EXPECT_EQ(X.text(), Local("174.77623"));
    EXPECT_EQ(Y.text(), Local("-41.28650"));
    EXPECT_EQ(Dialog.GetPointX(), 174.77623L) << "what is shown comes back";
    EXPECT_EQ(Dialog.GetPointY(), -41.2865L);
}

TEST_F(InfoQueryPointDialog, TakesALabelAndAnOpaqueColor) {
    Dialog.SetPointLabel("Here & there");
    EXPECT_EQ(Label.text(), "Here & there");
    EXPECT_EQ(Dialog.GetPointLabel(), "Here & there");
    Dialog.SetPointColor(0x80FF8000U);
    EXPECT_EQ(Dialog.GetPointColor(), 0xFFFF8000U);
}

TEST_F(InfoQueryPointDialog, RaisesForAPlaceThatIsNoNumber) {
    X.setText("east");
    EXPECT_EQ(MessageOf<EConvertError>([&] { Dialog.GetPointX(); }), "'east' is not a valid floating point value");
    EXPECT_EQ(MessageOf<EConvertError>([&] { Dialog.GetPointY(); }), "'' is not a valid floating point value");
}

TEST_F(InfoQueryPointDialog, WantsANumberForXThenForY) {
    const tests::TScriptedMsgBox messages;
    const TModalAnswer<TInfoQueryPointDialog> answer([&](TInfoQueryPointDialog& dialog) {
        ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
        const bool isComma = TFormatSettings::Current().DecimalSeparator == u',';
        for (const char* bad :
             {"", " ", "abc", "1 2", "1e5000", "nan", "inf", "-", "0x10", isComma ? "1.5" : "1,5", "1.5.5"}) {
            X.setText(bad);
            Press(Qt::Key_Return);
            ASSERT_TRUE(dialog.isVisible()) << bad;
            EXPECT_TRUE(X.hasFocus());
            EXPECT_EQ(messages->Shown.back(), (TShownMessage{"Info", "Please enter a number for X", "Value", &dialog}));
        }
        EXPECT_EQ(messages->Shown.size(), 11U) << "one at a time";
        X.setText(Local("174.5"));
        Press(Qt::Key_Return);
        ASSERT_TRUE(dialog.isVisible());
        EXPECT_TRUE(Y.hasFocus()) << "where it is to be typed";
        EXPECT_EQ(messages->Shown.back(), (TShownMessage{"Info", "Please enter a number for Y", "Value", &dialog}));
        QTest::keyClicks(&Y, " -41 ");
        Press(Qt::Key_Return);
    });
    EXPECT_EQ(Dialog.ShowModal(), TModalResult::mrOk);
    EXPECT_EQ(messages->Shown.size(), 12U);
    EXPECT_EQ(Dialog.GetPointX(), 174.5L);
    EXPECT_EQ(Dialog.GetPointY(), -41.0L);
}

TEST_F(InfoQueryPointDialog, LetsTheUserChooseAColorWithoutAlpha) {
    const tests::TScriptedColorChooser chooser;
    chooser->Answers = {0x40123456U, std::nullopt};
    Dialog.SetPointColor(0xFF00FF00U);
    tests::ShowActive(Dialog);
    QTest::mousePress(&Color, Qt::LeftButton);
    EXPECT_EQ(chooser->Shown, std::vector<TColor32>{0xFF00FF00U});
    EXPECT_EQ(chooser->Made, std::vector<TColorChooserDialogOptions>{{}});
    EXPECT_EQ(Dialog.GetPointColor(), 0xFF123456U);
    QTest::mousePress(&Color, Qt::LeftButton); // and cancel
    EXPECT_EQ(Dialog.GetPointColor(), 0xFF123456U);
}

TEST_F(InfoQueryPointDialog, IsReadAndOperatedAtEveryFontSize) {
    tests::CheckForm([] { return std::make_unique<TInfoQueryPointDialog>(); });
}

} // namespace
} // namespace lmx
