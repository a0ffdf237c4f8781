#include <lmx/Colour/lmxGradientData.h>

#include <lmx/Colour/Private/lmxColorComponent.h>
#include <lmx/Graphics/lmxColorText.h>
#include <lmx/Graphics/lmxGradient.h>
#include <lmx/Runtime/lmxExtended.h>
#include <lmx/Runtime/lmxNumberText.h>
#include <lmx/Runtime/lmxText.h>
#include <lmx/Runtime/lmxXml.h>

#include <QStringList>

namespace lmx {

namespace {

const QString MinText = QStringLiteral("min");
const QString MaxText = QStringLiteral("max");
const QString RootName = QStringLiteral("gradient");
const QString GroupName = QStringLiteral("group");
const QString ColorName = QStringLiteral("color");
const QString StartAttribute = QStringLiteral("startAtValue");
const QString EndAttribute = QStringLiteral("endAtValue");

constexpr qsizetype ShortestColorText = 6;

TColor32 CommaTextToColor32(const QString& text) {
    const QStringList pieces = Split(text, u',');
    if (pieces.size() != 3 && pieces.size() != 4)
        throw EGradientDataException(QStringLiteral("Comma-seperated color value is invalid"));
    std::uint8_t components[4] = {0, 0, 0, 255};
    for (qsizetype i = 0; i < pieces.size(); ++i)
        components[i] = StringToColorComponent(pieces[i]);
    return Color32(components[0], components[1], components[2], components[3]);
}

double ValueOf(const TStartEndAt& at, double min, double max) {
    switch (at.Kind) {
    case TStartEndAtKind::sekMin:
        return min;
    case TStartEndAtKind::sekMax:
        return max;
    case TStartEndAtKind::sekValue:
        return at.Value;
    case TStartEndAtKind::sekNotSpecified:
        break;
    }
    throw EGradientDataException(QStringLiteral("Not supported StartEndAtKind"));
}

bool LiesOutside(const TGradientGroup& group, double min, double max) {
    const TStartEndAt& start = group.GetStartAt();
    const TStartEndAt& end = group.GetEndAt();
    return (end.Kind == TStartEndAtKind::sekValue && end.Value < min) ||
           (start.Kind == TStartEndAtKind::sekValue && start.Value > max);
}

void AddStops(const TGradientGroup& group, double min, double max, std::vector<TColorStop>& stops) {
    const extended start = ValueOf(group.GetStartAt(), min, max);
    const extended end = ValueOf(group.GetEndAt(), min, max);
    const std::vector<TColor32>& colors = group.GetColors();
    const extended step = (end - start) / (static_cast<extended>(colors.size()) - 1);
    for (std::size_t i = 0; i < colors.size(); ++i) {
        const extended value = static_cast<extended>(i) * step + start;
        const extended position = (value - min) / (static_cast<extended>(max) - min);
        stops.push_back({static_cast<double>(position), colors[i]});
    }
}

class TGradientData final : public IGradientData {
public:
    TObjectList<TGradientGroup>& GetGroups() override { return FGroups; }
    const TObjectList<TGradientGroup>& GetGroups() const override { return FGroups; }
    QString GetFileName() const override { return FFileName; }

    QString SaveToText() const override { return ToDocument().ToText(); }
    void SaveToFile(const QString& fileName) const override { WriteFile(fileName, ToDocument().ToBytes()); }

    void LoadFromText(const QString& text) override {
        Clear();
        LoadFromDocument(TXmlDocument::FromText(text));
    }

    void LoadFromFile(const QString& fileName) override {
        const QByteArray bytes = ReadFile(fileName);
        Clear();
        try {
            LoadFromDocument(TXmlDocument::FromBytes(bytes));
        } catch (const EXmlException& failure) {
            throw EFileFormatException(fileName, failure.Message());
        }
        FFileName = fileName;
    }

