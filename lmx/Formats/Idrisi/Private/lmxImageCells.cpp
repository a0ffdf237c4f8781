#include <lmx/Formats/Idrisi/Private/lmxImageCells.h>

#include <lmx/Formats/Text/Private/lmxAsciiNumber.h>
#include <lmx/Runtime/Private/lmxMemory.h>
#include <lmx/Runtime/Private/lmxReplacementFile.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxNumberText.h>

#include <QIODevice>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <limits>
#include <type_traits>

namespace lmx {

namespace {

/// Most cells of a packed image: a few kilobytes of run lengths can stand for gigabytes of cells.
constexpr std::uint64_t MostPackedCells = std::uint64_t{1} << 28;

[[noreturn]] void RefuseShortData(std::uint64_t claimed, std::uint64_t present, const QString& fileName) {
    throw EFileFormatException(
        fileName, QStringLiteral("the header claims ") + IntToStr(static_cast<std::int64_t>(claimed)) +
                      QStringLiteral(" cells, the data hold ") + IntToStr(static_cast<std::int64_t>(present)));
}

std::uint64_t BytesIn(const QIODevice& device) {
    return static_cast<std::uint64_t>(std::max<qint64>(0, device.bytesAvailable()));
}

template<class Cell>
std::vector<Cell> ReadBinary(QIODevice& device, std::uint64_t count, const QString& fileName) {
    const std::uint64_t present = BytesIn(device) / sizeof(Cell);
    if (present < count)
        RefuseShortData(count, present, fileName);
    NeedMemoryFor<Cell>(count);
    std::vector<Cell> cells;
    cells.reserve(count);
    PreferLargePages(cells.data(), count * sizeof(Cell));
    constexpr std::uint64_t MostAtOnce = 16 * 1024; // what is set to zero is still in the cache when it is read
    while (cells.size() < count) {
        const std::size_t start = cells.size();
        const std::size_t part = std::min(MostAtOnce, count - start);
        cells.resize(start + part);
        const auto size = static_cast<qint64>(part) * static_cast<qint64>(sizeof(Cell));
        char* const bytes = reinterpret_cast<char*>(cells.data() + start);
        if (device.read(bytes, size) != size)
            throw EFileFormatException(fileName, QStringLiteral("cannot be read: ") + device.errorString());
        qFromLittleEndian<Cell>(bytes, static_cast<qsizetype>(part), bytes);
    }
    return cells;
}

/// The numbers of a text, read block by block: a file of any length takes little memory.
class TNumberReader {
public:
    explicit TNumberReader(QIODevice& device) : FDevice(device) {}

    /// Takes the next number. False if the text is at its end, or if what comes next is none.
    bool TryTake(float& number) {
        while (!TakeAsciiNumber(FRest, number))
            if (!FRest.isEmpty() || !ReadBlock())
                return false;
        return true;
    }
    bool IsAtEnd() const { return FRest.isEmpty(); }

private:
    static constexpr qint64 BlockSize = 64 * 1024;

    // Goes on to the words that the next block completes. False if there are none: at the end of the text, and where a
    // word fills a whole block, which no number does.
    bool ReadBlock() {
        FText.remove(0, FEnd);
        const QByteArray block = FDevice.read(BlockSize);
        FText += block;
        FEnd = block.isEmpty() ? FText.size() : EndOfLastWord(FText);
        FRest = QByteArrayView(FText).first(FEnd > 0 ? FEnd : FText.size());
        return FEnd > 0;
    }

    static qsizetype EndOfLastWord(const QByteArray& text) {
        qsizetype end = text.size();
        while (end > 0 && !IsAsciiWhiteSpace(text[end - 1]))
            --end;
        return end;
    }

