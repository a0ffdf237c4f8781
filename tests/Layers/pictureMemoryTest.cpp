#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Layers/IdrisiMapLayerFixture.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

#include <memory>
#include <utility>

// A raster layer is rendered into the memory of its last picture, and nobody can tell but by the time it takes.

namespace lmx {
namespace {

using namespace tests;

const TMapArea Area = {0, 10, 10, 0};

class PictureMemory : public TIdrisiMapLayerTest {};

TEST_F(PictureMemory, ANewOpacityIsRenderedIntoTheMemoryOfTheLastPicture) {
    AddRendered(NumberedImage(2, 1, Area));
    const TBitmap32* const picture = Layer.GetBitmap();
    int told = 0;
    const TSubscription ready = Layer.GetOnReadyToDrawChanged().Add([&](TBaseMapLayer*) {
        EXPECT_EQ(Layer.GetBitmap() != nullptr, Layer.GetIsReadyToDraw());
        EXPECT_EQ(Layer.GetIsReadyToDraw(), ++told == 2);
    });
    Layer.SetOpacity(128);
    EXPECT_EQ(told, 2);
    EXPECT_EQ(Layer.GetBitmap(), picture);
    EXPECT_EQ(picture->Pixel(1, 0), 0x8000000CU);
    EXPECT_EQ(picture->GetDrawMode(), TDrawMode::dmBlend);
}

TEST_F(PictureMemory, APictureOfAnotherSizeIsMadeAnew) {
    AddRendered(NumberedImage(2, 2, Area));
    Layer.TakeImage(NumberedImage(3, 1, Area));
    Layer.SetOpacity(128);
    EXPECT_EQ(Layer.GetBitmap()->GetWidth(), 3);
    EXPECT_EQ(Layer.GetBitmap()->GetHeight(), 1);
    EXPECT_EQ(Layer.GetBitmap()->Pixel(2, 0), 0x8000000DU);
}

TEST_F(PictureMemory, ABitmapOfTheHostIsNotRenderedInto) {
    AddRendered(NumberedImage(1, 1, Area));
    auto bitmap = std::make_unique<TBitmap32>(1, 1);
    bitmap->SetDrawMode(TDrawMode::dmTransparent);
    Layer.SetBitmap(std::move(bitmap));
    Layer.SetOpacity(128);
    EXPECT_EQ(Layer.GetBitmap()->GetDrawMode(), TDrawMode::dmBlend);
    EXPECT_EQ(Layer.GetBitmap()->Pixel(0, 0), 0x8000000BU);
}

/// Raises once it is told to.
class TFailing : public TValueAsColor {
public:
    TColor32 GetColor(float value) const override {
        if (IsFailing && value > 11)
            throw EInvalidOperation(QStringLiteral("no colour"));
        return TValueAsColor::GetColor(value);
    }
    bool IsFailing = false;
};

TEST_F(PictureMemory, AFailureInTheMiddleLeavesNoPicture) {
    const auto calculator = std::make_shared<TFailing>();
    Layer.TakeImage(NumberedImage(2, 1, Area));
    Layer.SetColorCalc(calculator);
    Layer.Render();
    calculator->IsFailing = true;
    EXPECT_EQ(tests::MessageOf<EInvalidOperation>([&] { Layer.SetOpacity(128); }), "no colour");
    EXPECT_EQ(Layer.GetBitmap(), nullptr);
    EXPECT_FALSE(Layer.GetIsReadyToDraw());
    calculator->IsFailing = false;
    Layer.Render();
    EXPECT_EQ(Layer.GetBitmap()->Pixel(1, 0), 0x8000000CU);
}

TEST_F(PictureMemory, ASubscriberMayRenderWhileThePictureIsGivenUp) {
    AddRendered(NumberedImage(1, 1, Area));
    int told = 0;
    const TSubscription ready = Layer.GetOnReadyToDrawChanged().Add([&](TBaseMapLayer*) {
        if (++told == 1)
            Layer.Render();
    });
    Layer.SetOpacity(128);
    EXPECT_EQ(Layer.GetBitmap()->Pixel(0, 0), 0x8000000BU);
    EXPECT_TRUE(Layer.GetIsReadyToDraw());
}

TEST_F(PictureMemory, AnInvalidationWithoutACalculatorKeepsNothing) {
    AddRendered(NumberedImage(1, 1, Area));
    Layer.SetColorCalc(nullptr);
    EXPECT_EQ(Layer.GetBitmap(), nullptr);
    Layer.SetColorCalc(std::make_shared<TValueAsColor>());
    Layer.Render();
    EXPECT_EQ(Layer.GetBitmap()->Pixel(0, 0), 0xFF00000BU);
}

} // namespace
} // namespace lmx
