#include <lmx/Climate/lmxSpatialConst.h>
#include <lmx/Colour/Steps/Private/lmxLayerOpacity.h>
#include <lmx/Colour/lmxBasicPaletteColorCalculator.h>
#include <lmx/Colour/lmxBitmap32RasterRenderer.h>
#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/Colour/lmxIdrisiImageMapData.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Graphics/lmxGradient.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Colour/RasterFakes.h>
#include <tests/Colour/StepwiseChecks.h>
#include <tests/Support/Printers.h>
#include <tests/Support/SharedCores.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <span>
#include <thread>
#include <utility>

namespace lmx {
namespace {

using tests::MessageOf;
using tests::TTestCalculator;
using tests::TTestCookieData;
using tests::TTestImage;
using tests::TTestMapData;

const TBitmap32RasterRenderer Renderer;

std::vector<TColor32> PixelsOf(const TBitmap32& bitmap) {
    std::vector<TColor32> pixels;
    for (std::int32_t y = 0; y < bitmap.GetHeight(); ++y)
        pixels.insert(pixels.end(), bitmap.ScanLine(y), bitmap.ScanLine(y) + bitmap.GetWidth());
    return pixels;
}

TColor32 NumberAsOpaqueColor(float value) {
    return 0xFF000000U + static_cast<TColor32>(value);
}

/// The only pixel of a raster of one cell.
TColor32 RenderOne(TColor32 color, float opacity) {
    const TTestCalculator calculator([color](float) { return color; });
    const TTestCookieData cookie(1, 1);
    const TTestMapData data(1, 1);
    return *Renderer.Render(&cookie, &data, opacity, &calculator)->ScanLine(0);
}

TEST(RasterRenderer, MakesAPixelOfEachCellWithRowZeroOnTop) {
    const TTestCookieData cookie(3, 2);
    const TTestMapData data(3, 2, {1, 2, 3, 4, 5, 6});
    const TTestCalculator calculator(NumberAsOpaqueColor);
    const auto image = Renderer.Render(&cookie, &data, 1, &calculator);
    EXPECT_EQ(image->GetWidth(), 3);
    EXPECT_EQ(image->GetHeight(), 2);
    EXPECT_EQ(image->GetDrawMode(), TDrawMode::dmBlend);
    EXPECT_EQ(PixelsOf(*image),
              (std::vector<TColor32>{0xFF000001U, 0xFF000002U, 0xFF000003U, 0xFF000004U, 0xFF000005U, 0xFF000006U}));
}

TEST(RasterRenderer, AsksAHostsCalculatorOnceForEachDataCellRowByRow) {
    const TTestCookieData cookie(3, 2, {1, 0, 1, 1, 1, 0});
    const TTestMapData data(3, 2, {1, 2, 3, 4, 5, 6});
    const TTestCalculator calculator(NumberAsOpaqueColor);
    Renderer.Render(&cookie, &data, 1, &calculator);
    EXPECT_EQ(calculator.Asked, (std::vector<float>{1, 3, 4, 5}));
}

TEST(RasterRenderer, AsksAHostsCalculatorForCachedCellsToo) {
    const TTestImage image(2, 2, {1, -9990, 3, 4});
    const TIdrisiImageMapData data(&image, true);
    const TTestCalculator calculator(NumberAsOpaqueColor);
    const auto picture = Renderer.Render(&data, &data, 1, &calculator);
    EXPECT_EQ(calculator.Asked, (std::vector<float>{1, 3, 4}));
    EXPECT_EQ(PixelsOf(*picture), (std::vector<TColor32>{0xFF000001U, 0, 0xFF000003U, 0xFF000004U}));
}

TEST(RasterRenderer, OnlyACookieOfOneIsData) {
    const TTestCookieData cookie(4, 1, {0, 1, 2, 255});
    const TTestMapData data(4, 1, {1, 2, 3, 4});
    const TTestCalculator calculator(NumberAsOpaqueColor);
    EXPECT_EQ(PixelsOf(*Renderer.Render(&cookie, &data, 1, &calculator)),
              (std::vector<TColor32>{0, 0xFF000002U, 0, 0}));
    EXPECT_EQ(calculator.Asked, std::vector<float>{2});
}

TEST(RasterRenderer, FlagsOnlyGiveATransparentPictureWithoutACall) {
    const TTestImage image(2, 1, {-9990, std::nanf("")});
    const TIdrisiImageMapData data(&image, true);
    const TTestCalculator calculator(NumberAsOpaqueColor);
    EXPECT_EQ(PixelsOf(*Renderer.Render(&data, &data, 1, &calculator)), (std::vector<TColor32>{0, 0}));
    EXPECT_TRUE(calculator.Asked.empty());
}

struct TOpacityRow {
    TColor32 Color;
    float Opacity;
    TColor32 Pixel;
};

class RenderedOpacity : public testing::TestWithParam<TOpacityRow> {};

TEST_P(RenderedOpacity, ScalesTheAlphaOnly) {
    EXPECT_EQ(RenderOne(GetParam().Color, GetParam().Opacity), GetParam().Pixel);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, RenderedOpacity,
    testing::Values(TOpacityRow{0xFF123456U, 0, 0x00123456U}, TOpacityRow{0x7F123456U, 1, 0x7F123456U},
                    TOpacityRow{0xFF123456U, 1.5F, 0xFF123456U}, TOpacityRow{0xFF123456U, -0.1F, 0x00123456U},
                    TOpacityRow{0xFF123456U, std::nanf(""), 0x00123456U}, TOpacityRow{0xFF123456U, 0.5F, 0x80123456U},
                    TOpacityRow{0x01123456U, 0.5F, 0x01123456U}, TOpacityRow{0x01123456U, 127 / 255.0F, 0x00123456U},
                    TOpacityRow{0x00123456U, 1, 0x00123456U}));

TEST(RasterRenderer, OverwritesThePictureItIsGiven) {
    const TTestCookieData cookie(2, 1, {1, 0});
    const TTestMapData data(2, 1);
    const TTestCalculator calculator([](float) { return 0x80102030U; });
    TBitmap32 image(2, 1);
    image.Clear(0xFFFFFFFFU);
    Renderer.Render(&cookie, &data, 1, &calculator, &image);
    EXPECT_EQ(PixelsOf(image), (std::vector<TColor32>{0x80102030U, 0}));
    EXPECT_EQ(image.GetDrawMode(), TDrawMode::dmOpaque);
}

TEST(RasterRenderer, ARasterWithoutCellsGivesAPictureWithoutPixels) {
    const TTestCookieData cookie(0, 0);
    const TTestMapData data(0, 0);
    const TTestCalculator calculator(NumberAsOpaqueColor);
    EXPECT_TRUE(Renderer.Render(&cookie, &data, 1, &calculator)->IsEmpty());
}

TEST(RasterRenderer, AFailureLeavesThePictureAsItWasFromThatCellOn) {
    const TTestCookieData cookie(3, 1);
    const TTestMapData data(3, 1, {1, 2, 3});
    const TTestCalculator calculator(
        [](float value) { return value == 2 ? throw EInvalidOperation(QStringLiteral("two")) : 5U; });
    TBitmap32 image(3, 1);
    image.Clear(9);
    EXPECT_EQ(MessageOf<EInvalidOperation>([&] { Renderer.Render(&cookie, &data, 1, &calculator, &image); }), "two");
    EXPECT_EQ(PixelsOf(image), (std::vector<TColor32>{5, 9, 9}));
    EXPECT_EQ(MessageOf<EInvalidOperation>([&] { Renderer.Render(&cookie, &data, 1, &calculator); }), "two");
}

TEST(RasterRenderer, APaletteFailsAtItsFirstDataCellAndNotBefore) {
    const auto palette = TBasicPaletteColorCalculatorFactory::GetObject();
    const TTestImage image(3, 2, {-9990, -9990, -9990, -9990, 7, 8});
    const TIdrisiImageMapData data(&image, true);
    TBitmap32 picture(3, 2);
    picture.Clear(9);
    EXPECT_EQ(MessageOf<EInvalidOperation>([&] { Renderer.Render(&data, &data, 1, palette.get(), &picture); }),
              "ColorKey not specified");
    EXPECT_EQ(PixelsOf(picture), (std::vector<TColor32>{0, 0, 0, 0, 9, 9}));
    const TTestCookieData nothing(3, 2, std::vector<std::uint8_t>(6, 0));
    EXPECT_EQ(PixelsOf(*Renderer.Render(&nothing, &data, 1, palette.get())), std::vector<TColor32>(6, 0));
}

/// Numbers behind the plain interface that count how often they are asked for.
struct TCountedMapData : TTestMapData {
    using TTestMapData::TTestMapData;
    mutable int Asked = 0;
    float GetMapCell(std::int32_t x, std::int32_t y) const override {
        ++Asked;
        return TTestMapData::GetMapCell(x, y);
    }
};

class RenderedShape : public testing::TestWithParam<std::int32_t> {};

TEST_P(RenderedShape, IsTheSameFromEverySourceAndEqualsTheRule) {
    const std::int32_t width = GetParam();
    constexpr std::int32_t Height = 3;
    const auto cells = static_cast<std::size_t>(width) * Height;
    tests::TRandom random(static_cast<std::uint32_t>(width));
    std::vector<float> numbers(cells);
    std::vector<std::uint8_t> cookies(cells);
    for (std::size_t i = 0; i < cells; ++i) {
        cookies[i] = static_cast<std::uint8_t>(random.Below(3));
        numbers[i] = cookies[i] == 1 ? static_cast<float>(12 * random.Unit() - 1) : TSpatialConst::NoData;
    }
    const TTestImage image(width, Height, numbers);
    const TIdrisiImageMapData cached(&image, true);
    const TIdrisiImageMapData direct(&image, false);
    const TCountedMapData hostData(width, Height, numbers);
    const TTestCookieData hostCookie(width, Height, cookies);
    const auto calculator = TGradientColorCalculatorFactory::GetObject(
        0.0F, 10.0F, 0x40506070U,
        TGradientFactory::GetObject(std::vector<TColorStop>{{0, 0xFF102030U}, {0.6, 0x80FFA000U}, {1, 0xFFFFFFFFU}}));

    const TLayerOpacity opacity(0.7F);
    std::vector<TColor32> expected(cells);
    for (std::size_t i = 0; i < cells; ++i)
        expected[i] = cookies[i] == 1 ? opacity.Fade(calculator->GetColor(numbers[i])) : 0;
    const std::pair<const ICookieData*, const IMapData*> sources[] = {{&cached, &cached},       {&direct, &direct},
                                                                      {&hostCookie, &hostData}, {&cached, &hostData},
                                                                      {&hostCookie, &cached},   {&direct, &cached}};
    for (const auto& [cookie, data] : sources)
        EXPECT_EQ(PixelsOf(*Renderer.Render(cookie, data, 0.7F, calculator.get())), expected);
    EXPECT_EQ(hostData.Asked, 2 * std::count(cookies.begin(), cookies.end(), 1));
}

INSTANTIATE_TEST_SUITE_P(Widths, RenderedShape, testing::Values(1, 2, 255, 256, 257, 600));

/// Rows as a host would keep them, which tell on which thread they were asked for.
struct TRowsOfAHost : TTestMapData, ICookieData, IRasterRows {
    TTestCookieData Cookie;
    std::int32_t FirstRowElsewhere; ///< from this row on the cells have to be asked for one by one
    std::thread::id Owner = std::this_thread::get_id();

