#pragma once

#include <lmx/DataSources/lmxClimateDataset.h>
#include <lmx/DataSources/lmxDataSourcesExport.h>
#include <lmx/DataSources/lmxFrameSource.h>

#include <QtGlobal>

#include <memory>

namespace lmx {

/// The time steps of a variable of a climate file, at one level, for a player. A variable without a time has one frame.
///
/// A file may store several steps as one, in blocks that can only be unpacked as a whole. The cells of the steps that
/// were read last are kept as they stand in the file, so that frames read in a row unpack no block twice; they go with
/// the object. Where all steps of a block are more than may be kept, as many are as there is room for: playing then
/// unpacks each block once for each such part, and every frame if there is no room for two. A note of the variable
/// (TClimateVariableInfo) says so if MostKeptBytes are too few. Give more where there is memory for it.
class LMX_DATASOURCES_EXPORT TClimateFrames final : public IFrameSource {
public:
    /// @param selection the variable, level and units; its time does not count
    /// @param mostKeptBytes what the cells of steps that are kept may take; 0 keeps none
    /// @throws EArgumentNilException "Dataset"; EArgumentException "Variable" or "Level" if there is no such;
    /// EClimateFile with the refusal if the variable cannot be shown.
    TClimateFrames(std::shared_ptr<const TClimateDataset> dataset, const TClimateSelection& selection,
                   quint64 mostKeptBytes = MostKeptBytes);
    ~TClimateFrames() override;

    static constexpr quint64 MostKeptBytes = quint64(256) << 20; ///< unless the host says otherwise

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
