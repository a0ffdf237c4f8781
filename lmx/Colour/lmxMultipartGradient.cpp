#include <lmx/Colour/lmxMultipartGradient.h>

#include <lmx/Colour/Private/lmxRangeChanges.h>
#include <lmx/Colour/Steps/Private/lmxLatestResult.h>
#include <lmx/Colour/Steps/Private/lmxRangeIndex.h>
#include <lmx/Colour/Steps/Private/lmxStepwiseColorCalculator.h>
#include <lmx/Runtime/Private/lmxKeptResult.h>
#include <lmx/Runtime/lmxExceptions.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <iterator>
#include <limits>
#include <memory>
#include <utility>

namespace lmx {

namespace {

constexpr float Infinity = std::numeric_limits<float>::infinity();

using TPart = std::shared_ptr<IGradientColorCalculator>;

const TStepwiseColorCalculator* AsStepwise(const TPart& part) {
    return dynamic_cast<const TStepwiseColorCalculator*>(part.get());
}

/// Whether a value lies within overall bounds. One that is no number keeps nothing out.
bool IsBetween(float value, float min, float max) {
    return !(value < min) && !(value > max);
}

/// What the colours of one part depend on. The steps are shared: the same ones as long as the part stays the same.
template<class Steps>
struct TBand {
    TSingleRange Range;
    std::shared_ptr<const Steps> Look; ///< nil where they have to be asked for

    friend bool operator==(const TBand& a, const TBand& b) {
        return a.Range.Min == b.Range.Min && a.Range.Max == b.Range.Max && a.Look == b.Look;
    }
};

/// What all colours depend on.
template<class Steps>
struct TSource {
    float MinVal;
    float MaxVal;
    std::vector<TBand<Steps>> Bands;

    friend bool operator==(const TSource&, const TSource&) = default;
};

/// First values, ascending, of the stretches that one part colours, or none. The first is minus infinity.
std::vector<float> EdgesOf(const TRangeIndex& ranges, float minVal, float maxVal) {
    std::vector<float> edges = ranges.GetStarts();
    if (!std::isnan(minVal))
        edges.push_back(minVal);
    if (!std::isnan(maxVal))
        edges.push_back(std::nextafter(maxVal, Infinity));
    std::sort(edges.begin(), edges.end());
    edges.erase(std::unique(edges.begin(), edges.end()), edges.end());
    return edges;
}

/// Adds the steps of a part that lie from `from` to before `to`; to the end of all values if `to` is no number.
template<class Steps>
void AddSteps(const Steps& part, float from, float to, Steps& steps) {
    const std::vector<float>& starts = part.GetStarts();
    const auto next = std::upper_bound(starts.begin(), starts.end(), from);
    const auto end = std::isnan(to) ? starts.end() : std::lower_bound(next, starts.end(), to);
    const auto index = static_cast<std::size_t>(next - starts.begin());
    steps.Add(from, part.GetLooks()[index - 1]);
    steps.Add(part, index, static_cast<std::size_t>(end - starts.begin()));
}

/// Nil if one of the parts that show has to be asked for its colours.
template<class Steps>
std::shared_ptr<const Steps> StepsOf(const TSource<Steps>& source) {
    Steps steps(0); // what is no number lies in no part
    const Steps nothing(0);
    std::vector<TSingleRange> ranges;
    std::size_t count = 0;
    for (const TBand<Steps>& band : source.Bands) {
        ranges.push_back(band.Range);
        count += band.Look ? band.Look->GetCount() : 0;
    }
    steps.Reserve(count);
    const TRangeIndex index(ranges);
    const std::vector<float> edges = EdgesOf(index, source.MinVal, source.MaxVal);
    for (std::size_t i = 0; i < edges.size(); ++i) {
        const std::uint32_t owner = index.Find(edges[i]);
        if (owner == TRangeIndex::None || !IsBetween(edges[i], source.MinVal, source.MaxVal)) {
            steps.Add(edges[i], nothing.GetNaNLook());
            continue;
        }
        const auto& look = source.Bands[owner].Look;
        if (!look)
            return nullptr;
        const bool isLast = i + 1 == edges.size();
        AddSteps(*look, edges[i], isLast ? std::numeric_limits<float>::quiet_NaN() : edges[i + 1], steps);
    }
    return std::make_shared<const Steps>(std::move(steps));
}

/// Finds the part of a value by halving, of parts as they were when this was made. A host's own part may say another
/// range each time and is asked.
class TPartIndex {
public:
    explicit TPartIndex(const TColorParts& parts) : FParts(EntriesOf(parts)), FRanges(RangesOf(FParts)) {
        for (std::size_t i = 0; i < FParts.size(); ++i)
            if (FParts[i].Part && !FParts[i].IsOwn)
                FAsked.push_back(i);
    }

