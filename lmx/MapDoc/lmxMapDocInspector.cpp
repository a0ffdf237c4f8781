#include <lmx/MapDoc/lmxMapDocInspector.h>

#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/MapDoc/Private/lmxManifest.h>
#include <lmx/MapDoc/Private/lmxMapDocResources.h>
#include <lmx/MapDoc/Private/lmxMapDocTexts.h>
#include <lmx/MapDoc/Private/lmxSaveProblems.h>
#include <lmx/MapDoc/lmxMapDocResourcePersist.h>
#include <lmx/Runtime/lmxNumberText.h>

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

/// Elements whose text is a number or a point, anywhere in the data of a layer.
void CheckTexts(TXmlNode data, QStringList& problems) {
    for (const TXmlNode child : data.GetChildren()) {
        const QString name = child.GetName();
        const bool isNumber =
            name == QStringLiteral("location") || name == QStringLiteral("minVal") || name == QStringLiteral("maxVal");
        if ((isNumber && !IsNumber(child.GetText())) ||
            (name == QStringLiteral("point") && !Converts<TMapPoint>(child.GetText())))
            problems += QStringLiteral("\"%1\" does not read as %2").arg(child.GetText(), name);
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

void CheckObjects(TXmlNode data, QStringList& problems) {
    for (const TXmlNode child : data.GetChildren())
        if (child.GetAttribute(Manifest::Type) == QStringLiteral("SHAPELEGEND")) {
            problems += QStringLiteral("a shape key ends the reading of annotations");
            return;
        }
}

void CheckResource(TMapDocLayerInfo& info) {
    if (info.Resource == Linked && !info.IsFileThere)
        info.Problems += QStringLiteral("the linked file is not there");
    else if (info.Resource == Linked && info.Type == QStringLiteral("VectorFileLayer"))
        info.Problems += QStringLiteral("a linked vector comes back without shapes");
    else if (info.Resource == Embedded && info.EmbeddedBytes == 0)
        info.Problems += QStringLiteral("the embedded data are not there");
}

QString RootProblem(const TMapDocInfo& info) {
    std::int32_t version = 0;
    if (!TryStrToInt(info.Version, version) || version != MapDocVersion)
        return QStringLiteral("version \"%1\" cannot be read").arg(info.Version);
    if (!IsNumber(info.ZoomScale))
        return QStringLiteral("\"%1\" does not read as zoomScale").arg(info.ZoomScale);
    return {};
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
    return line + u'\n';
}

QString LinesOf(const QStringList& problems) {
    QString lines;
    for (const QString& problem : problems)
        lines += QStringLiteral("    problem: ") + problem + u'\n';
    return lines;
}

} // namespace

QString TMapDocInfo::ToText() const {
    QString text = QStringLiteral("document version %1 type \"%2\" title \"%3\" scale %4 world %5\n")
                       .arg(Version, DocTypeID, Title, ZoomScale, RefSystem) +
                   LinesOf(Problems);
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
    if (const QString problem = RootProblem(info); !problem.isEmpty())
        info.Problems += problem;
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

    if (!HasDefaultLayerProperties(node))
        info.Problems += QStringLiteral("an attribute is missing");
    else if (const QString area = node.GetAttribute(QStringLiteral("area")); !Converts<TMapArea>(area))
        info.Problems += QStringLiteral("\"%1\" does not read as area").arg(area);
    if (!FLayerPersistFactory->GetPersist(info.Type))
        info.Problems += QStringLiteral("the type is unknown");
    else if (data.IsEmpty())
        info.Problems += QStringLiteral("it has no data");
    CheckResource(info);
    CheckTexts(data, info.Problems);
    CheckObjects(data, info.Problems);
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
