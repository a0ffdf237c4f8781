#include <lmx/Layers/lmxIdrisiMapLayer.h>

#include <lmx/Colour/lmxBitmap32RasterRenderer.h>
#include <lmx/Colour/lmxIdrisiImageMapData.h>
#include <lmx/Coordinates/wskWorld.h>
#include <lmx/Formats/Idrisi/lmxAbstractImage.h>
#include <lmx/Formats/Idrisi/lmxIdrisiImageExporter.h>
#include <lmx/Formats/Idrisi/lmxImageFactory.h>
#include <lmx/Graphics/Private/lmxReducedPicture.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Layers/Private/lmxLayerComponents.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Runtime/lmxBorrowed.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Widgets/lmxFileDialog.h>

#include <algorithm>
#include <cmath>

namespace lmx {

namespace {

// Bounds that every destination edge is kept in. Far beyond any scale of a viewport, and small enough for exact
// products.
constexpr extended WideLimit = 0x1p52L;

std::int64_t RoundWide(extended pixel) {
    return Round(std::clamp(pixel, -WideLimit, WideLimit));
}

TWideRect ToWideRect(const TMapArea& pixels) {
    return {RoundWide(pixels.Left), RoundWide(pixels.Top), RoundWide(pixels.Right), RoundWide(pixels.Bottom)};
}

bool IsFinite(const TMapArea& area) {
    return std::isfinite(area.Left) && std::isfinite(area.Top) && std::isfinite(area.Right) &&
           std::isfinite(area.Bottom);
}

// Column or row of the bitmap at a share of its extent; pieces of the area lie within it, so the share is 0 to 1.
std::int32_t SourceEdge(extended share, std::int32_t count) {
    return RoundToPixel(share * static_cast<extended>(count));
}

} // namespace

TIdrisiMapLayer::TIdrisiMapLayer(const std::shared_ptr<ILayerManager>& layerManager)
    : TRasterMapLayer(layerManager),
      FRenderer(TBitmap32RasterRendererFactory::GetObject()) {}

TIdrisiMapLayer::~TIdrisiMapLayer() {
    if (FOwnsImage)
        delete FImage;
}

void TIdrisiMapLayer::SetImage(TAbstractImage* image) {
    if (image != FImage)
        ShowImage(image, nullptr);
}

void TIdrisiMapLayer::TakeImage(std::unique_ptr<TAbstractImage> image) {
    TAbstractImage* const shown = image.get();
    if (shown == FImage)
        OwnImage(std::move(image));
    else
        ShowImage(shown, std::move(image));
}

// The image is the layer's own as soon as it is shown: whatever is raised from there on, it is freed once.
void TIdrisiMapLayer::ShowImage(TAbstractImage* image, std::unique_ptr<TAbstractImage> owned) {
    // Reading the new values can fail, and then nothing has changed.
    const auto data = image ? std::make_shared<TIdrisiImageMapData>(image, true) : nullptr;
    const TBorrowed self(this); // a subscriber may free the layer
    Invalidate();
    if (!self)
        return;
    KeepReplacedImage(image);
    FImage = image;
    OwnImage(std::move(owned));
    FMapData = data;
    FCookieData = data;
    if (image) {
        const TImageHeader* header = image->getHeader();
        SetLayerArea(TWorldMapArea(header));
        if (!self)
            return;
        StoreValueRange(TValueRange(header->GetMinValue(), header->GetMaxValue()));
    } else {
        StoreValueRange(TValueRange::Empty());
    }
    CreateLegendComponent();
}

void TIdrisiMapLayer::KeepReplacedImage(const TAbstractImage* next) {
    if (FOwnsImage && FImage)
        FReplacedImages.emplace_back(FImage);
    for (auto& replaced : FReplacedImages)
        if (replaced.get() == next)
            static_cast<void>(replaced.release()); // shown again
    std::erase(FReplacedImages, nullptr);
}

void TIdrisiMapLayer::OwnImage(std::unique_ptr<TAbstractImage> shown) {
    if (shown.release())
        FOwnsImage = true;
}

void TIdrisiMapLayer::CreateLegendComponent() {
    SetLegendComponent(FImage && GetColorCalc() ? CreateRasterLegendControl(GetColorCalc()) : nullptr);
}

TLayerOptionFlags TIdrisiMapLayer::GetLayerOptionFlags() const {
    return TRasterMapLayer::GetLayerOptionFlags() + TLayerOptionFlags{TLayerOptionFlag::lofDuplicate};
}

void TIdrisiMapLayer::Paint(TWorld* world, TWorldViewport* viewport, TBitmap32& bitmap) {
    const TMapArea& area = GetLayerArea().Area;
    if (!GetBitmap() || !IsFinite(area) || area.GetWidth() <= 0 || area.GetHeight() <= 0)
        return;
    const std::shared_ptr<IWorldSystem>& system = world->GetWorldSystem();
    if (!system)
        throw EInvalidOperation(QStringLiteral("World system is nil"));
    const std::vector<TMapArea> pieces = system->TranslateArea(area);
    for (std::size_t i = 0; i < pieces.size(); ++i)
        PaintPiece(i, pieces[i], *system, *viewport, bitmap);
}

void TIdrisiMapLayer::PaintPiece(std::size_t number, const TMapArea& piece, const IWorldSystem& system,
                                 const TWorldViewport& viewport, TBitmap32& bitmap) {
    const TMapArea& area = GetLayerArea().Area;
    const TBitmap32& source = *GetBitmap();
    const TWideRect destination = ToWideRect(viewport.GetRect(piece));
    const TMapOrientation orientation = system.GetOrientation();
    if (orientation.X < 1 || orientation.Y > 0)
        throw ENotImplemented(QStringLiteral("Not implemented"));
    const auto column = [&](extended x) { return SourceEdge((x - area.Left) / area.GetWidth(), source.GetWidth()); };
    const auto row = [&](extended y) { return SourceEdge((area.Top - y) / area.GetHeight(), source.GetHeight()); };
    const TRect sourceRect(column(piece.Left), row(piece.Top), column(piece.Right), row(piece.Bottom));
    GetReducedPictures().Draw(bitmap, number, destination, sourceRect, source);
}

QString TIdrisiMapLayer::GetLayerTypeName() const {
    return QStringLiteral("Idrisi Image (Raster)");
}

void TIdrisiMapLayer::GetContextMenuItems(std::vector<TLayerMenuItem>* list) {
    TRasterMapLayer::GetContextMenuItems(list);
    const bool hasImage = FImage != nullptr;
    list->emplace_back(QStringLiteral("-"), true, std::function<void()>());
    list->emplace_back(QStringLiteral("Export IdrisiImage..."), hasImage,
                       MenuEvent([this] { ExportIdrisiImageClick(); }));
    list->emplace_back(QStringLiteral("Export ArcInfo Grid ASCII..."), hasImage,
                       MenuEvent([this] { ExportAsciiClick(); }));
    list->emplace_back(QStringLiteral("Export XYZ ASCII..."), hasImage, MenuEvent([this] { ExportXYZClick(); }));
}

void TIdrisiMapLayer::ExportIdrisiImageClick() {
    TIdrisiImageSaveCopyExporter exporter;
    DoExport(QStringLiteral("Idrisi Image"), QStringLiteral("img"), exporter);
}

void TIdrisiMapLayer::ExportAsciiClick() {
    TArcInfoGridASCIIExporter exporter;
    DoExport(QStringLiteral("ArcInfo Grid Ascii"), QStringLiteral("asc"), exporter);
}

void TIdrisiMapLayer::ExportXYZClick() {
    TXYZAsciiExporter exporter;
    DoExport(QStringLiteral("XYZ Ascii"), QStringLiteral("xyz"), exporter);
}

void TIdrisiMapLayer::DoExport(const QString& description, const QString& extension, IIdrisiImageExporter& exporter) {
    TFileDialogRequest request;
    request.Filter = description + QStringLiteral("|*.") + extension;
    request.DefaultExtension = extension;
    request.OverwritePrompt = true;
    QString fileName;
    const TBorrowed self(this); // the layer may go while the dialog is open
    if (TFileDialog::Save(request, fileName) && self && FImage)
        exporter.Export(*FImage, fileName);
}

void TIdrisiMapLayer::InitPropertiesDialog(TLayerPropertiesDialog*) {}

std::unique_ptr<TBaseLayerManagerLayer>
TIdrisiMapLayer::Duplicate(const std::shared_ptr<ILayerManager>& manager) const {
    auto duplicate = std::make_unique<TIdrisiMapLayer>(manager);
    UpdateDuplicateIdrisiMapLayer(duplicate.get());
    duplicate->Render();
    return duplicate;
}

void TIdrisiMapLayer::UpdateDuplicateIdrisiMapLayer(TIdrisiMapLayer* target) const {
    UpdateDuplicateRasterMapLayer(target);
    target->FMapData = FMapData;
    target->FCookieData = FCookieData;
    target->FRenderer = FRenderer;
    if (FImage)
        target->TakeImage(TImageFactory::Copy(*FImage));
    target->FOwnsImage = true;
}

void TIdrisiMapLayer::Render() {
    if (FRenderer && FCookieData && FMapData && GetColorCalc())
        SetRenderedBitmap(MakePicture());
}

// All pixels are written, so it does not matter what the picture of the render before holds.
std::unique_ptr<TBitmap32> TIdrisiMapLayer::MakePicture() {
    const auto opacity = static_cast<float>(GetOpacity() / 255.0);
    std::unique_ptr<TBitmap32> former = TakeGivenUpBitmap();
    if (!former || former->GetWidth() != FCookieData->GetWidth() || former->GetHeight() != FCookieData->GetHeight()) {
        former.reset();
        return FRenderer->Render(FCookieData.get(), FMapData.get(), opacity, GetColorCalc().get());
    }
    FRenderer->Render(FCookieData.get(), FMapData.get(), opacity, GetColorCalc().get(), former.get());
    return former;
}

} // namespace lmx
