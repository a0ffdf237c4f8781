#include <lmx/Widgets/lmxDrawnListView.h>
#include <lmx/Widgets/lmxListKeys.h>
#include <tests/Support/WidgetPictures.h>

#include <QAction>
#include <QPushButton>
#include <QVBoxLayout>

namespace lmx {
namespace {

/// A list in a window whose commands have the list's keys as shortcuts.
struct ListKeys : testing::Test {
    ListKeys() {
        auto* column = new QVBoxLayout(&Window);
        column->addWidget(&List);
        column->addWidget(Edit);
        Keys->Add({Qt::Key_Return, Qt::Key_F2}, Edit);
        QObject::connect(Edit, &QPushButton::clicked, &Window, [this] { ++Edits; });
        Command.setShortcuts({Qt::Key_Return, Qt::Key_F2, Qt::Key_Delete});
        QObject::connect(&Command, &QAction::triggered, &Window, [this] { ++Commands; });
        Window.addAction(&Command);
        tests::ShowActive(Window);
        List.setFocus();
    }
    void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) { QTest::keyClick(&List, key, modifiers); }
    /// A press as it comes from a key that is held; true if somebody took it.
    bool Repeat(int key) {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, QString(), true);
        QCoreApplication::sendEvent(&List, &event);
        return event.isAccepted();
    }

    QWidget Window;
    QAction Command;
    TDrawnListView List;
    QPushButton* Edit = new QPushButton;
    TListKeys* Keys = new TListKeys(&List);
    int Edits = 0;
    int Commands = 0;
};

TEST_F(ListKeys, PressTheButtonBeforeTheHostsShortcut) {
    Press(Qt::Key_Return);
    Press(Qt::Key_F2);
    EXPECT_EQ(Edits, 2);
    EXPECT_EQ(Commands, 0);
}

TEST_F(ListKeys, GoOnToTheHostWhereTheyMeanNothing) {
    Edit->setEnabled(false);
    Press(Qt::Key_Return);
    Press(Qt::Key_F2);
    EXPECT_EQ(Edits, 0);
    EXPECT_EQ(Commands, 2);
    delete Edit;
    Edit = nullptr;
    Press(Qt::Key_F2);
    EXPECT_EQ(Commands, 3);
}

TEST_F(ListKeys, GoOnToTheParentAsAKeyPress) {
    struct TWatch : QObject {
        int Presses = 0;
        bool eventFilter(QObject*, QEvent* event) override {
            Presses += event->type() == QEvent::KeyPress;
            return false;
        }
    } watch;
    Window.installEventFilter(&watch);
    Command.setEnabled(false);
    Press(Qt::Key_F2);
    EXPECT_EQ(watch.Presses, 0);
    Edit->setEnabled(false);
    Press(Qt::Key_F2);
    EXPECT_EQ(watch.Presses, 1);
}

TEST_F(ListKeys, LeaveOtherKeysToTheList) {
    Press(Qt::Key_Return, Qt::ControlModifier);
    Press(Qt::Key_F2, Qt::ShiftModifier);
    EXPECT_EQ(Edits, 0);
    EXPECT_EQ(Commands, 0);
    Press(Qt::Key_Return, Qt::KeypadModifier);
    EXPECT_EQ(Edits, 1) << "the keypad's is the same key";
    Press(Qt::Key_Delete);
    EXPECT_EQ(Commands, 1) << "none of these";
}

TEST_F(ListKeys, CountOnceWhenHeld) {
    Press(Qt::Key_F2);
    EXPECT_TRUE(Repeat(Qt::Key_F2));
    EXPECT_EQ(Edits, 1);
    Edit->setEnabled(false);
    EXPECT_TRUE(Repeat(Qt::Key_F2)) << "the press was ours, so the host gets none of it";
    Press(Qt::Key_F2);
    EXPECT_EQ(Commands, 1);
    Repeat(Qt::Key_F2);
    EXPECT_EQ(Commands, 2) << "and this one was the host's";
    EXPECT_EQ(Edits, 1);
}

} // namespace
} // namespace lmx
