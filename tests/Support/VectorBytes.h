#pragma once

#include <lmx/Formats/Idrisi/lmxGeoPoint.h>
#include <lmx/Formats/Idrisi/lmxVectorHeader.h>
#include <tests/Support/ShapeBytes.h>

#include <QByteArray>

#include <cstdint>
#include <numeric>
#include <vector>

// Files of the newer generation of vectors, made on the spot.

namespace lmx::tests {

using TGeoParts = std::vector<std::vector<TGeoPoint>>;

class TVectorBytes {
public:
    explicit TVectorBytes(TVectorObjectType type) : FType(type) {}

    TVectorBytes& Point(double id, TGeoPoint place) {
        AppendLittle(FFeatures, id);
        return Vertices({place});
    }
    TVectorBytes& Line(double id, const std::vector<TGeoPoint>& vertices) {
        Head(id);
        AppendLittle(FFeatures, static_cast<std::uint32_t>(vertices.size()));
        return Vertices(vertices);
    }
    TVectorBytes& Polygon(double id, const TGeoParts& parts) {
        Head(id);
        std::uint32_t total = 0;
        for (const auto& part : parts)
            total += static_cast<std::uint32_t>(part.size());
        AppendLittle(FFeatures, static_cast<std::uint32_t>(parts.size()));
        AppendLittle(FFeatures, total);
        for (const auto& part : parts)
            AppendLittle(FFeatures, static_cast<std::uint32_t>(part.size()));
        FCount -= static_cast<std::uint32_t>(parts.size());
        for (const auto& part : parts)
            Vertices(part);
        ++FCount;
        return *this;
    }

    QByteArray File() const { return File(FCount); }
    /// The number of features may be a lie.
    QByteArray File(std::uint32_t count) const {
        QByteArray file;
        AppendLittle(file, static_cast<std::uint8_t>(FType));
        AppendLittle(file, count);
        return file + QByteArray(256, '\0') + FFeatures;
    }

private:
    void Head(double id) {
        AppendLittle(FFeatures, id);
        FFeatures += QByteArray(32, '\7'); // the box
    }
    TVectorBytes& Vertices(const std::vector<TGeoPoint>& vertices) {
        for (const TGeoPoint& vertex : vertices) {
            AppendLittle(FFeatures, static_cast<double>(vertex.X));
            AppendLittle(FFeatures, static_cast<double>(vertex.Y));
        }
        ++FCount;
        return *this;
    }

    TVectorObjectType FType;
    QByteArray FFeatures;
    std::uint32_t FCount = 0;
};

} // namespace lmx::tests
