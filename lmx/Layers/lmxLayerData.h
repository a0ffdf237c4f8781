#pragma once

#include <lmx/Colour/lmxValueRange.h>
#include <lmx/Runtime/lmxExport.h>

#include <QString>

#include <memory>
#include <optional>

namespace lmx {

class IBaseColorCalculator;

/// What a layer shows, for pictures that tell of it. Texts are empty where there is nothing to tell.
struct LMX_EXPORT TLayerData {
    QString FileName; ///< of the data; empty for data of no file
    QString Lineage;  ///< what they were made from, in lines
    QString Units;    ///< of the values
    std::optional<TValueRange> ValueRange;
    std::shared_ptr<const IBaseColorCalculator> Colors; ///< of the values; nil without
};

/// A layer that tells of its data by itself: one of another library, or of a host, whose class nobody here knows.
class LMX_EXPORT ILayerWithData {
public:
    virtual ~ILayerWithData();
    /// Reads no file. Main thread.
    virtual TLayerData DescribeData() const = 0;
};

} // namespace lmx
