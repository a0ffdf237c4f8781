#pragma once

#include <lmx/Colour/lmxBaseColorCalculator.h>
#include <lmx/Colour/lmxBitmap32RasterRenderer.h>
#include <lmx/Colour/lmxMapData.h>
#include <lmx/Formats/Idrisi/lmxAbstractImage.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <stdexcept>
#include <utility>
#include <vector>

// Rasters and calculators as a host would write them.

namespace lmx::tests {

/// Numbers in memory, behind the plain interface.
struct TTestMapData : IMapData {
    std::int32_t Width;
    std::int32_t Height;
    std::vector<float> Cells;

    TTestMapData(std::int32_t width, std::int32_t height, std::vector<float> cells = {})
        : Width(width),
          Height(height),
          Cells(std::move(cells)) {
        Cells.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    }
    float GetMapCell(std::int32_t x, std::int32_t y) const override {
        return Cells.at(static_cast<std::size_t>(y) * static_cast<std::size_t>(Width) + static_cast<std::size_t>(x));
    }
    std::int32_t GetWidth() const override { return Width; }
    std::int32_t GetHeight() const override { return Height; }
};

struct TTestCookieData : ICookieData {
    std::int32_t Width;
    std::int32_t Height;
    std::vector<std::uint8_t> Cells;

    TTestCookieData(std::int32_t width, std::int32_t height, std::vector<std::uint8_t> cells = {})
        : Width(width),
          Height(height),
          Cells(std::move(cells)) {
        Cells.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), 1);
    }
    std::uint8_t GetCookieCell(std::int32_t x, std::int32_t y) const override {
        return Cells.at(static_cast<std::size_t>(y) * static_cast<std::size_t>(Width) + static_cast<std::size_t>(x));
    }
    std::int32_t GetWidth() const override { return Width; }
    std::int32_t GetHeight() const override { return Height; }
};

/// Keeps the values it was asked for and gives the colours of a function.
struct TTestCalculator : IBaseColorCalculator {
    std::function<TColor32(float)> Color;
    mutable std::vector<float> Asked;

    explicit TTestCalculator(std::function<TColor32(float)> color) : Color(std::move(color)) {}
    TColor32 GetColor(float value) const override {
        Asked.push_back(value);
        return Color(value);
    }
    std::shared_ptr<IBaseColorCalculator> Clone() const override { return std::make_shared<TTestCalculator>(Color); }
};

struct TTestImage : TAbstractImage {
    std::vector<float> Cells;
    mutable int Reads = 0;

    TTestImage(std::int32_t width, std::int32_t height, std::vector<float> cells) : Cells(std::move(cells)) {
        getHeader()->SetWidth(width);
        getHeader()->SetHeight(height);
    }
    float GetCell(std::int32_t column, std::int32_t row) const override {
        ++Reads;
        if (column < 1 || column > getHeader()->GetWidth() || row < 1 || row > getHeader()->GetHeight())
            throw std::out_of_range("cell");
        return Cells.at(static_cast<std::size_t>((row - 1) * getHeader()->GetWidth() + column - 1));
    }
};

} // namespace lmx::tests
