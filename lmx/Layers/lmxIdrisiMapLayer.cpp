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

#include <QScopeGuard>

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

// Frees the image unless it is the host's.
struct TImageDeleter {
    bool OwnsImage;

    void operator()(TAbstractImage* image) const {
        if (OwnsImage)
            delete image;
    }
};

} // namespace

TIdrisiMapLayer::TIdrisiMapLayer(const std::shared_ptr<ILayerManager>& layerManager)
    : TRasterMapLayer(layerManager),
      FRenderer(TBitmap32RasterRendererFactory::GetObject()) {}

TIdrisiMapLayer::~TIdrisiMapLayer() = default;

void TIdrisiMapLayer::SetImage(TAbstractImage* image) {
    if (image == GetImage())
        return;
    std::shared_ptr<TAbstractImage> given = ReplacedImage(image);
    if (image && !given)
        given = {image, TImageDeleter{FOwnsGivenImages}};
    ShowImage(given, TOrigin::orGiven);
}

void TIdrisiMapLayer::TakeImage(std::unique_ptr<TAbstractImage> image) {
    if (image.get() == GetImage()) {
        if (image.release())
            StoreImage(FImage, TOrigin::orTaken);
        return;
    }
    std::shared_ptr<TAbstractImage> taken = ReplacedImage(image.get());
    if (taken)
        static_cast<void>(image.release()); // it has an owner here
    else if (image)
        taken = {image.release(), TImageDeleter{true}};
    ShowImage(taken, TOrigin::orTaken);
}

void TIdrisiMapLayer::SetOwnsImage(bool ownsImage) {
    FOwnsGivenImages = ownsImage;
    StoreOwnsImage(ownsImage);
}

// Subscribers may free the layer, and show another image meanwhile.
void TIdrisiMapLayer::ShowImage(const std::shared_ptr<TAbstractImage>& image, TOrigin origin) {
    // Reading the new image can fail, and then nothing has changed.
    const TImageHeader* header = image ? image->getHeader() : nullptr;
    const auto data = image ? std::make_shared<TIdrisiImageMapData>(image.get(), true) : nullptr;
    const TWorldMapArea area = header ? TWorldMapArea(header) : TWorldMapArea();
    const auto range = header ? TValueRange(header->GetMinValue(), header->GetMaxValue()) : TValueRange::Empty();
    const TBorrowed self(this);
    {
        FIsReplacingImage = origin == TOrigin::orTaken;
        const auto over = qScopeGuard([&self, this] {
            if (self)
                FIsReplacingImage = false;
        });
        Invalidate();
    }
    if (!self)
        return;
    const std::shared_ptr<TAbstractImage> replaced = FImage; // until all have been told: they may still look at it
    StoreImage(image, origin);
    FMapData = data;
    FCookieData = data;
    if (image)
        SetLayerArea(area);
    if (!self || FImage != image)
        return;
    StoreValueRange(range);
    CreateLegendComponent();
}

std::shared_ptr<TAbstractImage> TIdrisiMapLayer::ReplacedImage(const TAbstractImage* image) const {
    const auto known = std::find_if(FReplacedImages.begin(), FReplacedImages.end(),
                                    [image](const auto& replaced) { return replaced.get() == image; });
    return known == FReplacedImages.end() ? nullptr : *known;
}

void TIdrisiMapLayer::StoreImage(const std::shared_ptr<TAbstractImage>& image, TOrigin origin) {
    if (image != FImage && FOwnsImage && FImageOrigin == TOrigin::orGiven && FImage)
        FReplacedImages.push_back(FImage);
    std::erase(FReplacedImages, image);
    FImage = image;
    FImageOrigin = origin;
    if (image)
        StoreOwnsImage(origin == TOrigin::orTaken || FOwnsGivenImages);
}

void TIdrisiMapLayer::StoreOwnsImage(bool ownsImage) {
    FOwnsImage = ownsImage;
    if (auto* deleter = std::get_deleter<TImageDeleter>(FImage))
        deleter->OwnsImage = ownsImage;
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
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): the world may get another while this one is asked
    const std::shared_ptr<IWorldSystem> system = world->GetWorldSystem();
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
    const TBorrowed self(this); // the layer may go while the dialog is open, and the image while it is written
    if (!TFileDialog::Save(request, fileName) || !self)
        return;
    if (const std::shared_ptr<TAbstractImage> image = FImage)
        exporter.Export(*image, fileName);
}

void TIdrisiMapLayer::InitPropertiesDialog(TLayerPropertiesDialog* dialog) {
    if (!dialog)
        throw EExArgumentNilException(QStringLiteral("TIdrisiMapLayer.InitPropertiesDialog"), QStringLiteral("Dialog"));
    AddBoundsPage(*dialog, *this);
    AddDisplayPage(*dialog, *this);
    if (FImage)
        AddImageHeaderPage(*dialog, *FImage->getHeader());
    AddAttributesPage(*dialog, *this);
}

std::unique_ptr<TBaseLayerManagerLayer>
TIdrisiMapLayer::Duplicate(const std::shared_ptr<ILayerManager>& manager) const {
    auto duplicate = std::make_unique<TIdrisiMapLayer>(manager);
    UpdateDuplicateIdrisiMapLayer(duplicate.get());
    duplicate->Render();
    return duplicate;
}

void TIdrisiMapLayer::UpdateDuplicateIdrisiMapLayer(TIdrisiMapLayer* target) const {
    const TBorrowed self(this); // a calculator of the host's, which is copied, may free the layer
    UpdateDuplicateRasterMapLayer(target);
    if (!self)
        return;
    target->FMapData = FMapData;
    target->FCookieData = FCookieData;
    target->FRenderer = FRenderer;
    if (FImage)
        target->TakeImage(TImageFactory::Copy(*FImage));
    target->FOwnsImage = true;
}

// A calculator of the host's may replace what is being rendered, and free the layer.
void TIdrisiMapLayer::Render() {
    const std::shared_ptr<IRasterRenderer> renderer = FRenderer;
    const std::shared_ptr<ICookieData> cookieData = FCookieData;
    const std::shared_ptr<IMapData> mapData = FMapData;
    const std::shared_ptr<IBaseColorCalculator> colorCalc = GetColorCalc();
    if (!renderer || !cookieData || !mapData || !colorCalc)
        return;
    const auto opacity = static_cast<float>(GetOpacity() / 255.0);
    const TIngredients ingredients{mapData, colorCalc, GetOpacity()};
    const TBorrowed self(this);
    // All pixels are written, so it does not matter what the picture of the render before holds.
    std::unique_ptr<TBitmap32> bitmap = TakeGivenUpBitmap();
    // Another image is about to be shown, such as the next of a player: the picture of before does for the moment.
    if (bitmap && FIsReplacingImage && ingredients.AreSame(FRendered)) {
        SetRenderedBitmap(std::move(bitmap));
        return;
    }
    if (bitmap && bitmap->GetWidth() == cookieData->GetWidth() && bitmap->GetHeight() == cookieData->GetHeight()) {
        renderer->Render(cookieData.get(), mapData.get(), opacity, colorCalc.get(), bitmap.get());
    } else {
        bitmap.reset(); // its memory first
        bitmap = renderer->Render(cookieData.get(), mapData.get(), opacity, colorCalc.get());
    }
    if (!self)
        return;
    FRendered = ingredients;
    SetRenderedBitmap(std::move(bitmap));
}

bool TIdrisiMapLayer::TIngredients::AreSame(const TIngredients& other) const {
    return Data.lock() == other.Data.lock() && Colors.lock() == other.Colors.lock() && Opacity == other.Opacity;
}

} // namespace lmx
