#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxThreadPool.h>
#include <tests/Support/Printers.h>
#include <tests/Support/Threads.h>

#include <gtest/gtest.h>

#include <memory>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <thread>
#include <vector>

namespace lmx {
namespace {

using namespace tests;

class ThreadPool : public testing::Test {
protected:
    /// An operation that is held up at the gate, unless it is cancelled, and then notes its number.
    std::shared_ptr<TThreadPoolThread> Operation(int number) {
        auto thread = Pool->GetThread();
        thread->SetOnExecute([this, number, wait = Gate.GetWaiter()](TThreadPoolThread& self) {
            ++Begun;
            wait([&] { return self.ShouldStop(); });
            {
                const std::lock_guard lock(Mutex);
                (self.ShouldStop() ? Stopped : Done).push_back(number);
            }
            ++Ended;
        });
        return thread;
    }
    void TearDown() override {
        Gate.Open();
        EXPECT_TRUE(WaitUntil(
            [this] { return Begun == Ended && (!Pool || Pool->GetRunningCount() + Pool->GetQueuedCount() == 0); }));
    }

    TGate Gate;
    std::mutex Mutex;
    std::vector<int> Done;
    std::vector<int> Stopped;
    std::atomic<int> Begun = 0;
    std::atomic<int> Ended = 0;
    std::optional<TThreadPool> Pool{std::in_place, TThreadPriority::tpNormal, 2};
};

TEST_F(ThreadPool, CountsAtLeastOneThread) {
    EXPECT_EQ(Pool->GetCount(), 2);
    EXPECT_EQ(MessageOf<EArgumentException>([] { TThreadPool(TThreadPriority::tpNormal, 0); }), "Count");
}

TEST_F(ThreadPool, NormalPriorityIsTheFourth) {
    EXPECT_EQ(static_cast<int>(TThreadPriority::tpIdle), 0);
    EXPECT_EQ(static_cast<int>(TThreadPriority::tpNormal), 3);
    EXPECT_EQ(static_cast<int>(TThreadPriority::tpTimeCritical), 6);
}

TEST_F(ThreadPool, RunsAsManyOperationsTogetherAsItHasThreadsAndQueuesTheOthers) {
    std::vector<std::shared_ptr<TThreadPoolThread>> threads;
    for (int i = 0; i < 5; ++i) {
        threads.push_back(Operation(i));
        threads.back()->StartOperation();
    }
    ASSERT_TRUE(WaitUntil([this] { return Begun == 2; }));
    EXPECT_EQ(Pool->GetRunningCount(), 2);
    EXPECT_EQ(Pool->GetQueuedCount(), 3);
    Gate.Open();
    ASSERT_TRUE(WaitUntil([this] { return Ended == 5; }));
    EXPECT_EQ(Done.size(), 5U);
    EXPECT_TRUE(WaitUntil([this] { return Pool->GetRunningCount() == 0; }));
    EXPECT_EQ(Pool->GetQueuedCount(), 0);
}

TEST_F(ThreadPool, OneThreadRunsOperationsInTheOrderOfTheirStart) {
    Pool.emplace(TThreadPriority::tpNormal, 1);
    for (int i = 0; i < 20; ++i)
        Operation(i)->StartOperation();
    Gate.Open();
    ASSERT_TRUE(WaitUntil([this] { return Ended == 20; }));
    for (int i = 0; i < 20; ++i)
        EXPECT_EQ(Done[static_cast<std::size_t>(i)], i);
}

TEST_F(ThreadPool, ARunningOperationSeesThatItIsCancelled) {
    const auto thread = Operation(7);
    EXPECT_FALSE(thread->ShouldStop());
    thread->StartOperation();
    ASSERT_TRUE(WaitUntil([this] { return Begun == 1; }));
    thread->CancelOperation();
    EXPECT_TRUE(thread->ShouldStop());
    ASSERT_TRUE(WaitUntil([this] { return Ended == 1; }));
    EXPECT_EQ(Stopped, std::vector<int>{7});
}

TEST_F(ThreadPool, AQueuedOperationThatIsCancelledNeverRunsAndFreesWhatItHeldAtOnce) {
    Operation(1)->StartOperation();
    Operation(2)->StartOperation();
    ASSERT_TRUE(WaitUntil([this] { return Begun == 2; }));
    auto event = std::make_shared<int>(1);
    auto data = std::make_shared<int>(2);
    const auto queued = Pool->GetThread();
    queued->SetOnExecute([this, event](TThreadPoolThread&) { ++Begun; });
    queued->SetData(data);
    EXPECT_EQ(queued->GetData(), data);
    queued->StartOperation();
    EXPECT_EQ(Pool->GetQueuedCount(), 1);
    queued->CancelOperation();
    EXPECT_EQ(Pool->GetQueuedCount(), 0);
    EXPECT_EQ(event.use_count(), 1);
    EXPECT_EQ(data.use_count(), 1);
    Gate.Open();
    ASSERT_TRUE(WaitUntil([this] { return Pool->GetRunningCount() == 0; }));
    EXPECT_EQ(Begun, 2);
}

TEST_F(ThreadPool, AnOperationThatWasCancelledBeforeItsStartDoesNotRun) {
    const auto thread = Operation(1);
    thread->CancelOperation();
    thread->StartOperation();
    EXPECT_EQ(Pool->GetQueuedCount(), 0);
    EXPECT_EQ(Pool->GetRunningCount(), 0);
    EXPECT_EQ(Begun, 0);
}

TEST_F(ThreadPool, EventAndDataAreFreedWhenTheOperationEnds) {
    auto event = std::make_shared<int>(1);
    auto data = std::make_shared<int>(2);
    const auto thread = Pool->GetThread();
    thread->SetOnExecute([event](TThreadPoolThread&) {});
    thread->SetData(data);
    thread->StartOperation();
    EXPECT_TRUE(WaitUntil([&] { return event.use_count() == 1 && data.use_count() == 1; }));
}

TEST_F(ThreadPool, WhatAnOperationRaisesEndsWithItAndTheThreadGoesOn) {
    Pool.emplace(TThreadPriority::tpNormal, 1);
    const auto failing = Pool->GetThread();
    failing->SetOnExecute([](TThreadPoolThread&) { throw std::runtime_error("lost"); });
    failing->StartOperation();
    Gate.Open();
    Operation(1)->StartOperation();
    ASSERT_TRUE(WaitUntil([this] { return Ended == 1; }));
    EXPECT_EQ(Done, std::vector<int>{1});
}

TEST_F(ThreadPool, AnOperationStartsOnce) {
    const auto thread = Operation(1);
    thread->StartOperation();
    EXPECT_EQ(MessageOf<EInvalidOperation>([&] { thread->StartOperation(); }), "Operation has already been started");
}

TEST_F(ThreadPool, AnOperationWithoutAnEventDoesNothing) {
    Pool->GetThread()->StartOperation();
    EXPECT_TRUE(WaitUntil([this] { return Pool->GetRunningCount() + Pool->GetQueuedCount() == 0; }));
}

TEST_F(ThreadPool, CancelsAllThatRunOrWait) {
    for (int i = 0; i < 5; ++i)
        Operation(i)->StartOperation();
    ASSERT_TRUE(WaitUntil([this] { return Begun == 2; }));
    Pool->CancelOperations();
    EXPECT_EQ(Pool->GetQueuedCount(), 0);
    ASSERT_TRUE(WaitUntil([this] { return Ended == 2; }));
    EXPECT_EQ(Stopped.size(), 2U);
    EXPECT_TRUE(Done.empty());
}

TEST_F(ThreadPool, EndsWithoutWaitingForAnOperationThatNeverLooks) {
    const auto thread = Pool->GetThread();
    thread->SetOnExecute([this, wait = Gate.GetWaiter()](TThreadPoolThread&) {
        ++Begun;
        wait([] { return false; });
        ++Ended;
    });
    thread->StartOperation();
    ASSERT_TRUE(WaitUntil([this] { return Begun == 1; }));
    Pool.reset();
    EXPECT_EQ(Ended, 0);
    EXPECT_TRUE(thread->ShouldStop());
}

TEST_F(ThreadPool, AThreadOfAPoolThatIsGoneTakesItsOperationAndRunsNothing) {
    const auto thread = Operation(1);
    Pool.reset();
    thread->StartOperation();
    thread->CancelOperation();
    EXPECT_EQ(Begun, 0);
}

TEST_F(ThreadPool, OtherPrioritiesRunToo) {
    Pool.emplace(TThreadPriority::tpLowest, 1);
    Gate.Open();
    Operation(1)->StartOperation();
    EXPECT_TRUE(WaitUntil([this] { return Ended == 1; }));
}

} // namespace
} // namespace lmx
