#include <lmx/Formats/Idrisi/lmxIdrisiImages.h>
#include <lmx/Raster/lmxIdrisiRasterFrame.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

#include <limits>

namespace lmx {
namespace {

using tests::MessageOf;

TImageHeader Header(std::int32_t columns, std::int32_t rows) {
    TImageHeader header;
    header.SetWidth(columns);
    header.SetHeight(rows);
    header.SetMaxX(10);
    header.SetMaxY(10);
    return header;
}

template<class Image>
class IdrisiRasterFrame : public testing::Test {};

using TImageClasses = testing::Types<TByteImage, TIntegerImage, TRealImage, TAsciiImage>;
TYPED_TEST_SUITE(IdrisiRasterFrame, TImageClasses);

TYPED_TEST(IdrisiRasterFrame, RefusesAtTheEndOfConstruction) {
    const TypeParam image(QString(), Header(3, 2));
    EXPECT_EQ(MessageOf<ENotImplemented>([&] { TIdrisiRasterFrame frame(&image); }), "TIdrisiRasterFrame.Create");
}

TYPED_TEST(IdrisiRasterFrame, TakesNoMemoryForASizeThatIsOnlyClaimed) {
    constexpr std::int32_t largest = std::numeric_limits<std::int32_t>::max();
    const TypeParam image(QString(), Header(largest, largest));
    EXPECT_EQ(MessageOf<ENotImplemented>([&] { TIdrisiRasterFrame frame(&image); }), "TIdrisiRasterFrame.Create");
}

TYPED_TEST(IdrisiRasterFrame, RefusesANegativeSizeFirst) {
    TypeParam image(QString(), Header(3, 2));
    image.getHeader()->SetWidth(-3);
    EXPECT_EQ(MessageOf<EArgumentException>([&] { TIdrisiRasterFrame frame(&image); }), "Frame size is negative");
}

TEST(IdrisiRasterFrameOfOtherImages, IsRefusedBeforeAnythingElse) {
    class TOtherImage final : public TAbstractImage {
        float GetCell(std::int32_t, std::int32_t) const override { return 0; }
    };
    TOtherImage image;
    image.getHeader()->SetWidth(-1);
    EXPECT_EQ(MessageOf<EInvalidOperation>([&] { TIdrisiRasterFrame frame(&image); }), "Unsupported Idrisi Image type");
}

TEST(IdrisiRasterFrameOfOtherImages, NeedsAnImage) {
    EXPECT_EQ(MessageOf<EExArgumentNilException>([] { TIdrisiRasterFrame frame(nullptr); }),
              "TIdrisiRasterFrame.Create: argument image is nil");
}

} // namespace
} // namespace lmx
