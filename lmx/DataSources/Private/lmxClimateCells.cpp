#include <lmx/DataSources/Private/lmxClimateCells.h>

#include <lmx/DataSources/Private/lmxCellUnpacker.h>
#include <lmx/DataSources/Private/lmxClimateSource.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <optional>
#include <utility>

namespace lmx {

namespace {

using enum TClimateCellType;

constexpr std::size_t MostMarks = 64;

/// What the NetCDF library writes where nobody wrote a cell.
std::optional<double> DefaultFill(TClimateCellType type) {
    switch (type) {
    case ctInt16:
        return -32767;
    case ctUInt16:
        return 65535;
    case ctInt32:
        return -2147483647.0;
    case ctUInt32:
        return 4294967295.0;
    case ctInt64:
        return -9223372036854775806.0;
    case ctUInt64:
        return 18446744073709551614.0;
    case ctFloat:
    case ctDouble:
        return 9.9692099683868690e+36;
    default:
        return std::nullopt;
    }
}

bool IsFloating(TClimateCellType type) {
    return type == ctFloat || type == ctDouble;
}

/// As many numbers as an integer type has.
double NumbersOf(TClimateCellType type) {
    return std::ldexp(1.0, static_cast<int>(8 * CellSizeOf(type)));
}

/// The double that the shortest decimal text of a single means: 0.1 for 0.1F.
double ShortestOf(float single) {
    std::array<char, 32> text;
    const auto written = std::to_chars(text.data(), text.data() + text.size(), single);
    double number = 0;
    std::from_chars(text.data(), written.ptr, number);
    return number;
}

TClimateCellType AsSigned(TClimateCellType type) {
    switch (type) {
    case ctUInt8:
        return ctInt8;
    case ctUInt16:
        return ctInt16;
    case ctUInt32:
        return ctInt32;
    case ctUInt64:
        return ctInt64;
    default:
        return type;
    }
}

TClimateCellType AsUnsigned(TClimateCellType type) {
    switch (type) {
    case ctInt8:
        return ctUInt8;
    case ctInt16:
        return ctUInt16;
    case ctInt32:
        return ctUInt32;
    case ctInt64:
        return ctUInt64;
    default:
        return type;
    }
}

} // namespace

TClimateCells::TClimateCells(const TClimateCellTraits& traits, const TClimateAttributes& attributes)
    : FType(traits.Type) {
    FIsMadeUnsigned = attributes.IsText(QStringLiteral("_Unsigned"), u"true");
    FIsMadeSigned = attributes.IsText(QStringLiteral("_Unsigned"), u"false") && AsSigned(FType) != FType;
    if (FIsMadeUnsigned)
        FType = AsUnsigned(FType);
    if (FIsMadeSigned)
        FType = AsSigned(FType);
    FScale = ReadNumber(attributes, QStringLiteral("scale_factor"), 1);
    if (FScale == 0) {
        IgnoreAttribute(QStringLiteral("scale_factor"));
        FScale = 1;
    }
    FOffset = ReadNumber(attributes, QStringLiteral("add_offset"), 0);
    ReadMarks(traits, attributes);
    if (FType == ctDouble)
        AddTwins();
    ReadLimits(traits, attributes);
}

void TClimateCells::IgnoreAttribute(const QString& name) {
    FNotes += QStringLiteral("The attribute \"%1\" makes no sense and does not count.").arg(name);
}

double TClimateCells::ReadNumber(const TClimateAttributes& attributes, const QString& name, double absent) {
    if (!attributes.Has(name))
        return absent;
    const std::vector<double> numbers = attributes.Numbers(name);
    if (numbers.size() == 1 && std::isfinite(numbers.front()))
        return numbers.front();
    IgnoreAttribute(name);
    return absent;
}

double TClimateCells::OfType(double number) const {
    if (FType == ctFloat)
        return static_cast<double>(static_cast<float>(number));
    if (FIsMadeUnsigned && !IsFloating(FType) && number < 0)
        return number + NumbersOf(FType);
    if (FIsMadeSigned && number >= NumbersOf(FType) / 2)
        return number - NumbersOf(FType);
    return number;
}

void TClimateCells::ReadMarks(const TClimateCellTraits& traits, const TClimateAttributes& attributes) {
    const QString fillName = QStringLiteral("_FillValue");
    const QString missingName = QStringLiteral("missing_value");
    const std::vector<double> fill = attributes.Numbers(fillName);
    if (fill.size() == 1)
        FMarks.push_back(OfType(fill.front()));
    else if (attributes.Has(fillName))
        IgnoreAttribute(fillName);
    // It is written in the type of the file, whatever "_Unsigned" makes of that.
    const TClimateCellType written = FIsMadeUnsigned ? AsSigned(traits.Type) : traits.Type;
    if (const auto byDefault = DefaultFill(written); FMarks.empty() && traits.IsNetCdf && byDefault)
        FMarks.push_back(OfType(*byDefault));

    std::vector<double> missing = attributes.Numbers(missingName);
    if (attributes.Has(missingName) && missing.empty())
        IgnoreAttribute(missingName);
    if (missing.size() > MostMarks) {
        missing.resize(MostMarks);
        FNotes += QStringLiteral("Of the attribute \"missing_value\" only the first 64 numbers count.");
    }
    for (const double number : missing)
        FMarks.push_back(OfType(number));
    std::erase_if(FMarks, [](double mark) { return std::isnan(mark); }); // which no number equals
    std::sort(FMarks.begin(), FMarks.end());
    FMarks.erase(std::unique(FMarks.begin(), FMarks.end()), FMarks.end()); // both attributes mostly say the same
}

// Cells and marks of a file in doubles may have been singles on their way, each on its own: 1e20 is
// 100000002004087734272 then.
void TClimateCells::AddTwins() {
    const std::vector<double> marks = FMarks;
    for (const double mark : marks) {
        const auto single = static_cast<float>(mark);
        if (!std::isfinite(single))
            continue;
        const auto widened = static_cast<double>(single);
        const double twin = widened == mark ? ShortestOf(single) : widened;
        if (twin != mark)
            FMarks.push_back(twin);
    }
}

void TClimateCells::ReadLimits(const TClimateCellTraits& traits, const TClimateAttributes& attributes) {
    const QString rangeName = QStringLiteral("valid_range");
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const bool areValues = traits.HasFloatingLimits && !IsFloating(FType);
    const auto limit = [&](double number) { return areValues ? number : OfType(number); };
    TLimits limits;
    if (const std::vector<double> range = attributes.Numbers(rangeName);
        range.size() == 2 && limit(range[0]) <= limit(range[1])) {
        limits = {limit(range[0]), limit(range[1])};
    } else {
        if (attributes.Has(rangeName))
            IgnoreAttribute(rangeName);
        limits.Low = limit(ReadNumber(attributes, QStringLiteral("valid_min"), -infinity));
        limits.High = limit(ReadNumber(attributes, QStringLiteral("valid_max"), infinity));
    }
    (areValues ? FValueLimits : FRawLimits) = limits;
}

void TClimateCells::Unpack(const TRawClimateCells& raw, std::span<float> values) const {
    Unpack(raw, values, TUnitConversion());
}

std::vector<float> TClimateCells::Unpack(const TRawClimateCells& raw) const {
    std::vector<float> values(std::visit([](const auto& cells) { return cells.size(); }, raw));
    Unpack(raw, values);
    return values;
}

void TClimateCells::Unpack(const TRawClimateCells& raw, std::span<float> values, const TUnitConversion& conversion,
                           double daysInMonth) const {
    MakeUnpack(values.size(), conversion, daysInMonth)(raw, values);
}

TClimateCells::TUnpack TClimateCells::MakeUnpack(std::size_t count, const TUnitConversion& conversion,
                                                 double daysInMonth) const {
    TCellMeaning meaning;
    meaning.Type = FType;
    meaning.Scale = FScale;
    meaning.Offset = FOffset;
    meaning.RawLow = FRawLimits.Low;
    meaning.RawHigh = FRawLimits.High;
    meaning.ValueLow = static_cast<float>(FValueLimits.Low);
    meaning.ValueHigh = static_cast<float>(FValueLimits.High);
    meaning.Marks = FMarks;
    meaning.IsConverted = !conversion.IsIdentity();
    meaning.Factor = conversion.IsByMonth ? conversion.Factor / daysInMonth : conversion.Factor;
    meaning.Shift = conversion.Offset;
    return [unpacker = TCellUnpacker(std::move(meaning), count)](const TRawClimateCells& raw, std::span<float> values) {
        unpacker.Unpack(raw, values);
    };
}

} // namespace lmx
