#include <lmx/Runtime/Private/lmxReplacementFile.h>

#include <lmx/Runtime/lmxExceptions.h>

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QTemporaryFile>

#include <utility>

namespace lmx {

namespace {

constexpr qint64 BlockSize = 256 * 1024;

} // namespace

bool WriteAll(QIODevice& device, QByteArrayView content) {
    while (!content.isEmpty()) {
        const qint64 taken = device.write(content.data(), content.size());
        if (taken <= 0)
            return false;
        content = content.sliced(taken);
    }
    return true;
}

TReplacementFile::TReplacementFile(const QString& fileName) : FFileName(fileName) {
    const QFileInfo present(fileName);
    const bool isReplaceable = !present.exists() || present.isFile() || present.isDir();
    if (isReplaceable)
        OpenBeside();
    else
        OpenElsewhere();
}

// A folder that refuses the new file need not refuse that its old one is written.
void TReplacementFile::OpenBeside() {
    FFile = std::make_unique<QSaveFile>(FFileName);
    if (FFile->open(QIODevice::WriteOnly))
        return;
    const QFileInfo present(FFileName);
    Check(*FFile, present.isFile() && present.isWritable());
    OpenElsewhere();
}

void TReplacementFile::OpenElsewhere() {
    auto file = std::make_unique<QTemporaryFile>();
    Check(*file, file->open());
    FFile = std::move(file);
    FIsBeside = false;
}

void TReplacementFile::Write(const QByteArray& content) {
    Check(*FFile, WriteAll(*FFile, content));
}

void TReplacementFile::Flush() {
    Check(*FFile,
          FFile->flush() || FFile->flush()); // the first may write a part, and the second tells why it ends there
}

// QSaveFile::commit writes what its buffer still holds and takes no notice if that fails.
void TReplacementFile::Commit() {
    Flush();
    if (FIsBeside)
        Check(*FFile, static_cast<QSaveFile&>(*FFile).commit());
    else
        WriteInto();
}

void TReplacementFile::WriteInto() {
    QFile target(FFileName);
    Check(target, target.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    Check(*FFile, FFile->seek(0));
    for (QByteArray block = FFile->read(BlockSize); !block.isEmpty(); block = FFile->read(BlockSize))
        Check(target, WriteAll(target, block));
    Check(*FFile, FFile->error() == QFileDevice::NoError);
}

void TReplacementFile::Check(const QFileDevice& file, bool succeeded) const {
    if (!succeeded)
        throw EFileException(FFileName, QStringLiteral("cannot be written: ") + file.errorString());
}

} // namespace lmx
