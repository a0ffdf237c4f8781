#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Widgets/Private/lmxFormHeading.h>
#include <lmx/Widgets/lmxColorShape.h>
#include <lmx/Widgets/lmxModalDialog.h>
#include <tests/Support/ModalAnswer.h>
#include <tests/Support/Printers.h>
#include <tests/Support/ScriptedServices.h>
#include <tests/Support/WidgetPictures.h>

#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

#include <memory>

namespace lmx {
namespace {

class TTestDialog : public TModalDialog {
public:
    explicit TTestDialog(QWidget* parent = nullptr)
        : TModalDialog(QStringLiteral("Caption"), QStringLiteral("Heading"), parent) {
        Edit = new QLineEdit(this);
        More = new QPushButton(QStringLiteral("More"), this);
        Color = new TColorShape(this);
        Bold = new QToolButton(this);
        Bold->setCheckable(true);
        for (QWidget* control : {static_cast<QWidget*>(Edit), static_cast<QWidget*>(More), static_cast<QWidget*>(Color),
                                 static_cast<QWidget*>(Bold)})
            GetContent()->addWidget(control);
        AddButtons();
    }
    QPushButton* Button(const char* name) { return findChild<QPushButton*>(QString::fromLatin1(name)); }

    bool Refuses = false;
    QLineEdit* Edit;
    QPushButton* More;
    TColorShape* Color;
    QToolButton* Bold;

protected:
    void OkClick() override {
        if (Refuses)
            throw Exception(QStringLiteral("not yet"));
        TModalDialog::OkClick();
    }
};

/// Shows a dialog and lets `answer` close it.
TModalResult Shown(std::function<void(TTestDialog&)> answer) {
    TTestDialog dialog;
    const tests::TModalAnswer<TTestDialog> guard(std::move(answer));
    const TModalResult result = dialog.ShowModal();
    EXPECT_EQ(dialog.GetModalResult(), result);
    EXPECT_FALSE(dialog.isVisible());
    return result;
}

TEST(ModalDialog, SaysWhatItIsAbout) {
    TTestDialog dialog;
    EXPECT_EQ(dialog.windowTitle(), "Caption");
    EXPECT_EQ(dialog.findChild<TFormHeading*>()->text(), "Heading");
    EXPECT_EQ(dialog.Button("btnOK")->text(), "&OK");
    EXPECT_EQ(dialog.Button("btnCancel")->text(), "&Cancel");
}

TEST(ModalDialog, IsConfirmedByItsButtonAndTheEnterKey) {
    EXPECT_EQ(Shown([](TTestDialog& dialog) { QTest::mouseClick(dialog.Button("btnOK"), Qt::LeftButton); }),
              TModalResult::mrOk);
    EXPECT_EQ(Shown([](TTestDialog& dialog) { QTest::keyClick(dialog.Edit, Qt::Key_Return); }), TModalResult::mrOk);
    EXPECT_EQ(Shown([](TTestDialog& dialog) {
                  dialog.Bold->setFocus(Qt::TabFocusReason);
                  QTest::keyClick(dialog.Bold, Qt::Key_Enter);
              }),
              TModalResult::mrOk);
}

TEST(ModalDialog, PressesTheButtonThatHasTheKeyboardByTheEnterKey) {
    EXPECT_EQ(Shown([](TTestDialog& dialog) {
                  dialog.Button("btnCancel")->setFocus();
                  QTest::keyClick(dialog.Button("btnCancel"), Qt::Key_Return);
              }),
              TModalResult::mrCancel);
    EXPECT_EQ(Shown([&](TTestDialog& dialog) {
                  int clicks = 0;
                  QObject::connect(dialog.More, &QPushButton::clicked, [&] { ++clicks; });
                  dialog.More->setFocus();
                  QTest::keyClick(dialog.More, Qt::Key_Enter);
                  EXPECT_EQ(clicks, 1);
                  EXPECT_TRUE(dialog.isVisible());
                  EXPECT_TRUE(dialog.More->isDefault()) << "and it looks so";
                  dialog.Color->setFocus();
                  EXPECT_TRUE(dialog.Button("btnOK")->isDefault());
                  QTest::keyClick(dialog.Color, Qt::Key_Return);
              }),
              TModalResult::mrOk);
}

TEST(ModalDialog, TakesNoNoticeOfAnEnterKeyThatIsStillHeld) {
    EXPECT_EQ(Shown([](TTestDialog& dialog) {
                  QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QString(), true);
                  QCoreApplication::sendEvent(dialog.Edit, &held);
                  EXPECT_TRUE(dialog.isVisible());
                  dialog.reject();
              }),
              TModalResult::mrCancel);
}

TEST(ModalDialog, BeginsWithItsFirstTextSelected) {
    TTestDialog dialog;
    dialog.Edit->setText(QStringLiteral("as it was"));
    tests::ShowActive(dialog);
    EXPECT_TRUE(dialog.Edit->hasFocus());
    EXPECT_EQ(dialog.Edit->selectedText(), "as it was");
    TTestDialog other;
    other.More->setFocus();
    tests::ShowActive(other);
    EXPECT_TRUE(other.More->hasFocus()) << "it was given the keyboard";
}

TEST(ModalDialog, IsCancelledWhenItIsHiddenOrGoes) {
    EXPECT_EQ(
        [] {
            TTestDialog dialog;
            const tests::TModalAnswer<TTestDialog> answer([](TTestDialog& shown) { shown.hide(); });
            return dialog.ShowModal();
        }(),
        TModalResult::mrCancel);
    auto dialog = std::make_unique<TTestDialog>();
    const tests::TModalAnswer<TTestDialog> answer([&](TTestDialog&) { dialog.reset(); });
    EXPECT_EQ(dialog->ShowModal(), TModalResult::mrCancel);
}

TEST(ModalDialog, IsCancelledByItsButtonEscapeAndTheWindow) {
    EXPECT_EQ(Shown([](TTestDialog& dialog) { QTest::mouseClick(dialog.Button("btnCancel"), Qt::LeftButton); }),
              TModalResult::mrCancel);
    EXPECT_EQ(Shown([](TTestDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); }), TModalResult::mrCancel);
    EXPECT_EQ(Shown([](TTestDialog& dialog) { dialog.close(); }), TModalResult::mrCancel);
    EXPECT_EQ(static_cast<int>(TModalResult::mrCancel), 2);
}

