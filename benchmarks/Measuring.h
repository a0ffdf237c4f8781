#pragma once

#include <algorithm>
#include <chrono>
#include <functional>
#include <limits>

// What all benchmarks measure with. Best times: whatever else the machine does only makes a run slower.

namespace lmx::bench {

using TClock = std::chrono::steady_clock;

#ifdef LMX_TINY_BENCHMARKS
inline constexpr bool IsTiny = true; // run once by the tests, to see that they run
#else
inline constexpr bool IsTiny = false;
#endif

/// A size or a count as it is measured; a fiftieth of it where the benchmarks only have to run.
constexpr int Sized(int full) {
    return IsTiny ? std::max(2, full / 50) : full;
}

inline double MillisecondsSince(TClock::time_point start) {
    return std::chrono::duration<double, std::milli>(TClock::now() - start).count();
}

inline double MillisecondsOf(const std::function<void()>& work) {
    const TClock::time_point start = TClock::now();
    work();
    return MillisecondsSince(start);
}

/// The best time so far of some work that is measured in turns with other work, so that all see the same machine.
class TBestTime {
public:
    void Measure(const std::function<void()>& work) { Take(MillisecondsOf(work)); }
    void Take(double milliseconds) { FMilliseconds = std::min(FMilliseconds, milliseconds); } ///< measured elsewhere

    double GetMilliseconds() const { return FMilliseconds; } ///< infinite before the first measurement

    /// How often the yardstick fits into this time.
    friend double operator/(const TBestTime& time, const TBestTime& yardstick) {
        return time.FMilliseconds / yardstick.FMilliseconds;
    }

private:
    double FMilliseconds = std::numeric_limits<double>::infinity();
};

inline double BestMilliseconds(int repetitions, const std::function<void()>& work) {
    TBestTime best;
    for (int i = 0; i < (IsTiny ? 1 : repetitions); ++i)
        best.Measure(work);
    return best.GetMilliseconds();
}

} // namespace lmx::bench
