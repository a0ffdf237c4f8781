#include <lmx/Runtime/lmxThread.h>

#include <lmx/Runtime/lmxExceptions.h>

#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <QThread>

#include <deque>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

namespace lmx {

namespace {

thread_local TThread* CurrentThread = nullptr;

/// Work from all threads that waits for the event loop of the main thread. The queue is our own, under a mutex of our
/// own; Qt only wakes us, by one posted event while there is work.
class TMainThreadQueue {
public:
    /// Never freed: threads that run at the very end of the process may still come here.
    static TMainThreadQueue& GetSingleton() {
        static TMainThreadQueue* const queue = new TMainThreadQueue;
        return *queue;
    }

    void Open();
    void Close();
    bool IsMainThread() {
        const std::lock_guard lock(FMutex);
        return std::this_thread::get_id() == FMainThread;
    }
    void Add(std::function<void()> work);
    void RunNext();

private:
    void WakeUp() { QCoreApplication::postEvent(FDispatcher, new QEvent(QEvent::User)); }

    class TDispatcher final : public QObject {
    protected:
        void customEvent(QEvent*) override { GetSingleton().RunNext(); }
    };

    std::mutex FMutex;
    TDispatcher* FDispatcher = nullptr; // lives on the main thread, as long as the application
    std::thread::id FMainThread;        // none before the dispatcher runs
    std::deque<std::function<void()>> FWork;
};

// An application begins. A library that is loaded later hears of it on the thread that loads it.
void TMainThreadQueue::Open() {
    auto* const dispatcher = new TDispatcher;
    QThread* const mainThread = QCoreApplication::instance()->thread();
    const bool isMainThread = dispatcher->thread() == mainThread;
    dispatcher->moveToThread(mainThread);
    qAddPostRoutine([] { GetSingleton().Close(); });
    const std::lock_guard lock(FMutex);
    FDispatcher = dispatcher;
    FMainThread = isMainThread ? std::this_thread::get_id() : std::thread::id();
}

// The application ends, on the main thread. The dispatcher takes its posted events with it.
void TMainThreadQueue::Close() {
    TDispatcher* dispatcher = nullptr;
    std::deque<std::function<void()>> unrun;
    {
        const std::lock_guard lock(FMutex);
        dispatcher = std::exchange(FDispatcher, nullptr);
        FMainThread = {};
        unrun.swap(FWork);
    }
    delete dispatcher;
}

void TMainThreadQueue::Add(std::function<void()> work) {
    const std::lock_guard lock(FMutex);
    if (!FDispatcher)
        return;
    FWork.push_back(std::move(work));
    if (FWork.size() == 1)
        WakeUp();
}

void TMainThreadQueue::RunNext() {
    std::function<void()> work;
    {
        const std::lock_guard lock(FMutex);
        FMainThread = std::this_thread::get_id();
        if (FWork.empty())
            return;
        work = std::move(FWork.front());
        FWork.pop_front();
        if (!FWork.empty())
            WakeUp(); // before this piece runs: an event posted earlier would not wake a modal loop inside it
    }
    try {
        work();
    } catch (...) {
        // By contract: it must not cross into Qt, and the thread that handed the work over has gone on.
    }
}

void OpenMainThreadQueue() {
    TMainThreadQueue::GetSingleton().Open();
}
Q_COREAPP_STARTUP_FUNCTION(OpenMainThreadQueue)

} // namespace

std::shared_ptr<TThread> TThread::CreateAnonymousThread(std::function<void()> proc) {
    return std::shared_ptr<TThread>(new TThread(std::move(proc)));
}

void TThread::Start() {
    if (FStarted.exchange(true))
        throw EInvalidOperation(QStringLiteral("Thread has already been started"));
    try {
        StartDetachedThread([self = shared_from_this()] { self->Run(); });
    } catch (...) {
        FStarted = false;
        throw;
    }
}

void TThread::Run() noexcept {
    CurrentThread = this;
    try {
        FProc();
    } catch (...) {
        // By contract: nobody is left to hear of it.
    }
    FProc = nullptr;
    FFinished.store(true, std::memory_order_release);
    FFinished.notify_all();
}

TThread* TThread::GetCurrentThread() noexcept {
    return CurrentThread;
}

bool TThread::CheckTerminated() noexcept {
    return CurrentThread && CurrentThread->GetTerminated();
}

void TThread::Synchronize(std::function<void()> work) {
    TMainThreadQueue& queue = TMainThreadQueue::GetSingleton();
    if (queue.IsMainThread())
        work();
    else
        queue.Add(std::move(work));
}

void StartDetachedThread(std::function<void()> work) {
    try {
        std::thread(std::move(work)).detach();
    } catch (const std::system_error&) {
        throw EInvalidOperation(QStringLiteral("No thread could be started"));
    }
}

} // namespace lmx
