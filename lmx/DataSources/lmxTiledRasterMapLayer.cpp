#include <lmx/DataSources/lmxTiledRasterMapLayer.h>

#include <lmx/Climate/lmxSpatialConst.h>
#include <lmx/Colour/lmxBitmap32RasterRenderer.h>
#include <lmx/Colour/lmxMapData.h>
#include <lmx/Colour/lmxRasterRows.h>
#include <lmx/Controls/Legend/lmxRasterLegendControl.h>
#include <lmx/DataSources/Private/lmxTilePicture.h>
#include <lmx/DataSources/Private/lmxTiledDisplayPage.h>
#include <lmx/DataSources/lmxGeoTiffTiles.h>
#include <lmx/Dialogs/lmxLayerPropertiesAttributesFrame.h>
#include <lmx/Dialogs/lmxLayerPropertiesBoundsFrame.h>
#include <lmx/Dialogs/lmxLayerPropertiesDialog.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Runtime/lmxBorrowed.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxFormat.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace lmx {

namespace {

// What is read for a coarse picture: no more than a few tiles.
constexpr std::int64_t CheapCells = std::int64_t{4} * TTileReader::Side * TTileReader::Side;

// Cells that the first step of a picture reads for tiles that are made: a moment's work. Each step reads four times as
// many as the one before, so that the picture comes to its end even if the cache keeps nothing.
constexpr std::int64_t FirstBudget = std::int64_t{1} << 24;
constexpr int MostGrowth = 16; // steps

std::int64_t BudgetOf(int step) {
    return FirstBudget << (2 * std::min(step, MostGrowth));
}

// The numbers of a part of the view, a cell for each pixel.
class TViewCells final : public IMapData, public ICookieData, public IRasterRows {
public:
    TViewCells(std::size_t width, std::size_t height)
        : FWidth(static_cast<std::int32_t>(width)),
          FHeight(static_cast<std::int32_t>(height)),
          FCells(width * height),
          FCookies(width * height) {}

    std::span<float> Cells() { return FCells; }
    void FindValues() {
        std::transform(FCells.begin(), FCells.end(), FCookies.begin(),
                       [](float cell) { return static_cast<std::uint8_t>(TSpatialConst::IsValue(cell)); });
    }

    float GetMapCell(std::int32_t x, std::int32_t y) const override { return GetMapRow(y)[x]; }
    std::uint8_t GetCookieCell(std::int32_t x, std::int32_t y) const override { return GetCookieRow(y)[x]; }
    std::int32_t GetWidth() const override { return FWidth; }
    std::int32_t GetHeight() const override { return FHeight; }
    const float* GetMapRow(std::int32_t y) const override { return FCells.data() + RowOffset(y); }
    const std::uint8_t* GetCookieRow(std::int32_t y) const override { return FCookies.data() + RowOffset(y); }

private:
    std::size_t RowOffset(std::int32_t y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(FWidth);
    }

    const std::int32_t FWidth;
    const std::int32_t FHeight;
    std::vector<float> FCells;
    std::vector<std::uint8_t> FCookies;
};

} // namespace

/// One render: shares of the source and the cache, a calculator of its own.
class TTiledRasterMapLayer::TRender final : public TRenderThreadHandler {
public:
    TRender(TSize viewSize, const TMapArea& visibleMapArea, const TWorldViewportLocal& vpLocal,
            TTiledRasterMapLayer& layer, std::shared_ptr<IBaseColorCalculator> colorCalc, int step)
        : TRenderThreadHandler(viewSize, visibleMapArea, vpLocal),
          FLayer(&layer),
          FSource(layer.FSource),
          FCache(layer.FCache),
          FArea(layer.FSource ? layer.FSource->GetArea().Area : TMapArea()),
          FColorCalc(std::move(colorCalc)),
          FOpacity(static_cast<float>(layer.FOpacity / 255.0)),
          FStep(step) {}

protected:
    bool GetHasContent() const override { return FSource && FColorCalc; }

    void Draw(TBitmap32& bitmap, const TThreadPoolThread& thread) const override {
        const TTileReader reader(
            FSource, FCache, [&thread] { return thread.ShouldStop(); },
            [this](const QString& failure) { TellFailure(failure); });
        TShown shown;
        shown.Budget = BudgetOf(FStep);
        for (const TTilePiece& piece : TilePiecesOf(FArea, FSource->GetLevels().front(), VPLocal))
            DrawPiece(bitmap, piece, reader, shown);
        if (!thread.ShouldStop())
            Tell(thread, shown);
    }

private:
    struct TShown {
        bool IsCoarse = false; // something of it is drawn from a coarser level than it should be, or not at all
        TFoundRange Range;
        std::int64_t Budget = 0;
    };
    struct TAxes {
        TTileAxis Columns;
        TTileAxis Rows;
    };

