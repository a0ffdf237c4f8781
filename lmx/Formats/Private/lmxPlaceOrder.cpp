#include <lmx/Formats/Private/lmxPlaceOrder.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

namespace lmx {

namespace {

constexpr std::uint32_t GridSize = 65536;
constexpr std::size_t FewItems = 64;         // of which one run of vertices may consist
constexpr std::size_t ComparedSteps = 65536; // of a way; all of a longer one would tell the same

/// The range of a coordinate that holds all but the outermost parts of a sample, and half as much again on both sides.
struct TRange {
    double Start = 0;
    double StepsPerUnit = 0;

    explicit TRange(std::vector<double> values) {
        if (values.empty())
            return;
        std::ranges::sort(values);
        const std::size_t outermost = values.size() / 64;
        const double low = values[outermost];
        const double high = values[values.size() - 1 - outermost];
        const double width = high - low;
        Start = low - width / 2;
        StepsPerUnit = width > 0 ? GridSize / (2 * width) : 0;
        if (!std::isfinite(StepsPerUnit)) // a width next to nothing
            StepsPerUnit = 0;
    }
};

/// The curve of Hilbert goes through all cells of a grid, always to a neighbour. Each quarter of the grid holds the
/// same curve, the lower ones turned and the lower right one mirrored as well; so four bits of column and row at a
/// time, and whether the curve is turned or mirrored there, tell eight bits of how far along it a cell lies.
class THilbertCurve {
public:
    constexpr THilbertCurve() {
        for (unsigned state = 0; state < 4; ++state)
            for (unsigned nibbles = 0; nibbles < 256; ++nibbles)
                FSteps[state][nibbles] = StepOf(state, nibbles >> 4U, nibbles & 15U);
    }

    std::uint32_t WayTo(std::uint32_t cell) const {
        std::uint32_t way = 0;
        unsigned state = 0;
        for (unsigned shift = 16; shift > 0;) {
            shift -= 4;
            const TStep step = FSteps[state][(cell >> (16 + shift) & 15U) << 4U | (cell >> shift & 15U)];
            way = way << 8U | step.Way;
            state = step.State;
        }
        return way;
    }

private:
    struct TStep {
        std::uint8_t Way = 0;
        std::uint8_t State = 0; ///< of the next four bits: 1 mirrored, 2 turned
    };

    static constexpr TStep StepOf(unsigned state, unsigned column, unsigned row) {
        unsigned mirrored = state & 1U;
        unsigned turned = state >> 1U;
        unsigned way = 0;
        for (unsigned bit = 4; bit > 0;) {
            --bit;
            unsigned right = (column >> bit & 1U) ^ mirrored;
            unsigned upper = (row >> bit & 1U) ^ mirrored;
            if (turned != 0)
                std::swap(right, upper);
            way = way << 2U | ((3 * right) ^ upper);
            if (upper == 0) {
                mirrored ^= right;
                turned ^= 1U;
            }
        }
        return {static_cast<std::uint8_t>(way), static_cast<std::uint8_t>(turned << 1U | mirrored)};
    }

    std::array<std::array<TStep, 256>, 4> FSteps{};
};
constexpr THilbertCurve Curve;

std::uint64_t Distance(std::uint32_t a, std::uint32_t b) {
    const auto columns = static_cast<std::int64_t>(a >> 16U) - static_cast<std::int64_t>(b >> 16U);
    const auto rows = static_cast<std::int64_t>(a & 0xFFFFU) - static_cast<std::int64_t>(b & 0xFFFFU);
    return static_cast<std::uint64_t>(std::abs(columns) + std::abs(rows));
}

// Sorts by the upper 32 bits, 11 at a time; equal ones keep their order.
void SortByUpperHalf(std::vector<std::uint64_t>& items) {
    constexpr unsigned Bits = 11;
    constexpr std::uint64_t Mask = (1U << Bits) - 1;
    std::vector<std::uint64_t> other(items.size());
    for (unsigned shift = 32; shift < 64; shift += Bits) {
        std::array<std::size_t, Mask + 1> places{};
        for (const std::uint64_t item : items)
            ++places[item >> shift & Mask];
        std::size_t before = 0;
        for (std::size_t& place : places)
            before += std::exchange(place, before);
        for (const std::uint64_t item : items)
            other[places[item >> shift & Mask]++] = item;
        items.swap(other);
    }
}

} // namespace

TPlaceGrid::TPlaceGrid(std::span<const TPlace> sample) {
    std::vector<double> xs;
    std::vector<double> ys;
    for (const TPlace& place : sample) {
        xs.push_back(place.X);
        ys.push_back(place.Y);
    }
    const TRange columns(std::move(xs));
    const TRange rows(std::move(ys));
    FLeft = columns.Start;
    FColumnsPerUnit = columns.StepsPerUnit;
    FBottom = rows.Start;
    FRowsPerUnit = rows.StepsPerUnit;
}

std::vector<std::uint32_t> OrderCells(std::span<const std::uint32_t> cells) {
    if (cells.size() <= FewItems)
        return {};
    std::vector<std::uint64_t> ways(cells.size());
    for (std::size_t i = 0; i < cells.size(); ++i)
        ways[i] = std::uint64_t{Curve.WayTo(cells[i])} << 32U | i;
    SortByUpperHalf(ways);
    std::vector<std::uint32_t> order(cells.size());
    std::ranges::transform(ways, order.begin(), [](std::uint64_t way) { return static_cast<std::uint32_t>(way); });
    const std::size_t step = 1 + cells.size() / ComparedSteps;
    std::uint64_t given = 0;
    std::uint64_t ordered = 0;
    for (std::size_t i = 1; i < cells.size(); i += step) {
        given += Distance(cells[i - 1], cells[i]);
        ordered += Distance(cells[order[i - 1]], cells[order[i]]);
    }
    if (2 * ordered >= given)
        order.clear();
    return order;
}

} // namespace lmx
