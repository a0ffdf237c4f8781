#include "ClimateFiles.h"

#include <lmx/Climate/lmxSpatialConst.h>
#include <lmx/Colour/lmxBaseColorCalculator.h>
#include <lmx/DataSources/lmxClimateDataset.h>
#include <lmx/DataSources/lmxClimateFrames.h>
#include <lmx/DataSources/lmxFramePlayer.h>
#include <lmx/DataSources/lmxGeoTiffTiles.h>
#include <lmx/DataSources/lmxTiledRasterMapLayer.h>
#include <lmx/DataSources/lmxTiledRasterMapLayerPersist.h>
#include <lmx/DataSources/lmxTimeStrip.h>
#include <lmx/Formats/Idrisi/lmxImageFactory.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Widgets/lmxEventGuard.h>
#include <lmx/Widgets/lmxOwnedDialog.h>

#include <QFileInfo>

#include <algorithm>
#include <limits>

#include "ClimateFileDialog.h"
#include "OpenRaster.h"

namespace {

constexpr double MostCellsInMemory = 32e6; // beyond it a GeoTIFF is shown by tiles

bool IsTiff(const QString& fileName) {
    const QString suffix = QFileInfo(fileName).suffix().toLower();
    return suffix == QStringLiteral("tif") || suffix == QStringLiteral("tiff");
}

/// The range of the smallest form of a tiled raster, read whole if it is small: enough to choose colours by.
lmx::TValueRange RangeOf(const lmx::TGeoTiffTiles& tiles) {
    const lmx::TTileLevel& last = tiles.GetLevels().back();
    const int width = std::min(last.Width, 2048);
    const int height = std::min(last.Height, 2048);
    std::vector<float> cells(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    tiles.ReadCells(static_cast<int>(tiles.GetLevels().size()) - 1, {0, 0, width, height}, cells, [] { return false; });
    float low = std::numeric_limits<float>::infinity();
    float high = -low;
    for (const float cell : cells)
        if (lmx::TSpatialConst::IsValue(cell)) {
            low = std::min(low, cell);
            high = std::max(high, cell);
        }
    return low <= high ? lmx::TValueRange(low, high) : lmx::TValueRange(0, 1);
}

std::unique_ptr<lmx::TBaseMapLayer> MakeTiledLayer(const std::shared_ptr<lmx::ILayerManager>& manager,
                                                   const QString& fileName) {
    auto tiles = std::make_shared<lmx::TGeoTiffTiles>(fileName);
    auto layer = std::make_unique<lmx::TTiledRasterMapLayer>(manager);
    const lmx::TValueRange range = RangeOf(*tiles);
    layer->SetLayerName(manager->GetNextName(QFileInfo(fileName).completeBaseName()));
    layer->SetValueRange(range);
    layer->SetColorCalc(DefaultColors(range));
    layer->SetSource(std::move(tiles));
    return layer;
}

bool NeedsTiles(const lmx::TClimateDataset& dataset) {
    for (const lmx::TClimateVariableInfo& info : dataset.GetVariables()) {
        double cells = 1;
        for (const lmx::TClimateDimension& dimension : info.Dimensions)
            cells *= static_cast<double>(dimension.Size);
        if (cells > MostCellsInMemory)
            return true;
    }
    return false;
}

std::optional<lmx::TClimateSelection> SelectionOf(const lmx::TClimateDataset& dataset, const TClimateChoice& choice) {
    for (std::size_t i = 0; i < dataset.GetVariables().size(); ++i) {
        const lmx::TClimateVariableInfo& info = dataset.GetVariables()[i];
        if (choice.Variable.isEmpty() ? !info.Refusal.isEmpty() : info.Name != choice.Variable)
            continue;
        if (!info.Refusal.isEmpty())
            throw lmx::EClimateFile(dataset.GetFileName(), info.Refusal);
        if (choice.Step < 0 || static_cast<std::size_t>(choice.Step) >= info.TimeCount)
            throw lmx::EClimateFile(dataset.GetFileName(), QObject::tr("has no step %1").arg(choice.Step));
        return lmx::TClimateSelection{i, static_cast<std::size_t>(choice.Step)};
    }
    if (!choice.Variable.isEmpty())
        throw lmx::EClimateFile(dataset.GetFileName(), QObject::tr("holds no variable %1").arg(choice.Variable));
    QString why = QObject::tr("holds nothing that can be shown");
    if (!dataset.GetVariables().empty())
        why += QStringLiteral("; ") + dataset.GetVariables()[0].Name + QStringLiteral(": ") +
               dataset.GetVariables()[0].Refusal;
    throw lmx::EClimateFile(dataset.GetFileName(), why);
}

/// Titles in capitals only, of old files, as a sentence.
QString Readable(const QString& title) {
    if (!title.contains(u' ') || title != title.toUpper())
        return title;
    return title.first(1) + title.mid(1).toLower();
}

/// The name of a layer: what, at which level and when.
QString LayerName(const QString& title, const QString& level, const QString& time) {
    QString name = title;
    for (const QString& part : {level, time})
        if (!part.isEmpty())
            name += QStringLiteral(", ") + part;
    return name;
}

} // namespace

class TClimateFiles::TImpl {
public:
    TImpl(QWidget* window, TAddLayer addLayer)
        : FWindow(window),
          FAddLayer(std::move(addLayer)),
          FStrip(new lmx::TTimeStrip(window)) {
        FStrip->SetPlayer(&FPlayer);
        FFrames = FPlayer.GetOnFrame().Add([this](lmx::TFramePlayer*) { ShowFrame(); });
        FFailures = FPlayer.GetOnFailure().Add([this](lmx::TFramePlayer*, std::size_t, const QString& why) {
            lmx::GuardEvent(FWindow, [&] { throw lmx::Exception(why); });
        });
    }

