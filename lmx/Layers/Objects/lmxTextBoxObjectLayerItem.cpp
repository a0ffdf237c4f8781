#include <lmx/Layers/Objects/lmxTextBoxObjectLayerItem.h>

#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Layers/Objects/lmxGeneralOptions.h>

namespace lmx {

namespace {

constexpr TRect DefaultRect = {0, 0, 120, 40};
constexpr int LongestDisplayText = 30;
constexpr int KeptOfLongerText = 27;

unsigned TextFlags(TAlignment align) {
    switch (align) {
    case TAlignment::taRightJustify:
        return dtWordBreak | dtRight;
    case TAlignment::taCenter:
        return dtWordBreak | dtCenter;
    case TAlignment::taLeftJustify:
        break;
    }
    return dtWordBreak;
}

} // namespace

TTextBoxObjectLayerItem::TTextBoxObjectLayerItem(TObjectMapLayer* layer)
    : TTextBoxObjectLayerItem(layer, QString(), TFont32().Name, TFont32().Size, clBlack, {},
                              TAlignment::taLeftJustify) {}

TTextBoxObjectLayerItem::TTextBoxObjectLayerItem(TObjectMapLayer* layer, const QString& text, const QString& font,
                                                 int fontSize, TColor color, TFontStyles fontStyles,
                                                 TAlignment textAlign)
    : TBaseObjectLayerItem(layer),
      FFontStyles(fontStyles),
      FFontSize(fontSize),
      FColor(color),
      FFont(font),
      FText(text),
      FTextAlign(textAlign) {
    SetGrabberOptions({TGrabberOption::goResizable});
    TBaseObjectLayerItem::SetRect(ToDevicePixels(DefaultRect));
}

QString TTextBoxObjectLayerItem::GetObjectType() const {
    // Of a text of a megabyte no more is looked at than can be shown.
    const QString display = QStringLiteral("Text: ") + FText.left(LongestDisplayText);
    return display.size() > LongestDisplayText ? display.left(KeptOfLongerText) + QStringLiteral("...") : display;
}

QString TTextBoxObjectLayerItem::GetObjectClassType() const {
    return QStringLiteral("TEXT");
}

void TTextBoxObjectLayerItem::Paint(TWorld* world, TWorldViewport* viewport, TBitmap32& bitmap) {
    TBaseObjectLayerItem::Paint(world, viewport, bitmap);
    TFont32 font;
    font.Name = FFont;
    font.Size = FFontSize;
    font.Ratio = GetDeviceRatio();
    font.Styles = FFontStyles;
    font.Color = FColor;
    bitmap.SetFont(font);
    bitmap.Textout(GetRect(), TextFlags(FTextAlign), FText);
    PaintGrabbers(bitmap);
}

void TTextBoxObjectLayerItem::SetDefaultGeneralOptions(TGeneralOptions& options) {
    options.SetBgColor(Color32(255, 255, 255, 200));
}

} // namespace lmx
