// What users wait for in the dialogs. A step of a dragged stop, in the properties of a layer on a screen of 3840 x
// 2160, is measured against the paint of the editor alone, and the pixels of other controls that it paints are counted.
// Apply on 4320 x 2160 cells, with the opacity left alone, is measured against the layer's own render of new colours.
// The dialog on 10,000 classes or colours of a palette comes up against the dialog on a screenful of them, and against
// the first paint of such a dialog that has been made, shown and laid out. After OK in the table of 100,000 pasted
// points, these join the layer against points that are added one by one to a layer that nobody listens to.

#include <benchmarks/Measuring.h>
#include <lmx/Colour/lmxBasicPaletteColorCalculator.h>
#include <lmx/Colour/lmxColorClassCalculator.h>
#include <lmx/Colour/lmxColorClassList.h>
#include <lmx/Colour/lmxColorKey.h>
#include <lmx/Colour/lmxColorPack.h>
#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/Controls/lmxMapViewInfoQueryListControl.h>
#include <lmx/Coordinates/wskWorldSystem.h>
#include <lmx/Dialogs/lmxAddMultipleInfoQueryPointDialog.h>
#include <lmx/Dialogs/lmxAddMultipleInfoQueryPointPasteDialog.h>
#include <lmx/Dialogs/lmxLayerPropertiesDialog.h>
#include <lmx/Formats/Idrisi/lmxIdrisiImages.h>
#include <lmx/Graphics/lmxGradient.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxInfoQueryPointLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Widgets/lmxClipboard.h>
#include <lmx/Widgets/lmxGradientEditor.h>

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QTimer>

#include <cstdio>
#include <memory>
#include <vector>

