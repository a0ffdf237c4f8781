// The full example host: real climate data on an interactive map. examples/MinimalHost is the one to read first.
//   ClimateViewer                    opens the window
//   ClimateViewer FILE...            opens the files too
//   ClimateViewer --model            adds a model's field on Gaussian axes
//   ClimateViewer --picture map.png  renders the window into a file, without a display; fails if a file could not be
//   opened

#include <lmx/Runtime/lmxCores.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Widgets/lmxMsgBox.h>

#include <QApplication>
#include <QCommandLineParser>

#include <iostream>
#include <memory>

#include "Overlays.h"
#include "SampleMap.h"
#include "ViewerWindow.h"

namespace {

// The platform is chosen before the application exists.
void ChoosePlatform(int argc, char** argv) {
    for (int i = 1; i < argc; ++i)
        if (qstrcmp(argv[i], "--picture") == 0 && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
            qputenv("QT_QPA_PLATFORM", "offscreen");
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

int Run(const QApplication& application) {
    QCommandLineParser options;
    const QCommandLineOption picture("picture", "Render the window into this file and end.", "file");
    const QCommandLineOption data("data", "Folder of the sample data.", "folder", CLIMATE_VIEWER_DATA);
    options.addOption(picture);
    const QCommandLineOption model("model", "Add a model's field, gridded from its Gaussian axes.");
    options.addOption(data);
    options.addOption(model);
    options.addPositionalArgument("files", "Idrisi images, ASCII grids, shape files and vectors to open.",
                                  "[files...]");
    options.addHelpOption();
    options.process(application);

    lmx::TCores::SetCount(0); // all that the machine has
    const auto messages = std::make_shared<TerminalMessages>();
    if (options.isSet(picture))
        lmx::TMsgBox::SetService(messages);
    TViewerWindow window(options.value(data));
    window.resize(1280, 760);
    AddSampleLayers(window.GetLayerManager(), options.value(data));
    AddSampleOverlays(window.GetLayerManager(), options.value(data));
    window.AddPlaces(options.value(data) + "/places.csv");
    QApplication::processEvents(); // the panel makes its rows
    window.show();
    QApplication::processEvents(); // the window takes its final layout
    window.ShowWholeWorld();
    if (options.isSet(model))
        window.AddModelField();
    for (const QString& fileName : options.positionalArguments())
        window.OpenFile(fileName);
    QApplication::processEvents(); // the panel makes the rows of opened files,
    QApplication::processEvents(); // and lays them out
    if (!options.isSet(picture))
        return QApplication::exec();
    const auto* indicator = window.findChild<QLabel*>("DrawingIndicator");
    do { // a paint shows what is finished and starts what is not
        window.grab();
        QApplication::processEvents();
    } while (window.IsBusy() || !indicator->text().isEmpty());
    if (window.grab().save(options.value(picture)))
        return messages->HasErrors() ? 1 : 0;
    std::cerr << "cannot write " << options.value(picture).toStdString() << '\n';
    return 1;
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
