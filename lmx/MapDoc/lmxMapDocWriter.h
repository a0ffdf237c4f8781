#pragma once

#include <lmx/MapDoc/lmxMapDocLayerPersist.h>
#include <lmx/Runtime/lmxExport.h>
#include <lmx/Runtime/lmxObjectList.h>

#include <QString>

#include <memory>

namespace lmx {

class TBaseMapLayer;
class TMapDocResourcePersist;
class TMapViewControl;

/// Writes the map of a control into a document: world system, scale, title, every layer that has a persist object, and
/// the data behind the layers where they are embedded. Main thread only.
class LMX_EXPORT TMapDocWriter {
public:
    /// `documentTypeID` names the host's kind of document; a reader asks for the same.
    /// @throws EArgumentNilException "LayerPersistFactory" if it is nil.
    TMapDocWriter(QString documentTypeID, std::shared_ptr<IMapDocLayerPersistFactory> layerPersistFactory);

    /// Writes straight into the file. A failure of a layer ends the save and leaves a file that cannot be loaded.
    /// @throws EArgumentException "MapControl", EArgumentNilException "MapControl.LayerManager" for what is nil, and
    /// EInvalidOperation "World not created"; the file has not been touched then.
    /// @throws EFileException if the file cannot be written, EOutOfMemory, and what persist objects raise.
    void Write(const QString& fileName, TMapViewControl* control, TMapDocExternalResourcePolicy policy);
    /// The same into an archive that is open for writing; it is not finished. It must outlive the call; the writer, the
    /// control and all layers may go in the middle of it.
    void Write(TMapDocResourcePersist& resources, TMapViewControl* control, TMapDocExternalResourcePolicy policy);

private:
    void WriteAll(TMapDocResourcePersist& resources, TMapViewControl* control, TMapDocExternalResourcePolicy policy);
    void WriteLayers(const TObjectList<TBaseMapLayer>& layers, TXmlNode list, TMapDocResourcePersist& resources,
                     TMapDocExternalResourcePolicy policy);

    QString FDocumentTypeID;
    std::shared_ptr<IMapDocLayerPersistFactory> FLayerPersistFactory;
};

} // namespace lmx
