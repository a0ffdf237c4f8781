#pragma once

#include <lmx/Formats/Shapes/lmxShpPoint.h>
#include <lmx/Runtime/lmxExport.h>

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

class QIODevice;

namespace lmx {

/// What a record of a shape file holds, whichever of its plain, Z and M forms it has.
enum class TShapeKind { skNull, skPoint, skMultiPoint, skPolyLine, skPolygon };

/// Reads the records of a .shp file one after the other: first the heading of one, then its content, or as much of it
/// as is wanted. It holds a block of the file and nothing else. Every count is checked against the bytes that are there
/// before it is handed out, so memory may be taken by it.
///
/// Real files are read where they are merely untidy: record numbers, the length and the box in the file's header are
/// not looked at, a record may be of another type than the file, Z and M values are passed over or may be missing, and
/// bytes behind the last record that are none are ignored. Multipatches count as polygons.
class LMX_EXPORT TShapeFileReader {
public:
    /// A part of a shape: its vertices in order.
    using TShpPointArr = std::span<const TShpPoint>;

    /// Begins at the device's start; the device must outlive the reader and be able to seek. `fileName` is for the
    /// messages.
    /// @throws EFileFormatException if it is no shape file, EFileException if it cannot be read.
    TShapeFileReader(QIODevice& device, const QString& fileName);

    /// Goes to the next record, over what was not read of the one before. False behind the last one.
    /// @throws EFileFormatException if the record is cut short, or its length and its counts contradict each other.
    bool Next();

    // Of the record that Next found.
    TShapeKind GetKind() const { return FKind; }
    std::size_t GetPartCount() const { return FPartCount; }   ///< 0 for points
    std::size_t GetPointCount() const { return FPointCount; } ///< vertices of all parts

    /// Appends the index of each part's first vertex, counted from `base`. Call it before ReadPoints.
    /// @throws EFileFormatException if the first one is not 0, one lies beyond the vertices, or they descend.
    void ReadPartStarts(std::uint32_t base, std::vector<std::uint32_t>& starts);
    /// Appends the vertices.
    /// @throws EFileFormatException if one is no number or infinite.
    void ReadPoints(std::vector<TShpPoint>& points);

    /// Goes back to the first record.
    void Restart();

private:
    [[noreturn]] void Refuse(const QString& problem) const;
    bool IsJunk(std::int32_t number, std::int64_t content) const;
    void ReadRecordHeading(std::int64_t content);
    void ReadCounts(std::int32_t type, std::int64_t content);
    const char* Bytes(std::int64_t count);

    QIODevice& FDevice;
    QString FFileName;
    std::int64_t FSize;
    QByteArray FBlock;
    std::int64_t FBlockStart = 0;
    std::int64_t FPosition = 0;
    std::int64_t FRecordEnd = 0;
    std::int64_t FRecord = 0;
    bool FAllLengthsFit = true;
    TShapeKind FKind = TShapeKind::skNull;
    std::size_t FPartCount = 0;
    std::size_t FPointCount = 0;
    std::int64_t FBytesBetween = 0; ///< between part starts and vertices: the types of a multipatch's parts
};

} // namespace lmx
