#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/Formats/Idrisi/lmxIdrisiImages.h>
#include <lmx/Formats/Shapes/lmxShpFile.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Layers/lmxLayerStatistics.h>
#include <lmx/Layers/lmxShapeFileLayer.h>
#include <tests/Support/NumberedImage.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

#include <array>
#include <vector>

namespace lmx {
namespace {

using namespace tests;

class LayerStatistics : public testing::Test {
protected:
    /// A layer of one row from 0 to 40 degrees east.
    std::unique_ptr<TIdrisiMapLayer> Layer(const QString& name, const std::vector<float>& numbers,
                                           const QString& units = QStringLiteral("K")) {
        auto image = NumberedImage(static_cast<int>(numbers.size()), 1, {0, 10, 40, 0});
        for (std::size_t i = 0; i < numbers.size(); ++i)
            image->SetCell(static_cast<std::int32_t>(i + 1), 1, numbers[i]);
        image->getHeader()->SetValueUnits(units);
        auto layer = std::make_unique<TIdrisiMapLayer>(Manager);
        layer->SetLayerName(name);
        layer->TakeImage(std::move(image));
        return layer;
    }
    static std::vector<float> NumbersOf(const TIdrisiMapLayer& layer) {
        std::vector<float> numbers(static_cast<std::size_t>(layer.GetImage()->getHeader()->GetWidth()));
        layer.GetImage()->ReadRow(1, numbers);
        return numbers;
    }
    static TValueRange ColorsOf(const TIdrisiMapLayer& layer) {
        const auto colors = std::dynamic_pointer_cast<IGradientColorCalculator>(layer.GetColorCalc());
        return colors ? TValueRange(colors->GetMinVal(), colors->GetMaxVal()) : TValueRange();
    }

