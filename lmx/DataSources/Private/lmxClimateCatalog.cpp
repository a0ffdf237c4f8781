#include <lmx/DataSources/Private/lmxClimateCatalog.h>

#include <lmx/DataSources/Private/lmxUnitText.h>
#include <lmx/DataSources/Private/lmxWorldPlace.h>
#include <lmx/DataSources/lmxClimateFrames.h>
#include <lmx/DataSources/lmxClimateNames.h>
#include <lmx/Runtime/lmxFormat.h>
#include <lmx/Runtime/lmxNumberText.h>

#include <QFileInfo>

#include <algorithm>

namespace lmx {

namespace {

QString NameOf(const QString& path) {
    return path.mid(path.startsWith(u'/') ? 1 : 0);
}

TUnitSubject SubjectOf(const TClimateVariableInfo& info, const TClimateAttributes& attributes) {
    return {info.Name.section(u'/', -1), info.StandardName, info.LongName, info.CellMethods,
            attributes.Text(QStringLiteral("units_metadata"))};
}

/// A standard name may call places what is counted in another way.
void RequireDegrees(const QString& axis, const QString& units) {
    static const QStringList others = QStringLiteral("1 rad radian radians degreewest degreeswest degreew degreesw "
                                                     "degreesouth degreessouth")
                                          .split(u' ');
    if (others.contains(FoldUnit(units).remove(u' ')) || IsLengthUnit(units))
        RefuseAxis(axis, QStringLiteral("counts in \"%1\", not in degrees to the east and north.").arg(units));
}

} // namespace

TClimateCatalog::TClimateCatalog(std::unique_ptr<IClimateSource> source, const QString& fileName)
    : FFileName(fileName),
      FSource(std::move(source)),
      FIndex(*FSource),
      FAttributes(FSource->ReadFileAttributes()) {
    for (std::size_t i = 0; i < FIndex.GetArrays().size(); ++i)
        if (!FIndex.IsServant(i))
            Add(i);
}

void TClimateCatalog::Add(std::size_t array) {
    TCatalogEntry entry;
    TClimateVariableInfo info;
    entry.Array = array;
    entry.Roles = FindClimateRoles(FIndex, array);
    Describe(entry, info);
    DescribeTimes(entry, info);
    info.Refusal = FindRefusal(entry, info);
    FEntries.push_back(std::move(entry));
    FInfos.push_back(std::move(info));
}

void TClimateCatalog::Describe(const TCatalogEntry& entry, TClimateVariableInfo& info) const {
    const TSourceArray& array = FIndex.GetArrays()[entry.Array];
    const TSourceAttributes& attributes = FIndex.GetAttributes(entry.Array);
    const TClimateAttributes& values = attributes.Values;
    info.Name = NameOf(array.Path);
    info.LongName = values.Text(QStringLiteral("long_name"));
    info.StandardName = values.Text(QStringLiteral("standard_name"));
    info.Units = values.Text(QStringLiteral("units"));
    info.CellMethods = values.Text(QStringLiteral("cell_methods"));
    for (const TSourceDimension& dimension : array.Dimensions)
        info.Dimensions.push_back({NameOf(dimension.Path), dimension.Size});
    DescribeLevels(entry, info);
    TClimateNames names;
    names.Name = info.Name.section(u'/', -1);
    names.StandardName = info.StandardName;
    names.LongName = info.LongName;
    names.Units = info.Units;
    names.CellMethods = info.CellMethods;
    names.MipEra = FAttributes.Text(QStringLiteral("mip_era"));
    names.HasLevels = entry.Roles.HasPressure || (entry.Roles.Level && entry.Roles.LevelArray);
    names.GribElement = values.Text(QStringLiteral("GRIB_ELEMENT"));
    names.GribLevel = values.Text(QStringLiteral("GRIB_LEVEL"));
    info.Variable = FindClimateVariable(names);
    info.Suggestion = SuggestClimateVariable(names);
    info.Conversion = MakeUnitConversion(info.Units, SubjectOf(info, values));
    if (array.IsNumeric)
        info.Notes = TClimateCells({array.Type, FSource->IsNetCdf(), attributes.HasFloatingLimits}, values).GetNotes();
    if (const QString note = values.Text(QStringLiteral("note")); !FSource->IsNetCdf() && !note.isEmpty())
        info.Notes += note;
}

void TClimateCatalog::DescribeLevels(const TCatalogEntry& entry, TClimateVariableInfo& info) const {
    if (!entry.Roles.Level)
        return;
    const TSourceDimension& dimension = FIndex.GetArrays()[entry.Array].Dimensions[*entry.Roles.Level];
    info.LevelName = NameOf(dimension.Path).section(u'/', -1);
    if (dimension.Size > MostAxisValues)
        return;
    if (entry.Roles.LevelArray) {
        info.Levels = FIndex.ReadNumbers(*entry.Roles.LevelArray);
        info.LevelUnits = FIndex.GetText(*entry.Roles.LevelArray, QStringLiteral("units"));
    } else {
        for (quint64 i = 0; i < dimension.Size; ++i)
            info.Levels.push_back(double(i + 1));
    }
}

void TClimateCatalog::DescribeTimes(TCatalogEntry& entry, TClimateVariableInfo& info) {
    const TClimateRoles& roles = entry.Roles;
    const quint64 count = roles.Time ? FIndex.GetArrays()[entry.Array].Dimensions[*roles.Time].Size : 1;
    entry.Times = std::make_shared<TClimateTimes>();
    if (count <= MostAxisValues)
        entry.Times = TimesOf(roles, std::size_t(count));
    info.TimeCount = std::size_t(count);
    info.Notes += entry.Times->GetNotes();
    NoteLargeBlocks(entry, info);
    if (entry.Times->GetCount() > 0) {
        info.FirstTime = entry.Times->GetCaption(0);
        info.LastTime = entry.Times->GetCaption(entry.Times->GetCount() - 1);
    }
}

// Nothing is wrong with such a file, but who plays it wonders why it stutters.
void TClimateCatalog::NoteLargeBlocks(const TCatalogEntry& entry, TClimateVariableInfo& info) const {
    const TClimateRoles& roles = entry.Roles;
    const TSourceArray& array = FIndex.GetArrays()[entry.Array];
    if (!roles.Time || !roles.Latitude || !roles.Longitude)
        return;
    const quint64 steps = TKeptBlock::StepsTogether(array, *roles.Time);
    const quint64 rows = array.Dimensions[*roles.Latitude].Size;
    const quint64 columns = std::max<quint64>(array.Dimensions[*roles.Longitude].Size, 1);
    if (steps > 1 && rows > TClimateFrames::MostKeptBytes / array.CellSize() / columns / steps)
        info.Notes +=
            Format(u"The file stores %d steps as one, more than are kept in memory: it plays slowly. Store it "
                   u"step by step, for example: nccopy -c %s/1 in out",
                   {qint64(steps), NameOf(array.Dimensions[*roles.Time].Path)});
}

std::shared_ptr<const TClimateTimes> TClimateCatalog::TimesOf(const TClimateRoles& roles, std::size_t count) {
    if (!roles.TimeArray && !roles.Time)
        return std::make_shared<TClimateTimes>();
    if (!roles.TimeArray) {
        std::vector<double> numbers;
        for (std::size_t i = 0; i < count; ++i)
            numbers.push_back(double(i + 1));
        return std::make_shared<TClimateTimes>(std::move(numbers), TClimateAttributes());
    }
    auto& times = FTimes[*roles.TimeArray];
    if (!times) {
        const TClimateAttributes& attributes = FIndex.GetAttributes(*roles.TimeArray).Values;
        const bool isClimatology = attributes.Has(QStringLiteral("climatology"));
        const bool areSingles = FIndex.GetArrays()[*roles.TimeArray].Type == TClimateCellType::ctFloat;
        const QString bounds = isClimatology ? QStringLiteral("climatology") : QStringLiteral("bounds");
        times = std::make_shared<TClimateTimes>(FIndex.ReadNumbers(*roles.TimeArray), attributes,
                                                FIndex.ReadBounds(*roles.TimeArray, bounds), areSingles);
    }
    return times;
}

QString TClimateCatalog::FindRefusal(TCatalogEntry& entry, const TClimateVariableInfo& info) {
    const TSourceArray& array = FIndex.GetArrays()[entry.Array];
    const auto refused = [&](const QString& why) { return Format(u"Variable \"%s\" %s", {info.Name, why}); };
    if (!array.Refusal.isEmpty())
        return array.Refusal;
    if (!array.IsNumeric)
        return refused(QStringLiteral("holds texts or records, not numbers"));
    if (entry.Roles.Refusal)
        return RefusalText(*entry.Roles.Refusal, info.Name);
    if (array.CellCount() == 0)
        return refused(QStringLiteral("holds no cells yet: one of its dimensions has the length 0"));
    if (array.HasHugeBlocks())
        return refused(HugeBlocksText());
    if (entry.Roles.Left)
        return refused(Format(
            u"has the dimension \"%s\" besides time and level. Choose one of it first, for example: "
            u"ncks -d %s,0 in out",
            {NameOf(array.Dimensions[*entry.Roles.Left].Path), NameOf(array.Dimensions[*entry.Roles.Left].Path)}));
    if (std::max<quint64>(info.TimeCount, info.Levels.size()) > MostAxisValues)
        return refused(QStringLiteral("has more steps than an axis may have"));
    try {
        entry.Plan = PlanOf(entry.Roles);
        return {};
    } catch (const EClimateRefusal& refusal) {
        return refused(QStringLiteral("cannot be placed on a map. ")) + refusal.Message();
    } catch (const EClimateFile& failure) {
        return refused(QStringLiteral("cannot be placed on a map. ")) + failure.Message();
    }
}

std::shared_ptr<const TClimateGridPlan> TClimateCatalog::PlanOf(const TClimateRoles& roles) {
    const std::size_t x = *roles.LongitudeArray;
    const std::size_t y = *roles.LatitudeArray;
    auto& plan = FPlans[{x, y, roles.AreCategories}];
    if (plan)
        return plan;
    const QString bounds = QStringLiteral("bounds");
    const QString xName = NameOf(FIndex.GetArrays()[x].Path);
    const QString yName = NameOf(FIndex.GetArrays()[y].Path);
    for (const std::size_t axis : {x, y})
        if (FIndex.GetArrays()[axis].CellCount() > MostAxisValues)
            throw EClimateRefusal(QStringLiteral("An axis has more than 1,000,000 values"));
    if (roles.IsNzmg) {
        plan = std::make_shared<TClimateGridPlan>(
            TClimateGridPlan::Nzmg(TClimateAxis::Metres(xName, FIndex.ReadNumbers(x), FIndex.ReadBounds(x, bounds)),
                                   TClimateAxis::Metres(yName, FIndex.ReadNumbers(y), FIndex.ReadBounds(y, bounds))));
    } else {
        RequireDegrees(xName, FIndex.GetText(x, QStringLiteral("units")));
        RequireDegrees(yName, FIndex.GetText(y, QStringLiteral("units")));
        plan = std::make_shared<TClimateGridPlan>(
            TClimateAxis::Longitude(xName, FIndex.ReadNumbers(x), FIndex.ReadBounds(x, bounds)),
            TClimateAxis::Latitude(yName, FIndex.ReadNumbers(y), FIndex.ReadBounds(y, bounds)), roles.AreCategories);
    }
    return plan;
}

} // namespace lmx
