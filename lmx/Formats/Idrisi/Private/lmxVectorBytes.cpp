// Vector files of the newer generation: the object type in a byte, the number of features, 256 reserved bytes,
// features.

#include <lmx/Formats/Idrisi/Private/lmxVectorBytes.h>

#include <lmx/Formats/Private/lmxVertexBlocks.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxNumberText.h>

#include <QtEndian>

#include <algorithm>
#include <bit>
#include <cmath>
#include <type_traits>

namespace lmx {

namespace {

constexpr std::int64_t ReservedSize = 256;
constexpr std::int64_t BoxSize = 32;
constexpr std::int64_t VertexSize = 16;

// Exactly what the reader puts between parts; a negative zero is a vertex that the file had.
bool IsMark(const TGeoPoint& point) {
    return std::bit_cast<std::uint64_t>(point) == 0;
}

class TVectorParser {
public:
    TVectorParser(const QByteArray& bytes, const QString& fileName) : FBytes(bytes), FFileName(fileName) {}

    TVectorData Parse() {
        const auto type = Take<std::uint8_t>();
        if (type > static_cast<std::uint8_t>(TVectorObjectType::vtText))
            Refuse(QStringLiteral("its objects are of an unknown type"));
        FData.Type = static_cast<TVectorObjectType>(type);
        const std::int64_t features = Take<std::uint32_t>();
        Skip(ReservedSize);
        if (FData.Type == TVectorObjectType::vtText) {
            FData.TextBytes = FBytes;
            return std::move(FData);
        }
        if (FData.Type == TVectorObjectType::vtNone && features > 0)
            Refuse(QStringLiteral("its objects are of an unknown type"));
        Reserve(features);
        for (std::int64_t i = 0; i < features; ++i)
            TakeFeature();
        FData.Vertices.shrink_to_fit();
        FData.Blocks = MakeVertexBlocks(std::span<const TGeoPoint>(FData.Vertices), FData.FeatureStarts);
        return std::move(FData);
    }

private:
    [[noreturn]] void Refuse(const QString& problem) const { throw EFileFormatException(FFileName, problem); }

    std::int64_t BytesLeft() const { return FBytes.size() - FPosition; }
    void Need(std::int64_t count) const {
        if (BytesLeft() < count)
            Refuse(QStringLiteral("the file is cut short"));
    }
    void Skip(std::int64_t count) {
        Need(count);
        FPosition += count;
    }
    template<class Number>
    Number Take() {
        Need(sizeof(Number));
        const auto number = qFromLittleEndian<Number>(FBytes.constData() + FPosition);
        FPosition += static_cast<std::int64_t>(sizeof(Number));
        return number;
    }

    // A feature takes at least its id and either a vertex or a box and a count.
    void Reserve(std::int64_t features) {
        const std::int64_t least = FData.Type == TVectorObjectType::vtPoint ? 8 + VertexSize : 8 + BoxSize + 4;
        Need(features * least);
        FData.Ids.reserve(static_cast<std::size_t>(features));
        FData.FeatureStarts.reserve(static_cast<std::size_t>(features));
        FData.Vertices.reserve(static_cast<std::size_t>((BytesLeft() - features * (least - VertexSize)) / VertexSize));
    }

    void TakeFeature() {
        FData.FeatureStarts.push_back(static_cast<std::uint32_t>(FData.Vertices.size()));
        FData.Ids.push_back(Take<double>());
        if (FData.Type == TVectorObjectType::vtPoint) {
            TakeVertices(1);
            return;
        }
        Skip(BoxSize);
        if (FData.Type == TVectorObjectType::vtLine)
            TakeVertices(Take<std::uint32_t>());
        else
            TakeParts();
    }

    void TakeParts() {
        const std::int64_t parts = Take<std::uint32_t>();
        const std::int64_t vertices = Take<std::uint32_t>();
        Need(4 * parts + VertexSize * vertices);
        std::int64_t position = FPosition; // of the parts' counts
        Skip(4 * parts);
        std::int64_t left = vertices;
        for (std::int64_t i = 0; i < parts; ++i, position += 4) {
            const std::int64_t count = qFromLittleEndian<std::uint32_t>(FBytes.constData() + position);
            if (count > left)
                break;
            if (i > 0)
                FData.Vertices.emplace_back();
            TakeVertices(count);
            left -= count;
            if (i == parts - 1 && left == 0)
                return;
        }
        if (parts > 0 || vertices > 0)
            Refuse(QStringLiteral("feature ") + IntToStr(static_cast<std::int64_t>(FData.Ids.size())) +
                   QStringLiteral(" has parts that do not add up"));
    }

