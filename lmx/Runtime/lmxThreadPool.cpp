#include <lmx/Runtime/lmxThreadPool.h>

#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxThread.h>

#include <QThread>

#include <algorithm>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <utility>
#include <vector>

namespace lmx {

/// What the pool and its threads share; the last of them frees it.
class TThreadPool::TState : public std::enable_shared_from_this<TState> {
public:
    using TOperation = std::shared_ptr<TThreadPoolThread>;

    TState(TThreadPriority priority, int count) : Count(static_cast<std::size_t>(count)), FPriority(priority) {}

    void Start(TOperation operation);
    void TakeOutOfQueue(const TThreadPoolThread& operation);
    void CancelAll();
    void Close();

    const std::size_t Count;
    mutable std::mutex Mutex;
    std::deque<TOperation> Queue;
    std::vector<TOperation> Running;

private:
    bool NeedsThread() const { return Queue.size() >= FIdle && FThreads < Count; }
    void StartThread();
    void Work();

    const TThreadPriority FPriority;
    std::condition_variable FChanged;
    std::size_t FThreads = 0;
    std::size_t FIdle = 0;
    bool FClosed = false;
};

void TThreadPool::TState::Start(TOperation operation) {
    {
        const std::lock_guard lock(Mutex);
        if (FClosed)
            return;
        if (NeedsThread())
            StartThread();
        Queue.push_back(std::move(operation));
    }
    FChanged.notify_one();
}

// A pool that has a thread does with those that it has.
void TThreadPool::TState::StartThread() {
    try {
        StartDetachedThread([self = shared_from_this()] { self->Work(); });
        ++FThreads;
    } catch (const EInvalidOperation&) {
        if (FThreads == 0)
            throw;
    }
}

void TThreadPool::TState::Work() {
    if (FPriority != TThreadPriority::tpNormal)
        QThread::currentThread()->setPriority(static_cast<QThread::Priority>(FPriority));
    std::unique_lock lock(Mutex);
    for (;;) {
        ++FIdle;
        FChanged.wait(lock, [this] { return FClosed || !Queue.empty(); });
        --FIdle;
        if (Queue.empty())
            return;
        TOperation operation = std::move(Queue.front());
        Queue.pop_front();
        Running.push_back(operation);
        lock.unlock();
        operation->Execute();
        lock.lock();
        std::erase(Running, operation);
    }
}

// What the operation holds is freed by its canceller, outside the lock.
void TThreadPool::TState::TakeOutOfQueue(const TThreadPoolThread& operation) {
    TOperation taken;
    {
        const std::lock_guard lock(Mutex);
        const auto found = std::find_if(Queue.begin(), Queue.end(),
                                        [&](const TOperation& queued) { return queued.get() == &operation; });
        if (found == Queue.end())
            return;
        taken = std::move(*found);
        Queue.erase(found);
    }
    taken->FOnExecute = nullptr;
    taken->FData = nullptr;
}

void TThreadPool::TState::CancelAll() {
    std::vector<TOperation> operations;
    {
        const std::lock_guard lock(Mutex);
        operations = Running;
        operations.insert(operations.end(), Queue.begin(), Queue.end());
    }
    for (const TOperation& operation : operations)
        operation->CancelOperation();
}

void TThreadPool::TState::Close() {
    {
        const std::lock_guard lock(Mutex);
        FClosed = true;
    }
    CancelAll();
    FChanged.notify_all();
}

TThreadPool::TThreadPool(TThreadPriority priority, int count) {
    if (count < 1)
        throw EArgumentException(QStringLiteral("Count"));
    FState = std::make_shared<TState>(priority, count);
}

TThreadPool::~TThreadPool() {
    FState->Close();
}

std::shared_ptr<TThreadPoolThread> TThreadPool::GetThread() {
    return std::shared_ptr<TThreadPoolThread>(new TThreadPoolThread(FState));
}

void TThreadPool::CancelOperations() {
    FState->CancelAll();
}

int TThreadPool::GetCount() const {
    return static_cast<int>(FState->Count);
}

int TThreadPool::GetRunningCount() const {
    const std::lock_guard lock(FState->Mutex);
    return static_cast<int>(FState->Running.size());
}

int TThreadPool::GetQueuedCount() const {
    const std::lock_guard lock(FState->Mutex);
    return static_cast<int>(FState->Queue.size());
}

void TThreadPoolThread::StartOperation() {
    if (FStarted.exchange(true))
        throw EInvalidOperation(QStringLiteral("Operation has already been started"));
    const auto pool = FPool.lock();
    if (pool && !ShouldStop())
        pool->Start(shared_from_this());
}

void TThreadPoolThread::CancelOperation() noexcept {
    if (FCancelled.exchange(true))
        return;
    if (const auto pool = FPool.lock())
        pool->TakeOutOfQueue(*this);
}

void TThreadPoolThread::Execute() noexcept {
    try {
        if (FOnExecute && !ShouldStop())
            FOnExecute(*this);
    } catch (...) {
        // By contract: nobody is left to hear of it.
    }
    FOnExecute = nullptr;
    FData = nullptr;
}

} // namespace lmx
