#pragma once

#include <lmx/Runtime/lmxExport.h>
#include <lmx/Runtime/lmxExtended.h>
#include <lmx/Runtime/lmxFormatSettings.h>

#include <QString>
#include <QStringView>

#include <concepts>
#include <cstdint>
#include <initializer_list>
#include <type_traits>
#include <variant>

namespace lmx {

/// A whole number, a float or a text that goes into a format.
class LMX_EXPORT TFormatArgument {
public:
    template<std::integral Integer>
    requires(!std::same_as<Integer, bool> && sizeof(Integer) <= sizeof(std::int64_t)) TFormatArgument(Integer value)
        : FValue(static_cast<std::int64_t>(value)) {} // NOLINT(google-explicit-constructor)

    template<std::floating_point Float>
    TFormatArgument(Float value) : FValue(static_cast<extended>(value)) {} // NOLINT(google-explicit-constructor)

    template<class Text>
    requires(std::convertible_to<Text, QString> && !std::is_arithmetic_v<Text>) TFormatArgument(const Text& text)
        : FValue(QString(text)) {} // NOLINT(google-explicit-constructor)

    const std::variant<std::int64_t, extended, QString>& GetValue() const { return FValue; }

private:
    std::variant<std::int64_t, extended, QString> FValue;
};

/// The text `format` with each place holder replaced by its argument. A place holder is
/// `%[index:][-][width][.precision]type`:
/// - type `d` takes a whole number; the precision is the least number of digits.
/// - type `f` takes a float: fixed form with `precision` decimals, 2 if none is given.
/// - type `g` takes a float: general form with `precision` significant digits, 15 if none is given.
/// - type `s` takes a text; the precision is the largest number of characters.
/// - `%%` is a per cent sign.
///
/// The index, counted from 0, names an argument; without one the argument after the last used comes next. Shorter texts
/// are filled with blanks up to the width, on the right after a `-`. Types may be written in capitals. Arguments
/// without a place holder are left out.
/// @throws EConvertError "Format '...' invalid or incompatible with argument" for an unknown or unfinished place
/// holder, a width or precision above 1000 and an argument of another type; "No argument for format '...'" if there are
/// too few.
LMX_EXPORT QString Format(QStringView format, std::initializer_list<TFormatArgument> arguments = {},
                          const TFormatSettings& settings = TFormatSettings::Current());

} // namespace lmx
