#include <lmx/Runtime/lmxTextStreams.h>

#include <lmx/Runtime/Private/lmxReplacementFile.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxNumberText.h>
#include <lmx/Runtime/lmxText.h>

#include <QFile>
#include <QFileDevice>
#include <QStringDecoder>

#include <algorithm>
#include <cstring>
#include <utility>

namespace lmx {

namespace {

constexpr std::size_t BlockSize = 1 << 16;
constexpr QByteArrayView ByteOrderMark = "\xEF\xBB\xBF";

QString NameOf(const QIODevice& stream) {
    const auto* const file = qobject_cast<const QFileDevice*>(&stream);
    return file ? file->fileName() : QStringLiteral("stream");
}

const char* Find(const char* first, const char* last, char wanted) {
    const void* const found = std::memchr(first, wanted, static_cast<std::size_t>(last - first));
    return found ? static_cast<const char*>(found) : last;
}

} // namespace

std::unique_ptr<QFile> OpenForReading(const QString& fileName) {
    auto file = std::make_unique<QFile>(fileName);
    if (!file->open(QIODevice::ReadOnly))
        throw EFileException(fileName, QStringLiteral("cannot be read: ") + file->errorString());
    return file;
}

// QString::fromUtf8 takes a mark off the front of any text.
QString DecodeUtf8(QByteArrayView bytes) {
    QStringDecoder decoder(QStringDecoder::Utf8,
                           QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom);
    return decoder(bytes);
}

TStreamReader::TStreamReader(QIODevice& stream)
    : FStream(stream),
      FName(NameOf(stream)),
      FBlock(BlockSize),
      FNext(FBlock.data()),
      FEnd(FNext),
      FLineFeed(FNext) {
    if (!stream.isReadable())
        throw EFileException(FName, QStringLiteral("cannot be read: not open"));
}

TStreamReader::~TStreamReader() {
    if (!FStream.isReadable() || FStream.isSequential() || FStream.isTextModeEnabled())
        return;
    try {
        SkipLineFeed();
    } catch (const EFileException&) { // a stream that fails here has given all the lines that were asked for
    }
    if (FNext != FEnd)
        FStream.seek(FStream.pos() - (FEnd - FNext));
}

QByteArrayView TStreamReader::ReadLineUtf8() {
    ++FLineNumber;
    SkipLineFeed();
    FLine.clear();
    while (FNext != FEnd || FillBlock()) {
        const char* const lineEnd = FindLineEnd();
        const char* const first = std::exchange(FNext, lineEnd);
        const bool isWhole = lineEnd != FEnd;
        if (isWhole) {
            FSkipLineFeed = *lineEnd == '\r';
            ++FNext;
            if (FLine.empty())
                return {first, lineEnd - first};
        }
        AppendToLine(first, lineEnd);
        if (isWhole)
            break;
    }
    return {FLine.data(), static_cast<qsizetype>(FLine.size())};
}

void TStreamReader::AppendToLine(const char* first, const char* last) {
    if (static_cast<std::size_t>(last - first) > LongestLine - FLine.size())
        throw EFileFormatException(FName, QStringLiteral("line ") + IntToStr(FLineNumber) +
                                              QStringLiteral(" is longer than ") + IntToStr(LongestLine) +
                                              QStringLiteral(" bytes"));
    FLine.append(first, last);
}

QString TStreamReader::GetPlace() const {
    return FName + QStringLiteral(", line ") + IntToStr(FLineNumber);
}

std::int64_t TStreamReader::BytesLeft() const {
    if (FStream.isSequential())
        return 0;
    return (FEnd - FNext) + std::max<std::int64_t>(0, FStream.size() - FStream.pos());
}

bool TStreamReader::FillBlock() {
    FNext = FBlock.data();
    FEnd = FNext + ReadBytes(FBlock.data(), static_cast<qint64>(FBlock.size()));
    if (std::exchange(FIsAtStart, false))
        SkipMark();
    FLineFeed = Find(FNext, FEnd, '\n');
    return FNext != FEnd;
}

qint64 TStreamReader::ReadBytes(char* bytes, qint64 most) {
    const qint64 count = FStream.read(bytes, most);
    if (count < 0 && !FStream.isSequential()) // a sequential stream says so at its end, too
        throw EFileException(FName, QStringLiteral("cannot be read: ") + FStream.errorString());
    return std::max<qint64>(0, count);
}

// A mark may come in pieces: what begins like one is waited for, and what stands behind it.
void TStreamReader::SkipMark() {
    while (ByteOrderMark.startsWith(QByteArrayView(FNext, FEnd - FNext))) {
        const bool isWhole = FEnd - FNext == ByteOrderMark.size();
        const qint64 count =
            ReadBytes(FBlock.data() + (FEnd - FNext), static_cast<qint64>(FBlock.size()) - (FEnd - FNext));
        FEnd += count;
        if (count == 0 || isWhole)
            break;
    }
    if (QByteArrayView(FNext, FEnd - FNext).startsWith(ByteOrderMark))
        FNext += ByteOrderMark.size();
}

void TStreamReader::SkipLineFeed() {
    if (std::exchange(FSkipLineFeed, false) && (FNext != FEnd || FillBlock()) && *FNext == '\n')
        ++FNext;
}

// The place of the next line feed is kept: a block of short lines is searched once for each kind of line end.
const char* TStreamReader::FindLineEnd() {
    if (FLineFeed < FNext)
        FLineFeed = Find(FNext, FEnd, '\n');
    return Find(FNext, FLineFeed, '\r');
}

TStreamWriter::TStreamWriter(QIODevice& stream) : FStream(stream), FLineBreak(LineBreak().toUtf8()) {
    if (!stream.isWritable())
        throw EFileException(NameOf(stream), QStringLiteral("cannot be written: not open"));
}

TStreamWriter::~TStreamWriter() {
    try {
        Flush();
    } catch (const EFileException&) { // whoever wants to know calls Flush
    }
}

void TStreamWriter::WriteLineUtf8(QByteArrayView text) {
    FText += text;
    FText += FLineBreak;
    if (static_cast<std::size_t>(FText.size()) >= BlockSize)
        Flush();
}

void TStreamWriter::Flush() {
    if (FText.isEmpty())
        return;
    const QByteArray text = std::exchange(FText, QByteArray());
    if (!WriteAll(FStream, text))
        throw EFileException(NameOf(FStream), QStringLiteral("cannot be written: ") + FStream.errorString());
}

} // namespace lmx
