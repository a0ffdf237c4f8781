#pragma once

#include <lmx/DataSources/Private/lmxClimateSource.h>

#include <QHash>
#include <QString>
#include <QStringList>

#include <cstddef>
#include <optional>
#include <vector>

namespace lmx {

/// The arrays of a source with their attributes, found by the names by which they speak of each other.
class TSourceIndex {
public:
    /// Reads all attributes. The source must outlive the index.
    explicit TSourceIndex(IClimateSource& source);

    const std::vector<TSourceArray>& GetArrays() const { return FSource.GetArrays(); }
    const TSourceAttributes& GetAttributes(std::size_t array) const { return FAttributes.at(array); }
    QString GetText(std::size_t array, const QString& attribute) const {
        return FAttributes.at(array).Values.Text(attribute);
    }

    /// The array that another one means by a name: in its own group, or else in one around it.
    std::optional<std::size_t> Resolve(std::size_t from, const QString& name) const;
    /// Those that the attribute names, parted by blanks.
    std::vector<std::size_t> ResolveAll(std::size_t from, const QString& attribute) const;
    /// The array of numbers on one dimension that has the dimension's name.
    std::optional<std::size_t> CoordinateOf(const TSourceDimension& dimension) const;

    /// Whether it only serves others: a coordinate, bounds, a grid mapping.
    bool IsServant(std::size_t array) const { return FIsServant.at(array); }

    /// All numbers of an array, unpacked; what marks missing data is no part of a coordinate.
    /// @throws EClimateFile; also if there are more than 2,000,000
    std::vector<double> ReadNumbers(std::size_t array) const;
    /// Begin and end of each cell of a coordinate, by its attribute; empty if there are none.
    std::vector<double> ReadBounds(std::size_t coordinate, const QString& attribute) const;

private:
    void MarkServants(std::size_t array);

    IClimateSource& FSource;
    QHash<QString, std::size_t> FByPath;
    std::vector<TSourceAttributes> FAttributes;
    std::vector<bool> FIsServant;
};

} // namespace lmx
