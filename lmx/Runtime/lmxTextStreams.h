#pragma once

#include <lmx/Runtime/lmxExport.h>

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

class QFile;
class QIODevice;

namespace lmx {

/// A file open for reading.
/// @throws EFileException if it cannot be read.
LMX_EXPORT std::unique_ptr<QFile> OpenForReading(const QString& fileName);

/// The text of UTF-8 bytes. A byte order mark is a character like any other.
LMX_EXPORT QString DecodeUtf8(QByteArrayView bytes);

/// Reads UTF-8 text line by line from a stream, block by block: it holds a block and the line at hand. A line ends at
/// LF, CR or CRLF; a byte order mark at the beginning is skipped. The stream must outlive the reader, which leaves it
/// right behind the last line read if the stream has positions (and does not translate line ends itself).
class LMX_EXPORT TStreamReader {
public:
    /// Bytes of the longest line that is read: many times those of the widest grids, and too few to exhaust memory.
    static constexpr std::size_t LongestLine = 16 * 1024 * 1024;

    /// @throws EFileException if the stream is not open for reading.
    explicit TStreamReader(QIODevice& stream);
    ~TStreamReader();
    TStreamReader(const TStreamReader&) = delete;
    TStreamReader& operator=(const TStreamReader&) = delete;

    /// The next line without its end; at the end of the stream empty, however often it is asked for.
    /// @throws EFileException if the stream fails, EFileFormatException "...: line %d is longer than 16777216 bytes".
    QString ReadLine() { return DecodeUtf8(ReadLineUtf8()); }
    /// The same line as the bytes of the stream, valid until the next call.
    QByteArrayView ReadLineUtf8();

    /// Bytes from here to the end of the stream; 0 if the stream does not know.
    std::int64_t BytesLeft() const;

    const QString& GetName() const { return FName; } ///< of the stream's file, or "stream"
    /// How many lines have been asked for: the number of the last one, counted from 1.
    std::int64_t GetLineNumber() const { return FLineNumber; }
    /// The last line for the message of a failure: "grid.asc, line 3".
    QString GetPlace() const;

private:
    bool FillBlock();
    qint64 ReadBytes(char* bytes, qint64 most);
    void SkipMark();
    void SkipLineFeed();
    const char* FindLineEnd();
    void AppendToLine(const char* first, const char* last);

    QIODevice& FStream;
    const QString FName;
    std::int64_t FLineNumber = 0;
    std::vector<char> FBlock;
    const char* FNext; // in the block, as the next two
    const char* FEnd;
    const char* FLineFeed;      // the first one at or after FNext, or FEnd
    bool FIsAtStart = true;     // where a byte order mark may stand
    bool FSkipLineFeed = false; // the line before ended at a CR
    std::string FLine;          // a line that reaches over blocks
};

/// Writes UTF-8 text to a stream, without a byte order mark. The stream must outlive the writer.
class LMX_EXPORT TStreamWriter {
public:
    /// @throws EFileException if the stream is not open for writing.
    explicit TStreamWriter(QIODevice& stream);
    /// Writes what is left, without a word about failures: call Flush before.
    ~TStreamWriter();
    TStreamWriter(const TStreamWriter&) = delete;
    TStreamWriter& operator=(const TStreamWriter&) = delete;

    /// Writes the text and a line break.
    /// @throws EFileException if the stream does not take it.
    void WriteLine(const QString& text) { WriteLineUtf8(text.toUtf8()); }
    void WriteLineUtf8(QByteArrayView text);

    /// Gives the stream all that was written so far.
    /// @throws EFileException if the stream does not take it; it is dropped then.
    void Flush();

private:
    QIODevice& FStream;
    const QByteArray FLineBreak;
    QByteArray FText;
};

} // namespace lmx
