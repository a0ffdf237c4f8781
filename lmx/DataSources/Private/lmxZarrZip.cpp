#include <lmx/DataSources/Private/lmxZarrZip.h>

#include <lmx/DataSources/lmxClimateExceptions.h>

#include <QByteArray>
#include <QIODevice>
#include <QtEndian>

#include <algorithm>
#include <optional>

namespace lmx {

namespace {

constexpr qint64 EndSize = 22;
constexpr qint64 LongEndSize = 56;
constexpr qint64 LocatorSize = 20; // of the long end
constexpr qint64 EntrySize = 46;
constexpr qint64 LocalSize = 30;
constexpr qint64 MostComment = 65'535;
constexpr quint64 MostEntries = 1'000'000;
constexpr quint64 MostEntryBytes = 1024; // on average; the rest of a directory is no list of files
constexpr quint64 MostDescription = 16 << 20;
constexpr quint32 In64Bits = 0xFFFFFFFF; // the number stands in 64 bits elsewhere

quint16 Number16(const QByteArray& bytes, qint64 at) {
    return qFromLittleEndian<quint16>(bytes.constData() + at);
}

quint32 Number32(const QByteArray& bytes, qint64 at) {
    return qFromLittleEndian<quint32>(bytes.constData() + at);
}

quint64 Number64(const QByteArray& bytes, qint64 at) {
    return qFromLittleEndian<quint64>(bytes.constData() + at);
}

struct TEntry {
    QString Name;
    quint16 Flags = 0;
    quint16 Method = 0;
    quint64 PackedSize = 0;
    quint64 Size = 0;
    quint64 Place = 0; // of its own header
};

class TZipDirectory {
public:
    TZipDirectory(QIODevice& device, const QString& fileName) : FDevice(device), FFileName(fileName) {}

    template<class Take>
    void ForEach(Take take) {
        Find();
        const QByteArray directory = Read(FPlace, qint64(FSize));
        qint64 at = 0;
        for (quint64 i = 0; i < FCount; ++i)
            take(Entry(directory, at));
    }

    [[noreturn]] void Refuse(const QString& problem) const { throw EClimateFile(FFileName, problem); }

private:
    QByteArray Read(quint64 place, qint64 size) {
        if (!FDevice.seek(qint64(place)))
            Refuse(QStringLiteral("is a damaged zip"));
        QByteArray bytes = FDevice.read(size);
        if (bytes.size() != size)
            Refuse(QStringLiteral("is a damaged zip"));
        return bytes;
    }

    // A zip ends with where its directory is.
    void Find() {
        const qint64 size = FDevice.size();
        const qint64 tailSize = std::min(size, EndSize + MostComment);
        const QByteArray tail = Read(quint64(size - tailSize), tailSize);
        const qint64 end = tailSize < EndSize ? -1 : tail.lastIndexOf(QByteArray("PK\x05\x06", 4), tailSize - EndSize);
        if (end < 0)
            Refuse(QStringLiteral("is a zip that was cut short"));
        FCount = Number16(tail, end + 10);
        FSize = Number32(tail, end + 12);
        FPlace = Number32(tail, end + 16);
        FEnd = quint64(size - tailSize + end);
        if (FCount == 0xFFFF || FSize == In64Bits || FPlace == In64Bits)
            FindLong();
        if (FCount > MostEntries)
            Refuse(QStringLiteral("holds more than 1,000,000 files; unpack it first"));
        if (FSize > FEnd || FPlace > FEnd - FSize || FSize > (FCount + 1) * MostEntryBytes)
            Refuse(QStringLiteral("is a damaged zip"));
    }

    void FindLong() {
        if (FEnd < quint64(LocatorSize))
            return;
        const QByteArray locator = Read(FEnd - quint64(LocatorSize), LocatorSize);
        if (!locator.startsWith(QByteArray("PK\x06\x07", 4)))
            return; // the numbers are what they are
        const quint64 place = Number64(locator, 8);
        if (place > FEnd)
            Refuse(QStringLiteral("is a damaged zip"));
        const QByteArray end = Read(place, LongEndSize);
        if (!end.startsWith(QByteArray("PK\x06\x06", 4)))
            Refuse(QStringLiteral("is a damaged zip"));
        FCount = Number64(end, 32);
        FSize = Number64(end, 40);
        FPlace = Number64(end, 48);
    }

