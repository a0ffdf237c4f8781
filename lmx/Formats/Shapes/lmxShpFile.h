#pragma once

#include <lmx/Formats/Shapes/lmxShapePointConverter.h>
#include <lmx/Formats/Shapes/lmxShpOutlines.h>
#include <lmx/Formats/Shapes/lmxShpPoint.h>
#include <lmx/Runtime/lmxExport.h>
#include <lmx/Runtime/lmxLifetime.h>

#include <QString>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

class QIODevice;

namespace lmx {

/// A point of a shape file.
struct TShpFilePoint {
    std::int32_t ShapeType = 1; ///< a plain point
    double X = 0;
    double Y = 0;
};

/// A shape of a shape file: its parts, each with its vertices in order. Looks into the file, which must outlive it.
template<class Tag>
class TShpFileShape {
public:
    TShpFileShape(const TShpOutlines& outlines, std::size_t index) : FOutlines(&outlines), FIndex(index) {}

    std::size_t GetPartCount() const { return FOutlines->GetPartCount(FIndex); }
    /// @throws EArgumentException "Part index is out of range".
    TShpPointArr GetPart(std::size_t index) const { return FOutlines->GetPart(FIndex, index); }
    /// The row of the attribute table that belongs to the shape: its record's place in the file, from 0.
    std::uint32_t GetRecord() const { return FOutlines->GetRecord(FIndex); }

private:
    const TShpOutlines* FOutlines;
    std::size_t FIndex;
};
using TShpFilePolygonShape = TShpFileShape<struct TShpPolygonTag>;
using TShpFilePolyLineShape = TShpFileShape<struct TShpPolyLineTag>;

/// All that a shape file holds of its geometry. It never changes, so threads may share it.
struct TShpData {
    std::vector<TShpPoint> Points;          ///< by place rather than as in the file if that is all over the map
    std::vector<std::uint32_t> PointPlaces; ///< index among Points of each point of the file; none if the same
    TRecordNumbers PointRecords;            ///< of the points as in the file
    std::vector<TVertexBlock> PointBlocks;
    std::vector<TVertexBlock> PointBlockGroups;
    TShpOutlines Polygons;
    TShpOutlines PolyLines;
    std::size_t DamagedRecords = 0;
};

/// How a shape file is read.
struct TShpLoadOptions {
    /// Whether a record that contradicts itself is left out and counted, where otherwise the file is refused. Behind
    /// one of an impossible length nothing is read, as nothing tells where the next one begins.
    bool SkipDamagedRecords = false;
};

/// A shape file (.shp) in memory: its points, multipoints among them, polygons and polylines, each in the order of the
/// file. Null shapes are left out; each shape knows its record. The coordinates are those of the file, or what the
/// converter made of them. Vertices without a place are left out: those whose coordinates are no numbers, infinite or
/// beyond 1e300, which is how writers mark what is missing.
class LMX_EXPORT TShpFile {
public:
    /// Reads a file. With a converter every vertex is converted, and those that it cannot convert are left out; without
    /// one they stay as they are.
    /// @throws EFileException if it cannot be read, EFileFormatException if it is damaged.
    static std::unique_ptr<TShpFile> LoadFromFile(const QString& fileName,
                                                  const std::shared_ptr<IShapePointConverter>& converter,
                                                  const TShpLoadOptions& options = {});
    /// The same of a device that can seek; `fileName` is the name that the file goes by.
    static std::unique_ptr<TShpFile> LoadFromStream(QIODevice& stream, const QString& fileName,
                                                    const std::shared_ptr<IShapePointConverter>& converter,
                                                    const TShpLoadOptions& options = {});

    const QString& GetFileName() const { return FFileName; } ///< the full name

    // The smallest box around everything, whatever the file's header says; all 0 if there is nothing.
    double GetXMin() const { return FXMin; }
    double GetYMin() const { return FYMin; }
    double GetXMax() const { return FXMax; }
    double GetYMax() const { return FYMax; }

    std::size_t GetPointCount() const { return FData->Points.size(); }
    /// @throws EArgumentException "Point index is out of range".
    TShpFilePoint GetPoint(std::size_t index) const;
    /// The record of a point, as TShpFileShape::GetRecord; the points of a multipoint have one record.
    /// @throws EArgumentException "Point index is out of range".
    std::uint32_t GetPointRecord(std::size_t index) const;
    std::size_t GetPolygonCount() const { return FData->Polygons.GetShapeCount(); }
    /// @throws EArgumentException "Polygon index is out of range".
    TShpFilePolygonShape GetPolygon(std::size_t index) const;
    std::size_t GetPolyLineCount() const { return FData->PolyLines.GetShapeCount(); }
    /// @throws EArgumentException "Polyline index is out of range".
    TShpFilePolyLineShape GetPolyLine(std::size_t index) const;
    /// How many records were damaged and skipped, as TShpLoadOptions allow.
    std::size_t GetDamagedRecordCount() const { return FData->DamagedRecords; }

    /// The geometry, for who draws it: it stays when the file goes.
    const std::shared_ptr<const TShpData>& GetData() const { return FData; }
    const TLifetime& GetLifetime() const { return FLifetime; }
    std::size_t GetVertexCount() const; ///< points and vertices of all parts
    std::size_t GetMemorySize() const;  ///< bytes of the geometry

private:
    TShpFile(QString fileName, TShpData data);
    static void CheckIndex(const char* what, std::size_t index, std::size_t count);

    QString FFileName;
    std::shared_ptr<const TShpData> FData;
    double FXMin = 0;
    double FYMin = 0;
    double FXMax = 0;
    double FYMax = 0;
    TLifetime FLifetime;
};

} // namespace lmx
