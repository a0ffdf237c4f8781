#pragma once

#include <lmx/Colour/lmxValueRange.h>
#include <lmx/DataSources/lmxClimateDataset.h>
#include <lmx/DataSources/lmxDataSourcesExport.h>
#include <lmx/Runtime/lmxBorrowed.h>
#include <lmx/Runtime/lmxLifetime.h>

#include <QString>

#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

namespace lmx {

class ILayerManager;
class TBaseMapLayer;
class TFoundRange;
class TIdrisiMapLayer;

/// The steps in time of a map, also of one that a document has given back: its visible layers whose images come from
/// climate files (TClimateOrigin) step together through the times of their variables. Layers of one time only stay as
/// they are. Main thread only; layers may come and go.
class LMX_DATASOURCES_EXPORT TClimateMapSteps {
public:
    /// Opens the files.
    /// @param folder where a file is looked for, by its name, that is not where it was; empty for nowhere
    /// @throws EArgumentNilException "LayerManager"; EClimateFile if a file does not open or lacks variable or level;
    /// EInvalidOperation `The layers "A" and "B" have 12 and 24 steps in time`.
    explicit TClimateMapSteps(const std::shared_ptr<ILayerManager>& layerManager, const QString& folder = {});

    const TLifetime& GetLifetime() const { return FLifetime; }
    std::size_t GetCount() const; ///< 0 if no layer has times
    // A step is below GetCount. The upper one of several layers has its dates.

    QString GetCaption(std::size_t step) const;                  ///< "January 2001"
    std::optional<TClimateDate> GetDate(std::size_t step) const; ///< none if the axis has no dates
    /// The shortest names for files that tell all steps apart: "2001-01", "2001-01-15", "2001-01-15T0600",
    /// "2001-01-15T060030"; "01" or "01-15" where years mean nothing. Empty without dates, or if two steps have one.
    std::vector<QString> GetDateNames() const;

    /// Puts a step on the layers. Their colours stay; a name that ends with the caption of the step before gets that of
    /// this one.
    /// @throws EArgumentException "Step"; EClimateFile with variable and step if it cannot be read.
    void Show(std::size_t step);

    /// Stretches the colours of the layers over a range. Calculators without a range of their own stay.
    void SetColorRange(const TValueRange& range);
    /// The same for each layer with the range of all its steps, which are read for it.
    /// @throws EClimateFile as Show.
    void FitColors();

private:
    struct TLayer {
        TBorrowed<TIdrisiMapLayer> Layer;
        std::shared_ptr<const TClimateDataset> Dataset;
        TClimateSelection Selection;
        QString Caption; ///< of the step that it shows
    };

    void Add(TIdrisiMapLayer& layer, const std::shared_ptr<const TClimateDataset>& dataset,
             const TClimateSelection& selection, const QString& caption);
    const TClimateTimes& GetTimes() const;
    static void ShowOn(TLayer& each, std::size_t step);
    static TFoundRange RangeOf(const TLayer& layer);
    static void StretchColors(const TLayer& layer, const TValueRange& range);

    std::vector<TLayer> FLayers; ///< with times, from the bottom
    TLifetime FLifetime;
};

} // namespace lmx
