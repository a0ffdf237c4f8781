#include <lmx/Dialogs/lmxPaletteSources.h>

#include <lmx/Colour/lmxColorPack.h>
#include <lmx/Colour/lmxColorPalette.h>
#include <lmx/Layers/lmxLayerManagerConfig.h>
#include <lmx/Runtime/lmxExceptions.h>

#include <QDir>
#include <QDirIterator>
#include <QTemporaryDir>

#include <algorithm>
#include <optional>
#include <tuple>

namespace lmx {

namespace {

const QString PaletteType = QStringLiteral("IdrisiPalFileName");

class TColorPackSource final : public IResBrowserSource {
public:
    explicit TColorPackSource(const QString& folder) : FFolder(folder) {}

    QString GetName() const override { return QStringLiteral("Color pack"); }
    std::vector<TResource> GetResources() override {
        std::vector<TResource> resources;
        for (const TColorScale& scale : TColorPack::GetScales())
            resources.push_back({scale.Name, PaletteType, TColorPack::FileNameIn(FFolder, scale), scale.Group});
        return resources;
    }
    std::vector<TColor32> GetColors(const TResource& resource) override {
        const TColorScale* scale = TColorPack::Find(resource.Name);
        return scale ? scale->Colors : std::vector<TColor32>();
    }

private:
    QString FFolder;
};

/// The files are written when somebody asks for them, again if they have gone.
class TColorPackProvider final : public IResBrowserSourceProvider {
public:
    std::shared_ptr<IResBrowserSource> GetSource() override {
        if (!FFolder || !FFolder->isValid())
            FFolder.emplace();
        if (!FFolder->isValid())
            throw EFileException(QDir::tempPath(), FFolder->errorString());
        TColorPack::SavePalettes(FFolder->path());
        return std::make_shared<TColorPackSource>(FFolder->path());
    }

private:
    std::optional<QTemporaryDir> FFolder;
};

class TPaletteFolderProvider final : public IResBrowserSourceProvider {
public:
    TPaletteFolderProvider(const QString& name, const QString& folder) : FName(name), FFolder(folder) {}
    std::shared_ptr<IResBrowserSource> GetSource() override {
        return std::make_shared<TPaletteFolderSource>(FName, FFolder);
    }

private:
    QString FName;
    QString FFolder;
};

/// Why a file gives no palette; nothing if it does.
QString ProblemOf(const QString& fileName) {
    try {
        TColorPalette palette;
        palette.Load(fileName);
        return palette.empty() ? fileName + QStringLiteral(": there are no colors") : QString();
    } catch (const EFileException& failure) {
        return failure.Message(); // which names the file
    } catch (const Exception& failure) {
        return fileName + QStringLiteral(": ") + failure.Message();
    }
}

} // namespace

TPaletteFolderSource::TPaletteFolderSource(const QString& name, const QString& folder)
    : FName(name),
      FFolder(QDir::cleanPath(folder)) {}

std::vector<TResource> TPaletteFolderSource::GetResources() {
    std::vector<TResource> resources;
    FNotes.clear();
    if (!QDir(FFolder).exists())
        FNotes.append(FFolder + QStringLiteral(": there is no such folder"));
    QDirIterator files(FFolder, {QStringLiteral("*.pal"), QStringLiteral("*.smp")}, QDir::Files,
                       QDirIterator::Subdirectories);
    for (int count = 0; files.hasNext(); ++count) {
        if (count == MostFiles) {
            FNotes.append(FFolder + QStringLiteral(": there are more palettes than can be listed"));
            break;
        }
        const QString fileName = files.next();
        if (const QString problem = ProblemOf(fileName); !problem.isEmpty()) {
            FNotes.append(problem);
            continue;
        }
        const QFileInfo file = files.fileInfo();
        const QString folder = QDir(FFolder).relativeFilePath(file.path());
        resources.push_back({file.completeBaseName().replace(u'_', u' '), PaletteType, fileName,
                             folder == QStringLiteral(".") ? QString() : folder});
    }
    std::sort(resources.begin(), resources.end(), [](const TResource& a, const TResource& b) {
        return std::tie(a.Folder, a.Name, a.FileName) < std::tie(b.Folder, b.Name, b.FileName);
    });
    FNotes.sort();
    return resources;
}

std::vector<TColor32> TPaletteFolderSource::GetColors(const TResource& resource) {
    TColorPalette palette;
    palette.Load(resource.FileName);
    return {palette.begin(), palette.end()};
}

void AddColorPack(ILayerManagerConfig& config) {
    auto& sources = config.PaletteSources();
    const bool isThere = std::any_of(sources.begin(), sources.end(), [](const auto& source) {
        return std::dynamic_pointer_cast<TColorPackProvider>(source) != nullptr;
    });
    if (!isThere)
        sources.push_back(std::make_shared<TColorPackProvider>());
}

void AddPaletteFolder(ILayerManagerConfig& config, const QString& name, const QString& folder) {
    config.PaletteSources().push_back(std::make_shared<TPaletteFolderProvider>(name, folder));
}

} // namespace lmx
