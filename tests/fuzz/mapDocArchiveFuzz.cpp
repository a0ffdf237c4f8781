// The archive of a map document: each entry is found and read, or refused.

#include <lmx/MapDoc/Private/lmxZipReader.h>
#include <lmx/Runtime/lmxExceptions.h>

#include <QBuffer>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

using namespace lmx;

namespace {

constexpr std::uint64_t MostBytes = 16 << 20;

void ReadEntry(const TZipReader& archive, qsizetype index) {
    const TZipEntry& entry = archive.GetEntries()[static_cast<std::size_t>(index)];
    try {
        const QByteArray content = archive.Read(index, MostBytes);
        if (static_cast<std::uint64_t>(content.size()) != entry.Size)
            std::abort();
    } catch (const EFileException&) { // a refusal is a correct answer
    }
    const QString name = QString::fromUtf8(entry.Name);
    if (name.toUtf8() == entry.Name && archive.IndexOf(name) < 0)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    QByteArray input(reinterpret_cast<const char*>(bytes), static_cast<qsizetype>(size));
    QBuffer device(&input);
    device.open(QIODevice::ReadOnly);
    try {
        const TZipReader archive(device, QStringLiteral("input"));
        for (qsizetype index = 0; index < static_cast<qsizetype>(archive.GetEntries().size()); ++index)
            ReadEntry(archive, index);
    } catch (const EFileException&) { // a refusal is a correct answer
    }
    return 0;
}