    TAxes AxesOf(const TTilePiece& piece, int level) const {
        const TTileLevel& full = FSource->GetLevels().front();
        const TTileLevel& size = FSource->GetLevels()[static_cast<std::size_t>(level)];
        return {TileAxisOf(piece.Pixels.Left, piece.Pixels.Right, piece.Cells.Left, piece.Cells.Right, full.Width,
                           size.Width, ViewSize.cx),
                TileAxisOf(piece.Pixels.Top, piece.Pixels.Bottom, piece.Cells.Top, piece.Cells.Bottom, full.Height,
                           size.Height, ViewSize.cy)};
    }

    // The sharpest level at hand for a coarse picture, or a small one; the sharp level where that is at hand itself.
    int CoarseLevel(const TTilePiece& piece, const TTileReader& reader, int sharp) const {
        const std::vector<TTileLevel>& levels = FSource->GetLevels();
        for (int level = sharp; level < static_cast<int>(levels.size()); ++level) {
            const TAxes axes = AxesOf(piece, level);
            if (reader.HasAll(level, axes.Columns, axes.Rows))
                return level;
        }
        const int cheap = FSource->GetStoredLevelCount() - 1;
        const TTileLevel& last = levels[static_cast<std::size_t>(cheap)];
        return cheap > sharp && std::int64_t{last.Width} * last.Height <= CheapCells ? cheap : sharp;
    }

    void DrawPiece(TBitmap32& bitmap, const TTilePiece& piece, const TTileReader& reader, TShown& shown) const {
        if (piece.Pixels.IsEmpty() || piece.Cells.Right <= piece.Cells.Left || piece.Cells.Bottom <= piece.Cells.Top)
            return;
        const double cellsAPixel =
            static_cast<double>(piece.Cells.GetWidth()) / static_cast<double>(piece.Pixels.Right - piece.Pixels.Left);
        const int sharp = TileLevelFor(FSource->GetLevels(), cellsAPixel);
        TAxes axes = AxesOf(piece, sharp);
        if (axes.Columns.IsEmpty() || axes.Rows.IsEmpty())
            return;
        int level = sharp;
        if (FStep == 0 && (level = CoarseLevel(piece, reader, sharp)) != sharp)
            axes = AxesOf(piece, level);
        TViewCells cells(axes.Columns.Cells.size(), axes.Rows.Cells.size());
        const TTileFilling filling = reader.Fill(level, axes.Columns, axes.Rows, cells.Cells(), shown.Budget);
        if (filling == TTileFilling::tfGivenUp)
            return;
        shown.IsCoarse |= level != sharp || filling == TTileFilling::tfPartly;
        shown.Range.Add(cells.Cells());
        cells.FindValues();
        const auto picture =
            TBitmap32RasterRendererFactory::GetObject()->Render(&cells, &cells, FOpacity, FColorCalc.get());
        picture->SetDrawMode(TDrawMode::dmOpaque);
        bitmap.Draw(axes.Columns.First, axes.Rows.First, *picture);
        bitmap.SetDrawMode(TDrawMode::dmBlend); // onto the map: half transparent cells let it shine through
    }

    void TellFailure(const QString& failure) const {
        TThread::Synchronize([layer = FLayer, source = FSource, failure] {
            if (layer && layer->FSource == source)
                layer->FOnReadFailed(layer.Get(), failure);
        });
    }

    // Comes before the picture itself is handed over.
    void Tell(const TThreadPoolThread& thread, const TShown& shown) const {
        TThread::Synchronize([layer = FLayer, render = &thread, area = VisibleMapArea, step = FStep, shown] {
            if (!layer || layer->GetCurrentThread().get() != render)
                return;
            const TValueRange range{shown.Range.GetLeast(), shown.Range.GetGreatest()};
            layer->NotePicture(area, step, shown.IsCoarse, shown.Range.HasValues() ? &range : nullptr);
        });
    }

    const TBorrowed<TTiledRasterMapLayer> FLayer; // looked at on the main thread only
    const std::shared_ptr<const ITileSource> FSource;
    const std::shared_ptr<TTileCache> FCache;
    const TMapArea FArea;
    const std::shared_ptr<IBaseColorCalculator> FColorCalc;
    const float FOpacity;
    const int FStep;
};

