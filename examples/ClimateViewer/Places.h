#pragma once

#include <lmx/Graphics/lmxFloatRect.h>
#include <lmx/Layers/lmxPinMapLayer.h>

#include <QString>

#include <memory>
#include <vector>

namespace lmx {
class ILayerFactory;
class IMapDocLayerPersistFactory;
class IWorldSystem;
} // namespace lmx

// Named places as pins: a dot and a label that keeps clear of the ones before it.

/// What a place looks like. Sizes are those to the eye at any device ratio.
class TPlaceRenderer : public lmx::TPinMapLayerPinRenderer {
public:
    /// Draws the dot, and the label at the first side of it where there is room. Nothing outside the bitmap.
    bool RenderPin(lmx::TBitmap32& bitmap, lmx::TPinMapLayer* layer, lmx::TPin* pin, const lmx::TMapPoint& viewPoint,
                   lmx::TFloatRect& renderRect) override;

private:
    bool HasRoom(const lmx::TBitmap32& bitmap, const lmx::TPinMapLayer& layer, const lmx::TFloatRect& label) const;
};

/// A layer of places, with its renderer.
class TPlacesLayer : public lmx::TPinMapLayer {
public:
    explicit TPlacesLayer(const std::shared_ptr<lmx::ILayerManager>& manager);

    /// Appends the places of a file: a line of headings, then name, longitude, latitude and country of a place in each
    /// line, parted by commas, with a decimal point; UTF-8.
    /// @throws lmx::EFileException if the file cannot be read, lmx::EFileFormatException, with no place added, if a
    /// line is no place.
    void Load(const QString& fileName);

    const QString& GetFileName() const { return FFileName; } ///< of the places that were loaded last
    QString GetLayerClassName() const override;

    /// Writes every longitude as the world does, so that each place is inside of it.
    void FoldInto(const lmx::IWorldSystem& world);

    /// The place that the last paint drew at a pixel, or nil.
    const lmx::TPin* PlaceAt(const lmx::TMapPoint& pixel) const;

private:
    TPlaceRenderer FRenderer;
    QString FFileName;
};

// Documents keep the name of the file.
void RegisterPlaces(lmx::ILayerFactory& makers);
void RegisterPlaces(lmx::IMapDocLayerPersistFactory& keepers);