TEST(ModalDialog, StaysOpenWhenOkRaises) {
    const tests::TScriptedMsgBox messages;
    EXPECT_EQ(Shown([&](TTestDialog& dialog) {
                  dialog.Refuses = true;
                  QTest::mouseClick(dialog.Button("btnOK"), Qt::LeftButton);
                  EXPECT_TRUE(dialog.isVisible());
                  QCoreApplication::processEvents();
                  ASSERT_EQ(messages->Shown.size(), 1U);
                  EXPECT_EQ(messages->Shown[0].Text, "not yet");
                  dialog.reject();
              }),
              TModalResult::mrCancel);
}

TEST(ModalDialog, LeadsTheTabKeyThroughItsContentToItsButtons) {
    TTestDialog dialog;
    tests::ShowActive(dialog);
    EXPECT_TRUE(dialog.Edit->hasFocus());
    for (QWidget* next :
         {static_cast<QWidget*>(dialog.More), static_cast<QWidget*>(dialog.Color), static_cast<QWidget*>(dialog.Bold),
          static_cast<QWidget*>(dialog.Button("btnOK")), static_cast<QWidget*>(dialog.Button("btnCancel"))}) {
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Tab);
        EXPECT_TRUE(next->hasFocus()) << next->objectName().toStdString();
    }
}

} // namespace
} // namespace lmx
