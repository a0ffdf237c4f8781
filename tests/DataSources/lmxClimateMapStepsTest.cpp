#include <lmx/DataSources/lmxClimateMapSteps.h>

#include <lmx/Colour/lmxColorClassCalculator.h>
#include <lmx/Colour/lmxColorClassList.h>
#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/Graphics/lmxGradient.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/DataSources/ClimateSamples.h>

#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

namespace lmx {
namespace {

using namespace tests;
using testing::ElementsAre;

class ClimateMapSteps : public testing::Test {
protected:
    TIdrisiMapLayer* Add(const QString& fileName, const QString& variable, const TClimateSelection& where = {}) {
        const TClimateDataset dataset(fileName);
        TClimateSelection selection = where;
        selection.Variable = dataset.FindVariable(variable).GetValue();
        TClimatePicture picture = dataset.Read(selection);
        auto layer = std::make_unique<TIdrisiMapLayer>(Manager);
        layer->SetLayerName(QStringLiteral("Field, ") + picture.TimeCaption);
        layer->TakeImage(std::move(picture.Image));
        layer->SetColorCalc(TGradientColorCalculatorFactory::GetObject(
            0, 10, TGradientFactory::GetObject({{0, 0xFF0000FF}, {1, 0xFFFF0000}})));
        layer->Render();
        return Manager->GetLayers().Add(std::move(layer));
    }
    static TValueRange ColorsOf(const TIdrisiMapLayer& layer) {
        const auto& colors = dynamic_cast<const IBaseMinMaxColorCalculator&>(*layer.GetColorCalc());
        return {colors.GetMinVal(), colors.GetMaxVal()};
    }

