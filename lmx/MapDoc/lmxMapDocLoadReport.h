#pragma once

#include <lmx/Runtime/lmxEvent.h>
#include <lmx/Runtime/lmxExport.h>

#include <QString>

#include <vector>

namespace lmx {

/// A layer of a document that did not arrive on the map, or not whole.
struct LMX_EXPORT TLostLayer {
    QString Type; ///< as the document has it, as the next two
    QString Name;
    QString Id;
    bool IsSpecial = false; ///< what was read of it before the failure is on the map
    QString Reason;         ///< the message of the failure, with its place
    /// Its type is unknown, and the document says that the map tells the same without it (IMapDocLayerPersist).
    bool IsForeignDecoration = false;
};

/// What became of the layers of a document. Given to a reader by SetReport, it is filled anew by each Read.
class LMX_EXPORT TMapDocLoadReport {
public:
    const std::vector<TLostLayer>& GetLostLayers() const { return FLostLayers; }
    int GetLayerCount() const { return FLayerCount; } ///< `layer` elements of the document, special ones too
    int GetDoneCount() const { return FDoneCount; }   ///< those that have been dealt with

    /// A line for each lost layer: `Layer "name" (type): reason`. Empty if all arrived.
    QString ToText() const;

    /// One more layer has been dealt with. The subscriber may end the load by an exception, which leaves Read; what has
    /// been read by then stays.
    TEvent<const TMapDocLoadReport&>& GetOnProgress() { return FOnProgress; }
    void SetOnProgress(TEvent<const TMapDocLoadReport&> event) { FOnProgress = std::move(event); }

private:
    friend class TMapDocReader;

    std::vector<TLostLayer> FLostLayers;
    int FLayerCount = 0;
    int FDoneCount = 0;
    TEvent<const TMapDocLoadReport&> FOnProgress;
};

} // namespace lmx
