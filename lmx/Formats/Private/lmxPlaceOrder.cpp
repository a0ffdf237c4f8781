#include <lmx/Formats/Private/lmxPlaceOrder.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

namespace lmx {

namespace {

constexpr std::uint32_t GridSize = 65536;
constexpr std::size_t FewItems = 64; // of which one run of vertices may consist

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

// How far along the curve of Hilbert a cell lies: it goes through all cells of the grid, always to a neighbour.
std::uint32_t WayTo(std::uint32_t cell) {
    std::uint32_t x = cell >> 16U;
    std::uint32_t y = cell & 0xFFFFU;
    std::uint32_t way = 0;
    for (std::uint32_t half = GridSize / 2; half > 0; half /= 2) {
        const std::uint32_t right = (x & half) != 0 ? 1 : 0;
        const std::uint32_t upper = (y & half) != 0 ? 1 : 0;
        way = way << 2U | ((3 * right) ^ upper);
        if (upper == 0) { // the lower quarters hold the curve turned, and the right one mirrored as well
            if (right == 1) {
                x = ~x;
                y = ~y;
            }
            std::swap(x, y);
        }
    }
    return way;
}

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
    std::uint64_t given = 0;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        ways[i] = std::uint64_t{WayTo(cells[i])} << 32U | i;
        given += i > 0 ? Distance(cells[i - 1], cells[i]) : 0;
    }
    SortByUpperHalf(ways);
    std::vector<std::uint32_t> order(cells.size());
    std::uint64_t ordered = 0;
    for (std::size_t i = 0; i < order.size(); ++i) {
        order[i] = static_cast<std::uint32_t>(ways[i]);
        ordered += i > 0 ? Distance(cells[order[i - 1]], cells[order[i]]) : 0;
    }
    if (2 * ordered >= given)
        order.clear();
    return order;
}

} // namespace lmx
