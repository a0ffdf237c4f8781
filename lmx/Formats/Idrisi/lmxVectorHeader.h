#pragma once

#include <lmx/Runtime/lmxExport.h>

#include <QByteArray>
#include <QString>

#include <cstdint>

class QIODevice;

namespace lmx {

/// Kind of the objects of a vector file. The ordinals are those of the file. Only lines and polygons are drawn.
enum class TVectorObjectType : std::uint8_t { vtNone, vtPoint, vtLine, vtPolygon, vtText };

/// What the documentation file of an Idrisi vector (.vdc, or the older .dvc) says about it. A value: copies and
/// compares. The entries are what a file claims; nothing keeps the bounds in order.
class LMX_EXPORT TVectorHeader {
public:
    const QString& GetTitle() const { return FTitle; }
    void SetTitle(const QString& title) { FTitle = title; }
    TVectorObjectType GetObjectType() const { return FObjectType; } ///< vtNone if it does not say
    void SetObjectType(TVectorObjectType type) { FObjectType = type; }
    const QString& GetIdType() const { return FIdType; } ///< "integer" or "real"
    void SetIdType(const QString& type) { FIdType = type; }
    const QString& GetFileType() const { return FFileType; } ///< "binary" or "ascii"
    void SetFileType(const QString& type) { FFileType = type; }

    const QString& GetRefSystem() const { return FRefSystem; } ///< "plane", "latlong", "utm-60s", or a system's file
    void SetRefSystem(const QString& name) { FRefSystem = name; }
    const QString& GetRefUnits() const { return FRefUnits; } ///< "m", "deg", ...
    void SetRefUnits(const QString& units) { FRefUnits = units; }
    float GetUnitDistance() const { return FUnitDistance; } ///< length of one map unit in reference units
    void SetUnitDistance(float value) { FUnitDistance = value; }

    float GetMinX() const { return FMinX; }
    float GetMaxX() const { return FMaxX; }
    float GetMinY() const { return FMinY; }
    float GetMaxY() const { return FMaxY; }
    void SetMinX(float value) { FMinX = value; }
    void SetMaxX(float value) { FMaxX = value; }
    void SetMinY(float value) { FMinY = value; }
    void SetMaxY(float value) { FMaxY = value; }

    const QString& GetPositionError() const { return FPositionError; } ///< a number or "unknown"
    void SetPositionError(const QString& text) { FPositionError = text; }
    const QString& GetResolution() const { return FResolution; } ///< a number or "unknown"
    void SetResolution(const QString& text) { FResolution = text; }

    /// What the text of a documentation file says. Entries that are absent, or no number where one is due, keep the
    /// value of a new header: no text is refused.
    static TVectorHeader Parse(const QByteArray& text);

    /// Exact binary form, for documents. It begins at the device's position, which is left behind it.
    /// @throws EFileFormatException if the form is cut short or damaged; the header is unchanged then.
    void LoadFromStream(QIODevice& stream);
    /// @throws EFileException if the device does not take it all.
    void SaveToStream(QIODevice& stream) const;

    friend bool operator==(const TVectorHeader&, const TVectorHeader&) = default;

private:
    QString FTitle;
    TVectorObjectType FObjectType = TVectorObjectType::vtNone;
    QString FIdType;
    QString FFileType;
    QString FRefSystem;
    QString FRefUnits;
    float FUnitDistance = 1;
    float FMinX = 0;
    float FMaxX = 0;
    float FMinY = 0;
    float FMaxY = 0;
    QString FPositionError;
    QString FResolution;
};

} // namespace lmx
