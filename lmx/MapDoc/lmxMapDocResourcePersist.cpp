#include <lmx/MapDoc/lmxMapDocResourcePersist.h>

#include <lmx/MapDoc/Private/lmxZipReader.h>
#include <lmx/MapDoc/Private/lmxZipWriter.h>

#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>

#include <algorithm>

namespace lmx {

namespace {

// A pipe would be waited for, and a device may never end.
std::unique_ptr<QIODevice> OpenFile(const QString& fileName, TMapDocPersistMode mode) {
    const bool isRead = mode == TMapDocPersistMode::pmRead;
    const QString problem = isRead ? QStringLiteral("cannot be read: ") : QStringLiteral("cannot be written: ");
    const QFileInfo present(fileName);
    if (present.exists() && !present.isFile())
        throw EFileException(fileName, problem + QStringLiteral("no regular file"));
    auto file = std::make_unique<QFile>(fileName);
    if (!file->open(isRead ? QIODevice::ReadOnly : QIODevice::WriteOnly | QIODevice::Truncate))
        throw EFileException(fileName, problem + file->errorString());
    return file;
}

} // namespace

TMapDocResourcePersist::TMapDocResourcePersist(const QString& fileName, TMapDocPersistMode mode)
    : FFileName(fileName),
      FFile(OpenFile(fileName, mode)) {
    Open(*FFile, mode);
}

TMapDocResourcePersist::TMapDocResourcePersist(QIODevice& device, const QString& name, TMapDocPersistMode mode)
    : FFileName(name) {
    Open(device, mode);
}

TMapDocResourcePersist::~TMapDocResourcePersist() = default;

void TMapDocResourcePersist::Open(QIODevice& device, TMapDocPersistMode mode) {
    if (mode == TMapDocPersistMode::pmRead)
        FReader = std::make_unique<TZipReader>(device, FFileName);
    else
        FWriter = std::make_unique<TZipWriter>(device, FFileName);
}

QString TMapDocResourcePersist::FormatName(const QString& folder, const QString& name) {
    return (folder.isEmpty() ? QStringLiteral("_meta") : folder) + u'\\' + name;
}

const TZipReader& TMapDocResourcePersist::Reader() const {
    if (!FReader)
        throw EInvalidOperation(QStringLiteral("Archive is not open for reading"));
    return *FReader;
}

TZipWriter& TMapDocResourcePersist::Writer() {
    if (!FWriter)
        throw EInvalidOperation(QStringLiteral("Archive is not open for writing"));
    return *FWriter;
}

bool TMapDocResourcePersist::Has(const QString& folder, const QString& name) const {
    return Reader().IndexOf(FormatName(folder, name)) >= 0;
}

std::uint64_t TMapDocResourcePersist::GetSize(const QString& folder, const QString& name) const {
    const qsizetype index = Reader().IndexOf(FormatName(folder, name));
    return index < 0 ? 0 : Reader().GetEntries()[static_cast<std::size_t>(index)].Size;
}

QByteArray TMapDocResourcePersist::Read(const QString& folder, const QString& name, std::uint64_t mostBytes) const {
    const qsizetype index = Reader().IndexOf(FormatName(folder, name));
    if (index < 0)
        throw EMapDocResourceNotFoundException();
    return Reader().Read(index, std::min(mostBytes, FMostBytes));
}

QString TMapDocResourcePersist::ReadText(const QString& folder, const QString& name, std::uint64_t mostBytes) const {
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QByteArray bytes = Read(folder, name, mostBytes);
    QString text = decoder(bytes);
    if (decoder.hasError())
        throw EFileFormatException(FFileName, QStringLiteral("entry \"") + FormatName(folder, name) +
                                                  QStringLiteral("\" is no text in UTF-8"));
    return text;
}

void TMapDocResourcePersist::Write(const QString& folder, const QString& name, const QByteArray& bytes) {
    Writer().Add(FormatName(folder, name), bytes);
}

void TMapDocResourcePersist::WriteText(const QString& folder, const QString& name, const QString& text) {
    Write(folder, name, text.toUtf8());
}

void TMapDocResourcePersist::Finish() {
    if (FWriter)
        FWriter->Finish();
}

} // namespace lmx
