#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Widgets/Private/lmxFormHeading.h>
#include <lmx/Widgets/lmxModalDialog.h>
#include <tests/Support/ModalAnswer.h>
#include <tests/Support/Printers.h>
#include <tests/Support/ScriptedServices.h>
#include <tests/Support/WidgetPictures.h>

#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace lmx {
namespace {

class TTestDialog : public TModalDialog {
public:
    explicit TTestDialog(QWidget* parent = nullptr)
        : TModalDialog(QStringLiteral("Caption"), QStringLiteral("Heading"), parent) {
        Edit = new QLineEdit(this);
        More = new QPushButton(QStringLiteral("More"), this);
        More->setAutoDefault(false);
        GetContent()->addWidget(Edit);
        GetContent()->addWidget(More);
        AddButtons();
    }
    QPushButton* Button(const char* name) { return findChild<QPushButton*>(QString::fromLatin1(name)); }

    bool Refuses = false;
    QLineEdit* Edit;
    QPushButton* More;

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
                  dialog.More->setFocus();
                  QTest::keyClick(dialog.More, Qt::Key_Enter);
              }),
              TModalResult::mrOk);
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
    for (QWidget* next : {static_cast<QWidget*>(dialog.More), static_cast<QWidget*>(dialog.Button("btnOK")),
                          static_cast<QWidget*>(dialog.Button("btnCancel"))}) {
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Tab);
        EXPECT_TRUE(next->hasFocus()) << next->objectName().toStdString();
    }
}

} // namespace
} // namespace lmx
