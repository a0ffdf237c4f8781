// The snippets of the host guide and the README, as code that compiles. guideTest.cpp looks each of them up here, line
// by line: a snippet that changes there changes here.

#include <lmx/Climate/lmxClimate.h>
#include <lmx/Colour/lmxColour.h>
#include <lmx/Controls/lmxControls.h>
#include <lmx/Coordinates/lmxCoordinates.h>
#include <lmx/Dialogs/lmxDialogs.h>
#include <lmx/Formats/lmxFormats.h>
#include <lmx/Graphics/lmxGraphics.h>
#include <lmx/Layers/lmxLayers.h>
#include <lmx/MapDoc/lmxMapDoc.h>
#include <lmx/Pictures/lmxPictures.h>
#include <lmx/Raster/lmxRaster.h>
#include <lmx/Runtime/lmxRuntime.h>
#include <lmx/Widgets/lmxWidgets.h>

#include <QImage>
#include <QString>

#include <functional>
#include <memory>
#include <span>
#include <utility>
#include <variant>

// The snippets stand as they do on the page.
// clang-format off
namespace {

struct TTrack {
    std::vector<lmx::TMapPoint> Places;
};

QImage OwnPen(double, const QColor&) {
    return {};
}

void Note(lmx::TBaseMapLayer*) {}
void ShowScale(lmx::extended) {}
std::unique_ptr<lmx::TBufferedBitmap> Download(const lmx::TMapArea& area, lmx::TThread&) {
    return lmx::CreateBufferedBitmap({1, 1}, area);
}

struct TMeasure : lmx::IMapViewControlCustomModeObject {
    void MouseDown(lmx::TMapViewControl*, const lmx::TPoint&, const lmx::TMapPoint& place) override { FFrom = place; }
    void MouseMove(lmx::TMapViewControl*, const lmx::TPoint&, const lmx::TMapPoint& place) override { FTo = place; }
    void MouseUp(lmx::TMapViewControl*, const lmx::TPoint&, const lmx::TMapPoint&) override {}
    lmx::TCursor GetCursor() const override { return lmx::TCursor::crCross; }

    lmx::TMapPoint FFrom, FTo;
};

struct TDots : lmx::TPinMapLayerPinRenderer {
    bool RenderPin(lmx::TBitmap32& bitmap, lmx::TPinMapLayer*, lmx::TPin*, const lmx::TMapPoint& at,
                   lmx::TFloatRect& covered) override {
        const double x = static_cast<double>(at.X), y = static_cast<double>(at.Y), r = 4 * bitmap.GetDeviceRatio();
        lmx::PolygonFS(bitmap, lmx::CirclePolygon(x, y, r), 0xFFB01E5A);
        covered = {x - r, y - r, x + r, y + r};
        return true;   // drawn; `covered` goes into GetRenderRects, for hit tests
    }
};

struct TOwnImages : lmx::IExternalResourcesService {
    QImage GetImage(const QString& name, double ratio, const QColor& ink) override {
        return name == "MapWindowFactory.Edit" ? OwnPen(ratio, ink) : QImage();   // a null image: the library's own
    }
};

class TTrackRender : public lmx::TRenderThreadHandler {
public:
    TTrackRender(lmx::TSize size, const lmx::TMapArea& area, const lmx::TWorldViewportLocal& viewport,
                 std::shared_ptr<const TTrack> track, lmx::TColor32 color)
        : TRenderThreadHandler(size, area, viewport), FTrack(std::move(track)), FColor(color) {}

protected:
    void Draw(lmx::TBitmap32& bitmap, const lmx::TThreadPoolThread& thread) const override {
        bitmap.SetPenColor(FColor);
        for (const lmx::TMapPoint& place : FTrack->Places) {
            if (thread.ShouldStop())
                return;
            const lmx::TPoint pixel = VPLocal.MapPointToPoint(place).ToPoint();
            bitmap.LineToS(pixel.X, pixel.Y);
        }
    }

private:
    std::shared_ptr<const TTrack> FTrack;
    lmx::TColor32 FColor;
};

class TTrackLayer : public lmx::TBaseShapeLayer {
public:
    using TBaseShapeLayer::TBaseShapeLayer;
    QString GetLayerTypeName() const override { return "Track"; }
    void RenderBuffer(lmx::TSize size, const lmx::TMapArea& area, const lmx::TWorldViewportLocal& viewport) override {
        StartRender(std::make_shared<TTrackRender>(size, area, viewport, FTrack, GetColor()));
    }

private:
    std::shared_ptr<const TTrack> FTrack = std::make_shared<TTrack>();
};

struct TQuietMessages : lmx::IMsgBoxService {
    void Error(const QString& text, const QString& title, QWidget*) override { FLog += title + ": " + text; }
    void Info(const QString& text, const QString& title, QWidget*) override { FLog += title + ": " + text; }
    bool YesNo(const QString&, const QString&, QWidget*) override { return true; }
    void ShowMessage(const QString& text) override { FLog += text; }

