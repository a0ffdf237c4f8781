// The text form of colour classes. What was read is written in a form that reads back as the same text, but for names,
// which grow by their escapes, and bounds beyond the floats' digits.

#include <lmx/Colour/lmxColorClassCalculator.h>
#include <lmx/Colour/lmxColorClassList.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxFormatSettings.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    using namespace lmx;
    const TFormatSettingsScope scope(TFormatSettings::Invariant());
    const auto classes = TColorClassesFactory::GetObject();
    try {
        classes->DeSerialize(QString::fromUtf8(reinterpret_cast<const char*>(bytes), static_cast<qsizetype>(size)));
    } catch (const Exception&) { // a refusal is a correct answer
        if (!classes->GetClasses().IsEmpty())
            std::abort();
        return 0;
    }
    if (TColorClassesFactory::GetObject(classes->Serialize())->GetClasses().Count() != classes->GetClasses().Count())
        std::abort();
    const auto calculator = TColorClassCalculatorFactory::GetObject(classes);
    for (const TColorClass* item : classes->GetClasses())
        if (item->InRange(item->GetMinValue()) &&
            !classes->GetClass(TOutOfRangePolicy::orpReturnNil, item->GetMinValue()))
            std::abort();
    return 0;
}
