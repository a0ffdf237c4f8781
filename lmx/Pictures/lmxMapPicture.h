#pragma once

#include <lmx/Coordinates/wskMappingTypes.h>
#include <lmx/Graphics/lmxColor32.h>
#include <lmx/Pictures/lmxMapPictureDescription.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxExport.h>
#include <lmx/Runtime/lmxExtended.h>
#include <lmx/Runtime/lmxGeometry.h>

#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

namespace lmx {

class ILayerFactory;
class ILayerManager;
class IMapDocLayerPersistFactory;
class IWorldSystem;
class TBitmap32;
class TMapDocLoadReport;

/// A layer was still being drawn when the time for a picture was over. The message names the layer.
class LMX_EXPORT EMapPictureTimeLimit : public Exception {
public:
    using Exception::Exception;
};

/// A place in the middle of a picture and its scale.
struct TMapPicturePlace {
    TMapPoint Center;
    extended Scale = 1; ///< units to the eye per map unit
};

/// How a picture is made. One unit to the eye is 1/96 inch.
struct LMX_EXPORT TMapPictureOptions {
    TSize Size{1200, 675}; ///< of the whole picture, in units to the eye
    double Density = 1;    ///< pixels in one unit: 1 for screens, 3.125 for 300 pixels an inch
    /// What is shown: a place if there is one, else an area as large as it fits, else the whole world.
    std::optional<TMapArea> Area;
    std::optional<TMapPicturePlace> Place;
    QString Title;             ///< above the map; none if empty. The metadata then have the title of the map
    QString Time;              ///< below the map: the time that it shows; none if empty
    bool ShowsLegends = false; ///< of the visible rasters and line layers, beside the map
    /// Below the map: a bar of a round length. In degrees it holds at the latitude of the middle, which it names.
    bool ShowsScale = false;
    bool ShowsCompassRose = false; ///< beside the map
    bool ShowsMarks = true;        ///< rulers and query points of the map
    /// Annotations of the map, as documents keep them, laid out for this picture: those of a view stay as they are.
    bool ShowsAnnotations = true;
    TColor32 BackgroundColor = clWhite32;
    std::optional<TColor32> MapColor; ///< behind the layers, where they show nothing; BackgroundColor if there is none
    int TimeLimit = 60'000;           ///< milliseconds for layers that draw in the background
};

/// The steps of a map through time, for a picture of each.
class LMX_EXPORT IMapPictureFrames {
public:
    virtual ~IMapPictureFrames() = default;

    virtual int GetFrameCount() const = 0;
    /// Puts the data of a frame, 0 <= index < GetFrameCount(), on the map. The result is its caption: the time that the
    /// picture names. What is raised ends the series.
    virtual QString ShowFrame(int index) = 0;
    /// What tells the file of a frame from the others, such as a date; its number if empty. Asked before any is shown.
    virtual QString GetFrameName(int index) const;
    /// The picture of a frame has been written.
    virtual void FrameSaved(int index, const QString& fileName);
};

/// A map as a picture, without a window: the stack of a manager, its marks and annotations, and around it what a reader
/// needs. What has a title, legends, a scale, a time or a compass rose stands in a frame on a sheet; without any
/// of them the map fills the picture, and its pixels are those of PaintLayerStack at that size.
///
/// Shapes, vectors and whatever else draws in the background are waited for: the event loop runs meanwhile, without the
/// user's input. Layers may come and go then; what is in the picture is what is there when all has been drawn. A layer
/// whose render fails, or has nothing to show, shows what it shows in a view. A line of one pixel is one pixel at any
/// density. Main thread only.
class LMX_EXPORT TMapPicture {
public:
    /// @throws EArgumentNilException "LayerManager", "WorldSystem".
    TMapPicture(std::shared_ptr<ILayerManager> layerManager, std::shared_ptr<IWorldSystem> worldSystem,
                TMapPictureOptions options = {});
    /// The map of a document, of whatever kind the host has given it. Layers that did not arrive are in the report.
    /// @throws what TMapDocReader raises.
    static TMapPicture OfDocument(const QString& fileName, const std::shared_ptr<ILayerFactory>& layerFactory,
                                  const std::shared_ptr<IMapDocLayerPersistFactory>& layerPersistFactory,
                                  const std::shared_ptr<TMapDocLoadReport>& report = {});

    const std::shared_ptr<ILayerManager>& GetLayerManager() const { return FLayerManager; }
    const std::shared_ptr<IWorldSystem>& GetWorldSystem() const { return FWorldSystem; }
    const TMapPictureOptions& GetOptions() const { return FOptions; }
    void SetOptions(TMapPictureOptions options) { FOptions = std::move(options); }

    /// @throws EMapPictureTimeLimit `The picture was not ready within 60 seconds: the layer "Coast" is still being
    /// drawn`. @throws EArgumentException "The size of the picture is out of range" (1 to 65535 pixels a side), "The
    /// density of the picture is out of range" (0.01 to 100), "The area of the picture is empty", "The scale of the
    /// picture is out of range", "The picture is too small for what stands around the map"; EOutOfMemory; what a layer
    /// raises.
    TBitmap32 Paint() const;
    /// What the picture would show now.
    /// @throws EArgumentException as Paint.
    TMapPictureDescription Describe() const;

    /// Writes the picture as PNG or, on one page of the picture's size, as PDF, by the suffix of the name, with its
    /// description: PNG in the texts Title, Description (the alternative text), Software, World, Extent, Layers and
    /// Time; PDF in its XMP metadata and in an attached file description.txt. Whatever fails, what was in the file
    /// before is still there.
    /// @throws as Paint; EFileException "...: pictures are written as .png or .pdf", and if it cannot be written.
    void Save(const QString& fileName) const;
    /// Writes a picture of each frame: "map.png" becomes "map-001.png", "map-002.png", ..., with as many digits as the
    /// last number has, at least three, unless the frames have names of their own. The names are the result. Pictures
    /// written before a failure stay.
    /// @throws as Save; EArgumentException "Two frames have the name ..." before anything is written.
    QStringList SaveFrames(const QString& fileName, IMapPictureFrames& frames) const;

private:
    std::shared_ptr<ILayerManager> FLayerManager;
    std::shared_ptr<IWorldSystem> FWorldSystem;
    TMapPictureOptions FOptions;
};

} // namespace lmx
