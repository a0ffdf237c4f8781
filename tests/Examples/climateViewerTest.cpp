// The map that the viewer shows, pixel for pixel against the numbers in its data files: which cell a pixel shows, on
// which side of the seam it lies, and how both layers blend.

#include <lmx/Climate/lmxSpatialConst.h>
#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Formats/Idrisi/lmxAbstractImage.h>
#include <lmx/Graphics/Private/lmxBlend.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

#include <cmath>
#include <memory>

#include "SampleMap.h"

namespace lmx {
namespace {

constexpr int Width = 720; // two pixels a degree
constexpr int Height = 360;

/// Colour of a layer's cell at the middle of a pixel, its opacity applied; `longitude` is brought into the image's
/// range.
TColor32 ColorAt(const TIdrisiMapLayer& layer, double longitude, double latitude) {
    const TAbstractImage& image = *layer.GetImage();
    const TImageHeader& header = *image.getHeader();
    while (longitude < header.GetMinX())
        longitude += 360;
    while (longitude >= header.GetMaxX())
        longitude -= 360;
    const double cellWidth = (double{header.GetMaxX()} - header.GetMinX()) / header.GetWidth();
    const double cellHeight = (double{header.GetMaxY()} - header.GetMinY()) / header.GetHeight();
    const auto column = static_cast<std::int32_t>(std::floor((longitude - header.GetMinX()) / cellWidth));
    const auto row = static_cast<std::int32_t>(std::floor((header.GetMaxY() - latitude) / cellHeight));
    const float value = image.GetCell(column + 1, row + 1);
    return TSpatialConst::IsValue(value) ? ScaleColorAlpha(layer.GetColorCalc()->GetColor(value), layer.GetOpacity())
                                         : 0;
}

class ClimateViewerMap : public testing::TestWithParam<const char*> {};

TEST_P(ClimateViewerMap, ShowsEveryCellWhereItLies) {
    const auto manager = TLayerManagerFactory::GetObject();
    TMapViewControl view(nullptr, {});
    view.resize(Width, Height);
    view.SetLayerManager(manager);
    AddSampleLayers(manager, QStringLiteral(LMX_EXAMPLE_DATA));
    view.ChangeWorldSystem(TWorldSystemFactory::GetObject(QString::fromLatin1(GetParam())));
    view.grab();
    const TMapArea world = view.GetWorldSystem()->Area();
    ASSERT_TRUE(view.GetViewport()->ZoomTo(world));
    view.grab();
    ASSERT_EQ(view.GetViewport()->GetScale(), 2);

    const auto& relief = dynamic_cast<TIdrisiMapLayer&>(*manager->GetLayers()[0]);
    const auto& temperature = dynamic_cast<TIdrisiMapLayer&>(*manager->GetLayers()[1]);
    int compared = 0;
    for (int y = 0; y < Height; ++y) {
        for (int x = 0; x < Width; ++x) {
            // A pixel shows the cell at its left and upper edge.
            const double longitude = static_cast<double>(world.Left) + x / 2.0;
            const double latitude = 90 - y / 2.0;
            const TColor32 below = BlendColor(ColorAt(relief, longitude, latitude), view.GetBackgroundColor());
            ASSERT_EQ(view.GetBuffer().Pixel(x, y), BlendColor(ColorAt(temperature, longitude, latitude), below))
                << x << ',' << y;
            ++compared;
        }
    }
    EXPECT_EQ(compared, Width * Height);
}

INSTANTIATE_TEST_SUITE_P(Worlds, ClimateViewerMap, testing::Values("latlon", "latlonAntimerdian"));

TEST(ClimateViewerData, AMissingFileIsNamed) {
    const auto manager = TLayerManagerFactory::GetObject();
    try {
        AddSampleLayers(manager, QStringLiteral("no-such-folder"));
        FAIL() << "no exception";
    } catch (const EFileException& failure) {
        EXPECT_TRUE(failure.FileName().startsWith(QStringLiteral("no-such-folder/relief20")));
    }
    EXPECT_EQ(manager->GetLayers().Count(), 0);
}

} // namespace
} // namespace lmx
