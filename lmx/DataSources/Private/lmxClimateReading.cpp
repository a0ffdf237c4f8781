#include <lmx/DataSources/Private/lmxClimateCatalog.h>

#include <lmx/DataSources/Private/lmxBandMask.h>
#include <lmx/DataSources/lmxClimateOrigin.h>
#include <lmx/Runtime/lmxFormat.h>
#include <lmx/Runtime/lmxNumberText.h>

#include <QFileInfo>

#include <algorithm>
#include <new>
#include <type_traits>
#include <variant>

namespace lmx {

namespace {

// Cells in a row, or in steps of more.
TRawClimateCells EachStep(const TRawClimateCells& raw, std::size_t first, std::size_t step, std::size_t count,
                          TRawSlice& picked) {
    return std::visit(
        [&](const auto& cells) -> TRawClimateCells {
            if (step == 1)
                return cells.subspan(first, count);
            using TCell = std::remove_const_t<typename std::remove_reference_t<decltype(cells)>::element_type>;
            auto* const to = static_cast<TCell*>(picked.GetBytes());
            for (std::size_t i = 0; i < count; ++i)
                to[i] = cells[first + i * step];
            return picked.GetCells();
        },
        raw);
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
    TKeptBlock none(0);
    return Read(selection, none);
}

TClimatePicture TClimateCatalog::Read(const TClimateSelection& selection, TKeptBlock& kept) const {
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
        QString title = picture.Title;
        for (const QString& part : {picture.LevelCaption, picture.TimeCaption})
            title += part.isEmpty() ? QString() : QStringLiteral(", ") + part;
        picture.Image = ReadImage(selection, picture.Conversion, title, kept);
        picture.Image->getHeader()->SetComment(picture.Conversion.ToText());
        picture.Image->getHeader()->SetLineage(
            TClimateOrigin{WholePath(FFileName), info.Name, picture.TimeCaption, picture.LevelCaption}.ToLineage());
    } catch (const std::bad_alloc&) {
        throw EOutOfMemory();
    }
    return picture;
}

std::unique_ptr<TRealImage> TClimateCatalog::ReadImage(const TClimateSelection& selection,
                                                       const TUnitConversion& conversion, const QString& title,
                                                       TKeptBlock& kept) const {
    const TCatalogEntry& entry = FEntries[selection.Variable];
    const TSourceArray& array = FIndex.GetArrays()[entry.Array];
    const TSourceAttributes& attributes = FIndex.GetAttributes(entry.Array);
    const TRawSlice slice = ReadSlice(selection, kept);
    const auto rows = std::size_t(array.Dimensions[*entry.Roles.Latitude].Size);
    const auto columns = std::size_t(array.Dimensions[*entry.Roles.Longitude].Size);
    const bool hasRows = *entry.Roles.Latitude < *entry.Roles.Longitude; // else column stands after column
    TRawSlice picked(array.Type, hasRows ? 0 : columns);
    const TClimateCells meaning({array.Type, FSource->IsNetCdf(), attributes.HasFloatingLimits}, attributes.Values);
    const TRawSlice mask = array.HasMask ? ReadMask(selection) : TRawSlice();
    TRawSlice pickedMask(TClimateCellType::ctUInt8, hasRows ? 0 : columns);
    const TClimateCells::TUnpack unpack =
        meaning.MakeUnpack(slice.GetCount(), conversion, DaysInMonthOf(*entry.Times, selection.Time));
    const auto readRow = [&](std::int32_t number, std::span<float> cells) {
        const auto row = static_cast<std::size_t>(number);
        const std::size_t first = hasRows ? row * columns : row;
        const std::size_t step = hasRows ? 1 : rows;
        unpack(EachStep(slice.GetCells(), first, step, columns, picked), cells);
        if (mask.GetCount() > 0)
            HideMissing(
                std::get<std::span<const std::uint8_t>>(EachStep(mask.GetCells(), first, step, columns, pickedMask)),
                cells);
    };
    return entry.Plan->MakeImage(readRow, title, conversion.ShownUnits);
}

TSourceWindow TClimateCatalog::WindowOf(const TClimateSelection& selection) const {
    const TCatalogEntry& entry = FEntries[selection.Variable];
    const TClimateRoles& roles = entry.Roles;
    const TSourceArray& array = FIndex.GetArrays()[entry.Array];
    TSourceWindow window;
    for (std::size_t i = 0; i < array.Dimensions.size(); ++i) {
        const bool isPlace = i == *roles.Longitude || i == *roles.Latitude;
        window.Starts.push_back(roles.Time == i ? selection.Time : roles.Level == i ? selection.Level : 0);
        window.Counts.push_back(isPlace ? std::size_t(array.Dimensions[i].Size) : 1);
    }
    return window;
}

TRawSlice TClimateCatalog::ReadSlice(const TClimateSelection& selection, TKeptBlock& kept) const {
    const TCatalogEntry& entry = FEntries[selection.Variable];
    const TSourceWindow window = WindowOf(selection);
    return NamingStep(selection, [&] {
        return entry.Roles.Time ? kept.Read(*FSource, entry.Array, window, *entry.Roles.Time)
                                : FSource->Read(entry.Array, window);
    });
}

TRawSlice TClimateCatalog::ReadMask(const TClimateSelection& selection) const {
    return NamingStep(selection,
                      [&] { return FSource->ReadMask(FEntries[selection.Variable].Array, WindowOf(selection)); });
}

TRawSlice TClimateCatalog::NamingStep(const TClimateSelection& selection,
                                      const std::function<TRawSlice()>& read) const {
    try {
        return read();
    } catch (const EClimateFile& failure) {
        throw EClimateFile(FFileName, Format(u"step %d: %s", {qint64(selection.Time + 1), failure.Problem()}));
    }
}

} // namespace lmx