TTiledRasterMapLayer::TTiledRasterMapLayer(const std::shared_ptr<ILayerManager>& layerManager,
                                           std::shared_ptr<TTileCache> cache)
    : TBufferedMapLayer(layerManager),
      FCache(std::move(cache)) {
    if (!FCache)
        FCache = TTileCache::GetShared();
}

TTiledRasterMapLayer::~TTiledRasterMapLayer() = default;

void TTiledRasterMapLayer::SetSource(std::shared_ptr<const ITileSource> source) {
    if (source == FSource)
        return;
    FSource = std::move(source);
    FShownRange = {};
    const std::shared_ptr<const ITileSource> shown = FSource;
    const TBorrowed self(this); // whoever is told may destroy the layer
    if (shown)
        SetLayerArea(shown->GetArea());
    if (!self || FSource != shown)
        return;
    FCoarse.clear();
    Invalidate(true);
    if (self)
        CreateLegendComponent();
}

void TTiledRasterMapLayer::SetColorCalc(const std::shared_ptr<IBaseColorCalculator>& colorCalc) {
    if (colorCalc == FColorCalc)
        return;
    FColorCalc = colorCalc;
    OutdateBuffer();
    const TBorrowed self(this);
    Invalidate();
    if (self)
        CreateLegendComponent();
}

void TTiledRasterMapLayer::SetOpacity(std::uint8_t opacity) {
    if (opacity == FOpacity)
        return;
    FOpacity = opacity;
    OutdateBuffer();
    Invalidate();
}

TValueRange TTiledRasterMapLayer::FindValueRange() const {
    if (!(FValueRange == TValueRange::Empty()) || !FSource)
        return FValueRange;
    if (FShownRange.GetHasValue())
        return FShownRange.GetValue();
    const TTileReader reader(
        FSource, FCache, [] { return false; }, [](const QString&) {});
    const TFoundRange range = reader.ReadSomeRange();
    return range.HasValues() ? TValueRange(range.GetLeast(), range.GetGreatest()) : TValueRange::Empty();
}

TNullable<float> TTiledRasterMapLayer::GetCachedValue(const TMapPoint& point) const {
    if (!FSource)
        return {};
    const TWorldMapArea area = FSource->GetArea();
    const TTileLevel& full = FSource->GetLevels().front();
    const TMapPoint local = area.WorldSystem ? area.WorldSystem->ToLocalPoint(area.Area, point) : point;
    const auto column = std::floor((local.X - area.Area.Left) / area.Area.GetWidth() * full.Width);
    const auto row = std::floor((area.Area.Top - local.Y) / area.Area.GetHeight() * full.Height);
    if (!(column >= 0 && column < full.Width && row >= 0 && row < full.Height))
        return {};
    const auto x = static_cast<std::int32_t>(column);
    const auto y = static_cast<std::int32_t>(row);
    constexpr std::int32_t side = TTileReader::Side;
    const auto tile = FCache->Get({FSource->GetId(), 0, x / side, y / side});
    if (!tile || tile->empty())
        return {};
    const std::int32_t stride = std::min(side, full.Width - x / side * side);
    const float cell = (*tile)[static_cast<std::size_t>(y % side) * static_cast<std::size_t>(stride) +
                               static_cast<std::size_t>(x % side)];
    return TSpatialConst::IsValue(cell) ? TNullable<float>(cell) : TNullable<float>();
}

bool TTiledRasterMapLayer::GetHasContent() const {
    return FSource && FColorCalc;
}

void TTiledRasterMapLayer::CreateLegendComponent() {
    SetLegendComponent(GetHasContent() ? CreateLegendControlOf(nullptr, FColorCalc) : nullptr);
}

TLayerData TTiledRasterMapLayer::DescribeData() const {
    TLayerData data;
    data.Colors = FColorCalc;
    if (!(FValueRange == TValueRange::Empty()))
        data.ValueRange = FValueRange;
    else if (FShownRange.GetHasValue())
        data.ValueRange = FShownRange.GetValue();
    if (FSource)
        data.FileName = FSource->GetFileName();
    if (const auto* const tiff = dynamic_cast<const TGeoTiffTiles*>(FSource.get())) {
        data.Lineage = Format(u"Band %d", {tiff->GetBand()});
        data.Units = tiff->GetConversion().ShownUnits;
    }
    return data;
}

