#include <lmx/Runtime/lmxText.h>

#include <lmx/Runtime/Private/lmxMemory.h>
#include <lmx/Runtime/Private/lmxReplacementFile.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxNumberText.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace lmx {

namespace {

constexpr qint64 BlockSize = 64 * 1024;

char16_t FoldAscii(QChar c) {
    const char16_t unit = c.unicode();
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + (u'a' - u'A')) : unit;
}

[[noreturn]] void RefuseMoreThan(const QString& fileName, qint64 mostBytes) {
    throw EFileFormatException(fileName,
                               QStringLiteral("holds more than ") + IntToStr(mostBytes) + QStringLiteral(" bytes"));
}

// Pipes and devices do not know how much they will give, and some never end.
QByteArray ReadToTheEnd(QFile& file, qint64 mostBytes) {
    if (!file.isSequential())
        return file.readAll();
    QByteArray content;
    while (content.size() <= mostBytes) {
        const QByteArray block = file.read(BlockSize);
        if (block.isEmpty())
            return content;
        content += block;
    }
    RefuseMoreThan(file.fileName(), mostBytes);
}

} // namespace

QString Trim(const QString& text) {
    qsizetype first = 0;
    qsizetype last = text.size();
    while (first < last && text[first] <= u' ')
        ++first;
    while (last > first && text[last - 1] <= u' ')
        --last;
    return text.sliced(first, last - first);
}

QStringList Split(const QString& text, QChar separator) {
    return text.isEmpty() ? QStringList() : text.split(separator);
}

bool SameText(QStringView a, QStringView b) {
    if (a.size() != b.size())
        return false;
    for (qsizetype i = 0; i < a.size(); ++i)
        if (FoldAscii(a[i]) != FoldAscii(b[i]))
            return false;
    return true;
}

QStringList SplitLines(const QString& text) {
    QStringList lines;
    qsizetype start = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] != u'\n' && text[i] != u'\r')
            continue;
        lines += text.sliced(start, i - start);
        if (text[i] == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n')
            ++i;
        start = i + 1;
    }
    if (start < text.size())
        lines += text.sliced(start);
    return lines;
}

QString LineBreak() {
#ifdef Q_OS_WIN
    return QStringLiteral("\r\n");
#else
    return QStringLiteral("\n");
#endif
}

QByteArray ReadFile(const QString& fileName, qint64 mostBytes) {
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        throw EFileException(fileName, QStringLiteral("cannot be opened: ") + file.errorString());
    if (file.size() > mostBytes)
        RefuseMoreThan(fileName, mostBytes);
    QByteArray content = WithinMemory(fileName, [&] { return ReadToTheEnd(file, mostBytes); });
    if (file.error() != QFileDevice::NoError)
        throw EFileException(fileName, QStringLiteral("cannot be read: ") + file.errorString());
    return content;
}

QStringList ReadLines(const QString& fileName, qint64 mostBytes) {
    QByteArray content = ReadFile(fileName, mostBytes);
    if (content.startsWith("\xEF\xBB\xBF"))
        content.remove(0, 3);
    return SplitLines(QString::fromUtf8(content));
}

void WriteFile(const QString& fileName, const QByteArray& content) {
    TReplacementFile file(fileName);
    file.Write(content);
    file.Commit();
}

void WriteLines(const QString& fileName, const QStringList& lines) {
    QString text;
    for (const QString& line : lines)
        text += line + LineBreak();
    WriteFile(fileName, text.toUtf8());
}

QString FindSisterFile(const QString& fileName, const QString& suffix) {
    const QFileInfo info(fileName);
    const QString wanted = info.completeBaseName() + u'.' + suffix;
    QString exact = info.dir().filePath(wanted);
    if (QFileInfo(exact).isFile())
        return exact;
    const QStringList entries = info.dir().entryList(QDir::Files);
    for (const QString& entry : entries)
        if (SameText(entry, wanted))
            return info.dir().filePath(entry);
    return {};
}

} // namespace lmx
