// Files as a layer: what an ASCII grid becomes, and what is said of a file that cannot be shown.

#include "OpenRaster.h"

#include <lmx/Climate/lmxSpatialConst.h>
#include <lmx/Formats/Idrisi/lmxIdrisiImages.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Raster/lmxArcInfoAsciiGridRasterFrame.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxFormatSettings.h>
#include <lmx/Runtime/lmxText.h>
#include <tests/Support/Printers.h>

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "ClimateFiles.h"
#include "FileKinds.h"

namespace lmx {
namespace {

class OpenRasters : public testing::Test {
protected:
    QString FileOf(const char* name, const QByteArray& bytes) const {
        const QString fileName = Folder.filePath(QString::fromLatin1(name));
        WriteFile(fileName, bytes);
        return fileName;
    }
    /// An ASCII grid with cells of `cellSize`, its lower left corner at (10, 20).
    QString GridOf(const QByteArray& columns, const QByteArray& rows, const QByteArray& cellSize,
                   const QByteArray& cells) const {
        return FileOf("grid.asc", "ncols " + columns + "\nnrows " + rows + "\nxllcorner 10\nyllcorner 20\ncellsize " +
                                      cellSize + "\nNODATA_value 7\n" + cells);
    }
    std::unique_ptr<TIdrisiMapLayer> Open(const QString& fileName) const {
        return OpenRaster(TLayerManagerFactory::GetObject(), fileName);
    }
    template<class Failure>
    QString MessageFor(const QString& fileName) const {
        return tests::MessageOf<Failure>([&] { Open(fileName); });
    }

