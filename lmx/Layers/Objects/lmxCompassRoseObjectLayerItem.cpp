#include <lmx/Layers/Objects/lmxCompassRoseObjectLayerItem.h>

#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Graphics/lmxVectorDoc.h>

#include <algorithm>

namespace lmx {

namespace {

constexpr TRect DefaultRect = {0, 0, 256, 256};
constexpr std::int32_t LargestPicture = 4096;
constexpr double DocumentSide = 512;
constexpr double LetterHeight = 42;

// Each ray of the rose is a dark and a light triangle, clockwise from the north.
constexpr const char* Triangles[] = {
    "256,53 256,256 203,203",  "256,53 256,256 309,203",  "459,256 256,256 309,203", "459,256 256,256 309,309",
    "256,459 256,256 309,309", "256,459 256,256 203,309", "53,256 256,256 203,309",  "53,256 256,256 203,203",
};

TTextItem Letter(const char* text, TFloatPoint position, THAlign horizontal, TVAlign vertical, TColor32 color) {
    TTextItem item;
    item.Text = QString::fromLatin1(text);
    item.FontName = QStringLiteral("Arial");
    item.Position = position;
    item.Height = LetterHeight;
    item.FillColor = color;
    item.HorizontalAlign = horizontal;
    item.VerticalAlign = vertical;
    return item;
}

TSize PictureSize(const TRect& rect) {
    return {std::clamp(rect.GetWidth(), 0, LargestPicture), std::clamp(rect.GetHeight(), 0, LargestPicture)};
}

} // namespace

TCompassRoseObjectLayerItem::TCompassRoseObjectLayerItem(TObjectMapLayer* layer) : TBaseObjectLayerItem(layer) {
    SetGrabberOptions({TGrabberOption::goResizable, TGrabberOption::goFixedAspect});
    ReCreateCompassRoseVector();
    TCompassRoseObjectLayerItem::SetRect(ToDevicePixels(DefaultRect));
}

TCompassRoseObjectLayerItem::~TCompassRoseObjectLayerItem() = default;

void TCompassRoseObjectLayerItem::SetRect(const TRect& rect) {
    TBaseObjectLayerItem::SetRect(rect);
    const TSize size = PictureSize(GetRect());
    if (!FBuff || TSize(FBuff->GetWidth(), FBuff->GetHeight()) != size)
        ReDrawCompassRose();
}

QString TCompassRoseObjectLayerItem::GetObjectType() const {
    return QStringLiteral("Compass rose");
}

QString TCompassRoseObjectLayerItem::GetObjectClassType() const {
    return QStringLiteral("COMPASSROSE");
}

void TCompassRoseObjectLayerItem::ReCreateCompassRoseVector() {
    CreateVecDoc(FDarkColor, FLightColor, FFontColor, FLineColor);
}

void TCompassRoseObjectLayerItem::CreateVecDoc(TColor32 darkColor, TColor32 lightColor, TColor32 fontColor,
                                               TColor32 lineColor) {
    constexpr double middle = DocumentSide / 2;
    const auto document = std::make_shared<TVectorDoc>();
    document->Width = DocumentSide;
    document->Height = DocumentSide;
    document->Items.emplace_back(TClearItem{0});
    bool isDark = true;
    for (const char* points : Triangles) {
        const TColor32 fill = isDark ? darkColor : lightColor;
        document->Items.emplace_back(
            TPolygonItem{StringToFloatPoints(QString::fromLatin1(points)), fill, lineColor, 1});
        isDark = !isDark;
    }
    const auto add = [&](const char* text, TFloatPoint position, THAlign horizontal, TVAlign vertical) {
        document->Items.emplace_back(Letter(text, position, horizontal, vertical, fontColor));
    };
    add("N", {middle, 0}, THAlign::haCenter, TVAlign::vaTop);
    add("S", {middle, DocumentSide}, THAlign::haCenter, TVAlign::vaBottom);
    add("E", {DocumentSide, middle}, THAlign::haRight, TVAlign::vaMiddle);
    add("W", {0, middle}, THAlign::haLeft, TVAlign::vaMiddle);
    FVecDoc = document;
    FVecDocRenderer.SetDocument(FVecDoc);
}

void TCompassRoseObjectLayerItem::ReDrawCompassRose() {
    const TSize size = PictureSize(GetRect());
    FBuff.reset();
    auto picture = std::make_unique<TBitmap32>(size.cx, size.cy);
    picture->SetDrawMode(TDrawMode::dmBlend);
    picture->SetCombineMode(TCombineMode::cmMerge);
    FVecDocRenderer.Render(*picture);
    FBuff = std::move(picture);
}

void TCompassRoseObjectLayerItem::Paint(TWorld* world, TWorldViewport* viewport, TBitmap32& bitmap) {
    TBaseObjectLayerItem::Paint(world, viewport, bitmap);
    if (FBuff)
        bitmap.Draw(GetRect(), FBuff->GetBounds(), *FBuff);
    PaintGrabbers(bitmap);
}

} // namespace lmx
