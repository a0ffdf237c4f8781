#include <lmx/Colour/lmxBitmap32RasterRenderer.h>

#include <lmx/Colour/Steps/Private/lmxColorTable.h>
#include <lmx/Colour/Steps/Private/lmxLayerOpacity.h>
#include <lmx/Colour/Steps/Private/lmxStepwiseColorCalculator.h>
#include <lmx/Colour/lmxBaseColorCalculator.h>
#include <lmx/Colour/lmxMapData.h>
#include <lmx/Colour/lmxRasterRows.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Runtime/Private/lmxAvx2.h>
#include <lmx/Runtime/Private/lmxRowBands.h>
#include <lmx/Runtime/lmxExceptions.h>

#include <algorithm>
#include <memory>
#include <span>
#include <vector>

namespace lmx {

namespace {

void CheckArguments(const ICookieData* cookie, const IMapData* data, const IBaseColorCalculator* colorCalc) {
    if (!cookie || !data)
        throw EArgumentException(QStringLiteral("Cookie or data is null"));
    if (!colorCalc)
        throw EArgumentException(QStringLiteral("ColorCalc is null"));
    if (cookie->GetWidth() != data->GetWidth() || cookie->GetHeight() != data->GetHeight())
        throw EArgumentException(QStringLiteral("Cookie and data size does not match"));
}

/// The rule: each cell for itself.
void RenderCells(const ICookieData& cookie, const IMapData& data, const TLayerOpacity& opacity,
                 const IBaseColorCalculator& colorCalc, TBitmap32& image) {
    for (std::int32_t y = 0; y < image.GetHeight(); ++y) {
        TColor32* row = image.ScanLine(y);
        for (std::int32_t x = 0; x < image.GetWidth(); ++x) {
            const bool holdsData = cookie.GetCookieCell(x, y) == 1;
            row[x] = holdsData ? opacity.Fade(colorCalc.GetColor(data.GetMapCell(x, y))) : 0;
        }
    }
}

/// The rows of cookies and numbers, asked for in advance on the thread that makes this: other threads then ask here,
/// not the host's data.
class TKnownRows final : public IRasterRows {
public:
    TKnownRows(const ICookieData& cookie, const IMapData& data) {
        const auto* cookieRows = dynamic_cast<const IRasterRows*>(&cookie);
        const auto* dataRows = dynamic_cast<const IRasterRows*>(&data);
        if (!cookieRows || !dataRows)
            return;
        const std::int32_t height = data.GetHeight();
        FCookieRows.reserve(static_cast<std::size_t>(height));
        FMapRows.reserve(static_cast<std::size_t>(height));
        for (std::int32_t y = 0; y < height; ++y) {
            FCookieRows.push_back(cookieRows->GetCookieRow(y));
            FMapRows.push_back(dataRows->GetMapRow(y));
            FIsComplete = FCookieRows.back() && FMapRows.back();
            if (!FIsComplete)
                return;
        }
    }

    /// Whether there are rows, and all of them are in memory.
    bool IsComplete() const { return FIsComplete; }

    const float* GetMapRow(std::int32_t y) const override { return FMapRows[static_cast<std::size_t>(y)]; }
    const std::uint8_t* GetCookieRow(std::int32_t y) const override { return FCookieRows[static_cast<std::size_t>(y)]; }

private:
    std::vector<const float*> FMapRows;
    std::vector<const std::uint8_t*> FCookieRows;
    bool FIsComplete = false;
};

/// Reads cookies and numbers in blocks: from rows in memory where there are any, else cell by cell, the numbers of the
/// cells with data only.
class TBlockReader {
public:
    TBlockReader(const ICookieData& cookie, const IMapData& data)
        : FCookie(cookie),
          FData(data),
          FCookieRows(dynamic_cast<const IRasterRows*>(&cookie)),
          FDataRows(dynamic_cast<const IRasterRows*>(&data)),
          FWidth(data.GetWidth()),
          FHeight(data.GetHeight()) {}
    /// Reads from complete rows, on any thread.
    TBlockReader(const ICookieData& cookie, const IMapData& data, const TKnownRows& rows, std::int32_t width,
                 std::int32_t height)
        : FCookie(cookie),
          FData(data),
          FCookieRows(&rows),
          FDataRows(&rows),
          FWidth(width),
          FHeight(height) {}

    /// Reads `count` cells of row `y` from column `x` on.
    void Read(std::int32_t x, std::int32_t y, std::size_t count) {
        const std::uint8_t* cookieRow = FCookieRows ? FCookieRows->GetCookieRow(y) : nullptr;
        const float* dataRow = FDataRows ? FDataRows->GetMapRow(y) : nullptr;
        if (!cookieRow || !dataRow)
            AskCells(x, y, count, cookieRow, dataRow);
        FCookies = {cookieRow ? cookieRow + x : FAskedCookies, count};
        FValues = {dataRow ? dataRow + x : FAskedValues, count};
        FNextValues = dataRow ? NextOf(dataRow, x + static_cast<std::int32_t>(count), y) : std::span<const float>();
    }

    std::span<const std::uint8_t> GetCookies() const { return FCookies; }
    std::span<const float> GetValues() const { return FValues; }         ///< any number where the cookie is not 1
    std::span<const float> GetNextValues() const { return FNextValues; } ///< what will be read, where it is in memory

private:
    /// From column `x` on or, behind the last one, from the next row.
    std::span<const float> NextOf(const float* row, std::int32_t x, std::int32_t y) const {
        if (x < FWidth)
            return {row + x, static_cast<std::size_t>(FWidth - x)};
        const float* nextRow = y + 1 < FHeight ? FDataRows->GetMapRow(y + 1) : nullptr;
        return {nextRow, nextRow ? static_cast<std::size_t>(FWidth) : 0};
    }

