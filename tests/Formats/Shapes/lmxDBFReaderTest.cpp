#include <lmx/Formats/Shapes/lmxDBFReader.h>
#include <lmx/Formats/Shapes/lmxShpFile.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxText.h>
#include <tests/Formats/ImageFiles.h>
#include <tests/Support/Printers.h>
#include <tests/Support/TableBytes.h>

#include <QDir>

#include <gtest/gtest.h>

#include <random>

namespace lmx::tests {

namespace {

QString Table(const char* name) {
    return QStringLiteral(LMX_SOURCE_DIR "/tests/data/dbf/") + QString::fromLatin1(name) + QStringLiteral(".dbf");
}

/// The names of the fields, and each record: values parted by commas, records by lines.
QString Show(TDBFReader& reader) {
    QStringList names;
    for (const TDBFField& field : reader.GetFields())
        names += field.GetFieldName();
    QStringList lines{names.join(u',')};
    while (const auto record = reader.ReadRecord()) {
        QStringList values;
        for (std::size_t i = 0; i < record->GetCount(); ++i)
            values += (*record)[i].GetText();
        lines += values.join(u',');
    }
    return lines.join(u'\n');
}

QString ShowTable(const char* name) {
    TDBFReader reader(Table(name));
    return Show(reader);
}

/// A table in a folder of its own.
class TTableFile {
public:
    explicit TTableFile(const QByteArray& bytes) { FFolder.Write("x.dbf", bytes); }