void TTiledRasterMapLayer::InitPropertiesDialog(TLayerPropertiesDialog* dialog) {
    if (!dialog)
        throw EExArgumentNilException(QStringLiteral("TTiledRasterMapLayer.InitPropertiesDialog"),
                                      QStringLiteral("Dialog"));
    dialog->AddOptionFrame(std::make_unique<TLayerPropertiesBoundsOptionFrame>(this));
    if (FSource)
        dialog->AddOptionFrame(std::make_unique<TTiledDisplayPage>(*this));
    dialog->AddOptionFrame(
        std::make_unique<TLayerPropertiesAttributesOptionFrame>(&GetAttributes(), GetLifetime().Watch()));
}

TLayerOptionFlags TTiledRasterMapLayer::GetLayerOptionFlags() const {
    return TBufferedMapLayer::GetLayerOptionFlags() + TLayerOptionFlags{TLayerOptionFlag::lofDuplicate};
}

QString TTiledRasterMapLayer::GetLayerTypeName() const {
    return QStringLiteral("Tiled raster");
}

// A coarse picture that is shown is followed by the sharp one.
void TTiledRasterMapLayer::Paint(TWorld* world, TWorldViewport* viewport, TBitmap32& bitmap) {
    FPaintedView = viewport->GetLifetime().Watch();
    const TBorrowed self(this);
    TBufferedMapLayer::Paint(world, viewport, bitmap);
    if (!self || GetCurrentThread())
        return;
    if (const int step = NextStep(*viewport); step > 0)
        StartTileRender(viewport->GetViewSize(), viewport->GetVisibleMapArea(), viewport->GetLocal(), step);
}

void TTiledRasterMapLayer::RenderBuffer(TSize viewSize, const TMapArea& visibleMapArea,
                                        const TWorldViewportLocal& vpLocal) {
    StartTileRender(viewSize, visibleMapArea, vpLocal, 0);
}

// A calculator of the host's may free the layer when it is cloned.
void TTiledRasterMapLayer::StartTileRender(TSize viewSize, const TMapArea& visibleMapArea,
                                           const TWorldViewportLocal& vpLocal, int step) {
    const std::shared_ptr<IBaseColorCalculator> colorCalc = FColorCalc;
    const TBorrowed self(this);
    std::shared_ptr<IBaseColorCalculator> clone = colorCalc ? colorCalc->Clone() : nullptr;
    if (!self)
        return;
    StartRender(std::make_shared<TRender>(viewSize, visibleMapArea, vpLocal, *this, std::move(clone), step));
    FRenderedView = FPaintedView;
}

void TTiledRasterMapLayer::NotePicture(const TMapArea& area, int step, bool isCoarse, const TValueRange* range) {
    if (range)
        FShownRange = FShownRange.GetHasValue() ? TValueRange(std::min(FShownRange.GetValue().Low, range->Low),
                                                              std::max(FShownRange.GetValue().High, range->High))
                                                : *range;

    std::erase_if(FCoarse,
                  [this](const TCoarse& coarse) { return coarse.View.IsOver() || coarse.View == FRenderedView; });
    if (isCoarse)
        FCoarse.push_back({FRenderedView, area, step + 1});
}

int TTiledRasterMapLayer::NextStep(const TWorldViewport& viewport) const {
    const TLifeWatch view = viewport.GetLifetime().Watch();
    const auto found = std::find_if(FCoarse.begin(), FCoarse.end(), [&](const TCoarse& coarse) {
        return coarse.View == view && coarse.Area.Equals(viewport.GetVisibleMapArea());
    });
    return found == FCoarse.end() ? 0 : found->Steps;
}

std::unique_ptr<TBaseLayerManagerLayer>
TTiledRasterMapLayer::Duplicate(const std::shared_ptr<ILayerManager>& manager) const {
    auto duplicate = std::make_unique<TTiledRasterMapLayer>(manager, FCache);
    UpdateDuplicateBaseMapLayer(duplicate.get());
    const std::shared_ptr<IBaseColorCalculator> colorCalc = FColorCalc;
    duplicate->FOpacity = FOpacity;
    duplicate->FValueRange = FValueRange;
    duplicate->FClimateVariable = FClimateVariable;
    duplicate->SetSource(FSource);
    if (colorCalc)
        duplicate->SetColorCalc(colorCalc->Clone());
    return duplicate;
}

} // namespace lmx
