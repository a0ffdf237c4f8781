#include <lmx/DataSources/lmxClimateMapSteps.h>

#include <lmx/Climate/lmxFoundRange.h>
#include <lmx/Colour/lmxBaseColorCalculator.h>
#include <lmx/DataSources/lmxClimateOrigin.h>
#include <lmx/Formats/Idrisi/lmxAbstractImage.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Runtime/lmxFormat.h>

#include <QFileInfo>

#include <cstdint>
#include <map>
#include <set>
#include <utility>

namespace lmx {

namespace {

std::optional<TClimateOrigin> OriginOf(const TBaseMapLayer& layer) {
    const auto* raster = dynamic_cast<const TIdrisiMapLayer*>(&layer);
    if (!raster || !raster->GetImage() || !raster->GetIsVisible())
        return std::nullopt;
    return TClimateOrigin::FromLineage(raster->GetImage()->getHeader()->GetLineage());
}

/// Where the file is now.
QString PlaceOf(const QString& fileName, const QString& folder) {
    if (folder.isEmpty() || QFileInfo::exists(fileName))
        return fileName;
    const QString beside = folder + u'/' + QFileInfo(fileName).fileName();
    return QFileInfo::exists(beside) ? beside : fileName;
}

TClimateSelection SelectionOf(const TClimateDataset& dataset, const TClimateOrigin& origin, const QString& units) {
    const TNullable<std::size_t> variable = dataset.FindVariable(origin.Variable);
    if (!variable.GetHasValue())
        throw EClimateFile(dataset.GetFileName(), Format(u"holds no variable \"%s\"", {origin.Variable}));
    TClimateSelection selection{variable.GetValue()};
    const TClimateVariableInfo& info = dataset.GetVariables()[selection.Variable];
    if (!info.Refusal.isEmpty())
        throw EClimateFile(dataset.GetFileName(), info.Refusal);
    if (!origin.LevelCaption.isEmpty()) {
        while (selection.Level < info.Levels.size() && info.GetLevelCaption(selection.Level) != origin.LevelCaption)
            ++selection.Level;
        if (selection.Level >= info.Levels.size())
            throw EClimateFile(dataset.GetFileName(), Format(u"holds no level \"%s\" of the variable \"%s\"",
                                                             {origin.LevelCaption, origin.Variable}));
    }
    if (units == info.Units && units != info.Conversion.ShownUnits)
        selection.Units = TClimateShownUnits::suFile;
    return selection;
}

/// What of a date a name has.
enum class TNamePart { npMonth, npDay, npMinute, npSecond };

QString NameOf(const TClimateDate& date, TNamePart part, bool hasYears) {
    const QString text = date.ToIsoText(); // "1850-02-30T06:00:00.250"
    const qsizetype time = text.indexOf(u'T');
    QString day = hasYears ? text.first(time) : text.mid(time - 5, 5);
    const QString clock = text.mid(time, 9).remove(u':'); // "T060000"
    switch (part) {
    case TNamePart::npMonth:
        return day.chopped(3);
    case TNamePart::npDay:
        return day;
    case TNamePart::npMinute:
        return day + clock.first(5);
    case TNamePart::npSecond:
        break;
    }
    return day + clock;
}

} // namespace

TClimateMapSteps::TClimateMapSteps(const std::shared_ptr<ILayerManager>& layerManager, const QString& folder) {
    if (!layerManager)
        throw EArgumentNilException(QStringLiteral("LayerManager"));
    std::map<QString, std::shared_ptr<const TClimateDataset>> files;
    for (TBaseMapLayer* layer : layerManager->GetLayers()) {
        const auto origin = OriginOf(*layer);
        if (!origin)
            continue;
        auto& raster = dynamic_cast<TIdrisiMapLayer&>(*layer);
        const QString place = PlaceOf(origin->FileName, folder);
        auto& file = files[place];
        if (!file)
            file = std::make_shared<const TClimateDataset>(place);
        Add(raster, file, SelectionOf(*file, *origin, raster.GetImage()->getHeader()->GetValueUnits()),
            origin->TimeCaption);
    }
}

void TClimateMapSteps::Add(TIdrisiMapLayer& layer, const std::shared_ptr<const TClimateDataset>& dataset,
                           const TClimateSelection& selection, const QString& caption) {
    const std::size_t count = dataset->GetTimes(selection.Variable).GetCount();
    if (count < 2)
        return;
    if (!FLayers.empty() && count != GetCount())
        throw EInvalidOperation(
            Format(u"The layers \"%s\" and \"%s\" have %d and %d steps in time",
                   {FLayers.back().Layer->GetLayerName(), layer.GetLayerName(), qint64(GetCount()), qint64(count)}));
    FLayers.push_back({&layer, dataset, selection, caption});
}

const TClimateTimes& TClimateMapSteps::GetTimes() const {
    static const TClimateTimes none;
    return FLayers.empty() ? none : FLayers.back().Dataset->GetTimes(FLayers.back().Selection.Variable);
}

std::size_t TClimateMapSteps::GetCount() const {
    return GetTimes().GetCount();
}

QString TClimateMapSteps::GetCaption(std::size_t step) const {
    return GetTimes().GetCaption(step);
}

std::optional<TClimateDate> TClimateMapSteps::GetDate(std::size_t step) const {
    return GetTimes().GetDate(step);
}

std::vector<QString> TClimateMapSteps::GetDateNames() const {
    using enum TNamePart;
    const TClimateTimes& times = GetTimes();
    if (!times.HasDates())
        return {};
    for (const TNamePart part : {npMonth, npDay, npMinute, npSecond}) {
        std::vector<QString> names;
        for (std::size_t step = 0; step < times.GetCount(); ++step)
            names.push_back(NameOf(*times.GetDate(step), part, !times.IsClimatology()));
        if (std::set<QString>(names.begin(), names.end()).size() == names.size())
            return names;
    }
    return {};
}

// Whoever is told may end layers, and the steps.
void TClimateMapSteps::Show(std::size_t step) {
    if (step >= GetCount())
        throw EArgumentException(QStringLiteral("Step"));
    const TBorrowed self(this);
    for (std::size_t i = 0; self && i < FLayers.size(); ++i)
        ShowOn(FLayers[i], step);
}

void TClimateMapSteps::ShowOn(TLayer& each, std::size_t step) {
    each.Selection.Time = step;
    TClimatePicture picture = each.Dataset->Read(each.Selection);
    const TBorrowed<TIdrisiMapLayer> layer = each.Layer;
    if (!layer)
        return;
    QString name = layer->GetLayerName();
    if (!each.Caption.isEmpty() && name.endsWith(each.Caption))
        name = name.chopped(each.Caption.size()) + picture.TimeCaption;
    each.Caption = picture.TimeCaption;
    layer->DeleteBitmap(); // which nobody needs rendered once more
    layer->SetIsReadyToDraw(false);
    if (layer)
        layer->TakeImage(std::move(picture.Image));
    if (layer)
        layer->Render(); // views hear that it is ready
    if (layer)
        layer->SetLayerName(name);
    if (layer)
        layer->DoNotifyInvalidated();
}

void TClimateMapSteps::SetColorRange(const TValueRange& range) {
    const TBorrowed self(this);
    for (std::size_t i = 0; self && i < FLayers.size(); ++i)
        StretchColors(FLayers[i], range);
}

void TClimateMapSteps::FitColors() {
    const TBorrowed self(this);
    for (std::size_t i = 0; self && i < FLayers.size(); ++i)
        if (const TFoundRange range = RangeOf(FLayers[i]); range.HasValues())
            StretchColors(FLayers[i], {range.GetLeast(), range.GetGreatest()});
}

TFoundRange TClimateMapSteps::RangeOf(const TLayer& layer) {
    TFoundRange range;
    TClimateSelection selection = layer.Selection;
    const std::size_t count = layer.Dataset->GetTimes(selection.Variable).GetCount();
    for (selection.Time = 0; selection.Time < count; ++selection.Time) {
        const TClimatePicture picture = layer.Dataset->Read(selection);
        for (std::int32_t row = 1; row <= picture.Image->getHeader()->GetHeight(); ++row)
            range.Add(picture.Image->GetRow(row));
    }
    return range;
}

void TClimateMapSteps::StretchColors(const TLayer& layer, const TValueRange& range) {
    if (!layer.Layer)
        return;
    const auto colors = std::dynamic_pointer_cast<IBaseMinMaxColorCalculator>(layer.Layer->GetColorCalc());
    if (colors)
        layer.Layer->SetColorCalc(colors->Clone(static_cast<float>(range.Low), static_cast<float>(range.High)));
}

} // namespace lmx
