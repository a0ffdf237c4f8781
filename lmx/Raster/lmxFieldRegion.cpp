#include <lmx/Raster/lmxFieldRegion.h>

#include <lmx/Raster/Private/lmxNewValues.h>
#include <lmx/Raster/lmxField.h>
#include <lmx/Runtime/lmxExtended.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <numbers>

namespace lmx {

namespace {

constexpr std::array<double, 3> Turns = {0, -360, 360};

std::size_t CountOf(std::int32_t count) {
    return static_cast<std::size_t>(std::max(0, count));
}

// Half an angle at a time: sin n - sin s = 2 sin((n - s) / 2) cos((n + s) / 2), which keeps all digits of thin zones.
double ZoneHeight(double north, double south) {
    const double half = std::numbers::pi / 360;
    return 2 * std::sin((north - south) * half) * std::cos((north + south) * half);
}

double HeightOf(const TField& field, double top, double bottom) {
    if (!field.IsGeographic)
        return top - bottom;
    return ZoneHeight(std::clamp(top, -90.0, 90.0), std::clamp(bottom, -90.0, 90.0));
}

double EdgeOfRow(const TField& field, std::int32_t row) {
    return static_cast<double>(field.Bounds.Top + (field.Bounds.Bottom - field.Bounds.Top) * row / field.Height);
}

double MiddleOfRow(const TField& field, std::int32_t row) {
    return static_cast<double>(field.Bounds.Top +
                               (field.Bounds.Bottom - field.Bounds.Top) * (row + 0.5L) / field.Height);
}

/// How far an edge lies off its place in a header, where edges are singles.
double RoundingOf(extended from, extended to) {
    return std::numeric_limits<float>::epsilon() * static_cast<double>(std::max(std::abs(from), std::abs(to)));
}

/// What is cut by the rounding of edges alone is not cut.
double Overlap(double low, double high, double from, double to, double rounding) {
    const double inside = std::min(high, to) - std::max(low, from);
    return inside > std::min(rounding, (high - low) / 1000) ? inside : 0;
}

} // namespace

TFieldRegion::TFieldRegion(const TField& field) : FShares(NewValues(CountOf(field.Width), 1.0)) {
    WeighRows(field, std::max(EdgeOfRow(field, 0), EdgeOfRow(field, field.Height)),
              std::min(EdgeOfRow(field, 0), EdgeOfRow(field, field.Height)));
}

TFieldRegion::TFieldRegion(const TField& field, const TMapArea& area) : FTurns(field.IsGeographic) {
    WeighRows(field, static_cast<double>(std::max(area.Top, area.Bottom)),
              static_cast<double>(std::min(area.Top, area.Bottom)));
    ShareColumns(field, static_cast<double>(std::min(area.Left, area.Right)),
                 static_cast<double>(std::max(area.Left, area.Right)));
}

TFieldRegion::TFieldRegion(const TField& field, std::span<const TFieldRing> rings) : TFieldRegion(field) {
    FTurns = field.IsGeographic;
    FLeft = static_cast<double>(field.Bounds.Left);
    FStep = static_cast<double>((field.Bounds.Right - field.Bounds.Left) / field.Width);
    WithinMemory([&] {
        FCrossings.resize(CountOf(field.Height));
        for (const TFieldRing& ring : rings)
            CrossRows(field, ring);
    });
    for (std::size_t row = 0; row < FCrossings.size(); ++row) {
        std::sort(FCrossings[row].begin(), FCrossings[row].end());
        if (FCrossings[row].empty())
            FRowWeights[row] = 0;
    }
}

// The weights are per unit of longitude: they are compared with one another only.
void TFieldRegion::WeighRows(const TField& field, double top, double bottom) {
    FRowWeights = NewValues<double>(CountOf(field.Height));
    const double rounding = RoundingOf(field.Bounds.Top, field.Bounds.Bottom);
    for (std::int32_t row = 0; row < field.Height; ++row) {
        const double high = std::max(EdgeOfRow(field, row), EdgeOfRow(field, row + 1));
        const double low = std::min(EdgeOfRow(field, row), EdgeOfRow(field, row + 1));
        FRowWeights[static_cast<std::size_t>(row)] =
            Overlap(low, high, bottom, top, rounding) > 0
                ? std::max(0.0, HeightOf(field, std::min(high, top), std::max(low, bottom)))
                : 0.0;
    }
}

void TFieldRegion::ShareColumns(const TField& field, double west, double east) {
    FShares = NewValues<double>(CountOf(field.Width));
    const double rounding = RoundingOf(field.Bounds.Left, field.Bounds.Right);
    const auto edge = [&](std::int32_t column) {
        return static_cast<double>(field.Bounds.Left + (field.Bounds.Right - field.Bounds.Left) * column / field.Width);
    };
    for (std::int32_t column = 0; column < field.Width; ++column) {
        const double low = std::min(edge(column), edge(column + 1));
        const double high = std::max(edge(column), edge(column + 1));
        double inside = 0;
        for (const double turn : Turns)
            if (turn == 0 || FTurns)
                inside += Overlap(low, high, west + turn, east + turn, rounding);
        FShares[static_cast<std::size_t>(column)] = high > low ? std::min(1.0, inside / (high - low)) : 0.0;
    }
}

// An edge owns its lower end: a vertex on the middle of a row counts once.
void TFieldRegion::CrossRows(const TField& field, const TFieldRing& ring) {
    if (field.Height <= 0)
        return;
    const double rowsPerUnit =
        field.Height / static_cast<double>(field.Bounds.Bottom - field.Bounds.Top); // negative where Top is the north
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const TFieldVertex& a = ring[i];
        const TFieldVertex& b = ring[(i + 1) % ring.size()];
        const double rowA = (a.Y - static_cast<double>(field.Bounds.Top)) * rowsPerUnit;
        const double rowB = (b.Y - static_cast<double>(field.Bounds.Top)) * rowsPerUnit;
        if (!std::isfinite(rowA) || !std::isfinite(rowB))
            continue;
        const double last = field.Height - 1.0;
        const auto from = static_cast<std::int32_t>(std::clamp(std::min(rowA, rowB) - 1, 0.0, last));
        const auto to = static_cast<std::int32_t>(std::clamp(std::max(rowA, rowB) + 1, 0.0, last));
        for (std::int32_t row = from; row <= to; ++row) {
            const double y = MiddleOfRow(field, row);
            if ((a.Y <= y) == (b.Y <= y))
                continue;
            const double x = a.X + (b.X - a.X) * ((y - a.Y) / (b.Y - a.Y));
            if (std::isfinite(x))
                FCrossings[static_cast<std::size_t>(row)].push_back(x);
        }
    }
}

std::span<const double> TFieldRegion::GetShares(std::int32_t row) {
    if (FCrossings.empty())
        return FShares;
    const std::vector<double>& crossings = FCrossings[static_cast<std::size_t>(row)];
    for (std::size_t column = 0; column < FShares.size(); ++column) {
        const double x = FLeft + FStep * (static_cast<double>(column) + 0.5);
        const bool isInside = std::any_of(Turns.begin(), Turns.end(), [&](double turn) {
            const auto behind = std::upper_bound(crossings.begin(), crossings.end(), x + turn);
            return (turn == 0 || FTurns) && (behind - crossings.begin()) % 2 == 1;
        });
        FShares[column] = isInside ? 1.0 : 0.0;
    }
    return FShares;
}

} // namespace lmx
