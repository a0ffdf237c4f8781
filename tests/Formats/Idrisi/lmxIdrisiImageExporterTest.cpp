#include <lmx/Formats/Idrisi/lmxIdrisiImageExporter.h>
#include <lmx/Formats/Idrisi/lmxIdrisiImages.h>
#include <lmx/Formats/Idrisi/lmxImageFactory.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxText.h>
#include <tests/Formats/ImageFiles.h>
#include <tests/Support/FileSizeLimit.h>
#include <tests/Support/Printers.h>

#include <QDir>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace lmx::tests {

namespace {

TImageHeader HeaderOf(std::int32_t columns, std::int32_t rows, float west, float east, float south, float north) {
    TImageHeader header;
    header.SetWidth(columns);
    header.SetHeight(rows);
    header.SetMinX(west);
    header.SetMaxX(east);
    header.SetMinY(south);
    header.SetMaxY(north);
    return header;
}

/// 3 x 2 cells of 0.1 degrees: 0.5, a flag, 2 in the north; NaN, an undeclared flag, -3.25 in the south.
TRealImage NewZealandCorner() {
    TImageHeader header = HeaderOf(3, 2, 166.4F, 166.7F, -47.3F, -47.1F);
    header.SetFlag(true);
    header.SetFlagValue(-1);
    TRealImage image(QString(), header);
    image.SetCell(1, 1, 0.5F);
    image.SetCell(2, 1, -1);
    image.SetCell(3, 1, 2);
    image.SetCell(1, 2, std::numeric_limits<float>::quiet_NaN());
    image.SetCell(2, 2, 1e35F);
    image.SetCell(3, 2, -3.25F);
    return image;
}

template<class Exporter>
QByteArray Exported(const TAbstractImage& image) {
    const TImageFolder folder;
    Exporter().Export(image, folder.Path("out.txt"));
    return folder.Read("out.txt").replace(LineBreak().toLatin1(), "\n");
}

} // namespace

TEST(IdrisiImageExporter, WritesAnAsciiGrid) {
    EXPECT_EQ(Exported<TArcInfoGridASCIIExporter>(NewZealandCorner()), QByteArray("ncols         3\n"
                                                                                  "nrows         2\n"
                                                                                  "xllcorner     166.4\n"
                                                                                  "yllcorner     -47.3\n"
                                                                                  "cellsize      0.1\n"
                                                                                  "NODATA_value  -9999\n"
                                                                                  "0.5 -9999 2\n"
                                                                                  "-9999 -9999 -3.25\n"));
}

TEST(IdrisiImageExporter, WritesTwoSidesForCellsThatAreNotSquare) {
    TByteImage image(QString(), HeaderOf(2, 1, 0, 1, 0, 2));
    image.SetCell(2, 1, 7);
    EXPECT_EQ(Exported<TArcInfoGridASCIIExporter>(image), QByteArray("ncols         2\n"
                                                                     "nrows         1\n"
                                                                     "xllcorner     0\n"
                                                                     "yllcorner     0\n"
                                                                     "dx            0.5\n"
                                                                     "dy            2\n"
                                                                     "NODATA_value  -9999\n"
                                                                     "0 7\n"));
}

TEST(IdrisiImageExporter, TakesSidesAsEqualThatDifferByTheRoundingOfBoundsOnly) {
    // 1/3 of a degree: no bound but the corner is exact in single precision.
    const TByteImage image(QString(), HeaderOf(2, 1, 170, 170.66667F, -40.333332F, -40));
    const QByteArray text = Exported<TArcInfoGridASCIIExporter>(image);
    EXPECT_TRUE(text.contains("\ncellsize      0.333335\n")) << text.toStdString();
    EXPECT_FALSE(text.contains("dx"));
}

TEST(IdrisiImageExporter, WritesALineForEachCellCentre) {
    EXPECT_EQ(Exported<TXYZAsciiExporter>(NewZealandCorner()), QByteArray("166.45 -47.15 0.5\n"
                                                                          "166.55 -47.15 -9999\n"
                                                                          "166.65 -47.15 2\n"
                                                                          "166.45 -47.25 -9999\n"
                                                                          "166.55 -47.25 -9999\n"
                                                                          "166.65 -47.25 -3.25\n"));
}

TEST(IdrisiImageExporter, WritesExactSingles) {
    TRealImage image(QString(), HeaderOf(2, 1, 0, 2, 0, 1));
    image.SetCell(1, 1, 0.1F + 0.2F);
    image.SetCell(2, 1, 16777217.0F);
    EXPECT_TRUE(Exported<TArcInfoGridASCIIExporter>(image).endsWith("\n0.3 16777216\n"));
    image.SetCell(1, 1, std::nextafter(0.3F, 1.0F));
    EXPECT_TRUE(Exported<TXYZAsciiExporter>(image).startsWith("0.5 0.5 0.30000004\n"));
}

