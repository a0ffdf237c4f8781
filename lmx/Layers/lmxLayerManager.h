#pragma once

#include <lmx/Layers/lmxBaseMapLayer.h>
#include <lmx/Layers/lmxLayerTypes.h>
#include <lmx/Runtime/lmxExport.h>
#include <lmx/Runtime/lmxObjectList.h>

#include <QString>
#include <QUuid>

#include <memory>

namespace lmx {

class ILayerManagerConfig;

/// The stack of layers of one map, and the one place that hears about them: it turns the events of each layer into
/// events of the whole. Layers enter and leave through the lists themselves; a list owns its layers and frees what is
/// removed. Special layers raise the added and removed events too; lfSpecial in their flags tells them apart.
/// Name, legend and area changes are not forwarded: whoever needs them subscribes to the layer. Main thread only.
class LMX_EXPORT ILayerManager {
public:
    virtual ~ILayerManager() = default;

    /// The user's stack. Index 0 is the bottom and is painted first.
    virtual TObjectList<TBaseMapLayer>& GetLayers() = 0;
    const TObjectList<TBaseMapLayer>& GetLayers() const { return const_cast<ILayerManager*>(this)->GetLayers(); }
    /// The layers of the view: selection, rulers, query points, objects.
    virtual TObjectList<TBaseMapLayer>& GetSpecialLayers() = 0;
    const TObjectList<TBaseMapLayer>& GetSpecialLayers() const {
        return const_cast<ILayerManager*>(this)->GetSpecialLayers();
    }
    virtual QString GetTitle() const = 0;
    virtual void SetTitle(const QString& title) = 0; ///< on a real change stores it and sends the event
    virtual TLayerManagerEventList& GetOnTitleChanged() = 0;
    virtual TLayerManagerLayerEventList& GetOnLayerAdded() = 0;
    virtual TLayerManagerLayerEventList& GetOnLayerRemoved() = 0; ///< the layer still lives
    virtual TLayerManagerLayerEventList& GetOnLayerVisibilityChanged() = 0;
    virtual TLayerManagerLayerEventList& GetOnLayerReadyToDraw() = 0;
    virtual TLayerManagerLayerMovedEventList& GetOnLayerMoved() = 0;
    virtual TLayerManagerLayerEventList& GetOnSelectedLayerChanged() = 0;
    virtual TLayerManagerLayerEventList& GetOnLayerInvalidated() = 0;
    virtual TMapCommandEventList& GetOnMapCommand() = 0;
    virtual std::shared_ptr<ILayerManagerConfig> GetConfig() const = 0;
    /// The first special layer whose GetLayerClassName equals `name`, or nil.
    virtual TBaseMapLayer* GetSpecialLayerWithType(const QString& name) const = 0;
    /// The selected layer, or nil. Taking a layer out of the stack does not clear the selection and sends no event:
    /// whoever selects calls SetSelLayer first. A layer that has been freed is no longer given.
    virtual TBaseMapLayer* GetSelLayer() const = 0;
    /// On a real change stores it and sends the event. From a layer that has been freed to nil is a change, too: nobody
    /// has told of it yet.
    virtual void SetSelLayer(TBaseMapLayer* layer) = 0;
    /// `name` if no layer of the stack has it, else the first free one of "name (2)", "name (3)", ...
    virtual QString GetNextName(const QString& name) const = 0;
    /// The first layer of the stack, from index 0, with exactly this name, or nil.
    virtual TBaseMapLayer* FindLayer(const QString& name) const = 0;
    virtual TBaseMapLayer* FindLayer(const QUuid& id) const = 0;
    /// Moves a layer of the stack; the others keep their order. False, with nothing done, if an index is outside the
    /// stack or both are equal.
    virtual bool MoveLayer(int fromIndex, int toIndex) = 0;
    /// From now on no added or removed event is sent. There is no way back.
    virtual void PreventNotify() = 0;
};

class LMX_EXPORT TLayerManagerFactory {
public:
    static std::shared_ptr<ILayerManager> GetObject(); ///< a new one at each call, with a configuration of its own
};

} // namespace lmx
