#include <lmx/Widgets/lmxMsgBox.h>
#include <tests/Support/ModalAnswer.h>
#include <tests/Support/Printers.h>
#include <tests/Support/ScriptedServices.h>

#include <QAbstractButton>
#include <QGuiApplication>
#include <QLabel>
#include <QMessageBox>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>

namespace lmx {
namespace {

using tests::TModalAnswer;

/// Expects one box, and closes it by a button, or as Escape does without one.
TModalAnswer<QMessageBox> ExpectBox(QMessageBox::Icon icon, const QString& text, const QString& title,
                                    QMessageBox::StandardButton button) {
    return TModalAnswer<QMessageBox>([=](QMessageBox& box) {
        EXPECT_EQ(box.icon(), icon);
        EXPECT_EQ(box.text(), text);
        EXPECT_EQ(box.windowTitle(), title);
        EXPECT_EQ(box.textFormat(), Qt::PlainText);
        if (button == QMessageBox::NoButton)
            QTest::keyClick(&box, Qt::Key_Escape);
        else
            box.button(button)->click();
    });
}

TEST(MsgBoxDialog, ShowsErrorsAndInformation) {
    {
        const auto answer = ExpectBox(QMessageBox::Critical, "<b>bad</b>", "File", QMessageBox::Ok);
        TMsgBox::Error("<b>bad</b>", "File");
    }
    {
        const auto answer = ExpectBox(QMessageBox::Information, "Please select a layer.", "Layer", QMessageBox::Ok);
        TMsgBox::Info("Please select a layer.", "Layer");
    }
}

TEST(MsgBoxDialog, ScrollsATextThatTheScreenHasNoRoomFor) {
    QStringList lines;
    for (int i = 0; i < 300; ++i)
        lines.append(QStringLiteral("file%1.rst: there is no such file").arg(i));
    const QString text = lines.join(u'\n');
    const TModalAnswer<QMessageBox> answer([&](QMessageBox& box) {
        EXPECT_EQ(box.text(), text);
        EXPECT_TRUE(box.screen()->availableGeometry().contains(
            QRect(box.screen()->availableGeometry().topLeft(), box.frameSize())));
        auto* const area = box.findChild<QScrollArea*>();
        ASSERT_TRUE(area);
        EXPECT_TRUE(area->isVisible());
        const auto* const whole = qobject_cast<QLabel*>(area->widget());
        ASSERT_TRUE(whole);
        EXPECT_EQ(whole->text(), text);
        EXPECT_EQ(whole->textFormat(), Qt::PlainText);
        EXPECT_LE(whole->width(), area->viewport()->width());
        EXPECT_GE(whole->height(), whole->heightForWidth(whole->width())) << "nothing is cut off";
        EXPECT_FALSE(area->geometry().intersects(box.button(QMessageBox::Ok)->parentWidget()->geometry()));
        area->setFocus();
        QTest::keyClick(area, Qt::Key_PageDown);
        EXPECT_GT(area->verticalScrollBar()->value(), 0);
        QTest::keyClick(&box, Qt::Key_Escape);
    });
    TMsgBox::Error(text, QStringLiteral("Some layers could not be opened"));
}

TEST(MsgBoxDialog, DoesNotScrollWhatThereIsRoomFor) {
    const TModalAnswer<QMessageBox> answer([](QMessageBox& box) {
        EXPECT_FALSE(box.findChild<QScrollArea*>());
        QTest::keyClick(&box, Qt::Key_Escape);
    });
    TMsgBox::Error(QStringLiteral("one\ntwo\nthree"), QStringLiteral("Three"));
}

TEST(MsgBoxDialog, AsksAndTakesEscapeForNo) {
    for (const auto& [button, expected] : {std::pair{QMessageBox::Yes, true}, std::pair{QMessageBox::No, false},
                                           std::pair{QMessageBox::NoButton, false}}) {
        const auto answer = ExpectBox(QMessageBox::Question, "Delete?", "Layer", button);
        EXPECT_EQ(TMsgBox::YesNo("Delete?", "Layer"), expected);
    }
}

TEST(MsgBoxDialog, ShowsMessagesUnderTheApplicationsName) {
    const auto answer =
        ExpectBox(QMessageBox::NoIcon, "done", QGuiApplication::applicationDisplayName(), QMessageBox::Ok);
    ShowMessage("done");
}

TEST(MsgBoxScript, AnswersInPlaceOfTheBoxes) {
    const tests::TScriptedMsgBox script;
    script->Answers = {true, false};
    QWidget parent;
    TMsgBox::Error("e", "E", &parent);
    TMsgBox::Info("i", "I");
    EXPECT_TRUE(TMsgBox::YesNo("q", "Q"));
    EXPECT_FALSE(TMsgBox::YesNo("q", "Q"));
    ShowMessage("m");
    EXPECT_EQ(script->Shown, (std::vector<tests::TShownMessage>{{"Error", "e", "E", &parent},
                                                                {"Info", "i", "I"},
                                                                {"YesNo", "q", "Q"},
                                                                {"YesNo", "q", "Q"},
                                                                {"Message", "m", ""}}));
}

TEST(MsgBoxScript, ScopesNest) {
    const tests::TScriptedMsgBox outer;
    {
        const tests::TScriptedMsgBox inner;
        ShowMessage("inner");
        EXPECT_EQ(inner->Shown.size(), 1U);
    }
    ShowMessage("outer");
    ASSERT_EQ(outer->Shown.size(), 1U);
    EXPECT_EQ(outer->Shown[0].Text, "outer");
}

} // namespace
} // namespace lmx
