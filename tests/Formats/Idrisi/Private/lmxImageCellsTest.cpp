#include <lmx/Formats/Idrisi/Private/lmxImageCells.h>
#include <lmx/Formats/Text/Private/lmxAsciiNumber.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Support/Printers.h>

#include <QBuffer>

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

namespace lmx::tests {

namespace {

const QString Name = QStringLiteral("x.rst");

template<class Cell>
std::vector<Cell> Read(QByteArray bytes, TImageFileType type, std::uint64_t count) {
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    return ReadCells<Cell>(buffer, type, count, Name);
}

QByteArray Bytes(std::initializer_list<int> values) {
    QByteArray bytes;
    for (const int value : values)
        bytes += static_cast<char>(value);
    return bytes;
}

template<class Cell>
QString FaultOf(const QByteArray& bytes, TImageFileType type, std::uint64_t count) {
    return MessageOf<EFileFormatException>([&] { Read<Cell>(bytes, type, count); });
}

} // namespace

TEST(ImageCellsBinary, AreLittleEndian) {
    EXPECT_EQ(Read<std::uint8_t>(Bytes({0, 255}), TImageFileType::ftBinary, 2), (std::vector<std::uint8_t>{0, 255}));
    EXPECT_EQ(Read<std::int16_t>(Bytes({1, 2, 0, 0x80}), TImageFileType::ftBinary, 2),
              (std::vector<std::int16_t>{0x0201, -32768}));
    EXPECT_EQ(Read<float>(Bytes({0, 0, 0xC0, 0x3F}), TImageFileType::ftBinary, 1), std::vector<float>{1.5F});
}

TEST(ImageCellsBinary, MayBeFollowedByMore) {
    EXPECT_EQ(Read<std::uint8_t>(Bytes({1, 2, 3}), TImageFileType::ftBinary, 2), (std::vector<std::uint8_t>{1, 2}));
}

TEST(ImageCellsBinary, MustAllBeThere) {
    EXPECT_EQ(FaultOf<float>(Bytes({1, 2, 3}), TImageFileType::ftBinary, 1),
              QStringLiteral("x.rst: the header claims 1 cells, the data hold 0"));
}

namespace {

/// A sparse file larger than any memory.
class TEndlessZeros final : public QIODevice {
public:
    TEndlessZeros() { open(QIODevice::ReadOnly | QIODevice::Unbuffered); }
    qint64 size() const override { return std::numeric_limits<qint64>::max() / 2; }

protected:
    qint64 readData(char* data, qint64 wanted) override {
        std::fill_n(data, wanted, '\0');
        return wanted;
    }
    qint64 writeData(const char*, qint64) override { return -1; }
};

} // namespace

TEST(ImageCells, ThatFillALargerFileThanMemoryAreRefused) {
    constexpr std::uint64_t many = std::uint64_t{1} << 59;
    const QString message = QStringLiteral("x.rst: does not fit into memory");
    TEndlessZeros file;
    const auto read = [&]<class Cell>(Cell*, TImageFileType type) {
        return MessageOf<EFileException>([&] { ReadCells<Cell>(file, type, many, Name); });
    };
    std::uint8_t* const bytes = nullptr;
    float* const singles = nullptr;
    EXPECT_EQ(read(bytes, TImageFileType::ftBinary), message);
    EXPECT_EQ(read(singles, TImageFileType::ftBinary), message);
    EXPECT_EQ(read(singles, TImageFileType::ftAscii), message);
}

TEST(ImageCellsBinary, ClaimedByAHeaderTakeNoMemory) {
    const std::uint64_t most = std::uint64_t{2147483647} * 2147483647;
    EXPECT_EQ(FaultOf<std::uint8_t>(Bytes({1}), TImageFileType::ftBinary, most),
              QStringLiteral("x.rst: the header claims 4611686014132420609 cells, the data hold 1"));
    EXPECT_EQ(FaultOf<float>(Bytes({1}), TImageFileType::ftAscii, most),
              QStringLiteral("x.rst: the header claims 4611686014132420609 cells, the data hold 1"));
}

TEST(ImageCellsBinary, BeyondSixtyFourBitsOfBytesAreRefused) {
    const std::uint64_t most = std::uint64_t{2147483647} * 2147483647; // times 4 wraps in 64 bits
    EXPECT_EQ(FaultOf<float>(QByteArray(16, '\0'), TImageFileType::ftBinary, most),
              QStringLiteral("x.rst: the header claims 4611686014132420609 cells, the data hold 4"));
}

TEST(ImageCellsAscii, AreSeparatedByAnyWhiteSpace) {
    EXPECT_EQ(Read<float>("1 2.5\r\n-3e2\t\n\n +4", TImageFileType::ftAscii, 4),
              (std::vector<float>{1, 2.5F, -300, 4}));
    EXPECT_EQ(Read<float>("1 2 x", TImageFileType::ftAscii, 2), (std::vector<float>{1, 2}));
}

TEST(ImageCellsAscii, MustAllBeNumbers) {
    EXPECT_EQ(FaultOf<float>("1 2 x4 5", TImageFileType::ftAscii, 4), QStringLiteral("x.rst: cell 3 is not a number"));
    EXPECT_EQ(FaultOf<float>("1,5 2,5", TImageFileType::ftAscii, 2), QStringLiteral("x.rst: cell 1 is not a number"));
    EXPECT_EQ(FaultOf<float>("1e39 2", TImageFileType::ftAscii, 2), QStringLiteral("x.rst: cell 1 is not a number"));
    EXPECT_EQ(FaultOf<float>("1 2   \r\n", TImageFileType::ftAscii, 3),
              QStringLiteral("x.rst: the header claims 3 cells, the data hold 2"));
}

TEST(ImageCellsAscii, OfManyBlocksComeBack) {
    QByteArray text;
    std::vector<float> cells;
    for (int i = 0; i < 50'000; ++i) {
        cells.push_back(static_cast<float>(i) / 8);
        AppendAsciiNumber(text, cells.back());
        text += i % 3 == 0 ? "\r\n" : " ";
    }
    EXPECT_EQ(Read<float>(text, TImageFileType::ftAscii, cells.size()), cells);
    EXPECT_EQ(Read<float>(text.trimmed(), TImageFileType::ftAscii, cells.size()), cells);
    EXPECT_EQ(FaultOf<float>(text, TImageFileType::ftAscii, cells.size() + 1),
              QStringLiteral("x.rst: the header claims 50001 cells, the data hold 50000"));
}

TEST(ImageCellsAscii, MayHaveAnyDistance) {
    const QByteArray gap(200'000, ' ');
    EXPECT_EQ(Read<float>(gap + "1" + gap + "2" + gap, TImageFileType::ftAscii, 2), (std::vector<float>{1, 2}));
    EXPECT_EQ(FaultOf<float>(gap, TImageFileType::ftAscii, 1),
              QStringLiteral("x.rst: the header claims 1 cells, the data hold 0"));
}

TEST(ImageCellsAscii, ANumberOfEndlessDigitsIsNone) {
    EXPECT_EQ(Read<float>(QByteArray(60'000, '0') + "7 8", TImageFileType::ftAscii, 2), (std::vector<float>{7, 8}));
    EXPECT_EQ(FaultOf<float>("5 " + QByteArray(200'000, '0') + "7 8", TImageFileType::ftAscii, 3),
              QStringLiteral("x.rst: cell 2 is not a number"));
}

TEST(ImageCellsPacked, HoldACountAndAValue) {
    const std::vector<std::uint8_t> image = {7, 7, 7, 9, 9};
    EXPECT_EQ(Read<std::uint8_t>(Bytes({3, 7, 2, 9}), TImageFileType::ftPacked, 5), image);
    EXPECT_EQ(Read<std::int16_t>(Bytes({2, 0, 0xFF, 0xFF, 1, 0, 0, 1}), TImageFileType::ftPacked, 3),
              (std::vector<std::int16_t>{-1, -1, 256}));
}

TEST(ImageCellsPacked, DoNotGrowFromKilobytesToGigabytes) {
    QByteArray runs;
    for (int run = 0; run < 4097; ++run)
        runs += Bytes({0xFF, 0xFF, 7}); // 65535 cells of 7
    EXPECT_EQ(FaultOf<std::uint8_t>(runs, TImageFileType::ftPacked, std::uint64_t{65535} * 4097),
              QStringLiteral("x.rst: a packed image holds at most 268435456 cells"));
}

TEST(ImageCellsPacked, MayHoldCountsOfSixteenBits) {
    EXPECT_EQ(Read<std::uint8_t>(Bytes({0, 1, 7, 1, 0, 9}), TImageFileType::ftPacked, 257).back(), 9);
    EXPECT_EQ(Read<std::uint8_t>(Bytes({0, 1, 7, 1, 0, 9}), TImageFileType::ftPacked, 257).front(), 7);
}

TEST(ImageCellsPacked, MayHoldTheValueFirst) {
    EXPECT_EQ(Read<std::uint8_t>(Bytes({0, 3, 9, 2}), TImageFileType::ftPacked, 5),
              (std::vector<std::uint8_t>{0, 0, 0, 9, 9}));
    EXPECT_EQ(Read<std::int16_t>(Bytes({0, 1, 2, 0}), TImageFileType::ftPacked, 2),
              (std::vector<std::int16_t>{256, 256}));
}

TEST(ImageCellsPacked, AreRefusedWhenNoLayoutFits) {
    const QString message = QStringLiteral("x.rst: the run lengths do not add up to the image");
    EXPECT_EQ(FaultOf<std::uint8_t>(QByteArray(7, '\1'), TImageFileType::ftPacked, 2), message) << "longer than any";
    EXPECT_EQ(FaultOf<std::uint8_t>(Bytes({3, 7, 2, 9}), TImageFileType::ftPacked, 6), message);
    EXPECT_EQ(FaultOf<std::uint8_t>(Bytes({3, 7, 2}), TImageFileType::ftPacked, 5), message);
    EXPECT_EQ(FaultOf<std::uint8_t>(Bytes({0, 0, 5, 0}), TImageFileType::ftPacked, 5), message);
    EXPECT_EQ(FaultOf<std::uint8_t>(QByteArray(), TImageFileType::ftPacked, 1), message);
    EXPECT_EQ(FaultOf<float>(Bytes({1, 0, 0, 0}), TImageFileType::ftPacked, 1),
              QStringLiteral("x.rst: an image of real numbers cannot be packed"));
}

TEST(ImageCells, AreWrittenLittleEndianAndAbsentOnesAsZeros) {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    EXPECT_TRUE(WriteCells<std::int16_t>(buffer, {0x0102, -2}, 2));
    EXPECT_TRUE(WriteCells<float>(buffer, {}, 1));
    EXPECT_EQ(buffer.data(), Bytes({2, 1, 0xFE, 0xFF, 0, 0, 0, 0}));
}

TEST(ImageCells, OfManyBlocksComeBack) {
    std::vector<float> cells;
    for (int i = 0; i < 100'001; ++i)
        cells.push_back(static_cast<float>(i) / 7);
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    ASSERT_TRUE(WriteCells(buffer, cells, cells.size()));
    EXPECT_EQ(Read<float>(buffer.data(), TImageFileType::ftBinary, cells.size()), cells);
}

} // namespace lmx::tests
