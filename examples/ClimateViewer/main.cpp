// The full example host: real climate data on an interactive map. examples/MinimalHost is the one to read first.
//   ClimateViewer                    opens the window
//   ClimateViewer FILE...            opens the files too
//   ClimateViewer --model            adds a model's field on Gaussian axes
//   ClimateViewer --bare FILE...     opens them over the coasts alone, without the sample map
//   ClimateViewer FILE --variable NAME --step N
//                                    opens this variable of a climate file at this step, without a question
//   ClimateViewer --picture map.png  renders the window into a file, without a display; fails if a file could not be
//   opened
//   ClimateViewer --sheet map.png --title TITLE
//                                    writes the map of the whole world with title, legends, scale and time, for print
//   ClimateViewer --picture map.png --document map.lmx
//                                    also keeps the map as a document, opens it in a fresh window, and fails if that
//                                    does not show the same

#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Runtime/lmxCores.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Widgets/lmxMsgBox.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QImage>
#include <QLabel>

#include <iostream>
#include <memory>

#include "ClimateFiles.h"
#include "DocumentActions.h"
#include "Overlays.h"
#include "PictureExport.h"
#include "SampleMap.h"
#include "ViewerWindow.h"

namespace {

// The platform is chosen before the application exists.
void ChoosePlatform(int argc, char** argv) {
    for (int i = 1; i < argc; ++i)
        if ((qstrcmp(argv[i], "--picture") == 0 || qstrcmp(argv[i], "--sheet") == 0) &&
            qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
            qputenv("QT_QPA_PLATFORM", "offscreen");
}

// What is ready is shown by a paint, which starts what is not: so all is there when a paint starts nothing more.
void Settle(TViewerWindow& window) {
    const auto* indicator = window.findChild<QLabel*>("DrawingIndicator");
    for (int idlePaints = 0; idlePaints < 2;) {
        window.grab();
        QApplication::processEvents();
        idlePaints = window.IsBusy() || !indicator->text().isEmpty() ? 0 : idlePaints + 1;
    }
}

QImage MapOf(TViewerWindow& window) {
    window.GetView()->SetShowFocusedBorder(false); // one of two windows has the keyboard
    Settle(window);
    return window.GetView()->grab().toImage();
}

/// Whether the window's map comes back from a document pixel by pixel.
bool ComesBack(TViewerWindow& window, const QString& document) {
    window.GetDocuments()->GetDocument().Save(document);
    TViewerWindow fresh;
    fresh.GetView()->setFixedSize(window.GetView()->size());
    fresh.show();
    QApplication::processEvents(); // the window takes its final layout
    fresh.OpenFile(document);
    return MapOf(fresh) == MapOf(window);
}

// Messages on the terminal: without a display nobody would ever close a box.
class TerminalMessages final : public lmx::IMsgBoxService {
public:
    bool HasErrors() const { return FHasErrors; }

    void Error(const QString& text, const QString&, QWidget*) override {
        ShowMessage(text);
        FHasErrors = true;
    }
    void Info(const QString& text, const QString&, QWidget*) override { ShowMessage(text); }
    bool YesNo(const QString& text, const QString&, QWidget*) override {
        ShowMessage(text);
        return false;
    }
    void ShowMessage(const QString& text) override { std::cerr << text.toStdString() << '\n'; }

private:
    bool FHasErrors = false;
};

void AddSampleMap(TViewerWindow& window, const QString& data) {
    AddSampleLayers(window.GetLayerManager(), data);
    AddSampleOverlays(window.GetLayerManager(), data);
    window.AddPlaces(data + "/places.csv");
}

int Run(const QApplication& application) {
    QCommandLineParser options;
    const QCommandLineOption picture("picture", "Render the window into this file and end.", "file");
    const QCommandLineOption data("data", "Folder of the sample data.", "folder", CLIMATE_VIEWER_DATA);
    options.addOption(picture);
    const QCommandLineOption document("document", "Keep the map as this document, too.", "file");
    options.addOption(document);
    const QCommandLineOption model("model", "Add a model's field, gridded from its Gaussian axes.");
    options.addOption(data);
    options.addOption(model);
    const QCommandLineOption bare("bare", "Begin with the coasts alone instead of the sample map.");
    options.addOption(bare);
    const QCommandLineOption sheet("sheet", "Write a map of the whole world, for print, into this file and end.",
                                   "file");
    options.addOption(sheet);
    const QCommandLineOption title("title", "Title of the map for print.", "text");
    options.addOption(title);
    const QCommandLineOption variable("variable", "Open this variable of climate files.", "name");
    const QCommandLineOption step("step", "Open climate files at this step, counted from 0.", "number", "0");
    options.addOption(variable);
    options.addOption(step);
    options.addPositionalArgument("files", "Map documents, rasters, shape files, vectors and climate files to open.",
                                  "[files...]");
    options.addHelpOption();
    options.process(application);

    lmx::TCores::SetCount(0); // all that the machine has
    const auto messages = std::make_shared<TerminalMessages>();
    const bool ends = options.isSet(picture) || options.isSet(sheet);
    if (ends)
        lmx::TMsgBox::SetService(messages);
    TViewerWindow window;
    window.resize(1280, 760);
    if (options.isSet(bare))
        AddSampleCoasts(window.GetLayerManager(), options.value(data));
    else
        AddSampleMap(window, options.value(data));
    QApplication::processEvents(); // the panel makes its rows
    window.show();
    QApplication::processEvents(); // the window takes its final layout
    if (!options.isSet(bare))
        ComposeSampleMap(*window.GetView());
    window.GetDocuments()->GetDocument().MarkUnchanged();
    if (options.isSet(model))
        window.AddModelField();
    if (ends || options.isSet(variable) || options.isSet(step))
        window.GetClimateFiles().SetChoice({options.value(variable), options.value(step).toInt()});
    for (const QString& fileName : options.positionalArguments())
        window.OpenFile(fileName);
    QApplication::processEvents(); // the panel makes the rows of opened files,
    QApplication::processEvents(); // and lays them out
    if (!ends)
        return QApplication::exec();
    Settle(window);
    if (options.isSet(sheet))
        SaveSheet(*window.GetView(), options.value(title), window.GetClimateFiles().GetTimeCaption(),
                  options.value(sheet));
    if (options.isSet(picture) && !window.grab().save(options.value(picture))) {
        std::cerr << "cannot write " << options.value(picture).toStdString() << '\n';
        return 1;
    }
    if (options.isSet(document) && !ComesBack(window, options.value(document))) {
        std::cerr << options.value(document).toStdString() << " does not show the same map\n";
        return 1;
    }
    return messages->HasErrors() ? 1 : 0;
}

} // namespace

int main(int argc, char** argv) {
    ChoosePlatform(argc, argv);
    const QApplication application(argc, argv);
    try {
        return Run(application);
    } catch (const lmx::Exception& failure) {
        std::cerr << failure.Message().toStdString() << '\n';
        return 1;
    }
}