    QString Path() const { return FFolder.Path("x.dbf"); }
    QString Show(const QString& codePage = QString()) const {
        TDBFReader reader(Path(), codePage);
        return tests::Show(reader);
    }
    const TImageFolder& Folder() const { return FFolder; }

private:
    TImageFolder FFolder;
};

TTableBytes TwoFields(std::uint8_t language = 0) {
    return TTableBytes(3, language).Field("NAME", 'C', 4).Field("N", 'N', 3);
}

} // namespace

TEST(DBFReader, ReadsOrdinaryTables) {
    EXPECT_EQ(ShowTable("dbfread_people"), "NAME,BIRTHDATE\nAlice,19870301\nBob,19801112");
    EXPECT_EQ(ShowTable("dbfread_invalid_value"), "NAME,BIRTHDATE\nAlice,NotAYear\nBob,19801112");
    EXPECT_EQ(ShowTable("gdal_delete_column"), "id,str\n1,foo");
    EXPECT_EQ(ShowTable("gdal_date_empty_string"), "date\n");
    EXPECT_EQ(ShowTable("gdal_nan"), "real\nnan");
    EXPECT_EQ(ShowTable("gdal_padding_after_field_defns"), "id,foo\n1,2");
    EXPECT_EQ(ShowTable("gdal_weird_header_length"), "NUMERO\n001");
    EXPECT_EQ(ShowTable("mb_boolean-property"), "foo\n?\nY\ny\nN\nn\nT\nt\nF\nf");
    EXPECT_EQ(ShowTable("mb_mixed-properties").section(u'\n', 0, 2), "foo,bar\n**********,\n42,");
    EXPECT_EQ(ShowTable("rb_polygon"), "\n") << "a record without a field";
}

TEST(DBFReader, ReadsTextsOfAllCodePages) {
    EXPECT_EQ(ShowTable("gdal_chinese"), QString::fromUtf16(u"中国\n中国")) << "the language byte";
    EXPECT_EQ(ShowTable("mb_latin1-property"), QString::fromUtf16(u"name\nMéxico"));
    EXPECT_EQ(ShowTable("rs_file_cp936"), QString::fromUtf16(u"TEST\n测试中文")) << "the file beside it wins";
    EXPECT_EQ(ShowTable("rb_dbase_03_cyrillic"), QString::fromUtf16(u"ШАР,ПЛОЩА\nНомер,36.30\nКульт,99.99"));
    TDBFReader russian(Table("rb_cp1251"));
    EXPECT_EQ(russian.GetText(0, 1), QString::fromUtf16(u"амбулаторно-поликлиническое"));
}

TEST(DBFReader, ReadsTablesOfOtherVersions) {
    TDBFReader visual(Table("rb_dbase_31"));
    EXPECT_EQ(visual.GetRowCount(), 77U);
    ASSERT_EQ(visual.GetFields().size(), 10U) << "without the column of null flags";
    EXPECT_EQ(visual.GetFields()[5].GetFieldName(), "UNITPRICE");
    EXPECT_EQ(visual.GetFields()[5].GetType(), 'Y');
    EXPECT_EQ(visual.GetText(0, 0), "1");
    EXPECT_EQ(visual.GetText(0, 1), "Chai");
    EXPECT_EQ(visual.GetText(0, 5), "18.0000");
    EXPECT_EQ(visual.GetText(76, 0), "77");
    TDBFReader withMemo(Table("rb_dbase_8b"));
    EXPECT_EQ(withMemo.GetRowCount(), 10U);
    EXPECT_EQ(withMemo.GetText(0, 0), "One");
    EXPECT_EQ(withMemo.GetText(0, 4), "1.234567890123460000");
    EXPECT_EQ(withMemo.GetText(0, 5), "") << "its file is missing";
    TDBFReader wide(Table("rb_dbase_03"));
    EXPECT_EQ(wide.GetFields().size(), 31U);
    EXPECT_EQ(wide.GetRowCount(), 14U);
    EXPECT_EQ(wide.GetText(0, 0), "0507121");
    EXPECT_EQ(wide.GetFields()[4].GetWidth(), 60);
    EXPECT_EQ(wide.GetFields()[10].GetDecimals(), 1);
}

TEST(DBFReader, SkipsDeletedRecordsUnlessARowIsAskedFor) {
    TDBFReader reader(Table("dbfread_people"));
    EXPECT_EQ(reader.GetRowCount(), 3U);
    EXPECT_FALSE(reader.GetIsDeleted(1));
    EXPECT_TRUE(reader.GetIsDeleted(2));
    EXPECT_EQ(reader.GetText(2, 0), "Deleted Guy");
    const TTableFile table(TwoFields()
                               .Record("gone  1", '*')
                               .Record("here  2")
                               .Record("gone  3", '*')
                               .Record("also  4", '\0')
                               .Record("gone  5", '*')
                               .File());
    TDBFReader made(table.Path());
    const auto first = made.ReadRecord();
    ASSERT_TRUE(first);
    EXPECT_EQ(first->GetRow(), 1U);
    EXPECT_EQ(made.ReadRecord()->GetRow(), 3U);
    EXPECT_FALSE(made.ReadRecord());
    EXPECT_FALSE(made.ReadRecord());
    made.Restart();
    EXPECT_EQ((*made.ReadRecord())[0].GetText(), "here");
}

TEST(DBFReader, RowsAreTheRecordsOfShapes) {
    const QString name = QStringLiteral(LMX_SOURCE_DIR "/tests/data/shp/mb_null");
    const auto shapes = TShpFile::LoadFromFile(name + QStringLiteral(".shp"), nullptr);
    TDBFReader table(name + QStringLiteral(".dbf"));
    EXPECT_EQ(table.GetRowCount(), 9U);
    for (std::size_t i = 0; i < shapes->GetPointCount(); ++i) // a place at (2 k + 1, 2 k + 2) has the number k
        EXPECT_EQ(table.GetText(shapes->GetPointRecord(i), 0),
                  QString::fromStdString(std::to_string(static_cast<int>(shapes->GetPoint(i).X) / 2)));
}

TEST(DBFReader, ChecksItsIndexes) {
    const TTableFile table(TwoFields().Record("here  2").File());
    TDBFReader reader(table.Path());
    EXPECT_EQ(MessageOf<EArgumentException>([&] { reader.GetText(1, 0); }), "Row index is out of range");
    EXPECT_EQ(MessageOf<EArgumentException>([&] { reader.GetIsDeleted(1); }), "Row index is out of range");
    EXPECT_EQ(MessageOf<EArgumentException>([&] { reader.GetText(0, 2); }), "Field index is out of range");
    const auto record = reader.ReadRecord();
    EXPECT_EQ(record->GetCount(), 2U);
    EXPECT_EQ(MessageOf<EArgumentException>([&] { (*record)[2]; }), "Field index is out of range");
}

TEST(DBFReader, TheCodePageIsTheHostsThenTheFilesThenTheLanguages) {
    const TTableFile table(TwoFields(0xC9).Record("\xCA\xE8    1").File());
    EXPECT_EQ(table.Show(), QString::fromUtf16(u"NAME,N\nКи,1")) << "the language byte";
    table.Folder().Write("x.CPG", "1250\r\n");
    EXPECT_EQ(table.Show(), QString::fromUtf16(u"NAME,N\nĘč,1")) << "the file beside it";
    EXPECT_EQ(table.Show(QStringLiteral("1252")), QString::fromUtf16(u"NAME,N\nÊè,1")) << "the host";
    EXPECT_EQ(table.Show(QStringLiteral("nonsense")), QString::fromUtf16(u"NAME,N\nĘč,1"));
    table.Folder().Write("x.CPG", "nobody knows");
    EXPECT_EQ(table.Show(), QString::fromUtf16(u"NAME,N\nКи,1"));
    const TTableFile unmarked(TwoFields().Record("\xC3\xA9    1").Record("\xE9     2").File());
    EXPECT_EQ(unmarked.Show(), QString::fromUtf16(u"NAME,N\né,1\né,2")) << "a guess";
}

TEST(DBFReader, NamesOfFieldsAreOfTheCodePageToo) {
    QByteArray name("\xCA\xE8 \0old", 7);
    EXPECT_EQ(
        TTableFile(TTableBytes(3, 0xC9).Field(name, 'C', 1).Field("ELEVENCHARS", 'C', 1).Record("xy").File()).Show(),
        QString::fromUtf16(u"Ки,ELEVENCHARS\nx,y"));
    const TTableFile wide(
        TTableBytes().Field(QByteArray("\xFF\xFEi\0d\0\0\0", 8), 'C', 4).Record(QByteArray("a\0\xFD\x56", 4)).File());
    wide.Folder().Write("x.cpg", "UTF-16");
    EXPECT_EQ(wide.Show(), QString::fromUtf16(u"id\na国"));
}

TEST(DBFReader, MemosStandInTheirFile) {
    const TTableFile table(
        TTableBytes(0x83).Field("M", 'M', 10).Record("         1").Record("          ").Record("9999999999").File());
    EXPECT_EQ(table.Show(), "M\n\n\n") << "there is none";
    table.Folder().Write("x.dbt", QByteArray(512, '\0') + "A long\r\nstory \x1A\x1A");
    EXPECT_EQ(table.Show(), "M\nA long\r\nstory\n\n");
    const TTableFile visual(TTableBytes(0x30).Field("M", 'M', 4).Record(BytesOf(std::uint32_t{8})).File());
    QByteArray file(512, '\0');
    file[7] = '\x40';
    visual.Folder().Write("x.FPT", file + QByteArray("\0\0\0\x01\0\0\0\x02ok", 10));
    EXPECT_EQ(visual.Show(), "M\nok");
}

TEST(DBFReader, GivesTheWholeRecordsOfAFileThatIsCutShort) {
    const QByteArray bytes = TwoFields().Record("one   1").Record("two   2").Record("tri   3").File();
    EXPECT_EQ(TTableFile(bytes.chopped(1)).Show(), "NAME,N\none,1\ntwo,2\ntri,3") << "without the end mark";
    EXPECT_EQ(TTableFile(bytes.chopped(2)).Show(), "NAME,N\none,1\ntwo,2");
    EXPECT_EQ(TTableFile(bytes.chopped(25)).Show(), "NAME,N");
    EXPECT_EQ(TTableFile(TwoFields().Record("one   1").Count(0xFFFFFFFF).File()).Show(), "NAME,N\none,1")
        << "a claim takes no memory";
    EXPECT_EQ(TTableFile(TwoFields().Record("one   1").Count(0).File()).Show(), "NAME,N");
    QByteArray empty(33, '\0');
    empty[0] = 3;
    empty[4] = 77;
    empty[8] = 33;
    empty[32] = '\r';
    EXPECT_EQ(TTableFile(empty).Show(), "") << "neither fields nor a length";
}

TEST(DBFReader, SaysWhatIsWrong) {
    EXPECT_EQ(MessageOf<EFileException>([] { TDBFReader(QStringLiteral("/nowhere/x.dbf")); }),
              "/nowhere/x.dbf: cannot be opened: No such file or directory");
    const QString old = Table("rb_dbase_02");
    EXPECT_EQ(MessageOf<EFileFormatException>([&] { TDBFReader reader(old); }),
              old + ": a table of a version of dBase that is not read");
    const TTableFile text("AREA,NAME\n1,2\n and so on: a text file by mistake");
    EXPECT_EQ(MessageOf<EFileFormatException>([&] { TDBFReader reader(text.Path()); }),
              text.Path() + ": not a dBase table");
}

TEST(DBFReader, KeepsTheBytesOfTheFileAndLittleMore) {
    TTableBytes bytes = TwoFields();
    for (int i = 0; i < 5000; ++i)
        bytes.Record("some 42");
    const TTableFile table(bytes.File());
    EXPECT_LE(TDBFReader(table.Path()).GetMemorySize(), 8U * 5000 + 64);
}

// Whatever happens to a table on its way, it is refused by name or gives whole records.
TEST(DBFReader, SurvivesAThousandMutations) {
    std::mt19937 random(2);
    const QDir folder(QStringLiteral(LMX_SOURCE_DIR "/tests/data/dbf"));
    const QStringList names = folder.entryList({QStringLiteral("*.dbf")});
    ASSERT_GE(names.size(), 20);
    int refused = 0;
    int read = 0;
    for (int round = 0; round < 1200; ++round) {
        QByteArray bytes = ReadFile(folder.filePath(names[round % names.size()]));
        for (auto faults = 1 + random() % 4; faults > 0; --faults)
            bytes[static_cast<qsizetype>(random() % std::min<std::size_t>(static_cast<std::size_t>(bytes.size()),
                                                                          300))] = static_cast<char>(random());
        if (random() % 4 == 0)
            bytes.truncate(static_cast<qsizetype>(random() % static_cast<std::size_t>(bytes.size())));
        const TTableFile table(bytes);
        try {
            table.Show();
            ++read;
        } catch (const EFileFormatException& failure) {
            EXPECT_TRUE(failure.Message().startsWith(table.Path()));
            ++refused;
        }
    }
    EXPECT_GT(read, 300);
    EXPECT_GT(refused, 100);
}

} // namespace lmx::tests
