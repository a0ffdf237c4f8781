#pragma once

#include <lmx/Runtime/lmxExport.h>

#include <array>
#include <cstddef>
#include <span>

namespace lmx {

/// The least and the greatest of the numbers met that are values (TSpatialConst::IsValue).
class LMX_EXPORT TFoundRange {
public:
    TFoundRange();

    void Add(std::span<const float> numbers);

    bool HasValues() const { return GetLeast() <= GetGreatest(); }
    float GetLeast() const;    ///< infinity before any value
    float GetGreatest() const; ///< minus infinity before any value

private:
    static constexpr std::size_t Lanes = 16; // which do not wait for one another

    void AddTo(std::size_t lane, float number);

    std::array<float, Lanes> FLeast;
    std::array<float, Lanes> FGreatest;
};

} // namespace lmx
