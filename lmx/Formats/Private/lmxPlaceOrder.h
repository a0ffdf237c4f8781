#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace lmx {

/// A place to be ordered; finite.
struct TPlace {
    double X = 0;
    double Y = 0;
};

/// A grid of 65,536 x 65,536 cells over most of some places. A few that lie far outside do not make it coarse: they
/// count as places on its edge.
class TPlaceGrid {
public:
    /// By a sample of the places; none gives a grid of one cell.
    explicit TPlaceGrid(std::span<const TPlace> sample);

    /// Column in the upper and row in the lower 16 bits.
    std::uint32_t CellOf(const TPlace& place) const {
        return Step(place.X, FLeft, FColumnsPerUnit) << 16U | Step(place.Y, FBottom, FRowsPerUnit);
    }

private:
    static std::uint32_t Step(double value, double start, double stepsPerUnit) {
        const double step = (value - start) * stepsPerUnit;
        return step >= 65535 ? 65535 : step > 0 ? static_cast<std::uint32_t>(step) : 0;
    }

    double FLeft = 0;
    double FBottom = 0;
    double FColumnsPerUnit = 0;
    double FRowsPerUnit = 0;
};

/// The indexes of cells of a TPlaceGrid, in an order in which neighbours in the list are neighbours on the ground.
/// Empty if the order in which they come is about as good: the way from one to the next, all along, is not even halved.
std::vector<std::uint32_t> OrderCells(std::span<const std::uint32_t> cells);

/// The same of the `count` places that `placeOf(index)` gives.
template<class PlaceOf>
std::vector<std::uint32_t> OrderByPlace(std::size_t count, const PlaceOf& placeOf) {
    constexpr std::size_t SampleSize = 1024;
    std::array<TPlace, SampleSize> sample;
    const std::size_t sampled = count < SampleSize ? count : SampleSize;
    for (std::size_t i = 0; i < sampled; ++i)
        sample[i] = placeOf(i * count / sampled);
    const TPlaceGrid grid(std::span<const TPlace>(sample.data(), sampled));
    std::vector<std::uint32_t> cells(count);
    for (std::size_t i = 0; i < count; ++i)
        cells[i] = grid.CellOf(placeOf(i));
    return OrderCells(cells);
}

} // namespace lmx
