// The directory of a zip of a Zarr store, as it is looked through before the store is opened.

#include <lmx/DataSources/Private/lmxZarrZip.h>
#include <lmx/Runtime/lmxExceptions.h>

#include <QBuffer>

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    QByteArray input(reinterpret_cast<const char*>(bytes), static_cast<qsizetype>(size));
    QBuffer device(&input);
    device.open(QIODevice::ReadOnly);
    try {
        lmx::FindZarrInZip(device, QStringLiteral("input"));
    } catch (const lmx::EFileException&) { // a correct answer
    }
    return 0;
}
