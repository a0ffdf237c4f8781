// An image header: the text of a documentation file, and the form stored in documents. What is read must be written in
// a form that reads back as the same.

#include <lmx/Formats/Idrisi/Private/lmxImageDocumentation.h>
#include <lmx/Runtime/lmxExceptions.h>

#include <QBuffer>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

using namespace lmx;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    QByteArray input(reinterpret_cast<const char*>(bytes), static_cast<qsizetype>(size));
    try {
        for (const auto form : {TDocumentationForm::dfWindows, TDocumentationForm::dfDos}) {
            const TImageHeader header = ParseImageDocumentation(input, QStringLiteral("input")).Header;
            const QByteArray text = FormatImageDocumentation(header, form);
            if (FormatImageDocumentation(ParseImageDocumentation(text, QStringLiteral("written")).Header, form) != text)
                std::abort();
        }
    } catch (const EFileFormatException& refusal) {
        if (refusal.FileName() == QStringLiteral("written"))
            std::abort();
    }
    try {
        QBuffer stream(&input);
        stream.open(QIODevice::ReadOnly);
        TImageHeader().LoadFromStream(stream);
    } catch (const EFileFormatException&) { // a refusal is a correct answer
    }
    return 0;
}
