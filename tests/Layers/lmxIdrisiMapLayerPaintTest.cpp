#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/Coordinates/wskWorld.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Graphics/lmxGradient.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <tests/Layers/IdrisiMapLayerFixture.h>
#include <tests/Support/Printers.h>
#include <tests/Support/TestWorldSystem.h>

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <utility>
#include <vector>

namespace lmx {
namespace {

using namespace tests;

constexpr TColor32 White = 0xFFFFFFFF;

class IdrisiMapLayerPaint : public TIdrisiMapLayerTest {};

/// A view of a world at a scale, its top left corner at the world's.
struct TView {
    TView(const std::shared_ptr<IWorldSystem>& system, extended scale, int width, int height)
        : World(system),
          Viewport(&World),
          Buffer(width, height) {
        Viewport.SetViewSize({width, height});
        Viewport.SetScale(scale);
        Viewport.SetTranslation({0, 0});
        Buffer.Clear(White);
    }
    std::vector<TColor32> Row(int y) const { return {Buffer.ScanLine(y), Buffer.ScanLine(y) + Buffer.GetWidth()}; }

    TWorld World;
    TWorldViewport Viewport;
    TBitmap32 Buffer;
};

TEST_F(IdrisiMapLayerPaint, PaintsTheCellsWhereTheyLie) {
    AddRendered(NumberedImage(2, 2, {-180, 90, 180, -90}));
    TView view(TLatLonWorldSystemFactory::GetObject(), 1.0L / 90, 4, 2);
    Layer.Paint(&view.World, &view.Viewport, view.Buffer);
    EXPECT_EQ(view.Row(0), (std::vector<TColor32>{0xFF00000B, 0xFF00000B, 0xFF00000C, 0xFF00000C}));
    EXPECT_EQ(view.Row(1), (std::vector<TColor32>{0xFF000015, 0xFF000015, 0xFF000016, 0xFF000016}));
}

TEST_F(IdrisiMapLayerPaint, CutsARasterOf0To360AtTheSeamOfAMeridianWorld) {
    AddRendered(NumberedImage(4, 1, {0, 90, 360, -90}));
    TView view(TLatLonWorldSystemFactory::GetObject(), 1.0L / 90, 4, 2);
    Layer.Paint(&view.World, &view.Viewport, view.Buffer);
    EXPECT_EQ(view.Row(0), (std::vector<TColor32>{0xFF00000D, 0xFF00000E, 0xFF00000B, 0xFF00000C}));
}

TEST_F(IdrisiMapLayerPaint, CutsARasterOf180To180AtTheSeamOfAnAntimeridianWorld) {
    AddRendered(NumberedImage(4, 1, {-180, 90, 180, -90}));
    TView view(TLatLonAntimeridianWorldSystemFactory::GetObject(), 1.0L / 90, 4, 2);
    Layer.Paint(&view.World, &view.Viewport, view.Buffer);
    EXPECT_EQ(view.Row(1), (std::vector<TColor32>{0xFF00000D, 0xFF00000E, 0xFF00000B, 0xFF00000C}));
}

struct THalfColumnRow {
    int Columns;
    std::vector<TColor32> Pixels;
};

class HalfColumn : public testing::TestWithParam<THalfColumnRow> {};

TEST_P(HalfColumn, GoesToTheEvenSideOfTheCut) {
    const auto manager = TLayerManagerFactory::GetObject();
    TIdrisiMapLayer layer(manager);
    layer.TakeImage(NumberedImage(GetParam().Columns, 1, {0, 90, 360, -90}));
    layer.SetColorCalc(std::make_shared<TValueAsColor>());
    layer.Render();
    TView view(TLatLonWorldSystemFactory::GetObject(), 1.0L / 30, 12, 6);
    layer.Paint(&view.World, &view.Viewport, view.Buffer);
    std::vector<TColor32> columns = view.Row(0);
    for (TColor32& column : columns)
        column &= 0xFF;
    EXPECT_EQ(columns, GetParam().Pixels);
}

// The cut at 180 degrees goes through the middle of the third of five columns and of the fourth of seven.
INSTANTIATE_TEST_SUITE_P(Rows, HalfColumn,
                         testing::Values(THalfColumnRow{5, {13, 13, 14, 14, 15, 15, 11, 11, 11, 12, 12, 12}},
                                         THalfColumnRow{7, {15, 15, 16, 16, 17, 17, 11, 11, 12, 13, 13, 14}}));

TEST_F(IdrisiMapLayerPaint, APieceTakesItsPartOfTheBitmap) {
    AddRendered(NumberedImage(4, 1, {170, 90, 190, -90})); // five degrees a cell, two cells on either side of 180
    TView view(TLatLonWorldSystemFactory::GetObject(), 0.2L, 72, 36);
    Layer.Paint(&view.World, &view.Viewport, view.Buffer);
    const std::vector<TColor32> row = view.Row(0);
    EXPECT_EQ(row[0], 0xFF00000DU);
    EXPECT_EQ(row[1], 0xFF00000EU);
    EXPECT_EQ(row[2], White);
    EXPECT_EQ(row[69], White);
    EXPECT_EQ(row[70], 0xFF00000BU);
    EXPECT_EQ(row[71], 0xFF00000CU);
}

TEST_F(IdrisiMapLayerPaint, RepeatedPaintsShowEachNewPicture) {
    AddRendered(NumberedImage(8, 4, {-180, 90, 180, -90}));
    TView view(TLatLonWorldSystemFactory::GetObject(), 1.0L / 90, 4, 2);
    const auto painted = [&] {
        Layer.Paint(&view.World, &view.Viewport, view.Buffer);
        return view.Row(0);
    };
    const std::vector<TColor32> first = painted();
    EXPECT_EQ(first, (std::vector<TColor32>{0xFF00000B, 0xFF00000D, 0xFF00000F, 0xFF000011}));
    EXPECT_EQ(painted(), first);
    EXPECT_EQ(painted(), first);
    view.Viewport.SetTranslation({1, 0});
    view.Buffer.Clear(White);
    EXPECT_EQ(painted(), (std::vector<TColor32>{White, 0xFF00000B, 0xFF00000D, 0xFF00000F}));
    view.Viewport.SetTranslation({0, 0});
    Layer.TakeImage(NumberedImage(4, 4, {-180, 90, 180, -90}));
    Layer.Render();
    EXPECT_EQ(painted(), (std::vector<TColor32>{0xFF00000B, 0xFF00000C, 0xFF00000D, 0xFF00000E}));
}

TEST_F(IdrisiMapLayerPaint, ANewPictureOfTheSameSizeIsShownAtOnce) {
    AddRendered(NumberedImage(8, 4, {-180, 90, 180, -90}));
    TView view(TLatLonWorldSystemFactory::GetObject(), 1.0L / 90, 4, 2);
    for (int i = 0; i < 3; ++i)
        Layer.Paint(&view.World, &view.Viewport, view.Buffer);
    const auto gradient = TGradientFactory::GetObject(std::vector<TColorStop>{{0, 0xFFABCDEF}});
    Layer.SetColorCalc(TGradientColorCalculatorFactory::GetObject(0, 99, gradient));
    Layer.Paint(&view.World, &view.Viewport, view.Buffer);
    EXPECT_EQ(view.Row(0), std::vector<TColor32>(4, 0xFFABCDEF));
}

TEST_F(IdrisiMapLayerPaint, BlendsOntoWhatLiesBelow) {
    AddRendered(NumberedImage(1, 1, {-180, 90, 180, -90}));
    Layer.SetOpacity(128);
    TView view(TLatLonWorldSystemFactory::GetObject(), 1.0L / 90, 4, 2);
    Layer.Paint(&view.World, &view.Viewport, view.Buffer);
    // (255 * 127 + 127) / 255 = 127 in red and green, (11 * 128 + 255 * 127 + 127) / 255 = 133 in blue
    EXPECT_EQ(view.Row(0)[0], 0xFF7F7F85U);
}

TEST_F(IdrisiMapLayerPaint, StaysRightAtTheLargestScaleOfAWorld) {
    AddRendered(NumberedImage(2, 1, {-180, 90, 180, -90}));
    TView view(TLatLonWorldSystemFactory::GetObject(), 100000, 4, 2);
    view.Viewport.SetCenter({0, 0}); // the border of the two cells is in the middle of the view
    Layer.Paint(&view.World, &view.Viewport, view.Buffer);
    EXPECT_EQ(view.Row(0), (std::vector<TColor32>{0xFF00000B, 0xFF00000B, 0xFF00000C, 0xFF00000C}));
}

TEST_F(IdrisiMapLayerPaint, StaysRightWhereTheRectangleLeaves32Bits) {
    auto image = NumberedImage(2, 1, {1900000, 7000000, 3100000, 5000000});
    image->getHeader()->SetRefSystem(QStringLiteral("plane"));
    AddRendered(std::move(image));
    EXPECT_EQ(Layer.GetLayerArea().WorldSystem, TNZMGWorldSystemFactory::GetObject());
    TView view(TNZMGWorldSystemFactory::GetObject(), 1000, 4, 2); // 1.2e9 x 2e9 pixels
    view.Viewport.SetCenter({2500000, 6000000});
    Layer.Paint(&view.World, &view.Viewport, view.Buffer);
    EXPECT_EQ(view.Row(1), (std::vector<TColor32>{0xFF00000B, 0xFF00000B, 0xFF00000C, 0xFF00000C}));
}

TEST_F(IdrisiMapLayerPaint, PaintsNothingWithoutABitmap) {
    Layer.TakeImage(NumberedImage(2, 2, {-180, 90, 180, -90}));
    TView view(TLatLonWorldSystemFactory::GetObject(), 1.0L / 90, 4, 2);
    Layer.Paint(&view.World, &view.Viewport, view.Buffer);
    EXPECT_EQ(view.Row(0), std::vector<TColor32>(4, White));
}

class EmptyArea : public testing::TestWithParam<TMapArea> {};

TEST_P(EmptyArea, DrawsNothing) {
    const auto manager = TLayerManagerFactory::GetObject();
    TIdrisiMapLayer layer(manager);
    layer.TakeImage(NumberedImage(2, 2, {-180, 90, 180, -90}));
    layer.SetColorCalc(std::make_shared<TValueAsColor>());
    layer.Render();
    layer.SetLayerArea({GetParam(), TLatLonWorldSystemFactory::GetObject()});
    TView view(TLatLonWorldSystemFactory::GetObject(), 1.0L / 90, 4, 2);
    layer.Paint(&view.World, &view.Viewport, view.Buffer);
    EXPECT_EQ(view.Row(0), std::vector<TColor32>(4, White));
    EXPECT_EQ(view.Row(1), std::vector<TColor32>(4, White));
}

constexpr extended Nan = std::numeric_limits<extended>::quiet_NaN();
constexpr extended Infinite = std::numeric_limits<extended>::infinity();
INSTANTIATE_TEST_SUITE_P(Rows, EmptyArea,
                         testing::Values(TMapArea(0, 90, 0, -90), TMapArea(-180, 0, 180, 0),
                                         TMapArea(Nan, 90, 180, -90), TMapArea(-180, 90, Infinite, -90)));

/// A world that grows to the left, or downwards.
class TTurnedWorldSystem final : public tests::TTestWorldSystem {
public:
    explicit TTurnedWorldSystem(TMapOrientation orientation) : TTestWorldSystem({-180, 90, 180, -90}, orientation) {}

