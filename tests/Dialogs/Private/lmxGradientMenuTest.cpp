#include <lmx/Dialogs/Private/lmxGradientMenu.h>
#include <lmx/Dialogs/lmxGradientEditorFrame.h>
#include <lmx/Widgets/lmxGradientEditor.h>
#include <tests/Support/WidgetPictures.h>

#include <QCoreApplication>
#include <QPointer>
#include <QPushButton>
#include <QTimer>

namespace lmx {
namespace {

/// The menu of a frame whose host lets the frame go as soon as the gradient changes.
struct GradientMenu : testing::Test {
    GradientMenu() {
        Frame->GetGradEdit()->Add(0xFF0000FF, 0);
        Frame->GetGradEdit()->SetOnChanged([this](TGradientEditor*, const TGrabber&) {
            Frame.reset();
            WasThere = !Busy.isNull();
        });
        tests::ShowActive(*Frame);
        Menu->popup({10, 10});
    }
    /// The group of the first scales, opened.
    QMenu* OpenGroup() const {
        QMenu* group = Menu->actions().front()->menu();
        group->popup({60, 10});
        return group;
    }
    void ExpectToGoLast() {
        EXPECT_EQ(Frame, nullptr);
        EXPECT_TRUE(WasThere) << "Qt has yet to finish with it";
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
        EXPECT_FALSE(Busy);
        EXPECT_FALSE(Menu);
    }

    std::unique_ptr<TGradientEditorFrame> Frame = std::make_unique<TGradientEditorFrame>();
    QPushButton& Button = *Frame->findChild<QPushButton*>("btnPresets");
    QPointer<QMenu> Menu = Button.menu();
    QPointer<QMenu> Busy; ///< whose entry is chosen
    bool WasThere = false;
};

TEST_F(GradientMenu, GoesAfterAScaleThatEndsItsFrameByMouse) {
    Busy = OpenGroup();
    QTest::mouseClick(Busy, Qt::LeftButton, {}, Busy->actionGeometry(Busy->actions().front()).center());
    ExpectToGoLast();
}

TEST_F(GradientMenu, GoesAfterAScaleThatEndsItsFrameByKeys) {
    Busy = OpenGroup();
    QTest::keyClick(Busy, Qt::Key_Down);
    QTest::keyClick(Busy, Qt::Key_Return);
    ExpectToGoLast();
}

TEST_F(GradientMenu, GoesAfterAReversalThatEndsItsFrameByMouse) {
    Busy = Menu;
    QTest::mouseClick(Menu, Qt::LeftButton, {}, Menu->actionGeometry(Menu->actions().last()).center());
    ExpectToGoLast();
}

TEST_F(GradientMenu, GoesAfterAReversalThatEndsItsFrameByKeys) {
    Busy = Menu;
    QTest::keyClick(Menu, Qt::Key_R);
    ExpectToGoLast();
}

TEST_F(GradientMenu, GoesAfterItsButtonWaitedForIt) {
    Menu->close();
    Busy = Menu;
    QTimer::singleShot(0, Menu, [this] { QTest::keyClick(Menu, Qt::Key_R); });
    QTest::mousePress(&Button, Qt::LeftButton);
    EXPECT_TRUE(QTest::qWaitFor([this] { return Frame == nullptr; }));
    ExpectToGoLast();
}

} // namespace
} // namespace lmx
