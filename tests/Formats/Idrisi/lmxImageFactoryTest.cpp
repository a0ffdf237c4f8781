#include <lmx/Climate/lmxSpatialConst.h>
#include <lmx/Formats/Idrisi/lmxIdrisiImages.h>
#include <lmx/Formats/Idrisi/lmxImageFactory.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Formats/ImageFiles.h>
#include <tests/Support/Printers.h>

#include <QBuffer>

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace lmx::tests {

namespace {

std::vector<float> AllCells(const TAbstractImage& image) {
    const auto width = static_cast<std::size_t>(image.getHeader()->GetWidth());
    std::vector<float> numbers;
    std::vector<float> row(width);
    for (std::int32_t y = 1; y <= image.getHeader()->GetHeight(); ++y) {
        image.ReadRow(y, row);
        numbers.insert(numbers.end(), row.begin(), row.end());
    }
    return numbers;
}

} // namespace

TEST(ImageFactory, ReadsAnImageOfBytes) {
    const auto image = TImageFactory::Load(DataFile("byte.rst"));
    EXPECT_EQ(image->GetClassName(), QStringLiteral("TByteImage"));
    EXPECT_EQ(image->GetFilePath(), DataFile("byte.rst"));
    EXPECT_EQ(image->GetCell(1, 1), 11);
    EXPECT_EQ(image->GetCell(21, 1), 32);
    EXPECT_EQ(image->GetCell(1, 21), 37);
    EXPECT_EQ(image->GetCell(21, 21), 42);
    EXPECT_EQ(image->GetCell(11, 11), 26);
    const std::vector<float> cells = AllCells(*image);
    EXPECT_EQ(*std::min_element(cells.begin(), cells.end()), 1);
    EXPECT_EQ(*std::max_element(cells.begin(), cells.end()), 255);
}

TEST(ImageFactory, ReadsAnImageOfRealNumbersWhoseFlagMatchesNoCell) {
    const auto image = TImageFactory::Load(DataFile("dtm.rst"));
    EXPECT_EQ(image->GetClassName(), QStringLiteral("TRealImage"));
    for (const std::int32_t row : {1, 101})
        for (const std::int32_t column : {1, 223})
            EXPECT_EQ(image->GetCell(column, row), -9999.0F);
    const std::vector<float> cells = AllCells(*image);
    EXPECT_EQ(cells.size(), 223U * 101U);
    EXPECT_EQ(*std::min_element(cells.begin(), cells.end()), -9999.0F);
    EXPECT_EQ(*std::max_element(cells.begin(), cells.end()), 192.46536F);
}

TEST(ImageFactory, ReadsAnImageOfIntegers) {
    const auto image = TImageFactory::Load(DataFile("segments.rst"));
    EXPECT_EQ(image->GetClassName(), QStringLiteral("TIntegerImage"));
    const std::vector<float> cells = AllCells(*image);
    EXPECT_EQ(*std::min_element(cells.begin(), cells.end()), 0);
    EXPECT_EQ(*std::max_element(cells.begin(), cells.end()), 789);
    EXPECT_EQ(std::count_if(cells.begin(), cells.end(), TSpatialConst::IsFlag), 0);
}

TEST(ImageFactory, TakesTheNameOfTheDocumentationToo) {
    const auto image = TImageFactory::Load(DataFile("byte.rdc"));
    EXPECT_EQ(image->GetFilePath(), DataFile("byte.rdc"));
    EXPECT_EQ(image->GetCell(21, 21), 42);
}

TEST(ImageFactory, KnowsTheFourClassesByName) {
    for (const QString& name : {QStringLiteral("TByteImage"), QStringLiteral("TIntegerImage"),
                                QStringLiteral("TRealImage"), QStringLiteral("TAsciiImage")}) {
        const TImageClass* imageClass = TImageFactory::GetImageClass(name);
        ASSERT_NE(imageClass, nullptr) << name.toStdString();
        EXPECT_EQ(imageClass->Name, name);
        EXPECT_EQ(imageClass->Create(QString(), TImageHeader())->GetClassName(), name);
    }
    EXPECT_EQ(TImageFactory::GetImageClass(QStringLiteral("trealimage")), nullptr);
    EXPECT_EQ(TImageFactory::GetImageClass(QStringLiteral("TAbstractImage")), nullptr);
    EXPECT_EQ(TImageFactory::GetImageClass(QString()), nullptr);
}

TEST(ImageFactory, OpensAFileAsTheClassOfItsKindOnly) {
    const TImageClass* bytes = TImageFactory::GetImageClass(QStringLiteral("TByteImage"));
    EXPECT_EQ(bytes->Open(DataFile("byte.rst"), true)->GetCell(1, 1), 11);
    const QString file = DataFile("dtm.rst");
    EXPECT_EQ(MessageOf<EFileFormatException>([&] { bytes->Open(file, true); }),
              file + QStringLiteral(": the file is not one of a TByteImage"));
}

TEST(ImageFactory, CopiesCellsHeaderAndPath) {
    const auto image = TImageFactory::Load(DataFile("segments.rst"));
    const auto copy = TImageFactory::Copy(*image);
    EXPECT_EQ(copy->GetClassName(), QStringLiteral("TIntegerImage"));
    EXPECT_EQ(copy->GetFilePath(), image->GetFilePath());
    EXPECT_EQ(*copy->getHeader(), *image->getHeader());
    EXPECT_EQ(AllCells(*copy), AllCells(*image));
    copy->SetCell(1, 1, 5);
    EXPECT_EQ(copy->GetCell(1, 1), 5);
    EXPECT_EQ(image->GetCell(1, 1), 0);
}

TEST(ImageFactory, FindsTheSisterFileInAnotherCaseAndOfTheOtherGeneration) {
    const TImageFolder folder;
    folder.Write("SOILS.IMG", QByteArray("\x01\x02\x03\x04", 4));
    folder.Write("soils.Doc", Documentation("byte", "binary", 2, 2));
    EXPECT_EQ(TImageFactory::Load(folder.Path("SOILS.IMG"))->GetCell(2, 2), 4);
    EXPECT_EQ(TImageFactory::Load(folder.Path("soils.Doc"))->GetCell(1, 2), 3);

    folder.Write("new.rst", QByteArray("\x05\x06\x07\x08", 4));
    folder.Write("new.doc", Documentation("byte", "binary", 2, 2));
    EXPECT_EQ(TImageFactory::Load(folder.Path("new.rst"))->GetCell(1, 1), 5);
    EXPECT_EQ(TImageFactory::Load(folder.Path("new.doc"))->GetCell(1, 1), 5);
}

TEST(ImageFactory, NamesTheFileThatIsMissing) {
    const TImageFolder folder;
    folder.Write("a.rst", QByteArray(4, '\0'));
    folder.Write("b.rdc", Documentation("byte", "binary", 2, 2));
    const QString lonelyData = folder.Path("a.rst");
    const QString lonelyText = folder.Path("b.rdc");
    const QString other = folder.Path("c.tif");
    EXPECT_EQ(MessageOf<EFileException>([&] { TImageFactory::Load(lonelyData); }),
              lonelyData + QStringLiteral(": the documentation file (.rdc or .doc) is missing"));
    EXPECT_EQ(MessageOf<EFileException>([&] { TImageFactory::Load(lonelyText); }),
              lonelyText + QStringLiteral(": the data file (.rst or .img) is missing"));
    EXPECT_EQ(MessageOf<EFileException>([&] { TImageFactory::Load(other); }),
              other + QStringLiteral(": an Idrisi image is an .rst or .img file"));
}

TEST(ImageFactory, TellsAMissingDataTypeFromTheLengthOfTheData) {
    const TImageFolder folder;
    const QByteArray documentation = Documentation("", "binary", 2, 1);
    const auto classOf = [&](qsizetype length) {
        folder.Write("a.img", QByteArray(length, '\1'));
        folder.Write("a.doc", documentation);
        return TImageFactory::Load(folder.Path("a.img"))->GetClassName();
    };
    EXPECT_EQ(classOf(2), QStringLiteral("TByteImage"));
    EXPECT_EQ(classOf(4), QStringLiteral("TIntegerImage"));
    EXPECT_EQ(classOf(8), QStringLiteral("TRealImage"));
    EXPECT_EQ(MessageOf<EFileFormatException>([&] { classOf(3); }),
              folder.Path("a.doc") + QStringLiteral(": the data type is missing and the data do not tell it"));
}

TEST(ImageFactory, RefusesColours) {
    const TImageFolder folder;
    folder.Write("a.rst", QByteArray(12, '\1'));
    folder.Write("a.rdc", Documentation("RGB24", "binary", 2, 2));
    EXPECT_EQ(MessageOf<EFileFormatException>([&] { TImageFactory::Load(folder.Path("a.rst")); }),
              folder.Path("a.rst") + QStringLiteral(": an RGB24 image holds colours, not values"));
}

TEST(ImageFactory, ComputesTheRangeThatTheDocumentationLeavesOut) {
    QByteArray text = Documentation("byte", "binary", 2, 2);
    text.replace("min. value  : 0\r\n", "min. value  : unspecified\r\n");
    QBuffer documentation(&text);
    QByteArray cells("\x07\x09\x08\x0A", 4);
    QBuffer data(&cells);
    documentation.open(QIODevice::ReadOnly);
    data.open(QIODevice::ReadOnly);
    const auto image = TImageFactory::Load(documentation, data, QStringLiteral("memory"));
    EXPECT_EQ(image->GetFilePath(), QString());
    EXPECT_EQ(image->getHeader()->GetMinValue(), 7);
    EXPECT_EQ(image->getHeader()->GetMaxValue(), 10);
}

TEST(ImageFactory, RefusesEndlessDocumentation) {
    QByteArray text(9 * 1024 * 1024, '\n');
    QBuffer documentation(&text);
    QByteArray cells(4, '\0');
    QBuffer data(&cells);
    documentation.open(QIODevice::ReadOnly);
    data.open(QIODevice::ReadOnly);
    EXPECT_EQ(
        MessageOf<EFileFormatException>([&] { TImageFactory::Load(documentation, data, QStringLiteral("memory")); }),
        QStringLiteral("memory: holds more than 8388608 bytes of documentation"));
}

} // namespace lmx::tests
