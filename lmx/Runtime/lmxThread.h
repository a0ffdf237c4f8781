#pragma once

#include <lmx/Runtime/lmxExport.h>

#include <atomic>
#include <functional>
#include <memory>
#include <utility>

namespace lmx {

/// A thread of its own for one piece of work. Whoever started it may let go of it: it lives until its work is done.
/// Nothing here waits for another thread unless it is told to (WaitFor).
class LMX_EXPORT TThread : public std::enable_shared_from_this<TThread> {
public:
    /// A thread that will run `proc` once it is started. What `proc` raises ends with it; what it holds is freed on the
    /// thread.
    static std::shared_ptr<TThread> CreateAnonymousThread(std::function<void()> proc);
    TThread(const TThread&) = delete;
    TThread& operator=(const TThread&) = delete;

    /// @throws EInvalidOperation "Thread has already been started", or "No thread could be started" if the system gives
    /// none.
    void Start();
    /// Asks the work to stop, from any thread. It is the work that looks, by CheckTerminated or GetTerminated.
    void Terminate() noexcept { FTerminated.store(true, std::memory_order_release); }
    bool GetTerminated() const noexcept { return FTerminated.load(std::memory_order_acquire); }
    /// Whether the work is over and what it held is freed.
    bool GetFinished() const noexcept { return FFinished.load(std::memory_order_acquire); }
    /// Waits until it is over; not at all if it was never started. At the end of a program wait for work that uses
    /// libraries, whose own objects go then. Not from the work itself.
    void WaitFor() const noexcept {
        if (FStarted.load(std::memory_order_acquire))
            FFinished.wait(false, std::memory_order_acquire);
    }

    /// The TThread that this is called on, or nil on any other thread.
    static TThread* GetCurrentThread() noexcept;
    /// Whether the thread that this is called on has been asked to stop; false where it is no TThread.
    static bool CheckTerminated() noexcept;

    /// Has `work` run on the main thread. There it runs at once, and what it raises passes to the caller. From any
    /// other thread it is queued and the caller goes on: the event loop runs it, also a modal one, in the order in
    /// which work was handed over; what it raises ends with it. Work that the application no longer comes to is freed
    /// unrun when the application object goes, and at once where there is none.
    static void Synchronize(std::function<void()> work);

private:
    explicit TThread(std::function<void()> proc) : FProc(std::move(proc)) {}
    void Run() noexcept;

    std::function<void()> FProc;
    std::atomic<bool> FStarted = false;
    std::atomic<bool> FTerminated = false;
    std::atomic<bool> FFinished = false;
};

/// Runs `work` on a new thread that nobody waits for. It must not raise.
/// @throws EInvalidOperation "No thread could be started".
LMX_EXPORT void StartDetachedThread(std::function<void()> work);

} // namespace lmx
