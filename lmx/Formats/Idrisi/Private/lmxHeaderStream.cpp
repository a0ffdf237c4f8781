#include <lmx/Formats/Idrisi/Private/lmxHeaderStream.h>

#include <lmx/Runtime/Private/lmxMemory.h>
#include <lmx/Runtime/lmxExceptions.h>

#include <QIODevice>

#include <algorithm>

namespace lmx {

namespace {

constexpr int MarkSize = 4;
constexpr quint32 Version = 1;

void Configure(QDataStream& stream) {
    stream.setVersion(QDataStream::Qt_6_0);
    stream.setByteOrder(QDataStream::LittleEndian);
    stream.setFloatingPointPrecision(QDataStream::SinglePrecision);
}

} // namespace

THeaderEntryReader::THeaderEntryReader(const QByteArray& entries) : FStream(entries) {
    Configure(FStream);
}

THeaderEntryWriter::THeaderEntryWriter() : FStream(&FBytes, QIODevice::WriteOnly) {
    Configure(FStream);
}

QByteArray ReadHeaderEntries(QIODevice& device, const char (&mark)[5], const QString& name) {
    QDataStream stream(&device);
    Configure(stream);
    char found[MarkSize] = {};
    quint32 version = 0;
    quint32 length = 0;
    quint16 checksum = 0;
    if (stream.readRawData(found, MarkSize) != MarkSize || !std::equal(found, found + MarkSize, mark))
        throw EFileFormatException(name, QStringLiteral("not in the stored form"));
    stream >> version >> length;
    if (stream.status() == QDataStream::Ok && version != Version)
        throw EFileFormatException(name, QStringLiteral("stored by a newer version"));
    if (stream.status() != QDataStream::Ok || device.bytesAvailable() < qint64{length} + qint64{sizeof checksum})
        throw EFileFormatException(name, QStringLiteral("cut short"));
    QByteArray entries = WithinMemory(name, [&] { return device.read(length); });
    stream >> checksum;
    if (stream.status() != QDataStream::Ok || entries.size() != qsizetype{length} || checksum != qChecksum(entries))
        throw EFileFormatException(name, QStringLiteral("damaged"));
    return entries;
}

void WriteHeaderEntries(QIODevice& device, const char (&mark)[5], const QString& name, const QByteArray& entries) {
    QDataStream out(&device);
    Configure(out);
    out.writeRawData(mark, MarkSize);
    out << Version << static_cast<quint32>(entries.size());
    out.writeRawData(entries.constData(), static_cast<int>(entries.size()));
    out << qChecksum(entries);
    if (out.status() != QDataStream::Ok)
        throw EFileException(name, QStringLiteral("cannot be written: ") + device.errorString());
}

} // namespace lmx