    /// Index of the first part that contains the value, or the number of parts.
    std::size_t Find(float value) const;

    /// Whether the parts are the same objects in the same order, with the same ranges, bit for bit.
    bool IsOf(const TColorParts& parts) const {
        return std::equal(FParts.begin(), FParts.end(), parts.begin(), parts.end(),
                          [](const TEntry& entry, const TPart& part) { return entry.IsSame(TEntry(part)); });
    }

private:
    struct TEntry {
        explicit TEntry(const TPart& part) : Part(part.get()), IsOwn(AsStepwise(part) != nullptr) {
            if (IsOwn)
                Range = {part->GetMinVal(), part->GetMaxVal()};
        }
        bool IsSame(const TEntry& other) const {
            const auto bits = [](float value) { return std::bit_cast<std::uint32_t>(value); };
            return Part == other.Part && bits(Range.Min) == bits(other.Range.Min) &&
                   bits(Range.Max) == bits(other.Range.Max);
        }

        const IGradientColorCalculator* Part;
        bool IsOwn;
        TSingleRange Range = {1, 0}; ///< nothing, where the part is asked
    };

    static std::vector<TEntry> EntriesOf(const TColorParts& parts) {
        return std::vector<TEntry>(parts.begin(), parts.end());
    }
    static std::vector<TSingleRange> RangesOf(const std::vector<TEntry>& entries) {
        std::vector<TSingleRange> ranges;
        std::transform(entries.begin(), entries.end(), std::back_inserter(ranges),
                       [](const TEntry& entry) { return entry.Range; });
        return ranges;
    }

