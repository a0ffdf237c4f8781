#include <lmx/DataSources/lmxTimeStrip.h>

#include <tests/DataSources/TestFrames.h>
#include <tests/Support/Printers.h>
#include <tests/Support/ScriptedServices.h>
#include <tests/Support/Threads.h>

#include <QAbstractButton>
#include <QComboBox>
#include <QCoreApplication>
#include <QLabel>
#include <QSlider>
#include <QSpinBox>
#include <QTest>

#include <gtest/gtest.h>

namespace lmx {
namespace {

using namespace tests;

class TimeStrip : public testing::Test {
protected:
    TimeStrip() {
        Strip.resize(700, 30);
        Strip.show();
    }

    void Open(std::size_t count) {
        Source = std::make_shared<TTestFrames>(count);
        Player->SetSource(Source);
        Strip.SetPlayer(Player.get());
    }
    QAbstractButton* Button(const char* name) { return Strip.findChild<QAbstractButton*>(QString::fromLatin1(name)); }
    void Click(const char* name) { QTest::mouseClick(Button(name), Qt::LeftButton); }
    QString Caption() { return Strip.findChild<QLabel*>("caption")->text(); }
    QSlider* Slider() { return Strip.findChild<QSlider*>("slider"); }

    std::unique_ptr<TFramePlayer> Player = std::make_unique<TFramePlayer>();
    std::shared_ptr<TTestFrames> Source;
    TTimeStrip Strip;
};

TEST_F(TimeStrip, IsDisabledWithoutFrames) {
    for (const char* const name : {"first", "previous", "play", "next", "last", "loop"})
        EXPECT_FALSE(Button(name)->isEnabled()) << name;
    EXPECT_FALSE(Slider()->isEnabled());
    EXPECT_EQ(Caption(), "");
    QTest::keyClick(&Strip, Qt::Key_Right);
    Open(0);
    EXPECT_FALSE(Button("play")->isEnabled());
    Open(3);
    EXPECT_TRUE(Button("play")->isEnabled());
    Strip.SetPlayer(nullptr);
    EXPECT_FALSE(Button("play")->isEnabled());
    EXPECT_EQ(Caption(), "");
}

TEST_F(TimeStrip, ButtonsStepThePlayer) {
    Open(5);
    EXPECT_EQ(Caption(), "frame 0");
    EXPECT_EQ(Slider()->maximum(), 4);
    Click("next");
    EXPECT_EQ(Player->GetWanted(), 1U);
    EXPECT_EQ(Caption(), "frame 1");
    EXPECT_EQ(Slider()->value(), 1);
    Click("last");
    EXPECT_EQ(Player->GetWanted(), 4U);
    Click("previous");
    EXPECT_EQ(Player->GetWanted(), 3U);
    Click("first");
    EXPECT_EQ(Player->GetWanted(), 0U);
    EXPECT_EQ(Caption(), "frame 0");
}

TEST_F(TimeStrip, TheSliderGoesToAFrame) {
    Open(5);
    Slider()->setValue(3);
    EXPECT_EQ(Player->GetWanted(), 3U);
    Slider()->setFocus();
    QTest::keyClick(Slider(), Qt::Key_Left);
    EXPECT_EQ(Player->GetWanted(), 2U);
    Player->GoTo(4);
    EXPECT_EQ(Slider()->value(), 4) << "it follows the player";
    EXPECT_EQ(Slider()->accessibleDescription(), "frame 4");
}

TEST_F(TimeStrip, PlayBecomesPause) {
    Open(5);
    EXPECT_EQ(Button("play")->accessibleName(), "Play");
    Click("play");
    EXPECT_TRUE(Player->IsPlaying());
    EXPECT_EQ(Button("play")->accessibleName(), "Pause");
    EXPECT_EQ(Button("play")->toolTip(), "Pause");
    Click("play");
    EXPECT_FALSE(Player->IsPlaying());
    EXPECT_EQ(Button("play")->accessibleName(), "Play");
    Player->Play();
    EXPECT_EQ(Button("play")->accessibleName(), "Pause");
}

TEST_F(TimeStrip, KeysStepAndPlay) {
    Open(5);
    QTest::keyClick(&Strip, Qt::Key_Right);
    EXPECT_EQ(Player->GetWanted(), 1U);
    QTest::keyClick(&Strip, Qt::Key_End);
    EXPECT_EQ(Player->GetWanted(), 4U);
    QTest::keyClick(&Strip, Qt::Key_Left);
    EXPECT_EQ(Player->GetWanted(), 3U);
    QTest::keyClick(&Strip, Qt::Key_Home);
    EXPECT_EQ(Player->GetWanted(), 0U);
    QTest::keyClick(&Strip, Qt::Key_Space);
    EXPECT_TRUE(Player->IsPlaying());
    QTest::keyClick(Button("next"), Qt::Key_Space);
    EXPECT_EQ(Player->GetWanted(), 1U) << "the space bar presses the button that has it";
}

TEST_F(TimeStrip, SettingsGoBothWays) {
    Open(5);
    Click("loop");
    EXPECT_TRUE(Player->GetLoop());
    Player->SetLoop(false);
    EXPECT_FALSE(Button("loop")->isChecked());
    auto* const pace = Strip.findChild<QSpinBox*>("pace");
    EXPECT_EQ(pace->value(), 4);
    pace->setValue(30);
    EXPECT_EQ(Player->GetFramesPerSecond(), 30);
    Player->SetFramesPerSecond(12);
    EXPECT_EQ(pace->value(), 12);
    auto* const step = Strip.findChild<QComboBox*>("step");
    step->setCurrentIndex(1);
    EXPECT_EQ(Player->GetStep(), TFrameStep::fsMonth);
    Player->SetStep(TFrameStep::fsYear);
    EXPECT_EQ(step->currentText(), "By year");
}

TEST_F(TimeStrip, EveryPartHasAName) {
    for (const char* const name : {"first", "previous", "play", "next", "last", "loop"}) {
        EXPECT_FALSE(Button(name)->accessibleName().isEmpty()) << name;
        EXPECT_EQ(Button(name)->focusPolicy(), Qt::StrongFocus) << name;
    }
    EXPECT_EQ(Slider()->accessibleName(), "Frame");
    EXPECT_EQ(Strip.findChild<QSpinBox*>("pace")->accessibleName(), "Frames a second");
    EXPECT_EQ(Strip.findChild<QComboBox*>("step")->accessibleName(), "Step");
    EXPECT_EQ(Button("loop")->accessibleName(), "Repeat");
}

TEST_F(TimeStrip, SignsTakeTheColourOfTheText) {
    Open(5);
    for (const char* const name : {"first", "previous", "play", "next", "last", "loop"})
        for (const QColor ink : {QColor(255, 0, 0), QColor(0, 0, 255)}) {
            QPalette palette = Strip.palette();
            palette.setColor(QPalette::ButtonText, ink);
            Button(name)->setPalette(palette);
            const QImage picture = Button(name)->grab().toImage();
            int inked = 0;
            for (int y = 0; y < picture.height(); ++y)
                for (int x = 0; x < picture.width(); ++x)
                    inked += picture.pixelColor(x, y).rgb() == ink.rgb() ? 1 : 0;
            EXPECT_GT(inked, 8) << name;
        }
}

TEST_F(TimeStrip, ThePlayerMayGoFirst) {
    Open(5);
    Player.reset();
    EXPECT_EQ(Strip.GetPlayer(), nullptr);
    Click("next");
    EXPECT_FALSE(Button("next")->isEnabled());
    Slider()->setValue(0);
    EXPECT_EQ(Caption(), "");
}

TEST_F(TimeStrip, ThePlayerMayGoInAClick) {
    Open(5);
    const auto subscription = Player->GetOnChanged().Add([&](TFramePlayer*) { Player.reset(); });
    Click("next");
    EXPECT_EQ(Player, nullptr);
}

TEST_F(TimeStrip, ShowsWhatASourceRaises) {
    TScriptedMsgBox boxes;
    Open(3);
    Source->DatesRaise = true;
    const auto shown = [&boxes] {
        QCoreApplication::processEvents();
        const QString text = boxes->Shown.empty() ? QString() : boxes->Shown.back().Text;
        boxes->Shown.clear();
        return text;
    };
    const QString told = QStringLiteral("the dates are damaged");
    Strip.findChild<QComboBox*>("step")->setCurrentIndex(1);
    EXPECT_EQ(shown(), told);
    Click("next");
    EXPECT_EQ(shown(), told);
    QTest::keyClick(&Strip, Qt::Key_Right);
    EXPECT_EQ(shown(), told);
    Slider()->setValue(2);
    EXPECT_EQ(shown(), told);
}

} // namespace
} // namespace lmx
