#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Layers/BufferedMapLayerFixture.h>
#include <tests/Support/Printers.h>
#include <tests/Support/TestBufferedLayer.h>

#include <gtest/gtest.h>

#include <memory>
#include <mutex>
#include <stdexcept>
#include <utility>
#include <vector>

namespace lmx {
namespace {

using namespace tests;

class BufferedMapLayerThreads : public TBufferedMapLayerFixture {
protected:
    /// A proc that is held up at `gate` and notes whether it was terminated.
    TRenderThreadProc Proc(const TGate& gate, int number) {
        return [log = Log, number, wait = gate.GetWaiter()](TThread& thread) {
            log->Add(log->Begun, number);
            wait([&] { return thread.GetTerminated(); });
            log->Add(thread.GetTerminated() ? log->Stopped : log->Done, number);
        };
    }
    static bool WaitUntilFinished(const std::shared_ptr<TThread>& thread) {
        return WaitUntil([&] { return thread->GetFinished(); });
    }

    struct TLog {
        void Add(std::vector<int>& list, int number) {
            const std::lock_guard lock(Mutex);
            list.push_back(number);
        }
        std::vector<int> Get(const std::vector<int>& list) {
            const std::lock_guard lock(Mutex);
            return list;
        }
        std::mutex Mutex;
        std::vector<int> Begun, Done, Stopped;
    };
    std::shared_ptr<TLog> Log = std::make_shared<TLog>();
    TGate Gate;
};

TEST_F(BufferedMapLayerThreads, RunTheProcOnAThreadOfItsOwnWhichIsTheLayersMeanwhile) {
    const auto thread = Layer->StartRenderThread(Proc(Gate, 1));
    ASSERT_TRUE(WaitUntil([this] { return Log->Get(Log->Begun).size() == 1; }));
    EXPECT_EQ(Layer->GetRenderThread(), thread);
    Gate.Open();
    ASSERT_TRUE(WaitUntilFinished(thread));
    EXPECT_EQ(Layer->GetRenderThread(), nullptr);
    EXPECT_EQ(Log->Done, std::vector<int>{1});
}

TEST_F(BufferedMapLayerThreads, GiveTheProcTheThreadOnWhichItRuns) {
    std::atomic<TThread*> given = nullptr;
    std::atomic<TThread*> current = nullptr;
    const auto thread = Layer->StartRenderThread([&](TThread& self) {
        given = &self;
        current = TThread::GetCurrentThread();
    });
    ASSERT_TRUE(WaitUntilFinished(thread));
    EXPECT_EQ(given, thread.get());
    EXPECT_EQ(current, thread.get());
}

TEST_F(BufferedMapLayerThreads, TheShortFormStopsTheProcThatRuns) {
    const auto first = Layer->StartRenderThread(Proc(Gate, 1));
    ASSERT_TRUE(WaitUntil([this] { return Log->Get(Log->Begun).size() == 1; }));
    TGate second;
    const auto next = Layer->StartRenderThread(Proc(second, 2));
    EXPECT_TRUE(first->GetTerminated());
    ASSERT_TRUE(WaitUntilFinished(first));
    second.Open();
    ASSERT_TRUE(WaitUntilFinished(next));
    EXPECT_EQ(Log->Stopped, std::vector<int>{1});
    EXPECT_EQ(Log->Done, std::vector<int>{2});
}

TEST_F(BufferedMapLayerThreads, WithoutStopCurrentRunOneAtATime) {
    const auto first = Layer->StartRenderThread(Proc(Gate, 1), false);
    ASSERT_TRUE(WaitUntil([this] { return Log->Get(Log->Begun).size() == 1; }));
    TGate second;
    const auto next = Layer->StartRenderThread(Proc(second, 2), false);
    EXPECT_FALSE(first->GetTerminated());
    EXPECT_EQ(Layer->GetRenderThread(), first);
    EXPECT_EQ(Log->Get(Log->Begun), std::vector<int>{1});
    Gate.Open();
    ASSERT_TRUE(WaitUntil([this] { return Log->Get(Log->Begun).size() == 2; }));
    EXPECT_EQ(Log->Get(Log->Done), std::vector<int>{1}); // over before the second began
    EXPECT_EQ(Layer->GetRenderThread(), next);
    second.Open();
    ASSERT_TRUE(WaitUntilFinished(next));
}

TEST_F(BufferedMapLayerThreads, OneThatIsTerminatedWhileItWaitsForItsTurnDoesNothing) {
    const auto first = Layer->StartRenderThread(Proc(Gate, 1), false);
    ASSERT_TRUE(WaitUntil([this] { return Log->Get(Log->Begun).size() == 1; }));
    const auto next = Layer->StartRenderThread(Proc(Gate, 2), false);
    next->Terminate();
    Gate.Open();
    ASSERT_TRUE(WaitUntilFinished(next));
    EXPECT_EQ(Log->Begun, std::vector<int>{1});
}

TEST_F(BufferedMapLayerThreads, WithoutStartNowTheCallerStartsIt) {
    Gate.Open();
    const auto thread = Layer->StartRenderThread(Proc(Gate, 1), true, false);
    EXPECT_FALSE(thread->GetFinished());
    EXPECT_EQ(Layer->GetRenderThread(), nullptr);
    thread->Start();
    ASSERT_TRUE(WaitUntilFinished(thread));
    EXPECT_EQ(Log->Done, std::vector<int>{1});
}

TEST_F(BufferedMapLayerThreads, StopCurrentTerminatesTheOneThatRunsAndNeverWaits) {
    Layer->StopCurrentRenderThread(); // none
    const auto thread = Layer->StartRenderThread([this](TThread&) {
        Log->Add(Log->Begun, 1);
        Gate.GetWaiter()([] { return false; }); // never looks
    });
    ASSERT_TRUE(WaitUntil([this] { return Log->Get(Log->Begun).size() == 1; }));
    Layer->StopCurrentRenderThread();
    EXPECT_TRUE(thread->GetTerminated());
    EXPECT_FALSE(thread->GetFinished());
    EXPECT_EQ(Layer->GetRenderThread(), nullptr);
    Layer->StopCurrentRenderThread(); // again none
    Gate.Open();
    ASSERT_TRUE(WaitUntilFinished(thread));
}

TEST_F(BufferedMapLayerThreads, WhatAProcRaisesEndsWithItAndTheNextOneRuns) {
    Gate.Open();
    const auto first = Layer->StartRenderThread([](TThread&) { throw std::runtime_error("lost"); });
    ASSERT_TRUE(WaitUntilFinished(first));
    EXPECT_EQ(Layer->GetRenderThread(), nullptr);
    ASSERT_TRUE(WaitUntilFinished(Layer->StartRenderThread(Proc(Gate, 2))));
    EXPECT_EQ(Log->Done, std::vector<int>{2});
}

TEST_F(BufferedMapLayerThreads, ANilProcIsRefused) {
    EXPECT_EQ(MessageOf<EExArgumentNilException>([this] { Layer->StartRenderThread(nullptr); }),
              "TBufferedMapLayer.StartRenderThread: argument Proc is nil");
}

TEST_F(BufferedMapLayerThreads, DestroyingTheLayerStopsTheProcAndReturnsAtOnce) {
    const auto thread = Layer->StartRenderThread(Proc(Gate, 1));
    ASSERT_TRUE(WaitUntil([this] { return Log->Get(Log->Begun).size() == 1; }));
    Layer.reset();
    ASSERT_TRUE(WaitUntilFinished(thread));
    EXPECT_EQ(Log->Stopped, std::vector<int>{1});
}

TEST_F(BufferedMapLayerThreads, AProcWhoseTurnComesAfterTheLayerHasGoneDoesNotRun) {
    TGate deafGate;
    const auto first = Layer->StartRenderThread([log = Log, wait = deafGate.GetWaiter()](TThread&) {
        log->Add(log->Begun, 1);
        wait([] { return false; });
    });
    ASSERT_TRUE(WaitUntil([this] { return Log->Get(Log->Begun).size() == 1; }));
    const auto waiting = Layer->StartRenderThread(Proc(Gate, 2), false);
    const auto unstarted = Layer->StartRenderThread(Proc(Gate, 3), false, false);
    Layer.reset();
    unstarted->Start();
    deafGate.Open();
    ASSERT_TRUE(WaitUntilFinished(first));
    ASSERT_TRUE(WaitUntilFinished(waiting));
    ASSERT_TRUE(WaitUntilFinished(unstarted));
    EXPECT_EQ(Log->Begun, std::vector<int>{1});
}

TEST_F(BufferedMapLayerThreads, APictureOfAHostsOwnIsHandedOverOnTheMainThread) {
    const auto area = Viewport->GetVisibleMapArea();
    const TBorrowed layer(Layer.get());
    Layer->StartRenderThread([layer, area](TThread& thread) {
        auto picture = std::make_shared<std::unique_ptr<TBufferedBitmap>>(CreateBufferedBitmap({6, 4}, area));
        (*picture)->Bitmap.Clear(0xFF123456);
        if (!thread.GetTerminated())
            TThread::Synchronize([=] {
                if (layer)
                    layer->SetBufferedBitmap(std::move(*picture));
            });
    });
    ASSERT_TRUE(PumpUntil([this] { return Layer->GetBufferedBitmap() != nullptr; }));
    Paint();
    EXPECT_EQ(Target.Pixel(0, 0), 0xFF123456U);
    EXPECT_EQ(Layer->Renders, 0);
}

} // namespace
} // namespace lmx
