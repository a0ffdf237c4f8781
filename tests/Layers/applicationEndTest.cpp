// What threads meet when the application ends. The tests make their application themselves.

#include <lmx/Layers/Render/Private/lmxRenderThreadPool.h>
#include <lmx/Runtime/lmxThread.h>
#include <tests/Support/Threads.h>

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <thread>

namespace lmx {
namespace {

using namespace tests;

/// An application as long as it is in scope.
class TApplication {
private:
    int FCount = 1;
    char FName[5] = "test";
    char* FArguments[2] = {FName, nullptr};
    QCoreApplication FApplication{FCount, FArguments};
};

void RunOnThread(std::function<void()> proc) {
    const auto thread = TThread::CreateAnonymousThread(std::move(proc));
    thread->Start();
    ASSERT_TRUE(WaitUntil([&] { return thread->GetFinished(); }));
}

TEST(ApplicationEnd, WithoutAnApplicationWorkIsFreedUnrun) {
    const auto ran = std::make_shared<std::atomic<bool>>(false);
    RunOnThread([ran] { TThread::Synchronize([ran] { *ran = true; }); });
    TThread::Synchronize([ran] { *ran = true; });
    EXPECT_EQ(ran.use_count(), 1);
    EXPECT_FALSE(*ran);
}

TEST(ApplicationEnd, WorkThatTheApplicationDoesNotComeToIsFreedUnrun) {
    const auto ran = std::make_shared<std::atomic<bool>>(false);
    {
        const TApplication application;
        RunOnThread([ran] {
            for (int i = 0; i < 3; ++i)
                TThread::Synchronize([ran] { *ran = true; });
        });
        EXPECT_EQ(ran.use_count(), 4);
    }
    EXPECT_EQ(ran.use_count(), 1);
    EXPECT_FALSE(*ran);
}

TEST(ApplicationEnd, TheNextApplicationTakesWorkAgain) {
    for (int i = 0; i < 2; ++i) {
        const TApplication application;
        bool ran = false;
        RunOnThread([&ran] { TThread::Synchronize([&ran] { ran = true; }); });
        EXPECT_TRUE(PumpUntil([&] { return ran; }));
    }
}

TEST(ApplicationEnd, CancelsRendersAndWaitsForNone) {
    const auto cancelled = std::make_shared<std::atomic<bool>>(false);
    TGate gate;
    std::atomic<int> begun = 0;
    {
        const TApplication application;
        for (int i = 0; i < 11; ++i) {
            const auto thread = RenderThreadPool().GetThread();
            thread->SetOnExecute([&begun, cancelled, wait = gate.GetWaiter()](TThreadPoolThread& self) {
                ++begun;
                wait([] { return false; });
                *cancelled = self.ShouldStop();
            });
            thread->StartOperation();
        }
        ASSERT_TRUE(WaitUntil([&] { return begun == 10; }));
    }
    EXPECT_EQ(RenderThreadPool().GetQueuedCount(), 0);
    EXPECT_EQ(RenderThreadPool().GetRunningCount(), 10);
    gate.Open();
    EXPECT_TRUE(WaitUntil([] { return RenderThreadPool().GetRunningCount() == 0; }));
    EXPECT_TRUE(*cancelled);
    EXPECT_EQ(begun, 10);
}

// The last test: leaves threads behind that are still at work when the process ends.
TEST(ApplicationEnd, ThreadsThatNeverEndDoNotHoldTheProcessUp) {
    const TApplication application;
    const auto begun = std::make_shared<std::atomic<int>>(0);
    const auto work = [begun] {
        ++*begun;
        for (;;)
            std::this_thread::yield();
    };
    const auto operation = RenderThreadPool().GetThread();
    operation->SetOnExecute([work](TThreadPoolThread&) { work(); });
    operation->StartOperation();
    TThread::CreateAnonymousThread(work)->Start();
    EXPECT_TRUE(WaitUntil([&] { return *begun == 2; }));
}

} // namespace
} // namespace lmx