    std::shared_ptr<ILayerManager> Manager = TLayerManagerFactory::GetObject();
};

TEST_F(LayerStatistics, AreOfTheLayerOrARectangle) {
    const auto layer = Layer(QStringLiteral("a"), {1, 2, -9999, 6});
    EXPECT_EQ(StatisticsOf(*layer).Mean, 3);
    EXPECT_EQ(StatisticsOf(*layer).ValueCount, 3U);
    EXPECT_NEAR(StatisticsOf(*layer).MissingShare, 0.25, 1e-15);
    const TFieldStatistics selected = StatisticsOf(*layer, TMapArea(5, 0, 20, 10)); // half of the first column
    EXPECT_NEAR(selected.Mean, (0.5 * 1 + 2) / 1.5, 1e-15);
    EXPECT_EQ(selected.CellCount, 2U);
    EXPECT_NEAR(StatisticsOf(*layer, TMapArea(365, 0, 380, 10)).Mean, selected.Mean, 1e-15); // a turn further
}

// Each cell holds the longitude of its centre.
TEST_F(LayerStatistics, AreOfAPolygonOfAShapeLayer) {
    const QString path = QStringLiteral(LMX_SOURCE_DIR "/tests/data/shp/nz_ne_50m_land.shp");
    TShapeFileLayer shapes(Manager);
    shapes.SetLayerName(QStringLiteral("Land"));
    EXPECT_EQ(MessageOf<EInvalidOperation>([&] { StatisticsOf(*Layer(QStringLiteral("a"), {1}), shapes, 0); }),
              "The layer \"Land\" has no shape file");
    shapes.TakeShpFile(TShpFile::LoadFromFile(path, nullptr));
    const TShpFile& land = *shapes.GetShpFile();
    std::size_t largest = 0;
    for (std::size_t i = 0; i < land.GetPolygonCount(); ++i)
        if (land.GetPolygon(i).GetPart(0).size() > land.GetPolygon(largest).GetPart(0).size())
            largest = i;
    double west = 1e9, east = -1e9;
    for (const TShpPoint& vertex : land.GetPolygon(largest).GetPart(0)) {
        west = std::min(west, vertex.X);
        east = std::max(east, vertex.X);
    }
    auto image = NumberedImage(720, 360, {-180, 90, 180, -90});
    for (int row = 1; row <= 360; ++row)
        for (int column = 1; column <= 720; ++column)
            image->SetCell(column, row, static_cast<float>(-180 + (column - 0.5) / 2));
    TIdrisiMapLayer layer(Manager);
    layer.TakeImage(std::move(image));
    const TFieldStatistics inside = StatisticsOf(layer, shapes, largest);
    EXPECT_GT(inside.CellCount, 20U);
    EXPECT_GE(inside.Minimum, west);
    EXPECT_LE(inside.Maximum, east);
    EXPECT_EQ(MessageOf<EArgumentException>([&] { StatisticsOf(layer, shapes, 100000); }),
              "Polygon index is out of range");
}

TEST_F(LayerStatistics, NeedAnImage) {
    TIdrisiMapLayer empty(Manager);
    empty.SetLayerName(QStringLiteral("none"));
    const QString message = QStringLiteral("The layer \"none\" has no image");
    EXPECT_EQ(MessageOf<EInvalidOperation>([&] { StatisticsOf(empty); }), message);
    EXPECT_EQ(MessageOf<EInvalidOperation>([&] { StatisticsOf(empty, TMapArea(0, 1, 1, 0)); }), message);
    EXPECT_EQ(MessageOf<EInvalidOperation>([&] { DifferenceLayer(Manager, empty, empty); }), message);
}

TEST_F(LayerStatistics, ADifferenceHasARangeAroundZero) {
    const auto a = Layer(QStringLiteral("a"), {1, 2, -9999, 4});
    const auto b = Layer(QStringLiteral("b"), {2, 5, 1, 3});
    const auto difference = DifferenceLayer(Manager, *a, *b);
    EXPECT_EQ(NumbersOf(*difference), (std::vector<float>{-1, -3, -9990, 1}));
    EXPECT_EQ(difference->GetLayerName(), "a - b");
    EXPECT_EQ(difference->GetImage()->getHeader()->GetValueUnits(), "K");
    EXPECT_EQ(difference->GetImage()->getHeader()->GetTitle(), "a - b");
    EXPECT_EQ(ColorsOf(*difference), TValueRange(-3, 3));
    EXPECT_EQ(difference->GetColorCalc()->GetColor(0), 0xFFF7F7F7U);
    EXPECT_TRUE(difference->GetOwnsImage());
    ASSERT_TRUE(difference->GetBitmap()); // rendered
    EXPECT_EQ(difference->GetBitmap()->Pixel(2, 0) >> 24, 0U);
    EXPECT_EQ(ColorsOf(*DifferenceLayer(Manager, *a, *a)), TValueRange(-1, 1)); // no difference is white, too
    const auto inCelsius = Layer(QStringLiteral("c"), {1, 1, 1, 1}, QStringLiteral("Deg C"));
    EXPECT_EQ(DifferenceLayer(Manager, *a, *inCelsius)->GetImage()->getHeader()->GetValueUnits(), "");
}

TEST_F(LayerStatistics, ARatioHasARangeAroundOne) {
    const auto a = Layer(QStringLiteral("a"), {1, 6, 5, 4});
    const auto b = Layer(QStringLiteral("b"), {2, 2, 0, 4});
    const auto ratio = RatioLayer(Manager, *a, *b);
    EXPECT_EQ(NumbersOf(*ratio), (std::vector<float>{0.5, 3, -9990, 1}));
    EXPECT_EQ(ratio->GetLayerName(), "a / b");
    EXPECT_EQ(ratio->GetImage()->getHeader()->GetValueUnits(), "1");
    EXPECT_EQ(ColorsOf(*ratio), TValueRange(-1, 3));
    EXPECT_EQ(ratio->GetColorCalc()->GetColor(1), 0xFFF7F7F7U);
    EXPECT_EQ(ColorsOf(*RatioLayer(Manager, *b, *b)), TValueRange(0, 2));
}

TEST_F(LayerStatistics, ADepartureIsFromTheMeanOfAll) {
    const auto a = Layer(QStringLiteral("a"), {1, 2});
    const auto b = Layer(QStringLiteral("b"), {3, 2});
    const std::array<const TIdrisiMapLayer*, 2> both = {a.get(), b.get()};
    const auto departure = DepartureLayer(Manager, both, 1);
    EXPECT_EQ(NumbersOf(*departure), (std::vector<float>{1, 0}));
    EXPECT_EQ(departure->GetLayerName(), "b - mean of 2");
    EXPECT_EQ(ColorsOf(*departure), TValueRange(-1, 1));
    EXPECT_EQ(MessageOf<EArgumentException>([&] { DepartureLayer(Manager, std::span(both).first(1), 0); }),
              "At least two fields are needed");
    EXPECT_EQ(MessageOf<EArgumentException>([&] { DepartureLayer(Manager, both, 2); }), "Field index is out of range");
    const auto wide = Layer(QStringLiteral("wide"), {1, 2, 3});
    EXPECT_EQ(MessageOf<EArgumentException>([&] { DifferenceLayer(Manager, *a, *wide); }),
              "The fields have different grids: 2 x 1 and 3 x 1");
}

} // namespace
} // namespace lmx