namespace {

using namespace lmx;
using bench::Sized;
using bench::TBestTime;

constexpr int Repetitions = bench::IsTiny ? 1 : 15;
constexpr int ColorCount = Sized(10'000);
constexpr int ScreenfulCount = 60;
constexpr int PointCount = Sized(100'000);
const QString DisplayPage = QStringLiteral("Raster display");

using TCalculator = std::shared_ptr<IBaseColorCalculator>;

TCalculator Gradient() {
    return TGradientColorCalculatorFactory::GetObject(0.0F, 100.0F,
                                                      TColorPack::Find(QStringLiteral("Rain"))->CreateGradient());
}

TCalculator Palette(int count) {
    std::vector<TColorKeyItem> items;
    for (int i = 0; i < count; ++i)
        items.emplace_back(QString(), 0xFF000000U | static_cast<TColor32>(i * 977));
    return TBasicPaletteColorCalculatorFactory::GetObject({0, 100}, items, false);
}

TCalculator Classes(int count) {
    const auto classes = TColorClassesFactory::GetObject();
    for (int i = 0; i < count; ++i)
        classes->GetClasses().Add(std::make_unique<TColorClass>(QStringLiteral("class"), static_cast<float>(i),
                                                                static_cast<float>(i + 1),
                                                                0xFF000000U | static_cast<TColor32>(i * 977)));
    return TColorClassCalculatorFactory::GetObject(classes);
}

std::unique_ptr<TIdrisiMapLayer> Raster(const std::shared_ptr<ILayerManager>& manager, int columns, int rows) {
    TImageHeader header;
    header.SetWidth(columns);
    header.SetHeight(rows);
    header.SetMinX(-180);
    header.SetMaxX(180);
    header.SetMinY(-90);
    header.SetMaxY(90);
    header.SetRefSystem(QStringLiteral("latlong"));
    auto image = std::make_unique<TRealImage>(QString(), header);
    for (int row = 1; row <= rows; ++row)
        for (int column = 1; column <= columns; ++column)
            image->SetCell(column, row, static_cast<float>((row + column) % 100));
    image->UpdateValueRange();
    auto layer = std::make_unique<TIdrisiMapLayer>(manager);
    layer->TakeImage(std::move(image));
    return layer;
}

std::unique_ptr<TLayerPropertiesDialog> Make(TIdrisiMapLayer& layer) {
    auto dialog = std::make_unique<TLayerPropertiesDialog>();
    layer.InitPropertiesDialog(dialog.get());
    dialog->SelectPage(DisplayPage);
    return dialog;
}

/// Made, shown and painted.
std::unique_ptr<TLayerPropertiesDialog> Open(TIdrisiMapLayer& layer) {
    auto dialog = Make(layer);
    dialog->show();
    QCoreApplication::processEvents();
    return dialog;
}

/// Counts the pixels that are painted of the other controls of a window.
class TPaintedBeside : public QObject {
public:
    explicit TPaintedBeside(const QWidget* widget) : FWidget(widget) { qApp->installEventFilter(this); }
    qint64 GetPixels() const { return FPixels; }

private:
    bool eventFilter(QObject* watched, QEvent* event) override {
        const auto* widget = qobject_cast<const QWidget*>(watched);
        if (event->type() == QEvent::Paint && widget && widget != FWidget && !widget->isAncestorOf(FWidget))
            for (const QRect& rect : static_cast<QPaintEvent*>(event)->region())
                FPixels += qint64{rect.width()} * rect.height();
        return false;
    }

    const QWidget* FWidget;
    qint64 FPixels = 0;
};

void Send(QWidget& to, QEvent::Type type, const QPointF& at) {
    QMouseEvent event(type, at, to.mapToGlobal(at), Qt::LeftButton, Qt::LeftButton, {});
    QCoreApplication::sendEvent(&to, &event);
    QCoreApplication::processEvents();
}

void DragAStop(const std::shared_ptr<ILayerManager>& manager) {
    const auto layer = Raster(manager, 4, 2);
    layer->SetColorCalc(Gradient());
    const auto dialog = Open(*layer);
    dialog->resize(bench::IsTiny ? QSize(800, 700) : QSize(3840, 2160));
    for (int i = 0; i < 6; ++i)
        QCoreApplication::processEvents();
    auto& editor = *dialog->findChild<TGradientEditor*>(QStringLiteral("GradEdit"));
    editor.SelectNextGrabber();
    editor.SelectNextGrabber();
    QPointF at = editor.GrabberRect(editor.GetSelected()).center();
    Send(editor, QEvent::MouseButtonPress, at);
    Send(editor, QEvent::MouseMove, at + QPointF(20, 0));
    TBestTime step;
    TBestTime paint;
    const TPaintedBeside beside(&editor);
    const int steps = 10 * Repetitions;
    for (int i = 0; i < steps; ++i) {
        at += QPointF(i % 2 == 0 ? 3 : -2, 0);
        step.Measure([&] { Send(editor, QEvent::MouseMove, at); });
        editor.update();
        paint.Measure([&] { editor.repaint(); });
    }
    const double area = static_cast<double>(editor.width()) * editor.height();
    std::printf("step of a dragged stop / paint of the editor alone: %.2f (%.1f ms a step)\n", step / paint,
                step.GetMilliseconds());
    std::printf("pixels of other controls painted in a step / pixels of the editor: %.3f\n",
                static_cast<double>(beside.GetPixels()) / steps / area);
}

void Apply(const std::shared_ptr<ILayerManager>& manager) {
    const auto layer = Raster(manager, Sized(4320), Sized(2160));
    layer->SetColorCalc(Gradient());
    layer->Render();
    const auto dialog = Open(*layer);
    TBestTime apply;
    TBestTime render;
    for (int i = 0; i < Repetitions; ++i) {
        const TCalculator colors = Gradient();
        render.Measure([&] { layer->SetColorCalc(colors); });
        apply.Measure([&] { dialog->ApplyChanges(); });
    }
    std::printf("Apply on %d x %d / the layer's own render: %.3f\n", Sized(4320), Sized(2160), apply / render);
}

void OpenOn(const std::shared_ptr<ILayerManager>& manager, const char* what, TCalculator (*colors)(int)) {
    const auto many = Raster(manager, 4, 2);
    const auto few = Raster(manager, 4, 2);
    many->SetColorCalc(colors(ColorCount));
    few->SetColorCalc(colors(ScreenfulCount));
    TBestTime openMany;
    TBestTime openFew;
    TBestTime make;
    TBestTime show;
    TBestTime paint;
    for (int i = 0; i < 10 * Repetitions; ++i) { // each takes so little that others on the machine spoil many
        std::unique_ptr<TLayerPropertiesDialog> dialog;
        openFew.Measure([&] { dialog = Open(*few); });
        dialog.reset();
        openMany.Measure([&] { dialog = Open(*many); });
        dialog.reset();
        make.Measure([&] { dialog = Make(*many); });
        show.Measure([&] {
            dialog->show();
            QCoreApplication::sendPostedEvents(); // layouts
        });
        paint.Measure([&] { dialog->grab(); });
    }
    std::printf(
        "opening on %d %s / on %d: %.2f; / its first paint: %.2f (%.2f ms: made %.2f, shown %.2f, painted %.2f)\n",
        ColorCount, what, ScreenfulCount, openMany / openFew, openMany / paint, openMany.GetMilliseconds(),
        make.GetMilliseconds(), show.GetMilliseconds(), paint.GetMilliseconds());
}

/// A clipboard with rows of points.
class TPoints final : public IClipboardService {
public:
    TPoints() {
        FText = QStringLiteral("x,y,name\n");
        for (int i = 0; i < PointCount; ++i)
            FText += QStringLiteral("%1.5,%2.25,place\n").arg(i % 180).arg(i % 90);
    }
    QString GetAsText() const override { return FText; }
    void SetAsText(const QString&) override {}
    void SetData(const QString&, const QByteArray&) override {}

private:
    QString FText;
};

void PasteInto(QWidget& many) {
    QTimer::singleShot(0, [] {
        QWidget* paste = QApplication::activeModalWidget();
        paste->findChild<QComboBox*>(QStringLiteral("cbX"))->setCurrentIndex(1);
        paste->findChild<QComboBox*>(QStringLiteral("cbY"))->setCurrentIndex(2);
        paste->findChild<QComboBox*>(QStringLiteral("cbLabel"))->setCurrentIndex(3);
        paste->findChild<QAbstractButton*>(QStringLiteral("btnOK"))->click();
    });
    many.findChild<QAbstractButton*>(QStringLiteral("Button4"))->click();
}

void AddPastedPoints(const std::shared_ptr<ILayerManager>& manager) {
    const auto before = TClipboard::SetService(std::make_shared<TPoints>());
    TBestTime added;
    TBestTime bare;
    TBestTime pasted;
    for (int i = 0; i < std::min(Repetitions, 3); ++i) {
        TInfoQueryPointLayer layer(manager);
        TMapViewInfoQueryListControl table;
        table.SetLayerManager(manager);
        table.SetIQPLayer(&layer);
        table.SetCursorMapPt({1, 1}, TLatLonWorldSystemFactory::GetObject());
        table.resize(800, 400);
        table.show();
        QCoreApplication::processEvents();
        bench::TClock::time_point confirmed;
        QTimer::singleShot(0, [&] {
            QWidget* many = QApplication::activeModalWidget();
            pasted.Measure([&] { PasteInto(*many); });
            confirmed = bench::TClock::now();
            many->findChild<QAbstractButton*>(QStringLiteral("btnOK"))->click();
        });
        table.AddMultiple_Click();
        QCoreApplication::processEvents();
        const double milliseconds = bench::MillisecondsSince(confirmed);
        std::printf("  %d points joined after OK in %.0f ms\n", static_cast<int>(layer.GetPoints().Count()),
                    milliseconds);
        added.Take(milliseconds);
        bare.Measure([&] {
            TInfoQueryPointLayer alone(manager);
            for (int point = 0; point < PointCount; ++point)
                alone.GetPoints().Add(
                    std::make_unique<TInfoQueryPoint>(&alone, TMapPoint(point % 180, point % 90), 0xFFFFA000));
        });
    }
    std::printf("adding %d pasted points after OK / to a layer alone: %.2f; the paste itself took %.0f ms\n",
                PointCount, added / bare, pasted.GetMilliseconds());
    TClipboard::SetService(before);
}

} // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    const auto manager = TLayerManagerFactory::GetObject();
    DragAStop(manager);
    Apply(manager);
    OpenOn(manager, "classes", Classes);
    OpenOn(manager, "colours of a palette", Palette);
    AddPastedPoints(manager);
    return 0;
}
