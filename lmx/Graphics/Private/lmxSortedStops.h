#pragma once

#include <lmx/Graphics/lmxGradient.h>

#include <cstddef>
#include <span>
#include <vector>

namespace lmx {

/// The stops that give a gradient its colours, by location; those at one location in list order. Finds the neighbours
/// of a position by halving.
class TSortedStops {
public:
    /// Stops whose location is no finite number are left out.
    explicit TSortedStops(std::span<const TColorStop> stops);

    const std::vector<TColorStop>& GetStops() const { return FStops; }

    /// Colour of the gradient at a position; 0 without a stop and for a position that is no number.
    TColor32 GetColor(double position) const;

private:
    std::vector<TColorStop> FStops;
    std::vector<double> FLocations; ///< of the stops, close together for the search
};

} // namespace lmx
