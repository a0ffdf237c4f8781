#include <lmx/DataSources/Private/lmxGdalSession.h>

#include <lmx/DataSources/Private/lmxFilesAtEnd.h>
#include <lmx/DataSources/lmxClimateDataset.h>
#include <lmx/Runtime/lmxNumberText.h>

#include <cpl_conv.h>
#include <cpl_error.h>
#include <gdal_frmts.h>
#include <hdf5.h>

#include <atomic>
#include <condition_variable>
#include <deque>
#include <exception>
#include <mutex>
#include <thread>

namespace lmx {

namespace {

// Sister files would override what the file says and are even written beside it; a folder is not searched for them. The
// cells of a GRIB stay where its grid says, in its own units.
constexpr std::pair<const char*, const char*> ThreadOptions[] = {
    {"GDAL_PAM_ENABLED", "NO"},
    {"GDAL_DISABLE_READDIR_ON_OPEN", "EMPTY_DIR"},
    {"GRIB_ADJUST_LONGITUDE_RANGE", "NO"},
    {"GRIB_NORMALIZE_UNITS", "NO"},
    {"GDAL_HTTP_MAX_RETRY", "0"},
};

void CPL_STDCALL KeepFirstText(CPLErr kind, CPLErrorNum, const char* text) {
    auto* const first = static_cast<QString*>(CPLGetErrorHandlerUserData());
    if (kind >= CE_Failure && first->isEmpty() && text)
        *first = QString::fromUtf8(text).simplified().left(500);
}

// HDF5 prints its errors unless the thread has been told otherwise.
class TQuietHdf5 {
public:
    TQuietHdf5() {
        H5Eget_auto2(H5E_DEFAULT, &FPrint, &FData);
        H5Eset_auto2(H5E_DEFAULT, nullptr, nullptr);
    }
    ~TQuietHdf5() { H5Eset_auto2(H5E_DEFAULT, FPrint, FData); }
    TQuietHdf5(const TQuietHdf5&) = delete;
    TQuietHdf5& operator=(const TQuietHdf5&) = delete;

private:
    H5E_auto2_t FPrint = nullptr;
    void* FData = nullptr;
};

class TJob final : public TReaderJob {
public:
    explicit TJob(std::function<void()> work) : FWork(std::move(work)) {}

    bool Withdraw() override {
        const std::lock_guard lock(FMutex);
        if (FState != TState::jsQueued)
            return FState == TState::jsWithdrawn;
        FWork = nullptr;
        End(TState::jsWithdrawn);
        return true;
    }

    void Wait() override {
        std::unique_lock lock(FMutex);
        FOver.wait(lock, [this] { return FState == TState::jsOver || FState == TState::jsWithdrawn; });
        if (FFailure)
            std::rethrow_exception(FFailure);
    }

    bool IsWithdrawn() const override {
        const std::lock_guard lock(FMutex);
        return FState == TState::jsWithdrawn;
    }

    void Run() {
        {
            const std::lock_guard lock(FMutex);
            if (FState != TState::jsQueued)
                return;
            FState = TState::jsRunning;
        }
        std::exception_ptr failure;
        try {
            const TQuietHdf5 quiet;
            FWork();
        } catch (...) {
            failure = std::current_exception();
        }
        FWork = nullptr; // what it holds goes on this thread
        const std::lock_guard lock(FMutex);
        FFailure = failure;
        End(TState::jsOver);
    }

private:
    enum class TState { jsQueued, jsRunning, jsOver, jsWithdrawn };

    void End(TState state) {
        FState = state;
        FOver.notify_all();
    }

    mutable std::mutex FMutex;
    std::condition_variable FOver;
    std::function<void()> FWork;
    std::exception_ptr FFailure;
    TState FState = TState::jsQueued;
};

class TReader {
public:
    /// Never freed: objects that go at the very end still come here.
    static TReader& GetSingleton() {
        static TReader* const reader = Make();
        return *reader;
    }

    void Post(const std::shared_ptr<TJob>& job) {
        {
            const std::lock_guard lock(FMutex);
            if (!FIsEnding && std::this_thread::get_id() != FThread.get_id()) {
                FJobs.push_back(job);
                FChanged.notify_one();
                return;
            }
        }
        job->Run();
    }

    void End() {
        {
            const std::lock_guard lock(FMutex);
            FIsEnding = true;
        }
        FChanged.notify_one();
        if (FThread.joinable() && std::this_thread::get_id() != FThread.get_id())
            FThread.join();
    }

private:
    static TReader* Make() {
        H5open(); // the end of the thread then comes before that of the library
        CloseFilesBeforeLibraries();
        return new TReader;
    }

    TReader() : FThread([this] { Work(); }) {}

    std::shared_ptr<TJob> Next() {
        std::unique_lock lock(FMutex);
        FChanged.wait(lock, [this] { return FIsEnding || !FJobs.empty(); });
        if (FJobs.empty())
            return nullptr;
        auto job = FJobs.front();
        FJobs.pop_front();
        return job;
    }

    void Work() {
        while (const auto job = Next())
            job->Run();
    }

    std::mutex FMutex;
    std::condition_variable FChanged;
    std::deque<std::shared_ptr<TJob>> FJobs;
    bool FIsEnding = false;
    std::thread FThread; // last: it uses what stands above
};

} // namespace

TQuietGdal::TQuietGdal() {
    for (const auto& [name, value] : ThreadOptions)
        SetOption(name, value);
    const QByteArray seconds = IntToStr(TClimateDataset::GetRemoteTimeout()).toLatin1();
    SetOption("GDAL_HTTP_TIMEOUT", seconds);
    SetOption("GDAL_HTTP_CONNECTTIMEOUT", seconds);
    CPLPushErrorHandlerEx(&KeepFirstText, &FFirstText);
}

void TQuietGdal::SetOption(const char* name, const QByteArray& value) {
    const char* const before = CPLGetThreadLocalConfigOption(name, nullptr);
    FOptions.push_back({name, before != nullptr, QByteArray(before)});
    CPLSetThreadLocalConfigOption(name, value.constData());
}

TQuietGdal::~TQuietGdal() {
    CPLPopErrorHandler();
    CPLErrorReset();
    for (const TOption& option : FOptions)
        CPLSetThreadLocalConfigOption(option.Name, option.WasSet ? option.Before.constData() : nullptr);
}

QString TQuietGdal::Explain(const QString& problem) const {
    return FFirstText.isEmpty() ? problem : problem + QStringLiteral(" (") + FFirstText + u')';
}

void RegisterClimateDrivers() {
    static std::once_flag once;
    std::call_once(once, [] {
        GDALRegister_GTiff();
        GDALRegister_netCDF();
        GDALRegister_Zarr();
        GDALRegister_GRIB();
    });
}

std::shared_ptr<TReaderJob> PostToReader(std::function<void()> work) {
    auto job = std::make_shared<TJob>(std::move(work));
    TReader::GetSingleton().Post(job);
    return job;
}

void EndReader() {
    TReader::GetSingleton().End();
}

void RunOnReader(std::function<void()> work) {
    PostToReader(std::move(work))->Wait();
}

} // namespace lmx
