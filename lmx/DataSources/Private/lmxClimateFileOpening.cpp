#include <lmx/DataSources/Private/lmxClimateFileOpening.h>

#include <lmx/DataSources/Private/lmxBandSource.h>
#include <lmx/DataSources/Private/lmxClimateFileKind.h>
#include <lmx/DataSources/Private/lmxGdalSession.h>
#include <lmx/DataSources/Private/lmxHdf5Walk.h>
#include <lmx/DataSources/Private/lmxMultidimSource.h>
#include <lmx/DataSources/Private/lmxNetCDFHeader.h>
#include <lmx/DataSources/Private/lmxZarrZip.h>
#include <lmx/DataSources/lmxClimateExceptions.h>
#include <lmx/Runtime/lmxNumberText.h>

#include <QBuffer>
#include <QFile>
#include <QUrl>

#include <cpl_vsi.h>

#include <atomic>
#include <utility>

namespace lmx {

namespace {

bool IsRemote(const QString& fileName) {
    return fileName.startsWith(QStringLiteral("http://"), Qt::CaseInsensitive) ||
           fileName.startsWith(QStringLiteral("https://"), Qt::CaseInsensitive);
}

TGdalName RemoteName(const QString& fileName, const QStringList& allowedHosts) {
    const QUrl url(fileName, QUrl::StrictMode);
    if (!url.isValid() || !allowedHosts.contains(url.host(), Qt::CaseInsensitive))
        throw EClimateFile(fileName, QStringLiteral("lies on a host that this program does not allow to be read from"));
    const QByteArray name = "/vsicurl/" + url.toEncoded();
    VSICurlPartialClearCache(name.constData()); // what failed an hour ago is tried again
    return {name, "GTiff", false};
}

void OpenForReading(QFile& file, const QString& fileName) {
    if (!file.open(QIODevice::ReadOnly))
        throw EClimateFile(fileName, QStringLiteral("cannot be read"));
}

// Bytes under a name by which GDAL finds them.
class TMemoryFile {
public:
    explicit TMemoryFile(QByteArray bytes) : FBytes(std::move(bytes)) {
        static std::atomic<int> count = 0;
        FPath = QStringLiteral("/vsimem/lmx/") + IntToStr(++count);
        auto* const data = reinterpret_cast<GByte*>(FBytes.data());
        VSIFCloseL(VSIFileFromMemBuffer(FPath.toUtf8().constData(), data, vsi_l_offset(FBytes.size()), FALSE));
    }
    ~TMemoryFile() { VSIUnlink(FPath.toUtf8().constData()); }
    TMemoryFile(const TMemoryFile&) = delete;
    TMemoryFile& operator=(const TMemoryFile&) = delete;

    const QString& GetPath() const { return FPath; }

private:
    QByteArray FBytes;
    QString FPath;
};

// Keeps the bytes as long as the source.
class TMemorySource final : public IClimateSource {
public:
    TMemorySource(std::unique_ptr<TMemoryFile> file, std::unique_ptr<IClimateSource> source)
        : FFile(std::move(file)),
          FSource(std::move(source)) {}

    const std::vector<TSourceArray>& GetArrays() const override { return FSource->GetArrays(); }
    bool IsNetCdf() const override { return FSource->IsNetCdf(); }
    TClimateAttributes ReadFileAttributes() override { return FSource->ReadFileAttributes(); }
    TSourceAttributes ReadAttributes(std::size_t array) override { return FSource->ReadAttributes(array); }
    TRawSlice Read(std::size_t array, const TSourceWindow& window) override { return FSource->Read(array, window); }
    TRawSlice ReadMask(std::size_t array, const TSourceWindow& window) override {
        return FSource->ReadMask(array, window);
    }

private:
    std::unique_ptr<TMemoryFile> FFile;
    std::unique_ptr<IClimateSource> FSource; // goes before its bytes
};

} // namespace

std::unique_ptr<IClimateSource> OpenClimateBytes(const QByteArray& bytes, const QString& name) {
    QByteArray copy = bytes;
    QBuffer buffer(&copy);
    buffer.open(QIODevice::ReadOnly);
    const TClimateFileKind kind = ClimateFileKindOf(buffer);
    auto file = std::make_unique<TMemoryFile>(bytes);
    const auto open = [&]() -> std::unique_ptr<IClimateSource> {
        switch (kind) {
        case TClimateFileKind::fkNetCDF:
        case TClimateFileKind::fkNetCDF64:
            CheckNetCDFLength(buffer, name);
            return OpenMultidimSource(GdalNameOf({file->GetPath(), kind}), name);
        case TClimateFileKind::fkGrib:
            return OpenGribSource(GdalNameOf({file->GetPath(), kind}), ScanGrib(buffer, name), name);
        case TClimateFileKind::fkTiff:
            return OpenTiffSource(GdalNameOf({file->GetPath(), kind}), name);
        default:
            throw EClimateFile(name, QStringLiteral("is of a kind that is not read from memory"));
        }
    };
    auto source = open();
    return std::make_unique<TMemorySource>(std::move(file), std::move(source));
}

std::unique_ptr<IClimateSource> OpenClimateSource(const QString& fileName, const QStringList& allowedHosts) {
    if (IsRemote(fileName))
        return OpenTiffSource(RemoteName(fileName, allowedHosts), fileName);
    TLocalClimateFile local = FindLocalClimateFile(fileName);
    QFile file(local.Path);
    if (local.Kind == TClimateFileKind::fkZip) {
        OpenForReading(file, fileName);
        local.Inside = FindZarrInZip(file, fileName);
    }
    const TGdalName name = GdalNameOf(local);
    switch (local.Kind) {
    case TClimateFileKind::fkNetCDF:
    case TClimateFileKind::fkNetCDF64:
        OpenForReading(file, fileName);
        CheckNetCDFLength(file, fileName);
        break;
    case TClimateFileKind::fkHdf5:
        RunOnReader([&] { CheckHdf5(local.Path); });
        break;
    case TClimateFileKind::fkGrib:
        OpenForReading(file, fileName);
        return OpenGribSource(name, ScanGrib(file, fileName), fileName);
    case TClimateFileKind::fkTiff:
        return OpenTiffSource(name, fileName);
    case TClimateFileKind::fkZarrFolder:
    case TClimateFileKind::fkZip:
    case TClimateFileKind::fkUnknown:
        break;
    }
    return OpenMultidimSource(name, fileName);
}

TGdalName GdalNameOfTiff(const QString& fileName, const QStringList& allowedHosts) {
    if (IsRemote(fileName))
        return RemoteName(fileName, allowedHosts);
    const TLocalClimateFile local = FindLocalClimateFile(fileName);
    if (local.Kind != TClimateFileKind::fkTiff)
        throw EClimateFile(fileName, QStringLiteral("is no TIFF"));
    return GdalNameOf(local);
}

} // namespace lmx
