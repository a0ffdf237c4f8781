#include "OpenRaster.h"

#include <lmx/Climate/lmxSpatialConst.h>
#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/Coordinates/wskMappingTypes.h>
#include <lmx/Formats/Idrisi/lmxIdrisiImages.h>
#include <lmx/Formats/Idrisi/lmxImageFactory.h>
#include <lmx/Graphics/lmxGradient.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Raster/lmxArcInfoAsciiGridRasterFrame.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxTextStreams.h>

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <variant>
#include <vector>

#include "FileKinds.h"

namespace {

bool LooksGeographic(const lmx::TMapArea& bounds) {
    return bounds.Left >= -360 && bounds.Right <= 360 && bounds.Bottom >= -90 && bounds.Top <= 90;
}

/// Whether a file begins as grids do, or with a mark of 16-bit text, which the reader of grids looks through.
bool LooksLikeGrid(const QString& fileName) {
    QByteArray beginning = lmx::OpenForReading(fileName)->read(64);
    if (beginning.startsWith("\xFF\xFE") || beginning.startsWith("\xFE\xFF"))
        return true;
    if (beginning.startsWith("\xEF\xBB\xBF"))
        beginning.remove(0, 3);
    return beginning.trimmed().toLower().startsWith("ncols");
}

// A damaged row may stand in a message as a whole, and may be as long as the file.
QString Shortened(const QString& message) {
    constexpr qsizetype part = 120;
    return message.size() <= 2 * part ? message : message.first(part) + " ... " + message.last(part);
}

// What the reader of grids says is about a text; a user who opened several files needs the name as well.
std::unique_ptr<lmx::TRealImage> LoadGrid(const QString& fileName) {
    try {
        const lmx::TArcInfoAsciiGridRasterFrame grid(fileName, lmx::TDataKind::dkFloat);
        if (grid.GetWidth() == 0 || grid.GetHeight() == 0 || grid.GetHeading()->GetCellSize() <= 0)
            throw lmx::Exception("no cells to show");
        return ImageOfGrid(grid);
    } catch (const lmx::EFileException&) { // has the name
        throw;
    } catch (const lmx::Exception& failure) {
        throw lmx::EFileFormatException(fileName, Shortened(failure.Message()));
    }
}

std::unique_ptr<lmx::TAbstractImage> LoadImage(const QString& fileName) {
    if (KindOf(fileName) == TFileKind::fkIdrisiImage)
        return lmx::TImageFactory::Load(fileName);
    if (!LooksLikeGrid(fileName))
        throw lmx::EFileFormatException(fileName, "none of the formats that open: " + KnownFiles());
    return LoadGrid(fileName);
}

} // namespace

// The colours of viridis at five places.
std::shared_ptr<lmx::IBaseColorCalculator> DefaultColors(const lmx::TValueRange& range) {
    return lmx::TGradientColorCalculatorFactory::GetObject(
        range,
        lmx::TGradientFactory::GetObject(std::vector<lmx::TColorStop>{
            {0.00, 0xFF440154}, {0.25, 0xFF3B528B}, {0.50, 0xFF21918C}, {0.75, 0xFF5EC962}, {1.00, 0xFFFDE725}}));
}

std::unique_ptr<lmx::TRealImage> ImageOfGrid(const lmx::IArcInfoAsciiGridRasterFrame& grid) {
    const lmx::TMapArea bounds = grid.GetBounds();
    lmx::TImageHeader header;
    header.SetWidth(grid.GetWidth());
    header.SetHeight(grid.GetHeight());
    header.SetMinX(static_cast<float>(bounds.Left));
    header.SetMaxX(static_cast<float>(bounds.Right));
    header.SetMinY(static_cast<float>(bounds.Bottom));
    header.SetMaxY(static_cast<float>(bounds.Top));
    header.SetRefSystem(LooksGeographic(bounds) ? "latlong" : "plane");
    header.SetFlagValue(lmx::TSpatialConst::NoData);
    header.SetFlagDef("missing data");
    header.SetFlag(true);
    auto image = std::make_unique<lmx::TRealImage>(QString(), header);
    const auto noData = static_cast<float>(grid.GetHeading()->GetNODATAValue());
    for (int row = 0; row < grid.GetHeight(); ++row) {
        const auto cells = std::get<std::span<const float>>(grid.ScanLine(row));
        std::ranges::replace_copy(cells, image->GetRow(row + 1).begin(), noData, lmx::TSpatialConst::NoData);
    }
    image->UpdateValueRange();
    return image;
}

std::unique_ptr<lmx::TIdrisiMapLayer> OpenRaster(const std::shared_ptr<lmx::ILayerManager>& manager,
                                                 const QString& fileName) {
    auto layer = std::make_unique<lmx::TIdrisiMapLayer>(manager);
    layer->TakeImage(LoadImage(fileName));
    layer->SetLayerName(manager->GetNextName(QFileInfo(fileName).completeBaseName()));
    layer->SetColorCalc(DefaultColors(layer->GetValueRange()));
    layer->Render();
    return layer;
}