    lmx::TBaseMapLayer* Open(const std::shared_ptr<lmx::ILayerManager>& manager, const QString& fileName) {
        const auto dataset = std::make_shared<const lmx::TClimateDataset>(fileName);
        if (IsTiff(fileName) && NeedsTiles(*dataset))
            return FAddLayer(MakeTiledLayer(manager, fileName));
        const auto selection = Choose(dataset);
        if (!selection)
            return nullptr;
        const lmx::TBorrowed<lmx::TBaseMapLayer> layer(Add(manager, *dataset, *selection));
        if (layer && dataset->GetTimes(selection->Variable).GetCount() > 1)
            Play(dataset, *selection);
        else
            StopPlaying();
        return layer.Get();
    }

    std::optional<TClimateChoice> Choice;
    std::function<void(bool)> OnHasTimes;
    lmx::TTimeStrip* GetStrip() const { return FStrip; }
    QString GetCaption() const { return FLayer ? FCaption : QString(); }
    bool IsReading() const { return FPlayer.IsWaiting(); }

private:
    std::optional<lmx::TClimateSelection> Choose(const std::shared_ptr<const lmx::TClimateDataset>& dataset) {
        if (Choice)
            return SelectionOf(*dataset, *Choice);
        const auto& variables = dataset->GetVariables();
        if (variables.size() == 1 && variables[0].Refusal.isEmpty() && variables[0].TimeCount == 1 &&
            variables[0].Levels.size() < 2)
            return lmx::TClimateSelection{};
        lmx::TOwnedDialog<TClimateFileDialog> dialog(FWindow);
        dialog->SetDataset(dataset);
        return dialog.Execute() == QDialog::Accepted ? dialog->GetSelection() : std::nullopt;
    }

    lmx::TBaseMapLayer* Add(const std::shared_ptr<lmx::ILayerManager>& manager, const lmx::TClimateDataset& dataset,
                            const lmx::TClimateSelection& selection) {
        lmx::TClimatePicture picture = dataset.Read(selection);
        auto layer = std::make_unique<lmx::TIdrisiMapLayer>(manager);
        FTitle = Readable(picture.Title);
        FLevel = picture.LevelCaption;
        FCaption = picture.TimeCaption;
        layer->SetLayerName(manager->GetNextName(LayerName(FTitle, FLevel, FCaption)));
        layer->SetClimateVariable(picture.Variable);
        layer->TakeImage(std::move(picture.Image));
        FRange = layer->GetValueRange();
        FColors = DefaultColors(FRange);
        layer->SetColorCalc(FColors);
        layer->Render();
        auto* const added = FAddLayer(std::move(layer));
        FLayer = dynamic_cast<lmx::TIdrisiMapLayer*>(added);
        return added;
    }

