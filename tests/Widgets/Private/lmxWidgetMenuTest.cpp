#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Widgets/Private/lmxWidgetMenu.h>
#include <tests/Support/ScriptedServices.h>
#include <tests/Support/WidgetPictures.h>

#include <QCoreApplication>
#include <QPointer>
#include <QTest>

#include <gtest/gtest.h>

namespace lmx {
namespace {

/// A menu whose first entry does what the test says.
struct WidgetMenu : testing::Test {
    WidgetMenu() {
        Menu->AddEntry(QStringLiteral("Do it"), [this] { Work(); });
    }
    void ChooseByMouse() const {
        Menu->popup({10, 10});
        const QRect entry = Menu->actionGeometry(Menu->actions().front());
        QTest::mouseClick(Menu, Qt::LeftButton, {}, entry.center());
    }
    void ChooseByKeys() const {
        Menu->popup({10, 10});
        QTest::keyClick(Menu, Qt::Key_Down);
        QTest::keyClick(Menu, Qt::Key_Return);
    }
    static void GoOn() {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
    }

    std::unique_ptr<QWidget> Owner = std::make_unique<QWidget>();
    QPointer<TWidgetMenu> Menu = new TWidgetMenu(Owner.get());
    std::function<void()> Work = [] {};
};

TEST_F(WidgetMenu, DoesWhatIsChosen) {
    int runs = 0;
    Work = [&runs] { ++runs; };
    ChooseByMouse();
    EXPECT_EQ(runs, 1);
    ChooseByKeys();
    EXPECT_EQ(runs, 2);
    EXPECT_EQ(Menu->actions().front()->text(), QStringLiteral("Do it"));
}

TEST_F(WidgetMenu, ShowsWhatIsRaised) {
    tests::TScriptedMsgBox boxes;
    Work = [] { throw EInvalidOperation(QStringLiteral("Not today")); };
    Menu->actions().front()->trigger();
    GoOn();
    ASSERT_EQ(boxes->Shown.size(), 1U);
    EXPECT_EQ(boxes->Shown[0].Text, QStringLiteral("Not today"));
}

TEST_F(WidgetMenu, GoesWithItsOwner) {
    Owner.reset();
    EXPECT_FALSE(Menu);
}

TEST_F(WidgetMenu, GoesLastIfItsOwnerGoesMeanwhile) {
    for (const bool byMouse : {false, true}) {
        SCOPED_TRACE(byMouse);
        Owner = std::make_unique<QWidget>();
        Menu = new TWidgetMenu(Owner.get());
        bool wasThere = false;
        Menu->AddEntry(QStringLiteral("Go"), [this, &wasThere] {
            Owner.reset();
            wasThere = !Menu.isNull();
        });
        byMouse ? ChooseByMouse() : ChooseByKeys();
        EXPECT_TRUE(wasThere) << "Qt has yet to finish with it";
        GoOn();
        EXPECT_FALSE(Menu);
    }
}

TEST_F(WidgetMenu, StaysForTheRunAroundTheOneThatEndsItsOwner) {
    bool wasThere = false;
    QAction* inner = Menu->AddEntry(QStringLiteral("Inner"), [this] { Owner.reset(); });
    Work = [&] {
        inner->trigger();
        GoOn(); // as a dialog does
        wasThere = !Menu.isNull();
    };
    ChooseByKeys();
    EXPECT_TRUE(wasThere);
    GoOn();
    EXPECT_FALSE(Menu);
}

} // namespace
} // namespace lmx
