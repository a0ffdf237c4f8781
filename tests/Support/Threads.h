#pragma once

#include <lmx/Runtime/lmxThread.h>

#include <QCoreApplication>
#include <QElapsedTimer>

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <thread>

// How tests and the threads that they start wait for each other. Nothing sleeps; what never comes fails the test.

namespace lmx::tests {

constexpr int PatienceMilliseconds = 60'000; // sanitizers and busy machines included

/// Whether `condition` comes true; the event loop runs meanwhile.
template<class Condition>
bool PumpUntil(Condition condition) {
    QElapsedTimer elapsed;
    elapsed.start();
    while (!condition()) {
        if (elapsed.elapsed() > PatienceMilliseconds)
            return false;
        QCoreApplication::processEvents();
        std::this_thread::yield();
    }
    return true;
}

/// Whether `condition` comes true; no event is handled meanwhile, so nothing is handed over.
template<class Condition>
bool WaitUntil(Condition condition) {
    QElapsedTimer elapsed;
    elapsed.start();
    while (!condition()) {
        if (elapsed.elapsed() > PatienceMilliseconds)
            return false;
        std::this_thread::yield();
    }
    return true;
}

/// Whether all that was handed to the main thread until now has arrived.
inline bool PumpUntilHandedOver() {
    const auto arrived = std::make_shared<bool>(false);
    TThread::CreateAnonymousThread([arrived] { TThread::Synchronize([arrived] { *arrived = true; }); })->Start();
    return PumpUntil([&] { return *arrived; });
}

/// Holds threads up until the test opens it. Opens in any case when the test leaves it, so that none stays behind.
class TGate {
public:
    ~TGate() { Open(); }

    void Open() { FState->store(true); }
    /// A share of the gate for a thread: waits until it is open, or `isGivenUp` says true.
    auto GetWaiter() const {
        return [state = FState](auto isGivenUp) {
            while (!state->load() && !isGivenUp())
                std::this_thread::yield();
        };
    }

private:
    std::shared_ptr<std::atomic<bool>> FState = std::make_shared<std::atomic<bool>>(false);
};

} // namespace lmx::tests
