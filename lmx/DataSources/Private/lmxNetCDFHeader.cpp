#include <lmx/DataSources/Private/lmxNetCDFHeader.h>

#include <lmx/DataSources/lmxClimateExceptions.h>
#include <lmx/Runtime/lmxFormat.h>

#include <QIODevice>
#include <QtEndian>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <vector>

namespace lmx {

namespace {

constexpr quint64 MostVariables = 10'000;
constexpr quint64 MostDimensions = 1024; // of one variable
constexpr quint32 DimensionTag = 10;
constexpr quint32 VariableTag = 11;
constexpr quint32 AttributeTag = 12;

// Sums and products that stay at the largest number: a file of that length does not exist.
constexpr quint64 Largest = std::numeric_limits<quint64>::max();
quint64 Product(quint64 a, quint64 b) {
    return b != 0 && a > Largest / b ? Largest : a * b;
}
quint64 Sum(quint64 a, quint64 b) {
    return a > Largest - b ? Largest : a + b;
}
quint64 Padded(quint64 bytes) {
    return bytes > Largest - 3 ? Largest : (bytes + 3) / 4 * 4;
}

struct TVariable {
    bool IsRecord = false;
    quint64 Begin = 0;
    quint64 Size = 0; // of one record, or of all
};

class THeaderReader {
public:
    THeaderReader(QIODevice& device, const QString& fileName) : FDevice(device), FFileName(fileName) {}

    quint64 Read() {
        FDevice.seek(0);
        const QByteArray magic = FDevice.read(4);
        if (magic.size() != 4 || !magic.startsWith("CDF"))
            Refuse(QStringLiteral("has no NetCDF header"));
        FForm = magic[3];
        const quint64 records = Count();
        ReadDimensions();
        SkipAttributes();
        const std::vector<TVariable> variables = ReadVariables();
        return EndOf(variables, records);
    }

private:
    [[noreturn]] void Refuse(const QString& problem) const { throw EClimateFile(FFileName, problem); }
    [[noreturn]] void RefuseCut() const {
        Refuse(QStringLiteral("is cut short within its header. Copy or fetch it again"));
    }
    [[noreturn]] void RefuseDamaged() const { Refuse(QStringLiteral("has a damaged header")); }

    template<class Integer>
    Integer Number() {
        char bytes[sizeof(Integer)];
        if (FDevice.read(bytes, sizeof bytes) != qint64(sizeof bytes))
            RefuseCut();
        return qFromBigEndian<Integer>(bytes);
    }

    quint64 Count() { return FForm == 5 ? Number<quint64>() : Number<quint32>(); }

    void Skip(quint64 bytes) {
        const auto left = quint64(std::max<qint64>(FDevice.size() - FDevice.pos(), 0));
        if (bytes > left)
            RefuseCut();
        FDevice.seek(FDevice.pos() + qint64(bytes));
    }

    void SkipName() { Skip(Padded(Count())); }

    // Each entry takes at least 8 bytes: a larger number is a lie.
    quint64 ListLength(quint32 tag) {
        const auto found = Number<quint32>();
        const quint64 length = Count();
        if (found == 0 && length == 0)
            return 0;
        if (found != tag)
            RefuseDamaged();
        if (length > quint64(FDevice.size()) / 8)
            RefuseCut();
        return length;
    }

    quint64 TypeSize() {
        constexpr quint64 sizes[] = {1, 1, 2, 4, 4, 8, 1, 2, 4, 8, 8};
        const auto type = Number<quint32>();
        if (type < 1 || type > (FForm == 5 ? 11U : 6U))
            RefuseDamaged();
        return sizes[type - 1];
    }

    void ReadDimensions() {
        const quint64 length = ListLength(DimensionTag);
        for (quint64 i = 0; i < length; ++i) {
            SkipName();
            FDimensions.push_back(Count());
        }
    }

    void SkipAttributes() {
        const quint64 length = ListLength(AttributeTag);
        for (quint64 i = 0; i < length; ++i) {
            SkipName();
            const quint64 size = TypeSize();
            Skip(Padded(Product(size, Count())));
        }
    }

    TVariable ReadVariable() {
        TVariable variable;
        SkipName();
        const quint64 dimensions = Count();
        if (dimensions > MostDimensions)
            RefuseDamaged();
        quint64 cells = 1;
        for (quint64 i = 0; i < dimensions; ++i) {
            const quint64 number = Count();
            if (number >= FDimensions.size() || (FDimensions[number] == 0 && i > 0))
                RefuseDamaged();
            if (FDimensions[number] == 0)
                variable.IsRecord = true;
            else
                cells = Product(cells, FDimensions[number]);
        }
        SkipAttributes();
        variable.Size = Product(cells, TypeSize());
        Count(); // the size that the file tells: it overflows, and nobody reads it
        variable.Begin = FForm == 1 ? Number<quint32>() : Number<quint64>();
        return variable;
    }

    std::vector<TVariable> ReadVariables() {
        const quint64 length = ListLength(VariableTag);
        if (length > MostVariables)
            Refuse(
                Format(u"holds %d variables, and no more than %d are read", {qint64(length), qint64(MostVariables)}));
        std::vector<TVariable> variables;
        for (quint64 i = 0; i < length; ++i)
            variables.push_back(ReadVariable());
        return variables;
    }

    // A record holds one record of each variable, padded; of a single variable it is not.
    quint64 EndOf(const std::vector<TVariable>& variables, quint64 records) const {
        const auto count = std::count_if(variables.begin(), variables.end(), [](const auto& v) { return v.IsRecord; });
        quint64 step = 0;
        for (const TVariable& variable : variables)
            if (variable.IsRecord)
                step = Sum(step, count == 1 ? variable.Size : Padded(variable.Size));
        auto end = quint64(FDevice.pos());
        for (const TVariable& variable : variables) {
            if (variable.IsRecord && records == 0)
                continue;
            const quint64 before = variable.IsRecord ? Product(records - 1, step) : 0;
            end = std::max(end, Sum(variable.Begin, Sum(before, variable.Size)));
        }
        return end;
    }

    QIODevice& FDevice;
    const QString& FFileName;
    char FForm = 0;
    std::vector<quint64> FDimensions;
};

} // namespace

quint64 NetCDFLengthOf(QIODevice& device, const QString& fileName) {
    return THeaderReader(device, fileName).Read();
}

void CheckNetCDFLength(QIODevice& device, const QString& fileName) {
    const quint64 length = NetCDFLengthOf(device, fileName);
    const auto there = quint64(std::max<qint64>(device.size(), 0));
    if (length <= there)
        return;
    if (length > quint64(std::numeric_limits<qint64>::max()))
        throw EClimateFile(fileName, QStringLiteral("tells of more cells than a file can hold"));
    throw EClimateFile(fileName, Format(u"is cut short: %d of %d bytes are there. Copy or fetch it again",
                                        {qint64(there), qint64(length)}));
}

} // namespace lmx
