#include <lmx/Climate/lmxSpatialConst.h>
#include <lmx/Formats/Idrisi/lmxIdrisiImages.h>
#include <lmx/Formats/Idrisi/lmxImageFactory.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Formats/ImageFiles.h>
#include <tests/Support/FileSizeLimit.h>
#include <tests/Support/MemoryLimit.h>
#include <tests/Support/Printers.h>

#include <QBuffer>
#include <QDir>

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <vector>

namespace lmx::tests {

namespace {

constexpr float NoData = TSpatialConst::NoData;
constexpr float Nan = std::numeric_limits<float>::quiet_NaN();

TImageHeader SmallHeader(std::int32_t columns, std::int32_t rows) {
    TImageHeader header;
    header.SetWidth(columns);
    header.SetHeight(rows);
    header.SetMinX(0);
    header.SetMaxX(10);
    header.SetMinY(0);
    header.SetMaxY(10);
    header.SetRefSystem(QStringLiteral("plane"));
    header.SetRefUnits(QStringLiteral("m"));
    header.SetPositionError(QStringLiteral("unknown"));
    header.SetValueUnits(QStringLiteral("unspecified"));
    header.SetValueError(QStringLiteral("unknown"));
    header.SetFlagDef(QStringLiteral("none"));
    return header;
}

TImageHeader FlaggedHeader(std::int32_t columns, std::int32_t rows, float flag) {
    TImageHeader header = SmallHeader(columns, rows);
    header.SetFlag(true);
    header.SetFlagValue(flag);
    header.SetFlagDef(QStringLiteral("missing data"));
    return header;
}

/// 3 x 2 cells: 1 2 3 in the north, 4 5 6 in the south.
template<class Image>
Image Counting(const TImageHeader& header = SmallHeader(3, 2)) {
    Image image(QString(), header);
    float number = 0;
    for (std::int32_t row = 1; row <= 2; ++row)
        for (std::int32_t column = 1; column <= 3; ++column)
            image.SetCell(column, row, ++number);
    return image;
}

template<class Image>
std::vector<float> CellsOf(const Image& image) {
    std::vector<float> numbers;
    for (std::int32_t row = 1; row <= image.getHeader()->GetHeight(); ++row)
        for (std::int32_t column = 1; column <= image.getHeader()->GetWidth(); ++column)
            numbers.push_back(image.GetCell(column, row));
    return numbers;
}

void LoadBytes(TAbstractImage& image, QByteArray bytes) {
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    image.LoadFromStream(buffer);
}

QByteArray StreamOf(const TAbstractImage& image) {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    image.SaveToStream(buffer);
    return buffer.data();
}

} // namespace

template<class Image>
class EveryImageClass : public testing::Test {};
using TImageClasses = testing::Types<TByteImage, TIntegerImage, TRealImage, TAsciiImage>;
TYPED_TEST_SUITE(EveryImageClass, TImageClasses);

TYPED_TEST(EveryImageClass, HoldsZerosWhenMadeFromAHeader) {
    const TypeParam image(QString(), SmallHeader(2, 2));
    EXPECT_EQ(CellsOf(image), (std::vector<float>{0, 0, 0, 0}));
    std::vector<float> row(2, 7);
    image.ReadRow(2, row);
    EXPECT_EQ(row, (std::vector<float>{0, 0}));
    EXPECT_EQ(image.GetFilePath(), QString());
}

TYPED_TEST(EveryImageClass, TakesNoMemoryForAClaim) {
    constexpr std::int32_t most = std::numeric_limits<std::int32_t>::max();
    TypeParam image(QString(), SmallHeader(most, most));
    EXPECT_EQ(image.GetCell(most, most), 0);
    EXPECT_EQ(MessageOf<EFileFormatException>([&] { LoadBytes(image, QByteArray(100, '\1')); }).left(44),
              QStringLiteral("Image data: the header claims 46116860141324"));
}

TYPED_TEST(EveryImageClass, IsAsItWasWhenThereIsNoRoomForItsCells) {
    constexpr std::int32_t most = std::numeric_limits<std::int32_t>::max();
    TypeParam image(QString(), SmallHeader(most, most));
    EXPECT_EQ(MessageOf<EOutOfMemory>([&] { image.SetCell(1, 1, 7); }), QStringLiteral("Out of memory"));
    EXPECT_EQ(MessageOf<EOutOfMemory>([&] { image.GetRow(1); }), QStringLiteral("Out of memory"));
    EXPECT_EQ(image.GetCell(1, 1), 0);
}

TYPED_TEST(EveryImageClass, RefusesANegativeSize) {
    EXPECT_EQ(MessageOf<EArgumentException>([] { TypeParam(QString(), SmallHeader(-1, 2)); }),
              QStringLiteral("Image size is negative"));
    EXPECT_EQ(MessageOf<EArgumentException>([] { TypeParam(QString(), SmallHeader(1, -2)); }),
              QStringLiteral("Image size is negative"));
}

TYPED_TEST(EveryImageClass, NumbersCellsFromOneInTheNorthWest) {
    TypeParam image = Counting<TypeParam>();
    EXPECT_EQ(CellsOf(image), (std::vector<float>{1, 2, 3, 4, 5, 6}));
    std::vector<float> row(3);
    image.ReadRow(2, row);
    EXPECT_EQ(row, (std::vector<float>{4, 5, 6}));
    ASSERT_EQ(image.GetRow(1).size(), 3U);
    EXPECT_EQ(image.GetRow(1)[2], 3);
    image.GetRow(2)[0] = 9;
    EXPECT_EQ(image.GetCell(1, 2), 9);
}

TYPED_TEST(EveryImageClass, RefusesCellsOutside) {
    TypeParam image(QString(), SmallHeader(3, 2));
    const QString badColumn = QStringLiteral("Col index is out of range");
    const QString badRow = QStringLiteral("Row index is out of range");
    EXPECT_EQ(MessageOf<EArgumentException>([&] { image.GetCell(0, 1); }), badColumn);
    EXPECT_EQ(MessageOf<EArgumentException>([&] { image.GetCell(4, 1); }), badColumn);
    EXPECT_EQ(MessageOf<EArgumentException>([&] { image.GetCell(1, 0); }), badRow);
    EXPECT_EQ(MessageOf<EArgumentException>([&] { image.GetCell(1, 3); }), badRow);
    EXPECT_EQ(MessageOf<EArgumentException>([&] { image.SetCell(4, 2, 1); }), badColumn);
    EXPECT_EQ(MessageOf<EArgumentException>([&] { image.GetRow(3); }), badRow);
    std::vector<float> row(3);
    EXPECT_EQ(MessageOf<EArgumentException>([&] { image.ReadRow(0, row); }), badRow);
    row.resize(2);
    EXPECT_EQ(MessageOf<EArgumentException>([&] { image.ReadRow(1, row); }),
              QStringLiteral("Length of the row does not match"));
}

TYPED_TEST(EveryImageClass, ReadsADeclaredFlagAsMissingData) {
    TypeParam image = Counting<TypeParam>(FlaggedHeader(3, 2, 5));
    EXPECT_EQ(CellsOf(image), (std::vector<float>{1, 2, 3, 4, NoData, 6}));
    std::vector<float> row(3);
    image.ReadRow(2, row);
    EXPECT_EQ(row, (std::vector<float>{4, NoData, 6}));
    image.SetCell(1, 1, NoData);
    EXPECT_EQ(image.GetRow(1)[0], 5);
    EXPECT_EQ(image.GetCell(1, 1), NoData);
    image.getHeader()->SetFlag(false);
    EXPECT_EQ(CellsOf(image), (std::vector<float>{5, 2, 3, 4, 5, 6}));
}

TYPED_TEST(EveryImageClass, ReadsZerosAsMissingDataIfZeroIsTheFlag) {
    const TypeParam image(QString(), FlaggedHeader(1, 1, 0));
    std::vector<float> row(1);
    image.ReadRow(1, row);
    EXPECT_EQ(row[0], NoData);
    EXPECT_EQ(image.GetCell(1, 1), NoData);
}

TYPED_TEST(EveryImageClass, RestoresItselfFromItsStreams) {
    const TypeParam image = Counting<TypeParam>(FlaggedHeader(3, 2, 5));
    QBuffer header;
    header.open(QIODevice::ReadWrite);
    image.getHeader()->SaveToStream(header);
    header.seek(0);
    TImageHeader restoredHeader;
    restoredHeader.LoadFromStream(header);
    const auto restored = TImageFactory::GetImageClass(image.GetClassName())->Create(QString(), restoredHeader);
    LoadBytes(*restored, StreamOf(image));
    EXPECT_EQ(*restored->getHeader(), *image.getHeader());
    EXPECT_EQ(CellsOf(*restored), CellsOf(image));
    EXPECT_EQ(restored->GetFilePath(), QString());
}

TYPED_TEST(EveryImageClass, KeepsItsCellsWhenAStreamIsCutShort) {
    TypeParam image = Counting<TypeParam>();
    const QByteArray whole = StreamOf(image);
    EXPECT_EQ(MessageOf<EFileFormatException>([&] { LoadBytes(image, whole.chopped(1)); }),
              QStringLiteral("Image data: the header claims 6 cells, the data hold 5"));
    EXPECT_EQ(CellsOf(image), (std::vector<float>{1, 2, 3, 4, 5, 6}));
}

TYPED_TEST(EveryImageClass, WritesZerosForAnImageThatNothingWasStoredIn) {
    const TypeParam blank(QString(), SmallHeader(3, 2));
    TypeParam image = Counting<TypeParam>();
    LoadBytes(image, StreamOf(blank));
    EXPECT_EQ(CellsOf(image), (std::vector<float>{0, 0, 0, 0, 0, 0}));
}

TYPED_TEST(EveryImageClass, ComesBackFromItsFilesInBothForms) {
    const TImageFolder folder;
    const TypeParam image = Counting<TypeParam>(FlaggedHeader(3, 2, 5));
    for (const char* name : {"a.rst", "b.img", "c.rdc", "d.doc", "E.IMG"}) {
        image.SaveToFile(folder.Path(name));
        const auto read = TImageFactory::Load(folder.Path(name));
        EXPECT_EQ(read->GetClassName(), image.GetClassName()) << name;
        EXPECT_EQ(*read->getHeader(), *image.getHeader()) << name;
        EXPECT_EQ(CellsOf(*read), CellsOf(image)) << name;
        EXPECT_EQ(read->GetFilePath(), folder.Path(name));
    }
    EXPECT_EQ(image.GetFilePath(), QString());
}

TYPED_TEST(EveryImageClass, ReadsOnlyTheHeaderIfTold) {
    const TImageFolder folder;
    Counting<TypeParam>().SaveToFile(folder.Path("a.rst"));
    const TypeParam image(folder.Path("a.rst"), false);
    EXPECT_EQ(image.getHeader()->GetWidth(), 3);
    EXPECT_EQ(image.GetCell(3, 2), 0);
    EXPECT_EQ(TypeParam(folder.Path("a.rst"), true).GetCell(3, 2), 6);
}

TYPED_TEST(EveryImageClass, FindsTheRangeOfItsValues) {
    TypeParam image = Counting<TypeParam>(FlaggedHeader(3, 2, 1));
    EXPECT_TRUE(image.UpdateValueRange());
    EXPECT_EQ(image.getHeader()->GetMinValue(), 2);
    EXPECT_EQ(image.getHeader()->GetMaxValue(), 6);
    EXPECT_EQ(image.getHeader()->GetDisplayMin(), 2);
    EXPECT_EQ(image.getHeader()->GetDisplayMax(), 6);
    TypeParam empty(QString(), FlaggedHeader(2, 2, 0));
    empty.getHeader()->SetMaxValue(5);
    EXPECT_FALSE(empty.UpdateValueRange());
    EXPECT_EQ(empty.getHeader()->GetMaxValue(), 0);
}

TYPED_TEST(EveryImageClass, IsFilledRowByRowWithItsRange) {
    TypeParam image(QString(), FlaggedHeader(3, 2, 1));
    image.GetRow(2)[1] = 77;
    std::vector<std::int32_t> rows;
    image.FillRows([&](std::int32_t row, auto cells) {
        rows.push_back(row);
        ASSERT_EQ(cells.size(), 3U);
        for (std::size_t i = 0; i < 3; ++i)
            cells[i] = static_cast<typename decltype(cells)::value_type>(row == 1 ? i + 1 : i + 4);
    });
    EXPECT_EQ(rows, (std::vector<std::int32_t>{1, 2}));
    EXPECT_EQ(CellsOf(image), (std::vector<float>{TSpatialConst::NoData, 2, 3, 4, 5, 6}));
    EXPECT_EQ(image.getHeader()->GetMinValue(), 2);
    EXPECT_EQ(image.getHeader()->GetDisplayMax(), 6);
    image.FillRows([](std::int32_t, auto cells) { std::fill(cells.begin(), cells.end(), 1); });
    EXPECT_EQ(image.getHeader()->GetMinValue(), 0);
    EXPECT_EQ(image.getHeader()->GetMaxValue(), 0);
}

// Cells that are the numbers they stand for, and cells that are not.
TYPED_TEST(EveryImageClass, ReadsRowsAsItReadsCells) {
    for (const float flag : {TSpatialConst::NoData, 3.0F, 77.0F}) {
        TypeParam image = Counting<TypeParam>(FlaggedHeader(3, 2, flag));
        if (flag == TSpatialConst::NoData && !std::is_same_v<TypeParam, TByteImage>)
            image.SetCell(2, 1, flag);
        std::vector<float> row(3);
        for (std::int32_t y = 1; y <= 2; ++y) {
            image.ReadRow(y, row);
            for (std::int32_t x = 1; x <= 3; ++x)
                EXPECT_EQ(row[static_cast<std::size_t>(x - 1)], image.GetCell(x, y)) << flag << ' ' << x << ' ' << y;
        }
    }
}

TYPED_TEST(EveryImageClass, IsAsItWasWhenItCannotBeFilled) {
    TypeParam image = Counting<TypeParam>();
    EXPECT_EQ(MessageOf<EInvalidOperation>([&] {
                  image.FillRows([](std::int32_t row, auto cells) {
                      cells[0] = 9;
                      if (row == 2)
                          throw EInvalidOperation(QStringLiteral("damaged"));
                  });
              }),
              QStringLiteral("damaged"));
    EXPECT_EQ(CellsOf(image), (std::vector<float>{1, 2, 3, 4, 5, 6}));
    constexpr std::int32_t most = std::numeric_limits<std::int32_t>::max();
    TypeParam claim(QString(), SmallHeader(most, most));
    EXPECT_EQ(MessageOf<EOutOfMemory>([&] { claim.FillRows([](std::int32_t, auto) {}); }),
              QStringLiteral("Out of memory"));
}

TEST(IdrisiImages, HaveTheirOwnTypes) {
    TImageHeader header = SmallHeader(1, 1);
    header.SetDataType(TImageDataType::dtRgb24);
    header.SetFileType(TImageFileType::ftAscii);
    EXPECT_EQ(TByteImage(QString(), header).getHeader()->GetDataType(), TImageDataType::dtByte);
    EXPECT_EQ(TIntegerImage(QString(), header).getHeader()->GetDataType(), TImageDataType::dtInteger);
    EXPECT_EQ(TRealImage(QString(), header).getHeader()->GetDataType(), TImageDataType::dtReal);
    EXPECT_EQ(TRealImage(QString(), header).getHeader()->GetFileType(), TImageFileType::ftBinary);
    EXPECT_EQ(TAsciiImage(QString(), header).getHeader()->GetDataType(), TImageDataType::dtReal);
    EXPECT_EQ(TAsciiImage(QString(), SmallHeader(1, 1)).getHeader()->GetFileType(), TImageFileType::ftAscii);
    header.SetDataType(TImageDataType::dtRgb8);
    EXPECT_EQ(TByteImage(QString(), header).getHeader()->GetDataType(), TImageDataType::dtRgb8);
}

TEST(IdrisiImages, RoundToTheirCellsAndRefuseTheRest) {
    TByteImage bytes(QString(), SmallHeader(1, 1));
    TIntegerImage integers(QString(), SmallHeader(1, 1));
    const auto stored = [](TAbstractImage& image, float number) {
        image.SetCell(1, 1, number);
        return image.GetCell(1, 1);
    };
    EXPECT_EQ(stored(bytes, 2.5F), 2);
    EXPECT_EQ(stored(bytes, 3.5F), 4);
    EXPECT_EQ(stored(bytes, -0.5F), 0);
    EXPECT_EQ(stored(bytes, 255.4F), 255);
    EXPECT_EQ(stored(integers, -32768.5F), -32768);
    EXPECT_EQ(stored(integers, 32767.4F), 32767);
    const QString message = QStringLiteral("Value does not fit into the image's cells");
    for (const float number : {255.5F, -0.6F, NoData, Nan, INFINITY, -INFINITY, 1e30F})
        EXPECT_EQ(MessageOf<EArgumentException>([&] { bytes.SetCell(1, 1, number); }), message) << number;
    for (const float number : {32767.5F, -32769.0F, Nan})
        EXPECT_EQ(MessageOf<EArgumentException>([&] { integers.SetCell(1, 1, number); }), message) << number;
    EXPECT_EQ(bytes.GetCell(1, 1), 255);
    EXPECT_EQ(stored(integers, NoData), NoData);
}

TEST(IdrisiImages, IgnoreAFlagThatTheirCellsCannotHold) {
    TByteImage image(QString(), FlaggedHeader(1, 1, -9999));
    image.SetCell(1, 1, 241); // the low byte of -9999
    EXPECT_EQ(image.GetCell(1, 1), 241);
    image.getHeader()->SetFlagValue(241.5F);
    EXPECT_EQ(image.GetCell(1, 1), 241);
    EXPECT_EQ(MessageOf<EArgumentException>([&] { image.SetCell(1, 1, NoData); }),
              QStringLiteral("Value does not fit into the image's cells"));
}

TEST(IdrisiImages, MatchAFlagThatWasWrittenWithSevenDigits) {
    TRealImage image(QString(), FlaggedHeader(4, 1, 1.70141e38F));
    image.SetCell(1, 1, 0x1p127F); // 1.7014118e38
    image.SetCell(2, 1, 1.70e38F);
    image.SetCell(3, 1, Nan);
    EXPECT_EQ(image.GetCell(2, 1), 1.70e38F);
    EXPECT_TRUE(std::isnan(image.GetCell(3, 1)));
    image.getHeader()->SetFlagValue(1.701412e38F);
    EXPECT_EQ(image.GetCell(1, 1), NoData);
    image.getHeader()->SetFlagValue(Nan);
    EXPECT_EQ(image.GetCell(3, 1), NoData);
    EXPECT_EQ(image.GetCell(1, 1), 0x1p127F);
    image.getHeader()->SetFlagValue(INFINITY);
    image.SetCell(4, 1, INFINITY);
    EXPECT_EQ(image.GetCell(4, 1), NoData);
}

TEST(IdrisiImages, TakeAnIntegerFlagExactly) {
    TRealImage image(QString(), FlaggedHeader(2, 1, -9999));
    image.SetCell(1, 1, -9998.999F);
    image.SetCell(2, 1, -9999);
    EXPECT_EQ(image.GetCell(1, 1), -9998.999F);
    EXPECT_EQ(image.GetCell(2, 1), NoData);
}

TEST(IdrisiImages, KeepEveryBitOfRealCells) {
    const TImageFolder folder;
    TRealImage image(QString(), SmallHeader(3, 1));
    image.GetRow(1)[0] = std::bit_cast<float>(0x7FC54321U);
    image.GetRow(1)[1] = -0.0F;
    image.GetRow(1)[2] = std::numeric_limits<float>::denorm_min();
    image.SaveToFile(folder.Path("a.rst"));
    TRealImage read(folder.Path("a.rst"), true);
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_EQ(std::bit_cast<std::uint32_t>(read.GetRow(1)[i]), std::bit_cast<std::uint32_t>(image.GetRow(1)[i]));
}

TEST(IdrisiImages, OfTextAreWrittenANumberALine) {
    const TImageFolder folder;
    TAsciiImage image(QString(), FlaggedHeader(3, 1, -1));
    image.SetCell(1, 1, 0.1F);
    image.SetCell(2, 1, NoData);
    image.SetCell(3, 1, 1e35F);
    image.SaveToFile(folder.Path("a.img"));
    EXPECT_EQ(folder.Read("a.img"), QByteArray("0.1\r\n-1\r\n1e+35\r\n"));
    EXPECT_EQ(CellsOf(TAsciiImage(folder.Path("a.img"), true)), (std::vector<float>{0.1F, NoData, 1e35F}));
}

TEST(IdrisiImages, ThatWerePackedAreWrittenAsBinary) {
    const TImageFolder folder;
    folder.Write("a.img", QByteArray("\x03\x07\x01\x08", 4));
    folder.Write("a.doc", Documentation("byte", "packed binary", 2, 2));
    const auto image = TImageFactory::Load(folder.Path("a.img"));
    EXPECT_EQ(CellsOf(*image), (std::vector<float>{7, 7, 7, 8}));
    image->SaveToFile(folder.Path("b.rst"));
    EXPECT_EQ(folder.Read("b.rst"), QByteArray("\x07\x07\x07\x08", 4));
    EXPECT_TRUE(folder.Read("b.rdc").contains("file type   : binary\r\n"));
}

TEST(IdrisiImages, AreWrittenByteForByteAsTheyCame) {
    const TImageFolder folder;
    for (const char* name : {"byte", "dtm", "segments"}) {
        const QString source = DataFile(name) + QStringLiteral(".rst");
        TImageFactory::Load(source)->SaveToFile(folder.Path("once.rst"));
        TImageFactory::Load(folder.Path("once.rst"))->SaveToFile(folder.Path("twice.rst"));
        QFile original(source);
        ASSERT_TRUE(original.open(QIODevice::ReadOnly));
        EXPECT_EQ(folder.Read("once.rst"), original.readAll()) << name;
        EXPECT_EQ(folder.Read("twice.rdc"), folder.Read("once.rdc")) << name;
    }
}

TEST(IdrisiImages, ThatCannotBeSavedLeaveNothing) {
    const TImageFolder folder;
    const TRealImage image = Counting<TRealImage>();
    const QString nowhere = folder.Path("missing/a.rst");
    EXPECT_EQ(MessageOf<EFileException>([&] { image.SaveToFile(nowhere); }).left(nowhere.size() + 19),
              nowhere + QStringLiteral(": cannot be written"));
    const QString other = folder.Path("a.tif");
    EXPECT_EQ(MessageOf<EFileException>([&] { image.SaveToFile(other); }),
              other + QStringLiteral(": an Idrisi image is an .rst or .img file"));
    ASSERT_TRUE(QDir().mkdir(folder.Path("b.rdc"))); // the documentation cannot be replaced
    EXPECT_THROW(image.SaveToFile(folder.Path("b.rst")), EFileException);
    EXPECT_EQ(QDir(folder.Path("")).entryList(QDir::Files), QStringList());
}

TEST(IdrisiImages, ThatFindNoRoomLeaveTheOldPair) {
    const TImageFolder folder;
    const QString file = folder.Path("a.rst");
    Counting<TByteImage>().SaveToFile(file);
    const QByteArray documentation = folder.Read("a.rdc");
    const auto faultOf = [&file](const TAbstractImage& image) {
        const TFileSizeLimit limit(100);
        return MessageOf<EFileException>([&] { image.SaveToFile(file); });
    };
    TByteImage small = Counting<TByteImage>(); // its cells find room, and what is said about them does not
    small.SetCell(1, 1, 99);
    EXPECT_EQ(faultOf(small), folder.Path("a.rdc") + QStringLiteral(": cannot be written: File too large"));
    EXPECT_EQ(faultOf(TRealImage(QString(), SmallHeader(5, 6))),
              file + QStringLiteral(": cannot be written: File too large"));
    EXPECT_EQ(faultOf(TRealImage(QString(), SmallHeader(500, 600))),
              file + QStringLiteral(": cannot be written: File too large"));
    EXPECT_EQ(faultOf(TAsciiImage(QString(), SmallHeader(500, 600))),
              file + QStringLiteral(": cannot be written: File too large"));
    EXPECT_EQ(folder.Read("a.rst"), QByteArray("\x01\x02\x03\x04\x05\x06", 6));
    EXPECT_EQ(folder.Read("a.rdc"), documentation);
    EXPECT_EQ(QDir(folder.Path("")).entryList(QDir::Files).size(), 2);
}

TEST(IdrisiImages, OversizedFilesAreNotReadWhole) {
    const TImageFolder folder;
    const auto makeSparse = [&folder](const char* name) {
        QFile file(folder.Path(name));
        return file.open(QIODevice::ReadWrite) && file.resize(qint64{1} << 36);
    };
    const auto faultOf = [&folder](const QByteArray& fileType) {
        folder.Write("a.rdc", Documentation("byte", fileType, 2, 2));
        const QString message = MessageOf<EFileFormatException>([&] { TImageFactory::Load(folder.Path("a.rst")); });
        return message.mid(folder.Path("a.rst").size());
    };
    if (!makeSparse("a.rst"))
        GTEST_FAIL() << "the file system of the test's folder has no sparse files";
    EXPECT_EQ(faultOf("ascii"), QStringLiteral(": cell 1 is not a number"));
    EXPECT_EQ(faultOf("packed"), QStringLiteral(": the run lengths do not add up to the image"));
    folder.Write("a.rdc", Documentation("byte", "binary", 2, 2));
    EXPECT_EQ(TImageFactory::Load(folder.Path("a.rst"))->GetCell(2, 2), 0);
    ASSERT_TRUE(makeSparse("a.rdc"));
    const QString message = folder.Path("a.rdc") + QStringLiteral(": holds more than 8388608 bytes");
    EXPECT_EQ(MessageOf<EFileFormatException>([&] { TImageFactory::Load(folder.Path("a.rst")); }), message);
    TImageHeader header;
    EXPECT_EQ(MessageOf<EFileFormatException>([&] { header.LoadFromFile(folder.Path("a.rst")); }), message);
    EXPECT_EQ(header, TImageHeader());
}

TEST(IdrisiImages, LargerThanMemoryAreNamed) {
    const TImageFolder folder;
    folder.Write("a.rdc", Documentation("byte", "binary", 100'000, 100'000));
    QFile data(folder.Path("a.rst"));
    ASSERT_TRUE(data.open(QIODevice::ReadWrite) && data.resize(10'000'000'000)) << "sparse";
    const QString message = folder.Path("a.rst") + QStringLiteral(": does not fit into memory");
    {
        const TMemoryLimit limit(256 * 1024 * 1024);
        EXPECT_EQ(MessageOf<EFileException>([&] { TImageFactory::Load(folder.Path("a.rst")); }), message);
        EXPECT_EQ(MessageOf<EFileException>([&] { TByteImage(folder.Path("a.rdc"), true); }), message);
    }
    ASSERT_TRUE(data.resize(9'999'999'999));
    EXPECT_EQ(MessageOf<EFileFormatException>([&] { TImageFactory::Load(folder.Path("a.rst")); }),
              folder.Path("a.rst") + QStringLiteral(": the header claims 10000000000 cells, the data hold 9999999999"));
}

TEST(IdrisiImages, AreRefusedWhenTheirDataAreDamaged) {
    const TImageFolder folder;
    const auto faultOf = [&folder](const QByteArray& documentation, const QByteArray& data) {
        folder.Write("a.rdc", documentation);
        folder.Write("a.rst", data);
        const QString message = MessageOf<EFileFormatException>([&] { TImageFactory::Load(folder.Path("a.rst")); });
        return message.mid(folder.Path("a.rst").size());
    };
    EXPECT_EQ(faultOf(Documentation("real", "binary", 2, 2), QByteArray(15, '\0')),
              QStringLiteral(": the header claims 4 cells, the data hold 3"));
    EXPECT_EQ(faultOf(Documentation("real", "binary", 2147483647, 2147483647), QByteArray(16, '\0')),
              QStringLiteral(": the header claims 4611686014132420609 cells, the data hold 4"));
    EXPECT_EQ(faultOf(Documentation("byte", "ascii", 2, 1), QByteArray("1 \xFF")),
              QStringLiteral(": cell 2 is not a number"));
    EXPECT_EQ(faultOf(Documentation("real", "packed", 2, 1), QByteArray("12345678")),
              QStringLiteral(": an image of real numbers cannot be packed"));
    EXPECT_EQ(faultOf(Documentation("integer", "packed", 2, 1), QByteArray("1234")),
              QStringLiteral(": the run lengths do not add up to the image"));
}

namespace {

struct TPlace {
    const char* Name;
    float X;
    float Y;
    float Number;
};

void PrintTo(const TPlace& place, std::ostream* stream) {
    *stream << place.Name;
}

// 4 x 2 cells of 2.5 x 5 units; the cell of column c and row r holds 10 c + r.
const TPlace Places[] = {
    {"Inside", 3, 7, 21},
    {"NorthWestCorner", 0, 10, 11},
    {"NorthEastCorner", 10, 10, 41},
    {"SouthWestCorner", 0, 0, 12},
    {"SouthEastCorner", 10, 0, 42},
    {"VerticalBorderBelongsToTheEast", 2.5F, 7, 21},
    {"JustBeforeTheBorder", 2.4999998F, 7, 11},
    {"HorizontalBorderBelongsToTheSouth", 1, 5, 12},
    {"BeyondTheEast", 10.000001F, 5, NoData},
    {"BeyondTheWest", -0.0001F, 5, NoData},
    {"BeyondTheNorth", 5, 10.000001F, NoData},
    {"BeyondTheSouth", 5, -0.0001F, NoData},
    {"FarAway", 1e38F, -1e38F, NoData},
    {"NotANumber", Nan, 5, NoData},
    {"Infinite", 5, INFINITY, NoData},
};

} // namespace

class ImagePlace : public testing::TestWithParam<TPlace> {};

TEST_P(ImagePlace, HasTheNumberOfItsCell) {
    TIntegerImage image(QString(), SmallHeader(4, 2));
    for (std::int32_t row = 1; row <= 2; ++row)
        for (std::int32_t column = 1; column <= 4; ++column)
            image.SetCell(column, row, static_cast<float>(10 * column + row));
    EXPECT_EQ(image.GetValue(GetParam().X, GetParam().Y), GetParam().Number);
}

INSTANTIATE_TEST_SUITE_P(Map, ImagePlace, testing::ValuesIn(Places),
                         [](const auto& row) { return std::string(row.param.Name); });

TEST(ImageValue, IsMissingWhereBoundsMakeNoSense) {
    TRealImage image = Counting<TRealImage>();
    image.getHeader()->SetMaxX(0);
    EXPECT_EQ(image.GetValue(0, 5), NoData);
    image.getHeader()->SetMaxX(Nan);
    EXPECT_EQ(image.GetValue(0, 5), NoData);
    image.getHeader()->SetMaxX(INFINITY);
    EXPECT_EQ(image.GetValue(INFINITY, 5), NoData);
    EXPECT_EQ(TRealImage(QString(), SmallHeader(0, 0)).GetValue(5, 5), NoData);
}

TEST(ImageValue, FollowsBoundsThatRunTheOtherWay) {
    TRealImage image = Counting<TRealImage>();
    image.getHeader()->SetMinX(10);
    image.getHeader()->SetMaxX(0);
    EXPECT_EQ(image.GetValue(9, 9), 1);
    EXPECT_EQ(image.GetValue(1, 1), 6);
    EXPECT_EQ(image.GetValue(11, 1), NoData);
}

TEST(ImageValue, OfARealFileIsThatOfItsCell) {
    const auto image = TImageFactory::Load(DataFile("byte.rst"));
    EXPECT_EQ(image->GetValue(50, 70), 11);
    EXPECT_EQ(image->GetValue(70, 50), 42);
    EXPECT_EQ(image->GetValue(60, 60), 26);
}

} // namespace lmx::tests
