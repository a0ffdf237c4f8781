#include <lmx/Raster/lmxFieldArithmetic.h>

#include <lmx/Climate/lmxSpatialConst.h>
#include <lmx/Formats/Idrisi/lmxIdrisiImages.h>
#include <lmx/Raster/Private/lmxNewValues.h>
#include <lmx/Raster/lmxField.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxNumberText.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <vector>

namespace lmx {

namespace {

/// The result of a cell from its numbers, none of which is missing.
using TCellRule = std::function<double(std::span<const double> numbers)>;

QString SizeText(const TField& field) {
    return IntToStr(field.Width) + QStringLiteral(" x ") + IntToStr(field.Height);
}

void RequireOneGrid(const TField& a, const TField& b) {
    if (a.Width != b.Width || a.Height != b.Height)
        throw EArgumentException(QStringLiteral("The fields have different grids: ") + SizeText(a) +
                                 QStringLiteral(" and ") + SizeText(b));
    if (!a.Bounds.Equals(b.Bounds))
        throw EArgumentException(QStringLiteral("The fields cover different areas: ") + a.Bounds.ToString() +
                                 QStringLiteral(" and ") + b.Bounds.ToString());
    if (a.IsGeographic != b.IsGeographic)
        throw EArgumentException(QStringLiteral("The fields have different reference systems"));
}

bool IsMissing(double number) {
    return TSpatialConst::IsFlag(static_cast<float>(number));
}

float Stored(double result) {
    const auto number = static_cast<float>(result);
    if (!(std::abs(number) < 1e30F))
        return TSpatialConst::NoData;
    return TSpatialConst::IsFlag(number) ? std::nextafter(number, 0.0F) : number;
}

TImageHeader HeaderOf(const TField& field) {
    TImageHeader header;
    header.SetWidth(field.Width);
    header.SetHeight(field.Height);
    header.SetMinX(static_cast<float>(field.Bounds.Left));
    header.SetMaxX(static_cast<float>(field.Bounds.Right));
    header.SetMinY(static_cast<float>(field.Bounds.Bottom));
    header.SetMaxY(static_cast<float>(field.Bounds.Top));
    header.SetRefSystem(field.IsGeographic ? QStringLiteral("latlong") : QStringLiteral("plane"));
    header.SetRefUnits(field.IsGeographic ? QStringLiteral("deg") : QStringLiteral("m"));
    header.SetFlag(true);
    header.SetFlagValue(TSpatialConst::NoData);
    header.SetFlagDef(QStringLiteral("missing data"));
    return header;
}

std::unique_ptr<TRealImage> Computed(std::span<const TField> fields, const TCellRule& rule) {
    for (const TField& field : fields.subspan(1))
        RequireOneGrid(fields.front(), field);
    auto image = std::make_unique<TRealImage>(QString(), HeaderOf(fields.front()));
    const auto width = static_cast<std::size_t>(fields.front().Width);
    std::vector<std::vector<double>> rows;
    for (std::size_t field = 0; field < fields.size(); ++field)
        rows.push_back(NewValues<double>(width));
    std::vector<double> numbers(fields.size());
    for (std::int32_t row = 0; row < fields.front().Height; ++row) {
        for (std::size_t field = 0; field < fields.size(); ++field)
            fields[field].ReadRow(row, rows[field]);
        const std::span<float> cells = image->GetRow(row + 1);
        for (std::size_t column = 0; column < width; ++column) {
            for (std::size_t field = 0; field < fields.size(); ++field)
                numbers[field] = rows[field][column];
            cells[column] =
                std::any_of(numbers.begin(), numbers.end(), IsMissing) ? TSpatialConst::NoData : Stored(rule(numbers));
        }
    }
    image->UpdateValueRange();
    return image;
}

} // namespace

std::unique_ptr<TRealImage> DifferenceOf(const TField& a, const TField& b) {
    return Computed(std::array{a, b}, [](std::span<const double> numbers) { return numbers[0] - numbers[1]; });
}

std::unique_ptr<TRealImage> RatioOf(const TField& a, const TField& b) {
    return Computed(std::array{a, b}, [](std::span<const double> numbers) {
        return numbers[1] == 0 ? std::numeric_limits<double>::quiet_NaN() : numbers[0] / numbers[1];
    });
}

std::unique_ptr<TRealImage> DepartureFromMean(std::span<const TField> fields, std::size_t index) {
    if (fields.size() < 2)
        throw EArgumentException(QStringLiteral("At least two fields are needed"));
    if (index >= fields.size())
        throw EArgumentException(QStringLiteral("Field index is out of range"));
    return Computed(fields, [index](std::span<const double> numbers) {
        double sum = 0;
        for (const double number : numbers)
            sum += number;
        return numbers[index] - sum / static_cast<double>(numbers.size());
    });
}

} // namespace lmx
