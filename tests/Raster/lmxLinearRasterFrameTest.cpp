#include <lmx/Raster/lmxLinearRasterFrame.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Support/CoordinatePrinters.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace lmx {
namespace {

using tests::MessageOf;
using enum TDataKind;

class Clone : public testing::TestWithParam<TDataKind> {};

TEST_P(Clone, HasTheSameCellsInMemoryOfItsOwn) {
    TLinearRasterFrame frame({10, 4, 0, 0}, 2, 2, GetParam());
    for (std::int32_t i = 0; i < 4; ++i)
        frame.WriteCell(i / 2, i % 2, 10 + i);
    const std::shared_ptr<IRasterFrame> clone = frame.Clone();
    frame.WriteCell(0, 0, 99);
    EXPECT_EQ(clone->ReadCol(0), (std::vector<double>{10, 12}));
    EXPECT_EQ(clone->ReadCol(1), (std::vector<double>{11, 13}));
    EXPECT_EQ(clone->GetBounds(), frame.GetBounds());
    EXPECT_EQ(clone->GetKind(), GetParam());
    EXPECT_EQ(clone->GetBufferKind(), frame.GetBufferKind());
    const auto linear = std::dynamic_pointer_cast<TLinearRasterFrame>(clone);
    ASSERT_TRUE(linear);
    EXPECT_EQ(linear->GetResolution(), 5);
    EXPECT_EQ(linear->GetXOrder(), TOrder::doDesc);
}

INSTANTIATE_TEST_SUITE_P(Kinds, Clone,
                         testing::Values(dkByte, dkInt, dkFloat, dkDouble, dkIndexed, dkRanged, dkColor32));

TEST(LinearRasterFrame, StartsWithZeros) {
    const TLinearRasterFrame frame({0, 2, 2, 0}, 2, 2, dkDouble);
    EXPECT_EQ(frame.ReadCol(0), (std::vector<double>{0, 0}));
    EXPECT_EQ(frame.ReadCol(1), (std::vector<double>{0, 0}));
}

TEST(LinearRasterFrame, ClonesWithoutItsTables) {
    TLinearRasterFrame frame({0, 2, 2, 0}, 2, 2, dkIndexed);
    frame.GetAttributes().Add(QStringLiteral("title"), QStringLiteral("Soils"));
    frame.GetIndexTable().Add(1, QStringLiteral("clay"));
    frame.GetRangeTable().Add({0, 1}, QStringLiteral("acid"));
    const auto clone = frame.Clone();
    EXPECT_EQ(clone->GetAttributes().Count(), 0U);
    EXPECT_EQ(clone->GetIndexTable().Count(), 0U);
    EXPECT_EQ(clone->GetRangeTable().Count(), 0U);
}

TEST(LinearRasterFrame, CopiesNumbersThatAreNone) {
    TLinearRasterFrame frame({0, 1, 1, 0}, 1, 1, dkFloat);
    frame.WriteCell(0, 0, std::numeric_limits<double>::quiet_NaN());
    EXPECT_TRUE(std::isnan(frame.Clone()->ReadCell(0, 0)));
}

TEST(LinearRasterFrame, TakesTheAxesOfACloneFromTheBoundsOfTheDay) {
    TLinearRasterFrame frame({0, 2, 2, 0}, 2, 2, dkByte);
    frame.SetBounds({0, 0, 8, 2});
    const TLinearRasterFrame copy(&frame);
    EXPECT_EQ(copy.GetResolution(), 4);
    EXPECT_EQ(copy.GetYOrder(), TOrder::doAsc);
    EXPECT_EQ(frame.GetResolution(), 1);
}

TEST(LinearRasterFrame, ClonesAFrameWithoutCells) {
    const TLinearRasterFrame frame({0, 2, 2, 0}, 0, 3, dkFloat);
    const auto clone = frame.Clone();
    EXPECT_EQ(clone->GetWidth(), 0);
    EXPECT_EQ(clone->GetHeight(), 3);
    EXPECT_EQ(clone->GetBufferKind(), dkFloat);
}

TEST(LinearRasterFrame, CopiesLinearFramesInMemoryOnly) {
    class TOtherFrame final : public TBaseRasterFrame {
        double ReadCell(std::int32_t, std::int32_t) const override { return 0; }
        void WriteCell(std::int32_t, std::int32_t, double) override {}
        TScanLine ScanLine(std::int32_t) override { return {}; }
        TConstScanLine ScanLine(std::int32_t) const override { return {}; }
        bool GetIsLinear() const override { return false; }
        void RowColToXY(double, double, double&, double&) const override {}
        void XYToRowCol(double, double, double&, double&) const override {}
        std::vector<double> ReadRow(std::int32_t) const override { return {}; }
        std::vector<double> ReadCol(std::int32_t) const override { return {}; }
        void Fill(double) override {}
        std::shared_ptr<IRasterFrame> Clone() const override { return {}; }
        double XToCol(double) const override { return 0; }
        double YToRow(double) const override { return 0; }
        double ColToX(double) const override { return 0; }
        double RowToY(double) const override { return 0; }
    };
    const TOtherFrame other;
    EXPECT_EQ(MessageOf<EInvalidOperation>([&] { TLinearRasterFrame frame(&other); }), "Source not supported");
    EXPECT_EQ(MessageOf<EInvalidOperation>([] { TLinearRasterFrame frame(nullptr); }), "Source not supported");
}

TEST(LinearRasterFrame, GivesItsTablesToReadersToo) {
    TLinearRasterFrame frame({0, 1, 1, 0}, 1, 1, TDataKind::dkInt);
    frame.GetAttributes().Add("unit", "mm");
    frame.GetIndexTable().Add(7, "forest");
    frame.GetRangeTable().Add({1, 2}, "low");
    const IRasterFrame& reader = frame;
    EXPECT_EQ(reader.GetAttributes().GetItem("unit"), "mm");
    EXPECT_EQ(reader.GetIndexTable().GetItem(7), "forest");
    EXPECT_EQ(reader.GetRangeTable().GetItem({1, 2}), "low");
}

} // namespace
} // namespace lmx
