#include <lmx/DataSources/Private/lmxSourceIndex.h>

#include <lmx/DataSources/lmxClimateExceptions.h>
#include <lmx/Runtime/lmxText.h>

#include <cmath>

namespace lmx {

namespace {

double FirstOr(const TClimateAttributes& attributes, const QString& name, double absent) {
    const std::vector<double> numbers = attributes.Numbers(name);
    return numbers.size() == 1 && std::isfinite(numbers[0]) ? numbers[0] : absent;
}

} // namespace

TSourceIndex::TSourceIndex(IClimateSource& source) : FSource(source) {
    const std::size_t count = source.GetArrays().size();
    FAttributes.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        FByPath.insert(source.GetArrays()[i].Path, i);
        FAttributes.push_back(source.ReadAttributes(i));
    }
    FIsServant.assign(count, false);
    for (std::size_t i = 0; i < count; ++i)
        MarkServants(i);
}

void TSourceIndex::MarkServants(std::size_t array) {
    const TSourceArray& info = GetArrays()[array];
    if (info.Dimensions.empty() || (info.Dimensions.size() == 1 && info.Dimensions[0].Path == info.Path))
        FIsServant[array] = true;
    for (const char* const attribute : {"bounds", "climatology", "coordinates", "grid_mapping"})
        for (const std::size_t servant : ResolveAll(array, QString::fromLatin1(attribute)))
            if (servant != array)
                FIsServant[servant] = true;
}

std::optional<std::size_t> TSourceIndex::Resolve(std::size_t from, const QString& name) const {
    if (name.startsWith(u'/')) {
        const auto place = FByPath.constFind(name);
        return place == FByPath.constEnd() ? std::nullopt : std::optional(*place);
    }
    QString group = GetArrays().at(from).Path;
    while (!group.isEmpty()) {
        group.truncate(std::max<qsizetype>(group.lastIndexOf(u'/'), 0));
        const auto place = FByPath.constFind(group + u'/' + name);
        if (place != FByPath.constEnd())
            return *place;
    }
    return std::nullopt;
}

std::vector<std::size_t> TSourceIndex::ResolveAll(std::size_t from, const QString& attribute) const {
    std::vector<std::size_t> arrays;
    const QString text = GetText(from, attribute);
    if (text.isEmpty())
        return arrays;
    for (const QString& word : Split(text.simplified(), u' ')) // a colon stands after the name of a grid mapping
        if (const auto array = Resolve(from, word.endsWith(u':') ? word.chopped(1) : word))
            arrays.push_back(*array);
    return arrays;
}

std::optional<std::size_t> TSourceIndex::CoordinateOf(const TSourceDimension& dimension) const {
    const auto place = FByPath.constFind(dimension.Path);
    if (place == FByPath.constEnd())
        return std::nullopt;
    const TSourceArray& info = GetArrays()[*place];
    if (!info.IsNumeric || info.Dimensions.size() != 1 || !(info.Dimensions[0] == dimension))
        return std::nullopt;
    return *place;
}

std::vector<double> TSourceIndex::ReadNumbers(std::size_t array) const {
    const TSourceArray& info = GetArrays().at(array);
    const quint64 count = info.CellCount();
    if (count > 2 * MostAxisValues)
        throw EClimateFile(info.Path.mid(1), QStringLiteral("holds more values than an axis may have"));
    TSourceWindow window;
    for (const TSourceDimension& dimension : info.Dimensions) {
        window.Starts.push_back(0);
        window.Counts.push_back(std::size_t(dimension.Size));
    }
    const TRawSlice slice = FSource.Read(array, window);
    const TClimateAttributes& attributes = FAttributes[array].Values;
    const double scale = FirstOr(attributes, QStringLiteral("scale_factor"), 1);
    const double offset = FirstOr(attributes, QStringLiteral("add_offset"), 0);
    std::vector<double> numbers;
    numbers.reserve(slice.GetCount());
    std::visit(
        [&](const auto& cells) {
            for (const auto cell : cells)
                numbers.push_back(double(cell) * (scale == 0 ? 1 : scale) + offset);
        },
        slice.GetCells());
    return numbers;
}

std::vector<double> TSourceIndex::ReadBounds(std::size_t coordinate, const QString& attribute) const {
    const auto arrays = ResolveAll(coordinate, attribute);
    if (arrays.size() != 1)
        return {};
    const TSourceArray& axis = GetArrays()[coordinate];
    const TSourceArray& info = GetArrays()[arrays[0]];
    const std::size_t dimensions = axis.Dimensions.size();
    if (!info.IsNumeric || info.Dimensions.size() != dimensions + 1 || info.Dimensions.back().Size != 2)
        return {};
    for (std::size_t i = 0; i < dimensions; ++i)
        if (!(info.Dimensions[i] == axis.Dimensions[i]))
            return {};
    return ReadNumbers(arrays[0]);
}

} // namespace lmx