    const TFormatSettingsScope Point{TFormatSettings{u'.'}};
    const QTemporaryDir Folder;
};

TEST_F(OpenRasters, AGridIsAnImageOfItsValues) {
    const auto layer = Open(GridOf("2", "2", "2.5", "1 7\n-9999 4\n"));
    EXPECT_EQ(layer->GetLayerName(), "grid");
    EXPECT_TRUE(layer->GetLayerArea().Area.Equals(TMapArea(10, 25, 15, 20)));
    EXPECT_TRUE(layer->GetIsReadyToDraw());
    const TAbstractImage& image = *layer->GetImage();
    EXPECT_EQ(image.GetCell(1, 1), 1);
    EXPECT_EQ(image.GetCell(2, 1), TSpatialConst::NoData) << "the grid's own value for cells without data";
    EXPECT_EQ(image.GetCell(1, 2), -9999);
    EXPECT_EQ(image.GetCell(2, 2), 4);
    const TImageHeader& header = *image.getHeader();
    EXPECT_EQ(header.GetMinValue(), 1);
    EXPECT_EQ(header.GetMaxValue(), 4);
    EXPECT_TRUE(header.GetFlag());
    EXPECT_EQ(header.GetFlagValue(), TSpatialConst::NoData);
    EXPECT_TRUE(header.IsGeographic());
}

TEST_F(OpenRasters, AGridBeyondTheDegreesIsPlane) {
    EXPECT_TRUE(Open(GridOf("2", "1", "70", "1 2\n"))->GetImage()->getHeader()->IsGeographic());
    EXPECT_FALSE(Open(GridOf("2", "1", "71", "1 2\n"))->GetImage()->getHeader()->IsGeographic()) << "91 north";
    EXPECT_FALSE(
        Open(GridOf("400", "1", "1", QByteArray("1 ").repeated(399) + "1\n"))->GetImage()->getHeader()->IsGeographic())
        << "410 east";
}

TEST_F(OpenRasters, ADamagedGridIsNamed) {
    const QString fileName = GridOf("2", "2", "1", "1 2\n3 x\n");
    EXPECT_EQ(MessageFor<EFileFormatException>(fileName), fileName + ": 'x' is not a valid floating point value");
    GridOf("2", "2", "1", "1 2\n3 4 5\n");
    EXPECT_EQ(MessageFor<EFileFormatException>(fileName), fileName + ": Row 1 contains 3 values, 2 were expected");
    const QString cut = FileOf("cut.asc", "\xEF\xBB\xBF  NCOLS 2\nDear reader\n");
    EXPECT_EQ(MessageFor<EFileFormatException>(cut), cut + ": Line does not start with expected line ID");
}

TEST_F(OpenRasters, AFileOfAnotherKindIsNamedWithWhatOpens) {
    const QString problem =
        QStringLiteral(": none of the formats that open: Map documents (.lmx), Idrisi images (.rst, .rdc, .img, .doc), "
                       "ASCII grids (.asc, .grd, .txt), Shape files (.shp), Idrisi vectors (.vct, .vdc, .vec, .dvc)") +
        (TClimateFiles::CanOpen() ? ", Climate files (.nc, .nc4, .cdf, .h5, .hdf5, .grib, .grb, .grib2, .grb2, .tif, "
                                    ".tiff, .zarr, .zip)"
                                  : "");
    for (const char* name : {"notes.txt", "picture.png", "grid.asc", "noSuffix"}) {
        const QString file = FileOf(name, "Dear reader\n");
        EXPECT_EQ(MessageFor<EFileFormatException>(file), file + problem);
    }
    const QString empty = FileOf("empty.asc", "");
    EXPECT_EQ(MessageFor<EFileFormatException>(empty), empty + problem);
    EXPECT_EQ(MessageFor<EFileException>(Folder.path() + "/missing.txt"),
              Folder.path() + "/missing.txt: cannot be read: No such file or directory");
}

TEST_F(OpenRasters, KindsAreToldBySuffix) {
    EXPECT_EQ(KindOf("b.lmx"), TFileKind::fkDocument);
    EXPECT_EQ(KindOf("a/b.RST"), TFileKind::fkIdrisiImage);
    EXPECT_EQ(KindOf("b.grd"), TFileKind::fkAsciiGrid);
    EXPECT_EQ(KindOf("b.shp"), TFileKind::fkShapes);
    EXPECT_EQ(KindOf("b.dvc"), TFileKind::fkIdrisiVectors);
    EXPECT_EQ(KindOf("rst"), TFileKind::fkAsciiGrid);
    EXPECT_EQ(KindOf("b.NC"), TFileKind::fkClimate);
    EXPECT_EQ(KindOf("b.tiff"), TFileKind::fkClimate);
    const QString climate = TClimateFiles::CanOpen()
                                ? "*.nc;*.nc4;*.cdf;*.h5;*.hdf5;*.grib;*.grb;*.grib2;*.grb2;*.tif;*.tiff;*.zarr;*.zip"
                                : "";
    EXPECT_EQ(KnownFilesFilter(),
              "Maps|*.lmx;*.rst;*.rdc;*.img;*.doc;*.asc;*.grd;*.txt;*.shp;*.vct;*.vdc;*.vec;*.dvc" +
                  (climate.isEmpty() ? "" : ';' + climate) +
                  "|Map documents|*.lmx|Idrisi images|*.rst;*.rdc;*.img;*.doc|ASCII grids|*.asc;*.grd;*.txt|"
                  "Shape files|*.shp|Idrisi vectors|*.vct;*.vdc;*.vec;*.dvc" +
                  (climate.isEmpty() ? "" : "|Climate files|" + climate) + "|All files|*");
}

TEST_F(OpenRasters, ALongRowIsNotShownAsAWhole) {
    const QString fileName = GridOf("1000", "1", "0.1", QByteArray("1\t").repeated(999) + "1\n");
    const QString message = MessageFor<EFileFormatException>(fileName);
    EXPECT_TRUE(message.startsWith(fileName + ": '1\t1\t1")) << message.toStdString();
    EXPECT_TRUE(message.endsWith(QStringLiteral("' is not a valid floating point value"))) << message.toStdString();
    EXPECT_LT(message.size(), fileName.size() + 200);
}

TEST_F(OpenRasters, AMissingFileIsNamedOnce) {
    const QString grid = Folder.filePath(QStringLiteral("missing.asc"));
    EXPECT_EQ(MessageFor<EFileException>(grid), grid + ": cannot be read: No such file or directory");
    const QString image = Folder.filePath(QStringLiteral("missing.rst"));
    EXPECT_TRUE(MessageFor<EFileException>(image).startsWith(image + ": "));
}

TEST_F(OpenRasters, AGridThatCoversNothingIsRefused) {
    const QString message = Folder.filePath(QStringLiteral("grid.asc")) + ": no cells to show";
    EXPECT_EQ(MessageFor<EFileFormatException>(GridOf("0", "0", "1", "")), message);
    EXPECT_EQ(MessageFor<EFileFormatException>(GridOf("3", "0", "1", "")), message);
    EXPECT_EQ(MessageFor<EFileFormatException>(GridOf("2", "1", "0", "1 2\n")), message);
    EXPECT_EQ(MessageFor<EFileFormatException>(GridOf("2", "1", "-1", "1 2\n")), message);
}

TEST_F(OpenRasters, AGridWithoutAnyDataIsALayerAllTheSame) {
    const auto layer = Open(GridOf("2", "1", "1", "7 7\n"));
    EXPECT_TRUE(layer->GetIsReadyToDraw());
    EXPECT_EQ(layer->GetImage()->GetCell(1, 1), TSpatialConst::NoData);
}

} // namespace
} // namespace lmx
