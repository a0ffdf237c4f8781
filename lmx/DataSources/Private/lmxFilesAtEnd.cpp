#include <lmx/DataSources/Private/lmxFilesAtEnd.h>

#include <lmx/DataSources/Private/lmxGdalSession.h>
#include <lmx/DataSources/lmxClimateExceptions.h>

#include <condition_variable>
#include <cstdlib>
#include <mutex>
#include <set>
#include <utility>

#ifdef Q_OS_LINUX
#include <unistd.h>
#endif

namespace lmx {

class TFilesAtEnd {
public:
    /// Never freed: objects that go at the very end still come here.
    static TFilesAtEnd& GetSingleton() {
        static TFilesAtEnd* const files = new TFilesAtEnd;
        return *files;
    }

    bool BeginUse() {
        const std::lock_guard lock(FMutex);
        FUses += FIsEnded ? 0 : 1;
        return !FIsEnded;
    }
    void EndUse() {
        const std::lock_guard lock(FMutex);
        if (--FUses == 0)
            FUnused.notify_all();
    }
    void Add(TOpenFile& file) {
        const std::lock_guard lock(FFilesMutex);
        FFiles.insert(&file);
    }
    /// Closes a file that goes, unless that has been done.
    void Remove(TOpenFile& file) {
        const std::lock_guard lock(FFilesMutex);
        FFiles.erase(&file);
        Close(file);
    }

    void End() {
        {
            std::unique_lock lock(FMutex);
            FIsEnded = true;
            FUnused.wait(lock, [this] { return FUses == 0; });
        }
        {
            const std::lock_guard lock(FFilesMutex); // a file that goes meanwhile waits
            for (TOpenFile* const file : std::exchange(FFiles, {}))
                Close(*file);
        }
        EndReader();
    }

private:
    static void Close(TOpenFile& file) {
        if (const auto close = std::exchange(file.FClose, nullptr))
            close();
    }

    std::mutex FMutex;
    std::condition_variable FUnused;
    int FUses = 0;
    bool FIsEnded = false;
    std::mutex FFilesMutex;
    std::set<TOpenFile*> FFiles;
};

namespace {

struct TEndOfThread {
    ~TEndOfThread() { TFilesAtEnd::GetSingleton().End(); }
};

// What belongs to the thread that leaves main goes ahead of every static object, also of those that a read makes when
// it first needs them.
void EndWithMainThread() {
#ifdef Q_OS_LINUX
    if (gettid() == getpid()) {
        static thread_local const TEndOfThread end;
        static_cast<void>(end);
    }
#endif
}

} // namespace

TFileUse::TFileUse(const QString& fileName) {
    if (!TFilesAtEnd::GetSingleton().BeginUse())
        throw EClimateFile(fileName, QStringLiteral("is closed: the program ends"));
    EndWithMainThread();
}

TFileUse::~TFileUse() {
    TFilesAtEnd::GetSingleton().EndUse();
}

TOpenFile::TOpenFile(std::function<void()> close) : FClose(std::move(close)) {
    TFilesAtEnd::GetSingleton().Add(*this);
}

TOpenFile::~TOpenFile() {
    TFilesAtEnd::GetSingleton().Remove(*this);
}

// For programs whose main thread reads no file. What is registered later runs earlier, and libraries register when they
// are set up.
void CloseFilesBeforeLibraries() {
    std::atexit([] { TFilesAtEnd::GetSingleton().End(); });
}

} // namespace lmx
