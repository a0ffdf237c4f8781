#pragma once

#include <lmx/Coordinates/wskMappingTypes.h>
#include <lmx/Graphics/lmxColor32.h>

#include <memory>

namespace lmx {

class TBitmap32;
class TWorldViewport;

/// A cross that marks a place of the map and leaves its centre open. It keeps a picture of itself, which is blended
/// into each paint. Setters answer whether that changed anything.
class TCrosshair {
public:
    TCrosshair();
    ~TCrosshair();

    bool GetIsShown() const { return FIsShown; } ///< false at first
    bool SetIsShown(bool isShown);
    const TMapPoint& GetPlace() const { return FPlace; }
    bool SetPlace(const TMapPoint& place);
    TColor32 GetColor() const { return FColor; } ///< opaque black at first
    bool SetColor(TColor32 color);
    int GetThickness() const { return FThickness; } ///< in pixels at ratio 1; 1 at first
    bool SetThickness(int thickness);
    bool GetHighlights() const { return FHighlights; } ///< a bright copy beside the arms, for dark maps; false at first
    bool SetHighlights(bool highlights);

    /// Draws the cross where its place lies, if it is shown, on a screen of `ratio` device pixels in a logical one. The
    /// first of these paints shows none, unless one of the colour, the thickness and the highlights was set before.
    void Paint(TBitmap32& bitmap, const TWorldViewport& viewport, double ratio);

    /// The picture that the last paint drew, or nil.
    const TBitmap32* GetSprite() const { return FSprite.get(); }

private:
    template<class Value>
    bool Restyle(Value& style, const Value& value);
    void DrawSprite(double ratio);

    bool FIsShown = false;
    TMapPoint FPlace;
    TColor32 FColor = clBlack32;
    int FThickness = 1;
    bool FHighlights = false;
    bool FIsPrepared = false;
    std::unique_ptr<TBitmap32> FSprite;
    double FSpriteRatio = 1;
};

} // namespace lmx
