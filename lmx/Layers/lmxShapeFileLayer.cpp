#include <lmx/Layers/lmxShapeFileLayer.h>

#include <lmx/Coordinates/wskWorldSystem.h>
#include <lmx/Formats/Shapes/lmxShapePointConverter.h>
#include <lmx/Formats/Shapes/lmxShpFile.h>
#include <lmx/Graphics/lmxSystemColors.h>
#include <lmx/Layers/Private/lmxLayerComponents.h>
#include <lmx/Layers/Render/Private/lmxRenderThreadPool.h>
#include <lmx/Layers/Render/Private/lmxShapeFileRender.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Layers/lmxLayerManagerConfig.h>
#include <lmx/Runtime/lmxBorrowed.h>
#include <lmx/Runtime/lmxExceptions.h>

#include <QObject>
#include <QPointer>

#include <algorithm>
#include <utility>

namespace lmx {

namespace {

constexpr std::size_t LargeGeometry = 8 * 1024 * 1024; // bytes whose freeing the main thread would notice

// Giving many pages back takes the system a while. Where no thread can be had they are freed here.
void FreeInBackground(std::shared_ptr<const TShpData> data) {
    const auto thread = RenderThreadPool().GetThread();
    thread->SetOnExecute([](TThreadPoolThread&) {});
    thread->SetData(std::const_pointer_cast<TShpData>(std::move(data)));
    try {
        thread->StartOperation();
    } catch (const EInvalidOperation&) {
        // By contract: the geometry goes with the thread that was not started.
    }
}

TSeamFolding FoldingOf(const TMapArea& area, const IWorldSystem& system) {
    if (system.GetGroup() != QStringLiteral("latlon"))
        return {};
    const TMapArea& world = system.Area();
    return {true, std::min(area.Left, area.Right) < world.Left, std::max(area.Left, area.Right) > world.Right};
}

} // namespace

TShapeFileLayer::TShapeFileLayer(const std::shared_ptr<ILayerManager>& layerManager)
    : TBaseShapeLayer(layerManager),
      FProjection(std::make_shared<TWGS84ShapeFileProjection>()) {}

TShapeFileLayer::~TShapeFileLayer() {
    DeleteShpFile();
}

TShpFile* TShapeFileLayer::GetShpFile() const {
    return FShpFile.Get();
}

void TShapeFileLayer::SetShpFile(TShpFile* shpFile) {
    if (!shpFile)
        throw EExArgumentNilException(QStringLiteral("TShapeFileLayer.SetShpFile"), QStringLiteral("ShpFile"));
    if (shpFile == GetShpFile())
        return;
    const TWorldMapArea area = AreaOf(*shpFile);
    DeleteShpFile();
    ShowShpFile(shpFile, area);
}

void TShapeFileLayer::TakeShpFile(std::unique_ptr<TShpFile> shpFile) {
    if (!shpFile || shpFile.get() == GetShpFile()) {
        SetShpFile(shpFile.release());
        FOwnsShpFile = true;
        return;
    }
    const TWorldMapArea area = AreaOf(*shpFile);
    DeleteShpFile();
    FOwnsShpFile = true;
    ShowShpFile(shpFile.release(), area);
}

// The bounds of a file, projected. A projection that fails leaves the layer as it was.
TWorldMapArea TShapeFileLayer::AreaOf(const TShpFile& shpFile) const {
    const TMapPoint corner1 = ProjectMapPoint(shpFile.GetXMin(), shpFile.GetYMin());
    const TMapPoint corner2 = ProjectMapPoint(shpFile.GetXMax(), shpFile.GetYMax());
    const auto system = TLatLonWorldSystemFactory::GetObject();
    return {system->CreateMapArea(corner1.X, corner1.Y, corner2.X, corner2.Y), system};
}

void TShapeFileLayer::ShowShpFile(TShpFile* shpFile, const TWorldMapArea& area) {
    FShpFile = shpFile;
    const TBorrowed self(this);
    Invalidate(true);
    if (self)
        CreateLegendComponent();
    if (self)
        SetLayerArea(area);
}

void TShapeFileLayer::DeleteShpFile() {
    TShpFile* const file = GetShpFile();
    FShpFile = nullptr;
    if (!FOwnsShpFile || !file)
        return;
    auto geometry = file->GetMemorySize() >= LargeGeometry ? file->GetData() : nullptr;
    delete file;
    if (geometry)
        FreeInBackground(std::move(geometry)); // this thread has no share left to drop
}

void TShapeFileLayer::SetProjection(std::shared_ptr<const IShapeFileProjection> projection) {
    if (GetShpFile())
        throw EInvalidOperation(QStringLiteral("Projection must be set before ShapeFile is set"));
    FProjection = std::move(projection);
}

TMapPoint TShapeFileLayer::ProjectMapPoint(extended x, extended y) const {
    TMapPoint point(x, y);
    if (FProjection)
        FProjection->Convert(x, y, point.X, point.Y);
    return point;
}

void TShapeFileLayer::SetFoldsAtSeam(bool foldsAtSeam) {
    if (foldsAtSeam == FFoldsAtSeam)
        return;
    FFoldsAtSeam = foldsAtSeam;
    Invalidate(true);
}

void TShapeFileLayer::CreateLegendComponent() {
    TBaseShapeLayer::CreateLegendComponent();
    const TBorrowed self(this); // the factory is a host's
    const TLegendColorEvent onColorChanged = [self](TBaseLegendControl* sender, TColor color) {
        if (self)
            self->Comp_OnColorChanged(sender, color);
    };
    const auto manager = GetLayerManager();
    TBaseLegendControl* control = nullptr;
    if (const auto factory = manager ? manager->GetConfig()->GetLayerComponentFactory() : nullptr) {
        TBaseLegendControl* supplied = nullptr;
        if (factory->GetLegendComponent(this, supplied))
            control = TakeShapeFileLegendControl(supplied, onColorChanged);
    } else {
        control = CreateShapeFileLegendControl(GetShpFile(), WinColor(GetColor()), onColorChanged);
    }
    if (self)
        SetLegendComponent(control);
}

// The colour makes a new legend, and the one that tells is shown the colour only if it still lives.
void TShapeFileLayer::Comp_OnColorChanged(TBaseLegendControl* sender, TColor color) {
    const QPointer<QObject> legend = LegendControlObject(sender);
    SetColor(Color32(color));
    if (legend)
        ShowLegendColor(sender, color);
}

bool TShapeFileLayer::GetHasContent() const {
    return GetShpFile() != nullptr;
}

QString TShapeFileLayer::GetLayerTypeName() const {
    return QStringLiteral("Shape file");
}

TLayerOptionFlags TShapeFileLayer::GetLayerOptionFlags() const {
    return TBaseShapeLayer::GetLayerOptionFlags() + TLayerOptionFlags{TLayerOptionFlag::lofDuplicate};
}

std::unique_ptr<TBaseLayerManagerLayer>
TShapeFileLayer::Duplicate(const std::shared_ptr<ILayerManager>& manager) const {
    auto duplicate = std::make_unique<TShapeFileLayer>(manager);
    UpdateDuplicateBaseShapeLayer(duplicate.get());
    duplicate->FProjection = FProjection;
    duplicate->FFoldsAtSeam = FFoldsAtSeam;
    if (const TShpFile* file = GetShpFile()) {
        TShpLoadOptions options;
        options.SkipDamagedRecords = file->GetDamagedRecordCount() > 0; // what could be shown can be shown again
        duplicate->TakeShpFile(
            TShpFile::LoadFromFile(file->GetFileName(), ConversionOf(file->GetFileName()).Converter, options));
    }
    return duplicate;
}

void TShapeFileLayer::RenderBuffer(TSize viewSize, const TMapArea& visibleMapArea, const TWorldViewportLocal& vpLocal) {
    const TShpFile* file = GetShpFile();
    StartRender(std::make_shared<TShapeFileLayerRenderThreadHandler>(
        viewSize, visibleMapArea, vpLocal, file ? file->GetData() : nullptr, FProjection, GetColor(),
        FFoldsAtSeam ? FoldingOf(GetLayerArea().Area, vpLocal.GetWorldSystem()) : TSeamFolding()));
}

} // namespace lmx
