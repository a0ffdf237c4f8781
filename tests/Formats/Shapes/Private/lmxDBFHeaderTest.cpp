#include <lmx/Formats/Shapes/Private/lmxDBFHeader.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Support/Printers.h>
#include <tests/Support/TableBytes.h>

#include <QBuffer>

#include <gtest/gtest.h>

namespace lmx::tests {

namespace {

TDBFHeader Read(QByteArray bytes) {
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    return ReadDBFHeader(buffer, QStringLiteral("x.dbf"));
}

QString FaultOf(const QByteArray& bytes) {
    return MessageOf<EFileFormatException>([&] { Read(bytes); });
}

TTableBytes Sample(std::uint8_t version = 3) {
    return TTableBytes(version, 0x57).Field("NAME", 'C', 10).Field("AREA", 'N', 8, 3).Record(QByteArray(18, 'x'));
}

} // namespace

TEST(DBFHeader, TellsWhereFieldsAre) {
    const TDBFHeader header = Read(Sample().File());
    EXPECT_EQ(header.Version, 3);
    EXPECT_EQ(header.Language, 0x57);
    EXPECT_EQ(header.HeaderLength, 97);
    EXPECT_EQ(header.RecordLength, 19);
    EXPECT_EQ(header.RecordCount, 1);
    ASSERT_EQ(header.Columns.size(), 2U);
    EXPECT_EQ(header.Columns[0].Name, QByteArray("NAME").leftJustified(11, '\0'));
    EXPECT_EQ(header.Columns[0].Type, 'C');
    EXPECT_EQ(header.Columns[0].Offset, 1);
    EXPECT_EQ(header.Columns[0].Width, 10);
    EXPECT_EQ(header.Columns[1].Type, 'N');
    EXPECT_EQ(header.Columns[1].Offset, 11);
    EXPECT_EQ(header.Columns[1].Width, 8);
    EXPECT_EQ(header.Columns[1].Decimals, 3);
    EXPECT_FALSE(header.IsFox());
    EXPECT_TRUE(Read(Sample(0x30).File()).IsFox());
    EXPECT_TRUE(Read(Sample(0xF5).File()).IsFox());
    EXPECT_FALSE(Read(Sample(0x8B).File()).IsFox());
}

TEST(DBFHeader, TheListEndsAtItsTerminatorOrWithTheHeader) {
    EXPECT_EQ(Read(Sample().File(QByteArray(100, 'x'))).Columns.size(), 2U) << "rubbish behind it";
    QByteArray open = Sample().File();
    open[96] = 'x';
    EXPECT_EQ(Read(open).Columns.size(), 2U) << "no terminator";
    EXPECT_TRUE(Read(TTableBytes().File()).Columns.empty());
}

TEST(DBFHeader, ALongTextHasTheUpperHalfOfItsWidthInItsDecimals) {
    const QByteArray wide = TTableBytes().Field("T", 'C', 0x2C, 1).Record(QByteArray(300, 'x')).File();
    EXPECT_EQ(Read(wide).Columns[0].Width, 300);
    EXPECT_EQ(Read(wide).Columns[0].Decimals, 0);
    const QByteArray narrow = TTableBytes().Field("T", 'C', 4, 1).Record("1234").File();
    EXPECT_EQ(Read(narrow).Columns[0].Width, 4) << "decimals without a meaning";
    EXPECT_EQ(Read(narrow).Columns[0].Decimals, 1);
}

TEST(DBFHeader, TheColumnOfNullFlagsIsKeptApart) {
    const TDBFHeader header = Read(TTableBytes(0x32)
                                       .Field("A", 'I', 4, 0, 2)
                                       .Field("B", 'V', 5, 0, 2)
                                       .Field("C", 'N', 3)
                                       .Field("D", 'Q', 2)
                                       .Field("_NullFlags", '0', 1, 0, 5)
                                       .Record(QByteArray(15, ' '))
                                       .File());
    ASSERT_EQ(header.Columns.size(), 4U);
    EXPECT_EQ(header.NullFlagsOffset, 15);
    EXPECT_EQ(header.NullFlagsWidth, 1);
    EXPECT_EQ(header.Columns[0].NullBit, 0);
    EXPECT_EQ(header.Columns[0].LengthBit, -1);
    EXPECT_EQ(header.Columns[1].LengthBit, 1);
    EXPECT_EQ(header.Columns[1].NullBit, 2);
    EXPECT_EQ(header.Columns[2].NullBit, -1);
    EXPECT_EQ(header.Columns[3].LengthBit, 3);
}

TEST(DBFHeader, RefusesWhatIsNoTable) {
    EXPECT_EQ(FaultOf({}), "x.dbf: the header is cut short");
    EXPECT_EQ(FaultOf(Sample().File().first(31)), "x.dbf: the header is cut short");
    EXPECT_EQ(FaultOf(Sample().File().first(96)), "x.dbf: the header is cut short");
    EXPECT_EQ(FaultOf(QByteArray(200, 'x')), "x.dbf: not a dBase table");
    EXPECT_EQ(FaultOf(QByteArray(200, '\0')), "x.dbf: not a dBase table");
    for (const std::uint8_t version : {std::uint8_t{0x02}, std::uint8_t{0x04}, std::uint8_t{0x8C}})
        EXPECT_EQ(FaultOf(Sample(version).File()), "x.dbf: a table of a version of dBase that is not read");
    QByteArray file = Sample().File();
    file[8] = 31;
    EXPECT_EQ(FaultOf(file), "x.dbf: the header has an impossible length");
    file = Sample().File();
    file[10] = 18;
    EXPECT_EQ(FaultOf(file), "x.dbf: the fields are longer than a record");
    file[10] = 0;
    EXPECT_EQ(FaultOf(file), "x.dbf: the fields are longer than a record");
    file[10] = 20;
    EXPECT_EQ(Read(file).Columns.size(), 2U) << "a column was taken out";
}

} // namespace lmx::tests
