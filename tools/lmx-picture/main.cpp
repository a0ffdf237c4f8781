// Paints a map document into a file, for scripts and batches: see UsageText.

#include <lmx/Layers/lmxLayerFactory.h>
#include <lmx/MapDoc/lmxMapDocLayerPersist.h>
#include <lmx/MapDoc/lmxMapDocLoadReport.h>
#include <lmx/Pictures/lmxMapPicture.h>
#include <lmx/Runtime/lmxCores.h>
#include <lmx/Runtime/lmxExceptions.h>

#include <QApplication>

#include <algorithm>
#include <exception>
#include <iostream>

#include "PictureArguments.h"
#include "PictureSteps.h"

namespace {

enum TExitCode { ecDone = 0, ecFailed = 1, ecWrongArguments = 2 };

void Tell(const QString& text) {
    std::cerr << "lmx-picture: " << text.toStdString() << '\n';
}

/// Whether the map tells less than the document holds.
bool LacksData(const lmx::TMapDocLoadReport& report) {
    return std::ranges::any_of(report.GetLostLayers(), [](const auto& lost) { return !lost.IsForeignDecoration; });
}

// The map of the document; nothing is painted that lacks a layer, unless it is a decoration or that is allowed.
bool Write(const TPictureArguments& arguments) {
    const auto makers = lmx::TLayerFactory::GetObject();
    lmx::TLayerFactory::PopulateDefault(makers);
    const auto keepers = lmx::TMapDocLayerPersistFactory::GetObject();
    lmx::TMapDocLayerPersistFactory::PopulateDefault(keepers);
    RegisterClimateLayers(makers, keepers);
    const auto report = std::make_shared<lmx::TMapDocLoadReport>();
    lmx::TMapPicture picture = lmx::TMapPicture::OfDocument(arguments.Document, makers, keepers, report);
    for (const QString& lost : report->ToText().split(u'\n', Qt::SkipEmptyParts))
        Tell(arguments.Document + ": " + lost);
    if (LacksData(*report) && !arguments.AllowsMissing) {
        Tell(QStringLiteral("nothing written; --allow-missing paints the map without"));
        return false;
    }
    picture.SetOptions(arguments.Options);
    if (arguments.Steps)
        SaveSteps(picture, arguments, Tell);
    else
        picture.Save(arguments.Picture);
    return true;
}

int Run(const TPictureArguments& arguments) {
    try {
        return Write(arguments) ? ecDone : ecFailed;
    } catch (const lmx::Exception& failure) {
        Tell(failure.Description());
    } catch (const std::exception& failure) {
        Tell(QString::fromUtf8(failure.what()));
    }
    return ecFailed;
}

} // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QStringList words;
    for (int i = 0; i < argc; ++i)
        words += QString::fromLocal8Bit(argv[i]);
    QStringList problems;
    const TPictureArguments arguments = TPictureArguments::Parse(words, problems);
    for (const QString& problem : problems)
        Tell(problem);
    if (!problems.isEmpty()) {
        std::cerr << "lmx-picture --help tells how to call it\n";
        return ecWrongArguments;
    }
    if (arguments.WantsHelp)
        std::cout << UsageText().toStdString();
    if (arguments.WantsVersion)
        std::cout << "lmx-picture " << LMX_PICTURE_VERSION << '\n';
    if (arguments.WantsHelp || arguments.WantsVersion)
        return ecDone;
    int noArguments = 1; // all of them are ours
    const QApplication application(noArguments, argv);
    lmx::TCores::SetCount(0); // all that the machine has
    return Run(arguments);
}
