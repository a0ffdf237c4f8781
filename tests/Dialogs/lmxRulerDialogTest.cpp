#include <lmx/Dialogs/lmxRulerDialog.h>
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
#include <QRadioButton>

namespace lmx {
namespace {

using tests::MessageOf;
using tests::TModalAnswer;

constexpr TColor32 Cyan = 0xFF00FFFFU;

struct RulerDialog : testing::Test {
    template<class Widget>
    Widget& Find(const char* name) {
        return *Dialog.findChild<Widget*>(QString::fromLatin1(name));
    }
    /// The point of a number as the present settings write it.
    static QString Local(QString text) { return text.replace(u'.', TFormatSettings::Current().DecimalSeparator); }

    /// Presses a key on whatever has the keyboard, which a dialog gets a moment after it came up.
    static void Press(TRulerDialog& dialog, Qt::Key key) {
        ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
        QTest::keyClick(dialog.focusWidget(), key);
    }
    static void Type(TRulerDialog& dialog, const QString& text) {
        ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
        QTest::keyClicks(dialog.focusWidget(), text);
    }

    TRulerDialog Dialog;
    QLineEdit& Location = Find<QLineEdit>("edLocation");
    QRadioButton& Horizontal = Find<QRadioButton>("rbHorizontal");
    QRadioButton& Vertical = Find<QRadioButton>("rbVertical");
    TColorShape& Color = Find<TColorShape>("shpColor");
};

TEST_F(RulerDialog, SaysWhatItIsAbout) {
    EXPECT_EQ(Dialog.windowTitle(), "Ruler");
    EXPECT_EQ(Dialog.findChild<TFormHeading*>()->text(), "Ruler");
    EXPECT_EQ(Horizontal.text(), "&Horizontal");
    EXPECT_EQ(Vertical.text(), "&Vertical");
    EXPECT_EQ(Color.accessibleName(), "Color");
}

TEST_F(RulerDialog, BeginsWithAVerticalCyanRulerAt0) {
    EXPECT_EQ(Dialog.GetRulerLocation(), 0.0F);
    EXPECT_EQ(Location.text(), Local("0.000"));
    EXPECT_EQ(Dialog.GetRulerOrientation(), TRulerOrientation::roVertical);
    EXPECT_EQ(Dialog.GetRulerColor(), Cyan);
}

TEST_F(RulerDialog, OffersItsLocationToBeTypedOver) {
    tests::ShowActive(Dialog);
    EXPECT_TRUE(Location.hasFocus());
    EXPECT_EQ(Location.selectedText(), Local("0.000"));
    TRulerDialog filled;
    filled.SetRulerLocation(12.5F);
    tests::ShowActive(filled);
    EXPECT_EQ(filled.findChild<QLineEdit*>("edLocation")->selectedText(), Local("12.500"));
}

TEST_F(RulerDialog, IsCancelledByTheEnterKeyOnItsCancelButton) {
    const TModalAnswer<TRulerDialog> answer([](TRulerDialog& dialog) {
        ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
        Press(dialog, Qt::Key_Backtab);
        ASSERT_EQ(dialog.focusWidget()->objectName(), "btnCancel");
        Press(dialog, Qt::Key_Return);
    });
    EXPECT_EQ(Dialog.ShowModal(), TModalResult::mrCancel);
}

TEST_F(RulerDialog, HasAccessKeysForItsOrientation) {
    tests::ShowActive(Dialog);
    QTest::keyClick(&Dialog, Qt::Key_H, Qt::AltModifier); // Qt shows the button pressed for a moment
    EXPECT_TRUE(QTest::qWaitFor([this] { return Dialog.GetRulerOrientation() == TRulerOrientation::roHorizontal; }));
    QTest::keyClick(&Dialog, Qt::Key_V, Qt::AltModifier);
    EXPECT_TRUE(QTest::qWaitFor([this] { return Dialog.GetRulerOrientation() == TRulerOrientation::roVertical; }));
}

TEST_F(RulerDialog, IsReadAndOperatedAtEveryFontSize) {
    tests::CheckForm([] { return std::make_unique<TRulerDialog>(); });
}

TEST_F(RulerDialog, ShowsALocationWithThreeDecimals) {
    Dialog.SetRulerLocation(174.77623F);
    EXPECT_EQ(Location.text(), Local("174.776"));
    EXPECT_EQ(Dialog.GetRulerLocation(), 174.776F) << "what is shown comes back";
    Dialog.SetRulerLocation(-0.0004F);
    EXPECT_EQ(Location.text(), Local("0.000"));
    Dialog.SetRulerLocation(6'000'000.5F);
    EXPECT_EQ(Location.text(), Local("6000000.500"));
}

TEST_F(RulerDialog, ReadsALocationInSinglePrecision) {
    Location.setText(Local(" 16777217 "));
    EXPECT_EQ(Dialog.GetRulerLocation(), 16777216.0F);
    Location.setText(Local("174.1234567"));
    EXPECT_EQ(Dialog.GetRulerLocation(), 174.12346F);
}

TEST_F(RulerDialog, ReadsALocationWhenItIsAskedForIt) {
    for (const QString& text : {QStringLiteral("abc"), QString(), QStringLiteral("1e39"), QStringLiteral("1 2")}) {
        Location.setText(text);
        EXPECT_EQ(MessageOf<EConvertError>([&] { Dialog.GetRulerLocation(); }),
                  QStringLiteral("'%1' is not a valid floating point value").arg(text));
    }
}

TEST_F(RulerDialog, ClosesWithOkWhateverTheLocationSays) {
    const tests::TScriptedMsgBox messages;
    {
        const TModalAnswer<TRulerDialog> answer([](TRulerDialog& dialog) {
            Type(dialog, QStringLiteral("north")); // the location has the focus, all of it selected
            QTest::mouseClick(dialog.findChild<QPushButton*>("btnOK"), Qt::LeftButton);
        });
        EXPECT_EQ(Dialog.ShowModal(), TModalResult::mrOk);
    }
    QCoreApplication::processEvents();
    EXPECT_TRUE(messages->Shown.empty());
    EXPECT_EQ(MessageOf<EConvertError>([&] { Dialog.GetRulerLocation(); }),
              "'north' is not a valid floating point value");
}

TEST_F(RulerDialog, TakesAnOrientation) {
    Dialog.SetRulerOrientation(TRulerOrientation::roHorizontal);
    EXPECT_TRUE(Horizontal.isChecked());
    EXPECT_FALSE(Vertical.isChecked());
    EXPECT_EQ(Dialog.GetRulerOrientation(), TRulerOrientation::roHorizontal);
    Dialog.SetRulerOrientation(TRulerOrientation::roVertical);
    EXPECT_FALSE(Horizontal.isChecked());
    EXPECT_EQ(Dialog.GetRulerOrientation(), TRulerOrientation::roVertical);
}

TEST_F(RulerDialog, WantsAnOrientation) {
    Vertical.setAutoExclusive(false);
    Vertical.setChecked(false);
    EXPECT_EQ(MessageOf<Exception>([&] { Dialog.GetRulerOrientation(); }), "Please select an orientation");
}

TEST_F(RulerDialog, LosesTheAlphaOfAColour) {
    Dialog.SetRulerColor(0x80FF8000U);
    EXPECT_EQ(Dialog.GetRulerColor(), 0xFFFF8000U);
    EXPECT_EQ(Color.accessibleDescription(), "#FF8000");
}

TEST_F(RulerDialog, LetsTheUserChooseAColourWithoutAlpha) {
    const tests::TScriptedColorChooser chooser;
    chooser->Answers = {0x40123456U, std::nullopt};
    tests::ShowActive(Dialog);
    QTest::mousePress(&Color, Qt::LeftButton);
    EXPECT_EQ(chooser->Shown, std::vector<TColor32>{Cyan});
    EXPECT_EQ(chooser->Made, std::vector<TColorChooserDialogOptions>{{}});
    EXPECT_EQ(Dialog.GetRulerColor(), 0xFF123456U);
    QTest::mousePress(&Color, Qt::LeftButton); // and cancel
    EXPECT_EQ(Dialog.GetRulerColor(), 0xFF123456U);
}

TEST_F(RulerDialog, IsOperatedByTheKeyboardAlone) {
    const tests::TScriptedColorChooser chooser;
    chooser->Answers = {0xFF102030U};
    const TModalAnswer<TRulerDialog> answer([](TRulerDialog& dialog) {
        Type(dialog, QStringLiteral("-41"));
        Press(dialog, Qt::Key_Tab);
        Press(dialog, Qt::Key_Space); // horizontal
        Press(dialog, Qt::Key_Tab);
        Press(dialog, Qt::Key_Space); // the colour
        Press(dialog, Qt::Key_Tab);
        EXPECT_EQ(dialog.focusWidget()->objectName(), "btnOK");
        Press(dialog, Qt::Key_Tab);
        EXPECT_EQ(dialog.focusWidget()->objectName(), "btnCancel");
        Press(dialog, Qt::Key_Backtab);
        Press(dialog, Qt::Key_Return);
    });
    EXPECT_EQ(Dialog.ShowModal(), TModalResult::mrOk);
    EXPECT_EQ(Dialog.GetRulerLocation(), -41.0F);
    EXPECT_EQ(Dialog.GetRulerOrientation(), TRulerOrientation::roHorizontal);
    EXPECT_EQ(Dialog.GetRulerColor(), 0xFF102030U);
}

TEST_F(RulerDialog, IsCancelledByEscape) {
    const TModalAnswer<TRulerDialog> answer([](TRulerDialog& dialog) { Press(dialog, Qt::Key_Escape); });
    EXPECT_EQ(Dialog.ShowModal(), TModalResult::mrCancel);
}

TEST_F(RulerDialog, LeadsFromItsLabelsToItsFields) {
    QStringList buddies;
    for (const QLabel* label : Dialog.findChildren<QLabel*>())
        if (label->buddy())
            buddies.append(label->buddy()->objectName());
    EXPECT_EQ(buddies, (QStringList{"edLocation", "shpColor"}));
}

} // namespace
} // namespace lmx
