#pragma once

#include <csignal>
#include <sys/resource.h>

namespace lmx::tests {

/// Until the end of the scope no file grows beyond `bytes`: what a full disk looks like to a writer.
class TFileSizeLimit {
public:
    explicit TFileSizeLimit(rlim_t bytes) : FSignalHandler(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &FLimit);
        const rlimit limit = {bytes, FLimit.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    TFileSizeLimit(const TFileSizeLimit&) = delete;
    TFileSizeLimit& operator=(const TFileSizeLimit&) = delete;
    ~TFileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &FLimit);
        std::signal(SIGXFSZ, FSignalHandler);
    }

private:
    rlimit FLimit = {};
    void (*FSignalHandler)(int);
};

} // namespace lmx::tests
