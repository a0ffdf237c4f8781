#pragma once

#include <lmx/Colour/lmxBaseColorCalculator.h>
#include <lmx/Controls/Legend/lmxObjectLayerLegendControl.h>
#include <lmx/Controls/lmxMapControl.h>
#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Controls/lmxMapViewInfoQueryListControl.h>
#include <lmx/Controls/lmxMapViewRulersPanelControl.h>
#include <lmx/Formats/Idrisi/lmxIdrisiImages.h>
#include <lmx/Formats/Idrisi/lmxVector.h>
#include <lmx/Formats/Shapes/lmxShpFile.h>
#include <lmx/Layers/Objects/lmxBaseObjectLayerItem.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxInfoQueryPointLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Layers/lmxObjectMapLayer.h>
#include <lmx/Layers/lmxPinMapLayer.h>
#include <lmx/Layers/lmxRulerMapLayer.h>
#include <lmx/Layers/lmxSelectionMapLayer.h>
#include <lmx/Layers/lmxShapeFileLayer.h>
#include <lmx/Layers/lmxVectorFileLayer.h>
#include <lmx/Runtime/lmxBorrowed.h>
#include <lmx/Widgets/lmxGradientEditor.h>
#include <tests/Support/ScriptedServices.h>
#include <tests/Support/TestBufferedLayer.h>

#include <QString>

#include <functional>
#include <map>
#include <memory>
#include <vector>

// A host with everything on its screen, whose every callback can be made to do something unkind.

namespace lmx::tests {

/// What happens at the places where the library calls the host, by the names of the places.
class TChaosHooks {
public:
    /// The host is called at `place`.
    void Call(const QString& place) const;
    void Set(const QString& place, std::function<void()> action) { FActions[place] = std::move(action); }
    void Clear() { FActions.clear(); }

private:
    std::map<QString, std::function<void()>> FActions;
};
using TSharedHooks = std::shared_ptr<TChaosHooks>;

/// A layer of the host's own, all of whose operations call "Layer.Paint" and so on.
class TChaosLayer : public TBaseLayerManagerLayer {
public:
    TChaosLayer(const std::shared_ptr<ILayerManager>& manager, TSharedHooks hooks);

    QString GetLayerTypeName() const override { return QStringLiteral("Chaos"); }
    TMouseSupport GetMouseSupport() const override;
    bool GetHasContent() const override;
    void Paint(TWorld* world, TWorldViewport* viewport, TBitmap32& bitmap) override;
    void Invalidate() override;
    void MouseDown(TWorldViewport* viewport, TPoint point) override;
    void MouseMove(TWorldViewport* viewport, TPoint point, bool isMouseDown) override;
    void MouseUp(TWorldViewport* viewport, TPoint point, bool wasMouseDown) override;
    void BeforeLayerManagerRemoved(ILayerManager* manager) override;

private:
    void Call(const char* operation) const;

    TSharedHooks FHooks;
};

/// A buffered layer that calls "Buffered.RenderBuffer".
class TChaosBufferedLayer final : public TTestBufferedLayer {
public:
    TChaosBufferedLayer(const std::shared_ptr<ILayerManager>& manager, TSharedHooks hooks);
    void RenderBuffer(TSize viewSize, const TMapArea& visibleMapArea, const TWorldViewportLocal& vpLocal) override;

private:
    TSharedHooks FHooks;
};

/// An annotation of the host's own that calls "Item.Paint" and so on.
class TChaosItem final : public TBaseObjectLayerItem {
public:
    TChaosItem(TObjectMapLayer* layer, TSharedHooks hooks);

    QString GetObjectType() const override { return QStringLiteral("Chaos"); }
    QString GetObjectClassType() const override;
    void SetRect(const TRect& rect) override;
    void Paint(TWorld* world, TWorldViewport* viewport, TBitmap32& bitmap) override;
    void MouseDown(TWorldViewport* viewport, TPoint point) override;
    void MouseMove(TWorldViewport* viewport, TPoint point, bool isDown) override;

private:
    bool Survives(const char* operation) const;

