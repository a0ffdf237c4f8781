#include <lmx/Colour/Steps/Private/lmxColorPieceTable.h>

#include <lmx/Colour/Steps/Private/lmxGradientPosition.h>
#include <lmx/Graphics/lmxGradient.h>
#include <lmx/Runtime/Private/lmxBisection.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

namespace lmx {

namespace {

constexpr std::size_t FewStarts = 2; ///< so many are compared with each in turn
constexpr std::size_t MostPages = std::size_t{1} << 22;
constexpr float NaN = std::numeric_limits<float>::quiet_NaN();
constexpr std::uint64_t Channels = 0x00FF00FF00FF00FFU;

/// What is no number reaches no start. So where it has another look than the first piece, all pieces come after it.
bool IsNaNApart(const TColorPieces& pieces) {
    return !(pieces.GetNaNLook() == pieces.GetLooks().front());
}

/// Each channel with 16 bits of its own: blue, red, green, alpha from the lowest on.
std::uint64_t Spread(TColor32 color) {
    return (color | std::uint64_t{color} << 24) & Channels;
}

TColor32 Gather(std::uint64_t channels) {
    return static_cast<TColor32>(channels | channels >> 24);
}

/// Whether a quotient in double arithmetic lies so near to the middle between two 32-bit floats, or among floats of
/// fewer bits, that a more exact one could be rounded to another float.
bool IsRoundingOpen(double quotient) {
    constexpr std::uint64_t Middle = std::uint64_t{1} << 28; // of the 29 bits that a float has not
    constexpr std::uint64_t Doubt = 16;                      // the quotient is exact to a few units of its last place
    const std::uint64_t rest = std::bit_cast<std::uint64_t>(quotient) & (2 * Middle - 1);
    const bool isTiny = std::abs(quotient) < std::numeric_limits<float>::min() && quotient != 0;
    return rest - (Middle - Doubt) <= 2 * Doubt || isTiny;
}

/// GradientStep without its division, which has been made: the same roundings of the same numbers.
std::uint32_t StepAt(float position, double location, double stepsPerPosition) {
    constexpr double Rounder = 0x1.8p52; // added to a small number, leaves it rounded to the nearest, ties to even
    const double step = (position - location) * stepsPerPosition;
    const double inside = std::min<double>(step > 0 ? step : 0, GradientSteps);
    return static_cast<std::uint32_t>(std::bit_cast<std::uint64_t>(inside + Rounder));
}

} // namespace

TColorPieceTable::TPiece::TPiece(const TColorPiece& piece)
    : Min(piece.Min),
      PositionsPerValue(1 / (static_cast<double>(piece.Max) - piece.Min)),
      Location(piece.Location),
      StepsPerPosition(piece.StepsPerPosition),
      From(Spread(piece.From)),
      To(Spread(piece.To)),
      SingleMin(piece.Min),
      SingleMax(piece.Max) {}

TColorPieceTable::TColorPieceTable(const TColorPieces& pieces, const TLayerOpacity& opacity)
    : FOpacity(opacity),
      FStarts(pieces.GetStarts().begin() + (IsNaNApart(pieces) ? 0 : 1), pieces.GetStarts().end()),
      FCut(FStarts, 1, std::min<std::size_t>(4 * FStarts.size(), MostPages)),
      FFirstInPages(FCut.FirstInEachPage(FStarts)) {
    FStarts.insert(FStarts.end(), FewStarts, NaN);
    FPieces.reserve(pieces.GetCount() + 1);
    if (IsNaNApart(pieces))
        FPieces.emplace_back(pieces.GetNaNLook());
    for (const TColorPiece& piece : pieces.GetLooks())
        FPieces.emplace_back(piece);
}

std::size_t TColorPieceTable::FindPiece(std::uint32_t page, float value) const {
    std::size_t reached = FFirstInPages[page];
    const std::size_t count = FFirstInPages[page + 1] - reached;
    if (count > FewStarts)
        return reached + CountReached<float>({&FStarts[reached], count}, value);
    for (std::size_t i = 0; i < FewStarts; ++i)
        reached += value >= FStarts[reached] ? 1 : 0; // of the pages behind it reaches none
    return reached;
}

TColor32 TColorPieceTable::ColorOf(const TPiece& piece, float value) {
    const double quotient = (value - piece.Min) * piece.PositionsPerValue;
    auto position = static_cast<float>(quotient);
    if (IsRoundingOpen(quotient)) [[unlikely]]
        position = GradientPosition(value, piece.SingleMin, piece.SingleMax);
    const std::uint64_t step = StepAt(position, piece.Location, piece.StepsPerPosition);
    constexpr std::uint64_t Halves = 0x0080008000800080U;
    static_assert(GradientSteps == 256);
    return Gather((piece.From * (256 - step) + piece.To * step + Halves) >> 8 & Channels);
}

void TColorPieceTable::GetColors(std::span<const float> values, TColor32* colors, std::span<const float>) const {
    std::uint32_t places[BlockSize];
    FCut.Find(values, places);
    for (std::size_t i = 0; i < values.size(); ++i)
        places[i] = static_cast<std::uint32_t>(FindPiece(places[i], values[i]));
    for (std::size_t i = 0; i < values.size(); ++i)
        colors[i] = FOpacity.Fade(ColorOf(FPieces[places[i]], values[i]));
}

} // namespace lmx
