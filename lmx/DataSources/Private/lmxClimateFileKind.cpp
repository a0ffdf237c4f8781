#include <lmx/DataSources/Private/lmxClimateFileKind.h>

#include <lmx/DataSources/lmxClimateExceptions.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace lmx {

namespace {

constexpr qint64 LatestGrib = 1024;            // a bulletin's heading may stand before the first message
constexpr qint64 LatestHdf5 = qint64(1) << 40; // no user block is larger
constexpr char Hdf5Signature[] = "\x89HDF\r\n\x1a\n";

bool HasHdf5Signature(QIODevice& device) {
    for (qint64 offset = 512; offset < device.size() && offset < LatestHdf5; offset *= 2) {
        if (!device.seek(offset))
            return false;
        if (device.read(8) == QByteArray(Hdf5Signature, 8))
            return true;
    }
    return false;
}

bool IsTiff(const QByteArray& head) {
    const QByteArray four = head.left(4);
    return four == QByteArray("II*\0", 4) || four == QByteArray("MM\0*", 4) || four == QByteArray("II+\0", 4) ||
           four == QByteArray("MM\0+", 4);
}

bool IsZarr(const QString& folder) {
    const QDir dir(folder);
    return dir.exists(QStringLiteral(".zgroup")) || dir.exists(QStringLiteral(".zarray")) ||
           dir.exists(QStringLiteral(".zmetadata"));
}

QString KnownKinds() {
    return QStringLiteral("is no file that is known here: NetCDF, HDF5, GRIB, GeoTIFF and Zarr 2 are");
}

// Within braces a zip may have any suffix, as long as its own name closes those that it opens.
QByteArray NameInZip(const QByteArray& path, const QByteArray& inside) {
    int open = 0;
    for (const char letter : path) {
        open += letter == '{' ? 1 : letter == '}' ? -1 : 0;
        if (open < 0)
            break;
    }
    const QByteArray zip = open == 0 ? "/vsizip/{" + path + '}' : "/vsizip/" + path;
    return inside.isEmpty() ? zip : zip + '/' + inside;
}

/// Texts may have the word, too, but no small number where its message has the edition.
bool HoldsGrib(const QByteArray& head) {
    constexpr qsizetype editionPlace = 7;
    for (qsizetype at = head.indexOf("GRIB"); at >= 0; at = head.indexOf("GRIB", at + 1))
        if (at + editionPlace < head.size() && quint8(head[at + editionPlace]) < 10)
            return true;
    return false;
}

} // namespace

TClimateFileKind ClimateFileKindOf(QIODevice& device) {
    if (!device.seek(0))
        return TClimateFileKind::fkUnknown;
    const QByteArray head = device.read(LatestGrib);
    if (head.startsWith("CDF\x01") || head.startsWith("CDF\x02"))
        return TClimateFileKind::fkNetCDF;
    if (head.startsWith("CDF\x05"))
        return TClimateFileKind::fkNetCDF64;
    if (head.startsWith(Hdf5Signature))
        return TClimateFileKind::fkHdf5;
    if (IsTiff(head))
        return TClimateFileKind::fkTiff;
    if (head.startsWith("PK\x03\x04"))
        return TClimateFileKind::fkZip;
    if (HoldsGrib(head))
        return TClimateFileKind::fkGrib;
    return HasHdf5Signature(device) ? TClimateFileKind::fkHdf5 : TClimateFileKind::fkUnknown;
}

TLocalClimateFile FindLocalClimateFile(const QString& fileName) {
    const QFileInfo info(fileName);
    if (fileName.isEmpty() || fileName.contains(QChar(0)) || fileName.startsWith(u':') || !info.exists())
        throw EClimateFile(fileName, QStringLiteral("does not exist"));
    const QString path = info.absoluteFilePath();
    if (path.startsWith(QStringLiteral("/vsi"))) // GDAL would look elsewhere
        throw EClimateFile(fileName, QStringLiteral("cannot be read from a folder of this name; move it"));
    if (info.isDir()) {
        if (!IsZarr(path))
            throw EClimateFile(fileName, QStringLiteral("is a folder that holds no Zarr 2"));
        return {path, TClimateFileKind::fkZarrFolder};
    }
    if (!info.isFile()) // a pipe would never end
        throw EClimateFile(fileName, QStringLiteral("is no ordinary file"));
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw EClimateFile(fileName, QStringLiteral("cannot be read"));
    const TClimateFileKind kind = ClimateFileKindOf(file);
    if (kind == TClimateFileKind::fkUnknown)
        throw EClimateFile(fileName, file.size() == 0 ? QStringLiteral("is empty") : KnownKinds());
    return {path, kind};
}

TGdalName GdalNameOf(const TLocalClimateFile& file) {
    const QByteArray path = file.Path.toUtf8();
    switch (file.Kind) {
    case TClimateFileKind::fkNetCDF:
    case TClimateFileKind::fkNetCDF64:
    case TClimateFileKind::fkHdf5: // by this name under any suffix, and with everything that the file tells
        if (path.contains('"'))
            throw EClimateFile(file.Path,
                               QStringLiteral("cannot be read with a quotation mark in its name; rename it"));
        return {"NETCDF:\"" + path + '"', "netCDF", true};
    case TClimateFileKind::fkZarrFolder:
        return {path, "Zarr", true};
    case TClimateFileKind::fkZip:
        return {NameInZip(path, file.Inside.toUtf8()), "Zarr", true};
    case TClimateFileKind::fkGrib:
        return {path, "GRIB", false};
    case TClimateFileKind::fkTiff:
        return {path, "GTiff", false};
    case TClimateFileKind::fkUnknown:
        break;
    }
    throw EClimateFile(file.Path, KnownKinds());
}

} // namespace lmx
