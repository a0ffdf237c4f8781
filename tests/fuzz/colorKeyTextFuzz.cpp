// The text form of a colour key. What was read is written in a form that reads back the same.

#include <lmx/Colour/lmxColorKey.h>
#include <lmx/Runtime/lmxExceptions.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    using namespace lmx;
    const auto key = TColorKeyFactory::GetObject();
    try {
        key->DeSerialize(QString::fromUtf8(reinterpret_cast<const char*>(bytes), static_cast<qsizetype>(size)));
    } catch (const EConvertError&) { // a refusal is a correct answer; the entries before it stay
    }
    if (TColorKeyFactory::GetObject(key->Serialize())->GetColors() != key->GetColors())
        std::abort();
    return 0;
}
