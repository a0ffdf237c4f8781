#include <lmx/DataSources/Private/lmxClimateFileKind.h>

#include <lmx/DataSources/lmxClimateExceptions.h>

#include <tests/Support/Printers.h>

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace lmx {
namespace {

using namespace tests;
using enum TClimateFileKind;

TClimateFileKind KindOf(QByteArray content) {
    QBuffer buffer(&content);
    buffer.open(QIODevice::ReadOnly);
    return ClimateFileKindOf(buffer);
}

QByteArray Hdf5() {
    return QByteArray("\x89HDF\r\n\x1a\n", 8);
}

TEST(ClimateFileKind, IsToldByTheFirstBytes) {
    EXPECT_EQ(KindOf("CDF\x01more"), fkNetCDF);
    EXPECT_EQ(KindOf("CDF\x02more"), fkNetCDF);
    EXPECT_EQ(KindOf("CDF\x05more"), fkNetCDF64);
    EXPECT_EQ(KindOf("CDF\x03more"), fkUnknown);
    EXPECT_EQ(KindOf(Hdf5()), fkHdf5);
    EXPECT_EQ(KindOf("GRIB...\x01"), fkGrib);
    EXPECT_EQ(KindOf("GRIB...\x02"), fkGrib);
    EXPECT_EQ(KindOf("a heading\r\nGRIB...\x02"), fkGrib);
    EXPECT_EQ(KindOf("GRIB and GRIB...\x02"), fkGrib);
    EXPECT_EQ(KindOf("a text of GRIB and others"), fkUnknown);
    EXPECT_EQ(KindOf("cut: GRIB"), fkUnknown);
    EXPECT_EQ(KindOf(QByteArray("II*\0", 4)), fkTiff);
    EXPECT_EQ(KindOf(QByteArray("MM\0*", 4)), fkTiff);
    EXPECT_EQ(KindOf(QByteArray("II+\0", 4)), fkTiff);
    EXPECT_EQ(KindOf(QByteArray("MM\0+", 4)), fkTiff);
    EXPECT_EQ(KindOf("PK\x03\x04"), fkZip);
    EXPECT_EQ(KindOf("<VRTDataset>"), fkUnknown);
    EXPECT_EQ(KindOf(""), fkUnknown);
}

TEST(ClimateFileKind, Hdf5MayBeginLater) {
    EXPECT_EQ(KindOf(QByteArray(512, ' ') + Hdf5()), fkHdf5);
    EXPECT_EQ(KindOf(QByteArray(2048, ' ') + Hdf5()), fkHdf5);
    EXPECT_EQ(KindOf(QByteArray(600, ' ') + Hdf5()), fkUnknown);
}

class ClimateFileNames : public testing::Test {
protected:
    QString Write(const QString& name, const QByteArray& content) const {
        QFile file(Path(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        return file.fileName();
    }
    QString Path(const QString& name) const { return Folder.filePath(name); }
    QString Refusal(const QString& name) const {
        return MessageOf<EClimateFile>([&] { FindLocalClimateFile(name); });
    }

    QTemporaryDir Folder;
};

TEST_F(ClimateFileNames, AreLocalPathsAndNothingElse) {
    for (const char* const name :
         {"", "NETCDF:http://localhost/a.nc", "/vsicurl/http://localhost/a.tif", "/vsimem/a.tif", "http://localhost/a",
          "WMS:http://localhost", ":/resource", "/vsizip/a.zip/b.nc", "no such file"})
        EXPECT_EQ(Refusal(name), QString::fromLatin1(name) + ": does not exist");
    const QString path = Write("a.txt", "CDF\x01");
    const TLocalClimateFile file = FindLocalClimateFile(path);
    EXPECT_EQ(file.Kind, fkNetCDF);
    EXPECT_EQ(file.Path, path);
}

TEST_F(ClimateFileNames, ThatLookLikeADriversTextAreFilesOfThatName) {
    const QString before = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(Folder.path()));
    Write("NETCDF:http", "CDF\x01");
    EXPECT_EQ(GdalNameOf(FindLocalClimateFile("NETCDF:http")).Name, "NETCDF:\"" + Path("NETCDF:http").toUtf8() + "\"");
    QDir::setCurrent(before);
}

TEST_F(ClimateFileNames, OfWhatIsNoFileAreRefused) {
    EXPECT_EQ(Refusal(Folder.path()), Folder.path() + ": is a folder that holds no Zarr 2");
    const QString pipe = Path("pipe");
    ASSERT_EQ(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    EXPECT_EQ(Refusal(pipe), pipe + ": is no ordinary file");
    const QString empty = Write("empty.nc", "");
    EXPECT_EQ(Refusal(empty), empty + ": is empty");
    const QString text = Write("text.nc", "<VRTDataset><SourceFilename>/etc/passwd</SourceFilename></VRTDataset>");
    EXPECT_EQ(Refusal(text), text + ": is no file that is known here: NetCDF, HDF5, GRIB, GeoTIFF and Zarr 2 are");
}

TEST_F(ClimateFileNames, OpenByOneDriver) {
    const auto nameOf = [](TClimateFileKind kind) { return GdalNameOf({QStringLiteral("/a/b c.x"), kind}); };
    EXPECT_EQ(nameOf(fkNetCDF).Name, "NETCDF:\"/a/b c.x\"");
    EXPECT_EQ(nameOf(fkNetCDF64).Name, "NETCDF:\"/a/b c.x\"");
    EXPECT_EQ(nameOf(fkHdf5).Name, "NETCDF:\"/a/b c.x\"");
    EXPECT_STREQ(nameOf(fkHdf5).Driver, "netCDF");
    EXPECT_EQ(nameOf(fkZarrFolder).Name, "/a/b c.x");
    EXPECT_STREQ(nameOf(fkZarrFolder).Driver, "Zarr");
    EXPECT_EQ(nameOf(fkZip).Name, "/vsizip/{/a/b c.x}");
    EXPECT_EQ(GdalNameOf({QStringLiteral("/a.zip"), fkZip, QStringLiteral("s.zarr")}).Name, "/vsizip/{/a.zip}/s.zarr");
    EXPECT_EQ(GdalNameOf({QStringLiteral("/{a}.zip"), fkZip}).Name, "/vsizip/{/{a}.zip}");
    EXPECT_EQ(GdalNameOf({QStringLiteral("/}a{.zip"), fkZip}).Name, "/vsizip//}a{.zip");
    EXPECT_STREQ(nameOf(fkZip).Driver, "Zarr");
    EXPECT_STREQ(nameOf(fkGrib).Driver, "GRIB");
    EXPECT_STREQ(nameOf(fkTiff).Driver, "GTiff");
    EXPECT_TRUE(nameOf(fkZip).IsMultidimensional);
    EXPECT_FALSE(nameOf(fkTiff).IsMultidimensional);
    EXPECT_EQ(MessageOf<EClimateFile>([] {
                  GdalNameOf({QStringLiteral("/a\"b"), fkNetCDF});
              }),
              "/a\"b: cannot be read with a quotation mark in its name; rename it");
}

} // namespace
} // namespace lmx
