#include <lmx/Formats/Shapes/lmxShpFile.h>

#include <lmx/Formats/Shapes/Private/lmxShpDataLoader.h>
#include <lmx/Runtime/lmxExceptions.h>

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <limits>
#include <new>

namespace lmx {

TShpFile::TShpFile(QString fileName, TShpData data)
    : FFileName(std::move(fileName)),
      FData(std::make_shared<const TShpData>(std::move(data))) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    double xMin = infinity;
    double yMin = infinity;
    double xMax = -infinity;
    double yMax = -infinity;
    for (const auto& vertices :
         {std::span<const TShpPoint>(FData->Points), FData->Polygons.GetVertices(), FData->PolyLines.GetVertices()}) {
        for (const TShpPoint& point : vertices) {
            xMin = std::min(xMin, point.X);
            yMin = std::min(yMin, point.Y);
            xMax = std::max(xMax, point.X);
            yMax = std::max(yMax, point.Y);
        }
    }
    if (xMin > xMax)
        return;
    FXMin = xMin;
    FYMin = yMin;
    FXMax = xMax;
    FYMax = yMax;
}

std::unique_ptr<TShpFile> TShpFile::LoadFromFile(const QString& fileName,
                                                 const std::shared_ptr<IShapePointConverter>& converter,
                                                 const TShpLoadOptions& options) {
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) // the reader has a block of its own
        throw EFileException(fileName, QStringLiteral("cannot be opened: ") + file.errorString());
    return LoadFromStream(file, QFileInfo(fileName).absoluteFilePath(), converter, options);
}

std::unique_ptr<TShpFile> TShpFile::LoadFromStream(QIODevice& stream, const QString& fileName,
                                                   const std::shared_ptr<IShapePointConverter>& converter,
                                                   const TShpLoadOptions& options) {
    try {
        return std::unique_ptr<TShpFile>(
            new TShpFile(fileName, TShpDataLoader(stream, fileName, converter.get(), options).Load()));
    } catch (const std::bad_alloc&) {
        throw EFileException(fileName, QStringLiteral("does not fit into memory"));
    }
}

void TShpFile::CheckIndex(const char* what, std::size_t index, std::size_t count) {
    if (index >= count)
        throw EArgumentException(QString::fromLatin1(what) + QStringLiteral(" index is out of range"));
}

TShpFilePoint TShpFile::GetPoint(std::size_t index) const {
    CheckIndex("Point", index, GetPointCount());
    const TShpPoint& point = FData->Points[FData->PointPlaces.empty() ? index : FData->PointPlaces[index]];
    return {1, point.X, point.Y};
}

std::uint32_t TShpFile::GetPointRecord(std::size_t index) const {
    CheckIndex("Point", index, GetPointCount());
    return FData->PointRecords.GetRecord(index);
}

TShpFilePolygonShape TShpFile::GetPolygon(std::size_t index) const {
    CheckIndex("Polygon", index, GetPolygonCount());
    return {FData->Polygons, index};
}

TShpFilePolyLineShape TShpFile::GetPolyLine(std::size_t index) const {
    CheckIndex("Polyline", index, GetPolyLineCount());
    return {FData->PolyLines, index};
}

std::size_t TShpFile::GetVertexCount() const {
    return FData->Points.size() + FData->Polygons.GetVertices().size() + FData->PolyLines.GetVertices().size();
}

std::size_t TShpFile::GetMemorySize() const {
    return FData->Points.capacity() * sizeof(TShpPoint) + FData->PointPlaces.capacity() * sizeof(std::uint32_t) +
           FData->PointRecords.GetMemorySize() +
           (FData->PointBlocks.capacity() + FData->PointBlockGroups.capacity()) * sizeof(TVertexBlock) +
           FData->Polygons.GetMemorySize() + FData->PolyLines.GetMemorySize();
}

} // namespace lmx
