#include <lmx/Widgets/lmxInputBox.h>
#include <tests/Support/ModalAnswer.h>
#include <tests/Support/Printers.h>
#include <tests/Support/ScriptedServices.h>

#include <QInputDialog>

namespace lmx {
namespace {

using tests::TModalAnswer;

TEST(InputBoxDialog, GivesTheConfirmedText) {
    const TModalAnswer<QInputDialog> answer([](QInputDialog& dialog) {
        EXPECT_EQ(dialog.windowTitle(), "Translation");
        EXPECT_EQ(dialog.labelText(), "Translation:");
        EXPECT_EQ(dialog.textValue(), "0,0");
        dialog.setTextValue(QStringLiteral("5,6"));
        dialog.accept();
    });
    EXPECT_EQ(InputBox("Translation", "Translation:", "0,0"), "5,6");
}

TEST(InputBoxDialog, GivesTheDefaultWhenCancelled) {
    const TModalAnswer<QInputDialog> answer([](QInputDialog& dialog) {
        dialog.setTextValue(QStringLiteral("5,6"));
        dialog.reject();
    });
    EXPECT_EQ(InputBox("Translation", "Translation:", "0,0"), "0,0");
}

TEST(InputBoxDialog, KeepsAConfirmedEmptyText) {
    const TModalAnswer<QInputDialog> answer([](QInputDialog& dialog) {
        dialog.setTextValue(QString());
        dialog.accept();
    });
    EXPECT_EQ(InputBox("Name", "Name:", "Rain"), "");
}

TEST(InputBoxScript, AnswersInPlaceOfTheBox) {
    const tests::TScriptedInputBox script;
    script->Answers = {"a", std::nullopt};
    EXPECT_EQ(InputBox("T", "P:", "d"), "a");
    EXPECT_EQ(InputBox("T", "P:", "d"), "d");
    EXPECT_EQ(script->Asked, (std::vector<tests::TAskedInput>{{"T", "P:", "d"}, {"T", "P:", "d"}}));
}

} // namespace
} // namespace lmx
