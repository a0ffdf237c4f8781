#include <lmx/Runtime/Private/lmxRowBands.h>

#include <lmx/Runtime/lmxCores.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxThread.h>

#include <algorithm>
#include <atomic>
#include <cfenv>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <new>

namespace lmx {

namespace {

std::atomic<std::int64_t> LeastPixels = TRowBands::DefaultLeastPixels;

/// More bands than cores: a core that comes late or is taken away leaves little to wait for.
constexpr std::int32_t BandsPerCore = 4;

/// The bands of one call. They are taken from the top downwards.
class TBandJob {
public:
    TBandJob(std::int32_t rowCount, std::int32_t bandCount, TRowBands::TWork work)
        : FRowCount(rowCount),
          FBandCount(bandCount),
          FWork(work),
          FFailedBand(bandCount) {
        std::fegetenv(&FFloatingPoint);
    }

    /// The next band, or -1 if there is none.
    std::int32_t Take() noexcept {
        if (FHasFailed.load(std::memory_order_relaxed))
            return -1;
        const std::int32_t band = FNextBand.fetch_add(1, std::memory_order_relaxed);
        return band < FBandCount ? band : -1;
    }

    /// Runs a band that was taken, and then whatever is left.
    void RunFrom(std::int32_t band) noexcept {
        for (; band >= 0; band = Take())
            Run(band);
    }

    /// Lets this thread count as the caller does: rounding and tiny numbers are settings of each thread.
    void TakeOverFloatingPoint() const noexcept { std::fesetenv(&FFloatingPoint); }

    /// After all bands that were taken.
    void RaiseFailure() const {
        if (FFailure)
            std::rethrow_exception(FFailure);
    }

private:
    void Run(std::int32_t band) noexcept {
        const auto edge = [this](std::int64_t number) {
            return static_cast<std::int32_t>(number * FRowCount / FBandCount);
        };
        try {
            FWork(edge(band), edge(std::int64_t{band} + 1));
        } catch (...) {
            FHasFailed.store(true, std::memory_order_relaxed);
            const std::lock_guard lock(FFailureMutex);
            if (band < FFailedBand) {
                FFailedBand = band;
                FFailure = std::current_exception();
            }
        }
    }

    const std::int32_t FRowCount;
    const std::int32_t FBandCount;
    const TRowBands::TWork FWork;
    std::fenv_t FFloatingPoint;
    std::atomic<std::int32_t> FNextBand = 0;
    std::atomic<bool> FHasFailed = false;
    std::mutex FFailureMutex;
    std::int32_t FFailedBand;
    std::exception_ptr FFailure;
};

/// Threads that wait for bands, made when they are first needed. There is one job at a time.
class TBandPool {
public:
    /// Never freed: its threads wait to the very end of the process.
    static TBandPool& GetSingleton() {
        static TBandPool* const pool = new TBandPool;
        return *pool;
    }

    /// Runs the job here and on up to `helperCount` threads. False, and nothing is run, if there is another job.
    bool Run(TBandJob& job, int helperCount);

private:
    bool Begin(TBandJob& job, int helperCount);
    void End();
    void MakeThreads(int count);
    void Help();

    std::mutex FMutex;
    std::condition_variable FBegun;
    std::condition_variable FLeft;
    TBandJob* FJob = nullptr; // as long as threads may join it
    bool FIsBusy = false;
    int FThreadCount = 0;
    int FPlaces = 0;  // threads that may still join
    int FHelpers = 0; // threads that have joined, each with a band
};

bool TBandPool::Run(TBandJob& job, int helperCount) {
    if (!Begin(job, helperCount))
        return false;
    job.RunFrom(job.Take());
    End();
    return true;
}

bool TBandPool::Begin(TBandJob& job, int helperCount) {
    {
        const std::lock_guard lock(FMutex);
        if (FIsBusy)
            return false;
        MakeThreads(helperCount);
        FIsBusy = true;
        FJob = &job;
        FPlaces = helperCount;
    }
    FBegun.notify_all();
    return true;
}

void TBandPool::End() {
    std::unique_lock lock(FMutex);
    FJob = nullptr;
    FLeft.wait(lock, [this] { return FHelpers == 0; });
    FIsBusy = false;
}

// With fewer threads than wanted the caller has more to do.
void TBandPool::MakeThreads(int count) {
    try {
        for (; FThreadCount < count; ++FThreadCount)
            StartDetachedThread([this] { Help(); });
    } catch (const EInvalidOperation&) {
    } catch (const std::bad_alloc&) {
    }
}

// A thread joins with a band in its hand: so the caller never waits for one that has nothing to do.
void TBandPool::Help() {
    std::unique_lock lock(FMutex);
    for (;;) {
        FBegun.wait(lock, [this] { return FJob && FPlaces > 0; });
        TBandJob& job = *FJob;
        const std::int32_t band = job.Take();
        if (band < 0) {
            FPlaces = 0;
            continue;
        }
        --FPlaces;
        ++FHelpers;
        lock.unlock();
        job.TakeOverFloatingPoint();
        job.RunFrom(band);
        lock.lock();
        --FHelpers;
        if (FHelpers == 0)
            FLeft.notify_one();
    }
}

} // namespace

std::int64_t TRowBands::GetLeastPixels() noexcept {
    return LeastPixels.load(std::memory_order_relaxed);
}

void TRowBands::SetLeastPixels(std::int64_t count) noexcept {
    LeastPixels.store(count, std::memory_order_relaxed);
}

bool TRowBands::Pays(std::int32_t rowCount, std::int32_t width) noexcept {
    return TCores::GetCount() > 1 && rowCount > 1 && std::int64_t{rowCount} * width >= GetLeastPixels();
}

void TRowBands::Share(std::int32_t rowCount, std::int32_t width, TWork work) {
    if (rowCount <= 0)
        return;
    if (Pays(rowCount, width)) {
        const int cores = TCores::GetCount();
        TBandJob job(rowCount, std::min(rowCount, cores * BandsPerCore), work);
        if (TBandPool::GetSingleton().Run(job, cores - 1))
            return job.RaiseFailure();
    }
    work(0, rowCount);
}

} // namespace lmx
