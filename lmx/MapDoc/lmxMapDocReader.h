#pragma once

#include <lmx/Coordinates/wskMappingTypes.h>
#include <lmx/MapDoc/lmxMapDocLayerPersist.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxExport.h>
#include <lmx/Runtime/lmxExtended.h>
#include <lmx/Runtime/lmxXml.h>

#include <QString>

#include <cstdint>
#include <memory>
#include <utility>

namespace lmx {

class ILayerFactory;
class ILayerManager;
class TMapDocLoadReport;
class TMapDocResourcePersist;
class TMapViewControl;

/// A map document that cannot be read.
class LMX_EXPORT EMapDocReaderError : public Exception {
public:
    using Exception::Exception;
};

/// What a document may ask for: beyond it, it is taken for an attack.
struct TMapDocLimits {
    std::uint64_t EntryBytes = std::uint64_t{4} << 30; ///< of each embedded entry
    std::uint64_t ManifestBytes = 64 << 20;
    int Depth = 4096; ///< of elements within elements
};

/// Reads map documents into a control. Reading only adds: the layers of the control stay, and what the document holds
/// comes after them. A layer that cannot be read is left out without a word; special layers keep what was read of them
/// before a failure. The map is then centred on (0, 0), whatever the document says. Main thread only.
class LMX_EXPORT TMapDocReader {
public:
    /// `documentTypeID` names the host's kind of document; it must equal that of the document.
    /// @throws EArgumentException "LayerFactory", EArgumentNilException "LayerPersistFactory" for what is nil.
    TMapDocReader(QString documentTypeID, std::shared_ptr<ILayerFactory> layerFactory,
                  std::shared_ptr<IMapDocLayerPersistFactory> layerPersistFactory);

    const TMapDocLimits& GetLimits() const { return FLimits; }
    void SetLimits(const TMapDocLimits& limits) { FLimits = limits; }

    /// From now on each Read tells the report which layers did not arrive, and how far it is; nil for none. Nothing
    /// else changes by it.
    void SetReport(std::shared_ptr<TMapDocLoadReport> report) { FReport = std::move(report); }

    /// @throws EArgumentException "MapControl", EArgumentNilException "MapControl.LayerManager" for what is nil.
    /// @throws EFileException, EFileFormatException, EMapDocResourceNotFoundException, EXmlException, EConvertError,
    /// Exception "One or more required attributes is missing" and EMapDocReaderError for what is no such document; all
    /// is as it was then.
    /// @throws EMapDocReaderError "MapDoc version error" for a later version than 1; world and title are the document's
    /// by then.
    /// @throws EInvalidOperation "World not created" if neither the document nor the control has a world system; all
    /// has been read by then but scale and centre.
    void Read(const QString& fileName, TMapViewControl* control);
    /// The same of an archive that is open for reading. It must outlive the call; the reader, the control and all
    /// layers may go in the middle of it.
    void Read(TMapDocResourcePersist& resources, TMapViewControl* control);

    // The steps of Read. The reader must outlive them.

    /// Tests the root element and takes its attributes apart. `center` is not read.
    void ProcessRoot(TXmlNode root, int& version, QString& documentTypeID, QString& title, QString& refSystem,
                     extended& zoom, TMapPoint& center) const;
    void LoadLayers(int version, TXmlNode layers, const std::shared_ptr<ILayerManager>& manager,
                    TMapDocResourcePersist& resources);
    void LoadSpecialLayers(int version, TXmlNode specialLayers, const std::shared_ptr<ILayerManager>& manager,
                           TMapDocResourcePersist& resources);

private:
    void ReadAll(TMapDocResourcePersist& resources, TMapViewControl* control);
    // Each gives the reason why the layer is left out, or nothing.
    QString LoadLayer(TXmlNode node, const std::shared_ptr<ILayerManager>& manager, TMapDocResourcePersist& resources);
    QString LoadSpecialLayer(TXmlNode node, const std::shared_ptr<ILayerManager>& manager,
                             TMapDocResourcePersist& resources);
    template<class Load>
    void ForEachLayer(TXmlNode list, bool isSpecial, Load&& load);
    void StartReport(TXmlNode root);

    QString FDocumentTypeID;
    std::shared_ptr<ILayerFactory> FLayerFactory;
    std::shared_ptr<IMapDocLayerPersistFactory> FLayerPersistFactory;
    TMapDocLimits FLimits;
    std::shared_ptr<TMapDocLoadReport> FReport;
};

} // namespace lmx
