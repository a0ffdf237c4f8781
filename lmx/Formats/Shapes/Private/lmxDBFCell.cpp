#include <lmx/Formats/Shapes/Private/lmxDBFCell.h>

#include <lmx/Runtime/lmxNumberText.h>

#include <QDate>
#include <QTime>
#include <QtEndian>

#include <algorithm>

namespace lmx {

namespace {

constexpr std::int64_t MillisecondsPerDay = 86'400'000;

template<class Number>
Number NumberAt(QByteArrayView bytes, qsizetype position = 0) {
    return qFromLittleEndian<Number>(bytes.data() + position);
}

bool IsBlank(char c) {
    return c == ' ' || c == '\0';
}

// A NUL ends a text; what stands behind it is left over from earlier.
QByteArrayView TextBytes(QByteArrayView bytes) {
    if (const qsizetype end = bytes.indexOf('\0'); end >= 0)
        bytes = bytes.first(end);
    while (!bytes.isEmpty() && bytes.back() == ' ')
        bytes.chop(1);
    return bytes;
}

QByteArrayView WithoutBlanks(QByteArrayView bytes) {
    while (!bytes.isEmpty() && IsBlank(bytes.back()))
        bytes.chop(1);
    while (!bytes.isEmpty() && IsBlank(bytes.front()))
        bytes = bytes.sliced(1);
    return bytes;
}

QString WideText(const QString& text) {
    const qsizetype end = text.indexOf(QChar(0));
    QString whole = end >= 0 ? text.first(end) : text;
    while (whole.endsWith(u' '))
        whole.chop(1);
    return whole;
}

QString DateText(QByteArrayView bytes) {
    const QByteArrayView date = WithoutBlanks(bytes);
    const bool isNone = std::ranges::all_of(date, [](char c) { return c == '0'; });
    return isNone ? QString() : QString::fromLatin1(date);
}

// Ten-thousandths, exactly.
QString CurrencyText(std::int64_t value) {
    constexpr std::uint64_t Unit = 10'000;
    const std::uint64_t amount = value < 0 ? 0 - static_cast<std::uint64_t>(value) : static_cast<std::uint64_t>(value);
    const QString decimals = IntToStr(static_cast<std::int64_t>(amount % Unit)).rightJustified(4, u'0');
    return (value < 0 ? QStringLiteral("-") : QString()) + IntToStr(static_cast<std::int64_t>(amount / Unit)) + u'.' +
           decimals;
}

// A day by its Julian number and a time in milliseconds, which writers miss by one or two.
QString DateTimeText(std::int32_t day, std::int32_t milliseconds) {
    if (day <= 0 || milliseconds < 0 || milliseconds >= MillisecondsPerDay)
        return {};
    const std::int64_t rounded = (std::int64_t{milliseconds} + 500) / 1000 * 1000;
    const QDate date = QDate::fromJulianDay(day + rounded / MillisecondsPerDay);
    const QTime time = QTime::fromMSecsSinceStartOfDay(static_cast<int>(rounded % MillisecondsPerDay));
    return date.toString(QStringLiteral("yyyyMMdd ")) + time.toString(QStringLiteral("hh:mm:ss"));
}

// The block of a long text: digits, or a number where four bytes are all there is.
std::int64_t BlockOf(QByteArrayView bytes) {
    if (bytes.size() == 4)
        return NumberAt<std::uint32_t>(bytes);
    std::int64_t block = 0;
    for (const char c : WithoutBlanks(bytes)) {
        if (c < '0' || c > '9' || block > 1'000'000'000'000)
            return 0;
        block = 10 * block + (c - '0');
    }
    return block;
}

/// Finds the text of one field of one record.
class TCell {
public:
    TCell(const TDBFHeader& header, const TDBFColumn& column, QByteArrayView record)
        : FHeader(header),
          FColumn(column),
          FRecord(record),
          FBytes(record.sliced(column.Offset, column.Width)) {}

    QString GetText(const ICodePage& codePage, TDBFMemo& memo) const {
        if (HasFlag(FColumn.NullBit))
            return {};
        switch (FColumn.Type) {
        case 'N':
        case 'F':
        case 'L':
            return QString::fromLatin1(WithoutBlanks(FBytes));
        case 'D':
            return DateText(FBytes);
        case 'M':
            return codePage.Decode(TextBytes(memo.Read(BlockOf(FBytes))));
        case 'I':
        case '+':
            return FBytes.size() == 4 ? IntToStr(NumberAt<std::int32_t>(FBytes)) : QString();
        case 'B':
        case 'O': // of another width it is the block of a picture
            return FBytes.size() == 8 ? FloatToStr(NumberAt<double>(FBytes), TFormatSettings::Invariant()) : QString();
        case 'Y':
            return FBytes.size() == 8 ? CurrencyText(NumberAt<std::int64_t>(FBytes)) : QString();
        case 'T':
        case '@':
            return FBytes.size() == 8 ? DateTimeText(NumberAt<std::int32_t>(FBytes), NumberAt<std::int32_t>(FBytes, 4))
                                      : QString();
        case 'G':
        case 'P':
        case 'W':
            return {};
        case 'Q':
            return QString::fromLatin1(Used().toByteArray().toHex().toUpper());
        default:
            return codePage.HasWideUnits() ? WideText(codePage.Decode(Used())) : codePage.Decode(TextBytes(Used()));
        }
    }

private:
    bool HasFlag(int bit) const {
        return bit >= 0 && bit / 8 < FHeader.NullFlagsWidth &&
               (static_cast<unsigned char>(FRecord[FHeader.NullFlagsOffset + bit / 8]) >> (bit % 8) & 1) != 0;
    }
    // What a value of varying length fills of its bytes.
    QByteArrayView Used() const {
        if (FBytes.isEmpty() || !HasFlag(FColumn.LengthBit))
            return FBytes;
        return FBytes.first(std::min<qsizetype>(static_cast<unsigned char>(FBytes.back()), FBytes.size() - 1));
    }

    const TDBFHeader& FHeader;
    const TDBFColumn& FColumn;
    QByteArrayView FRecord;
    QByteArrayView FBytes;
};

} // namespace

QString DBFCellText(const TDBFHeader& header, const TDBFColumn& column, QByteArrayView record,
                    const ICodePage& codePage, TDBFMemo& memo) {
    return TCell(header, column, record).GetText(codePage, memo);
}

} // namespace lmx
