#include <lmx/DataSources/Private/lmxCellUnpacker.h>

#include <lmx/Climate/lmxSpatialConst.h>
#include <lmx/DataSources/Private/lmxAsValue.h>
#include <lmx/Runtime/lmxExceptions.h>

#include <algorithm>
#include <cmath>
#include <type_traits>
#include <utility>

namespace lmx {

namespace {

using enum TClimateCellType;

/// The numbers of a meaning, held where no store can change them, and what they say without a branch: rows are long.
class TRule {
public:
    explicit TRule(const TCellMeaning& meaning)
        : FScale(meaning.Scale),
          FOffset(meaning.Offset),
          FRawLow(meaning.RawLow),
          FRawHigh(meaning.RawHigh),
          FMark(meaning.Marks.empty() ? std::numeric_limits<double>::quiet_NaN() : meaning.Marks.front()),
          FFactor(meaning.Factor),
          FShift(meaning.Shift),
          FValueLow(meaning.ValueLow),
          FValueHigh(meaning.ValueHigh) {}

    double NumberOf(double raw) const { return raw * FScale + FOffset; }
    double ConvertedOf(double raw) const { return NumberOf(raw) * FFactor + FShift; }

    /// All that makes a flag but further marks.
    bool IsFlag(double raw) const {
        const auto value = static_cast<float>(NumberOf(raw));
        return !((raw >= FRawLow) & (raw <= FRawHigh)) | (raw == FMark) |
               !((value >= FValueLow) & (value <= FValueHigh)) | !(std::abs(value) < 1e30F) |
               (value == TSpatialConst::NoData) | (value == -9999.0F);
    }

private:
    double FScale;
    double FOffset;
    double FRawLow;
    double FRawHigh;
    double FMark;
    double FFactor;
    double FShift;
    float FValueLow;
    float FValueHigh;
};

template<class Raw>
void UnpackPlain(std::span<const Raw> raw, const TRule rule, float* values) {
    for (std::size_t i = 0; i < raw.size(); ++i) {
        const auto number = static_cast<double>(raw[i]);
        values[i] = rule.IsFlag(number) ? TSpatialConst::NoData : static_cast<float>(rule.NumberOf(number));
    }
}

template<class Raw>
void UnpackConverted(std::span<const Raw> raw, const TRule rule, float* values) {
    int becameFlags = 0;
    for (std::size_t i = 0; i < raw.size(); ++i) {
        const auto number = static_cast<double>(raw[i]);
        const auto shown = static_cast<float>(rule.ConvertedOf(number));
        const bool isFlag = rule.IsFlag(number);
        const bool isShownFlag = TSpatialConst::IsFlag(shown);
        becameFlags |= static_cast<int>(!isFlag & isShownFlag);
        values[i] = isFlag ? TSpatialConst::NoData : shown;
    }
    for (std::size_t i = 0; becameFlags && i < raw.size(); ++i)
        if (const auto number = static_cast<double>(raw[i]); !rule.IsFlag(number))
            values[i] = AsValue(static_cast<float>(rule.ConvertedOf(number)));
}

/// The one place that says what a raw number means: tables are made by it, too.
template<class Raw>
void UnpackEach(std::span<const Raw> raw, const TCellMeaning& meaning, float* values) {
    if (meaning.IsConverted)
        UnpackConverted(raw, TRule(meaning), values);
    else
        UnpackPlain(raw, TRule(meaning), values);
    for (std::size_t mark = 1; mark < meaning.Marks.size(); ++mark) {
        const double marked = meaning.Marks[mark];
        for (std::size_t i = 0; i < raw.size(); ++i)
            values[i] = static_cast<double>(raw[i]) == marked ? TSpatialConst::NoData : values[i];
    }
}

template<class Raw>
std::vector<float> TableOf(const TCellMeaning& meaning, std::size_t count) {
    constexpr std::size_t size = std::size_t{1} << (8 * sizeof(Raw));
    if (count <= size)
        return {};
    std::vector<Raw> numbers(size);
    for (std::size_t i = 0; i < size; ++i)
        numbers[i] = static_cast<Raw>(i);
    std::vector<float> table(size);
    UnpackEach(std::span<const Raw>(numbers), meaning, table.data());
    return table;
}

/// For types of few numbers: each is looked at once.
std::vector<float> TableOf(const TCellMeaning& meaning, std::size_t count) {
    switch (meaning.Type) {
    case ctInt8:
        return TableOf<std::int8_t>(meaning, count);
    case ctUInt8:
        return TableOf<std::uint8_t>(meaning, count);
    case ctInt16:
        return TableOf<std::int16_t>(meaning, count);
    case ctUInt16:
        return TableOf<std::uint16_t>(meaning, count);
    default:
        return {};
    }
}

/// The place of a type in a list of types.
template<class Cells, class... All>
constexpr std::size_t PlaceOf(const std::variant<All...>*) {
    std::size_t place = 0;
    static_cast<void>(((std::is_same_v<Cells, All> || (++place, false)) || ...));
    return place;
}

template<class Raw>
constexpr auto TypeOf =
    static_cast<TClimateCellType>(PlaceOf<std::span<const Raw>>(static_cast<const TRawClimateCells*>(nullptr)));

} // namespace

TCellUnpacker::TCellUnpacker(TCellMeaning meaning, std::size_t count)
    : FMeaning(std::move(meaning)),
      FTable(TableOf(FMeaning, count)) {}

void TCellUnpacker::Unpack(const TRawClimateCells& raw, std::span<float> values) const {
    std::visit(
        [&](const auto& cells) {
            if (cells.size() != values.size())
                throw EArgumentException(QStringLiteral("Values"));
            UnpackCells(cells, values.data());
        },
        raw);
}

template<class Raw>
void TCellUnpacker::UnpackCells(std::span<const Raw> raw, float* values) const {
    if constexpr (std::is_integral_v<Raw>) {
        using TBits = std::make_unsigned_t<Raw>;
        using TOther = std::conditional_t<std::is_signed_v<Raw>, TBits, std::make_signed_t<Raw>>;
        if (FMeaning.Type == TypeOf<TOther>) // the bits stand for it
            return UnpackCells(std::span(reinterpret_cast<const TOther*>(raw.data()), raw.size()), values);
        if constexpr (sizeof(Raw) <= 2)
            if (FMeaning.Type == TypeOf<Raw> && !FTable.empty()) {
                const float* const table = FTable.data();
                for (std::size_t i = 0; i < raw.size(); ++i)
                    values[i] = table[static_cast<TBits>(raw[i])];
                return;
            }
    }
    UnpackEach(raw, FMeaning, values);
}

} // namespace lmx