TEST(IdrisiImageExporter, SavesACopyInTheImagesOwnFormat) {
    const TImageFolder folder;
    const auto image = TImageFactory::Load(DataFile("segments.rst"));
    TIdrisiImageSaveCopyExporter().Export(*image, folder.Path("copy.img"));
    EXPECT_EQ(folder.Read("copy.doc").left(14), QByteArray("file title  : "));
    const auto copy = TImageFactory::Load(folder.Path("copy.img"));
    EXPECT_EQ(*copy->getHeader(), *image->getHeader());
    EXPECT_EQ(copy->GetValue(321000, 6296000), image->GetValue(321000, 6296000));
    TIdrisiImageSaveCopyExporter().Export(*image, folder.Path("copy.rst"));
    EXPECT_EQ(folder.Read("copy.rst"), folder.Read("copy.img"));
    EXPECT_EQ(image->GetFilePath(), DataFile("segments.rst"));
}

TEST(IdrisiImageExporter, RefusesAnImageWithoutPlace) {
    const TImageFolder folder;
    const QString name = folder.Path("a.asc");
    const float nan = std::numeric_limits<float>::quiet_NaN();
    for (const TImageHeader& header :
         {HeaderOf(0, 1, 0, 1, 0, 1), HeaderOf(1, 0, 0, 1, 0, 1), HeaderOf(1, 1, 1, 0, 0, 1),
          HeaderOf(1, 1, 0, 0, 0, 1), HeaderOf(1, 1, 0, 1, 1, 0), HeaderOf(1, 1, nan, 1, 0, 1),
          HeaderOf(1, 1, 0, 1, -INFINITY, 1)}) {
        const TByteImage image(QString(), header);
        const QString message = name + QStringLiteral(": the image has no bounds to write a grid with");
        EXPECT_EQ(MessageOf<EFileException>([&] { TArcInfoGridASCIIExporter().Export(image, name); }), message);
        EXPECT_EQ(MessageOf<EFileException>([&] { TXYZAsciiExporter().Export(image, name); }), message);
    }
    EXPECT_EQ(QDir(folder.Path("")).entryList(QDir::Files), QStringList());
}

namespace {

/// Fails in its last row, when most of the file has been written.
class TFailingImage final : public TAbstractImage {
public:
    TFailingImage() : TAbstractImage(HeaderOf(2, 50'000, 0, 2, 0, 50'000)) {}
    float GetCell(std::int32_t, std::int32_t row) const override {
        if (row == 50'000)
            throw EInvalidOperation(QStringLiteral("gone"));
        return 1;
    }
};

} // namespace

TEST(IdrisiImageExporter, LeavesTheOldFileWhenItFailsHalfWay) {
    const TImageFolder folder;
    folder.Write("a.asc", "old");
    TArcInfoGridASCIIExporter grid;
    TXYZAsciiExporter lines;
    for (IIdrisiImageExporter* exporter :
         {static_cast<IIdrisiImageExporter*>(&grid), static_cast<IIdrisiImageExporter*>(&lines)}) {
        EXPECT_EQ(MessageOf<EInvalidOperation>([&] { exporter->Export(TFailingImage(), folder.Path("a.asc")); }),
                  QStringLiteral("gone"));
        EXPECT_EQ(folder.Read("a.asc"), QByteArray("old"));
    }
    EXPECT_EQ(QDir(folder.Path("")).entryList(QDir::Files), QStringList{QStringLiteral("a.asc")});
}

TEST(IdrisiImageExporter, LeavesTheOldFileWhenTheDiskIsFull) {
    const TImageFolder folder;
    const QString name = folder.Path("a.asc");
    folder.Write("a.asc", "old");
    const TByteImage small(QString(), HeaderOf(4, 4, 0, 4, 0, 4));
    const TByteImage large(QString(), HeaderOf(500, 600, 0, 500, 0, 600));
    for (const TByteImage* image : {&small, &large}) {
        const TFileSizeLimit limit(50);
        const QString message = name + QStringLiteral(": cannot be written: File too large");
        EXPECT_EQ(MessageOf<EFileException>([&] { TXYZAsciiExporter().Export(*image, name); }), message);
        EXPECT_EQ(MessageOf<EFileException>([&] { TArcInfoGridASCIIExporter().Export(*image, name); }), message);
    }
    EXPECT_EQ(folder.Read("a.asc"), QByteArray("old"));
}

TEST(IdrisiImageExporter, NamesTheFileThatCannotBeWritten) {
    const TImageFolder folder;
    const QString nowhere = folder.Path("missing/a.asc");
    const QString start = nowhere + QStringLiteral(": cannot be written: ");
    EXPECT_TRUE(
        MessageOf<EFileException>([&] { TXYZAsciiExporter().Export(NewZealandCorner(), nowhere); }).startsWith(start));
    EXPECT_TRUE(MessageOf<EFileException>([&] {
                    TArcInfoGridASCIIExporter().Export(NewZealandCorner(), nowhere);
                }).startsWith(start));
}

} // namespace lmx::tests
