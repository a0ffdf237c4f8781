#include <lmx/Layers/lmxVectorFileLayer.h>

#include <lmx/Formats/Idrisi/lmxVector.h>
#include <lmx/Graphics/lmxSystemColors.h>
#include <lmx/Layers/Private/lmxLayerComponents.h>
#include <lmx/Layers/Render/Private/lmxVectorFileRender.h>
#include <lmx/Runtime/lmxBorrowed.h>

#include <utility>

namespace lmx {

TVectorFileLayer::TVectorFileLayer(const std::shared_ptr<ILayerManager>& layerManager)
    : TBaseShapeLayer(layerManager) {}

TVectorFileLayer::~TVectorFileLayer() = default;

void TVectorFileLayer::SetVectorFile(std::unique_ptr<TVector> vectorFile) {
    if (vectorFile == FVectorFile)
        return;
    FVectorFile = std::move(vectorFile);
    OutdateBuffer();
    const TBorrowed self(this);
    Invalidate();
    if (self)
        CreateLegendComponent();
}

void TVectorFileLayer::DeleteVectorFile() {
    FVectorFile = nullptr;
}

void TVectorFileLayer::CreateLegendComponent() {
    TBaseShapeLayer::CreateLegendComponent();
    SetLegendComponent(CreateVectorFileLegendControl(WinColor(GetColor()),
                                                     [self = TBorrowed(this)](TBaseLegendControl*, TColor color) {
                                                         if (self)
                                                             self->Comp_OnColorChanged(color);
                                                     }));
}

void TVectorFileLayer::Comp_OnColorChanged(TColor color) {
    DropBuffer();
    SetColor(Color32(color));
}

bool TVectorFileLayer::GetHasContent() const {
    return FVectorFile != nullptr;
}

QString TVectorFileLayer::GetLayerTypeName() const {
    return QStringLiteral("Vector");
}

TLayerOptionFlags TVectorFileLayer::GetLayerOptionFlags() const {
    return TBaseShapeLayer::GetLayerOptionFlags() + TLayerOptionFlags{TLayerOptionFlag::lofDuplicate};
}

std::unique_ptr<TBaseLayerManagerLayer>
TVectorFileLayer::Duplicate(const std::shared_ptr<ILayerManager>& manager) const {
    auto duplicate = std::make_unique<TVectorFileLayer>(manager);
    UpdateDuplicateBaseShapeLayer(duplicate.get());
    if (FVectorFile)
        duplicate->SetVectorFile(FVectorFile->GetFileName().isEmpty()
                                     ? std::make_unique<TVector>(*FVectorFile)
                                     : std::make_unique<TVector>(FVectorFile->GetFileName()));
    return duplicate;
}

void TVectorFileLayer::RenderBuffer(TSize viewSize, const TMapArea& visibleMapArea,
                                    const TWorldViewportLocal& vpLocal) {
    StartRender(std::make_shared<TVectorFileLayerRenderThreadHandler>(
        viewSize, visibleMapArea, vpLocal, FVectorFile ? FVectorFile->GetData() : nullptr, GetColor()));
}

} // namespace lmx
