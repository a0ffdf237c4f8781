#pragma once

#include <lmx/Formats/Idrisi/lmxGeoPoint.h>
#include <lmx/Formats/Idrisi/lmxVectorData.h>
#include <lmx/Formats/Idrisi/lmxVectorHeader.h>
#include <lmx/Runtime/lmxExport.h>

#include <QString>

#include <cstdint>
#include <memory>
#include <span>

class QIODevice;

namespace lmx {

/// A feature of a vector file: its vertices, in order. It looks into the vector, which must outlive it and not load
/// meanwhile.
class LMX_EXPORT TFeature {
public:
    TFeature(std::span<const TGeoPoint> vertices, double id) : FVertices(vertices), FId(id) {}

    std::int32_t GetCount() const { return static_cast<std::int32_t>(FVertices.size()); }
    /// @throws EArgumentException "Point index is out of range".
    const TGeoPoint& GetPoint(std::int32_t index) const;
    double GetId() const { return FId; }

private:
    std::span<const TGeoPoint> FVertices;
    double FId;
};

/// An Idrisi vector file in memory: features made of points, with coordinates of single precision. A file of either
/// generation: .vct with its documentation .vdc, or .vec with .dvc.
class LMX_EXPORT TVector {
public:
    TVector() = default; ///< no features, of type vtNone, without a name
    /// As LoadFromFile.
    explicit TVector(const QString& fileName) { LoadFromFile(fileName); }

    const QString& GetFileName() const { return FFileName; } ///< as it was given; empty if it was not loaded from one
    TVectorObjectType GetType() const { return FData->Type; }
    std::int32_t GetCount() const { return static_cast<std::int32_t>(FData->Ids.size()); }
    /// @throws EArgumentException "Feature index is out of range".
    TFeature GetFeature(std::int32_t index) const;

    const TVectorHeader& GetHeader() const { return FHeader; }
    TVectorHeader& GetHeader() { return FHeader; }

    /// Reads a vector by the name of its data or of its documentation; the other file is found without regard to the
    /// case of its suffix. Documentation may be missing: then the features tell what they are.
    /// @throws EFileException if the suffix is none of the four, or the data cannot be read or do not fit into memory;
    /// EFileFormatException if they are damaged. The vector is unchanged then.
    void LoadFromFile(const QString& fileName);
    /// Reads features, from the device's position to its end, in the form of a .vct file. Name and header stay.
    /// @throws EFileFormatException as above; the vector is unchanged then.
    void LoadFromStream(QIODevice& stream);
    /// Writes the features in the form of a .vct file; they read back as exactly the same.
    /// @throws EFileException if the device does not take it all; EOutOfMemory.
    void SaveToStream(QIODevice& stream) const;

    /// The features, for who draws them: they stay when the vector goes or loads something else.
    const std::shared_ptr<const TVectorData>& GetData() const { return FData; }

private:
    QString FFileName;
    TVectorHeader FHeader;
    std::shared_ptr<const TVectorData> FData = std::make_shared<const TVectorData>();
};

} // namespace lmx