    TSharedHooks FHooks;
};

/// One answer to every question, after `place` was called.
struct TChaosServices {
    explicit TChaosServices(const TSharedHooks& hooks);

private:
    TServiceScope<TMsgBox> FMsgBox;
    TServiceScope<TInputBox> FInputBox;
    TServiceScope<TColorChooserFactory> FColorChooser;
    TServiceScope<TFileDialog> FFileDialog;
    TServiceScope<TClipboard> FClipboard;
};

struct TChaosDocuments;

/// A view, a map control, a rulers panel, a table of query points and a list of annotations on one manager with a layer
/// of each kind, and a gradient editor, shown and painted. Any of them may be gone; whoever uses one asks first.
struct TChaosScene {
    /// `beforeViews` runs when there is a filled manager and nobody listens to it yet.
    explicit TChaosScene(const std::function<void(TChaosScene&)>& beforeViews = {});
    ~TChaosScene();

    void Settle(); ///< lets posted events and paints happen
    /// Uses everything that is left once more: paints, moves the mouse, clicks, and lets renders end.
    void UseOnceMore();

    void SendMouse(QEvent::Type type, QPoint at, Qt::MouseButton button = Qt::LeftButton);
    void Click(QPoint at);
    void PressInGradient(Qt::Key key);
    TChaosLayer* AddLayer();
    /// The special layers of the view; nil if there is no view, or none of that kind.
    TRulerMapLayer* Rulers() const { return View ? View->GetSpRulersLayer() : nullptr; }
    TInfoQueryPointLayer* Points() const { return View ? View->GetSpInfoQueryPointsLayer() : nullptr; }
    TSelectionMapLayer* Selection() const { return View ? View->GetSpSelectionLayer() : nullptr; }
    TObjectMapLayer* Objects() const { return View ? View->GetSpObjectLayer() : nullptr; }

    TSharedHooks Hooks = std::make_shared<TChaosHooks>();
    TChaosServices Services{Hooks};
    std::shared_ptr<IBaseColorCalculator> Calculator;
    std::unique_ptr<TPinMapLayerPinRenderer> PinRenderer;
    std::unique_ptr<TShpFile> ShpFile;
    std::shared_ptr<IMapViewControlCustomModeObject> Mode;
    std::vector<TSubscription> Subscriptions;
    std::shared_ptr<TChaosDocuments> Documents; ///< what reads and writes; nil before the first

    std::shared_ptr<ILayerManager> Manager = TLayerManagerFactory::GetObject();
    TBorrowed<TChaosLayer> Layer;
    TBorrowed<TIdrisiMapLayer> Raster;
    TBorrowed<TPinMapLayer> Pins;
    TBorrowed<TShapeFileLayer> Shape;
    TBorrowed<TVectorFileLayer> Vector;
    TBorrowed<TChaosBufferedLayer> Buffered;

    /// Above 0 while the platform stands in the middle of painting, showing or resizing the view, which must then stay.
    int PlatformCalls = 0;
    std::unique_ptr<TMapViewControl> View;
    std::unique_ptr<TMapControl> Map;
    std::unique_ptr<TMapViewRulersPanelControl> Panel;
    std::unique_ptr<TMapViewInfoQueryListControl> Table;
    std::unique_ptr<TObjectLayerLegendControl> ObjectList;
    std::unique_ptr<TGradientEditor> Gradient;

private:
    void FillManager();
    void AddAnnotations();
    void ShowWidgets();
};

/// An image of 8 x 4 cells over a part of the world.
std::unique_ptr<TRealImage> ChaosImage();
/// A calculator that calls "Calculator.GetColor" and "Calculator.Clone".
std::shared_ptr<IBaseColorCalculator> ChaosCalculator(const TSharedHooks& hooks);
std::unique_ptr<TShpFile> ChaosShpFile();
std::unique_ptr<TVector> ChaosVector();

} // namespace lmx::tests