    std::shared_ptr<ILayerManager> Manager = TLayerManagerFactory::GetObject();
};

TEST_F(ClimateMapSteps, PutTheirDataOnTheLayer) {
    TIdrisiMapLayer* const layer = Add(ClimateSample("coads_sst.nc"), "SST");
    const auto colors = layer->GetColorCalc();
    TClimateMapSteps steps(Manager);
    ASSERT_EQ(steps.GetCount(), 12U);
    EXPECT_EQ(steps.GetCaption(6), "July");
    EXPECT_EQ(steps.GetDate(6)->Month, 7);
    int told = 0;
    const TSubscription invalidated =
        Manager->GetOnLayerInvalidated().Add([&](ILayerManager*, TBaseMapLayer*) { ++told; });
    int ready = 0; // which views go by
    const TSubscription drawn =
        layer->GetOnReadyToDrawChanged().Add([&](TBaseMapLayer* changed) { ready += changed->GetIsReadyToDraw(); });
    steps.Show(6);
    EXPECT_GT(told, 0);
    EXPECT_GT(ready, 0);
    EXPECT_EQ(layer->GetLayerName(), "Field, July");
    const TClimateDataset dataset(ClimateSample("coads_sst.nc"));
    const auto july = dataset.Read({dataset.FindVariable("SST").GetValue(), 6});
    for (float longitude = -175; longitude < 180; longitude += 7)
        EXPECT_EQ(layer->GetImage()->GetValue(longitude, 31), july.Image->GetValue(longitude, 31));
    EXPECT_EQ(layer->GetColorCalc(), colors);
    EXPECT_NE(layer->GetBitmap(), nullptr);
    steps.Show(0);
    EXPECT_EQ(layer->GetLayerName(), "Field, January");
    layer->SetLayerName(QStringLiteral("Mine"));
    steps.Show(1);
    EXPECT_EQ(layer->GetLayerName(), "Mine");
    EXPECT_THROW(steps.Show(12), EArgumentException);
}

TEST_F(ClimateMapSteps, KeepLevelAndUnits) {
    TIdrisiMapLayer* const layer =
        Add(ClimateSample("levels_pressure.nc"), "ta", {0, 0, 2, TClimateShownUnits::suFile});
    TClimateMapSteps steps(Manager);
    ASSERT_EQ(steps.GetCount(), 2U);
    steps.Show(1);
    EXPECT_EQ(layer->GetImage()->getHeader()->GetValueUnits(), "K");
    EXPECT_NEAR(double(layer->GetImage()->GetValue(5, 5)), SampleField(5, 5, 1 - 15 * 2), 1e-4);
    EXPECT_TRUE(layer->GetImage()->getHeader()->GetLineage().endsWith("\n500 hPa"));
}

TEST_F(ClimateMapSteps, LayersOfOneFileStepTogether) {
    TIdrisiMapLayer* const low = Add(ClimateSample("levels_pressure.nc"), "ta", {0, 0, 1});
    TIdrisiMapLayer* const high = Add(ClimateSample("levels_pressure.nc"), "ta", {0, 0, 3});
    TIdrisiMapLayer* const still = Add(ClimateSample("variables.nc"), "sftlf");
    auto plain = std::make_unique<TIdrisiMapLayer>(Manager);
    Manager->GetLayers().Add(std::move(plain)); // without an image
    TClimateMapSteps steps(Manager);
    const TAbstractImage* const before = still->GetImage();
    steps.Show(1);
    EXPECT_NEAR(double(low->GetImage()->GetValue(5, 5)), SampleField(5, 5, 1 - 15) - 273.15, 1e-3);
    EXPECT_NEAR(double(high->GetImage()->GetValue(5, 5)), SampleField(5, 5, 1 - 45) - 273.15, 1e-3);
    EXPECT_EQ(still->GetImage(), before);
    Manager->GetLayers().Remove(low);
    steps.Show(0);
    EXPECT_NEAR(double(high->GetImage()->GetValue(5, 5)), SampleField(5, 5, -45) - 273.15, 1e-3);
}

TEST_F(ClimateMapSteps, DifferentCountsAreRefusedButThoseOfHiddenLayersDoNotCount) {
    Add(ClimateSample("levels_pressure.nc"), "ta")->SetLayerName(QStringLiteral("A"));
    TIdrisiMapLayer* const other = Add(ClimateSample("coads_sst.nc"), "SST");
    other->SetLayerName(QStringLiteral("B"));
    EXPECT_EQ(MessageOf<EInvalidOperation>([&] { TClimateMapSteps{Manager}; }),
              "The layers \"A\" and \"B\" have 2 and 12 steps in time");
    other->SetIsVisible(false);
    EXPECT_EQ(TClimateMapSteps(Manager).GetCount(), 2U);
}

TEST_F(ClimateMapSteps, AMapWithoutClimateFilesHasNone) {
    EXPECT_EQ(MessageOf<EArgumentNilException>([] { TClimateMapSteps{nullptr}; }), "LayerManager");
    TClimateMapSteps steps(Manager);
    EXPECT_EQ(steps.GetCount(), 0U);
    EXPECT_TRUE(steps.GetDateNames().empty());
    EXPECT_THROW(steps.Show(0), EArgumentException);
    steps.SetColorRange({0, 1});
    steps.FitColors();
}

TEST_F(ClimateMapSteps, TheFileIsFoundBesideTheDocument) {
    const QTemporaryDir first;
    const QTemporaryDir second;
    ASSERT_TRUE(QFile::copy(ClimateSample("coads_sst.nc"), first.filePath("a.nc")));
    Add(first.filePath("a.nc"), "SST");
    ASSERT_TRUE(QFile::rename(first.filePath("a.nc"), second.filePath("a.nc")));
    EXPECT_EQ(TClimateMapSteps(Manager, second.path()).GetCount(), 12U);
    EXPECT_EQ(MessageOf<EClimateFile>([&] { TClimateMapSteps{Manager}; }), first.filePath("a.nc") + ": does not exist");
    ASSERT_TRUE(QFile::remove(second.filePath("a.nc")));
    ASSERT_TRUE(QFile::copy(ClimateSample("variables.nc"), second.filePath("a.nc")));
    EXPECT_EQ(MessageOf<EClimateFile>([&] { TClimateMapSteps(Manager, second.path()); }),
              second.filePath("a.nc") + ": holds no variable \"SST\"");
}

TEST_F(ClimateMapSteps, AFileWithoutTheLevelIsRefused) {
    TIdrisiMapLayer* const layer = Add(ClimateSample("levels_pressure.nc"), "ta");
    layer->GetImage()->getHeader()->SetLineage(ClimateSample("levels_pressure.nc") + "\nta\nJanuary 1990\n1 hPa");
    EXPECT_EQ(MessageOf<EClimateFile>([&] { TClimateMapSteps{Manager}; }),
              ClimateSample("levels_pressure.nc") + ": holds no level \"1 hPa\" of the variable \"ta\"");
}

TEST_F(ClimateMapSteps, OneRangeOfColorsIsForAllSteps) {
    TIdrisiMapLayer* const layer = Add(ClimateSample("levels_pressure.nc"), "ta", {0, 0, 3});
    TClimateMapSteps steps(Manager);
    steps.SetColorRange({-40, 20});
    EXPECT_EQ(ColorsOf(*layer), TValueRange(-40, 20));
    steps.FitColors(); // the second step is 1 K warmer
    double low = 1000;
    double high = -1000;
    for (const double lat : Lats10())
        for (const double lon : Lons10()) {
            low = std::min(low, SampleField(lat, lon, -45) - 273.15);
            high = std::max(high, SampleField(lat, lon, -44) - 273.15);
        }
    EXPECT_NEAR(ColorsOf(*layer).Low, low, 1e-3);
    EXPECT_NEAR(ColorsOf(*layer).High, high, 1e-3);
    const auto fitted = layer->GetColorCalc();
    steps.Show(1);
    EXPECT_EQ(layer->GetColorCalc(), fitted);
    layer->SetColorCalc(TColorClassCalculatorFactory::GetObject(std::initializer_list<TColorClass>{}));

    const auto classes = layer->GetColorCalc();
    steps.SetColorRange({0, 1}); // classes have ranges of their own
    EXPECT_EQ(layer->GetColorCalc(), classes);
}

TEST_F(ClimateMapSteps, MayEndWhenAHostHearsOfAStep) {
    const TBorrowed<TIdrisiMapLayer> lower = Add(ClimateSample(QStringLiteral("coads_sst.nc")), QStringLiteral("SST"));
    const TBorrowed<TIdrisiMapLayer> upper = Add(ClimateSample(QStringLiteral("coads_sst.nc")), QStringLiteral("SST"));
    auto steps = std::make_unique<TClimateMapSteps>(Manager);
    const QString before = upper->GetLayerName();
    const TSubscription told = lower->GetOnReadyToDrawChanged().Add([&](TBaseMapLayer*) { steps.reset(); });
    steps->Show(6);
    EXPECT_EQ(steps, nullptr);
    EXPECT_NE(lower->GetBitmap(), nullptr); // the layer under way is finished
    EXPECT_EQ(upper->GetLayerName(), before);
}

TEST_F(ClimateMapSteps, NamesHaveAsMuchOfTheDateAsTellsThemApart) {
    const auto namesOf = [this](const char* file, const char* variable) {
        Manager = TLayerManagerFactory::GetObject();
        Add(ClimateSample(QString::fromLatin1(file)), QString::fromLatin1(variable));
        std::vector<std::string> names;
        for (const QString& name : TClimateMapSteps(Manager).GetDateNames())
            names.push_back(name.toStdString());
        return names;
    };
    EXPECT_THAT(namesOf("levels_pressure.nc", "ta"), ElementsAre("1990-01", "1990-02"));
    const auto months = namesOf("coads_sst.nc", "SST");
    ASSERT_EQ(months.size(), 12U);
    EXPECT_EQ(months[0], "01");
    EXPECT_EQ(months[11], "12");
    const auto days = namesOf("variables.nc", "pr");
    ASSERT_GT(days.size(), 1U);
    EXPECT_EQ(days[1], "2010-07-02");
}

} // namespace
} // namespace lmx
