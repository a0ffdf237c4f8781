#pragma once

#include <QByteArray>
#include <QtEndian>

#include <cstdint>
#include <utility>
#include <vector>

namespace lmx::tests {

/// Numbers or a text as a classic NetCDF file has them.
struct TClassicValues {
    enum TType : std::uint32_t { Byte = 1, Text, Short, Int, Float, Double };

    TClassicValues(const char* text) : Type(Text), Bytes(text), Count(quint32(Bytes.size())) {}
    TClassicValues(TType type, const std::vector<double>& numbers) : Type(type), Count(quint32(numbers.size())) {
        for (const double number : numbers)
            Add(number);
    }

    TType Type;
    QByteArray Bytes; ///< without padding
    quint32 Count = 0;

private:
    template<class Number>
    void AddBig(Number number) {
        const Number big = qToBigEndian(number);
        Bytes.append(reinterpret_cast<const char*>(&big), sizeof big);
    }
    void Add(double number) {
        switch (Type) {
        case Short:
            return AddBig(static_cast<std::int16_t>(number));
        case Int:
            return AddBig(static_cast<std::int32_t>(number));
        case Float:
            return AddBig(static_cast<float>(number));
        case Double:
            return AddBig(number);
        default:
            Bytes.append(static_cast<char>(static_cast<std::int8_t>(number)));
        }
    }
};

using TClassicAttributes = std::vector<std::pair<QByteArray, TClassicValues>>;

/// Writes a classic NetCDF file (CDF-1) without records, byte by byte as the format tells.
class TClassicNetCdf {
public:
    quint32 Dimension(const QByteArray& name, quint32 size) {
        FDimensions += Name(name) + Number(size);
        return FDimensionCount++;
    }
    void Variable(const QByteArray& name, const std::vector<quint32>& dimensions, const TClassicValues& values,
                  const TClassicAttributes& attributes = {}) {
        QByteArray head = Name(name) + Number(quint32(dimensions.size()));
        for (const quint32 dimension : dimensions)
            head += Number(dimension);
        head += List(12, quint32(attributes.size()));
        for (const auto& [key, value] : attributes)
            head += Name(key) + Number(value.Type) + Number(value.Count) + Padded(value.Bytes);
        head += Number(values.Type) + Number(quint32(Padded(values.Bytes).size()));
        FVariables.push_back({head, Padded(values.Bytes)});
    }
    QByteArray ToBytes() const {
        QByteArray head = "CDF\x01" + Number(0) + List(10, FDimensionCount) + FDimensions + List(12, 0) +
                          List(11, quint32(FVariables.size()));
        auto begin = head.size();
        for (const auto& variable : FVariables)
            begin += variable.first.size() + 4;
        QByteArray cells;
        for (const auto& [description, values] : FVariables) {
            head += description + Number(quint32(begin + cells.size()));
            cells += values;
        }
        return head + cells;
    }

private:
    static QByteArray Number(quint32 number) {
        const quint32 big = qToBigEndian(number);
        return QByteArray(reinterpret_cast<const char*>(&big), 4);
    }
    static QByteArray Padded(QByteArray bytes) {
        while (bytes.size() % 4 != 0)
            bytes += '\0';
        return bytes;
    }
    static QByteArray Name(const QByteArray& name) { return Number(quint32(name.size())) + Padded(name); }
    static QByteArray List(quint32 tag, quint32 count) { return Number(count == 0 ? 0 : tag) + Number(count); }

    QByteArray FDimensions;
    quint32 FDimensionCount = 0;
    std::vector<std::pair<QByteArray, QByteArray>> FVariables; ///< without the place of its cells, and the cells
};

} // namespace lmx::tests
