// The text form of colour classes. What was read is written in a form that reads back with the same bounds and colours,
// four decimals of the bounds that is, and with the names as they stand in the text: grown by their escapes.

#include <lmx/Colour/lmxColorClassCalculator.h>
#include <lmx/Colour/lmxColorClassList.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxFormatSettings.h>
#include <lmx/Runtime/lmxTextForms.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

QString TextWithoutName(lmx::TColorClass item) {
    item.SetName({});
    return item.Serialize();
}

} // namespace

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
    const auto copy = TColorClassesFactory::GetObject(classes->Serialize());
    if (copy->GetClasses().Count() != classes->GetClasses().Count())
        std::abort();
    for (int i = 0; i < copy->GetClasses().Count(); ++i) {
        const TColorClass& before = *classes->GetClasses()[i];
        const TColorClass& after = *copy->GetClasses()[i];
        if (after.GetName() != CStyleEscape(before.GetName()) || TextWithoutName(after) != TextWithoutName(before))
            std::abort();
    }
    const auto calculator = TColorClassCalculatorFactory::GetObject(classes);
    for (const TColorClass* item : classes->GetClasses())
        if (item->InRange(item->GetMinValue()) &&
            !classes->GetClass(TOutOfRangePolicy::orpReturnNil, item->GetMinValue()))
            std::abort();
    return 0;
}
