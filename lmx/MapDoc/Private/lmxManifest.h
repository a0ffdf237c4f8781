#pragma once

#include <lmx/Runtime/lmxXml.h>

#include <QString>

#include <cstdint>
#include <memory>

// The skeleton of a document's manifest, which reader and writer share.

namespace lmx {

class ILayerManager;
class TMapDocResourcePersist;
class TMapViewControl;

inline constexpr int MapDocVersion = 1;

namespace Manifest {

inline const QString EntryName = QStringLiteral("manifest");
inline const QString Version = QStringLiteral("version");
inline const QString DocTypeID = QStringLiteral("docTypeID");
inline const QString MapTitle = QStringLiteral("mapTitle");
inline const QString ZoomScale = QStringLiteral("zoomScale");
inline const QString Center = QStringLiteral("center");
inline const QString RefSystem = QStringLiteral("refsystem");
inline const QString Layers = QStringLiteral("layers");
inline const QString SpecialLayers = QStringLiteral("specialLayers");
inline const QString Layer = QStringLiteral("layer");
inline const QString Decoration = QStringLiteral("decoration");
inline const QString Type = QStringLiteral("type");
inline const QString Attributes = QStringLiteral("attributes");
inline const QString Data = QStringLiteral("data");

} // namespace Manifest

/// The manifest of an archive.
/// @throws EMapDocResourceNotFoundException, EFileFormatException, EXmlException; EFileFormatException "...: manifest
/// is nested deeper than ... elements".
TXmlDocument ReadManifest(const TMapDocResourcePersist& resources, std::uint64_t mostBytes, int mostDepth);

/// The manager of a control.
/// @throws EArgumentException "MapControl", EArgumentNilException "MapControl.LayerManager" for what is nil.
std::shared_ptr<ILayerManager> RequireLayerManager(const TMapViewControl* control);

} // namespace lmx
