// An Idrisi palette, text or binary.

#include <lmx/Formats/Idrisi/lmxIdrisiPalFile.h>
#include <lmx/Runtime/lmxExceptions.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    lmx::TIdrisiPalFile palette;
    try {
        palette.LoadFromBytes(QByteArray(reinterpret_cast<const char*>(bytes), static_cast<qsizetype>(size)),
                              QStringLiteral("input"));
    } catch (const lmx::EFileFormatException&) { // a refusal is a correct answer
        return 0;
    }
    if (palette.GetCount() < 1 || palette.GetCount() > 256 || palette.GetColor(palette.GetCount() - 1).IsSystemColor())
        std::abort();
    return 0;
}
