#pragma once

#include <lmx/Layers/lmxObjectMapLayer.h>
#include <lmx/Pictures/lmxMapPicture.h>
#include <lmx/Runtime/lmxBorrowed.h>
#include <lmx/Runtime/lmxGeometry.h>

#include <memory>
#include <vector>

namespace lmx {

class TBaseShapeLayer;
class TRasterMapLayer;
class TWorldViewport;

/// Where on a picture the map lies, and what stands around it: title above, legends and compass rose to the right,
/// scale and time below. All rectangles are pixels of the picture.
class TPictureSheet {
public:
    /// `aspect`: width of what the map shows by its height; 0 if the map takes what room there is.
    /// @throws EArgumentException "The picture is too small for what stands around the map".
    TPictureSheet(const std::shared_ptr<ILayerManager>& manager, const TMapPictureOptions& options, TSize size,
                  double aspect);

    bool IsFramed() const { return FIsFramed; } ///< whether anything stands around the map
    const TRect& GetMapRect() const { return FMap; }

    /// Draws the frame and what is around the map, whose viewport is `viewport`.
    void Paint(TWorldViewport& viewport, TBitmap32& picture);

private:
    /// Text that is laid out in lines of a width.
    struct TLabel {
        QString Text;
        int FontSize = 9;
        bool IsBold = false;
        std::int32_t Height = 0;
    };

    void Survey(const ILayerManager& manager);
    void PlaceMap(double aspect);
    void AddTitle();
    void AddFoot();
    void AddColumn();
    std::int32_t AddLegend(TRasterMapLayer& raster, std::int32_t top, double ease);
    std::int32_t AddKey(std::int32_t top);
    /// `ease`: 0 for the least room that it can do with, 1 for all that it likes.
    std::int32_t LegendHeight(const TRasterMapLayer& raster, double ease) const;
    std::int32_t KeyHeight() const;
    TLabel LabelOf(const TRasterMapLayer& raster) const;
    void Measure(TLabel& label, std::int32_t width) const;
    void AddText(const TLabel& label, const TRect& rect, bool isRight = false);
    std::int32_t Pixels(double units) const;

    const TMapPictureOptions FOptions;
    const TSize FSize;
    std::vector<TBorrowed<TRasterMapLayer>> FLegends; // from the top of the stack
    std::vector<TBorrowed<TBaseShapeLayer>> FKeys;
    TObjectMapLayer FItems;
    TLabel FTitle;
    TRect FMap;
    bool FHasColumn = false;
    bool FHasFoot = false;
    bool FIsFramed = false;
};

} // namespace lmx
