#pragma once

#include <lmx/Formats/Shapes/lmxShapeKind.h>
#include <lmx/Formats/Shapes/lmxShpPoint.h>

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <vector>

class QIODevice;

namespace lmx {

/// What Next came upon.
enum class TShapeRecordState { rsGood, rsDamaged, rsNone };

/// Reads the records of a .shp file one after the other: first the heading of one, then its content, or as much of it
/// as is wanted. It holds a block of the file and nothing else. Every count is checked against the bytes that are there
/// before it is handed out, so memory may be taken by it.
///
/// Real files are read where they are merely untidy: record numbers, the length and the box in the file's header are
/// not looked at, a record may be of another type than the file, Z and M values are passed over or may be missing, and
/// bytes behind the last record that are none are ignored. Multipatches count as polygons.
///
/// A record that contradicts itself is damaged: the caller refuses the file or goes on to the next record. Behind a
/// record of an impossible length there is none, since nothing tells where it would begin.
class TShapeFileReader {
public:
    /// Begins at the device's start; the device must outlive the reader and be able to seek. `fileName` is for the
    /// messages.
    /// @throws EFileFormatException if it is no shape file, EFileException if it cannot be read.
    TShapeFileReader(QIODevice& device, const QString& fileName);

    /// Goes to the next record, over what was not read of the one before. rsNone behind the last one.
    TShapeRecordState Next();

    // Of the record that Next found good.
    TShapeKind GetKind() const { return FKind; }
    std::size_t GetPartCount() const { return FPartCount; }   ///< 0 for points
    std::size_t GetPointCount() const { return FPointCount; } ///< vertices of all parts
    /// Its place among the records of the file, from 0, whatever number it carries.
    std::uint32_t GetRecord() const { return static_cast<std::uint32_t>(FRecord - 1); }

    /// Appends the index of each part's first vertex, counted from `base`. Call it before ReadPoints. False if the
    /// record is damaged: the first one is not 0, one lies beyond the vertices, or they descend.
    bool ReadPartStarts(std::uint32_t base, std::vector<std::uint32_t>& starts);
    /// Appends the vertices as they stand in the file, be they numbers or not.
    void ReadPoints(std::vector<TShpPoint>& points);

    /// @throws EFileFormatException that says what is wrong with the damaged record.
    [[noreturn]] void Refuse() const;

    /// Goes back to the first record.
    void Restart();

private:
    bool IsJunk(std::int32_t number, std::int64_t content) const;
    bool ReadRecordHeading(std::int64_t content);
    bool ReadCounts(std::int32_t type, std::int64_t content);
    bool Damaged(const char* problem);
    const char* Bytes(std::int64_t count);

    QIODevice& FDevice;
    QString FFileName;
    std::int64_t FSize;
    QByteArray FBlock;
    std::int64_t FBlockStart = 0;
    std::int64_t FPosition = 0;
    std::int64_t FRecordEnd = 0;
    std::int64_t FRecord = 0;
    const char* FProblem = "";
    bool FAllLengthsFit = true;
    TShapeKind FKind = TShapeKind::skNull;
    std::size_t FPartCount = 0;
    std::size_t FPointCount = 0;
    std::int64_t FBytesBetween = 0; ///< between part starts and vertices: the types of a multipatch's parts
};

} // namespace lmx
