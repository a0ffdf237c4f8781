#include <lmx/Widgets/lmxColorChooser.h>
#include <lmx/Widgets/lmxFileDialog.h>
#include <lmx/Widgets/lmxMsgBox.h>
#include <lmx/Widgets/lmxOwnedDialog.h>
#include <tests/Support/ModalAnswer.h>

#include <QColorDialog>
#include <QFileDialog>
#include <QMessageBox>

#include <memory>

namespace lmx {
namespace {

using tests::TModalAnswer;

TEST(OwnedDialog, GivesItsAnswerAndGoes) {
    QWidget parent;
    {
        TOwnedDialog<QDialog> dialog(&parent);
        const TModalAnswer<QDialog> answer([](QDialog& shown) { shown.done(7); });
        EXPECT_EQ(dialog->parentWidget(), &parent);
        EXPECT_EQ(dialog.Execute(), 7);
    }
    EXPECT_TRUE(parent.children().isEmpty());
}

/// Calls `ask` with a window as the parent, which goes while the dialog is open, and gives what it says.
template<class Dialog, class Ask>
bool AskedOfAGoingWindow(Ask ask) {
    auto window = std::make_unique<QWidget>();
    const TModalAnswer<Dialog> answer([&window](Dialog&) { window.reset(); });
    const bool said = ask(window.get());
    EXPECT_EQ(window, nullptr);
    return said;
}

TEST(OwnedDialog, IsCancelledWhenItsParentGoes) {
    EXPECT_FALSE(AskedOfAGoingWindow<QDialog>(
        [](QWidget* parent) { return TOwnedDialog<QDialog>(parent).Execute() != QDialog::Rejected; }));
}

TEST(OwnedDialog, AColourChooserIsCancelledWhenItsParentGoes) {
    const auto chooser = TColorChooserFactory::GetObject();
    chooser->SetColor32(0xFF123456U);
    EXPECT_FALSE(AskedOfAGoingWindow<QColorDialog>([&](QWidget* parent) { return chooser->Execute(parent); }));
    EXPECT_EQ(chooser->GetColor32(), 0xFF123456U);
}

TEST(OwnedDialog, AQuestionIsAnsweredByNoWhenItsParentGoes) {
    EXPECT_FALSE(
        AskedOfAGoingWindow<QMessageBox>([](QWidget* parent) { return TMsgBox::YesNo("Delete?", "Layer", parent); }));
}

TEST(OwnedDialog, AFileDialogIsCancelledWhenItsParentGoes) {
    QString fileName = QStringLiteral("as it was");
    EXPECT_FALSE(AskedOfAGoingWindow<QFileDialog>(
        [&](QWidget* parent) { return TFileDialog::Save(TFileDialogRequest(), fileName, parent); }));
    EXPECT_EQ(fileName, QStringLiteral("as it was"));
}

TEST(OwnedDialog, IsCancelledUnshownIfItsParentHasGoneBefore) {
    auto window = std::make_unique<QWidget>();
    TOwnedDialog<QDialog> dialog(window.get());
    window.reset();
    EXPECT_EQ(dialog.Get(), nullptr);
    EXPECT_EQ(dialog.Execute(), QDialog::Rejected);
}

} // namespace
} // namespace lmx
