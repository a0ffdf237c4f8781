#include <lmx/Coordinates/wskMappingTypes.h>

#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxFormat.h>
#include <lmx/Runtime/lmxNumberText.h>
#include <lmx/Runtime/lmxText.h>

#include <array>
#include <cstddef>

namespace lmx {

namespace {

// Reads `Count` numbers joined by commas, each through `Float`.
template<class Float, std::size_t Count>
std::array<extended, Count> SplitNumbers(const QString& text, const TFormatSettings& settings, const QString& failure) {
    const QStringList pieces = Split(text, u',');
    if (pieces.size() != static_cast<qsizetype>(Count))
        throw EArgumentException(failure);
    std::array<extended, Count> numbers{};
    for (std::size_t i = 0; i < Count; ++i) {
        Float number = 0;
        if (!TryStrToFloat(Trim(pieces[static_cast<qsizetype>(i)]), number, settings))
            throw EArgumentException(failure);
        numbers[i] = number;
    }
    return numbers;
}

} // namespace

TMapPoint::TMapPoint(const QString& text, const TFormatSettings& settings) {
    const auto [x, y] = SplitNumbers<extended, 2>(text, settings, QStringLiteral("Invalid MapPoint string"));
    X = x;
    Y = y;
}

QString TMapPoint::ToString(bool withSpace, const TFormatSettings& settings) const {
    return Format(withSpace ? u"%.3f, %.3f" : u"%.3f,%.3f", {X, Y}, settings);
}

TMapArea::TMapArea(const QString& text, const TFormatSettings& settings) {
    const auto [left, top, right, bottom] =
        SplitNumbers<float, 4>(text, settings, QStringLiteral("Invalid MapArea string"));
    Left = left;
    Top = top;
    Right = right;
    Bottom = bottom;
}

bool TMapArea::Equals(const TMapArea& other) const noexcept {
    return SameValue(Left, other.Left) && SameValue(Top, other.Top) && SameValue(Right, other.Right) &&
           SameValue(Bottom, other.Bottom) && SameValue(XTranslate, other.XTranslate) &&
           SameValue(YTranslate, other.YTranslate);
}

QString TMapArea::ToString(const TFormatSettings& settings) const {
    return Format(u"%.6f,%.6f,%.6f,%.6f", {Left, Top, Right, Bottom}, settings);
}

} // namespace lmx
