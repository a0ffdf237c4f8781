// Vector files of the older generation: for each feature its id, the number of its vertices and the vertices; a feature
// of id 0 without vertices ends the file.

#include <lmx/Formats/Idrisi/Private/lmxVectorBytes.h>
#include <lmx/Formats/Private/lmxVertexBlocks.h>
#include <lmx/Formats/Text/Private/lmxAsciiNumber.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxNumberText.h>

#include <QtEndian>

#include <algorithm>
#include <cmath>
#include <optional>

namespace lmx {

namespace {

bool IsText(const QByteArray& bytes) {
    return std::ranges::all_of(bytes, [](char c) {
        return (c >= ' ' && c <= '~') || (c >= '\t' && c <= '\r') || c == '\x1A'; // the last one ends files of DOS
    });
}

void Add(TVectorData& data, double id) {
    data.FeatureStarts.push_back(static_cast<std::uint32_t>(data.Vertices.size()));
    data.Ids.push_back(id);
}

class TOldTextParser {
public:
    TOldTextParser(const QByteArray& bytes, const QString& fileName)
        : FStart(bytes.constData()),
          FText(bytes),
          FFileName(fileName) {
        if (const qsizetype end = bytes.indexOf('\x1A'); end >= 0)
            FText = FText.first(end);
    }

    TVectorData Parse() {
        while (!FText.trimmed().isEmpty()) {
            const double id = Take();
            const double count = Take();
            if (id == 0 && count == 0)
                break;
            Add(FData, id);
            TakeVertices(count);
        }
        return std::move(FData);
    }

private:
    double Take() {
        double number = 0;
        if (!TakeAsciiNumber(FText, number))
            throw EFileFormatException(FFileName, FText.isEmpty() ? QStringLiteral("the file is cut short")
                                                                  : Feature() + QStringLiteral(" holds no number"));
        return number;
    }

    // A vertex takes four characters at least.
    void TakeVertices(double count) {
        if (!(count >= 0) || count != std::floor(count))
            throw EFileFormatException(FFileName, Feature() + QStringLiteral(" has an impossible count"));
        if (count * 4 > static_cast<double>(FText.size()) + 1)
            throw EFileFormatException(FFileName, QStringLiteral("the file is cut short"));
        for (auto left = static_cast<std::int64_t>(count); left > 0; --left) {
            const auto x = static_cast<float>(Take());
            const auto y = static_cast<float>(Take());
            if (!std::isfinite(x) || !std::isfinite(y))
                throw EFileFormatException(FFileName,
                                           Feature() + QStringLiteral(" has a coordinate that is no finite number"));
            FData.Vertices.push_back({x, y});
        }
    }

    // The feature at hand, and the line that has been read up to. Lines may end at CR alone.
    QString Feature() const {
        std::int64_t line = 1;
        for (const char* at = FStart; at != FText.begin(); ++at)
            line += *at == '\n' || (*at == '\r' && (at + 1 == FText.begin() || at[1] != '\n')) ? 1 : 0;
        return QStringLiteral("line ") + IntToStr(line) + QStringLiteral(": feature ") +
               IntToStr(static_cast<std::int64_t>(FData.Ids.size()));
    }

    const char* FStart;
    QByteArrayView FText;
    QString FFileName;
    TVectorData FData;
};

// A layout of binary files: the types of the id and the count. Coordinates are singles in all of them.
template<class Id, class Count>
std::optional<TVectorData> TryBinary(const QByteArray& bytes) {
    constexpr qsizetype headSize = sizeof(Id) + sizeof(Count);
    TVectorData data;
    const char* next = bytes.constData();
    const char* const end = next + bytes.size();
    while (end - next >= headSize) {
        const auto id = static_cast<double>(qFromLittleEndian<Id>(next));
        const auto count = static_cast<double>(qFromLittleEndian<Count>(next + sizeof(Id)));
        next += headSize;
        if (id == 0 && count == 0)
            return next == end ? std::optional(std::move(data)) : std::nullopt;
        if (!(count >= 1) || count != std::floor(count) || count * 8 > static_cast<double>(end - next))
            return std::nullopt;
        Add(data, id);
        for (auto left = static_cast<std::int64_t>(count); left > 0; --left, next += 8) {
            const TGeoPoint vertex{qFromLittleEndian<float>(next), qFromLittleEndian<float>(next + 4)};
            if (!std::isfinite(vertex.X) || !std::isfinite(vertex.Y))
                return std::nullopt;
            data.Vertices.push_back(vertex);
        }
    }
    return std::nullopt;
}

TVectorData ParseBinary(const QByteArray& bytes, const QString& fileName) {
    for (const auto tryLayout :
         {TryBinary<float, float>, TryBinary<std::int16_t, std::int16_t>, TryBinary<float, std::int16_t>}) {
        if (std::optional<TVectorData> data = tryLayout(bytes))
            return std::move(*data);
    }
    throw EFileFormatException(fileName, QStringLiteral("no layout of binary vectors fits"));
}

bool IsRing(std::span<const TGeoPoint> vertices) {
    return vertices.size() >= 4 && vertices.front() == vertices.back();
}

TVectorObjectType TypeByFeatures(const TVectorData& data) {
    bool areAllPoints = true;
    bool areAllRings = true;
    for (std::size_t i = 0; i < data.Ids.size(); ++i) {
        const auto vertices = data.GetFeature(i);
        areAllPoints = areAllPoints && vertices.size() == 1;
        areAllRings = areAllRings && IsRing(vertices);
    }
    return areAllPoints  ? TVectorObjectType::vtPoint
           : areAllRings ? TVectorObjectType::vtPolygon
                         : TVectorObjectType::vtLine;
}

} // namespace

TVectorData ParseOldVectorBytes(const QByteArray& bytes, TVectorObjectType type, const QString& fileName) {
    TVectorData data = IsText(bytes) ? TOldTextParser(bytes, fileName).Parse() : ParseBinary(bytes, fileName);
    data.Type = type == TVectorObjectType::vtNone   ? TypeByFeatures(data)
                : type == TVectorObjectType::vtText ? TVectorObjectType::vtPoint
                                                    : type;
    for (std::size_t i = 0; i < data.Ids.size() && data.Type == TVectorObjectType::vtPoint; ++i)
        if (data.GetFeature(i).size() != 1)
            throw EFileFormatException(fileName, QStringLiteral("a point has no place or several"));
    data.Vertices.shrink_to_fit();
    data.Blocks = MakeVertexBlocks(std::span<const TGeoPoint>(data.Vertices), data.FeatureStarts);
    return data;
}

} // namespace lmx
