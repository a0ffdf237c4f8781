#pragma once

#include <lmx/DataSources/lmxClimateDataset.h>
#include <lmx/DataSources/lmxDataSourcesExport.h>
#include <lmx/DataSources/lmxFrameSource.h>

#include <QtGlobal>

#include <memory>

namespace lmx {

/// The time steps of a variable of a climate file, at one level, for a player. A variable without a time has one frame.
///
/// A file may store several steps as one block, which can only be unpacked as a whole. The cells of the block that was
/// read last are kept as they stand in the file, so that frames read in a row unpack none twice; they go with the
/// object. Frames of blocks of more than MostKeptBytes are read one by one.
class LMX_DATASOURCES_EXPORT TClimateFrames final : public IFrameSource {
public:
    /// @param selection the variable, level and units; its time does not count
    /// @throws EArgumentNilException "Dataset"; EArgumentException "Variable" or "Level" if there is no such;
    /// EClimateFile with the refusal if the variable cannot be shown.
    TClimateFrames(std::shared_ptr<const TClimateDataset> dataset, const TClimateSelection& selection);
    ~TClimateFrames() override;

    static constexpr quint64 MostKeptBytes = quint64(256) << 20;

    std::size_t GetCount() const override { return FCount; }
    std::optional<TClimateDate> GetDate(std::size_t index) const override;
    TClimateCalendar GetCalendar() const override;
    QString GetCaption(std::size_t index) const override;
    std::shared_ptr<TRealImage> ReadFrame(std::size_t index, const TFrameWithdrawn& isWithdrawn) override;

private:
    const std::shared_ptr<const TClimateDataset> FDataset;
    const TClimateSelection FSelection;
    const std::unique_ptr<TKeptBlock> FKept;
    std::size_t FCount = 1;
    bool FHasTimes = false;
};

} // namespace lmx
