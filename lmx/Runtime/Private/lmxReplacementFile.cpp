#include <lmx/Runtime/Private/lmxReplacementFile.h>

#include <lmx/Runtime/lmxExceptions.h>

namespace lmx {

bool WriteAll(QIODevice& device, QByteArrayView content) {
    while (!content.isEmpty()) {
        const qint64 taken = device.write(content.data(), content.size());
        if (taken <= 0)
            return false;
        content = content.sliced(taken);
    }
    return true;
}

TReplacementFile::TReplacementFile(const QString& fileName) : FFile(fileName) {
    Check(FFile.open(QIODevice::WriteOnly));
}

void TReplacementFile::Write(const QByteArray& content) {
    Check(WriteAll(FFile, content));
}

void TReplacementFile::Flush() {
    Check(FFile.flush() || FFile.flush()); // the first may write a part, and the second tells why it ends there
}

// QSaveFile::commit writes what its buffer still holds and takes no notice if that fails.
void TReplacementFile::Commit() {
    Flush();
    Check(FFile.commit());
}

void TReplacementFile::Check(bool succeeded) const {
    if (!succeeded)
        throw EFileException(FFile.fileName(), QStringLiteral("cannot be written: ") + FFile.errorString());
}

} // namespace lmx
