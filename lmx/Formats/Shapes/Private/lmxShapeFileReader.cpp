#include <lmx/Formats/Shapes/Private/lmxShapeFileReader.h>

#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxNumberText.h>

#include <QIODevice>
#include <QtEndian>

#include <algorithm>
#include <array>

namespace lmx {

namespace {

constexpr std::int64_t FileHeaderSize = 100;
constexpr std::int64_t RecordHeaderSize = 8;
constexpr std::int64_t PointSize = 16;
constexpr std::int64_t BlockSize = 256 * 1024;
constexpr std::int32_t FileCode = 9994;
constexpr std::int32_t MultiPatchType = 31;

/// A type of record; its Z and M forms are 10 and 20 above it.
struct TShapeForm {
    TShapeKind Kind;
    bool HasZ;
    bool HasM;
};

bool TryForm(std::int32_t type, TShapeForm& form) {
    const bool hasZ = type >= 10 && type < 20;
    const bool hasM = hasZ || (type >= 20 && type < 30);
    const std::int32_t plain = type == MultiPatchType ? 5 : hasZ ? type - 10 : hasM ? type - 20 : type;
    constexpr std::array<std::int32_t, 4> types = {1, 3, 5, 8};
    constexpr std::array<TShapeKind, 4> kinds = {TShapeKind::skPoint, TShapeKind::skPolyLine, TShapeKind::skPolygon,
                                                 TShapeKind::skMultiPoint};
    const auto found = std::find(types.begin(), types.end(), plain);
    if (found == types.end())
        return false;
    form = {kinds[static_cast<std::size_t>(found - types.begin())], hasZ || type == MultiPatchType,
            hasM || type == MultiPatchType};
    return true;
}

} // namespace

TShapeFileReader::TShapeFileReader(QIODevice& device, const QString& fileName)
    : FDevice(device),
      FFileName(fileName),
      FSize(device.size()) {
    if (FSize < FileHeaderSize)
        throw EFileFormatException(fileName, QStringLiteral("the header is cut short"));
    if (qFromBigEndian<std::int32_t>(Bytes(FileHeaderSize)) != FileCode)
        throw EFileFormatException(fileName, QStringLiteral("not a shape file"));
    Restart();
}

void TShapeFileReader::Restart() {
    FRecord = 0;
    FRecordEnd = FileHeaderSize;
    FAllLengthsFit = true;
}

bool TShapeFileReader::Damaged(const char* problem) {
    FProblem = problem;
    FAllLengthsFit = false;
    return false;
}

void TShapeFileReader::Refuse() const {
    throw EFileFormatException(FFileName,
                               QStringLiteral("record ") + IntToStr(FRecord) + u' ' + QString::fromLatin1(FProblem));
}

// The next bytes of the file, valid until the next call; no more than a block.
const char* TShapeFileReader::Bytes(std::int64_t count) {
    if (FPosition < FBlockStart || FPosition + count > FBlockStart + FBlock.size()) {
        FBlock.resize(std::min(BlockSize, FSize - FPosition));
        FBlockStart = FPosition;
        if (!FDevice.seek(FPosition) || FDevice.read(FBlock.data(), FBlock.size()) != FBlock.size()) {
            FBlock.clear();
            throw EFileException(FFileName, QStringLiteral("cannot be read: ") + FDevice.errorString());
        }
    }
    const char* bytes = FBlock.constData() + (FPosition - FBlockStart);
    FPosition += count;
    return bytes;
}

// Bytes behind the last record that no writer of records made: they begin with a number that no record can have. When a
// record before had another length than its content needs, the length is to blame instead.
bool TShapeFileReader::IsJunk(std::int32_t number, std::int64_t content) const {
    const bool fits = content >= 4 && content <= FSize - FPosition;
    return !fits && FAllLengthsFit && (number < 0 || number > FSize / RecordHeaderSize);
}

TShapeRecordState TShapeFileReader::Next() {
    if (FSize - FRecordEnd < RecordHeaderSize)
        return TShapeRecordState::rsNone;
    FPosition = FRecordEnd;
    const char* heading = Bytes(RecordHeaderSize);
    const auto number = qFromBigEndian<std::int32_t>(heading);
    const std::int64_t content = 2 * std::int64_t{qFromBigEndian<std::int32_t>(heading + 4)};
    if (IsJunk(number, content))
        return TShapeRecordState::rsNone;
    ++FRecord;
    FRecordEnd = FSize;
    bool isGood = false;
    if (content < 4)
        isGood = Damaged("has an impossible length");
    else if (content > FSize - FPosition)
        isGood = Damaged("is cut short");
    else
        isGood = ReadRecordHeading(content);
    return isGood ? TShapeRecordState::rsGood : TShapeRecordState::rsDamaged;
}

bool TShapeFileReader::ReadRecordHeading(std::int64_t content) {
    FRecordEnd = FPosition + content;
    const auto type = qFromLittleEndian<std::int32_t>(Bytes(4));
    FKind = TShapeKind::skNull;
    FPartCount = 0;
    FPointCount = 0;
    FBytesBetween = 0;
    if (type != 0)
        return ReadCounts(type, content);
    if (content != 4)
        FAllLengthsFit = false;
    return true;
}

bool TShapeFileReader::ReadCounts(std::int32_t type, std::int64_t content) {
    TShapeForm form{};
    if (!TryForm(type, form))
        return Damaged("is of an unknown type");
    std::int64_t parts = 0;
    std::int64_t points = 1;
    std::int64_t needed = 4;
    if (form.Kind != TShapeKind::skPoint) {
        const bool hasParts = form.Kind != TShapeKind::skMultiPoint;
        needed = hasParts ? 44 : 40;
        if (content < needed)
            return Damaged("is too short for its counts");
        FPosition += 32; // the box
        if (hasParts)
            parts = qFromLittleEndian<std::int32_t>(Bytes(4));
        points = qFromLittleEndian<std::int32_t>(Bytes(4));
        if (parts < 0 || points < 0)
            return Damaged("has a negative count");
    }
    FBytesBetween = type == MultiPatchType ? 4 * parts : 0;
    needed += 4 * parts + FBytesBetween + PointSize * points;
    if (content < needed)
        return Damaged("is too short for its counts");
    const std::int64_t measures = form.Kind == TShapeKind::skPoint ? 8 : 16 + 8 * points;
    const std::int64_t more = content - needed;
    const std::int64_t withZ = form.HasZ ? measures : 0;
    FAllLengthsFit = FAllLengthsFit && (more == 0 || more == withZ || (form.HasM && more == withZ + measures));
    FKind = form.Kind;
    FPartCount = static_cast<std::size_t>(parts);
    FPointCount = static_cast<std::size_t>(points);
    return true;
}

bool TShapeFileReader::ReadPartStarts(std::uint32_t base, std::vector<std::uint32_t>& starts) {
    std::int64_t before = 0;
    for (std::size_t i = 0; i < FPartCount; ++i) {
        const auto start = std::int64_t{qFromLittleEndian<std::int32_t>(Bytes(4))};
        if (start < before || (i == 0 && start != 0) || start > static_cast<std::int64_t>(FPointCount))
            return Damaged("has parts that are out of order");
        starts.push_back(base + static_cast<std::uint32_t>(start));
        before = start;
    }
    return true;
}

void TShapeFileReader::ReadPoints(std::vector<TShpPoint>& points) {
    FPosition += FBytesBetween;
    for (auto left = static_cast<std::int64_t>(FPointCount); left > 0;) {
        const std::int64_t chunk = std::min(left, BlockSize / PointSize);
        const char* bytes = Bytes(chunk * PointSize);
        for (std::int64_t i = 0; i < chunk; ++i, bytes += PointSize)
            points.push_back({qFromLittleEndian<double>(bytes), qFromLittleEndian<double>(bytes + 8)});
        left -= chunk;
    }
}

} // namespace lmx