    QStringList FLog;
};

[[maybe_unused]] void EmbedTheView(lmx::TMapViewControl& view, lmx::TMapViewControl& overview,
                                   lmx::TIdrisiMapLayer* raster, std::unique_ptr<lmx::TIdrisiMapLayer> layer) {
    const auto manager = lmx::TLayerManagerFactory::GetObject();
    view.SetLayerManager(manager);
    manager->GetLayers().Add(std::move(layer));
    view.GetViewport()->ZoomTo(view.GetWorldSystem()->Area());   // the whole world

    overview.SetLayerManager(manager);
    overview.CreateWorldAndViewport(view.GetWorldSystem());
    overview.ZoomTo(raster);

    view.SetLayerManager(nullptr);   // the marks that they hold go, too
}

[[maybe_unused]] void WriteAPicture(const std::shared_ptr<lmx::ILayerManager>& manager, const QString& fileName) {
    lmx::TMapPictureOptions options;
    options.Size = {1200, 675};        // units of 1/96 inch
    options.Density = 3.125;           // pixels in a unit: 300 an inch
    options.Title = "Sea surface temperature";
    options.Time = "January";
    options.ShowsLegends = options.ShowsScale = true;
    lmx::TMapPicture(manager, lmx::TLatLonWorldSystemFactory::GetObject(), options).Save(fileName);
}

[[maybe_unused]] void MakeAPicture(const std::shared_ptr<lmx::ILayerManager>& manager, const QString& fileName) {
    lmx::TWorld world(lmx::TLatLonWorldSystemFactory::GetObject());
    lmx::TWorldViewport viewport(&world);
    viewport.SetViewSize({1920, 960});
    viewport.ZoomTo(world.GetWorldSystem()->Area());
    lmx::TBitmap32 picture(1920, 960);
    picture.Clear(0xFFFFFFFF);
    lmx::PaintLayerStack(manager, viewport, picture);
    picture.ToQImage().save(fileName);
}

[[maybe_unused]] void MarksOfAView(QWidget* parent) {
    lmx::TMapViewControl view(parent, {lmx::TSpecialLayers::slSelection, lmx::TSpecialLayers::slRulers});
}

[[maybe_unused]] void Annotations(lmx::TMapViewControl& view, lmx::TBaseMapLayer* raster) {
    lmx::TObjectMapLayer* objects = view.GetSpObjectLayer();
    auto* legend = objects->GetObjects().Add(
        std::make_unique<lmx::TLegendObjectLayerItem>(objects, raster, lmx::TLegendOrientation::loVertical));
    legend->SetShowBackground(true);
    legend->SetRect({20, 20, 140, 320});
    legend->SetAnchors({lmx::TAnchorKind::akLeft, lmx::TAnchorKind::akBottom});
}

[[maybe_unused]] void Marks(lmx::TMapViewControl& view, lmx::TSubscription& added, lmx::TPinMapLayer* pins,
                            lmx::TMapViewRulersPanelControl& panel) {
    view.GetSpRulersLayer()->Add(std::make_unique<lmx::TRulerItem>(lmx::TRulerOrientation::roVertical, -23.44L, 0xFFCC0000));
    added = view.GetSpInfoQueryPointsLayer()->GetOnAdded().Add(
        [](lmx::TInfoQueryPointLayer*, lmx::TInfoQueryPoint* point) { point->SetPointLabel("Here"); });

    view.SetCustomModeObject(std::make_shared<TMeasure>());   // first the object, then the mode
    view.SetMode(lmx::TMapMode::mdCustom);

    static TDots dots;
    pins->GetPins().Add(std::make_unique<lmx::TPin>("Wellington", 174.78L, -41.30L));
    pins->SetPinRenderer(&dots);   // borrowed: it outlives the layer
    pins->Invalidate();            // changes of pins tell nobody

    panel.SetRulersLayer(view.GetSpRulersLayer());   // borrowed; again when the view has another manager, which makes another layer

    lmx::TExternalResources::SetService(std::make_shared<TOwnImages>());
    lmx::TMapViewAssets::GetInstance().GetLayerPanelAssets().Replace(3, OwnPen);   // the sign of a visible layer

    lmx::TMsgBox::SetService(std::make_shared<TQuietMessages>());
}

[[maybe_unused]] lmx::TObjectLayerLegendControl* Annotations(lmx::TMapViewControl& view, lmx::TTextBoxObjectLayerItem* box,
                                                             QWidget* parent) {
    auto* annotations = lmx::TObjectLayerLegendControl::CreateComp(parent, view.GetSpObjectLayer());

    lmx::TTextObjectDialog dialog(parent);
    dialog.SetText(box->GetText());
    dialog.GetGeneralOptions().UpdateOptions(box);   // what "More options..." edits
    if (dialog.ShowModal() == lmx::TModalResult::mrOk) {
        box->SetText(dialog.GetText());
        dialog.GetGeneralOptions().UpdateObject(box);
    }
    return annotations;
}

[[maybe_unused]] lmx::TIdrisiMapLayer* Rasters(const std::shared_ptr<lmx::ILayerManager>& manager, const QString& fileName,
                                               const std::shared_ptr<lmx::IBaseColorCalculator>& calculator) {
    auto layer = std::make_unique<lmx::TIdrisiMapLayer>(manager);
    layer->TakeImage(lmx::TImageFactory::Load(fileName));     // or SetImage, and keep the image yourself
    layer->SetColorCalc(calculator);
    layer->Render();                                          // the first render is yours to ask for
    lmx::TIdrisiMapLayer* raster = manager->GetLayers().Add(std::move(layer));
    return raster;
}

[[maybe_unused]] double Frames(const QString& fileName) {
    auto grid = std::make_shared<lmx::TArcInfoAsciiGridRasterFrame>(fileName, lmx::TDataKind::dkFloat);
    const double here = grid->Read(174.8, -41.3, lmx::TInterpolationOption::ioBilinear);
    for (int row = 0; row < grid->GetHeight(); ++row) {
        const auto line = std::get<std::span<float>>(grid->ScanLine(row));   // the type follows GetBufferKind
        for (float& cell : line)
            cell += 273.15F;
    }
    return here;
}

[[maybe_unused]] void Statistics(lmx::TMapViewControl& view, const std::shared_ptr<lmx::ILayerManager>& manager,
                                 const lmx::TIdrisiMapLayer* raster, const lmx::TIdrisiMapLayer* control,
                                 const std::function<void(double, double, double, double)>& show) {
    const lmx::TFieldStatistics here = lmx::StatisticsOf(*raster, view.GetSpSelectionLayer()->GetSelectedRect());
    if (here.HasValues())
        show(here.Mean, here.Minimum, here.Maximum, here.MissingShare);   // the last one: of the area, 0 to 1
    manager->GetLayers().Add(lmx::DifferenceLayer(manager, *raster, *control));
}

[[maybe_unused]] void Overlays(const std::shared_ptr<lmx::ILayerManager>& manager, const QString& fileName) {
    const auto [kind, converter] = lmx::ConversionOf(fileName);        // ckUnknown: say that the place may be wrong
    auto coast = std::make_unique<lmx::TShapeFileLayer>(manager);
    coast->SetColor(0xFF24303C);                                       // set one: 0 shows nothing
    coast->TakeShpFile(lmx::TShpFile::LoadFromFile(fileName, converter));   // or SetShpFile and SetOwnsShpFile(false)
    manager->GetLayers().Add(std::move(coast));
    static_cast<void>(kind);
}

[[maybe_unused]] void Attributes(const lmx::TShpFile& file, std::size_t i, const QString& tableName,
                                 void (*show)(const QString& name, const QString& text)) {
    lmx::TDBFReader table(tableName);                                  // keeps bytes, decodes what is asked for
    for (std::size_t field = 0; field < table.GetFields().size(); ++field)
        show(table.GetFields()[field].GetFieldName(), table.GetText(file.GetPolygon(i).GetRecord(), field));
}

[[maybe_unused]] void Cores() {
    lmx::TCores::SetCount(0);   // all that the machine has; 1, as at start, is the calling thread alone
}

[[maybe_unused]] void OwnThread(lmx::TBufferedMapLayer* layer, const lmx::TMapArea& area) {
    layer->StartRenderThread([layer = lmx::TBorrowed(layer), area](lmx::TThread& thread) {
        auto picture = std::make_shared<std::unique_ptr<lmx::TBufferedBitmap>>(Download(area, thread));
        if (!thread.GetTerminated())
            lmx::TThread::Synchronize([=] {
                if (layer)
                    layer->SetBufferedBitmap(std::move(*picture));
            });
    });
}

[[maybe_unused]] void OwnTypes() {
    const auto factory = lmx::TLayerFactory::GetSingleton();
    lmx::TLayerFactory::PopulateDefault(factory);
    factory->Register("TrackLayer", [](const std::shared_ptr<lmx::ILayerManager>& manager) {
        return std::make_unique<TTrackLayer>(manager);
    });
}

[[maybe_unused]] void Gradients(lmx::TGradientEditor& editor, const std::shared_ptr<lmx::IGradient>& gradient,
                                lmx::TIdrisiMapLayer* raster) {
    editor.SetValueRange(-30, 45);
    editor.SetGradient(gradient);   // takes its stops; GetGradient gives a new one
    editor.SetOnChanged([raster](lmx::TGradientEditor* changed, lmx::TGrabber) {
        raster->SetColorCalc(lmx::TGradientColorCalculatorFactory::GetObject(changed));
    });
}

struct THost : lmx::TEventReceiver {
    void Layers_Removed(lmx::ILayerManager*, lmx::TBaseMapLayer*) {}

