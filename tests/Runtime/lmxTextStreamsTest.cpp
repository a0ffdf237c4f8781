#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxText.h>
#include <lmx/Runtime/lmxTextStreams.h>
#include <tests/Support/Printers.h>

#include <QBuffer>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace lmx {
namespace {

using tests::MessageOf;

/// Bytes in memory; without positions if `isSequential`, and at most `piece` of them at a time.
class TBytes : public QIODevice {
public:
    explicit TBytes(QByteArray bytes, bool isSequential = false, qint64 piece = 1 << 20)
        : FBytes(std::move(bytes)),
          FIsSequential(isSequential),
          FPiece(piece) {
        open(QIODevice::ReadWrite | QIODevice::Unbuffered);
    }
    bool isSequential() const override { return FIsSequential; }
    qint64 size() const override { return FIsSequential ? 0 : FBytes.size(); }
    bool Fails = false;

protected:
    qint64 readData(char* data, qint64 wanted) override {
        if (Fails)
            return -1;
        if (!FIsSequential)
            FAt = pos();
        const qint64 count = std::min({wanted, FPiece, FBytes.size() - FAt});
        std::copy_n(FBytes.constData() + FAt, count, data);
        FAt += count;
        return count;
    }
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    QByteArray FBytes;
    bool FIsSequential;
    qint64 FPiece;
    qint64 FAt = 0;
};

QStringList LinesOf(QIODevice& stream, int count) {
    TStreamReader reader(stream);
    QStringList lines;
    for (int i = 0; i < count; ++i)
        lines += reader.ReadLine();
    return lines;
}

struct TLinesRow {
    const char* Name;
    QByteArray Text;
    QStringList Lines;
};

class LinesOfAStream : public testing::TestWithParam<TLinesRow> {};

TEST_P(LinesOfAStream, AreTheSameInPiecesOfAnySize) {
    const QStringList& expected = GetParam().Lines;
    for (const qint64 piece : {1, 2, 3, 1 << 20}) {
        for (const bool isSequential : {false, true}) {
            TBytes stream(GetParam().Text, isSequential, piece);
            EXPECT_EQ(LinesOf(stream, static_cast<int>(expected.size())), expected) << piece << isSequential;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    Rows, LinesOfAStream,
    testing::Values(TLinesRow{"LineFeeds", "a\nb\n\nc", {"a", "b", "", "c", "", ""}},
                    TLinesRow{"CarriageReturns", "a\rb\r\rc\r", {"a", "b", "", "c", "", ""}},
                    TLinesRow{"Both", "a\r\nb\r\n\r\nc", {"a", "b", "", "c", ""}},
                    TLinesRow{"Mixed", "a\n\rb\r\r\nc\n", {"a", "", "b", "", "c", ""}},
                    TLinesRow{"Nothing", "", {"", "", ""}}, TLinesRow{"Blanks", "  a \n\t\n", {"  a ", "\t", ""}},
                    TLinesRow{"Mark",
                              "\xEF\xBB\xBF"
                              "a\nb",
                              {"a", "b", ""}},
                    TLinesRow{"MarkInside",
                              "a\n\xEF\xBB\xBF"
                              "b",
                              {"a", QString(QChar(0xFEFF)) + "b"}},
                    TLinesRow{"TwoMarks",
                              "\xEF\xBB\xBF\xEF\xBB\xBF"
                              "a",
                              {QString(QChar(0xFEFF)) + "a", ""}},
                    TLinesRow{"PartOfAMark",
                              "\xEF\xBB\n"
                              "a",
                              {QString(2, QChar(0xFFFD)), "a", ""}},
                    TLinesRow{"NothingButPartOfAMark", "\xEF\xBB", {QString(2, QChar(0xFFFD)), ""}},
                    TLinesRow{"OnlyTheMark", "\xEF\xBB\xBF", {"", ""}},
                    TLinesRow{"Umlaut", "\xC3\xBC\n", {QString(QChar(0xFC)), ""}},
                    TLinesRow{"NotUtf8", "\xFF\n", {QString(QChar(0xFFFD)), ""}}),
    [](const auto& row) { return row.param.Name; });

TEST(StreamReader, ReadsLinesLongerThanItsBlock) {
    const QByteArray longLine(200'000, 'x');
    for (const QByteArray& end : {QByteArray("\n"), QByteArray("\r"), QByteArray("\r\n")}) {
        TBytes stream("a" + end + longLine + end + "b" + end);
        EXPECT_EQ(LinesOf(stream, 4), QStringList({"a", QString::fromLatin1(longLine), "b", ""}));
    }
}

TEST(StreamReader, FindsALineEndOnTheEdgeOfItsBlock) {
    for (int size = 65'530; size <= 65'540; ++size) {
        const QByteArray line(size, 'x');
        TBytes stream(line + "\r\n" + "b\r\n");
        EXPECT_EQ(LinesOf(stream, 3), QStringList({QString::fromLatin1(line), "b", ""})) << size;
    }
}

TEST(StreamReader, LeavesTheStreamBehindTheLastLine) {
    for (const QByteArray& end : {QByteArray("\n"), QByteArray("\r"), QByteArray("\r\n")}) {
        QBuffer stream;
        stream.setData("one" + end + "two" + end + "rest");
        stream.open(QIODevice::ReadOnly);
        EXPECT_EQ(LinesOf(stream, 2), QStringList({"one", "two"}));
        EXPECT_EQ(stream.readAll(), "rest");
    }
}

TEST(StreamReader, BeginsWhereTheStreamStands) {
    QBuffer stream;
    stream.setData("head\na\nb");
    stream.open(QIODevice::ReadOnly);
    stream.seek(5);
    EXPECT_EQ(LinesOf(stream, 2), QStringList({"a", "b"}));
    EXPECT_EQ(stream.pos(), 8);
}

TEST(StreamReader, KnowsHowMuchIsLeft) {
    QBuffer buffer;
    buffer.setData("one\ntwo\n");
    buffer.open(QIODevice::ReadOnly);
    TStreamReader reader(buffer);
    EXPECT_EQ(reader.BytesLeft(), 8);
    reader.ReadLine();
    EXPECT_EQ(reader.BytesLeft(), 4);
    reader.ReadLine();
    reader.ReadLine();
    EXPECT_EQ(reader.BytesLeft(), 0);
    TBytes sequential("one\ntwo\n", true);
    EXPECT_EQ(TStreamReader(sequential).BytesLeft(), 0);
}

TEST(StreamReader, ReportsAStreamThatFails) {
    TBytes stream("a");
    stream.Fails = true;
    TStreamReader reader(stream);
    EXPECT_EQ(MessageOf<EFileException>([&] { reader.ReadLine(); }), "stream: cannot be read: Unknown error");
}

TEST(StreamReader, NumbersItsLines) {
    QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("grid.asc"));
    WriteFile(name, "a\nb");
    const auto file = OpenForReading(name);
    TStreamReader reader(*file);
    EXPECT_EQ(reader.GetName(), name);
    EXPECT_EQ(reader.GetLineNumber(), 0);
    reader.ReadLine();
    EXPECT_EQ(reader.GetPlace(), name + QStringLiteral(", line 1"));
    reader.ReadLine();
    EXPECT_EQ(reader.GetLineNumber(), 2);
    TBytes bytes("");
    EXPECT_EQ(TStreamReader(bytes).GetName(), "stream");
}

TEST(StreamReader, RefusesLinesThatNoTextHas) {
    const QByteArray longest(static_cast<qsizetype>(TStreamReader::LongestLine), 'x');
    for (const bool isSequential : {false, true}) {
        TBytes stream("a\n" + longest + "\nb", isSequential);
        TStreamReader reader(stream);
        reader.ReadLine();
        EXPECT_EQ(reader.ReadLineUtf8().size(), longest.size());
        EXPECT_EQ(reader.ReadLine(), "b");
        TBytes hostile("a\n" + longest + "x\nb", isSequential);
        TStreamReader refusing(hostile);
        refusing.ReadLine();
        EXPECT_EQ(MessageOf<EFileFormatException>([&] { refusing.ReadLine(); }),
                  "stream: line 2 is longer than 16777216 bytes");
    }
}

TEST(StreamReader, NeedsAStreamThatIsOpen) {
    QBuffer closed;
    EXPECT_EQ(MessageOf<EFileException>([&] { TStreamReader reader(closed); }), "stream: cannot be read: not open");
    QFile file(QStringLiteral("grid.asc"));
    EXPECT_EQ(MessageOf<EFileException>([&] { TStreamReader reader(file); }), "grid.asc: cannot be read: not open");
    EXPECT_EQ(MessageOf<EFileException>([&] { TStreamWriter writer(closed); }), "stream: cannot be written: not open");
}

TEST(OpenForReading, NamesTheFileThatCannotBeRead) {
    QTemporaryDir folder;
    const QString missing = folder.filePath(QStringLiteral("missing.asc"));
    EXPECT_EQ(MessageOf<EFileException>([&] { OpenForReading(missing); }),
              missing + QStringLiteral(": cannot be read: No such file or directory"));
    WriteFile(folder.filePath(QStringLiteral("a")), "text");
    EXPECT_EQ(OpenForReading(folder.filePath(QStringLiteral("a")))->readAll(), "text");
}

TEST(StreamWriter, EndsEachLineAndWritesUtf8WithoutAMark) {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    {
        TStreamWriter writer(buffer);
        writer.WriteLine(QString(QChar(0xFC)));
        writer.WriteLine(QString());
        writer.WriteLineUtf8("b");
        EXPECT_EQ(buffer.size(), 0);
    }
    const QByteArray end = LineBreak().toUtf8();
    EXPECT_EQ(buffer.data(), "\xC3\xBC" + end + end + "b" + end);
}

TEST(StreamWriter, GivesTheStreamWhatItHoldsOnRequest) {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    TStreamWriter writer(buffer);
    writer.WriteLine(QStringLiteral("a"));
    writer.Flush();
    EXPECT_EQ(buffer.data(), "a" + LineBreak().toUtf8());
    writer.WriteLineUtf8(QByteArray(100'000, 'x'));
    EXPECT_GT(buffer.size(), 100'000) << "more than a block is not held back";
}

TEST(StreamWriter, ReportsAStreamThatTakesNothing) {
    TBytes stream("");
    TStreamWriter writer(stream);
    writer.WriteLine(QStringLiteral("a"));
    EXPECT_EQ(MessageOf<EFileException>([&] { writer.Flush(); }), "stream: cannot be written: Unknown error");
    EXPECT_NO_THROW(writer.Flush()) << "what was refused is dropped";
}

} // namespace
} // namespace lmx
