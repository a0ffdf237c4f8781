#pragma once

#include <lmx/Graphics/lmxAlignment.h>
#include <lmx/Graphics/lmxFontStyles.h>
#include <lmx/Layers/Objects/lmxBaseObjectLayerItem.h>
#include <lmx/Runtime/lmxExport.h>

namespace lmx {

class TGeneralOptions;

/// A text, wrapped and clipped to its rectangle, which does not grow. `&` underlines the next letter and `&&` is one
/// `&`.
class LMX_EXPORT TTextBoxObjectLayerItem : public TBaseObjectLayerItem {
public:
    /// No text, "Tahoma" 8, black, at the left. 120 x 40 pixels to the eye.
    explicit TTextBoxObjectLayerItem(TObjectMapLayer* layer);
    TTextBoxObjectLayerItem(TObjectMapLayer* layer, const QString& text, const QString& font, int fontSize,
                            TColor color, TFontStyles fontStyles, TAlignment textAlign);

    /// "Text: " and the text; of more than 30 characters the first 27 and "...".
    QString GetObjectType() const override;
    QString GetObjectClassType() const override; ///< "TEXT"
    void Paint(TWorld* world, TWorldViewport* viewport, TBitmap32& bitmap) override;

    TColor GetColor() const { return FColor; }
    void SetColor(TColor color) { Store(FColor, color); }
    const QString& GetFont() const { return FFont; } ///< the name
    void SetFont(const QString& font) { Store(FFont, font); }
    int GetFontSize() const { return FFontSize; } ///< points
    void SetFontSize(int size) { Store(FFontSize, size); }
    TFontStyles GetFontStyles() const { return FFontStyles; }
    void SetFontStyles(TFontStyles styles) { Store(FFontStyles, styles); }
    const QString& GetText() const { return FText; }
    void SetText(const QString& text) { Store(FText, text); }
    TAlignment GetTextAlign() const { return FTextAlign; }
    void SetTextAlign(TAlignment align) { Store(FTextAlign, align); }

    /// What a new text box begins with: a background of translucent white.
    static void SetDefaultGeneralOptions(TGeneralOptions& options);

private:
    TFontStyles FFontStyles;
    int FFontSize;
    TColor FColor;
    QString FFont;
    QString FText;
    TAlignment FTextAlign = TAlignment::taLeftJustify;
};

} // namespace lmx