    void Listen(const std::shared_ptr<lmx::ILayerManager>& manager, lmx::TMapViewControl& view, lmx::TBaseMapLayer* raster,
                lmx::TSubscription& subscription) {
        subscription = manager->GetOnLayerAdded().Add([](lmx::ILayerManager*, lmx::TBaseMapLayer* layer) { Note(layer); });
        manager->GetOnLayerRemoved().Add(this, &THost::Layers_Removed);   // THost derives from TEventReceiver
        view.SetOnViewportUpdated([](lmx::TMapViewControl* sender) { ShowScale(sender->GetViewport()->GetScale()); });

        lmx::TBorrowed<lmx::TBaseMapLayer> shown = raster;
        if (shown)
            shown->Invalidate();
    }
};

[[maybe_unused]] void Documents(const QString& fileName, lmx::TMapViewControl& view, lmx::TMapViewControl& freshView) {
    const auto keepers = lmx::TMapDocLayerPersistFactory::GetSingleton();
    lmx::TMapDocLayerPersistFactory::PopulateDefault(keepers);

    lmx::TMapDocWriter writer("ClimateMap", keepers);
    writer.Write(fileName, &view, lmx::TMapDocExternalResourcePolicy::erpEmbedIfPossible);

    lmx::TMapDocReader reader("ClimateMap", lmx::TLayerFactory::GetSingleton(), keepers);
    reader.Read(fileName, &freshView);   // it only adds: a fresh manager gets the map and nothing else

    const auto report = std::make_shared<lmx::TMapDocLoadReport>();
    reader.SetReport(report);
    reader.Read(fileName, &freshView);
    if (!report->GetLostLayers().empty())
        lmx::TMsgBox::Info(report->ToText(), "Not everything could be read");

    const auto policy = lmx::TMapDocExternalResourcePolicy::erpEmbedIfPossible;
    const QStringList problems = lmx::TMapDocInspector(keepers).ProblemsOfSaving(&view, policy);
    if (problems.isEmpty() || lmx::TMsgBox::YesNo(problems.join('\n'), "Save all the same?"))
        lmx::TVerifiedMapDocWriter("ClimateMap", keepers).Write(fileName, &view, policy);
}

struct TTrackLayerPersist : lmx::IMapDocLayerPersist {
    void ReadLayer(lmx::TMapDocResourcePersist& resources, lmx::TBaseMapLayer* layer, lmx::TXmlNode data) override;
    void WriteLayer(lmx::TMapDocResourcePersist& resources, const lmx::TBaseMapLayer* layer, lmx::TXmlNode data,
                    lmx::TMapDocExternalResourcePolicy policy) override;
};

[[maybe_unused]] void TTrackLayerPersist::ReadLayer(lmx::TMapDocResourcePersist&, lmx::TBaseMapLayer*, lmx::TXmlNode) {}
[[maybe_unused]] void TTrackLayerPersist::WriteLayer(lmx::TMapDocResourcePersist&, const lmx::TBaseMapLayer*, lmx::TXmlNode,
                                                     lmx::TMapDocExternalResourcePolicy) {}

[[maybe_unused]] void Readme(const std::shared_ptr<lmx::IGradient>& gradient) {
    const auto manager = lmx::TLayerManagerFactory::GetObject();
    lmx::TMapViewControl view;
    view.SetLayerManager(manager);

    auto layer = std::make_unique<lmx::TIdrisiMapLayer>(manager);
    layer->TakeImage(lmx::TImageFactory::Load("sst_january.rst"));
    layer->SetColorCalc(lmx::TGradientColorCalculatorFactory::GetObject(layer->GetValueRange(), gradient));
    layer->SetOpacity(190);
    layer->Render();
    manager->GetLayers().Add(std::move(layer));     // the map appears
    view.show();
}

} // namespace