    QIODevice& FDevice;
    QByteArray FText;
    qsizetype FEnd = 0; ///< of the words that are complete
    QByteArrayView FRest;
};

template<class Cell>
std::vector<Cell> ReadAscii(QIODevice& device, std::uint64_t count, const QString& fileName) {
    // A number takes a character and, but for the last, a separator.
    const std::uint64_t most = (BytesIn(device) + 1) / 2;
    if (most < count)
        RefuseShortData(count, most, fileName);
    NeedMemoryFor<Cell>(count);
    std::vector<Cell> cells;
    cells.reserve(count); // its pages are taken as they fill
    TNumberReader reader(device);
    for (std::uint64_t i = 0; i < count; ++i) {
        float number = 0;
        if (reader.TryTake(number)) {
            cells.push_back(static_cast<Cell>(number));
            continue;
        }
        if (reader.IsAtEnd())
            RefuseShortData(count, i, fileName);
        throw EFileFormatException(fileName, QStringLiteral("cell ") + IntToStr(static_cast<std::int64_t>(i + 1)) +
                                                 QStringLiteral(" is not a number"));
    }
    return cells;
}

struct TRunLayout {
    std::size_t CountSize;
    bool CountIsFirst;
};

template<class Number>
Number NumberAt(const char* bytes) {
    return qFromLittleEndian<Number>(bytes);
}

// Walks the pairs of a layout and gives each to `takeRun(count, value)`. False if the layout does not fit.
template<class Cell, class TakeRun>
bool WalkRuns(QByteArrayView bytes, TRunLayout layout, std::uint64_t count, TakeRun&& takeRun) {
    const std::size_t pairSize = layout.CountSize + sizeof(Cell);
    if (bytes.isEmpty() || static_cast<std::size_t>(bytes.size()) % pairSize != 0)
        return false;
    std::uint64_t sum = 0;
    for (const char* pair = bytes.begin(); pair != bytes.end(); pair += pairSize) {
        const char* number = layout.CountIsFirst ? pair : pair + sizeof(Cell);
        const char* value = layout.CountIsFirst ? pair + layout.CountSize : pair;
        const std::uint64_t run = layout.CountSize == 1 ? NumberAt<quint8>(number) : NumberAt<quint16>(number);
        if (run == 0 || run > count - sum)
            return false;
        sum += run;
        takeRun(run, NumberAt<Cell>(value));
    }
    return sum == count;
}

template<class Cell>
std::vector<Cell> ReadPacked(QIODevice& device, std::uint64_t count, const QString& fileName) {
    if constexpr (std::is_floating_point_v<Cell>) {
        throw EFileFormatException(fileName, QStringLiteral("an image of real numbers cannot be packed"));
    } else {
        if (count > MostPackedCells)
            throw EFileFormatException(fileName, QStringLiteral("a packed image holds at most 268435456 cells"));
        // No layout uses up more than the widest pair for each cell: what is longer need not be read.
        const bool mayFit = BytesIn(device) <= count * (sizeof(quint16) + sizeof(Cell));
        const QByteArray bytes = mayFit ? device.readAll() : QByteArray();
        constexpr std::array<TRunLayout, 3> layouts = {{{sizeof(Cell), true}, {2, true}, {sizeof(Cell), false}}};
        for (const TRunLayout& layout : layouts) {
            if (!WalkRuns<Cell>(bytes, layout, count, [](std::uint64_t, Cell) {}))
                continue;
            std::vector<Cell> cells;
            cells.reserve(count);
            WalkRuns<Cell>(bytes, layout, count,
                           [&](std::uint64_t run, Cell value) { cells.insert(cells.end(), run, value); });
            return cells;
        }
        throw EFileFormatException(fileName, QStringLiteral("the run lengths do not add up to the image"));
    }
}

} // namespace

template<class Cell>
std::vector<Cell> ReadCells(QIODevice& device, TImageFileType type, std::uint64_t count, const QString& fileName) {
    return WithinMemory(fileName, [&] {
        switch (type) {
        case TImageFileType::ftAscii:
            return ReadAscii<Cell>(device, count, fileName);
        case TImageFileType::ftPacked:
            return ReadPacked<Cell>(device, count, fileName);
        case TImageFileType::ftBinary:
            break;
        }
        return ReadBinary<Cell>(device, count, fileName);
    });
}

template<class Cell>
bool WriteCells(QIODevice& device, const std::vector<Cell>& cells, std::uint64_t count) {
    constexpr std::uint64_t BlockLength = 16 * 1024;
    std::vector<Cell> block(std::min(BlockLength, count));
    for (std::uint64_t start = 0; start < count; start += block.size()) {
        const auto length = static_cast<qsizetype>(std::min<std::uint64_t>(block.size(), count - start));
        if (!cells.empty())
            qToLittleEndian<Cell>(cells.data() + start, length, block.data());
        if (!WriteAll(device, {reinterpret_cast<const char*>(block.data()), length * qsizetype{sizeof(Cell)}}))
            return false;
    }
    return true;
}

template std::vector<std::uint8_t> ReadCells(QIODevice&, TImageFileType, std::uint64_t, const QString&);
template std::vector<std::int16_t> ReadCells(QIODevice&, TImageFileType, std::uint64_t, const QString&);
template std::vector<float> ReadCells(QIODevice&, TImageFileType, std::uint64_t, const QString&);
template bool WriteCells(QIODevice&, const std::vector<std::uint8_t>&, std::uint64_t);
template bool WriteCells(QIODevice&, const std::vector<std::int16_t>&, std::uint64_t);
template bool WriteCells(QIODevice&, const std::vector<float>&, std::uint64_t);

} // namespace lmx
