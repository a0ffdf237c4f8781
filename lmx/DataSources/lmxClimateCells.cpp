#include <lmx/DataSources/lmxClimateCells.h>

#include <lmx/Climate/lmxSpatialConst.h>
#include <lmx/DataSources/Private/lmxAsValue.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxText.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <optional>
#include <type_traits>

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

/// Width of an unsigned type, in bits; 0 for other types.
int UnsignedBits(TClimateCellType type) {
    switch (type) {
    case ctUInt8:
        return 8;
    case ctUInt16:
        return 16;
    case ctUInt32:
        return 32;
    case ctUInt64:
        return 64;
    default:
        return 0;
    }
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

/// What one raw number means: the one place that says so.
struct TMeaning {
    double Scale;
    double Offset;
    double RawLow;
    double RawHigh;
    float ValueLow;
    float ValueHigh;
    double Mark; ///< the first one; NaN if there is none
    std::span<const double> OtherMarks;
    bool IsConverted;
    double Factor; ///< of the change of units
    double Shift;

    /// The first mark only, and no change of units: without branches, for long rows.
    float Simple(double raw) const {
        const auto value = static_cast<float>(raw * Scale + Offset);
        const bool isFlag = !((raw >= RawLow) & (raw <= RawHigh)) | (raw == Mark) |
                            !((value >= ValueLow) & (value <= ValueHigh)) | !(std::abs(value) < 1e30F);
        // -9999 is the other number that is a flag, and NoData itself is one as it stands.
        return (isFlag | (value == -9999.0F)) ? TSpatialConst::NoData : value;
    }

    bool IsSimple() const { return !IsConverted && OtherMarks.empty(); }

    float operator()(double raw) const {
        const float value = Simple(raw);
        if (TSpatialConst::IsFlag(value) || std::find(OtherMarks.begin(), OtherMarks.end(), raw) != OtherMarks.end())
            return TSpatialConst::NoData;
        return IsConverted ? AsValue(static_cast<float>((raw * Scale + Offset) * Factor + Shift)) : value;
    }
};

template<class Raw>
void UnpackEach(std::span<const Raw> raw, const TMeaning& meaning, float* values) {
    const TMeaning local = meaning; // which no store can change
    if (local.IsSimple()) {
        for (std::size_t i = 0; i < raw.size(); ++i)
            values[i] = local.Simple(static_cast<double>(raw[i]));
        return;
    }
    for (std::size_t i = 0; i < raw.size(); ++i)
        values[i] = local(static_cast<double>(raw[i]));
}

/// For types of few numbers: each is looked at once.
template<class Raw>
void UnpackByTable(std::span<const Raw> raw, const TMeaning& meaning, float* values) {
    constexpr std::size_t count = std::size_t{1} << (8 * sizeof(Raw));
    using TIndex = std::make_unsigned_t<Raw>;
    std::vector<float> table(count);
    for (std::size_t i = 0; i < count; ++i)
        table[i] = meaning(static_cast<double>(static_cast<Raw>(static_cast<TIndex>(i))));
    const float* const entries = table.data();
    for (std::size_t i = 0; i < raw.size(); ++i)
        values[i] = entries[static_cast<TIndex>(raw[i])];
}

template<class Raw>
void UnpackAny(std::span<const Raw> raw, const TMeaning& meaning, float* values) {
    if constexpr (std::is_integral_v<Raw> && sizeof(Raw) <= 2) {
        if (raw.size() > (std::size_t{1} << (8 * sizeof(Raw))))
            return UnpackByTable(raw, meaning, values);
    }
    UnpackEach(raw, meaning, values);
}

template<class Raw>
void UnpackUnsigned(std::span<const Raw> raw, const TMeaning& meaning, float* values) {
    using TOther = std::make_unsigned_t<Raw>; // may stand for its signed type
    UnpackAny(std::span(reinterpret_cast<const TOther*>(raw.data()), raw.size()), meaning, values);
}

} // namespace

TClimateCells::TClimateCells(const TClimateCellTraits& traits, const TClimateAttributes& attributes)
    : FType(traits.Type) {
    FIsMadeUnsigned = SameText(attributes.Text(QStringLiteral("_Unsigned")), u"true");
    if (FIsMadeUnsigned)
        FType = AsUnsigned(FType);
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
    const int bits = FIsMadeUnsigned ? UnsignedBits(FType) : 0;
    return bits > 0 && number < 0 ? number + std::ldexp(1.0, bits) : number;
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
    const double factor = conversion.IsByMonth ? conversion.Factor / daysInMonth : conversion.Factor;
    const TMeaning meaning{FScale,
                           FOffset,
                           FRawLimits.Low,
                           FRawLimits.High,
                           static_cast<float>(FValueLimits.Low),
                           static_cast<float>(FValueLimits.High),
                           FMarks.empty() ? std::numeric_limits<double>::quiet_NaN() : FMarks.front(),
                           FMarks.empty() ? std::span<const double>() : std::span(FMarks).subspan(1),
                           !conversion.IsIdentity(),
                           factor,
                           conversion.Offset};
    const int unsignedBits = UnsignedBits(FType);
    std::visit(
        [&](const auto& cells) {
            using TRaw = std::remove_const_t<typename std::remove_reference_t<decltype(cells)>::element_type>;
            if (cells.size() != values.size())
                throw EArgumentException(QStringLiteral("Values"));
            if constexpr (std::is_integral_v<TRaw> && std::is_signed_v<TRaw>) {
                if (unsignedBits == static_cast<int>(8 * sizeof(TRaw)))
                    return UnpackUnsigned(cells, meaning, values.data());
            }
            UnpackAny(cells, meaning, values.data());
        },
        raw);
}

} // namespace lmx
