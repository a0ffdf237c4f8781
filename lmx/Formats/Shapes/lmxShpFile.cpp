#include <lmx/Formats/Shapes/lmxShpFile.h>

#include <lmx/Formats/Private/lmxVertexBlocks.h>
#include <lmx/Runtime/lmxExceptions.h>

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cmath>
#include <limits>
#include <new>

namespace lmx {

/// Reads a shape file twice: first it counts, so that memory is taken once and never more than is needed.
class TShpDataLoader {
public:
    TShpDataLoader(QIODevice& stream, const QString& fileName, IShapePointConverter* converter)
        : FReader(stream, fileName),
          FFileName(fileName),
          FConverter(converter) {}

    TShpData Load() {
        Reserve();
        while (FReader.Next())
            ReadShape();
        Finish(FData.Polygons);
        Finish(FData.PolyLines);
        FData.PointBlocks = MakeVertexBlocks(std::span<const TShpPoint>(FData.Points), {});
        return std::move(FData);
    }

private:
    struct TCounts {
        std::size_t Shapes = 0;
        std::size_t Parts = 0;
        std::size_t Points = 0;
    };

    TShpOutlines* OutlinesOf(TShapeKind kind) {
        return kind == TShapeKind::skPolygon    ? &FData.Polygons
               : kind == TShapeKind::skPolyLine ? &FData.PolyLines
                                                : nullptr;
    }

    void Reserve() {
        TCounts points;
        TCounts polygons;
        TCounts polyLines;
        while (FReader.Next()) {
            const TShapeKind kind = FReader.GetKind();
            TCounts& counts = kind == TShapeKind::skPolygon    ? polygons
                              : kind == TShapeKind::skPolyLine ? polyLines
                                                               : points;
            if (kind == TShapeKind::skNull)
                continue;
            ++counts.Shapes;
            counts.Parts += FReader.GetPartCount();
            counts.Points += FReader.GetPointCount();
        }
        FReader.Restart();
        Reserve(FData.Polygons, polygons);
        Reserve(FData.PolyLines, polyLines);
        FData.Points.reserve(Checked(points.Points));
    }

    void Reserve(TShpOutlines& outlines, const TCounts& counts) {
        outlines.FVertices.reserve(Checked(counts.Points));
        outlines.FPartStarts.reserve(Checked(counts.Parts));
        if (counts.Shapes > 0)
            outlines.FShapeStarts.reserve(Checked(counts.Shapes) + 1);
    }

    std::size_t Checked(std::size_t count) const {
        if (count >= std::numeric_limits<std::uint32_t>::max())
            throw EFileFormatException(FFileName, QStringLiteral("too many vertices"));
        return count;
    }

    void ReadShape() {
        if (TShpOutlines* outlines = OutlinesOf(FReader.GetKind())) {
            const std::size_t firstPart = outlines->FPartStarts.size();
            const std::size_t first = outlines->FVertices.size();
            outlines->FShapeStarts.push_back(static_cast<std::uint32_t>(firstPart));
            FReader.ReadPartStarts(static_cast<std::uint32_t>(first), outlines->FPartStarts);
            if (FReader.GetPartCount() > 0) // vertices of no part belong to no line
                FReader.ReadPoints(outlines->FVertices);
            Convert(outlines->FVertices, first, std::span(outlines->FPartStarts).subspan(firstPart));
        } else if (FReader.GetPointCount() > 0) {
            const std::size_t first = FData.Points.size();
            FReader.ReadPoints(FData.Points);
            Convert(FData.Points, first, {});
        }
    }

    // Converts the vertices from `first` on and closes the gaps that those leave which cannot be converted.
    void Convert(std::vector<TShpPoint>& vertices, std::size_t first, std::span<std::uint32_t> partStarts) const {
        if (!FConverter)
            return;
        FConverter->Convert(std::span(vertices).subspan(first));
        std::size_t kept = first;
        auto part = partStarts.begin();
        for (std::size_t i = first; i < vertices.size(); ++i) {
            for (; part != partStarts.end() && *part == i; ++part)
                *part = static_cast<std::uint32_t>(kept);
            if (std::isfinite(vertices[i].X) && std::isfinite(vertices[i].Y))
                vertices[kept++] = vertices[i];
        }
        std::fill(part, partStarts.end(), static_cast<std::uint32_t>(kept));
        vertices.resize(kept);
    }

    static void Finish(TShpOutlines& outlines) {
        if (!outlines.FShapeStarts.empty())
            outlines.FShapeStarts.push_back(static_cast<std::uint32_t>(outlines.FPartStarts.size()));
        outlines.FBlocks = MakeVertexBlocks(outlines.GetVertices(), outlines.GetPartStarts());
    }

    TShapeFileReader FReader;
    QString FFileName;
    IShapePointConverter* FConverter;
    TShpData FData;
};

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
                                                 const std::shared_ptr<IShapePointConverter>& converter) {
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) // the reader has a block of its own
        throw EFileException(fileName, QStringLiteral("cannot be opened: ") + file.errorString());
    return LoadFromStream(file, QFileInfo(fileName).absoluteFilePath(), converter);
}

std::unique_ptr<TShpFile> TShpFile::LoadFromStream(QIODevice& stream, const QString& fileName,
                                                   const std::shared_ptr<IShapePointConverter>& converter) {
    try {
        return std::unique_ptr<TShpFile>(
            new TShpFile(fileName, TShpDataLoader(stream, fileName, converter.get()).Load()));
    } catch (const std::bad_alloc&) {
        throw EFileException(fileName, QStringLiteral("does not fit into memory"));
    }
}

std::size_t TShpFile::GetVertexCount() const {
    return FData->Points.size() + FData->Polygons.GetVertices().size() + FData->PolyLines.GetVertices().size();
}

std::size_t TShpFile::GetMemorySize() const {
    return FData->Points.capacity() * sizeof(TShpPoint) + FData->PointBlocks.capacity() * sizeof(TVertexBlock) +
           FData->Polygons.GetMemorySize() + FData->PolyLines.GetMemorySize();
}

} // namespace lmx
