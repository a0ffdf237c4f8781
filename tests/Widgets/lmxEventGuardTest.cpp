#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Widgets/lmxEventGuard.h>
#include <tests/Support/Printers.h>
#include <tests/Support/ScriptedServices.h>

#include <QCoreApplication>
#include <QPushButton>
#include <QTest>
#include <QWidget>

#include <stdexcept>

namespace lmx {
namespace {

using tests::TShownMessage;
using TMessages = std::vector<TShownMessage>;

struct EventGuard : testing::Test {
    tests::TScriptedMsgBox Messages;
    std::unique_ptr<QWidget> Parent = std::make_unique<QWidget>();
};

TEST_F(EventGuard, LetsWorkThrough) {
    bool ran = false;
    EXPECT_TRUE(GuardEvent(Parent.get(), [&] { ran = true; }));
    QCoreApplication::processEvents();
    EXPECT_TRUE(ran);
    EXPECT_TRUE(Messages->Shown.empty());
}

TEST_F(EventGuard, ReportsWhatWasRaisedAfterTheEvent) {
    EXPECT_FALSE(GuardEvent(Parent.get(), [] { throw EConvertError(QStringLiteral("Höhe?")); }));
    EXPECT_TRUE(Messages->Shown.empty()) << "not in the middle of the event";
    QCoreApplication::processEvents();
    EXPECT_EQ(Messages->Shown, (TMessages{{"Error", "Höhe?", "Error", Parent.get()}}));
}

TEST_F(EventGuard, ReportsEveryKindOfException) {
    EXPECT_FALSE(GuardEvent(nullptr, [] { throw std::runtime_error("standard"); }));
    EXPECT_FALSE(GuardEvent(nullptr, [] { throw 5; }));
    QCoreApplication::processEvents();
    EXPECT_EQ(Messages->Shown, (TMessages{{"Error", "standard", "Error"}, {"Error", "Unknown exception", "Error"}}));
}

TEST_F(EventGuard, SurvivesTheEndOfItsParent) {
    GuardEvent(Parent.get(), [this] {
        Parent.reset();
        throw Exception(QStringLiteral("gone"));
    });
    QCoreApplication::processEvents();
    EXPECT_EQ(Messages->Shown, (TMessages{{"Error", "gone", "Error", nullptr}}));
}

TEST_F(EventGuard, RunsAtEachClickOfAButton) {
    QPushButton button;
    int clicks = 0;
    GuardClick(&button, [&] {
        if (++clicks == 2)
            throw Exception(QStringLiteral("twice"));
    });
    button.click();
    EXPECT_EQ(clicks, 1);
    button.click();
    QCoreApplication::processEvents();
    EXPECT_EQ(clicks, 2);
    EXPECT_EQ(Messages->Shown, (TMessages{{"Error", "twice", "Error", &button}}));
}

TEST_F(EventGuard, SurvivesTheEndOfTheButton) {
    auto button = std::make_unique<QPushButton>();
    GuardClick(button.get(), [&] {
        button.reset();
        throw Exception(QStringLiteral("gone"));
    });
    QTest::mouseClick(button.get(), Qt::LeftButton);
    QCoreApplication::processEvents();
    EXPECT_EQ(Messages->Shown, (TMessages{{"Error", "gone", "Error", nullptr}}));
}

} // namespace
} // namespace lmx
