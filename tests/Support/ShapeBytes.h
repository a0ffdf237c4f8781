#pragma once

#include <lmx/Formats/Shapes/lmxShpPoint.h>

#include <QByteArray>
#include <QtEndian>

#include <initializer_list>
#include <vector>

// Shape files made on the spot, record by record; each function that damages something says so.

namespace lmx::tests {

using TShpParts = std::vector<std::vector<TShpPoint>>;

template<class Number>
void AppendLittle(QByteArray& bytes, Number number) {
    char buffer[sizeof number];
    qToLittleEndian(number, buffer);
    bytes.append(buffer, sizeof buffer);
}

inline void AppendBig(QByteArray& bytes, std::int32_t number) {
    char buffer[sizeof number];
    qToBigEndian(number, buffer);
    bytes.append(buffer, sizeof buffer);
}

inline void AppendPoints(QByteArray& bytes, const std::vector<TShpPoint>& points) {
    for (const TShpPoint& point : points) {
        AppendLittle(bytes, point.X);
        AppendLittle(bytes, point.Y);
    }
}

class TShapeBytes {
public:
    /// A record of any content; `words` stands in the heading instead of its length if it is not 0.
    TShapeBytes& Record(const QByteArray& content, std::int32_t words = 0) {
        AppendBig(FRecords, ++FCount);
        AppendBig(FRecords, words != 0 ? words : static_cast<std::int32_t>(content.size() / 2));
        FRecords += content;
        return *this;
    }
    TShapeBytes& Null() { return Record(QByteArray(4, '\0')); }
    /// `more` numbers follow the place: Z, M.
    TShapeBytes& Point(std::int32_t type, TShpPoint place, int more = 0) {
        QByteArray content;
        AppendLittle(content, type);
        AppendPoints(content, {place});
        return Record(content + QByteArray(8 * more, '\7'));
    }
    TShapeBytes& MultiPoint(std::int32_t type, const std::vector<TShpPoint>& places, int more = 0) {
        QByteArray content;
        AppendLittle(content, type);
        content += QByteArray(32, '\7'); // the box
        AppendLittle(content, static_cast<std::int32_t>(places.size()));
        AppendPoints(content, places);
        return Record(content + QByteArray(8 * more, '\7'));
    }
    TShapeBytes& Lines(std::int32_t type, const TShpParts& parts, int more = 0) {
        return Record(LinesContent(type, parts) + QByteArray(8 * more, '\7'));
    }

    static QByteArray LinesContent(std::int32_t type, const TShpParts& parts) {
        std::vector<std::int32_t> starts;
        std::vector<TShpPoint> places;
        for (const auto& part : parts) {
            starts.push_back(static_cast<std::int32_t>(places.size()));
            places.insert(places.end(), part.begin(), part.end());
        }
        return LinesContent(type, starts, places, static_cast<std::int32_t>(starts.size()),
                            static_cast<std::int32_t>(places.size()));
    }
    /// Counts and starts may be damaged.
    static QByteArray LinesContent(std::int32_t type, const std::vector<std::int32_t>& starts,
                                   const std::vector<TShpPoint>& places, std::int32_t partCount,
                                   std::int32_t pointCount) {
        QByteArray content;
        AppendLittle(content, type);
        content += QByteArray(32, '\7'); // the box
        AppendLittle(content, partCount);
        AppendLittle(content, pointCount);
        for (const std::int32_t start : starts)
            AppendLittle(content, start);
        if (type == 31)
            content += QByteArray(static_cast<qsizetype>(4 * starts.size()), '\2');
        AppendPoints(content, places);
        return content;
    }

    /// The whole file, whose header says that it is of the type.
    QByteArray File(std::int32_t type) const {
        QByteArray file;
        AppendBig(file, 9994);
        file += QByteArray(20, '\0');
        AppendBig(file, static_cast<std::int32_t>((100 + FRecords.size()) / 2));
        AppendLittle(file, std::int32_t{1000});
        AppendLittle(file, type);
        file += QByteArray(64, '\0');
        return file + FRecords;
    }

private:
    QByteArray FRecords;
    std::int32_t FCount = 0;
};

} // namespace lmx::tests
