#pragma once

#include <mutex>
#include <optional>
#include <utility>

namespace lmx {

/// Keeps what was last made of something, for as long as it would be made of the same again. For results that are
/// costly to make and of which few are needed in turn. Several threads may ask at once; they wait for each other.
template<class Key, class Result>
class TLatestResult {
public:
    /// What `make` gives for `key`, kept or new. Nothing is kept of a `make` that raises. Keys that do not equal
    /// themselves, as those with a NaN, always make anew.
    template<class Make>
    Result Get(Key key, Make&& make) {
        const std::lock_guard<std::mutex> guard(FMutex);
        if (!FLatest || !(FLatest->first == key)) {
            Result result = make();
            FLatest.emplace(std::move(key), std::move(result));
        }
        return FLatest->second;
    }

private:
    std::mutex FMutex;
    std::optional<std::pair<Key, Result>> FLatest;
};

} // namespace lmx