    void Play(const std::shared_ptr<const lmx::TClimateDataset>& dataset, const lmx::TClimateSelection& selection) {
        const lmx::TBorrowed<lmx::TIdrisiMapLayer> layer = FLayer;
        FLayer = {}; // the first frames are there
        FPlayer.SetSource(std::make_shared<lmx::TClimateFrames>(dataset, selection));
        FPlayer.GoTo(selection.Time);
        FLayer = layer;
        if (OnHasTimes)
            OnHasTimes(true);
    }

    void StopPlaying() {
        FPlayer.SetSource(nullptr);
        if (OnHasTimes)
            OnHasTimes(false);
    }

    // The colours stay, so that a step shows what changes; those that the viewer chose get wider, as what lies beyond
    // their range would not be seen.
    void ShowFrame() {
        const std::shared_ptr<const lmx::TFrame> frame = FPlayer.GetFrame();
        if (!FLayer || !frame)
            return;
        const lmx::TBorrowed<lmx::TIdrisiMapLayer> layer = FLayer;
        FCaption = FPlayer.GetCaption();
        layer->DeleteBitmap(); // which nobody needs rendered once more
        layer->SetIsReadyToDraw(false);
        if (layer)
            layer->TakeImage(lmx::TImageFactory::Copy(*frame->Image));
        if (layer && frame->HasValues)
            WidenColors(*layer.Get(), frame->Range);
        if (layer)
            layer->Render();
        if (layer)
            layer->SetLayerName(LayerName(FTitle, FLevel, FCaption));
        if (layer)
            layer->DoNotifyInvalidated();
    }

    void WidenColors(lmx::TIdrisiMapLayer& layer, const lmx::TValueRange& range) {
        if (layer.GetColorCalc() != FColors || (FRange.Low <= range.Low && range.High <= FRange.High))
            return;
        FRange = {std::min(FRange.Low, range.Low), std::max(FRange.High, range.High)};
        FColors = DefaultColors(FRange);
        layer.SetColorCalc(FColors);
    }

    QWidget* FWindow;
    TAddLayer FAddLayer;
    lmx::TFramePlayer FPlayer;
    lmx::TTimeStrip* FStrip;
    lmx::TBorrowed<lmx::TIdrisiMapLayer> FLayer; // whose times are played
    lmx::TValueRange FRange;                     // of the colours that the viewer chose for it
    std::shared_ptr<lmx::IBaseColorCalculator> FColors;
    QString FTitle;
    QString FLevel;
    QString FCaption;
    lmx::TSubscription FFrames;
    lmx::TSubscription FFailures;
};

TClimateFiles::TClimateFiles(QWidget* window, TAddLayer addLayer)
    : FImpl(std::make_unique<TImpl>(window, std::move(addLayer))) {}

TClimateFiles::~TClimateFiles() = default;

bool TClimateFiles::CanOpen() {
    return true;
}

lmx::TBaseMapLayer* TClimateFiles::Open(const std::shared_ptr<lmx::ILayerManager>& manager, const QString& fileName) {
    return FImpl->Open(manager, fileName);
}

void TClimateFiles::SetChoice(const TClimateChoice& choice) {
    FImpl->Choice = choice;
}

QWidget* TClimateFiles::GetTimeStrip() const {
    return FImpl->GetStrip();
}

void TClimateFiles::SetOnHasTimes(std::function<void(bool)> event) {
    FImpl->OnHasTimes = std::move(event);
}

QString TClimateFiles::GetTimeCaption() const {
    return FImpl->GetCaption();
}

bool TClimateFiles::IsReading() const {
    return FImpl->IsReading();
}

void RegisterClimateFiles(const std::shared_ptr<lmx::ILayerFactory>& makers,
                          const std::shared_ptr<lmx::IMapDocLayerPersistFactory>& keepers) {
    lmx::RegisterDataSourceLayers(makers, keepers);
}
