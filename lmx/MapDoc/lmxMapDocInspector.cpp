#include <lmx/MapDoc/lmxMapDocInspector.h>

#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/MapDoc/Private/lmxManifest.h>
#include <lmx/MapDoc/Private/lmxMapDocResources.h>
#include <lmx/MapDoc/Private/lmxMapDocTexts.h>
#include <lmx/MapDoc/Private/lmxSaveProblems.h>
#include <lmx/MapDoc/lmxMapDocResourcePersist.h>
#include <lmx/Runtime/Private/lmxQuote.h>
#include <lmx/Runtime/lmxNumberText.h>

#include <algorithm>
#include <array>
#include <utility>

namespace lmx {

namespace {

bool IsNumber(const QString& text) {
    extended number = 0;
    return TryStrToFloat(text, number);
}

template<class Value>
bool Converts(const QString& text) {
    try {
        static_cast<void>(Value(text));
        return true;
    } catch (const Exception&) {
        return false;
    }
}

QString DoesNotRead(const QString& text, const QString& name) {
    return u'"' + Quotable(text) + QStringLiteral("\" does not read as ") + name;
}

/// Texts that go by the decimal separator: of rulers, of points and of calculators, wherever they stand in the data.
void CheckTexts(TXmlNode parent, QStringList& problems) {
    const QString of = parent.GetName();
    for (const TXmlNode child : parent.GetChildren()) {
        const QString name = child.GetName();
        const bool isNumber = (of == QStringLiteral("ruler") && name == QStringLiteral("location")) ||
                              (of == QStringLiteral("colorCalc") &&
                               (name == QStringLiteral("minVal") || name == QStringLiteral("maxVal")));
        const bool isPoint = of == QStringLiteral("iqpoint") && name == QStringLiteral("point");
        if ((isNumber && !IsNumber(child.GetText())) || (isPoint && !Converts<TMapPoint>(child.GetText())))
            problems += DoesNotRead(child.GetText(), name);
        CheckTexts(child, problems);
    }
}

int ItemsIn(TXmlNode data) {
    int count = 0;
    for (const TXmlNode child : data.GetChildren()) {
        const QString name = child.GetName();
        if (name == QStringLiteral("vrulers") || name == QStringLiteral("hrulers"))
            count += ItemsIn(child);
        else if (name == QStringLiteral("ruler") || name == QStringLiteral("iqpoint") ||
                 name == QStringLiteral("object"))
            ++count;
    }
    return count;
}

/// Saved and loaded, a background is what the border was, and a border what the constructor makes.
bool KeepsItsLook(TXmlNode object) {
    const auto look = [object](const char* show, const char* color) {
        const QString shown = object.GetAttribute(QLatin1String(show));
        return shown == QStringLiteral("0") ? QString() : shown + u' ' + object.GetAttribute(QLatin1String(color));
    };
    const QString border = look("showBorder", "borderColor");
    const bool hasBorder = object.GetAttribute(Manifest::Type) == QStringLiteral("RECTANGLE");
    return look("showBg", "bgColor") == border && border == (hasBorder ? QStringLiteral("-1 4278190080") : QString());
}

void CheckObjects(TXmlNode data, QStringList& problems) {
    bool keepLook = true;
    for (const TXmlNode object : data.GetChildren()) {
        if (object.GetName() != QStringLiteral("object"))
            continue;
        if (object.GetAttribute(Manifest::Type) == QStringLiteral("SHAPELEGEND")) {
            problems += QStringLiteral("a shape key ends the reading of annotations");
            break;
        }
        keepLook = keepLook && (!object.HasAttribute(QStringLiteral("showBorder")) || KeepsItsLook(object));
    }
    if (!keepLook)
        problems += QStringLiteral("the backgrounds and borders of annotations change");
}

/// The types that hold data of files, and the entries of embedded ones.
struct TFileType {
    QString Type;
    QStringList Entries;
};

const std::array<TFileType, 3>& FileTypes() {
    static const std::array<TFileType, 3> types = {{
        {QStringLiteral("IdrisiMapLayer"), {QStringLiteral("header"), QStringLiteral("imagedata")}},
        {QStringLiteral("VectorFileLayer"), {QStringLiteral("vectordata"), QStringLiteral("header")}},
        {QStringLiteral("ShapeFileLayer"), {}},
    }};
    return types;
}

bool HasEntries(const TMapDocResourcePersist& resources, const TMapDocLayerInfo& info, const QStringList& entries) {
    return std::all_of(entries.begin(), entries.end(),
                       [&](const QString& entry) { return resources.Has(info.Id.toUpper(), entry); });
}

void CheckResource(TMapDocLayerInfo& info, const TMapDocResourcePersist& resources) {
    const auto type = std::find_if(FileTypes().begin(), FileTypes().end(),
                                   [&info](const TFileType& known) { return known.Type == info.Type; });
    if (type == FileTypes().end())
        return;
    if (info.Resource != Linked && (info.Resource != Embedded || type->Entries.isEmpty()))
        info.Problems += QStringLiteral("the resource \"") + Quotable(info.Resource) + QStringLiteral("\" is unknown");
    else if (info.Resource == Linked && !info.IsFileThere)
        info.Problems += QStringLiteral("the linked file is not there");
    else if (info.Resource == Linked && info.Type == QStringLiteral("VectorFileLayer"))
        info.Problems += QStringLiteral("a linked vector comes back without shapes");
    else if (info.Resource == Embedded && !HasEntries(resources, info, type->Entries))
        info.Problems += QStringLiteral("the embedded data are not there");
}

/// What a reader says to the attributes of a layer.
void CheckProperties(TXmlNode node, QStringList& problems) {
    if (!HasDefaultLayerProperties(node)) {
        problems += QStringLiteral("an attribute is missing");
        return;
    }
    const auto check = [&](const char* name, auto&& read) {
        const QString text = node.GetAttribute(QLatin1String(name));
        try {
            read(text);
        } catch (const Exception&) {
            problems += DoesNotRead(text, QLatin1String(name));
        }
    };
    check("id", TextToGuid);
    check("visible", [](const QString& text) { StrToBool(text); });
    check("area", [](const QString& text) { static_cast<void>(TMapArea(text)); });
}

QStringList RootProblems(TXmlNode root, const TMapDocInfo& info) {
    for (const QString& name : {Manifest::Version, Manifest::DocTypeID, Manifest::MapTitle, Manifest::RefSystem,
                                Manifest::ZoomScale, Manifest::Center})
        if (!root.HasAttribute(name))
            return {QStringLiteral("the attribute ") + name + QStringLiteral(" is missing")};
    std::int32_t version = 0;
    if (!TryStrToInt(info.Version, version) || version != MapDocVersion)
        return {QStringLiteral("version \"") + Quotable(info.Version) + QStringLiteral("\" cannot be read")};
    if (!IsNumber(info.ZoomScale))
        return {DoesNotRead(info.ZoomScale, Manifest::ZoomScale)};
    return {};
}

/// A text of the document where a line of ours must not end.
QString Inline(QString text) {
    return text.replace(u'\n', QStringLiteral("\\n")).replace(u'\r', QStringLiteral("\\r"));
}

QString LineOf(const TMapDocLayerInfo& layer) {
    QString line = (layer.IsSpecial ? QStringLiteral("special ") : QStringLiteral("layer ")) + layer.Type +
                   QStringLiteral(" \"") + layer.Name + QStringLiteral("\" ") + layer.Id;
    if (layer.Resource == Linked)
        line += QStringLiteral(" linked ") + layer.FileName;
    else if (layer.Resource == Embedded)
        line += QStringLiteral(" embedded ") + IntToStr(static_cast<std::int64_t>(layer.EmbeddedBytes)) +
                QStringLiteral(" bytes");
    if (layer.IsSpecial)
        line += QStringLiteral(" items ") + IntToStr(layer.ItemCount);
    return Inline(line) + u'\n';
}

QString LinesOf(const QStringList& problems) {
    QString lines;
    for (const QString& problem : problems)
        lines += QStringLiteral("    problem: ") + Inline(problem) + u'\n';
    return lines;
}

} // namespace

QString TMapDocInfo::ToText() const {
    QString text = Inline(QStringLiteral("document version %1 type \"%2\" title \"%3\" scale %4 world %5")
                              .arg(Version, DocTypeID, Title, ZoomScale, RefSystem)) +
                   u'\n' + LinesOf(Problems);
    for (const TMapDocLayerInfo& layer : Layers)
        text += LineOf(layer) + LinesOf(layer.Problems);
    return text;
}

TMapDocInspector::TMapDocInspector(std::shared_ptr<IMapDocLayerPersistFactory> layerPersistFactory)
    : FLayerPersistFactory(std::move(layerPersistFactory)) {
    if (!FLayerPersistFactory)
        throw EArgumentNilException(QStringLiteral("LayerPersistFactory"));
}

TMapDocInfo TMapDocInspector::Inspect(const QString& fileName, const TMapDocLimits& limits) const {
    return Inspect(TMapDocResourcePersist(fileName, TMapDocPersistMode::pmRead), limits);
}

TMapDocInfo TMapDocInspector::Inspect(const TMapDocResourcePersist& resources, const TMapDocLimits& limits) const {
    const TXmlDocument document = ReadManifest(resources, limits.ManifestBytes, limits.Depth);
    const TXmlNode root = document.GetRoot();
    TMapDocInfo info;
    info.Version = root.GetAttribute(Manifest::Version);
    info.DocTypeID = root.GetAttribute(Manifest::DocTypeID);
    info.Title = root.GetAttribute(Manifest::MapTitle);
    info.ZoomScale = root.GetAttribute(Manifest::ZoomScale);
    info.RefSystem = root.GetAttribute(Manifest::RefSystem);
    info.Problems = RootProblems(root, info);
    for (const bool isSpecial : {false, true}) {
        const TXmlNode list = root.Child(isSpecial ? Manifest::SpecialLayers : Manifest::Layers);
        for (const TXmlNode node : list.GetChildren())
            if (node.GetName() == Manifest::Layer)
                info.Layers.push_back(InspectLayer(node, isSpecial, resources));
    }
    return info;
}

TMapDocLayerInfo TMapDocInspector::InspectLayer(TXmlNode node, bool isSpecial,
                                                const TMapDocResourcePersist& resources) const {
    const TXmlNode data = node.Child(Manifest::Data);
    TMapDocLayerInfo info;
    info.Type = node.GetAttribute(Manifest::Type);
    info.Name = node.GetAttribute(QStringLiteral("name"));
    info.Id = node.GetAttribute(QStringLiteral("id"));
    info.IsSpecial = isSpecial;
    info.Resource = data.Child(Resource).GetText();
    info.FileName = data.Child(FileName).GetText();
    info.IsFileThere = info.Resource == Linked && IsRegularFile(info.FileName);
    for (const char* const entry : {"header", "imagedata", "vectordata"})
        info.EmbeddedBytes += resources.GetSize(info.Id.toUpper(), QString::fromLatin1(entry));
    info.ItemCount = ItemsIn(data);

    CheckProperties(node, info.Problems);
    if (!FLayerPersistFactory->GetPersist(info.Type))
        info.Problems += QStringLiteral("the type is unknown");
    else if (data.IsEmpty())
        info.Problems += QStringLiteral("it has no data");
    CheckResource(info, resources);
    CheckTexts(data, info.Problems);
    if (info.Type == QStringLiteral("ObjectMapLayer"))
        CheckObjects(data, info.Problems);
    if (node.Child(Manifest::Attributes).HasChild(QStringLiteral("attribute")))
        info.Problems += QStringLiteral("its attributes do not come back");
    return info;
}

QStringList TMapDocInspector::ProblemsOfSaving(const TMapViewControl* control,
                                               TMapDocExternalResourcePolicy policy) const {
    const auto manager = RequireLayerManager(control);
    QStringList problems;
    if (!control->WorldCreated())
        problems += QStringLiteral("The map has no world and cannot be saved");
    for (const auto* const layers : {&manager->GetLayers(), &manager->GetSpecialLayers()})
        for (const TBaseMapLayer* const layer : *layers)
            problems += ProblemsOfSavingLayer(*layer, *FLayerPersistFactory, policy);
    return problems;
}

} // namespace lmx
