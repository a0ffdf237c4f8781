#include <lmx/Formats/Text/lmxCSVReader.h>

#include <lmx/Formats/Text/Private/lmxAnsiText.h>
#include <lmx/Formats/Text/Private/lmxDelimitedRows.h>
#include <lmx/Runtime/Private/lmxMemory.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxNumberText.h>
#include <lmx/Runtime/lmxText.h>

#include <QByteArray>
#include <QHash>
#include <QStringDecoder>

#include <algorithm>
#include <map>

namespace lmx {

namespace {

constexpr int ProbedRows = 100;

// How many of the first rows have the same number of columns, at least two.
int RowsOfOneLength(QStringView text, QChar delimiter) {
    TDelimitedRows rows(text, delimiter);
    std::map<std::size_t, int> rowsByLength;
    std::size_t length = 0;
    for (int i = 0; i < ProbedRows; ++i, length = 0) {
        if (!rows.Next([](QStringView) {}, [&length] { ++length; }))
            break;
        if (length >= 2)
            ++rowsByLength[length];
    }
    int most = 0;
    for (const auto& [columns, count] : rowsByLength)
        most = std::max(most, count);
    return most;
}

QString DecodeFile(const QByteArray& bytes) {
    if (!bytes.startsWith("\xFF\xFE") && !bytes.startsWith("\xFE\xFF"))
        return DecodeAnsiText(bytes);
    QStringDecoder decoder(QStringDecoder::Utf16); // takes the mark off
    return decoder(bytes);
}

QString PlainName(qsizetype column) {
    return QStringLiteral("Column ") + IntToStr(column + 1);
}

/// Gives each column a name of its own.
class TColumnNames {
public:
    explicit TColumnNames(QStringList given) : FNames(std::move(given)) {}

    QStringList Settle() {
        std::vector<qsizetype> plain;
        for (qsizetype i = 0; i < FNames.size(); ++i)
            if (Trim(FNames[i]).isEmpty() || FColumns.contains(FNames[i]))
                plain.push_back(i);
            else
                FColumns.insert(FNames[i], i);
        // A plain name takes precedence over the same text in another column, which becomes plain in its turn.
        while (!plain.empty()) {
            const qsizetype column = plain.back();
            plain.pop_back();
            FNames[column] = PlainName(column);
            if (const auto other = FColumns.constFind(FNames[column]); other != FColumns.cend() && *other != column)
                plain.push_back(*other);
            FColumns.insert(FNames[column], column);
        }
        return std::move(FNames);
    }

private:
    QStringList FNames;
    QHash<QString, qsizetype> FColumns; ///< of the names that are settled
};

} // namespace

QChar GetCSVDelim(QStringView text) {
    QChar best = u',';
    int most = 0;
    for (const QChar delimiter : {u'\t', u';', u',', u'|'})
        if (const int rows = RowsOfOneLength(text, delimiter); rows > most) {
            most = rows;
            best = delimiter;
        }
    return best;
}

/// Fills a reader.
class TCSVReader::TParser {
public:
    TParser(const QString& text, QChar delimiter, const QString& name) : FRows(text, delimiter), FName(name) {
        FReader.FTexts.reserve(text.size());
    }

    TCSVReader Parse() {
        FReader.FRowStarts.push_back(0);
        const auto take = [this](QStringView piece) { FReader.FTexts += piece; };
        while (FRows.Next(take, [this] { EndCell(); })) {
            FColumns = std::max(FColumns, FReader.FCellEnds.size() - FReader.FRowStarts.back());
            FReader.FRowStarts.push_back(FReader.FCellEnds.size());
        }
        NameColumns();
        return std::move(FReader);
    }

private:
    void EndCell() {
        if (FReader.FCellEnds.size() - FReader.FRowStarts.back() == MostColumns)
            throw EFileFormatException(
                FName, QStringLiteral("row ") + IntToStr(static_cast<std::int64_t>(FReader.FRowStarts.size())) +
                           QStringLiteral(" has more than ") + IntToStr(MostColumns) + QStringLiteral(" cells"));
        FReader.FCellEnds.push_back(FReader.FTexts.size());
    }

    void NameColumns() {
        QStringList names = FReader.GetRowCount() > 0 ? FReader.GetRow(0) : QStringList();
        names.resize(static_cast<qsizetype>(FColumns));
        FReader.FColumnNames = TColumnNames(std::move(names)).Settle();
    }

    TDelimitedRows FRows;
    const QString& FName;
    TCSVReader FReader;
    std::size_t FColumns = 0;
};

TCSVReader TCSVReader::FromText(const QString& text, QChar delimiter) {
    if (delimiter == u'"' || delimiter == u'\n' || delimiter == u'\r')
        throw EArgumentException(QStringLiteral("Delimiter"));
    const QString name = QStringLiteral("Delimited text");
    return WithinMemory([&] { return TParser(text, delimiter, name).Parse(); });
}

TCSVReader TCSVReader::FromFile(const QString& fileName) {
    return WithinMemory(fileName, [&] {
        const QString text = DecodeFile(ReadFile(fileName, MostBytes));
        return TParser(text, GetCSVDelim(text), fileName).Parse();
    });
}

std::size_t TCSVReader::GetCellCount(std::size_t row) const {
    if (row >= GetRowCount())
        throw EArgumentException(QStringLiteral("Row index is out of range"));
    return FRowStarts[row + 1] - FRowStarts[row];
}

QStringView TCSVReader::GetCell(std::size_t row, std::size_t column) const {
    if (column >= GetCellCount(row))
        return {};
    const std::size_t cell = FRowStarts[row] + column;
    const qsizetype start = cell == 0 ? 0 : FCellEnds[cell - 1];
    return QStringView(FTexts).sliced(start, FCellEnds[cell] - start);
}

QStringList TCSVReader::GetRow(std::size_t row) const {
    QStringList cells;
    const std::size_t count = GetCellCount(row);
    cells.reserve(static_cast<qsizetype>(count));
    for (std::size_t column = 0; column < count; ++column)
        cells += GetCell(row, column).toString();
    return cells;
}

} // namespace lmx
