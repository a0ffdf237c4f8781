#pragma once

#include <lmx/Runtime/lmxExport.h>
#include <lmx/Runtime/lmxXml.h>

#include <QString>

#include <memory>

namespace lmx {

class TBaseMapLayer;
class TMapDocResourcePersist;

/// Where the data of layers are kept that come from files.
enum class TMapDocExternalResourcePolicy {
    erpKeepExternal,   ///< in the files; embedded if there is none
    erpEmbedIfPossible ///< in the document, where the type of layer can
};

/// Writes the content of layers of one type into the `data` element of a document, and reads it. Holds no state.
/// Failures of ReadLayer drop the layer from the map that is read, those of WriteLayer end the save.
class LMX_EXPORT IMapDocLayerPersist {
public:
    virtual ~IMapDocLayerPersist() = default;

    /// Fills a layer whose default properties have been read. What it raises drops the layer silently.
    /// @throws EArgumentException "Layer" if the layer is of another class.
    virtual void ReadLayer(TMapDocResourcePersist& resources, TBaseMapLayer* layer, TXmlNode data) = 0;
    /// @throws EArgumentException "Layer" if the layer is of another class.
    virtual void WriteLayer(TMapDocResourcePersist& resources, const TBaseMapLayer* layer, TXmlNode data,
                            TMapDocExternalResourcePolicy policy) = 0;

    /// Whether the map tells the same without layers of this type, as with labels of a host's own. Documents say so of
    /// the layer, and programs that do not know the type may paint the map without it. Here: false.
    virtual bool IsDecoration() const { return false; }
};

/// Finds the persist object of a layer by its type name (TBaseMapLayer::GetLayerClassName), compared exactly. Layers of
/// a type without one are not saved. Main thread only.
class LMX_EXPORT IMapDocLayerPersistFactory {
public:
    virtual ~IMapDocLayerPersistFactory() = default;

    /// Nil if there is none.
    virtual std::shared_ptr<IMapDocLayerPersist> GetPersist(const QString& typeName) const = 0;
    /// @throws EArgumentNilException "Persist" if it is nil; EListError "Duplicates not allowed" if the name is taken,
    /// and the first one stays.
    virtual void Register(const QString& typeName, const std::shared_ptr<IMapDocLayerPersist>& persist) = 0;
};

class LMX_EXPORT TMapDocLayerPersistFactory {
public:
    static std::shared_ptr<IMapDocLayerPersistFactory> GetObject(); ///< a new, empty one
    /// The one of the process, empty until someone populates it.
    static const std::shared_ptr<IMapDocLayerPersistFactory>& GetSingleton();
    /// Registers the six types of layer that documents know: images, vector and shape files, query points, rulers and
    /// annotations. Once for each factory.
    /// @throws EExArgumentNilException if `factory` is nil; EListError as Register.
    static void PopulateDefault(const std::shared_ptr<IMapDocLayerPersistFactory>& factory);
};

/// Writes the six attributes of a `layer` element: type, id, name, visible, refsystem, area.
/// @throws EArgumentNilException "Layer", "Node".
LMX_EXPORT void WriteDefaultLayerProperties(const TBaseMapLayer* layer, TXmlNode node);

/// Gives a layer what the attributes say but the type: id, name, visibility and area, the area without its event. All
/// are parsed before the layer is touched.
/// @throws EArgumentNilException "Layer"; EConvertError for an id or a visibility that is none, EArgumentException
/// "Invalid MapArea string".
LMX_EXPORT void ReadDefaultLayerProperties(TXmlNode node, TBaseMapLayer* layer);

/// Whether the node has all six attributes.
LMX_EXPORT bool HasDefaultLayerProperties(TXmlNode node);

/// Writes the layer's own attributes, but one without a name. Nothing reads them back.
/// @throws EArgumentNilException "Layer".
LMX_EXPORT void WriteAttributes(const TBaseMapLayer* layer, TXmlNode node);

} // namespace lmx
