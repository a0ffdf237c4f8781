#pragma once

#include <cstdint>
#include <vector>

namespace lmx {

inline constexpr std::int32_t MostGaussianNumber = 4000; ///< finer than any model; the time grows by its square

/// The latitudes of a Gaussian grid of `2 * number` rows, from the north, in degrees: arc sines of the zeros of the
/// Legendre polynomial of that degree.
/// @throws EArgumentException "Number" if it is below 1 or above MostGaussianNumber.
std::vector<double> GaussianLatitudes(std::int32_t number);

} // namespace lmx
