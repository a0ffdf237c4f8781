#include <lmx/Graphics/lmxBitmap32.h>

#include <lmx/Graphics/Private/lmxPixelRows.h>

#include <algorithm>

namespace lmx {

bool TBitmap32::SetSize(std::int32_t width, std::int32_t height) {
    if (std::max(width, 0) == GetWidth() && std::max(height, 0) == GetHeight())
        return false;
    FMemory.SetSize(width, height);
    return true;
}

void TBitmap32::Clear(TColor32 color) {
    PixelRows::Fill(FMemory.GetPixels(), FMemory.GetCount(), color);
}

TColor32 TBitmap32::GetPixelS(std::int32_t x, std::int32_t y) const {
    return GetBounds().Contains({x, y}) ? Pixel(x, y) : FOuterColor;
}

void TBitmap32::SetPixelS(std::int32_t x, std::int32_t y, TColor32 color) {
    if (GetBounds().Contains({x, y}))
        Pixel(x, y) = color;
}

/// Clips the rectangle and hands each row of it to fillRow(first pixel, count).
template<class Fill>
void TBitmap32::FillRows(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2, Fill fillRow) {
    x1 = std::max(x1, 0);
    y1 = std::max(y1, 0);
    x2 = std::min(x2, GetWidth());
    y2 = std::min(y2, GetHeight());
    if (x1 >= x2)
        return;
    for (std::int32_t y = y1; y < y2; ++y)
        fillRow(ScanLine(y) + x1, static_cast<std::size_t>(x2 - x1));
}

void TBitmap32::FillRectS(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2, TColor32 color) {
    FillRows(x1, y1, x2, y2, [color](TColor32* row, std::size_t count) { PixelRows::Fill(row, count, color); });
}

void TBitmap32::FillRectTS(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2, TColor32 color) {
    const auto fillRow = FCombineMode == TCombineMode::cmMerge ? PixelRows::MergeFill : PixelRows::BlendFill;
    FillRows(x1, y1, x2, y2, [=](TColor32* row, std::size_t count) { fillRow(row, count, color); });
}

namespace {

/// The outermost pixels of a rectangle as up to four rectangles that share none.
template<class Fill>
void ForEachFrameSide(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2, Fill fill) {
    if (x1 >= x2 || y1 >= y2)
        return;
    fill(x1, y1, x2, y1 + 1);
    if (y2 - 1 == y1)
        return;
    fill(x1, y2 - 1, x2, y2);
    fill(x1, y1 + 1, x1 + 1, y2 - 1);
    if (x2 - 1 != x1)
        fill(x2 - 1, y1 + 1, x2, y2 - 1);
}

} // namespace

void TBitmap32::FrameRectS(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2, TColor32 color) {
    ForEachFrameSide(x1, y1, x2, y2, [=, this](auto left, auto top, auto right, auto bottom) {
        FillRectS(left, top, right, bottom, color);
    });
}

void TBitmap32::FrameRectTS(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2, TColor32 color) {
    ForEachFrameSide(x1, y1, x2, y2, [=, this](auto left, auto top, auto right, auto bottom) {
        FillRectTS(left, top, right, bottom, color);
    });
}

} // namespace lmx
