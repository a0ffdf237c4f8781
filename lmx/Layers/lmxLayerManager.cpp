#include <lmx/Layers/lmxLayerManager.h>

#include <lmx/Layers/lmxLayerManagerConfig.h>
#include <lmx/Runtime/lmxBorrowed.h>
#include <lmx/Runtime/lmxNumberText.h>

#include <QSet>

namespace lmx {

namespace {

// Whether a layer is still there. A subscriber that is told of it may free it, and then no other one is told.
auto IsAlive(const TBaseMapLayer& layer) {
    return [life = layer.GetLifetime().Watch()] { return !life.IsOver(); };
}

class TLayerManager final : public ILayerManager, public TEventReceiver {
public:
    TLayerManager();
    ~TLayerManager() override;

    TObjectList<TBaseMapLayer>& GetLayers() override { return FLayers; }
    TObjectList<TBaseMapLayer>& GetSpecialLayers() override { return FSpecialLayers; }
    QString GetTitle() const override { return FTitle; }
    void SetTitle(const QString& title) override;
    TLayerManagerEventList& GetOnTitleChanged() override { return FOnTitleChanged; }
    TLayerManagerLayerEventList& GetOnLayerAdded() override { return FOnLayerAdded; }
    TLayerManagerLayerEventList& GetOnLayerRemoved() override { return FOnLayerRemoved; }
    TLayerManagerLayerEventList& GetOnLayerVisibilityChanged() override { return FOnLayerVisibilityChanged; }
    TLayerManagerLayerEventList& GetOnLayerReadyToDraw() override { return FOnLayerReadyToDraw; }
    TLayerManagerLayerMovedEventList& GetOnLayerMoved() override { return FOnLayerMoved; }
    TLayerManagerLayerEventList& GetOnSelectedLayerChanged() override { return FOnSelectedLayerChanged; }
    TLayerManagerLayerEventList& GetOnLayerInvalidated() override { return FOnLayerInvalidated; }
    TMapCommandEventList& GetOnMapCommand() override { return FOnMapComamnd; }
    std::shared_ptr<ILayerManagerConfig> GetConfig() const override { return FConfig; }
    TBaseMapLayer* GetSpecialLayerWithType(const QString& name) const override;
    TBaseMapLayer* GetSelLayer() const override { return FSelectedLayer.Get(); }
    void SetSelLayer(TBaseMapLayer* layer) override;
    QString GetNextName(const QString& name) const override;
    TBaseMapLayer* FindLayer(const QString& name) const override;
    TBaseMapLayer* FindLayer(const QUuid& id) const override;
    bool MoveLayer(int fromIndex, int toIndex) override;
    void PreventNotify() override { FPreventNotify = true; }

private:
    void Layers_Changed(TBaseMapLayer* layer, TListChange change);
    void Layer_Added(TBaseMapLayer* layer);
    void Layer_Removed(TBaseMapLayer* layer);
    void Subscribe(TBaseMapLayer* layer);
    void Unsubscribe(TBaseMapLayer* layer);

    void Layer_VisibilityChanged(TBaseMapLayer* layer) { Tell(FOnLayerVisibilityChanged, layer); }
    void Layer_ReadyToDrawChanged(TBaseMapLayer* layer) { Tell(FOnLayerReadyToDraw, layer); }
    void Layer_Invalidated(TBaseMapLayer* layer) { Tell(FOnLayerInvalidated, layer); }
    void Layer_MapCommand(TBaseMapLayer* layer, TLayerMapCommand command, void* data) {
        FOnMapComamnd.SendWhile(IsAlive(*layer), layer, command, data);
    }
    void Tell(const TLayerManagerLayerEventList& event, TBaseMapLayer* layer) {
        event.SendWhile(IsAlive(*layer), this, layer);
    }

