#pragma once

#include <QByteArray>
#include <QString>

#include <functional>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

namespace lmx {

/// Around each call into GDAL: what it has to say goes here instead of to the host's error handler, and the options
/// that keep it to the file itself hold for this thread. Everything of the host is as it was at the end of the scope.
class TQuietGdal {
public:
    TQuietGdal();
    ~TQuietGdal();
    TQuietGdal(const TQuietGdal&) = delete;
    TQuietGdal& operator=(const TQuietGdal&) = delete;

    /// The first error since construction: later ones are its consequences. Empty if there was none, or if GDAL gave
    /// none a text.
    const QString& FirstText() const { return FFirstText; }
    /// `problem`, with that text behind it in brackets.
    QString Explain(const QString& problem) const;

private:
    struct TOption {
        const char* Name;
        bool WasSet;
        QByteArray Before;
    };

    void SetOption(const char* name, const QByteArray& value);

    QString FFirstText;
    std::vector<TOption> FOptions;
};

/// Makes the drivers known that this room uses, once in the life of the process. From any thread.
void RegisterClimateDrivers();

/// One piece of work for the reader thread.
class TReaderJob {
public:
    virtual ~TReaderJob() = default;
    /// Takes it back. False if it has begun, or is over: then it goes on to its end, for no read stops inside a chunk.
    virtual bool Withdraw() = 0;
    /// Until the work is over. What it raised is raised here. Returns at once if it was withdrawn.
    virtual void Wait() = 0;
    virtual bool IsWithdrawn() const = 0;
};

/// Hands work to the one thread on which NetCDF, HDF5, Zarr and GRIB are read: their libraries run under one lock, and
/// HDF5 is quiet only on a thread that has been told so. Work runs in the order in which it was handed over; handed
/// over by work that runs there, it runs at once.
std::shared_ptr<TReaderJob> PostToReader(std::function<void()> work);

/// Ends the thread after the work that it has. From then on work runs at once, on the thread that hands it over.
void EndReader();

/// Posts and waits.
void RunOnReader(std::function<void()> work);

/// Posts, waits and gives the result.
template<class Work>
auto ReadOnReader(Work&& work) -> std::invoke_result_t<Work> {
    std::unique_ptr<std::invoke_result_t<Work>> result;
    RunOnReader([&] { result = std::make_unique<std::invoke_result_t<Work>>(work()); });
    return std::move(*result);
}

} // namespace lmx
