#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxThread.h>
#include <tests/Support/Printers.h>
#include <tests/Support/Threads.h>

#include <QEventLoop>

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <thread>
#include <vector>

namespace lmx {
namespace {

using namespace tests;

bool Never() {
    return false;
}

TEST(Thread, RunsItsProcOnAThreadOfItsOwn) {
    std::atomic<std::thread::id> id;
    const auto thread = TThread::CreateAnonymousThread([&] { id = std::this_thread::get_id(); });
    EXPECT_FALSE(thread->GetFinished());
    thread->Start();
    ASSERT_TRUE(WaitUntil([&] { return thread->GetFinished(); }));
    EXPECT_NE(id.load(), std::this_thread::get_id());
}

TEST(Thread, IsWaitedForOnRequest) {
    TGate gate;
    std::atomic<bool> done = false;
    const auto thread = TThread::CreateAnonymousThread([&done, wait = gate.GetWaiter()] {
        wait(Never);
        done = true;
    });
    thread->WaitFor(); // was never started
    EXPECT_FALSE(thread->GetFinished());
    thread->Start();
    gate.Open();
    thread->WaitFor();
    EXPECT_TRUE(done);
    EXPECT_TRUE(thread->GetFinished());
    thread->WaitFor(); // is over
}

TEST(Thread, StartsOnce) {
    const auto thread = TThread::CreateAnonymousThread([] {});
    thread->Start();
    EXPECT_EQ(MessageOf<EInvalidOperation>([&] { thread->Start(); }), "Thread has already been started");
    EXPECT_TRUE(WaitUntil([&] { return thread->GetFinished(); }));
}

TEST(Thread, LivesUntilItsProcIsDoneThoughNobodyHoldsIt) {
    TGate gate;
    std::atomic<bool> done = false;
    std::weak_ptr<TThread> watched;
    {
        const auto thread = TThread::CreateAnonymousThread([&done, wait = gate.GetWaiter()] {
            wait(Never);
            done = true;
        });
        watched = thread;
        thread->Start();
    }
    EXPECT_FALSE(watched.expired());
    gate.Open();
    EXPECT_TRUE(WaitUntil([&] { return watched.expired(); }));
    EXPECT_TRUE(done);
}

TEST(Thread, FreesWhatItsProcHeldBeforeItIsFinished) {
    auto held = std::make_shared<int>(1);
    const auto thread = TThread::CreateAnonymousThread([held] {});
    thread->Start();
    ASSERT_TRUE(WaitUntil([&] { return thread->GetFinished(); }));
    EXPECT_EQ(held.use_count(), 1);
}

TEST(Thread, OneThatIsNeverStartedGoesQuietly) {
    auto held = std::make_shared<int>(1);
    TThread::CreateAnonymousThread([held] {});
    EXPECT_EQ(held.use_count(), 1);
}

TEST(Thread, WhatItsProcRaisesEndsWithIt) {
    const auto thread = TThread::CreateAnonymousThread([] { throw std::runtime_error("lost"); });
    thread->Start();
    EXPECT_TRUE(WaitUntil([&] { return thread->GetFinished(); }));
}

TEST(Thread, AsksWhetherItWasTerminated) {
    TGate gate;
    std::vector<bool> answers;
    const auto thread = TThread::CreateAnonymousThread([&answers, wait = gate.GetWaiter()] {
        answers.push_back(TThread::CheckTerminated());
        wait([] { return TThread::CheckTerminated(); });
        answers.push_back(TThread::CheckTerminated());
        answers.push_back(TThread::GetCurrentThread()->GetTerminated());
    });
    EXPECT_FALSE(thread->GetTerminated());
    thread->Start();
    ASSERT_TRUE(WaitUntil([&] { return !thread->GetFinished(); }));
    thread->Terminate();
    EXPECT_TRUE(thread->GetTerminated());
    ASSERT_TRUE(WaitUntil([&] { return thread->GetFinished(); }));
    ASSERT_EQ(answers.size(), 3U);
    EXPECT_TRUE(answers[1]);
    EXPECT_TRUE(answers[2]);
}

TEST(Thread, OtherThreadsAreNoTThreadAndNeverTerminated) {
    EXPECT_EQ(TThread::GetCurrentThread(), nullptr);
    EXPECT_FALSE(TThread::CheckTerminated());
}

TEST(Synchronize, RunsAtOnceOnTheMainThread) {
    bool ran = false;
    TThread::Synchronize([&] { ran = true; });
    EXPECT_TRUE(ran);
}

TEST(Synchronize, RaisesToACallerOnTheMainThread) {
    EXPECT_EQ(MessageOf<EInvalidOperation>(
                  [] { TThread::Synchronize([] { throw EInvalidOperation(QStringLiteral("mine")); }); }),
              "mine");
}

TEST(Synchronize, FromElsewhereRunsOnTheMainThreadInOrderAndNobodyWaits) {
    std::vector<int> ran;
    std::atomic<bool> ranOnMainThread = true;
    const auto mainThread = std::this_thread::get_id();
    const auto thread = TThread::CreateAnonymousThread([&] {
        for (int i = 0; i < 100; ++i)
            TThread::Synchronize([&, i] {
                ran.push_back(i);
                ranOnMainThread = ranOnMainThread && std::this_thread::get_id() == mainThread;
            });
    });
    thread->Start();
    ASSERT_TRUE(WaitUntil([&] { return thread->GetFinished(); })); // though no event was handled
    EXPECT_TRUE(ran.empty());
    ASSERT_TRUE(PumpUntil([&] { return ran.size() == 100; }));
    for (int i = 0; i < 100; ++i)
        EXPECT_EQ(ran[static_cast<std::size_t>(i)], i);
    EXPECT_TRUE(ranOnMainThread);
}

TEST(Synchronize, AModalLoopInsideWorkComesToTheNext) {
    std::vector<int> ended;
    QEventLoop loop;
    const auto thread = TThread::CreateAnonymousThread([&] {
        TThread::Synchronize([&] {
            loop.exec();
            ended.push_back(1);
        });
        TThread::Synchronize([&] {
            ended.push_back(2);
            loop.quit();
        });
    });
    thread->Start();
    ASSERT_TRUE(PumpUntil([&] { return ended.size() == 2; }));
    EXPECT_EQ(ended, (std::vector<int>{2, 1}));
}

TEST(Synchronize, WhatQueuedWorkRaisesEndsWithIt) {
    bool ran = false;
    const auto thread = TThread::CreateAnonymousThread([&] {
        TThread::Synchronize([] { throw std::runtime_error("lost"); });
        TThread::Synchronize([&] { ran = true; });
    });
    thread->Start();
    EXPECT_TRUE(PumpUntil([&] { return ran; }));
}

} // namespace
} // namespace lmx
