#pragma once

#include <lmx/Formats/Shapes/lmxShpPoint.h>
#include <lmx/Runtime/lmxExport.h>

#include <QString>

#include <memory>
#include <span>

namespace lmx {

/// Turns the coordinates of a file into degrees of WGS 84: X is the longitude, Y the latitude. Serves one thread at a
/// time.
class LMX_EXPORT IShapePointConverter {
public:
    virtual ~IShapePointConverter() = default;

    /// Converts in place. A point that has no place on the earth gets coordinates that are no finite numbers.
    virtual void Convert(std::span<TShpPoint> points) = 0;
};

/// The name of the projection file that goes with a shape file: the same with the extension ".prj".
LMX_EXPORT QString ProjectionFileOf(const QString& shpFileName);

/// What a projection file (.prj) says of the coordinates beside it, as TSHapePointConverterFactory takes it: the name
/// of the datum, where longitudes and latitudes in degrees on that datum are all there is to it ("New Zealand Geodetic
/// Datum 1949"), else the whole definition, since a grid is more than its datum. Empty if there is no such file, or
/// nothing in it that can be understood. The file is found without regard to the case of its suffix; it may hold
/// well-known text of any dialect.
LMX_EXPORT QString GetDatum(const QString& prjFileName);

/// What is known of the coordinates of a file. Without a converter they are taken as degrees of WGS 84, which is right
/// for ckNotNeeded, likely for ckUnstated, and wrong by up to the whole map for ckUnknown: that is worth a warning.
enum class TShapeConversionKind {
    ckNotNeeded, ///< they are degrees of WGS 84
    ckConverted, ///< the converter makes them so
    ckUnstated,  ///< no projection file says what they are
    ckUnknown    ///< there is a projection file or a name, and nobody knows how to convert from it
};

/// A way to convert coordinates.
struct TShapeConversion {
    TShapeConversionKind Kind = TShapeConversionKind::ckUnstated;
    std::shared_ptr<IShapePointConverter> Converter; ///< nil unless Kind is ckConverted
};

/// Makes converters; the projections and datum shifts are those of PROJ, with its grids where they are installed.
class LMX_EXPORT TSHapePointConverterFactory {
public:
    /// The converter for what GetDatum gives: the name of a datum, in the words of the EPSG registry or of a file, or
    /// well-known text. Case, blanks, underscores and a leading "D_" of a name do not matter. Nil if nothing needs to
    /// be converted (WGS 84 itself) or nobody knows how; GetConversion tells which.
    static std::shared_ptr<IShapePointConverter> GetObject(const QString& datum);
    /// The same with what it means: ckNotNeeded, ckConverted or ckUnknown, which an empty text is, too.
    static TShapeConversion GetConversion(const QString& datum);
};

/// How to convert a shape file as the projection file beside it says, of any kind.
LMX_EXPORT TShapeConversion ConversionOf(const QString& shpFileName);

} // namespace lmx
