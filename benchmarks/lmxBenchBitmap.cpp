// What drawing a large raster onto the view's buffer costs, as multiples of clearing that buffer. The aim is five times
// that or less, however large the source is: only the visible destination counts. A whole raster that does not fit the
// processor's caches has a floor of its own, which is printed with it: each line of the cache with a pixel that is
// shown has to come out of memory. Up to a sixteenth of the size that is every line of the rows shown, so the floor
// rises with the source's width; beyond that it does not. What is kept for the next paint (TReducedPictures) has no
// such floor.

#include <benchmarks/Measuring.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Graphics/lmxPolygons.h>

#include <algorithm>
#include <functional>
#include <iomanip>
#include <iostream>
#include <string>

namespace {

using namespace lmx;
using namespace lmx::bench;

TBitmap32 MakeRaster(std::int32_t width, std::int32_t height, std::uint32_t alphaBits, TDrawMode mode) {
    TBitmap32 raster(width, height);
    std::uint32_t random = 1;
    for (std::int32_t y = 0; y < height; ++y)
        for (std::int32_t x = 0; x < width; ++x) {
            random = random * 1664525U + 1013904223U;
            raster.Pixel(x, y) = (random >> 8 & 0x00FFFFFFU) | alphaBits;
        }
    raster.SetDrawMode(mode);
    return raster;
}

/// Runs the action and a Clear in turns, so that both see the same machine, and prints the ratio of the best times.
void Report(const char* name, TBitmap32& buffer, const std::function<void()>& action) {
    constexpr int rounds = 40;
    TBestTime bestClear;
    TBestTime bestAction;
    for (int i = 0; i < rounds; ++i) {
        bestClear.Measure([&] { buffer.Clear(clBlack32); });
        bestAction.Measure(action);
    }
    std::cout << std::left << std::setw(64) << name << std::right << std::fixed << std::setprecision(2) << std::setw(8)
              << bestAction / bestClear << " x Clear\n";
}

/// One pixel of each cache line that a picture of that size shows something of: what any stretch has to wait for.
void ReadShownLines(const TBitmap32& source, std::int32_t width, std::int32_t height) {
    constexpr std::int32_t cacheLine = 64 / sizeof(TColor32);
    const std::int32_t step = std::max(cacheLine, source.GetWidth() / width);
    TColor32 sum = 0;
    for (std::int32_t y = 0; y < height; ++y) {
        const TColor32* row = source.ScanLine(y * source.GetHeight() / height);
        for (std::int32_t x = 0; x < source.GetWidth(); x += step)
            sum += row[x];
    }
    [[maybe_unused]] static volatile TColor32 sink; // or the compiler would leave the reading out
    sink = sum;
}

void ReportStretches(std::int32_t width, std::int32_t height) {
    TBitmap32 buffer(width, height);
    const TBitmap32 opaque = MakeRaster(Sized(4320), Sized(2160), clBlack32, TDrawMode::dmOpaque);
    const TBitmap32 blendOpaque = MakeRaster(Sized(4320), Sized(2160), clBlack32, TDrawMode::dmBlend);
    const TBitmap32 half = MakeRaster(Sized(4320), Sized(2160), 0x80000000U, TDrawMode::dmBlend);
    TBitmap32 faded = half;
    faded.SetMasterAlpha(128);
    const TRect whole = half.GetBounds();
    const TRect fit = buffer.GetBounds();
    const TWideRect zoomed(-700'000, -300'000, 4'320'000, 2'160'000);
    const TWideRect closeUp(-70'000'000'000, -30'000'000'000, 432'000'000'000, 216'000'000'000);

    std::cout << "4320 x 2160 onto " << width << " x " << height << '\n';
    Report("  the floor: reading the source memory that is shown, all rows", buffer,
           [&] { ReadShownLines(opaque, width, height); });
    Report("  whole, dmOpaque", buffer, [&] { buffer.Draw(fit, whole, opaque); });
    Report("  whole, dmBlend, all pixels opaque", buffer, [&] { buffer.Draw(fit, whole, blendOpaque); });
    Report("  whole, dmBlend, half transparent", buffer, [&] { buffer.Draw(fit, whole, half); });
    Report("  whole, dmBlend, half transparent, master alpha 128", buffer, [&] { buffer.Draw(fit, whole, faded); });
    Report("  zoomed, dmOpaque", buffer, [&] { buffer.Draw(zoomed, whole, opaque); });
    Report("  zoomed, dmBlend, half transparent", buffer, [&] { buffer.Draw(zoomed, whole, half); });
    Report("  one cell fills the view, dmBlend, half transparent", buffer, [&] { buffer.Draw(closeUp, whole, half); });
    Report("  unstretched, dmOpaque", buffer, [&] { buffer.Draw(0, 0, opaque); });
    Report("  unstretched, dmBlend, half transparent", buffer, [&] { buffer.Draw(0, 0, half); });
}

void ReportSourceSizes() {
    TBitmap32 buffer(Sized(1920), Sized(1080));
    std::cout << "The same destination from other sources, dmBlend, half transparent\n";
    const auto report = [&](std::int32_t width, std::int32_t height) {
        const TBitmap32 source = MakeRaster(width, height, 0x80000000U, TDrawMode::dmBlend);
        const std::string title = "  " + std::to_string(width) + " x " + std::to_string(height);
        Report((title + ", the floor").c_str(), buffer, [&] { ReadShownLines(source, 1920, 1080); });
        Report(title.c_str(), buffer, [&] { buffer.Draw(buffer.GetBounds(), source.GetBounds(), source); });
    };
    report(360, 180);
    report(Sized(4320), Sized(2160));
    report(Sized(12960), Sized(6480));
}

void ReportShapes() {
    TBitmap32 buffer(Sized(1920), Sized(1080));
    std::cout << "Shapes on 1920 x 1080\n";
    Report("  FillRectTS of all, half transparent", buffer,
           [&] { buffer.FillRectTS(buffer.GetBounds(), 0x80336699U); });
    Report("  PolygonFS: a circle of radius 500", buffer,
           [&] { PolygonFS(buffer, CirclePolygon(960, 540, 500), 0x80336699U); });
    Report("  LineToS: 1000 lines across", buffer, [&] {
        for (int i = 0; i < 1000; ++i) {
            buffer.MoveTo(i, -100'000'000);
            buffer.LineToS(1919 - i, 100'000'000);
        }
    });
    Report("  LineToFS: 100 lines across", buffer, [&] {
        for (int i = 0; i < 100; ++i) {
            buffer.MoveToF(i, -1e8);
            buffer.LineToFS(1919 - i, 1e8);
        }
    });
}

} // namespace

int main() {
    ReportStretches(Sized(1920), Sized(1080));
    ReportStretches(Sized(3840), Sized(2160));
    ReportSourceSizes();
    ReportShapes();
}
