#include <lmx/Formats/Idrisi/lmxIdrisiImages.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

#include <memory>
#include <utility>

// A raster layer is rendered into the memory of its last picture, and nobody can tell but by the time it takes.

namespace lmx {
namespace {

/// An image whose cell at (column, row) holds 10 * row + column.
std::unique_ptr<TRealImage> NumberedImage(int columns, int rows) {
    TImageHeader header;
    header.SetWidth(columns);
    header.SetHeight(rows);
    header.SetMaxX(10);
    header.SetMaxY(10);
    header.SetRefSystem(QStringLiteral("latlong"));
    auto image = std::make_unique<TRealImage>(QString(), header);
    for (int row = 1; row <= rows; ++row)
        for (int column = 1; column <= columns; ++column)
            image->SetCell(column, row, static_cast<float>(10 * row + column));
    return image;
}

/// Says a value by an opaque colour: 0xFF000000 plus the value.
class TValueAsColor : public IBaseColorCalculator {
public:
    TColor32 GetColor(float value) const override { return 0xFF000000U + static_cast<TColor32>(value); }
    std::shared_ptr<IBaseColorCalculator> Clone() const override { return std::make_shared<TValueAsColor>(); }
};

class PictureMemory : public testing::Test {
protected:
    void AddRendered(std::unique_ptr<TRealImage> image) {
        Layer.TakeImage(std::move(image));
        Layer.SetColorCalc(std::make_shared<TValueAsColor>());
        Layer.Render();
    }

    std::shared_ptr<ILayerManager> Manager = TLayerManagerFactory::GetObject();
    TIdrisiMapLayer Layer{Manager};
};

TEST_F(PictureMemory, ANewOpacityIsRenderedIntoTheMemoryOfTheLastPicture) {
    AddRendered(NumberedImage(2, 1));
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
    AddRendered(NumberedImage(2, 2));
    Layer.TakeImage(NumberedImage(3, 1));
    Layer.SetOpacity(128);
    EXPECT_EQ(Layer.GetBitmap()->GetWidth(), 3);
    EXPECT_EQ(Layer.GetBitmap()->GetHeight(), 1);
    EXPECT_EQ(Layer.GetBitmap()->Pixel(2, 0), 0x8000000DU);
}

TEST_F(PictureMemory, ABitmapOfTheHostIsNotRenderedInto) {
    AddRendered(NumberedImage(1, 1));
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
    Layer.TakeImage(NumberedImage(2, 1));
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
    AddRendered(NumberedImage(1, 1));
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
    AddRendered(NumberedImage(1, 1));
    Layer.SetColorCalc(nullptr);
    EXPECT_EQ(Layer.GetBitmap(), nullptr);
    Layer.SetColorCalc(std::make_shared<TValueAsColor>());
    Layer.Render();
    EXPECT_EQ(Layer.GetBitmap()->Pixel(0, 0), 0xFF00000BU);
}

} // namespace
} // namespace lmx
