#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Widgets/lmxEventGuard.h>
#include <tests/Support/Printers.h>
#include <tests/Support/ScriptedServices.h>

#include <QCoreApplication>
#include <QPushButton>
#include <QTest>
#include <QWidget>

#include <algorithm>
#include <functional>
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

/// A message service whose boxes stay open while events go on, as those of a user do.
class TOpenBoxes final : public IMsgBoxService {
public:
    QStringList Opened;
    int MostAtOnce = 0;
    std::function<void()> WhileOpen;

    void Error(const QString& text, const QString&, QWidget*) override {
        Opened.append(text);
        MostAtOnce = std::max(MostAtOnce, ++FOpen);
        if (WhileOpen)
            WhileOpen();
        --FOpen;
    }
    void Info(const QString&, const QString&, QWidget*) override {}
    bool YesNo(const QString&, const QString&, QWidget*) override { return false; }
    void ShowMessage(const QString&) override {}

private:
    int FOpen = 0;
};

struct OpenFaults : testing::Test {
    void Fail(const QString& text) {
        GuardEvent(nullptr, [&] { throw Exception(text); });
    }
    tests::TScripted<TMsgBox, TOpenBoxes> Boxes;
};

TEST_F(OpenFaults, AreToldOnceUntilTheUserHasClosedTheBox) {
    Boxes->WhileOpen = [this] {
        for (int i = 0; i < 10; ++i) {
            Fail(QStringLiteral("no picture"));
            QCoreApplication::processEvents();
        }
    };
    for (int i = 0; i < 3; ++i)
        Fail(QStringLiteral("no picture"));
    QCoreApplication::processEvents();
    EXPECT_EQ(Boxes->MostAtOnce, 1);
    EXPECT_EQ(Boxes->Opened.size(), 1); // the others of the three came while the first was open
    Boxes->WhileOpen = {};
    Fail(QStringLiteral("no picture"));
    QCoreApplication::processEvents();
    EXPECT_EQ(Boxes->Opened.size(), 2);
}

TEST_F(OpenFaults, LeaveOtherFaultsTheirTurn) {
    Boxes->WhileOpen = [this] {
        Boxes->WhileOpen = {};
        Fail(QStringLiteral("second"));
        Fail(QStringLiteral("first"));
        QCoreApplication::processEvents();
    };
    Fail(QStringLiteral("first"));
    QCoreApplication::processEvents();
    EXPECT_EQ(Boxes->Opened, (QStringList{QStringLiteral("first"), QStringLiteral("second")}));
    EXPECT_EQ(Boxes->MostAtOnce, 2);
}

TEST_F(OpenFaults, EndWhereTheServiceRaises) {
    Boxes->WhileOpen = [] { throw Exception(QStringLiteral("no box")); };
    for (int i = 0; i < 2; ++i) {
        Fail(QStringLiteral("first"));
        QCoreApplication::processEvents();
    }
    EXPECT_EQ(Boxes->Opened.size(), 2);
}

} // namespace
} // namespace lmx
