// Delimited text. Whatever was read is written with every cell in quotes, and reads back as the same rows.

#include <lmx/Formats/Text/lmxCSVReader.h>
#include <lmx/Runtime/lmxExceptions.h>

#include <QSet>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

using namespace lmx;

QString TextOf(const TCSVReader& reader, QChar delimiter) {
    QString text;
    for (std::size_t row = 0; row < reader.GetRowCount(); ++row) {
        for (std::size_t column = 0; column < reader.GetCellCount(row); ++column) {
            QString cell = reader.GetCell(row, column).toString();
            if (column > 0)
                text += delimiter;
            text += u'"' + cell.replace(u'"', QStringLiteral("\"\"")) + u'"';
        }
        text += u'\n';
    }
    return text;
}

void RequireSameRows(const TCSVReader& a, const TCSVReader& b) {
    if (a.GetRowCount() != b.GetRowCount() || a.GetColumnNames() != b.GetColumnNames())
        std::abort();
    for (std::size_t row = 0; row < a.GetRowCount(); ++row)
        if (a.GetRow(row) != b.GetRow(row))
            std::abort();
}

void RequireNames(const TCSVReader& reader) {
    const QStringList& names = reader.GetColumnNames();
    if (QSet<QString>(names.begin(), names.end()).size() != names.size())
        std::abort();
    for (std::size_t row = 0; row < reader.GetRowCount(); ++row)
        if (reader.GetCellCount(row) == 0 || reader.GetCellCount(row) > static_cast<std::size_t>(names.size()))
            std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const QString text = QString::fromUtf8(reinterpret_cast<const char*>(bytes), static_cast<qsizetype>(size));
    for (const QChar delimiter : {QChar(u'\t'), QChar(u';'), QChar(u','), QChar(u'|'), GetCSVDelim(text)}) {
        try {
            const TCSVReader reader = TCSVReader::FromText(text, delimiter);
            RequireNames(reader);
            RequireSameRows(reader, TCSVReader::FromText(TextOf(reader, delimiter), delimiter));
        } catch (const EFileFormatException&) { // a refusal is a correct answer
        }
    }
    return 0;
}
