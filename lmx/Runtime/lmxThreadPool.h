#pragma once

#include <lmx/Runtime/lmxExport.h>

#include <atomic>
#include <functional>
#include <memory>
#include <utility>

namespace lmx {

class TThreadPoolThread;

/// How the system shares its time out to a thread.
enum class TThreadPriority { tpIdle, tpLowest, tpLower, tpNormal, tpHigher, tpHighest, tpTimeCritical };

/// A set of threads that run operations, at most `count` of them together. A thread of the system is made when an
/// operation finds none idle. Nothing here ever waits for an operation: those that find all threads busy are queued and
/// run in the order in which they were started.
class LMX_EXPORT TThreadPool {
public:
    /// @throws EArgumentException "Count" if it is below 1.
    TThreadPool(TThreadPriority priority, int count);
    /// Cancels all operations and returns at once; each thread ends by itself after its present operation.
    ~TThreadPool();
    TThreadPool(const TThreadPool&) = delete;
    TThreadPool& operator=(const TThreadPool&) = delete;

    /// A thread that takes one operation, whether or not one of the system is free for it now.
    std::shared_ptr<TThreadPoolThread> GetThread();
    /// Cancels every operation, running or queued.
    void CancelOperations();

    int GetCount() const;        ///< the most operations that run together
    int GetRunningCount() const; ///< operations that run now
    int GetQueuedCount() const;  ///< operations that wait for a thread

private:
    friend class TThreadPoolThread;
    class TState;

    std::shared_ptr<TState> FState; // the threads of the system hold it too
};

/// What a pool hands out to run one operation: set the event and the data, then start. Both are freed on the thread
/// that runs the operation, when it ends.
class LMX_EXPORT TThreadPoolThread : public std::enable_shared_from_this<TThreadPoolThread> {
public:
    using TExecuteEvent = std::function<void(TThreadPoolThread& thread)>;

    TThreadPoolThread(const TThreadPoolThread&) = delete;
    TThreadPoolThread& operator=(const TThreadPoolThread&) = delete;

    void SetOnExecute(TExecuteEvent event) { FOnExecute = std::move(event); } ///< before StartOperation
    void SetData(std::shared_ptr<void> data) { FData = std::move(data); }     ///< before StartOperation
    const std::shared_ptr<void>& GetData() const { return FData; }

    /// Runs the event on a thread of the pool, now or when one is free. What it raises ends with it. An operation that
    /// was cancelled before does not run.
    /// @throws EInvalidOperation "Operation has already been started", or "No thread could be started" if the pool has
    /// no thread and the system gives none.
    void StartOperation();
    /// From any thread: marks the operation as cancelled, and returns at once. One that is still queued leaves the
    /// queue and frees its event and its data.
    void CancelOperation() noexcept;
    /// Whether the operation was cancelled. As cheap as reading a variable, to be asked for every vertex.
    bool ShouldStop() const noexcept { return FCancelled.load(std::memory_order_relaxed); }

private:
    friend class TThreadPool;
    explicit TThreadPoolThread(std::weak_ptr<TThreadPool::TState> pool) : FPool(std::move(pool)) {}
    void Execute() noexcept;

    std::weak_ptr<TThreadPool::TState> FPool;
    TExecuteEvent FOnExecute;
    std::shared_ptr<void> FData;
    std::atomic<bool> FStarted = false;
    std::atomic<bool> FCancelled = false;
};

} // namespace lmx
