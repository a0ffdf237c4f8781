#include <lmx/DataSources/lmxFramePlayer.h>

#include <lmx/Climate/lmxSpatialConst.h>
#include <lmx/Runtime/lmxExceptions.h>

#include <tests/DataSources/TestFrames.h>
#include <tests/Support/Printers.h>
#include <tests/Support/Threads.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

namespace lmx {
namespace {

using namespace tests;
using testing::ElementsAre;
using testing::IsEmpty;

class FramePlayer : public testing::Test {
protected:
    FramePlayer() {
        FFrames = Player->GetOnFrame().Add([this](TFramePlayer* player) {
            if (player->GetFrame())
                Shown.push_back(player->GetFrame()->Index);
        });
        FFailures = Player->GetOnFailure().Add([this](TFramePlayer*, std::size_t index, const QString& failure) {
            Failures += QStringLiteral("%1: %2").arg(static_cast<int>(index)).arg(failure);
        });
    }

    void Open(std::size_t count, std::size_t readAhead = 0) {
        Source = std::make_shared<TTestFrames>(count);
        Player->SetReadAhead(readAhead);
        Player->SetSource(Source);
    }
    bool ArriveAt(std::size_t index) {
        return PumpUntil([&] { return Player && Player->GetFrame() && Player->GetFrame()->Index == index; });
    }
    /// Whether the worker has nothing left to do.
    bool Settle(std::size_t kept) {
        return PumpUntil([&] { return Player->GetKeptCount() == kept; });
    }

