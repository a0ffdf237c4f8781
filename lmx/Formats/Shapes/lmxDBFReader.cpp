#include <lmx/Formats/Shapes/lmxDBFReader.h>

#include <lmx/Formats/Shapes/Private/lmxDBFCell.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxText.h>

#include <QFile>

#include <algorithm>
#include <new>
#include <utility>

namespace lmx {

namespace {

constexpr char DeletedMark = '*';

// The code page that the file beside the table names, if it can be understood.
std::unique_ptr<ICodePage> CodePageBeside(const QString& fileName) {
    constexpr qint64 LongestName = 64;
    QFile file(FindSisterFile(fileName, QStringLiteral("cpg")));
    if (file.fileName().isEmpty() || !file.open(QIODevice::ReadOnly))
        return nullptr;
    return CodePageOfName(QString::fromLatin1(file.readLine(LongestName)));
}

QByteArray ReadRecords(QFile& file, const TDBFHeader& header, std::int64_t count) {
    QByteArray records(count * header.RecordLength, Qt::Uninitialized);
    if (!file.seek(header.HeaderLength) || file.read(records.data(), records.size()) != records.size())
        throw EFileException(file.fileName(), QStringLiteral("cannot be read: ") + file.errorString());
    return records;
}

// A name is padded with NULs; what stands behind the first one is left over.
QString NameOf(const TDBFColumn& column, const ICodePage& codePage) {
    const auto isEnd = [](QChar c) { return c == QChar(0); };
    QString name = codePage.HasWideUnits() ? codePage.Decode(column.Name.chopped(column.Name.size() % 2))
                                           : codePage.Decode(column.Name.first(qstrnlen(
                                                 column.Name.constData(), static_cast<size_t>(column.Name.size()))));
    name.truncate(std::ranges::find_if(name, isEnd) - name.begin());
    return Trim(name);
}

} // namespace

struct TDBFReader::TInside {
    TDBFHeader Header;
    std::unique_ptr<ICodePage> CodePage;
    std::unique_ptr<TDBFMemo> Memo;
    QByteArray Records;
};

TDBFReader::TDBFReader(const QString& fileName, const QString& codePage)
    : FFileName(fileName),
      FInside(std::make_unique<TInside>()) {
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        throw EFileException(fileName, QStringLiteral("cannot be opened: ") + file.errorString());
    TDBFHeader& header = FInside->Header;
    header = ReadDBFHeader(file, fileName);
    const std::int64_t whole = header.RecordLength > 0 ? (file.size() - header.HeaderLength) / header.RecordLength : 0;
    const std::int64_t count = std::min(whole, header.RecordCount);
    try {
        FInside->Records = ReadRecords(file, header, count);
    } catch (const std::bad_alloc&) {
        throw EFileException(fileName, QStringLiteral("does not fit into memory"));
    }
    FRowCount = static_cast<std::size_t>(count);
    FInside->Memo = std::make_unique<TDBFMemo>(fileName, header.IsFox());
    ReadFields(codePage);
}

TDBFReader::~TDBFReader() = default;

void TDBFReader::ReadFields(const QString& codePage) {
    auto& page = FInside->CodePage;
    page = codePage.isEmpty() ? nullptr : CodePageOfName(codePage);
    if (!page)
        page = CodePageBeside(FFileName);
    if (!page)
        page = CodePageOfLanguage(FInside->Header.Language);
    if (!page)
        page = GuessedCodePage();
    for (const TDBFColumn& column : FInside->Header.Columns)
        FFields.emplace_back(NameOf(column, *page), column.Type, column.Width, column.Decimals);
}

QByteArrayView TDBFReader::RecordAt(std::size_t row) const {
    if (row >= FRowCount)
        throw EArgumentException(QStringLiteral("Row index is out of range"));
    const std::int64_t length = FInside->Header.RecordLength;
    return QByteArrayView(FInside->Records).sliced(static_cast<std::int64_t>(row) * length, length);
}

std::optional<TDBFRecord> TDBFReader::ReadRecord() {
    while (FNextRow < FRowCount && GetIsDeleted(FNextRow))
        ++FNextRow;
    if (FNextRow == FRowCount)
        return std::nullopt;
    return TDBFRecord(*this, FNextRow++);
}

bool TDBFReader::GetIsDeleted(std::size_t row) const {
    return RecordAt(row).front() == DeletedMark;
}

QString TDBFReader::GetText(std::size_t row, std::size_t field) const {
    const QByteArrayView record = RecordAt(row);
    if (field >= FFields.size())
        throw EArgumentException(QStringLiteral("Field index is out of range"));
    return DBFCellText(FInside->Header, FInside->Header.Columns[field], record, *FInside->CodePage, *FInside->Memo);
}

std::size_t TDBFReader::GetMemorySize() const {
    return static_cast<std::size_t>(FInside->Records.capacity());
}

QString TDBFFieldValue::GetText() const {
    return FReader->GetText(FRow, FField);
}

std::size_t TDBFRecord::GetCount() const {
    return FReader->GetFields().size();
}

TDBFFieldValue TDBFRecord::operator[](std::size_t field) const {
    if (field >= GetCount())
        throw EArgumentException(QStringLiteral("Field index is out of range"));
    return {*FReader, FRow, field};
}

} // namespace lmx