    void TakeVertices(std::int64_t count) {
        Need(VertexSize * count);
        for (; count > 0; --count) {
            const auto x = static_cast<float>(Take<double>());
            const auto y = static_cast<float>(Take<double>());
            if (!std::isfinite(x) || !std::isfinite(y))
                Refuse(QStringLiteral("feature ") + IntToStr(static_cast<std::int64_t>(FData.Ids.size())) +
                       QStringLiteral(" has a coordinate that is no finite number"));
            FData.Vertices.push_back({x, y});
        }
    }

    const QByteArray& FBytes;
    QString FFileName;
    std::int64_t FPosition = 0;
    TVectorData FData;
};

/// Writes the same layout.
class TVectorFormatter {
public:
    explicit TVectorFormatter(const TVectorData& data) : FData(data) {}

    QByteArray Format() {
        if (FData.Type == TVectorObjectType::vtText)
            return FData.TextBytes;
        Put(static_cast<std::uint8_t>(FData.Type));
        Put(static_cast<std::uint32_t>(FData.Ids.size()));
        FBytes.append(ReservedSize, '\0');
        for (std::size_t i = 0; i < FData.Ids.size(); ++i) {
            Put(FData.Ids[i]);
            PutFeature(FData.GetFeature(i));
        }
        return FBytes;
    }

private:
    template<class Number>
    void Put(Number number) {
        char bytes[sizeof(Number)];
        qToLittleEndian(number, bytes);
        FBytes.append(bytes, sizeof bytes);
    }
    void PutCount(std::size_t count) { Put(static_cast<std::uint32_t>(count)); }

    void PutFeature(std::span<const TGeoPoint> vertices) {
        if (FData.Type == TVectorObjectType::vtPoint) {
            PutVertices(vertices);
            return;
        }
        PutBox(vertices);
        if (FData.Type == TVectorObjectType::vtLine) {
            PutCount(vertices.size());
            PutVertices(vertices);
        } else {
            PutParts(vertices);
        }
    }

    void PutBox(std::span<const TGeoPoint> vertices) {
        const auto [xMin, xMax] = std::ranges::minmax_element(vertices, {}, &TGeoPoint::X);
        const auto [yMin, yMax] = std::ranges::minmax_element(vertices, {}, &TGeoPoint::Y);
        const bool isEmpty = vertices.empty();
        Put(isEmpty ? 0 : static_cast<double>(xMin->X));
        Put(isEmpty ? 0 : static_cast<double>(xMax->X));
        Put(isEmpty ? 0 : static_cast<double>(yMin->Y));
        Put(isEmpty ? 0 : static_cast<double>(yMax->Y));
    }

    // The marks between parts become counts again.
    void PutParts(std::span<const TGeoPoint> vertices) {
        std::vector<std::span<const TGeoPoint>> parts;
        while (true) {
            const auto mark = std::ranges::find_if(vertices, IsMark);
            const auto length = static_cast<std::size_t>(mark - vertices.begin());
            parts.push_back(vertices.first(length));
            if (mark == vertices.end())
                break;
            vertices = vertices.subspan(length + 1);
        }
        std::size_t total = 0;
        for (const auto& part : parts)
            total += part.size();
        PutCount(parts.size());
        PutCount(total);
        for (const auto& part : parts)
            PutCount(part.size());
        for (const auto& part : parts)
            PutVertices(part);
    }

    void PutVertices(std::span<const TGeoPoint> vertices) {
        for (const TGeoPoint& vertex : vertices) {
            Put(static_cast<double>(vertex.X));
            Put(static_cast<double>(vertex.Y));
        }
    }

    const TVectorData& FData;
    QByteArray FBytes;
};

} // namespace

TVectorData ParseVectorBytes(const QByteArray& bytes, const QString& fileName) {
    return TVectorParser(bytes, fileName).Parse();
}

QByteArray FormatVectorBytes(const TVectorData& data) {
    return TVectorFormatter(data).Format();
}

} // namespace lmx
