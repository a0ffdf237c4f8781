#pragma once

#include <cstddef>
#include <optional>
#include <vector>

namespace lmx {

/// The bands of a palette over a range of values.
class TPaletteBands {
public:
    /// `count` may be 0, and the range may be any; GetBand tells what comes of it.
    TPaletteBands(float min, float max, std::size_t count);

    /// Whether a value has a band: `min <= value <= max`. A bound that is no number keeps nothing out; a value that is
    /// no number lies outside.
    bool Contains(float value) const { return !(value < FMin || value > FMax || value != value); }

    /// Band of a value inside, 0 to count - 1; never falls where the value rises.
    /// @throws EZeroDivide without bands, or if their width has vanished.
    /// @throws EInvalidOp if the range is a single value, or if a bound is no finite number and gives no band.
    /// @throws EArgumentException "Color index out of range" past the last band.
    std::size_t GetBand(float value) const;

    /// First value of each band, for a band that no value falls into the one that would follow it. Empty if the range
    /// is inverted and so holds no value; nothing if GetBand raises for a value inside.
    std::optional<std::vector<float>> GetStarts() const;

private:
    float FMin;
    float FMax;
    std::size_t FCount;
    float FWidth = 0; ///< of a band; 0 without bands
};

} // namespace lmx
