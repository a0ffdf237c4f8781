#include <lmx/Layers/Objects/lmxAnchorData.h>

#include <lmx/Runtime/lmxNumberText.h>

#include <QStringList>

namespace lmx {

namespace {

std::int32_t Difference(std::int32_t a, std::int32_t b) {
    return SaturateToInt32(std::int64_t{a} - b);
}

} // namespace

TAnchorData::TAnchorData(const QString& text) {
    const QStringList fields = text.split(u',');
    TAnchorData data;
    if (fields.size() == 4 && TryStrToInt(fields[0], data.Left) && TryStrToInt(fields[1], data.Top) &&
        TryStrToInt(fields[2], data.Right) && TryStrToInt(fields[3], data.Bottom))
        *this = data;
}

QString TAnchorData::ToString() const {
    return IntToStr(Left) + u',' + IntToStr(Top) + u',' + IntToStr(Right) + u',' + IntToStr(Bottom);
}

TAnchorData MeasureAnchors(const TRect& rect, TSize viewSize) {
    return {rect.Left, rect.Top, Difference(viewSize.cx, rect.Right), Difference(viewSize.cy, rect.Bottom)};
}

// The right edge before the left one: an item that is anchored at both is moved first and stretched then.
TRect AnchoredRect(const TRect& rect, TAnchors anchors, const TAnchorData& data, TSize viewSize) {
    TRect result = rect;
    if (anchors.Contains(TAnchorKind::akRight)) {
        result.Right = Difference(viewSize.cx, data.Right);
        result.Left = Difference(result.Right, rect.GetWidth());
    }
    if (anchors.Contains(TAnchorKind::akBottom)) {
        result.Bottom = Difference(viewSize.cy, data.Bottom);
        result.Top = Difference(result.Bottom, rect.GetHeight());
    }
    if (anchors.Contains(TAnchorKind::akLeft))
        result.Left = data.Left;
    if (anchors.Contains(TAnchorKind::akTop))
        result.Top = data.Top;
    return result;
}

} // namespace lmx
