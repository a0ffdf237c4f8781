#include <lmx/DataSources/Private/lmxGaussianLatitudes.h>

#include <lmx/Runtime/lmxExceptions.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace lmx {

namespace {

using std::numbers::pi_v;

/// The zero of the Legendre polynomial of a degree next to `guess`, by Newton. Abramowitz and Stegun, Handbook of
/// Mathematical Functions, 8.5.3 (recurrence) and 8.5.4 (derivative).
long double LegendreZero(std::int32_t degree, long double guess) {
    constexpr int mostSteps = 20; // four or five do
    constexpr long double precision = 1e-18L;
    long double x = guess;
    for (int i = 0; i < mostSteps; ++i) {
        long double before = 1;
        long double value = x;
        for (std::int32_t n = 2; n <= degree; ++n) {
            const auto order = static_cast<long double>(n);
            const long double next = ((2 * order - 1) * x * value - (order - 1) * before) / order;
            before = value;
            value = next;
        }
        const long double slope = static_cast<long double>(degree) * (x * value - before) / (x * x - 1);
        const long double step = value / slope;
        x -= step;
        if (std::abs(step) < precision)
            break;
    }
    return x;
}

} // namespace

std::vector<double> GaussianLatitudes(std::int32_t number) {
    if (number < 1 || number > MostGaussianNumber)
        throw EArgumentException(QStringLiteral("Number"));
    const std::int32_t degree = 2 * number;
    std::vector<double> latitudes(static_cast<std::size_t>(degree));
    for (std::int32_t i = 0; i < number; ++i) {
        const long double guess = std::cos(pi_v<long double> * (static_cast<long double>(i) + 0.75L) /
                                           (static_cast<long double>(degree) + 0.5L));
        const long double zero = LegendreZero(degree, guess);
        const auto latitude = static_cast<double>(std::asin(zero) * 180 / pi_v<long double>);
        latitudes[static_cast<std::size_t>(i)] = latitude;
        latitudes[static_cast<std::size_t>(degree - 1 - i)] = -latitude;
    }
    return latitudes;
}

} // namespace lmx