    std::shared_ptr<IGradient> CreateGradient(double min, double max) const override {
        if (FGroups.IsEmpty())
            throw EGradientDataException(QStringLiteral("No color groups have been added"));
        std::vector<TColorStop> stops;
        for (const TGradientGroup* group : FGroups)
            if (!LiesOutside(*group, min, max))
                AddStops(*group, min, max, stops);
        return TGradientFactory::GetObject(stops);
    }

private:
    void Clear() {
        FGroups.Clear();
        FFileName.clear();
    }

    void LoadFromDocument(const TXmlDocument& document) {
        if (document.GetRoot().GetName() != RootName)
            throw EGradientDataException(QStringLiteral("Root node must be named \"gradient\""));
        for (const TXmlNode& node : document.GetRoot().GetChildren())
            if (node.GetName() == GroupName)
                FGroups.Add(TGradientGroup::LoadFromNode(node));
    }

    TXmlDocument ToDocument() const {
        TXmlDocument document(RootName);
        for (const TGradientGroup* group : FGroups)
            group->SaveToNode(document.GetRoot().AddChild(GroupName));
        return document;
    }

    QString FFileName;
    TObjectList<TGradientGroup> FGroups;
};

} // namespace

QString StartEndAtValueToString(const TStartEndAt& at) {
    switch (at.Kind) {
    case TStartEndAtKind::sekMin:
        return MinText;
    case TStartEndAtKind::sekMax:
        return MaxText;
    case TStartEndAtKind::sekValue:
        return FloatToFixed(at.Value, 4);
    case TStartEndAtKind::sekNotSpecified:
        break;
    }
    return {};
}

TStartEndAt StringToStartEndAtValue(const QString& text) {
    if (text == MinText)
        return {TStartEndAtKind::sekMin, 0};
    if (text == MaxText)
        return {TStartEndAtKind::sekMax, 0};
    if (double value = 0; TryStrToFloat(text, value))
        return {TStartEndAtKind::sekValue, value};
    return {};
}

QString Color32ToGradientDataColorValue(TColor32 color) {
    const QStringList components = {IntToStr(RedComponent(color)), IntToStr(GreenComponent(color)),
                                    IntToStr(BlueComponent(color)), IntToStr(AlphaComponent(color))};
    return components.join(u',');
}

TColor32 GradientDataColorValueToColor32(const QString& text) {
    if (text.size() < ShortestColorText)
        throw EGradientDataException(QStringLiteral("Color value length is invalid: ") + text);
    const bool isHex = text.front() == u'#';
    try {
        return isHex ? StringToColor32(text) : CommaTextToColor32(text);
    } catch (const Exception& failure) {
        throw EGradientDataException((isHex ? QStringLiteral("Hex color value is invalid: ")
                                            : QStringLiteral("Comma-seperated color value is invalid: ")) +
                                     failure.Message());
    }
}

std::unique_ptr<TGradientGroup> TGradientGroup::LoadFromNode(const TXmlNode& node) {
    auto group = std::make_unique<TGradientGroup>();
    for (const TXmlNode& child : node.GetChildren())
        if (child.GetName() == ColorName)
            group->FColors.push_back(GradientDataColorValueToColor32(child.GetText()));
    group->FStartAt = StringToStartEndAtValue(node.GetAttribute(StartAttribute));
    group->FEndAt = StringToStartEndAtValue(node.GetAttribute(EndAttribute));
    return group;
}

void TGradientGroup::SaveToNode(TXmlNode node) const {
    node.SetAttribute(StartAttribute, StartEndAtValueToString(FStartAt));
    node.SetAttribute(StartAttribute, StartEndAtValueToString(FEndAt)); // the form that files have: the end stays
    for (TColor32 color : FColors)
        node.AddChild(ColorName).SetText(Color32ToGradientDataColorValue(color));
}

std::shared_ptr<IGradientData> TGradientDataFactory::GetObject() {
    return std::make_shared<TGradientData>();
}

} // namespace lmx
