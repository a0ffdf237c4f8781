#include <lmx/Pictures/Private/lmxAnnotationCopies.h>

#include <lmx/Layers/Objects/lmxBaseObjectLayerItem.h>
#include <lmx/Layers/Objects/lmxCompassRoseObjectLayerItem.h>
#include <lmx/Layers/Objects/lmxLegendObjectLayerItem.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/MapDoc/lmxObjectLayerTypeItemPersist.h>
#include <lmx/Runtime/lmxExtended.h>
#include <lmx/Runtime/lmxXml.h>

#include <utility>

namespace lmx {

namespace {

// Documents keep a border as a background, and the rest here not at all.
void CopyLook(const TBaseObjectLayerItem& from, TBaseObjectLayerItem& to) {
    to.SetShowBackground(from.GetShowBackground());
    to.SetBackgroundColor(from.GetBackgroundColor());
    to.SetShowBorder(from.GetShowBorder());
    to.SetBorderColor(from.GetBorderColor());
    const auto* legend = dynamic_cast<const TLegendObjectLayerItem*>(&from);
    if (auto* copy = dynamic_cast<TLegendObjectLayerItem*>(&to); copy && legend) {
        copy->SetGradientBarSize(legend->GetGradientBarSize());
        copy->SetPaletteBoxSize(legend->GetPaletteBoxSize());
        copy->SetFontName(legend->GetFontName());
        copy->SetFontSize(legend->GetFontSize());
        copy->SetGradientLegendMarks(legend->GetGradientLegendMarks());
        copy->SetPalettePainterFilterCallback(legend->GetPalettePainterFilterCallback());
    }
    if (auto* rose = dynamic_cast<TCompassRoseObjectLayerItem*>(&to)) {
        rose->ReCreateCompassRoseVector();
        rose->ReDrawCompassRose();
    }
}

} // namespace

TAnnotationCopies::TAnnotationCopies(const std::shared_ptr<ILayerManager>& manager, double deviceRatio)
    : FLayer(manager, false) {
    FLayer.SetDeviceRatio(deviceRatio);
    for (const TBaseMapLayer* layer : manager->GetSpecialLayers())
        if (const auto* objects = dynamic_cast<const TObjectMapLayer*>(layer))
            Copy(*objects);
}

void TAnnotationCopies::Copy(const TObjectMapLayer& objects) {
    const double factor = FLayer.GetDeviceRatio() / objects.GetDeviceRatio();
    const TSize size = objects.GetPrevViewSize();
    FLayer.SetPrevViewSize({RoundToPixel(size.cx * factor), RoundToPixel(size.cy * factor)});
    objects.GetObjects().ForEach([this](const TBaseObjectLayerItem* item) { Copy(*item); });
}

void TAnnotationCopies::Copy(const TBaseObjectLayerItem& item) {
    const auto persist = TObjectLayerTypeItemPersistFactory::GetObject(item.GetObjectClassType());
    auto copy = persist ? persist->CreateObject(&FLayer) : nullptr;
    if (!copy)
        return;
    const TXmlDocument document(QStringLiteral("object"));
    persist->Write(&item, document.GetRoot());
    persist->Read(document.GetRoot(), copy.get(), FLayer.GetLayerManager());
    CopyLook(item, *copy);
    FLayer.GetObjects().Add(std::move(copy));
}

} // namespace lmx
