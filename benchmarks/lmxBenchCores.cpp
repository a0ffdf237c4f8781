// What further cores bring to colouring a raster and to stretching pictures onto a large buffer: the time on the
// calling thread alone over the time on all cores. Beside it, in the same run and in the same bands, what they bring to
// filling and copying memory: no work that is bound by memory can gain more than these.

#include <benchmarks/Measuring.h>
#include <lmx/Colour/lmxBitmap32RasterRenderer.h>
#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/Colour/lmxMapData.h>
#include <lmx/Colour/lmxRasterRows.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Graphics/lmxGradient.h>
#include <lmx/Runtime/Private/lmxRowBands.h>
#include <lmx/Runtime/lmxCores.h>

#include <cstdio>
#include <cstring>
#include <functional>
#include <vector>

namespace {

constexpr int Repetitions = 40;
constexpr std::int32_t BufferWidth = lmx::bench::Sized(3840);
constexpr std::int32_t BufferHeight = lmx::bench::Sized(2160);

/// A raster in memory with some cells without data.
struct TRaster final : lmx::IMapData, lmx::ICookieData, lmx::IRasterRows {
    std::int32_t Width;
    std::int32_t Height;
    std::vector<float> Numbers;
    std::vector<std::uint8_t> Cookies;

    TRaster(std::int32_t width, std::int32_t height) : Width(width), Height(height) {
        const std::size_t count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
        for (std::size_t i = 0; i < count; ++i) {
            Numbers.push_back(static_cast<float>((i * 7919) % 10007) / 100);
            Cookies.push_back(i % 11 == 0 ? 0 : 1);
        }
    }
    std::size_t IndexOf(std::int32_t x, std::int32_t y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(Width) + static_cast<std::size_t>(x);
    }
    std::int32_t GetWidth() const override { return Width; }
    std::int32_t GetHeight() const override { return Height; }
    float GetMapCell(std::int32_t x, std::int32_t y) const override { return Numbers[IndexOf(x, y)]; }
    std::uint8_t GetCookieCell(std::int32_t x, std::int32_t y) const override { return Cookies[IndexOf(x, y)]; }
    const float* GetMapRow(std::int32_t y) const override { return Numbers.data() + IndexOf(0, y); }
    const std::uint8_t* GetCookieRow(std::int32_t y) const override { return Cookies.data() + IndexOf(0, y); }
};

lmx::TBitmap32 Picture(std::int32_t width, std::int32_t height, lmx::TDrawMode mode, unsigned alpha) {
    lmx::TBitmap32 bitmap(width, height);
    for (std::int32_t y = 0; y < height; ++y)
        for (std::int32_t x = 0; x < width; ++x)
            bitmap.Pixel(x, y) = alpha << 24 | static_cast<lmx::TColor32>((x * 193 + y * 389) & 0xFFFFFF);
    bitmap.SetDrawMode(mode);
    return bitmap;
}

/// Measures the work in turns on one core and on all, and prints what the others bring.
void Measure(const char* name, const std::function<void()>& work) {
    lmx::bench::TBestTime alone;
    lmx::bench::TBestTime together;
    for (int i = 0; i < Repetitions; ++i) {
        lmx::TCores::SetCount(1);
        alone.Measure(work);
        lmx::TCores::SetCount(0);
        together.Measure(work);
    }
    std::printf("%-44s %5.2f\n", name, alone / together);
}

/// Where the caller's code for each row is all there is.
void MeasureRows(const char* name, const std::function<void(std::int32_t row)>& work) {
    Measure(name, [&] {
        lmx::TRowBands::Run(BufferHeight, BufferWidth, [&](std::int32_t first, std::int32_t end) {
            for (std::int32_t row = first; row < end; ++row)
                work(row);
        });
    });
}

} // namespace

int main() {
    lmx::TCores::SetCount(0);
    std::printf("%d cores; time on one / time on all\n", lmx::TCores::GetCount());

    lmx::TBitmap32 buffer(BufferWidth, BufferHeight);
    const lmx::TBitmap32 same = Picture(BufferWidth, BufferHeight, lmx::TDrawMode::dmOpaque, 255);
    constexpr std::size_t rowBytes = BufferWidth * sizeof(lmx::TColor32);
    MeasureRows("yardstick: fill the buffer",
                [&](auto row) { std::memset(buffer.ScanLine(row), row & 255, rowBytes); });
    MeasureRows("yardstick: copy onto the buffer",
                [&](auto row) { std::memcpy(buffer.ScanLine(row), same.ScanLine(row), rowBytes); });

    const auto draw = [&](const char* name, const lmx::TBitmap32& picture) {
        Measure(name, [&] { buffer.Draw(buffer.GetBounds(), picture.GetBounds(), picture); });
    };
    draw("opaque, the same size", same);
    draw("opaque, enlarged", Picture(lmx::bench::Sized(1080), lmx::bench::Sized(540), lmx::TDrawMode::dmOpaque, 255));
    draw("blended, opaque pixels, enlarged",
         Picture(lmx::bench::Sized(1080), lmx::bench::Sized(540), lmx::TDrawMode::dmBlend, 255));
    draw("blended, half transparent, enlarged",
         Picture(lmx::bench::Sized(1080), lmx::bench::Sized(540), lmx::TDrawMode::dmBlend, 128));
    draw("blended, half transparent, the same size", Picture(BufferWidth, BufferHeight, lmx::TDrawMode::dmBlend, 128));
    draw("blended, half transparent, reduced",
         Picture(lmx::bench::Sized(8640), lmx::bench::Sized(4320), lmx::TDrawMode::dmBlend, 128));

    const TRaster raster(lmx::bench::Sized(4320), lmx::bench::Sized(2160));
    lmx::TBitmap32 colored(raster.Width, raster.Height);
    const auto calculator = lmx::TGradientColorCalculatorFactory::GetObject(
        0, 100, lmx::TGradientFactory::GetObject(std::vector<lmx::TColorStop>{{0, 0xFF0000FF}, {1, 0xFFFF0000}}));
    Measure("colouring 4320 x 2160 cells by a gradient",
            [&] { lmx::TBitmap32RasterRenderer().Render(&raster, &raster, 0.8F, calculator.get(), &colored); });
    return 0;
}
