#include <lmx/Formats/Idrisi/lmxAbstractImage.h>
#include <lmx/Formats/Idrisi/lmxImageFactory.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Support/Printers.h>

#include <QBuffer>

#include <gtest/gtest.h>

#include <vector>

namespace lmx::tests {

namespace {

/// What a host must write at least: numbers from somewhere else.
class TSlope final : public TAbstractImage {
public:
    TSlope() {
        getHeader()->SetWidth(3);
        getHeader()->SetHeight(2);
        getHeader()->SetMaxX(3);
        getHeader()->SetMaxY(2);
    }
    float GetCell(std::int32_t column, std::int32_t row) const override {
        return static_cast<float>(10 * column + row);
    }
};

} // namespace

TEST(AbstractImage, NeedsOnlyItsCells) {
    TSlope image;
    std::vector<float> row(3);
    image.ReadRow(2, row);
    EXPECT_EQ(row, (std::vector<float>{12, 22, 32}));
    EXPECT_EQ(image.GetValue(2.5F, 0.5F), 32);
    EXPECT_TRUE(image.UpdateValueRange());
    EXPECT_EQ(image.getHeader()->GetMinValue(), 11);
    EXPECT_EQ(image.getHeader()->GetMaxValue(), 32);
    row.resize(4);
    EXPECT_EQ(MessageOf<EArgumentException>([&] { image.ReadRow(1, row); }),
              QStringLiteral("Length of the row does not match"));
}

TEST(AbstractImage, RefusesWhatItsClassDoesNotOffer) {
    TSlope image;
    QBuffer buffer;
    EXPECT_EQ(MessageOf<ENotSupportedException>([&] { image.SetCell(1, 1, 1); }),
              QStringLiteral("TAbstractImage.SetCell"));
    EXPECT_EQ(MessageOf<ENotSupportedException>([&] { image.LoadFromStream(buffer); }),
              QStringLiteral("TAbstractImage.LoadFromStream"));
    EXPECT_EQ(MessageOf<ENotSupportedException>([&] { image.SaveToStream(buffer); }),
              QStringLiteral("TAbstractImage.SaveToStream"));
    EXPECT_EQ(MessageOf<ENotSupportedException>([&] { TImageFactory::Copy(image); }),
              QStringLiteral("TAbstractImage.Clone"));
}

} // namespace lmx::tests