    std::unique_ptr<TFramePlayer> Player = std::make_unique<TFramePlayer>();
    std::shared_ptr<TTestFrames> Source;
    std::vector<std::size_t> Shown;
    QStringList Failures;

private:
    TSubscription FFrames;
    TSubscription FFailures;
};

TEST_F(FramePlayer, HasNothingWithoutASource) {
    for (const auto& act : {&TFramePlayer::First, &TFramePlayer::Last, &TFramePlayer::Next, &TFramePlayer::Previous,
                            &TFramePlayer::Play, &TFramePlayer::Advance, &TFramePlayer::Stop})
        (Player.get()->*act)();
    EXPECT_EQ(Player->GetCount(), 0U);
    EXPECT_EQ(Player->GetWanted(), std::nullopt);
    EXPECT_EQ(Player->GetCaption(), "");
    EXPECT_FALSE(Player->IsPlaying());
    EXPECT_FALSE(Player->IsWaiting());
    EXPECT_EQ(Player->GetRange(), TValueRange::Empty());
    EXPECT_EQ(MessageOf<EArgumentException>([&] { Player->GoTo(0); }), "Index");
    Open(0);
    Player->Next();
    EXPECT_EQ(Player->GetWanted(), std::nullopt);
}

// Not only by what derives from std::exception.
TEST_F(FramePlayer, AFrameMayFailByAnything) {
    class TOddFrames final : public IFrameSource {
    public:
        std::size_t GetCount() const override { return ++Asked, 2; }
        std::optional<TClimateDate> GetDate(std::size_t) const override { return std::nullopt; }
        TClimateCalendar GetCalendar() const override { return TClimateCalendar(); }
        QString GetCaption(std::size_t) const override { return {}; }
        std::shared_ptr<TRealImage> ReadFrame(std::size_t, const TFrameWithdrawn&) override { throw 7; }

        mutable int Asked = 0;
    };
    const auto frames = std::make_shared<TOddFrames>();
    Player->SetSource(frames);
    ASSERT_TRUE(PumpUntil([&] { return !Failures.isEmpty(); }));
    EXPECT_EQ(Failures[0], "0: The frame could not be read");
    EXPECT_EQ(Player->GetCount(), 2U);
    EXPECT_EQ(frames->Asked, 1);
}

TEST_F(FramePlayer, StepsThroughTheFrames) {
    Open(3);
    EXPECT_EQ(Player->GetWanted(), 0U);
    EXPECT_TRUE(Player->IsWaiting());
    ASSERT_TRUE(ArriveAt(0));
    EXPECT_FALSE(Player->IsWaiting());
    EXPECT_EQ(Player->GetCaption(), "frame 0");
    Player->Previous();
    EXPECT_EQ(Player->GetWanted(), 0U);
    Player->Next();
    ASSERT_TRUE(ArriveAt(1));
    Player->Last();
    ASSERT_TRUE(ArriveAt(2));
    Player->Next();
    EXPECT_EQ(Player->GetWanted(), 2U);
    Player->First();
    ASSERT_TRUE(ArriveAt(0));
    Player->SetLoop(true);
    Player->Previous();
    ASSERT_TRUE(ArriveAt(2));
    Player->Next();
    ASSERT_TRUE(ArriveAt(0));
    EXPECT_THAT(Shown, ElementsAre(0, 1, 2, 0, 2, 0));
    EXPECT_THAT(Failures, IsEmpty());
}

TEST_F(FramePlayer, TheFrameShownStaysUntilTheNextOneIsThere) {
    Open(5);
    ASSERT_TRUE(ArriveAt(0));
    Source->Close();
    Player->Next();
    Player->Next();
    Player->Next();
    EXPECT_EQ(Player->GetWanted(), 3U);
    ASSERT_TRUE(Player->GetFrame());
    EXPECT_EQ(Player->GetFrame()->Index, 0U);
    Source->Open();
    ASSERT_TRUE(ArriveAt(3));
    EXPECT_THAT(Shown, ElementsAre(0, 3)) << "what was withdrawn is not shown";
}

TEST_F(FramePlayer, PlayingShowsEveryFrame) {
    Open(4, 2);
    ASSERT_TRUE(ArriveAt(0));
    Player->Play();
    EXPECT_TRUE(Player->IsPlaying());
    Source->Close();
    for (int i = 0; i < 10; ++i)
        Player->Advance(); // the clock does not run away from the reader
    EXPECT_LE(*Player->GetWanted(), 3U);
    Source->Open();
    ASSERT_TRUE(PumpUntil([&] {
        Player->Advance();
        return !Player->IsPlaying();
    }));
    EXPECT_THAT(Shown, ElementsAre(0, 1, 2, 3));
    Player->Play(); // from the begin again
    ASSERT_TRUE(ArriveAt(0));
    EXPECT_TRUE(Player->IsPlaying());
    Player->Stop();
    EXPECT_FALSE(Player->IsPlaying());
    Player->Advance();
    EXPECT_EQ(Player->GetWanted(), 0U);
}

TEST_F(FramePlayer, PlaysByItsOwnClock) {
    Open(3, 2);
    ASSERT_TRUE(ArriveAt(0));
    Player->SetFramesPerSecond(60);
    Player->Play();
    ASSERT_TRUE(PumpUntil([&] { return !Player->IsPlaying(); }));
    EXPECT_THAT(Shown, ElementsAre(0, 1, 2));
    Player->SetLoop(true);
    Player->Play();
    ASSERT_TRUE(PumpUntil([&] { return Shown.size() > 8; }));
    EXPECT_THAT(std::vector<std::size_t>(Shown.begin() + 3, Shown.begin() + 8), ElementsAre(0, 1, 2, 0, 1));
}

TEST_F(FramePlayer, ReadsAheadAndGivesBack) {
    Open(20, 3);
    ASSERT_TRUE(ArriveAt(0));
    ASSERT_TRUE(Settle(3));
    EXPECT_EQ(Source->Reads(), (std::vector<std::size_t>{0, 1, 2, 3}));
    Player->Next();
    EXPECT_EQ(Player->GetFrame()->Index, 1U) << "it was there already";
    ASSERT_TRUE(Settle(3));
    Player->GoTo(10);
    ASSERT_TRUE(ArriveAt(10));
    ASSERT_TRUE(Settle(3));
    EXPECT_EQ(Source->Living(), 4) << "one shown and three ahead";
    Player->Previous();
    ASSERT_TRUE(ArriveAt(9));
    ASSERT_TRUE(Settle(3));
    EXPECT_EQ(Source->Living(), 4);
    Player->SetReadAhead(0);
    EXPECT_EQ(Source->Living(), 1);
    Player->SetSource(nullptr);
    EXPECT_EQ(Source->Living(), 0);
}

TEST_F(FramePlayer, PlayingHoldsNoMoreThanItReadsAhead) {
    Open(12, 3);
    Player->SetFramesPerSecond(60);
    int most = 0;
    const TSubscription frames =
        Player->GetOnFrame().Add([&](TFramePlayer*) { most = std::max(most, Source->Living()); });
    Player->Play();
    ASSERT_TRUE(PumpUntil([&] { return !Player->IsPlaying(); }));
    EXPECT_EQ(Player->GetFrame()->Index, 11U);
    EXPECT_LE(most, 3 + 2) << "the one shown before goes after the one that is shown, and one is being read";
    Player->SetSource(nullptr);
    EXPECT_TRUE(PumpUntil([&] { return Source->Living() == 0; }));
}

TEST_F(FramePlayer, NoFrameIsReadTwiceInALoopThatFits) {
    Open(3, 5);
    Player->SetLoop(true);
    ASSERT_TRUE(ArriveAt(0));
    ASSERT_TRUE(Settle(2));
    EXPECT_EQ(Source->Reads(), (std::vector<std::size_t>{0, 1, 2}));
}

TEST_F(FramePlayer, AWithdrawnReadIsToldSo) {
    Open(5, 0);
    ASSERT_TRUE(ArriveAt(0));
    Source->Close();
    Player->Next();
    ASSERT_TRUE(WaitUntil([&] { return Source->Reads().size() == 2; }));
    Player->GoTo(4);
    ASSERT_TRUE(WaitUntil([&] { return Source->Withdrawn() == 1; }));
    Source->Open();
    ASSERT_TRUE(ArriveAt(4));
    EXPECT_THAT(Failures, IsEmpty());
}

TEST_F(FramePlayer, AFailureLeavesTheFrameAndStops) {
    Open(4, 2);
    Source->Fails = 2;
    ASSERT_TRUE(ArriveAt(0));
    Player->Play();
    ASSERT_TRUE(PumpUntil([&] {
        Player->Advance();
        return !Player->IsPlaying();
    }));
    EXPECT_THAT(Failures, ElementsAre("2: frame 2 is damaged"));
    EXPECT_EQ(Player->GetFrame()->Index, 1U);
    EXPECT_EQ(Player->GetWanted(), 1U);
    Player->Next();
    ASSERT_TRUE(PumpUntil([&] { return Failures.size() == 2; }));
    Source->Fails = 99;
    Player->Next();
    ASSERT_TRUE(ArriveAt(2));
}

TEST_F(FramePlayer, AFirstFrameThatFailsIsReadAgainWhenAsked) {
    Source = std::make_shared<TTestFrames>(2);
    Source->Fails = 0;
    Player->SetSource(Source);
    ASSERT_TRUE(PumpUntil([&] { return !Failures.isEmpty(); }));
    EXPECT_EQ(Player->GetWanted(), 0U);
    EXPECT_EQ(Player->GetFrame(), nullptr);
    Source->Fails = 99;
    Player->First();
    ASSERT_TRUE(ArriveAt(0));
}

TEST_F(FramePlayer, TheRangeIsFixedOrOfEachFrame) {
    Open(3);
    ASSERT_TRUE(ArriveAt(0)); // frame i holds i and 10 * i + 1
    EXPECT_EQ(Player->GetRange(), TValueRange(0, 1));
    Player->Next();
    ASSERT_TRUE(ArriveAt(1));
    EXPECT_EQ(Player->GetRange(), TValueRange(0, 1));
    Player->SetRangeKind(TFrameRange::frEach);
    EXPECT_EQ(Player->GetRange(), TValueRange(1, 11));
    Player->SetRangeKind(TFrameRange::frFixed);
    Player->SetFixedRange({-5, 50});
    EXPECT_EQ(Player->GetRange(), TValueRange(-5, 50));
    Player->SetSource(std::make_shared<TTestFrames>(1));
    EXPECT_EQ(Player->GetRange(), TValueRange(-5, 50));
}

TEST_F(FramePlayer, StepsByMonthAndYear) {
    Open(1);
    Source = std::make_shared<TTestFrames>(std::vector<TClimateDate>{
        {2000, 1, 1}, {2000, 1, 31}, {2000, 2, 10}, {2000, 2, 28}, {2000, 4, 30}, {2001, 1, 20}, {2003, 6, 1}});
    Player->SetSource(Source);
    Player->GoTo(1);
    Player->SetStep(TFrameStep::fsMonth);
    std::vector<std::size_t> way;
    for (int i = 0; i < 5; ++i) {
        Player->Next();
        way.push_back(*Player->GetWanted());
    }
    EXPECT_THAT(way, ElementsAre(3, 4, 5, 6, 6));
    Player->GoTo(2);
    Player->Previous();
    EXPECT_EQ(Player->GetWanted(), 0U) << "the tenth lies nearer to the first than to the last of January";
    Player->SetStep(TFrameStep::fsYear);
    Player->Next();
    EXPECT_EQ(Player->GetWanted(), 5U);
    Player->Next();
    EXPECT_EQ(Player->GetWanted(), 6U);
    Player->SetLoop(true);
    Player->Next();
    EXPECT_EQ(Player->GetWanted(), 0U);
}

TEST_F(FramePlayer, StepsWithoutDatesGoFrameByFrame) {
    Open(3);
    Player->SetStep(TFrameStep::fsMonth);
    Player->Next();
    EXPECT_EQ(Player->GetWanted(), 1U);
}

TEST_F(FramePlayer, SettingsStayWithinTheirLimits) {
    Player->SetFramesPerSecond(1000);
    EXPECT_EQ(Player->GetFramesPerSecond(), 60);
    Player->SetFramesPerSecond(-1);
    EXPECT_EQ(Player->GetFramesPerSecond(), 0.1);
    Player->SetFramesPerSecond(std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(Player->GetFramesPerSecond(), 0.1);
    Player->SetReadAhead(1'000'000);
    EXPECT_EQ(Player->GetReadAhead(), TFramePlayer::MaxReadAhead);
}

TEST_F(FramePlayer, MayBeDestroyedInAnyCallback) {
    for (const int which : {0, 1, 2}) {
        Player = std::make_unique<TFramePlayer>();
        Source = std::make_shared<TTestFrames>(5);
        Source->Fails = which == 2 ? 1U : 99U;
        bool isDestroyed = false;
        const auto destroy = [&] {
            if (Player && Player->GetWanted() == std::optional<std::size_t>(which == 2 ? 0 : 1)) {
                Player.reset();
                isDestroyed = true;
            }
        };
        TSubscription subscription;
        if (which == 0)
            subscription = Player->GetOnFrame().Add([&](TFramePlayer*) { destroy(); });
        else if (which == 1)
            subscription = Player->GetOnChanged().Add([&](TFramePlayer*) { destroy(); });
        else
            subscription = Player->GetOnFailure().Add([&](TFramePlayer*, std::size_t, const QString&) { destroy(); });
        Player->SetSource(Source);
        Player->SetFramesPerSecond(60);
        Player->Play();
        ASSERT_TRUE(PumpUntil([&] { return isDestroyed; })) << which;
        ASSERT_TRUE(PumpUntil([&] { return Source->Living() == 0; })) << which;
    }
}

TEST_F(FramePlayer, MayGoWhileItReads) {
    Open(5, 3);
    ASSERT_TRUE(ArriveAt(0));
    Source->Close();
    Player->Last();
    Player.reset();
    Source->Open();
    ASSERT_TRUE(PumpUntil([&] { return Source.use_count() == 1; })) << "the worker holds the source no more";
    EXPECT_TRUE(PumpUntil([&] { return Source->Living() == 0; }));
}

TEST_F(FramePlayer, AnotherSourceInACallbackIsTheOneThatCounts) {
    Open(3);
    const auto other = std::make_shared<TTestFrames>(7);
    const auto subscription = Player->GetOnFrame().Add([&](TFramePlayer* player) {
        if (player->GetSource() != other)
            player->SetSource(other);
    });
    ASSERT_TRUE(ArriveAt(0));
    EXPECT_EQ(Player->GetCount(), 7U);
}

} // namespace
} // namespace lmx