    std::vector<TEntry> FParts;
    TRangeIndex FRanges;
    std::vector<std::size_t> FAsked; ///< indices of the hosts' parts
};

std::size_t TPartIndex::Find(float value) const {
    const std::uint32_t own = FRanges.Find(value);
    const std::size_t first = own == TRangeIndex::None ? FParts.size() : own;
    for (std::size_t index : FAsked) {
        if (index > first)
            break;
        const IGradientColorCalculator& part = *FParts[index].Part;
        if (TSingleRange{part.GetMinVal(), part.GetMaxVal()}.Contains(value))
            return index;
    }
    return first;
}

class TMultipartGradientColorCalculator final : public TBaseMinMaxColorCalculator,
                                                public IMultipartGradientColorCalculator,
                                                public TStepwiseColorCalculator {
public:
    TMultipartGradientColorCalculator(float min, float max, std::span<const TPart> parts)
        : TBaseMinMaxColorCalculator(min, max),
          FGradients(parts) {}

    TColor32 GetColor(float value) const override {
        const IGradientColorCalculator* part =
            IsBetween(value, GetMinVal(), GetMaxVal()) ? FindPart(value).get() : nullptr;
        return part ? part->GetColor(value) : 0;
    }

    std::shared_ptr<const TColorSteps> GetColorSteps() const override;
    std::shared_ptr<const TColorPieces> GetColorPieces() const override;
    std::size_t GetStepLimit() const override;

    std::shared_ptr<IBaseColorCalculator> Clone() const override { return Clone(GetMinVal(), GetMaxVal()); }
    std::shared_ptr<IBaseColorCalculator> Clone(float min, float max) const override {
        return std::make_shared<TMultipartGradientColorCalculator>(min, max, FGradients);
    }

    std::shared_ptr<IGradientColorCalculator> GetGradient(float value) const override { return FindPart(value); }
    TColorParts& GetGradients() override { return FGradients; }
    const TColorParts& GetGradients() const override { return FGradients; }

private:
    const TPart& FindPart(float value) const;

    /// The colours of all parts, each of which gives its own by `get`.
    template<class Steps>
    std::shared_ptr<const Steps> Get(TLatestResult<TSource<Steps>, std::shared_ptr<const Steps>>& kept,
                                     std::shared_ptr<const Steps> (TStepwiseColorCalculator::*get)() const) const;

    TColorParts FGradients;
    mutable TKeptResult<TPartIndex> FIndex;
    mutable TLatestResult<TSource<TColorSteps>, std::shared_ptr<const TColorSteps>> FSteps;
    mutable TLatestResult<TSource<TColorPieces>, std::shared_ptr<const TColorPieces>> FPieces;
};

const TPart& TMultipartGradientColorCalculator::FindPart(float value) const {
    static const TPart none;
    const TPartIndex& index = FIndex.Get(
        FGradients.GetChangeCount() + TRangeChanges::GetCount(), [&] { return TPartIndex(FGradients); },
        [&](const TPartIndex& kept) { return kept.IsOf(FGradients); });
    const std::size_t part = index.Find(value);
    return part < FGradients.size() ? FGradients[part] : none;
}

template<class Steps>
std::shared_ptr<const Steps>
TMultipartGradientColorCalculator::Get(TLatestResult<TSource<Steps>, std::shared_ptr<const Steps>>& kept,
                                       std::shared_ptr<const Steps> (TStepwiseColorCalculator::*get)() const) const {
    TSource<Steps> source = {GetMinVal(), GetMaxVal(), {}};
    source.Bands.reserve(FGradients.size());
    for (const TPart& part : FGradients)
        if (const TStepwiseColorCalculator* stepwise = AsStepwise(part); part)
            source.Bands.push_back({{part->GetMinVal(), part->GetMaxVal()}, stepwise ? (stepwise->*get)() : nullptr});
    return kept.Get(source, [&] { return StepsOf(source); });
}

std::shared_ptr<const TColorSteps> TMultipartGradientColorCalculator::GetColorSteps() const {
    return GetStepLimit() > MostGradientSteps ? nullptr : Get(FSteps, &TStepwiseColorCalculator::GetColorSteps);
}

std::shared_ptr<const TColorPieces> TMultipartGradientColorCalculator::GetColorPieces() const {
    return Get(FPieces, &TStepwiseColorCalculator::GetColorPieces);
}

std::size_t TMultipartGradientColorCalculator::GetStepLimit() const {
    std::size_t limit = 0;
    for (const TPart& part : FGradients)
        if (const TStepwiseColorCalculator* stepwise = AsStepwise(part))
            limit += stepwise->GetStepLimit();
    return limit;
}

} // namespace

std::shared_ptr<IMultipartGradientColorCalculator> TMultipartGradientColorCalculatorFactory::GetObject() {
    return GetObject(0, 0);
}

std::shared_ptr<IMultipartGradientColorCalculator> TMultipartGradientColorCalculatorFactory::GetObject(float min,
                                                                                                       float max) {
    return GetObject(min, max, std::span<const TPart>());
}

std::shared_ptr<IMultipartGradientColorCalculator>
TMultipartGradientColorCalculatorFactory::GetObject(float min, float max, std::span<const TPart> parts) {
    return std::make_shared<TMultipartGradientColorCalculator>(min, max, parts);
}

std::shared_ptr<IMultipartGradientColorCalculator>
TMultipartGradientColorCalculatorFactory::GetObject(float min, float max, std::initializer_list<TPart> parts) {
    return GetObject(min, max, std::span<const TPart>(parts));
}

std::shared_ptr<IMultipartGradientColorCalculator>
TMultipartGradientColorCalculatorFactory::GetObject(const std::shared_ptr<IMultipartGradientColorCalculator>& source) {
    if (!source)
        throw EExArgumentNilException(QStringLiteral("TMultipartGradientColorCalculatorFactory.GetObject"),
                                      QStringLiteral("source"));
    return GetObject(source->GetMinVal(), source->GetMaxVal(), std::span<const TPart>(source->GetGradients()));
}

} // namespace lmx
