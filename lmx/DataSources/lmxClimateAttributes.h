#pragma once

#include <lmx/DataSources/lmxDataSourcesExport.h>

#include <QString>

#include <variant>
#include <vector>

namespace lmx {

/// What a file says of itself or of one of its arrays: names with a text or with numbers, in the order of the file.
/// Names are told apart by case, as they are in NetCDF.
class LMX_DATASOURCES_EXPORT TClimateAttributes {
public:
    using TValue = std::variant<QString, std::vector<double>>;

    struct TAttribute {
        QString Name;
        TValue Value;
    };

    /// Sets or replaces.
    void Set(const QString& name, TValue value);

    bool Has(const QString& name) const { return Find(name) != nullptr; }

    /// Empty if there is no such attribute, or if it holds numbers. Blanks and NULs at its end do not count.
    QString Text(const QString& name) const;

    /// Whether it is this text, in any case of letters; blanks at its end count.
    bool IsText(const QString& name, QStringView text) const;

    /// Empty if there is no such attribute, or if it is a text: "missing_value" as a text says nothing of numbers.
    std::vector<double> Numbers(const QString& name) const;

    const std::vector<TAttribute>& All() const { return FAttributes; }

private:
    const TAttribute* Find(const QString& name) const;

    std::vector<TAttribute> FAttributes;
};

} // namespace lmx
