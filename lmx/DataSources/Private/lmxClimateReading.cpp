#include <lmx/DataSources/Private/lmxClimateCatalog.h>

#include <lmx/DataSources/lmxClimateOrigin.h>
#include <lmx/Runtime/lmxFormat.h>
#include <lmx/Runtime/lmxNumberText.h>

#include <QFileInfo>

#include <algorithm>
#include <new>

namespace lmx {

namespace {

// Cells of rows and columns in the other order.
std::vector<float> Transposed(const std::vector<float>& cells, std::size_t rows, std::size_t columns) {
    std::vector<float> result(cells.size());
    for (std::size_t column = 0; column < columns; ++column)
        for (std::size_t row = 0; row < rows; ++row)
            result[row * columns + column] = cells[column * rows + row];
    return result;
}

// Numbers by the month need the days of the month; a step without a date keeps the units of the file.
double DaysInMonthOf(const TClimateTimes& times, std::size_t step) {
    const auto date = step < times.GetCount() ? times.GetDate(step) : std::nullopt;
    return date ? times.GetCalendar().DaysInMonth(date->Year, date->Month) : 0;
}

// Documents of another folder find the file by it.
QString WholePath(const QString& fileName) {
    return QFileInfo::exists(fileName) ? QFileInfo(fileName).absoluteFilePath() : fileName;
}

// Whether the file has the cells of the picture one by one: then they need no second copy.
bool IsInOrder(const TClimateGridPlan& plan) {
    if (!plan.IsExact())
        return false;
    for (std::int32_t column = 0; column < plan.GetColumns(); ++column)
        if (plan.SourceOf(column, 0) != column)
            return false;
    for (std::int32_t row = 0; row < plan.GetRows(); ++row)
        if (plan.SourceOf(0, row) != std::int64_t{row} * plan.GetColumns())
            return false;
    return true;
}

} // namespace

QString TClimateVariableInfo::GetLevelCaption(std::size_t level) const {
    if (Levels.empty())
        return {};
    const TUnitConversion conversion =
        IsPressureUnit(LevelUnits) ? MakeUnitConversion(LevelUnits, {{}, QStringLiteral("air_pressure"), {}, {}})
                                   : KeepUnits(LevelUnits);
    const QString number =
        FloatToGeneral(Levels.at(level) * conversion.Factor + conversion.Offset, 7, TFormatSettings::Invariant());
    const bool isBare = conversion.ShownUnits.isEmpty() || conversion.ShownUnits == QStringLiteral("1");
    return isBare ? LevelName + u' ' + number : number + u' ' + conversion.ShownUnits;
}

TClimatePicture TClimateCatalog::Read(const TClimateSelection& selection) const {
    if (selection.Variable >= FEntries.size())
        throw EArgumentException(QStringLiteral("Variable"));
    const TCatalogEntry& entry = FEntries[selection.Variable];
    const TClimateVariableInfo& info = FInfos[selection.Variable];
    if (!info.Refusal.isEmpty())
        throw EClimateFile(FFileName, info.Refusal);
    if (selection.Time >= info.TimeCount)
        throw EArgumentException(QStringLiteral("Time"));
    if (selection.Level >= std::max<std::size_t>(info.Levels.size(), 1))
        throw EArgumentException(QStringLiteral("Level"));
    TClimatePicture picture;
    picture.Conversion = selection.Units == TClimateShownUnits::suExpected ? info.Conversion : KeepUnits(info.Units);
    if (picture.Conversion.IsByMonth && DaysInMonthOf(*entry.Times, selection.Time) == 0)
        picture.Conversion = KeepUnits(info.Units);
    if (selection.Time < entry.Times->GetCount())
        picture.TimeCaption = entry.Times->GetCaption(selection.Time);
    picture.LevelCaption = info.GetLevelCaption(selection.Level);
    picture.Title = info.GetTitle();
    picture.World = entry.Plan->GetWorld();
    picture.Variable = info.Variable;
    try {
        std::vector<float> cells = ReadCells(entry, selection, picture.Conversion);
        if (!IsInOrder(*entry.Plan))
            cells = entry.Plan->Apply(cells);
        QString title = picture.Title;
        for (const QString& part : {picture.LevelCaption, picture.TimeCaption})
            title += part.isEmpty() ? QString() : QStringLiteral(", ") + part;
        picture.Image = entry.Plan->MakeImage(cells, title, picture.Conversion.ShownUnits);
        picture.Image->getHeader()->SetComment(picture.Conversion.ToText());
        picture.Image->getHeader()->SetLineage(
            TClimateOrigin{WholePath(FFileName), info.Name, picture.TimeCaption, picture.LevelCaption}.ToLineage());
    } catch (const std::bad_alloc&) {
        throw EOutOfMemory();
    }
    return picture;
}

std::vector<float> TClimateCatalog::ReadCells(const TCatalogEntry& entry, const TClimateSelection& selection,
                                              const TUnitConversion& conversion) const {
    const TSourceArray& array = FIndex.GetArrays()[entry.Array];
    const TSourceAttributes& attributes = FIndex.GetAttributes(entry.Array);
    const TClimateRoles& roles = entry.Roles;
    TSourceWindow window;
    for (std::size_t i = 0; i < array.Dimensions.size(); ++i) {
        const bool isPlace = i == *roles.Longitude || i == *roles.Latitude;
        window.Starts.push_back(roles.Time == i ? selection.Time : roles.Level == i ? selection.Level : 0);
        window.Counts.push_back(isPlace ? std::size_t(array.Dimensions[i].Size) : 1);
    }
    try {
        const TRawSlice slice = FSource->Read(entry.Array, window);
        const TClimateCells meaning({array.Type, FSource->IsNetCdf(), attributes.HasFloatingLimits}, attributes.Values);
        std::vector<float> cells(slice.GetCount());
        meaning.Unpack(slice.GetCells(), cells, conversion, DaysInMonthOf(*entry.Times, selection.Time));
        if (*roles.Latitude < *roles.Longitude)
            return cells;
        return Transposed(cells, window.Counts[*roles.Latitude], window.Counts[*roles.Longitude]);
    } catch (const EClimateFile& failure) {
        throw EClimateFile(FFileName, Format(u"step %d: %s", {qint64(selection.Time + 1), failure.Problem()}));
    }
}

} // namespace lmx
