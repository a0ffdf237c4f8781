#pragma once

#include <lmx/Formats/Idrisi/lmxIdrisiImages.h>

#include <memory>
#include <vector>

// Model output as a model gives it: a field on a Gaussian grid, and the even image that a map shows of it.

/// Where a Gaussian grid has its rows.
struct GaussianAxis {
    std::vector<double> Latitudes; ///< degrees, from north to south
    std::vector<double> Weights;   ///< of the quadrature in the sine of the latitude; their sum is 2
};

/// The Gaussian latitudes of a grid of `count` rows, at least 1: the arc sines of the roots of the Legendre polynomial
/// of that degree. Roots by Newton's iteration and weights 2 / ((1 - x^2) P'(x)^2) after Abramowitz and Stegun,
/// Handbook of Mathematical Functions (1964), 22.7.10, 22.8.5 and 25.4.29.
GaussianAxis MakeGaussianAxis(int count);

/// Height of the free surface, in metres, of the Rossby-Haurwitz wave of wave number 4 at its start; latitude and
/// longitude in degrees. Williamson et al. (1992), A standard test set for numerical approximations to the shallow
/// water equations in spherical geometry, J. Comput. Phys. 102, test case 6.
double RossbyHaurwitzHeight(double latitude, double longitude);

/// That wave on the grid of a T62 model (94 Gaussian latitudes, 192 longitudes), brought onto an even grid. Its first
/// meridian is given a second time at 360 degrees, so that the image has no seam.
std::unique_ptr<lmx::TRealImage> MakeGaussianField();