    TRowsOfAHost(std::int32_t width, std::int32_t height, std::vector<float> cells, std::vector<std::uint8_t> cookies,
                 std::int32_t firstRowElsewhere)
        : TTestMapData(width, height, std::move(cells)),
          Cookie(width, height, std::move(cookies)),
          FirstRowElsewhere(firstRowElsewhere) {}

    std::int32_t GetWidth() const override { return Width; }
    std::int32_t GetHeight() const override { return Height; }
    float GetMapCell(std::int32_t x, std::int32_t y) const override {
        EXPECT_EQ(std::this_thread::get_id(), Owner);
        return TTestMapData::GetMapCell(x, y);
    }
    std::uint8_t GetCookieCell(std::int32_t x, std::int32_t y) const override {
        EXPECT_EQ(std::this_thread::get_id(), Owner);
        return Cookie.GetCookieCell(x, y);
    }
    const float* GetMapRow(std::int32_t y) const override {
        EXPECT_EQ(std::this_thread::get_id(), Owner);
        return y < FirstRowElsewhere ? Cells.data() + static_cast<std::ptrdiff_t>(y) * Width : nullptr;
    }
    const std::uint8_t* GetCookieRow(std::int32_t y) const override {
        EXPECT_EQ(std::this_thread::get_id(), Owner);
        return y < FirstRowElsewhere ? Cookie.Cells.data() + static_cast<std::ptrdiff_t>(y) * Width : nullptr;
    }
};

class RenderedOnCores : public testing::TestWithParam<int> {};

TEST_P(RenderedOnCores, IsTheSamePicture) {
    tests::TRandom random(31);
    const auto calculator = TGradientColorCalculatorFactory::GetObject(
        0.0F, 10.0F, 0x40506070U,
        TGradientFactory::GetObject(std::vector<TColorStop>{{0, 0xFF102030U}, {0.6, 0x80FFA000U}, {1, 0xFFFFFFFFU}}));
    for (int round = 0; round < 150; ++round) {
        const auto width = static_cast<std::int32_t>(random.Below(round % 3 == 0 ? 700 : 20));
        const auto height = static_cast<std::int32_t>(random.Below(round % 3 == 0 ? 20 : 70));
        const auto cells = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
        std::vector<float> numbers(cells);
        std::vector<std::uint8_t> cookies(cells);
        for (std::size_t i = 0; i < cells; ++i) {
            cookies[i] = static_cast<std::uint8_t>(random.Below(3));
            numbers[i] = static_cast<float>(12 * random.Unit() - 1);
        }
        for (const std::int32_t firstRowElsewhere : {height, height / 2, 0}) {
            const TRowsOfAHost raster(width, height, numbers, cookies, firstRowElsewhere);
            const auto alone = Renderer.Render(&raster, &raster, 0.7F, calculator.get());
            const tests::TSharedCores shared(GetParam());
            const auto together = Renderer.Render(&raster, &raster, 0.7F, calculator.get());
            ASSERT_EQ(PixelsOf(*together), PixelsOf(*alone)) << width << " x " << height;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Cores, RenderedOnCores, testing::Values(2, 5));

TEST(RasterRenderer, AHostsCalculatorStaysOnTheCallersThreadOnAnyNumberOfCores) {
    const tests::TSharedCores shared(4);
    const TTestImage image(50, 40, std::vector<float>(2000, 3));
    const TIdrisiImageMapData cached(&image, true);
    const std::thread::id caller = std::this_thread::get_id();
    const TTestCalculator calculator([caller](float value) {
        EXPECT_EQ(std::this_thread::get_id(), caller);
        return NumberAsOpaqueColor(value);
    });
    Renderer.Render(&cached, &cached, 1, &calculator);
    EXPECT_EQ(calculator.Asked.size(), 2000U);
}

TEST(RasterRenderer, TestsItsArgumentsInOrder) {
    const TTestCookieData cookie(2, 2);
    const TTestMapData data(2, 2);
    const TTestMapData wider(3, 2);
    const TTestMapData higher(2, 3);
    const TTestCalculator calculator(NumberAsOpaqueColor);
    TBitmap32 image(2, 2);
    TBitmap32 wrongImage(2, 3);

    struct TRow {
        const ICookieData* Cookie;
        const IMapData* Data;
        const IBaseColorCalculator* Calculator;
        TBitmap32* Image;
        const char* Message;
    };
    const TRow rows[] = {
        {nullptr, &data, nullptr, nullptr, "Cookie or data is null"},
        {&cookie, nullptr, nullptr, nullptr, "Cookie or data is null"},
        {&cookie, &wider, nullptr, nullptr, "ColorCalc is null"},
        {&cookie, &wider, &calculator, nullptr, "Cookie and data size does not match"},
        {&cookie, &higher, &calculator, nullptr, "Cookie and data size does not match"},
        {&cookie, &data, &calculator, nullptr, "Image is null"},
        {&cookie, &data, &calculator, &wrongImage, "Cookie and Image size does not match"},
    };
    for (const TRow& row : rows)
        EXPECT_EQ(
            MessageOf<EArgumentException>([&] { Renderer.Render(row.Cookie, row.Data, 1, row.Calculator, row.Image); }),
            row.Message);
    for (const TRow& row : std::span(rows).first(5))
        EXPECT_EQ(MessageOf<EArgumentException>([&] { Renderer.Render(row.Cookie, row.Data, 1, row.Calculator); }),
                  row.Message);
    EXPECT_TRUE(calculator.Asked.empty());
    EXPECT_EQ(TBitmap32RasterRenderer::WrongImageType.toString(),
              "Bitmap32RasterRenderer requires images of type TBitmap32");
}

TEST(RasterRenderer, ComesFromItsFactory) {
    const TTestCookieData cookie(1, 1);
    const TTestMapData data(1, 1, {5});
    const TTestCalculator calculator(NumberAsOpaqueColor);
    const auto renderer = TBitmap32RasterRendererFactory::GetObject();
    EXPECT_EQ(*renderer->Render(&cookie, &data, 1, &calculator)->ScanLine(0), 0xFF000005U);
}

} // namespace
} // namespace lmx