    TBorrowed<TBaseMapLayer> FSelectedLayer;
    std::shared_ptr<ILayerManagerConfig> FConfig;
    QString FTitle;
    bool FPreventNotify = false;
    TLayerManagerLayerEventList FOnLayerAdded;
    TLayerManagerLayerEventList FOnLayerRemoved;
    TLayerManagerLayerEventList FOnLayerVisibilityChanged;
    TLayerManagerLayerEventList FOnLayerReadyToDraw;
    TLayerManagerLayerEventList FOnLayerInvalidated;
    TLayerManagerLayerMovedEventList FOnLayerMoved;
    TLayerManagerLayerEventList FOnSelectedLayerChanged;
    TMapCommandEventList FOnMapComamnd;
    TLayerManagerEventList FOnTitleChanged;
    // Last, so that the lists go while every event is still there.
    TObjectList<TBaseMapLayer> FSpecialLayers;
    TObjectList<TBaseMapLayer> FLayers;
};

TLayerManager::TLayerManager() : FConfig(TLayerManagerConfigFactory::GetObject()) {
    const auto onChange = [this](TBaseMapLayer* layer, TListChange change) { Layers_Changed(layer, change); };
    FLayers.SetOnChange(onChange);
    FSpecialLayers.SetOnChange(onChange);
}

// The removed event still reaches subscribers for the layers of the stack, and for no special layer: a manager that
// goes with special layers in it goes silently. So does what a subscriber adds meanwhile.
TLayerManager::~TLayerManager() {
    FLayers.Clear();
    FPreventNotify = true;
    FSpecialLayers.Clear();
}

void TLayerManager::SetTitle(const QString& title) {
    if (title == FTitle)
        return;
    FTitle = title;
    FOnTitleChanged.Send(this);
}

TBaseMapLayer* TLayerManager::GetSpecialLayerWithType(const QString& name) const {
    for (TBaseMapLayer* layer : FSpecialLayers)
        if (layer->GetLayerClassName() == name)
            return layer;
    return nullptr;
}

void TLayerManager::SetSelLayer(TBaseMapLayer* layer) {
    const TBorrowed selected(layer);
    if (selected == FSelectedLayer)
        return;
    FSelectedLayer = selected;
    if (layer)
        Tell(FOnSelectedLayerChanged, layer);
    else
        FOnSelectedLayerChanged.Send(this, nullptr);
}

QString TLayerManager::GetNextName(const QString& name) const {
    QSet<QString> taken; // as many candidates may be asked for as there are layers
    for (const TBaseMapLayer* layer : FLayers)
        taken.insert(layer->GetLayerName());
    QString candidate = name;
    for (int n = 2; taken.contains(candidate); ++n)
        candidate = name + QStringLiteral(" (") + IntToStr(n) + u')';
    return candidate;
}

TBaseMapLayer* TLayerManager::FindLayer(const QString& name) const {
    for (TBaseMapLayer* layer : FLayers)
        if (layer->GetLayerName() == name)
            return layer;
    return nullptr;
}

TBaseMapLayer* TLayerManager::FindLayer(const QUuid& id) const {
    for (TBaseMapLayer* layer : FLayers)
        if (layer->GetLayerID() == id)
            return layer;
    return nullptr;
}

bool TLayerManager::MoveLayer(int fromIndex, int toIndex) {
    const int count = FLayers.Count();
    if (fromIndex < 0 || toIndex < 0 || fromIndex == toIndex || fromIndex >= count || toIndex >= count)
        return false;
    FLayers.Move(fromIndex, toIndex);
    FOnLayerMoved.Send(this, fromIndex, toIndex);
    return true;
}

void TLayerManager::Layers_Changed(TBaseMapLayer* layer, TListChange change) {
    if (change == TListChange::lcAdded)
        Layer_Added(layer);
    else
        Layer_Removed(layer);
}

// A subscriber may take the layer out again, and let the manager go. Then the others are not told that it came.
void TLayerManager::Layer_Added(TBaseMapLayer* layer) {
    const TBorrowed self(this);
    const auto isThere = [&] { return FLayers.IsArriving(layer) || FSpecialLayers.IsArriving(layer); };
    if (!FPreventNotify)
        FOnLayerAdded.SendWhile(isThere, this, layer);
    if (self && isThere())
        Subscribe(layer);
}

void TLayerManager::Layer_Removed(TBaseMapLayer* layer) {
    const TBorrowed self(this);
    if (!FPreventNotify)
        FOnLayerRemoved.Send(this, layer);
    if (self)
        Unsubscribe(layer);
}

void TLayerManager::Subscribe(TBaseMapLayer* layer) {
    layer->GetOnVisibilityChanged().Add(this, &TLayerManager::Layer_VisibilityChanged);
    layer->GetOnReadyToDrawChanged().Add(this, &TLayerManager::Layer_ReadyToDrawChanged);
    layer->GetOnMapCommand().Add(this, &TLayerManager::Layer_MapCommand);
    layer->GetOnInvalidated().Add(this, &TLayerManager::Layer_Invalidated);
}

void TLayerManager::Unsubscribe(TBaseMapLayer* layer) {
    layer->GetOnVisibilityChanged().Remove(this, &TLayerManager::Layer_VisibilityChanged);
    layer->GetOnReadyToDrawChanged().Remove(this, &TLayerManager::Layer_ReadyToDrawChanged);
    layer->GetOnMapCommand().Remove(this, &TLayerManager::Layer_MapCommand);
    layer->GetOnInvalidated().Remove(this, &TLayerManager::Layer_Invalidated);
}

} // namespace

std::shared_ptr<ILayerManager> TLayerManagerFactory::GetObject() {
    return std::make_shared<TLayerManager>();
}

} // namespace lmx
