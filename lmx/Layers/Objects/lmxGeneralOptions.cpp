#include <lmx/Layers/Objects/lmxGeneralOptions.h>

#include <lmx/Layers/Objects/lmxBaseObjectLayerItem.h>

namespace lmx {

void TGeneralOptions::UpdateOptions(const TBaseObjectLayerItem* item) {
    FShowBg = item->GetShowBackground();
    FLockObject = item->GetLocked();
    FBgColor = item->GetBackgroundColor();
    FShowBorder = item->GetShowBorder();
    FBorderColor = item->GetBorderColor();
    FIsVisible = item->GetIsVisible();
}

void TGeneralOptions::UpdateObject(TBaseObjectLayerItem* item) const {
    const TGeneralOptions options = *this; // whoever is told may free these, too
    const TBorrowed target(item);
    target->SetShowBackground(options.FShowBg);
    if (target)
        target->SetLocked(options.FLockObject);
    if (target)
        target->SetBackgroundColor(options.FBgColor);
    if (target)
        target->SetShowBorder(options.FShowBorder);
    if (target)
        target->SetBorderColor(options.FBorderColor);
    if (target)
        target->SetIsVisible(options.FIsVisible);
}

} // namespace lmx
