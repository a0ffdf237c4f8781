#include <lmx/Formats/Shapes/Private/lmxDBFMemo.h>
#include <tests/Formats/ImageFiles.h>
#include <tests/Support/TableBytes.h>

#include <gtest/gtest.h>

#include <limits>

namespace lmx::tests {

namespace {

QByteArray Big(std::uint32_t number) {
    QByteArray bytes(4, '\0');
    qToBigEndian(number, bytes.data());
    return bytes;
}

/// A file of blocks, the header first.
QByteArray Blocks(int size, const QByteArrayList& blocks) {
    QByteArray file;
    for (const QByteArray& block : blocks)
        file += block.leftJustified((block.size() + size - 1) / size * size, '\0');
    return file;
}

QByteArray Counted(const QByteArray& text) {
    return QByteArray("\xFF\xFF\x08\0", 4) + BytesOf(static_cast<std::uint32_t>(text.size() + 8)) + text;
}

} // namespace

TEST(DBFMemo, OldTextsEndAtAMark) {
    const TImageFolder folder;
    const QByteArray lengthy = QByteArray(1300, 'x');
    folder.Write("X.DBT", Blocks(512, {QByteArray(512, '\0'), "first\x1A\x1A", lengthy + "\x1Arest", "open"}));
    TDBFMemo memo(folder.Path("X.dbf"), false);
    EXPECT_EQ(memo.Read(1), "first");
    EXPECT_EQ(memo.Read(2), lengthy);
    EXPECT_EQ(memo.Read(5), QByteArray("open").leftJustified(512, '\0')) << "up to the end of the file";
    for (const std::int64_t block : {std::int64_t{0}, std::int64_t{-1}, std::int64_t{6}, std::int64_t{7},
                                     std::numeric_limits<std::int64_t>::max()})
        EXPECT_EQ(memo.Read(block), "") << block;
}

TEST(DBFMemo, NewerTextsTellTheirLength) {
    const TImageFolder folder;
    QByteArray header(512, '\0');
    header[20] = '\x40'; // blocks of 64 bytes
    folder.Write("x.dbt", header + Blocks(64, {Counted("counted\x1A"), Counted("").first(8), "\xFF\xFF\x08"}) +
                              QByteArray("\xFF\xFF\x08\0\xFF\xFF\xFF\xFF", 8));
    TDBFMemo memo(folder.Path("x.dbf"), false);
    EXPECT_EQ(memo.Read(8), "counted\x1A");
    EXPECT_EQ(memo.Read(9), "");
    EXPECT_EQ(memo.Read(11), "") << "longer than the file";
}

TEST(DBFMemo, TheVisualKindIsBigEndian) {
    const TImageFolder folder;
    QByteArray header(512, '\0');
    header[7] = '\x20'; // blocks of 32 bytes
    folder.Write("x.fpt", header + Blocks(32, {Big(1) + Big(5) + "hello", Big(0) + Big(4) + "\x89PNG",
                                               Big(1) + Big(0x7FFFFFFF) + "long", Big(1) + Big(0)}));
    TDBFMemo memo(folder.Path("x.dbf"), true);
    EXPECT_EQ(memo.Read(16), "hello");
    EXPECT_EQ(memo.Read(17), "") << "a picture";
    EXPECT_EQ(memo.Read(18), "") << "longer than the file";
    EXPECT_EQ(memo.Read(19), "");
    header[7] = '\0';
    folder.Write("x.fpt", header + Big(1) + Big(2) + "hi");
    EXPECT_EQ(TDBFMemo(folder.Path("x.dbf"), true).Read(512), "hi") << "blocks of one byte";
}

TEST(DBFMemo, WithoutAFileTextsAreEmpty) {
    const TImageFolder folder;
    EXPECT_EQ(TDBFMemo(folder.Path("x.dbf"), false).Read(1), "");
    folder.Write("x.dbt", "short");
    EXPECT_EQ(TDBFMemo(folder.Path("x.dbf"), false).Read(1), "");
    EXPECT_EQ(TDBFMemo(folder.Path("x.dbf"), true).Read(1), "") << "of the other kind";
}

TEST(DBFMemo, NoTextIsLongerThanAMegabyte) {
    const TImageFolder folder;
    folder.Write("x.dbt", QByteArray(3 * 1024 * 1024, 'x'));
    EXPECT_EQ(TDBFMemo(folder.Path("x.dbf"), false).Read(1).size(), 1024 * 1024);
}

} // namespace lmx::tests
