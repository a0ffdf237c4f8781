#include <lmx/MapDoc/lmxMapDocRelinker.h>

#include <lmx/MapDoc/Private/lmxManifest.h>
#include <lmx/MapDoc/Private/lmxMapDocResources.h>
#include <lmx/MapDoc/Private/lmxMapDocTexts.h>
#include <lmx/MapDoc/Private/lmxReplacedDocument.h>
#include <lmx/MapDoc/Private/lmxZipReader.h>
#include <lmx/MapDoc/Private/lmxZipWriter.h>
#include <lmx/MapDoc/lmxMapDocResourcePersist.h>
#include <lmx/Runtime/lmxNumberText.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <map>
#include <set>

namespace lmx {

namespace {

using TNewPath = std::function<QString(const QString& path)>;

void RelinkLayers(TXmlNode list, const TNewPath& newPath) {
    for (const TXmlNode layer : list.GetChildren()) {
        const TXmlNode data = layer.Child(Manifest::Data);
        TXmlNode fileName = data.Child(FileName);
        if (layer.GetName() == Manifest::Layer && data.Child(Resource).GetText() == Linked && !fileName.IsEmpty())
            fileName.SetText(newPath(fileName.GetText()));
    }
}

/// The files of the folder that go by the name of `path`, with whatever suffix: the documentation of an image, the
/// table and the projection of a shape file.
QFileInfoList FilesOf(const QString& path) {
    const QFileInfo file(path);
    QFileInfoList files;
    for (const QFileInfo& other : file.absoluteDir().entryInfoList(QDir::Files, QDir::Name))
        if (other.completeBaseName() == file.completeBaseName())
            files += other;
    return files;
}

/// Copies what documents link, each file once.
class TPackedFiles {
public:
    /// `document` is the name that the document has in the folder.
    TPackedFiles(const QString& folder, const QString& document) : FFolder(folder), FDocument(document.toLower()) {}

    QString Pack(const QString& path) {
        if (!IsRegularFile(path))
            return path;
        const QFileInfo file(path);
        const QString origin = QDir::cleanPath(file.absolutePath()) + u'/' + file.completeBaseName();
        auto known = FNames.find(origin);
        if (known == FNames.end()) {
            known = FNames.emplace(origin, FreeName(file)).first;
            CopyAll(path, known->second);
        }
        return FFolder.absoluteFilePath(NameOf(known->second, file.suffix()));
    }

private:
    static QString NameOf(const QString& name, const QString& suffix) {
        return suffix.isEmpty() ? name : name + u'.' + suffix;
    }
    bool IsDocument(const QString& name) const { return name.toLower() == FDocument; }
    QString FreeName(const QFileInfo& file) {
        const QString name = file.completeBaseName();
        QString free = name;
        for (int number = 2; IsDocument(NameOf(free, file.suffix())) || !FTaken.insert(free.toLower()).second; ++number)
            free = name + QStringLiteral(" (") + IntToStr(number) + u')';
        return free;
    }
    // The document may lie among them, or another that is called so.
    void CopyAll(const QString& path, const QString& name) const {
        for (const QFileInfo& present : FilesOf(path))
            if (const QString copy = NameOf(name, present.suffix()); !IsDocument(copy))
                Copy(present, FFolder.absoluteFilePath(copy));
    }
    static void Copy(const QFileInfo& from, const QString& to) {
        QFile file(from.absoluteFilePath());
        if (!file.copy(to)) // which never replaces a file
            throw EFileException(to, QStringLiteral("cannot be written: ") + file.errorString());
    }

    const QDir FFolder;
    const QString FDocument;           ///< in small letters
    std::map<QString, QString> FNames; ///< of the copies, by folder and name of the originals
    std::set<QString> FTaken;          ///< in small letters: not every file system tells them apart
};

void OpenDocument(QFile& file) {
    if (file.exists())
        CheckRegularFile(file.fileName());
    if (!file.open(QIODevice::ReadOnly))
        throw EFileException(file.fileName(), QStringLiteral("cannot be read: ") + file.errorString());
}

} // namespace

void TMapDocRelinker::Relink(const QString& source, const QString& target, const TNewPath& newPath) const {
    QFile file(source); // opened once: the manifest and the other entries are those of one document
    OpenDocument(file);
    const TMapDocResourcePersist resources(file, source, TMapDocPersistMode::pmRead);
    const TXmlDocument document = ReadManifest(resources, FLimits.ManifestBytes, FLimits.Depth);
    for (const QString& list : {Manifest::Layers, Manifest::SpecialLayers})
        RelinkLayers(document.GetRoot().Child(list), newPath);
    const TZipReader archive(file, source);
    const qsizetype manifest = archive.IndexOf(TMapDocResourcePersist::FormatName({}, Manifest::EntryName));
    TReplacedDocument replaced(target);
    {
        TZipWriter writer(replaced.GetDevice(), target);
        for (qsizetype index = 0; index < static_cast<qsizetype>(archive.GetEntries().size()); ++index) {
            const QString name = QString::fromUtf8(archive.GetEntries()[static_cast<std::size_t>(index)].Name);
            if (archive.IndexOf(name) != manifest) // nor any that it hides
                writer.Add(name, archive.Read(index, FLimits.EntryBytes));
        }
        writer.Add(TMapDocResourcePersist::FormatName({}, Manifest::EntryName), document.ToBytes());
        writer.Finish();
    }
    replaced.Sync();
    replaced.Commit();
}

void TMapDocRelinker::MoveTo(const QString& source, const QString& target, const QString& folder) const {
    const QDir newFolder(folder);
    Relink(source, target, [&](const QString& path) {
        const QString name = QString(path).replace(u'\\', u'/').section(u'/', -1); // from other systems, too
        return name.isEmpty() ? path : newFolder.filePath(name);
    });
}

QString TMapDocRelinker::Pack(const QString& source, const QString& folder) const {
    QString target = QDir(folder).absoluteFilePath(QFileInfo(source).fileName());
    if (QFileInfo::exists(target))
        throw EFileException(target, QStringLiteral("cannot be written: it is there already"));
    TPackedFiles files(folder, QFileInfo(source).fileName());
    Relink(source, target, [&](const QString& path) { return files.Pack(path); });
    return target;
}

} // namespace lmx
