#pragma once

#include <lmx/Runtime/lmxExport.h>

#include <QString>
#include <QStringView>

#include <array>
#include <cstdint>
#include <map>

class QIODevice;

namespace lmx {

/// Kind of a cell. The ordinals are stored.
enum class TImageDataType {
    dtReal,    ///< 32-bit float
    dtInteger, ///< signed 16 bits
    dtByte,    ///< unsigned 8 bits
    dtRgb8,    ///< unsigned 8 bits, index into a palette made for this one picture
    dtRgb24    ///< blue, green and red byte of a colour: no number
};

/// Form of the data file. The ordinals are stored.
enum class TImageFileType { ftAscii, ftBinary, ftPacked };

/// Names of the types in documentation files, by ordinal.
inline constexpr std::array<QStringView, 5> DataTypeNames = {u"real", u"integer", u"byte", u"RGB8", u"RGB24"};
inline constexpr std::array<QStringView, 3> FileTypeNames = {u"ascii", u"binary", u"packed binary"};

/// Names of the classes of an image, by cell value; the codes may have gaps.
using TLegendCategories = std::map<std::int32_t, QString>;

/// What the documentation file of an Idrisi image says about it. A value: copies and compares.
///
/// Bounds are the outer edges of the grid in the units of the reference system: degrees, or metres on a grid; row 1 is
/// the northern one. The entries are what a file claims: minimum and maximum may be stale or include the flag, and
/// nothing keeps the bounds in order. Texts may hold several lines where said, separated by '\n'.
class LMX_EXPORT TImageHeader {
public:
    std::int32_t GetWidth() const { return FWidth; }   ///< columns
    std::int32_t GetHeight() const { return FHeight; } ///< rows
    void SetWidth(std::int32_t width) { FWidth = width; }
    void SetHeight(std::int32_t height) { FHeight = height; }

    float GetMinX() const { return FMinX; }
    float GetMaxX() const { return FMaxX; }
    float GetMinY() const { return FMinY; }
    float GetMaxY() const { return FMaxY; }
    void SetMinX(float value) { FMinX = value; }
    void SetMaxX(float value) { FMaxX = value; }
    void SetMinY(float value) { FMinY = value; }
    void SetMaxY(float value) { FMaxY = value; }

    float GetMinValue() const { return FMinValue; }
    float GetMaxValue() const { return FMaxValue; }
    void SetMinValue(float value) { FMinValue = value; }
    void SetMaxValue(float value) { FMaxValue = value; }

    float GetDisplayMin() const { return FDisplayMin; } ///< where a palette's first colour belongs
    float GetDisplayMax() const { return FDisplayMax; } ///< where a palette's last colour belongs
    void SetDisplayMin(float value) { FDisplayMin = value; }
    void SetDisplayMax(float value) { FDisplayMax = value; }

    /// Resolution of the source that the image was made from, 0 if unknown. The size of a cell is (max - min) / count.
    float GetResolutionX() const { return FResolutionX; }
    float GetResolutionY() const { return FResolutionY; }
    void SetResolutionX(float value) { FResolutionX = value; }
    void SetResolutionY(float value) { FResolutionY = value; }

    const QString& GetRefSystem() const { return FRefSystem; } ///< "plane", "latlong", "utm-60s", or a system's file
    const QString& GetRefUnits() const { return FRefUnits; }   ///< "m", "deg", ...
    void SetRefSystem(const QString& name) { FRefSystem = name; }
    void SetRefUnits(const QString& units) { FRefUnits = units; }
    float GetUnitDistance() const { return FUnitDistance; } ///< length of one map unit in reference units
    void SetUnitDistance(float value) { FUnitDistance = value; }
    const QString& GetPositionError() const { return FPositionError; } ///< a number or "unknown"
    void SetPositionError(const QString& text) { FPositionError = text; }

    const QString& GetValueUnits() const { return FValueUnits; }
    const QString& GetValueError() const { return FValueError; } ///< a number or "unknown"
    void SetValueUnits(const QString& units) { FValueUnits = units; }
    void SetValueError(const QString& text) { FValueError = text; }

