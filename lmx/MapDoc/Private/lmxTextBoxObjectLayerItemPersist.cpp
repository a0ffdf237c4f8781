#include <lmx/MapDoc/Private/lmxTextBoxObjectLayerItemPersist.h>

#include <lmx/Layers/Objects/lmxTextBoxObjectLayerItem.h>
#include <lmx/MapDoc/Private/lmxMapDocTexts.h>
#include <lmx/Runtime/lmxNumberText.h>

namespace lmx {

namespace {

constexpr int AlignmentCount = 3;
const QString Text = QStringLiteral("text");
const QString Font = QStringLiteral("font");
const QString FontSize = QStringLiteral("fontSize");
const QString FontStyles = QStringLiteral("fontStyles");
const QString TextAlign = QStringLiteral("textAlign");
const QString Color = QStringLiteral("color");

} // namespace

void TTextBoxObjectLayerItemPersist::Read(TXmlNode node, TBaseObjectLayerItem* item,
                                          const std::shared_ptr<ILayerManager>& manager) {
    TBaseObjectLayerTypeItemPersist::Read(node, item, manager);
    auto& box = ItemAs<TTextBoxObjectLayerItem>(item);
    const QString missing = QStringLiteral("Required node missing");
    const QString text = RequiredText(node, Text, missing);
    const QString font = RequiredText(node, Font, missing);
    const QString fontSize = RequiredText(node, FontSize, missing);
    const QString fontStyles = RequiredText(node, FontStyles, missing);
    const QString textAlign = RequiredText(node, TextAlign, missing);
    const QString color = RequiredText(node, Color, missing);
    box.SetText(text);
    box.SetFont(font);
    box.SetFontSize(StrToInt(fontSize));
    box.SetFontStyles(StringToFontStyles(fontStyles));
    box.SetTextAlign(static_cast<TAlignment>(TextToOrdinal(textAlign, AlignmentCount)));
    box.SetColor(TColor{static_cast<std::int32_t>(DecimalToLow32(color))});
}

void TTextBoxObjectLayerItemPersist::Write(const TBaseObjectLayerItem* item, TXmlNode node) {
    TBaseObjectLayerTypeItemPersist::Write(item, node);
    const auto& box = ItemAs<const TTextBoxObjectLayerItem>(item);
    AddText(node, Text, box.GetText());
    AddText(node, Font, box.GetFont());
    AddText(node, FontSize, IntToStr(box.GetFontSize()));
    AddText(node, FontStyles, FontStylesToString(box.GetFontStyles()));
    AddText(node, TextAlign, IntToStr(static_cast<int>(box.GetTextAlign())));
    AddText(node, Color, IntToStr(box.GetColor().Value));
}

std::unique_ptr<TBaseObjectLayerItem> TTextBoxObjectLayerItemPersist::CreateObject(TObjectMapLayer* layer) {
    return std::make_unique<TTextBoxObjectLayerItem>(layer);
}

} // namespace lmx
