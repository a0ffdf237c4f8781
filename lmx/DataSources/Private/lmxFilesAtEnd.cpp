#include <lmx/DataSources/Private/lmxFilesAtEnd.h>

#include <lmx/DataSources/Private/lmxGdalSession.h>
#include <lmx/DataSources/lmxClimateExceptions.h>

#include <condition_variable>
#include <cstdlib>
#include <mutex>
#include <set>
#include <utility>

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

TFileUse::TFileUse(const QString& fileName) {
    if (!TFilesAtEnd::GetSingleton().BeginUse())
        throw EClimateFile(fileName, QStringLiteral("is closed: the program ends"));
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

// What is registered later runs earlier, and libraries register when they are set up.
void CloseFilesBeforeLibraries() {
    std::atexit([] { TFilesAtEnd::GetSingleton().End(); });
}

} // namespace lmx
