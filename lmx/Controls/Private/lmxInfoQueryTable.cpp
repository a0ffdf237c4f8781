#include <lmx/Controls/Private/lmxInfoQueryTable.h>

#include <lmx/Colour/lmxBaseColorCalculator.h>
#include <lmx/Coordinates/wskWorldSystem.h>
#include <lmx/Formats/Idrisi/lmxAbstractImage.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Graphics/lmxSystemColors.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxInfoQueryPointLayer.h>
#include <lmx/Runtime/lmxExtended.h>
#include <lmx/Runtime/lmxFormat.h>
#include <lmx/Runtime/lmxText.h>
#include <lmx/Widgets/Private/lmxDeviceGrid.h>
#include <lmx/Widgets/lmxExternalResources.h>

#include <QPainter>

#include <algorithm>

namespace lmx {

namespace {

// What a layer has at a point; nothing where it does not hold the point, or cannot tell. World systems and calculators
// may be a host's, and the layer may go while they work: all that is used after asking one is held here.
std::optional<TInfoQueryRowDataValue> ValueAt(const TIdrisiMapLayer& layer, const IWorldSystem& worldSystem,
                                              const TMapPoint& point) {
    // NOLINTBEGIN(performance-unnecessary-copy-initialization)
    const TWorldMapArea area = layer.GetLayerArea();
    const std::shared_ptr<TAbstractImage> image = layer.GetSharedImage();
    const std::shared_ptr<IBaseColorCalculator> calculator = layer.GetColorCalc();
    // NOLINTEND(performance-unnecessary-copy-initialization)
    if (!image || !area.WorldSystem)
        return std::nullopt;
    const TMapPoint local = area.WorldSystem->ToLocalPoint(worldSystem.Area(), point);
    if (!area.Area.Contains(local))
        return std::nullopt;
    try {
        const float value = image->GetValue(static_cast<float>(local.X), static_cast<float>(local.Y));
        if (!calculator)
            return std::nullopt;
        return TInfoQueryRowDataValue{value, calculator->GetColor(value)};
    } catch (...) {
        return std::nullopt; // by contract: a value that cannot be read or coloured is left out of the row
    }
}

} // namespace

TInfoQueryPoint* TInfoQueryTable::GetPoint(int row) const {
    return row >= 0 && row < GetCount() ? FRows[static_cast<std::size_t>(row)].Point.Get() : nullptr;
}

TIdrisiMapLayer* TInfoQueryTable::GetLayer(int column) const {
    return column >= 0 && column < GetLayerCount() ? FLayers[static_cast<std::size_t>(column)].Layer.Get() : nullptr;
}

std::optional<TInfoQueryRowDataValue> TInfoQueryTable::GetValue(int row, int column) const {
    if (row < 0 || row >= GetCount() || column < 0)
        return std::nullopt;
    const TInfoQueryRowData& values = FRows[static_cast<std::size_t>(row)].Values;
    return static_cast<std::size_t>(column) < values.size() ? values[static_cast<std::size_t>(column)] : std::nullopt;
}

int TInfoQueryTable::IndexOf(const TInfoQueryPoint* point) const {
    const auto found =
        std::find_if(FRows.begin(), FRows.end(), [point](const TRow& row) { return row.Point.Get() == point; });
    return found == FRows.end() ? -1 : static_cast<int>(found - FRows.begin());
}

int TInfoQueryTable::IndexOf(const TBaseMapLayer* layer) const {
    const auto found = std::find_if(FLayers.begin(), FLayers.end(),
                                    [layer](const TColumn& column) { return column.Layer.Get() == layer; });
    return found == FLayers.end() ? -1 : static_cast<int>(found - FLayers.begin());
}

int TInfoQueryTable::AddPoint(TInfoQueryPoint* point) {
    FRows.push_back({point, {}});
    return GetCount() - 1;
}

void TInfoQueryTable::RemovePoint(int row) {
    FRows.erase(FRows.begin() + row);
}

void TInfoQueryTable::SetLayerName(int column, const QString& name) {
    FLayers[static_cast<std::size_t>(column)].Name = name;
}

void TInfoQueryTable::Clear() {
    FRows.clear();
    FLayers.clear();
}

void TInfoQueryTable::AddLayer(TIdrisiMapLayer* layer, const QString& name) {
    FLayers.push_back({layer, name});
}

void TInfoQueryTable::RemoveLayer(int column) {
    FLayers.erase(FLayers.begin() + column);
    for (TRow& row : FRows)
        if (static_cast<std::size_t>(column) < row.Values.size())
            row.Values.erase(row.Values.begin() + column);
}

// By places and not by references: a calculator of a host's may add and remove rows and columns.
void TInfoQueryTable::Populate(int row) {
    const TBorrowed<TInfoQueryPoint> point = GetPoint(row);
    if (!point)
        return;
    const TMapPoint place = point->GetPoint();
    TInfoQueryRowData values(FLayers.size());
    const std::shared_ptr<IWorldSystem> system = WorldSystem;
    for (std::size_t column = 0; system && column < values.size(); ++column)
        if (const TIdrisiMapLayer* layer = GetLayer(static_cast<int>(column)))
            values[column] = ValueAt(*layer, *system, place);
    values.resize(FLayers.size());
    if (point && GetPoint(row) == point.Get())
        FRows[static_cast<std::size_t>(row)].Values = std::move(values);
}

void TInfoQueryTable::PopulateAll() {
    for (int row = 0; row < GetCount(); ++row)
        Populate(row);
}

TInfoQueryPoint* TInfoQueryTable::MakeCursor() {
    FCursor = std::make_unique<TInfoQueryPoint>(nullptr, TMapPoint(), clBlack32);
    return FCursor.get();
}

bool TInfoQueryTable::IsCursorRow(int row) const {
    return row == 0 && FCursor && GetPoint(0) == FCursor.get();
}

bool TInfoQueryTable::IsPointRow(int row) const {
    const TInfoQueryPoint* point = GetPoint(row);
    return point && point != FCursor.get();
}

QString TInfoQueryTable::ValueText(int row, int column) const {
    const auto value = GetValue(row, column);
    return value ? Format(u"%.3f", {value->Value}) : QStringLiteral("-");
}

QString TInfoQueryTable::GetText(int row, int column) const {
    if (column > 0)
        return ValueText(row, column - 1);
    if (IsCursorRow(row))
        return QStringLiteral("Cursor");
    const TInfoQueryPoint* point = GetPoint(row);
    return point ? point->GetLabelOrLocation() : QString();
}

void TInfoQueryTable::Draw(QPainter& canvas, const TListRow& place, int row) const {
    DrawRowGround(canvas, place);
    DrawMarker(canvas, place, row);
    const QRect& first = place.Cells.front();
    DrawCellText(canvas, first.adjusted(first.height() + 3, 0, 0, 0), GetText(row, 0));
    for (int column = 1; column < static_cast<int>(place.Cells.size()); ++column)
        if (place.Cells[static_cast<std::size_t>(column)].intersects(place.Whole))
            DrawValue(canvas, place, row, column);
}

void TInfoQueryTable::DrawMarker(QPainter& canvas, const TListRow& place, int row) const {
    const QPointF corner(place.Cells.front().left() + 1, place.Whole.top() + 1);
    const double ratio = canvas.device()->devicePixelRatioF();
    if (IsCursorRow(row)) {
        DrawImageOnGrid(
            canvas, corner,
            TExternalResources::GetImage(QStringLiteral("MapWindowFactory.Tools.None"), ratio, place.Ink()));
        return;
    }
    const std::int32_t side = RoundToPixel((place.Whole.height() - 2) * static_cast<extended>(ratio));
    const TInfoQueryPoint* point = GetPoint(row);
    if (!point)
        return;
    TBitmap32 marker(side, side);
    marker.SetDeviceRatio(ratio);
    marker.Clear(place.Ground().rgba());
    InfoPointPaint({side / 2.0L, static_cast<extended>(side)}, marker, point->GetColor(), false,
                   static_cast<float>(side), static_cast<float>(ratio));
    if (marker.IsEmpty())
        return;
    QImage image = marker.ToQImage();
    image.setDevicePixelRatio(ratio);
    DrawImageOnGrid(canvas, corner, image);
}

void TInfoQueryTable::DrawValue(QPainter& canvas, const TListRow& place, int row, int column) const {
    QRect room = place.Cells[static_cast<std::size_t>(column)];
    if (const auto value = GetValue(row, column - 1)) {
        const QRect swatch(room.left(), room.top() + 2, room.height() - 4, room.height() - 4);
        DrawBoxOnGrid(canvas, swatch, place.Ink(), QColor::fromRgb(Color32(WinColor(value->Color))));
        room.setLeft(room.left() + swatch.width() + 2);
    }
    DrawCellText(canvas, room, ValueText(row, column - 1));
}

QString TInfoQueryTable::CopiedHeading() const {
    QString text = QStringLiteral("Location");
    for (const TColumn& column : FLayers)
        text += QStringLiteral("\t\"") + (column.Layer ? column.Layer->GetLayerName() : column.Name) + u'"';
    return text + LineBreak();
}

QString TInfoQueryTable::CopiedRow(int row) const {
    QString text = u'"' + GetText(row, 0) + u'"';
    for (int column = 0; column < GetLayerCount(); ++column)
        text += u'\t' + ValueText(row, column);
    return text + LineBreak();
}

} // namespace lmx
