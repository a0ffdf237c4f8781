#pragma once

#include <QString>

#include <functional>

namespace lmx {

/// The libraries that read files go before the last objects of a host do, and a host may let go of a dataset or a
/// player after main has ended, or never. So at the end of the program, ahead of those libraries, uses that have begun
/// are waited for, further ones are refused, and the files that are still open are closed.

/// Around each use of a file: the end of the program waits for it. Any thread.
class TFileUse {
public:
    /// @throws EClimateFile with `fileName` once the program ends.
    explicit TFileUse(const QString& fileName);
    ~TFileUse();
    TFileUse(const TFileUse&) = delete;
    TFileUse& operator=(const TFileUse&) = delete;
};

/// A file that is open, and how to close it.
class TOpenFile {
public:
    /// @param close runs once: with this object, or at the end of the program if that comes first
    explicit TOpenFile(std::function<void()> close);
    ~TOpenFile();
    TOpenFile(const TOpenFile&) = delete;
    TOpenFile& operator=(const TOpenFile&) = delete;

private:
    friend class TFilesAtEnd;
    std::function<void()> FClose; ///< nil once it is closed
};

/// To be called when a library that reads files has been set up: the end of the program, as told above, then comes
/// before the end of that library.
void CloseFilesBeforeLibraries();

} // namespace lmx