    TMapOrientation GetOrientation() const override {
        return ++FAsked > FPixelQuestions ? TTestWorldSystem::GetOrientation() : TMapOrientation{1, -1};
    }

    /// How often the viewport may ask before the turned orientation is told.
    void AllowPixelQuestions(int count) { FPixelQuestions = FAsked + count; }

private:
    mutable int FAsked = 0;
    int FPixelQuestions = 1000;
};

class TurnedWorld : public testing::TestWithParam<TMapOrientation> {};

TEST_P(TurnedWorld, IsNotImplemented) {
    const auto manager = TLayerManagerFactory::GetObject();
    TIdrisiMapLayer layer(manager);
    layer.TakeImage(NumberedImage(2, 2, {-180, 90, 180, -90}));
    layer.SetColorCalc(std::make_shared<TValueAsColor>());
    layer.Render();
    const auto system = std::make_shared<TTurnedWorldSystem>(GetParam());
    TView view(system, 1.0L / 90, 4, 2);
    // The viewport refuses such a world by itself; here it is turned only once the viewport has its pixels.
    for (int questions = 0;; ++questions) {
        system->AllowPixelQuestions(questions);
        const QString message =
            tests::MessageOf<ENotImplemented>([&] { layer.Paint(&view.World, &view.Viewport, view.Buffer); });
        if (!message.startsWith(QStringLiteral("MapPointToPoint"))) {
            EXPECT_EQ(message, QStringLiteral("Not implemented"));
            break;
        }
        ASSERT_LT(questions, 10);
    }
    EXPECT_EQ(view.Row(0), std::vector<TColor32>(4, White));
}

INSTANTIATE_TEST_SUITE_P(Rows, TurnedWorld, testing::Values(TMapOrientation{-1, -1}, TMapOrientation{1, 1}));

} // namespace
} // namespace lmx
