// A gradient description in XML. What was read is written as a document that reads back with the same colours, its
// groups starting where they ended, and becomes a gradient or says why not.

#include <lmx/Colour/lmxGradientData.h>
#include <lmx/Graphics/lmxGradient.h>
#include <lmx/Runtime/lmxXml.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    using namespace lmx;
    const auto data = TGradientDataFactory::GetObject();
    try {
        TXmlDocument::FromBytes(QByteArray(reinterpret_cast<const char*>(bytes), static_cast<qsizetype>(size)));
        data->LoadFromText(QString::fromUtf8(reinterpret_cast<const char*>(bytes), static_cast<qsizetype>(size)));
    } catch (const EXmlException&) { // a refusal is a correct answer
        return 0;
    } catch (const EGradientDataException&) {
        return 0;
    }
    const auto copy = TGradientDataFactory::GetObject();
    copy->LoadFromText(data->SaveToText());
    if (copy->GetGroups().Count() != data->GetGroups().Count())
        std::abort();
    std::size_t colors = 0;
    for (int i = 0; i < copy->GetGroups().Count(); ++i) {
        const TGradientGroup& before = *data->GetGroups()[i];
        const TGradientGroup& after = *copy->GetGroups()[i];
        colors += before.GetColors().size();
        const TStartEndAt start = StringToStartEndAtValue(StartEndAtValueToString(before.GetEndAt()));
        if (after.GetColors() != before.GetColors() || after.GetStartAt() != start || after.GetEndAt() != TStartEndAt())
            std::abort();
    }
    try {
        if (data->CreateGradient(-1, 5)->GetColorStops().size() > colors)
            std::abort();
    } catch (const EGradientDataException&) {
    }
    return 0;
}
