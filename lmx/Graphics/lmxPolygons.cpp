#include <lmx/Graphics/lmxPolygons.h>

#include <lmx/Graphics/Private/lmxCoverage.h>
#include <lmx/Graphics/Private/lmxPixelRows.h>
#include <lmx/Graphics/Private/lmxStroke.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Runtime/Private/lmxMemory.h>

#include <cmath>
#include <numbers>

namespace lmx {

namespace {

/// Share of a pixel that is filled, in 65536ths.
std::uint32_t FilledShare(double area, TPolyFillMode fillMode) {
    constexpr std::uint64_t one = 0x10000;
    const auto share = static_cast<std::uint64_t>(std::abs(area) * one);
    if (fillMode == TPolyFillMode::pfWinding)
        return static_cast<std::uint32_t>(std::min(share, one));
    const auto folded = static_cast<std::uint32_t>(share & 0x1FFFF);
    return folded < one ? folded : folded ^ 0x1FFFF;
}

/// The one place where coverage becomes alpha: linear, the whole share gives the colour's own alpha.
TColor32 CoveredColor(TColor32 color, std::uint32_t share) {
    return SetAlpha(color, static_cast<int>((share * AlphaComponent(color) * 257U) >> 24));
}

void Fill(TBitmap32& bitmap, std::span<const TFloatPoints> contours, TColor32 color, TPolyFillMode fillMode) {
    TCoverage coverage(bitmap.GetWidth(), bitmap.GetHeight());
    for (const TFloatPoints& contour : contours)
        if (contour.size() >= 3)
            coverage.AddContour(contour);
    const auto fillRow = bitmap.GetCombineMode() == TCombineMode::cmMerge ? PixelRows::MergeFill : PixelRows::BlendFill;
    coverage.Sweep([&](std::int32_t y, std::int32_t x, std::size_t count, double area) {
        fillRow(bitmap.ScanLine(y) + x, count, CoveredColor(color, FilledShare(area, fillMode)));
    });
}

} // namespace

void PolygonFS(TBitmap32& bitmap, std::span<const TFloatPoint> points, TColor32 color, TPolyFillMode fillMode) {
    WithinMemory([&] {
        const TFloatPoints contour(points.begin(), points.end());
        Fill(bitmap, {&contour, 1}, color, fillMode);
    });
}

void PolyPolygonFS(TBitmap32& bitmap, std::span<const TFloatPoints> contours, TColor32 color, TPolyFillMode fillMode) {
    WithinMemory([&] { Fill(bitmap, contours, color, fillMode); });
}

void PolylineFS(TBitmap32& bitmap, std::span<const TFloatPoint> points, TColor32 color, bool closed,
                const TStroke& stroke) {
    WithinMemory([&] {
        Fill(bitmap, StrokeContours(points, closed, stroke, bitmap.GetBounds()), color, TPolyFillMode::pfWinding);
    });
}

void PolyPolylineFS(TBitmap32& bitmap, std::span<const TFloatPoints> lines, TColor32 color, bool closed,
                    const TStroke& stroke) {
    WithinMemory([&] {
        std::vector<TFloatPoints> contours;
        for (const TFloatPoints& line : lines)
            for (TFloatPoints& contour : StrokeContours(line, closed, stroke, bitmap.GetBounds()))
                contours.push_back(std::move(contour));
        Fill(bitmap, contours, color, TPolyFillMode::pfWinding);
    });
}

TFloatPoints CirclePolygon(double centerX, double centerY, double radius) {
    TFloatPoints points = WithinMemory([&] { return TFloatPoints(static_cast<std::size_t>(CircleSteps(radius))); });
    for (std::size_t i = 0; i < points.size(); ++i) {
        const double angle = 2 * std::numbers::pi * static_cast<double>(i) / static_cast<double>(points.size());
        points[i] = {centerX + radius * std::cos(angle), centerY + radius * std::sin(angle)};
    }
    return points;
}

} // namespace lmx
