#pragma once

#include <lmx/Graphics/lmxColor32.h>

#include <cstddef>
#include <limits>
#include <vector>

namespace lmx {

/// A colouring whose colour changes at finitely many values: each step has its colour from its start (inside) to the
/// start of the next one. The first step starts at minus infinity. What is no number has a colour of its own.
class TColorSteps {
public:
    /// One step of one colour, which is also the colour of what is no number, now and later.
    explicit TColorSteps(TColor32 color) : FStarts{-Infinity}, FColors{color}, FNaNColor(color) {}

    /// Gives the values from `start` on another colour. Where `start` is not above the last step's start, the last
    /// step takes the colour; a start that is no number adds nothing.
    void Add(float start, TColor32 color) {
        if (!(start > FStarts.back()))
            return Replace(start, color);
        if (FColors.back() == color)
            return;
        FStarts.push_back(start);
        FColors.push_back(color);
    }

    /// Adds some steps of another colouring, of which the first starts above the last step and has another colour.
    void Add(const TColorSteps& other, std::size_t first, std::size_t end);

    /// Takes memory for so many steps.
    void Reserve(std::size_t count);

    std::size_t GetCount() const { return FStarts.size(); }            ///< at least 1
    const std::vector<float>& GetStarts() const { return FStarts; }    ///< ascending, the first minus infinity
    const std::vector<TColor32>& GetColors() const { return FColors; } ///< one for each start
    TColor32 GetNaNColor() const { return FNaNColor; }                 ///< of what is no number

    friend bool operator==(const TColorSteps&, const TColorSteps&) = default;

private:
    void Replace(float start, TColor32 color);

    static constexpr float Infinity = std::numeric_limits<float>::infinity();

    std::vector<float> FStarts;
    std::vector<TColor32> FColors;
    TColor32 FNaNColor;
};

} // namespace lmx
