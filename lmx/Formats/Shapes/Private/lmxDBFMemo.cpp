#include <lmx/Formats/Shapes/Private/lmxDBFMemo.h>

#include <lmx/Runtime/lmxText.h>

#include <QtEndian>

#include <algorithm>

namespace lmx {

namespace {

constexpr std::int64_t OldBlockSize = 512;
constexpr std::int64_t LongestText = 1024 * 1024; // longer ones are cut: they are for the eyes
constexpr std::int64_t PrefixSize = 8;
constexpr char EndMark = 0x1A;

} // namespace

TDBFMemo::TDBFMemo(const QString& dbfFileName, bool isFox) : FIsFox(isFox) {
    const QString name = FindSisterFile(dbfFileName, isFox ? QStringLiteral("fpt") : QStringLiteral("dbt"));
    FFile.setFileName(name);
    if (name.isEmpty() || !FFile.open(QIODevice::ReadOnly))
        return;
    const QByteArray header = Bytes(0, 24);
    if (header.size() < 24)
        return;
    FBlockSize = isFox ? qFromBigEndian<std::uint16_t>(header.constData() + 6)
                       : qFromLittleEndian<std::uint16_t>(header.constData() + 20);
    if (FBlockSize == 0)
        FBlockSize = isFox ? 1 : OldBlockSize;
}

QByteArray TDBFMemo::Read(std::int64_t block) {
    if (FBlockSize == 0 || block <= 0 || block > FFile.size() / FBlockSize)
        return {};
    const std::int64_t position = block * FBlockSize;
    if (FIsFox)
        return ReadFox(position);
    const QByteArray prefix = Bytes(position, PrefixSize);
    if (prefix.startsWith(QByteArrayView("\xFF\xFF\x08\0", 4)) && prefix.size() == PrefixSize) {
        const std::int64_t length = qFromLittleEndian<std::uint32_t>(prefix.constData() + 4);
        return ReadCounted(position + PrefixSize, length - PrefixSize);
    }
    return ReadToMark(position);
}

// Pictures and objects, which are no text, are empty.
QByteArray TDBFMemo::ReadFox(std::int64_t position) {
    constexpr std::uint32_t Text = 1;
    const QByteArray prefix = Bytes(position, PrefixSize);
    if (prefix.size() < PrefixSize || qFromBigEndian<std::uint32_t>(prefix.constData()) != Text)
        return {};
    return ReadCounted(position + PrefixSize, qFromBigEndian<std::uint32_t>(prefix.constData() + 4));
}

QByteArray TDBFMemo::ReadCounted(std::int64_t position, std::int64_t length) {
    return length >= 0 && length <= FFile.size() - position ? Bytes(position, length) : QByteArray();
}

QByteArray TDBFMemo::ReadToMark(std::int64_t position) {
    QByteArray text;
    while (text.size() < LongestText) {
        const QByteArray piece = Bytes(position + text.size(), OldBlockSize);
        const qsizetype mark = piece.indexOf(EndMark);
        text += piece.first(mark >= 0 ? mark : piece.size());
        if (mark >= 0 || piece.size() < OldBlockSize)
            break;
    }
    return text;
}

// As many of the bytes as there are.
QByteArray TDBFMemo::Bytes(std::int64_t position, std::int64_t count) {
    return FFile.seek(position) ? FFile.read(std::min(count, LongestText)) : QByteArray();
}

} // namespace lmx
