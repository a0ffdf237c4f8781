#pragma once

#include <lmx/MapDoc/lmxMapDocLayerPersist.h>
#include <lmx/MapDoc/lmxMapDocReader.h>
#include <lmx/Runtime/lmxExport.h>

#include <QString>
#include <QStringList>

#include <cstdint>
#include <memory>
#include <vector>

namespace lmx {

class TBaseMapLayer;
class TMapDocResourcePersist;
class TMapViewControl;

/// A layer as a document has it.
struct LMX_EXPORT TMapDocLayerInfo {
    QString Type;
    QString Name;
    QString Id;
    bool IsSpecial = false;
    QString Resource;                ///< "linked", "embedded", or empty for a layer without data of files
    QString FileName;                ///< of a linked one
    bool IsFileThere = false;        ///< whether that is a file that can be read
    std::uint64_t EmbeddedBytes = 0; ///< of its entries, decompressed, as the archive claims
    int ItemCount = 0;               ///< rulers, query points or annotations
    QStringList Problems;            ///< what of it will not arrive, and why
};

/// What is in a document.
struct LMX_EXPORT TMapDocInfo {
    QString Version; ///< as text, like all of the root
    QString DocTypeID;
    QString Title;
    QString ZoomScale;
    QString RefSystem;
    std::vector<TMapDocLayerInfo> Layers; ///< in the order of the document, special ones last
    QStringList Problems;                 ///< what stands in the way of the whole document

    /// A line for the document and for each layer, and one for each problem. Equal documents give equal texts.
    QString ToText() const;
};

/// Looks into map documents without a control, and at maps before they are saved.
class LMX_EXPORT TMapDocInspector {
public:
    /// Types that the factory does not know are problems.
    /// @throws EArgumentNilException "LayerPersistFactory" if it is nil.
    explicit TMapDocInspector(std::shared_ptr<IMapDocLayerPersistFactory> layerPersistFactory);

    /// What is read goes by the current format settings: a text that they do not read is a problem.
    /// @throws what TMapDocReader::Read raises for what is no archive, or one without a manifest in XML.
    TMapDocInfo Inspect(const QString& fileName, const TMapDocLimits& limits = {}) const;
    TMapDocInfo Inspect(const TMapDocResourcePersist& resources, const TMapDocLimits& limits = {}) const;

    /// What saving the map of a control would end at, lose or leave out, in words for the user; nothing if all of it
    /// would come back.
    /// @throws EArgumentException "MapControl", EArgumentNilException "MapControl.LayerManager" for what is nil.
    QStringList ProblemsOfSaving(const TMapViewControl* control, TMapDocExternalResourcePolicy policy) const;

private:
    TMapDocLayerInfo InspectLayer(TXmlNode node, bool isSpecial, const TMapDocResourcePersist& resources) const;

    std::shared_ptr<IMapDocLayerPersistFactory> FLayerPersistFactory;
};

} // namespace lmx