    void AskCells(std::int32_t x, std::int32_t y, std::size_t count, const std::uint8_t* cookieRow,
                  const float* dataRow) {
        for (std::size_t i = 0; i < count; ++i) {
            const auto column = x + static_cast<std::int32_t>(i);
            FAskedCookies[i] = cookieRow ? cookieRow[column] : FCookie.GetCookieCell(column, y);
            if (!dataRow && FAskedCookies[i] == 1)
                FAskedValues[i] = FData.GetMapCell(column, y);
        }
    }

    const ICookieData& FCookie;
    const IMapData& FData;
    const IRasterRows* FCookieRows;
    const IRasterRows* FDataRows;
    std::int32_t FWidth;
    std::int32_t FHeight;
    std::uint8_t FAskedCookies[TColorTable::BlockSize] = {};
    float FAskedValues[TColorTable::BlockSize] = {};
    std::span<const std::uint8_t> FCookies;
    std::span<const float> FValues;
    std::span<const float> FNextValues;
};

/// The colours of the cells with data, 0 elsewhere.
[[gnu::always_inline]] inline void CutOutInLanes(const TColor32* colors, std::span<const std::uint8_t> cookies,
                                                 TColor32* pixels) {
    for (std::size_t i = 0; i < cookies.size(); ++i)
        pixels[i] = colors[i] & (cookies[i] == 1 ? ~TColor32{0} : 0);
}

#ifdef LMX_HAS_AVX2_KERNELS
LMX_AVX2 void CutOutByEights(const TColor32* colors, std::span<const std::uint8_t> cookies, TColor32* pixels) {
    CutOutInLanes(colors, cookies, pixels);
}
#endif

void CutOut(const TColor32* colors, std::span<const std::uint8_t> cookies, TColor32* pixels) {
#ifdef LMX_HAS_AVX2_KERNELS
    if (HasAvx2())
        return CutOutByEights(colors, cookies, pixels);
#endif
    CutOutInLanes(colors, cookies, pixels);
}

/// Rows first .. end - 1 of the same picture from colours that are known in advance.
void RenderTableRows(TBlockReader reader, const TColorTable& table, std::int32_t first, std::int32_t end,
                     TBitmap32& image) {
    TColor32 colors[TColorTable::BlockSize];
    constexpr auto BlockSize = static_cast<std::int32_t>(TColorTable::BlockSize);
    for (std::int32_t y = first; y < end; ++y) {
        for (std::int32_t x = 0; x < image.GetWidth(); x += BlockSize) {
            const auto count = static_cast<std::size_t>(std::min(BlockSize, image.GetWidth() - x));
            reader.Read(x, y, count);
            table.GetColors(reader.GetValues(), colors, reader.GetNextValues());
            CutOut(colors, reader.GetCookies(), image.ScanLine(y) + x);
        }
    }
}

void RenderTable(const ICookieData& cookie, const IMapData& data, const TColorTable& table, TBitmap32& image) {
    const std::int32_t width = image.GetWidth();
    const std::int32_t height = image.GetHeight();
    if (TRowBands::Pays(height, width)) {
        const TKnownRows rows(cookie, data);
        if (rows.IsComplete())
            return TRowBands::Run(height, width, [&](std::int32_t first, std::int32_t end) {
                RenderTableRows(TBlockReader(cookie, data, rows, width, height), table, first, end, image);
            });
    }
    RenderTableRows(TBlockReader(cookie, data), table, 0, height, image);
}

std::shared_ptr<const TColorTable> TableOf(const IBaseColorCalculator& colorCalc, const TLayerOpacity& opacity) {
    const auto* stepwise = dynamic_cast<const TStepwiseColorCalculator*>(&colorCalc);
    return stepwise ? stepwise->GetColorTable(opacity) : nullptr;
}

} // namespace

std::unique_ptr<TBitmap32> TBitmap32RasterRenderer::Render(const ICookieData* cookie, const IMapData* data,
                                                           float opacity, const IBaseColorCalculator* colorCalc) const {
    CheckArguments(cookie, data, colorCalc);
    auto image = std::make_unique<TBitmap32>(cookie->GetWidth(), cookie->GetHeight()); // its pixels read 0
    image->SetDrawMode(TDrawMode::dmBlend);
    Render(cookie, data, opacity, colorCalc, image.get());
    return image;
}

void TBitmap32RasterRenderer::Render(const ICookieData* cookie, const IMapData* data, float opacity,
                                     const IBaseColorCalculator* colorCalc, TBitmap32* image) const {
    CheckArguments(cookie, data, colorCalc);
    if (!image)
        throw EArgumentException(QStringLiteral("Image is null"));
    if (cookie->GetWidth() != image->GetWidth() || cookie->GetHeight() != image->GetHeight())
        throw EArgumentException(QStringLiteral("Cookie and Image size does not match"));
    const TLayerOpacity layerOpacity(opacity);
    if (const std::shared_ptr<const TColorTable> table = TableOf(*colorCalc, layerOpacity))
        RenderTable(*cookie, *data, *table, *image);
    else
        RenderCells(*cookie, *data, layerOpacity, *colorCalc, *image);
}

std::shared_ptr<IRasterRenderer> TBitmap32RasterRendererFactory::GetObject() {
    return std::make_shared<TBitmap32RasterRenderer>();
}

} // namespace lmx
