#include <lmx/DataSources/lmxClimateAttributes.h>

#include <lmx/Runtime/lmxText.h>

#include <algorithm>
#include <utility>

namespace lmx {

void TClimateAttributes::Set(const QString& name, TValue value) {
    const auto place = std::find_if(FAttributes.begin(), FAttributes.end(),
                                    [&](const TAttribute& attribute) { return attribute.Name == name; });
    if (place == FAttributes.end())
        FAttributes.push_back({name, std::move(value)});
    else
        place->Value = std::move(value);
}

QString TClimateAttributes::Text(const QString& name) const {
    const TAttribute* const attribute = Find(name);
    const QString* const text = attribute ? std::get_if<QString>(&attribute->Value) : nullptr;
    if (!text)
        return {};
    qsizetype length = text->size();
    while (length > 0 && (text->at(length - 1).isSpace() || text->at(length - 1).isNull()))
        --length;
    return text->left(length);
}

bool TClimateAttributes::IsText(const QString& name, QStringView text) const {
    const TAttribute* const attribute = Find(name);
    const QString* const value = attribute ? std::get_if<QString>(&attribute->Value) : nullptr;
    return value && SameText(*value, text);
}

std::vector<double> TClimateAttributes::Numbers(const QString& name) const {
    const TAttribute* const attribute = Find(name);
    const auto* const numbers = attribute ? std::get_if<std::vector<double>>(&attribute->Value) : nullptr;
    return numbers ? *numbers : std::vector<double>();
}

const TClimateAttributes::TAttribute* TClimateAttributes::Find(const QString& name) const {
    const auto place = std::find_if(FAttributes.begin(), FAttributes.end(),
                                    [&](const TAttribute& attribute) { return attribute.Name == name; });
    return place == FAttributes.end() ? nullptr : &*place;
}

} // namespace lmx
