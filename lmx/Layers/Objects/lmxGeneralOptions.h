#pragma once

#include <lmx/Graphics/lmxColor32.h>
#include <lmx/Runtime/lmxExport.h>
#include <lmx/Runtime/lmxLifetime.h>

namespace lmx {

class TBaseObjectLayerItem;

/// The properties that all annotations have, on their way between an annotation and a dialog.
class LMX_EXPORT TGeneralOptions {
public:
    /// Takes the properties of the annotation.
    void UpdateOptions(const TBaseObjectLayerItem* item);
    /// Gives the annotation the properties; it tells of each that is new, and may be freed by whoever is told.
    void UpdateObject(TBaseObjectLayerItem* item) const;

    bool GetShowBg() const { return FShowBg; }
    void SetShowBg(bool show) { FShowBg = show; }
    bool GetLockObject() const { return FLockObject; }
    void SetLockObject(bool lock) { FLockObject = lock; }
    TColor32 GetBgColor() const { return FBgColor; }
    void SetBgColor(TColor32 color) { FBgColor = color; }
    TColor32 GetBorderColor() const { return FBorderColor; }
    void SetBorderColor(TColor32 color) { FBorderColor = color; }
    bool GetShowBorder() const { return FShowBorder; }
    void SetShowBorder(bool show) { FShowBorder = show; }
    bool GetIsVisible() const { return FIsVisible; }
    void SetIsVisible(bool isVisible) { FIsVisible = isVisible; }

    const TLifetime& GetLifetime() const { return FLifetime; }

private:
    bool FShowBg = true;
    bool FLockObject = false;
    TColor32 FBgColor = Color32(255, 255, 255, 200);
    TColor32 FBorderColor = Color32(0, 0, 0, 200);
    bool FShowBorder = false;
    bool FIsVisible = true;
    TLifetime FLifetime;
};

} // namespace lmx
