#include "GaussianField.h"

#include <lmx/Climate/lmxSpatialConst.h>
#include <lmx/Raster/lmxGaussianToGridInterpolation.h>

#include <cmath>
#include <numbers>

namespace {

constexpr int LatitudeCount = 94; // T62
constexpr int LongitudeCount = 192;

/// A Legendre polynomial and its derivative at one point.
struct Legendre {
    double Value;
    double Slope;
};

Legendre LegendreAt(int degree, double x) {
    double before = 0;
    double value = 1;
    for (int n = 1; n <= degree; ++n) {
        const double next = ((2 * n - 1) * x * value - (n - 1) * before) / n;
        before = value;
        value = next;
    }
    return {value, degree * (x * value - before) / (x * x - 1)};
}

/// Root number `index`, counted from the greatest.
double LegendreRoot(int degree, int index) {
    double x = std::cos(std::numbers::pi * (index + 0.75) / (degree + 0.5));
    double step = 1;
    for (int i = 0; i < 20 && std::abs(step) > 1e-15; ++i) {
        const Legendre polynomial = LegendreAt(degree, x);
        step = polynomial.Value / polynomial.Slope;
        x -= step;
    }
    return x;
}

double Radians(double degrees) {
    return degrees * std::numbers::pi / 180;
}

} // namespace

GaussianAxis MakeGaussianAxis(int count) {
    GaussianAxis axis;
    for (int i = 0; i < count; ++i) {
        const double sine = LegendreRoot(count, i);
        const double slope = LegendreAt(count, sine).Slope;
        axis.Latitudes.push_back(std::asin(sine) * 180 / std::numbers::pi);
        axis.Weights.push_back(2 / ((1 - sine * sine) * slope * slope));
    }
    return axis;
}

double RossbyHaurwitzHeight(double latitude, double longitude) {
    constexpr double radius = 6.37122e6;  // of the earth, m
    constexpr double rotation = 7.292e-5; // of the earth, 1/s
    constexpr double gravity = 9.80616;   // m/s2
    constexpr double omega = 7.848e-6;    // of the zonal flow, 1/s; the wave's amplitude K has the same value
    constexpr double meanHeight = 8000;   // at the poles, m
    constexpr double r = 4;               // waves around the earth
    const double cosine = std::cos(Radians(latitude));
    const double square = cosine * cosine;
    const double power = std::pow(cosine, r);
    const double a = omega / 2 * (2 * rotation + omega) * square +
                     omega * omega / 4 * power *
                         (power * ((r + 1) * square + (2 * r * r - r - 2)) - 2 * r * r * std::pow(cosine, r - 2));
    const double b = 2 * (rotation + omega) * omega / ((r + 1) * (r + 2)) * power *
                     ((r * r + 2 * r + 2) - (r + 1) * (r + 1) * square);
    const double c = omega * omega / 4 * power * power * ((r + 1) * square - (r + 2));
    const double angle = r * Radians(longitude);
    return meanHeight + radius * radius / gravity * (a + b * std::cos(angle) + c * std::cos(2 * angle));
}

std::unique_ptr<lmx::TRealImage> MakeGaussianField() {
    const GaussianAxis axis = MakeGaussianAxis(LatitudeCount);
    const std::vector<float> latitudes(axis.Latitudes.begin(), axis.Latitudes.end());
    std::vector<float> longitudes;
    for (int i = 0; i <= LongitudeCount; ++i)
        longitudes.push_back(static_cast<float>(i) * 360 / LongitudeCount);
    std::vector<float> heights;
    for (const double latitude : axis.Latitudes)
        for (int i = 0; i <= LongitudeCount; ++i)
            heights.push_back(
                static_cast<float>(RossbyHaurwitzHeight(latitude, i % LongitudeCount * 360.0 / LongitudeCount)));
    // The rows beyond the last latitudes have no data; as flags they stay out of the range of values.
    auto image =
        lmx::InterpolateAndCreateImageFromGrid(latitudes, longitudes, heights, lmx::TSpatialConst::NoData, false);
    image->getHeader()->SetTitle(QStringLiteral("Rossby-Haurwitz wave, height of the free surface"));
    image->getHeader()->SetValueUnits(QStringLiteral("m"));
    return image;
}