    TEntry Entry(const QByteArray& directory, qint64& at) {
        if (directory.size() - at < EntrySize || directory.mid(at, 4) != QByteArray("PK\x01\x02", 4))
            Refuse(QStringLiteral("is a damaged zip"));
        TEntry entry;
        entry.Flags = Number16(directory, at + 8);
        entry.Method = Number16(directory, at + 10);
        entry.PackedSize = Number32(directory, at + 20);
        entry.Size = Number32(directory, at + 24);
        entry.Place = Number32(directory, at + 42);
        const qint64 nameSize = Number16(directory, at + 28);
        const qint64 extraSize = Number16(directory, at + 30);
        const qint64 next = at + EntrySize + nameSize + extraSize + Number16(directory, at + 32);
        if (next > directory.size())
            Refuse(QStringLiteral("is a damaged zip"));
        entry.Name = QString::fromUtf8(directory.mid(at + EntrySize, nameSize));
        TakeLongNumbers(directory.mid(at + EntrySize + nameSize, extraSize), entry);
        at = next;
        if (entry.PackedSize > FPlace || entry.Place > FPlace - entry.PackedSize ||
            FPlace - entry.PackedSize - entry.Place < quint64(LocalSize))
            Refuse(QStringLiteral("is a damaged zip"));
        return entry;
    }

    // Those that do not fit into 32 bits, in this order.
    static void TakeLongNumbers(const QByteArray& extra, TEntry& entry) {
        qint64 at = 0;
        while (extra.size() - at >= 4 && Number16(extra, at) != 1)
            at += 4 + Number16(extra, at + 2);
        if (extra.size() - at < 4)
            return;
        const qint64 end = std::min<qint64>(extra.size(), at + 4 + Number16(extra, at + 2));
        at += 4;
        for (quint64* const number : {&entry.Size, &entry.PackedSize, &entry.Place})
            if (*number == In64Bits && end - at >= 8) {
                *number = Number64(extra, at);
                at += 8;
            }
    }

    QIODevice& FDevice;
    const QString& FFileName;
    quint64 FCount = 0;
    quint64 FSize = 0;
    quint64 FPlace = 0;
    quint64 FEnd = 0;
};

} // namespace

QString FindZarrInZip(QIODevice& device, const QString& fileName) {
    TZipDirectory directory(device, fileName);
    std::optional<QString> folder; // the outermost with a description
    bool isNewer = false;
    directory.ForEach([&](const TEntry& entry) {
        const qsizetype slash = entry.Name.lastIndexOf(u'/');
        const QString own = entry.Name.mid(slash + 1);
        isNewer = isNewer || own == QStringLiteral("zarr.json");
        if (entry.Flags & 1)
            directory.Refuse(QStringLiteral("is an encrypted zip; unpack it first"));
        if (entry.Method != 0 && entry.Method != 8)
            directory.Refuse(QStringLiteral("is a zip of a kind that is not read; unpack it first"));
        if (own != QStringLiteral(".zgroup") && own != QStringLiteral(".zarray") &&
            own != QStringLiteral(".zmetadata") && own != QStringLiteral(".zattrs"))
            return;
        if (entry.Size > MostDescription)
            directory.Refuse(QStringLiteral("claims a description of more than 16 MB"));
        const QString place = entry.Name.first(slash + 1);
        if (own != QStringLiteral(".zattrs") && (!folder || place.size() < folder->size()))
            folder = place;
    });
    if (!folder)
        directory.Refuse(isNewer ? QStringLiteral("is a zip of Zarr 3, of which only version 2 is read")
                                 : QStringLiteral("is a zip that holds no Zarr 2"));
    if (folder->startsWith(u'/') || (u'/' + *folder).contains(QStringLiteral("/../")))
        directory.Refuse(QStringLiteral("is a damaged zip"));
    return folder->chopped(folder->isEmpty() ? 0 : 1);
}

} // namespace lmx
