// A vector's header: the text of a documentation file, and the form stored in documents.

#include <lmx/Formats/Idrisi/lmxVectorHeader.h>
#include <lmx/Runtime/lmxExceptions.h>

#include <QBuffer>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

using namespace lmx;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    QByteArray input(reinterpret_cast<const char*>(bytes), static_cast<qsizetype>(size));
    const TVectorHeader header = TVectorHeader::Parse(input);
    QBuffer stored;
    stored.open(QIODevice::ReadWrite);
    header.SaveToStream(stored);
    stored.seek(0);
    TVectorHeader copy;
    copy.LoadFromStream(stored);
    if (copy.GetTitle() != header.GetTitle() || copy.GetObjectType() != header.GetObjectType())
        std::abort();
    try {
        QBuffer stream(&input);
        stream.open(QIODevice::ReadOnly);
        copy.LoadFromStream(stream);
    } catch (const EFileFormatException&) { // a refusal is a correct answer
    }
    return 0;
}
