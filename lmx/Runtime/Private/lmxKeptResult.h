#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <utility>

namespace lmx {

/// Keeps what was made of a source that counts its changes, for as long as the count stays. Several threads may ask at
/// once while the source does not change; asking for what is kept costs two comparisons.
template<class Result>
class TKeptResult {
public:
    /// What `make()` gives, kept or new. `count` never falls. Where it counts more than the changes of this source,
    /// `isStill(result)` says whether the kept result is good all the same; only then may others change while it is
    /// asked for. Nothing new is kept of a `make` that raises.
    template<class Make, class IsStill>
    const Result& Get(std::uint64_t count, Make&& make, IsStill&& isStill) {
        const TKept* kept = FLatest.load(std::memory_order_acquire);
        if (kept && kept->Count.load(std::memory_order_relaxed) == count) [[likely]]
            return kept->Value;
        const std::lock_guard<std::mutex> guard(FMutex);
        if (!FKept ||
            (FKept->Count.load(std::memory_order_relaxed) != count && !isStill(std::as_const(FKept->Value)))) {
            auto made = std::make_unique<TKept>(make());
            FLatest.store(made.get(), std::memory_order_release);
            FKept = std::move(made);
        }
        FKept->Count.store(count, std::memory_order_relaxed);
        return FKept->Value;
    }

    /// The same for a source whose changes alone are counted.
    template<class Make>
    const Result& Get(std::uint64_t count, Make&& make) {
        return Get(count, std::forward<Make>(make), [](const Result&) { return false; });
    }

private:
    struct TKept {
        explicit TKept(Result value) : Value(std::move(value)) {}

        Result Value;
        std::atomic<std::uint64_t> Count = 0;
    };

    std::atomic<const TKept*> FLatest = nullptr;
    std::mutex FMutex;
    std::unique_ptr<TKept> FKept;
};

} // namespace lmx