    bool GetFlag() const { return FFlag; }                 ///< whether the flag value is a declared one
    float GetFlagValue() const { return FFlagValue; }      ///< cell value with a special meaning
    const QString& GetFlagDef() const { return FFlagDef; } ///< that meaning: "missing data", "background", ...
    void SetFlag(bool isDeclared) { FFlag = isDeclared; }
    void SetFlagValue(float value) { FFlagValue = value; }
    void SetFlagDef(const QString& text) { FFlagDef = text; }

    TImageDataType GetDataType() const { return FDataType; }
    TImageFileType GetFileType() const { return FFileType; }
    void SetDataType(TImageDataType type) { FDataType = type; }
    void SetFileType(TImageFileType type) { FFileType = type; }

    const QString& GetTitle() const { return FTitle; }
    void SetTitle(const QString& title) { FTitle = title; }
    const TLegendCategories& GetLegendCategories() const { return FLegendCategories; }
    void SetLegendCategories(const TLegendCategories& categories) { FLegendCategories = categories; }

    const QString& GetLineage() const { return FLineage; }           ///< any number of lines
    const QString& GetCompleteness() const { return FCompleteness; } ///< any number of lines
    const QString& GetConsistency() const { return FConsistency; }   ///< any number of lines
    const QString& GetComment() const { return FComment; }           ///< any number of lines
    void SetLineage(const QString& text) { FLineage = text; }
    void SetCompleteness(const QString& text) { FCompleteness = text; }
    void SetConsistency(const QString& text) { FConsistency = text; }
    void SetComment(const QString& text) { FComment = text; }

    /// Whether the bounds are degrees of longitude and latitude: by the reference system ("latlong", "lat/long",
    /// "latlon") or by its units ("deg", "degree", "degrees"), in any case.
    bool IsGeographic() const;

    /// Reads a documentation file of either generation (.rdc, .doc), or the one that stands beside an image's data
    /// file (.rst, .img). Entries that are absent keep the value of a new header; minimum and maximum value, too.
    /// @throws EFileException if it cannot be read, EFileFormatException if it does not give the columns, the rows and
    /// the four bounds, or has a type that nobody knows. The header is unchanged then.
    void LoadFromFile(const QString& fileName);

    /// Replaces a documentation file, as Windows programs write it, or in the older form if the name ends in ".doc" or
    /// ".img"; the name of a data file stands for that of its documentation. Numbers read back exactly. The text form
    /// cannot say everything: a geographic system gets the era's name for it, empty words become "plane", "unknown" and
    /// the like, blanks at the ends of texts are lost, and so is a resolution that differs between the axes.
    /// @throws EFileException if it cannot be written.
    void SaveToFile(const QString& fileName) const;

    /// Exact binary form, for documents. It begins at the device's position, which is left behind it.
    /// @throws EFileFormatException if the form is cut short or damaged; the header is unchanged then.
    void LoadFromStream(QIODevice& stream);
    /// @throws EFileException if the device does not take it all.
    void SaveToStream(QIODevice& stream) const;

    friend bool operator==(const TImageHeader&, const TImageHeader&) = default;

private:
    std::int32_t FWidth = 0;
    std::int32_t FHeight = 0;
    float FMinX = 0;
    float FMaxX = 0;
    float FMinY = 0;
    float FMaxY = 0;
    float FMinValue = 0;
    float FMaxValue = 0;
    float FDisplayMin = 0;
    float FDisplayMax = 0;
    float FResolutionX = 0;
    float FResolutionY = 0;
    float FUnitDistance = 1;
    float FFlagValue = 0;
    bool FFlag = false;
    TImageDataType FDataType = TImageDataType::dtReal;
    TImageFileType FFileType = TImageFileType::ftBinary;
    QString FTitle;
    QString FRefSystem;
    QString FRefUnits;
    QString FPositionError;
    QString FValueUnits;
    QString FValueError;
    QString FFlagDef;
    TLegendCategories FLegendCategories;
    QString FLineage;
    QString FCompleteness;
    QString FConsistency;
    QString FComment;
};

} // namespace lmx
