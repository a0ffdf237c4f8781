#include <lmx/DataSources/lmxClimateFrames.h>

#include <lmx/DataSources/Private/lmxKeptBlock.h>
#include <lmx/Runtime/lmxExceptions.h>

#include <algorithm>
#include <utility>

namespace lmx {

namespace {

const std::shared_ptr<const TClimateDataset>& Checked(const std::shared_ptr<const TClimateDataset>& dataset) {
    if (!dataset)
        throw EArgumentNilException(QStringLiteral("Dataset"));
    return dataset;
}

} // namespace

TClimateFrames::TClimateFrames(std::shared_ptr<const TClimateDataset> dataset, const TClimateSelection& selection,
                               quint64 mostKeptBytes)
    : FDataset(Checked(dataset)),
      FSelection(selection),
      FKept(std::make_unique<TKeptBlock>(mostKeptBytes)) {
    if (selection.Variable >= FDataset->GetVariables().size())
        throw EArgumentException(QStringLiteral("Variable"));
    const TClimateVariableInfo& info = FDataset->GetVariables()[selection.Variable];
    if (!info.Refusal.isEmpty())
        throw EClimateFile(FDataset->GetFileName(), info.Refusal);
    if (selection.Level >= std::max<std::size_t>(info.Levels.size(), 1))
        throw EArgumentException(QStringLiteral("Level"));
    FHasTimes = FDataset->GetTimes(selection.Variable).GetCount() > 0;
    FCount = FHasTimes ? FDataset->GetTimes(selection.Variable).GetCount() : 1;
}

TClimateFrames::~TClimateFrames() = default;

std::optional<TClimateDate> TClimateFrames::GetDate(std::size_t index) const {
    return FHasTimes ? FDataset->GetTimes(FSelection.Variable).GetDate(index) : std::nullopt;
}

TClimateCalendar TClimateFrames::GetCalendar() const {
    return FDataset->GetTimes(FSelection.Variable).GetCalendar();
}

QString TClimateFrames::GetCaption(std::size_t index) const {
    return FHasTimes ? FDataset->GetTimes(FSelection.Variable).GetCaption(index) : QString();
}

std::shared_ptr<TRealImage> TClimateFrames::ReadFrame(std::size_t index, const TFrameWithdrawn& isWithdrawn) {
    if (isWithdrawn())
        return nullptr;
    TClimateSelection selection = FSelection;
    selection.Time = index;
    return FDataset->Read(selection, *FKept).Image;
}

} // namespace lmx
