#include <lmx/Formats/Idrisi/lmxImageHeader.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Formats/ImageFiles.h>
#include <tests/Support/Printers.h>

#include <QBuffer>

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>

namespace lmx::tests {

namespace {

TImageHeader HeaderOf(const QString& fileName) {
    TImageHeader header;
    header.LoadFromFile(fileName);
    return header;
}

QByteArray StreamOf(const TImageHeader& header) {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    header.SaveToStream(buffer);
    return buffer.data();
}

void LoadFrom(TImageHeader& header, QByteArray bytes) {
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    header.LoadFromStream(buffer);
}

TImageHeader AwkwardHeader() {
    TImageHeader header;
    header.SetWidth(std::numeric_limits<std::int32_t>::max());
    header.SetHeight(-1);
    header.SetMinX(0.1F);
    header.SetMaxX(-INFINITY);
    header.SetMinY(std::numeric_limits<float>::denorm_min());
    header.SetMaxY(std::numeric_limits<float>::max());
    header.SetMinValue(-0.0F);
    header.SetMaxValue(1.70141e38F);
    header.SetDisplayMin(-9990);
    header.SetDisplayMax(3);
    header.SetResolutionX(0.25F);
    header.SetResolutionY(0.75F);
    header.SetUnitDistance(0.0083333F);
    header.SetFlagValue(-9990);
    header.SetFlag(true);
    header.SetDataType(TImageDataType::dtRgb24);
    header.SetFileType(TImageFileType::ftPacked);
    header.SetTitle(QStringLiteral("  two\r\nlines : 漢字 "));
    header.SetRefSystem(QStringLiteral("latlon"));
    header.SetRefUnits(QStringLiteral("deg"));
    header.SetPositionError(QStringLiteral("unknown"));
    header.SetValueUnits(QStringLiteral("Unspecified"));
    header.SetValueError(QStringLiteral("5"));
    header.SetFlagDef(QStringLiteral("NODATA"));
    header.SetLegendCategories({{-5, QStringLiteral("below")}, {0, QString()}, {70000, QStringLiteral("x")}});
    header.SetLineage(QStringLiteral("\n\na"));
    header.SetCompleteness(QStringLiteral("b\n"));
    header.SetConsistency(QStringLiteral("c"));
    header.SetComment(QStringLiteral("d\ne"));
    return header;
}

} // namespace

TEST(ImageHeader, IsEmptyWhenNew) {
    const TImageHeader header;
    EXPECT_EQ(header.GetWidth(), 0);
    EXPECT_EQ(header.GetUnitDistance(), 1);
    EXPECT_FALSE(header.GetFlag());
    EXPECT_EQ(static_cast<int>(header.GetDataType()), 0);
    EXPECT_EQ(static_cast<int>(header.GetFileType()), 1);
    EXPECT_FALSE(header.IsGeographic());
}

TEST(ImageHeader, NamesItsTypesByOrdinal) {
    EXPECT_EQ(DataTypeNames[static_cast<std::size_t>(TImageDataType::dtReal)], u"real");
    EXPECT_EQ(DataTypeNames[static_cast<std::size_t>(TImageDataType::dtInteger)], u"integer");
    EXPECT_EQ(DataTypeNames[static_cast<std::size_t>(TImageDataType::dtByte)], u"byte");
    EXPECT_EQ(DataTypeNames[static_cast<std::size_t>(TImageDataType::dtRgb8)], u"RGB8");
    EXPECT_EQ(DataTypeNames[static_cast<std::size_t>(TImageDataType::dtRgb24)], u"RGB24");
    EXPECT_EQ(FileTypeNames[static_cast<std::size_t>(TImageFileType::ftAscii)], u"ascii");
    EXPECT_EQ(FileTypeNames[static_cast<std::size_t>(TImageFileType::ftBinary)], u"binary");
    EXPECT_EQ(FileTypeNames[static_cast<std::size_t>(TImageFileType::ftPacked)], u"packed binary");
}

TEST(ImageHeader, IsGeographicBySystemOrUnits) {
    const auto isGeographic = [](const char* system, const char* units) {
        TImageHeader header;
        header.SetRefSystem(QString::fromLatin1(system));
        header.SetRefUnits(QString::fromLatin1(units));
        return header.IsGeographic();
    };
    EXPECT_TRUE(isGeographic("latlong", ""));
    EXPECT_TRUE(isGeographic("Lat/Long", "m"));
    EXPECT_TRUE(isGeographic("latlon ", ""));
    EXPECT_TRUE(isGeographic("plane", "deg"));
    EXPECT_TRUE(isGeographic("", "Degrees"));
    EXPECT_TRUE(isGeographic("unknown", "degree"));
    EXPECT_FALSE(isGeographic("plane", "m"));
    EXPECT_FALSE(isGeographic("utm-60s", "rad"));
    EXPECT_FALSE(isGeographic("latlongs", ""));
    EXPECT_FALSE(isGeographic("", ""));
}

TEST(ImageHeader, ReadsAFileWithBackquotes) {
    const TImageHeader header = HeaderOf(DataFile("byte.rdc"));
    EXPECT_EQ(header.GetTitle(), QStringLiteral("byte sample"));
    EXPECT_EQ(header.GetDataType(), TImageDataType::dtByte);
    EXPECT_EQ(header.GetFileType(), TImageFileType::ftBinary);
    EXPECT_EQ(header.GetWidth(), 21);
    EXPECT_EQ(header.GetHeight(), 21);
    EXPECT_EQ(header.GetRefSystem(), QStringLiteral("plane"));
    EXPECT_EQ(header.GetRefUnits(), QStringLiteral("m"));
    EXPECT_EQ(header.GetMinX(), 50);
    EXPECT_EQ(header.GetMaxX(), 70);
    EXPECT_EQ(header.GetMinY(), 50);
    EXPECT_EQ(header.GetMaxY(), 70);
    EXPECT_EQ(header.GetPositionError(), QStringLiteral("unknown"));
    EXPECT_EQ(header.GetResolutionX(), 0);
    EXPECT_EQ(header.GetMinValue(), 1);
    EXPECT_EQ(header.GetMaxValue(), 255);
    EXPECT_EQ(header.GetDisplayMax(), 255);
    EXPECT_FALSE(header.GetFlag());
    EXPECT_EQ(header.GetFlagDef(), QStringLiteral("none"));
    EXPECT_FALSE(header.IsGeographic());
}

TEST(ImageHeader, ReadsAFileOfAnotherProgram) {
    const TImageHeader header = HeaderOf(DataFile("dtm.rst"));
    EXPECT_EQ(header.GetTitle(), QString());
    EXPECT_EQ(header.GetWidth(), 223);
    EXPECT_EQ(header.GetHeight(), 101);
    EXPECT_EQ(header.GetMinX(), 319199);
    EXPECT_EQ(header.GetMaxY(), 6297240);
    EXPECT_EQ(header.GetResolutionY(), 20);
    EXPECT_EQ(header.GetMinValue(), -9999);
    EXPECT_EQ(header.GetMaxValue(), 192.46536F);
    EXPECT_TRUE(header.GetFlag());
    EXPECT_EQ(header.GetFlagValue(), -99999);
    EXPECT_EQ(header.GetFlagDef(), QStringLiteral("missing data"));
    EXPECT_EQ(header.GetRefSystem(), QStringLiteral("utm-37n"));
    EXPECT_EQ(header.GetLineage(), QString());
}

TEST(ImageHeader, ReadsAFileOfTheOlderGeneration) {
    const TImageHeader header = HeaderOf(DataFile("isric_wise_awc.doc"));
    EXPECT_EQ(header.GetTitle(), QStringLiteral("ISRIC-WISE Soil Moisture Retention (0-1 m)"));
    EXPECT_EQ(header.GetFileType(), TImageFileType::ftAscii);
    EXPECT_EQ(header.GetWidth(), 720);
    EXPECT_EQ(header.GetHeight(), 360);
    EXPECT_TRUE(header.IsGeographic());
    EXPECT_EQ(header.GetMinX(), -180);
    EXPECT_EQ(header.GetMaxY(), 90);
    EXPECT_EQ(header.GetMaxValue(), 11);
    EXPECT_EQ(header.GetDisplayMax(), 11);
    EXPECT_EQ(header.GetValueUnits(), QStringLiteral("classes"));
    EXPECT_FALSE(header.GetFlag());
    const TLegendCategories& categories = header.GetLegendCategories();
    ASSERT_EQ(categories.size(), 12U);
    EXPECT_EQ(categories.at(0), QStringLiteral("Background"));
    EXPECT_EQ(categories.at(11), QStringLiteral("Oceans        (> 66% of grid; mm m-1)"));
    EXPECT_EQ(header.GetComment().count(u'\n'), 2);
    EXPECT_TRUE(header.GetComment().endsWith(QStringLiteral("\nRendzinas).")));
    EXPECT_EQ(header.GetLineage().count(u'\n'), 4);
    EXPECT_TRUE(header.GetLineage().startsWith(QStringLiteral("Source:\nBatjes")));
}

TEST(ImageHeader, IsSavedByTheNameOfEitherFile) {
    const TImageFolder folder;
    const TImageHeader header = HeaderOf(DataFile("segments.rdc"));
    header.SaveToFile(folder.Path("a.rst"));
    header.SaveToFile(folder.Path("B.IMG"));
    EXPECT_TRUE(folder.Read("a.rdc").startsWith("file format : IDRISI Raster A.1\r\n"));
    EXPECT_TRUE(folder.Read("B.DOC").startsWith("file title  : "));
    EXPECT_EQ(HeaderOf(folder.Path("a.rdc")), header);
    EXPECT_EQ(HeaderOf(folder.Path("B.DOC")), header);
}

TEST(ImageHeader, StaysAsItWasWhenAFileIsRefused) {
    const TImageFolder folder;
    folder.Write("bad.rdc", "columns : 5\r\n");
    TImageHeader header = HeaderOf(DataFile("byte.rdc"));
    const TImageHeader before = header;
    EXPECT_EQ(MessageOf<EFileFormatException>([&] { header.LoadFromFile(folder.Path("bad.rdc")); }),
              folder.Path("bad.rdc") + QStringLiteral(": the number of rows is missing or not a positive integer"));
    EXPECT_EQ(MessageOf<EFileException>([&] { header.LoadFromFile(folder.Path("none.rdc")); }),
              folder.Path("none.rdc") + QStringLiteral(": cannot be opened: No such file or directory"));
    EXPECT_EQ(header, before);
}

TEST(ImageHeaderStream, RestoresEveryEntryExactly) {
    const TImageHeader header = AwkwardHeader();
    TImageHeader restored;
    LoadFrom(restored, StreamOf(header));
    EXPECT_EQ(restored, header);
    EXPECT_TRUE(std::signbit(restored.GetMinValue()));
    EXPECT_EQ(StreamOf(restored), StreamOf(header));
}

TEST(ImageHeaderStream, RestoresTheBitsOfNan) {
    TImageHeader header;
    const float nan = std::bit_cast<float>(0x7FC12345U);
    header.SetMinX(nan);
    TImageHeader restored;
    LoadFrom(restored, StreamOf(header));
    EXPECT_EQ(std::bit_cast<std::uint32_t>(restored.GetMinX()), 0x7FC12345U);
}

TEST(ImageHeaderStream, BeginsAndEndsAtTheDevicesPosition) {
    QBuffer buffer;
    buffer.open(QIODevice::ReadWrite);
    buffer.write("before");
    AwkwardHeader().SaveToStream(buffer);
    buffer.write("behind");
    buffer.seek(6);
    TImageHeader restored;
    restored.LoadFromStream(buffer);
    EXPECT_EQ(restored, AwkwardHeader());
    EXPECT_EQ(buffer.readAll(), QByteArray("behind"));
}

TEST(ImageHeaderStream, RefusesEveryPrefix) {
    const QByteArray whole = StreamOf(AwkwardHeader());
    const TImageHeader before;
    TImageHeader header;
    for (qsizetype length = 0; length < whole.size(); ++length) {
        EXPECT_THROW(LoadFrom(header, whole.first(length)), EFileFormatException) << length;
        EXPECT_EQ(header, before);
    }
}

TEST(ImageHeaderStream, RefusesEveryChangedByte) {
    const QByteArray whole = StreamOf(AwkwardHeader());
    const TImageHeader before;
    TImageHeader header;
    for (qsizetype place = 0; place < whole.size(); ++place) {
        QByteArray damaged = whole;
        damaged[place] = static_cast<char>(damaged[place] ^ 0x41);
        EXPECT_THROW(LoadFrom(header, damaged), EFileFormatException) << place;
        EXPECT_EQ(header, before);
    }
}

TEST(ImageHeaderStream, SaysWhatIsWrong) {
    const QByteArray whole = StreamOf(TImageHeader());
    TImageHeader header;
    const auto messageOf = [&header](const QByteArray& bytes) {
        return MessageOf<EFileFormatException>([&] { LoadFrom(header, bytes); });
    };
    EXPECT_EQ(messageOf("file title  : x"), QStringLiteral("Image header: not in the stored form"));
    EXPECT_EQ(messageOf(whole.first(20)), QStringLiteral("Image header: cut short"));
    QByteArray newer = whole;
    newer[4] = 2;
    EXPECT_EQ(messageOf(newer), QStringLiteral("Image header: stored by a newer version"));
    QByteArray huge = whole;
    huge.replace(8, 4, QByteArray("\xFF\xFF\xFF\xFF"));
    EXPECT_EQ(messageOf(huge), QStringLiteral("Image header: cut short"));
    QByteArray damaged = whole;
    damaged[12] = 1;
    EXPECT_EQ(messageOf(damaged), QStringLiteral("Image header: damaged"));
}

} // namespace lmx::tests
