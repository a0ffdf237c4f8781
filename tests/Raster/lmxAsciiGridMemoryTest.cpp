#include <lmx/Raster/lmxArcInfoAsciiGridRasterFrame.h>
#include <lmx/Raster/lmxLinearRasterFrame.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Support/CountedMemory.h>

#include <QBuffer>

#include <gtest/gtest.h>

#include <algorithm>

// Reading a grid takes the memory of its cells, of a block of the file and of one line.

namespace lmx {
namespace {

using tests::BytesOf;

constexpr std::size_t Little = 500'000; // far more than a block of the stream and a line, far less than any claim

/// Bytes in memory.
class TText final : public QBuffer {
public:
    explicit TText(const QByteArray& text) {
        setData(text);
        open(QIODevice::ReadOnly);
    }
};

/// Bytes that come one after the other, nobody knows how many.
class TPipe final : public QIODevice {
public:
    explicit TPipe(const QByteArray& text) : FText(text) { open(QIODevice::ReadOnly | QIODevice::Unbuffered); }
    bool isSequential() const override { return true; }

protected:
    qint64 readData(char* data, qint64 wanted) override {
        const QByteArray piece = FText.mid(FAt, wanted);
        std::copy(piece.begin(), piece.end(), data);
        FAt += piece.size();
        return piece.size();
    }
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    QByteArray FText;
    qsizetype FAt = 0;
};

template<class Stream = TText>
std::size_t BytesToRead(const QByteArray& text) {
    Stream stream(text);
    return BytesOf([&stream] {
        try {
            TArcInfoAsciiGridRasterFrame(stream, TDataKind::dkFloat);
        } catch (const Exception&) { // of a claim that does not hold
        }
    });
}

QByteArray Heading(const QByteArray& columns, const QByteArray& rows) {
    return "ncols " + columns + "\nnrows " + rows + "\nxllcorner 0\nyllcorner 0\ncellsize 1\nNODATA_value 0\n";
}

QByteArray Line(int columns) {
    return QByteArray("1 ").repeated(columns - 1) + "1\n";
}

TEST(AsciiGridMemory, IsCounted) {
    const std::size_t bytes = BytesOf([] { TLinearRasterFrame(TMapArea(), 10, 10, TDataKind::dkDouble); });
    EXPECT_GE(bytes, 100 * sizeof(double));
}

TEST(AsciiGridMemory, IsThatOfTheFrameAndOneLine) {
    const QByteArray text = Heading("1000", "400") + Line(1000).repeated(400);
    ASSERT_GT(static_cast<std::size_t>(text.size()), Little) << "the whole text would be noticed";
    EXPECT_LT(BytesToRead(text), 1000 * 400 * sizeof(float) + Little);
}

TEST(AsciiGridMemory, IsNotTakenForAMereClaim) {
    EXPECT_LT(BytesToRead(Heading("2147483647", "2147483647") + Line(3)), Little);
    EXPECT_LT(BytesToRead(Heading("3", "2147483647") + Line(3)), Little);
    EXPECT_LT(BytesToRead(Heading("2147483647", "1") + Line(3)), Little);
    EXPECT_LT(BytesToRead<TPipe>(Heading("2147483647", "2147483647") + Line(3)), Little);
    EXPECT_LT(BytesToRead(Heading("1", "600000") + "x\n" + QByteArray(1'000'000, '1')), Little)
        << "a cell takes two bytes at least";
}

TEST(AsciiGridMemory, GrowsWithTheRowsOfAStreamOfUnknownLength) {
    const std::size_t cells = 1000 * 400 * sizeof(float);
    const std::size_t bytes = BytesToRead<TPipe>(Heading("1000", "400") + Line(1000).repeated(400));
    EXPECT_GT(bytes, cells);
    EXPECT_LT(bytes, 4 * cells) << "all steps of a growth by doubling";
}

} // namespace
} // namespace lmx
