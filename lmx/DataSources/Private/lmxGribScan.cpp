#include <lmx/DataSources/Private/lmxGribGrid.h>

#include <lmx/DataSources/lmxClimateExceptions.h>
#include <lmx/Runtime/lmxFormat.h>

#include <QIODevice>
#include <QtEndian>

#include <algorithm>

namespace lmx {

namespace {

constexpr std::size_t MostFields = 100'000;
constexpr qint64 LongestGridSection = 1 << 20;

class TGribScanner {
public:
    TGribScanner(QIODevice& device, const QString& fileName) : FDevice(device), FFileName(fileName) {}

    TGribFields Scan() {
        for (qint64 at = NextMessage(0); at >= 0; at = NextMessage(at))
            at += ReadMessage(at);
        if (FFields.GridOfField.empty())
            throw EClimateFile(FFileName, QStringLiteral("holds no whole GRIB message"));
        return std::move(FFields);
    }

private:
    [[noreturn]] void RefuseCut() const {
        throw EClimateFile(
            FFileName, Format(u"is cut short: %d messages are whole, and the next one is not. Copy or fetch it again",
                              {FMessages}));
    }
    [[noreturn]] void RefuseDamaged() const {
        throw EClimateFile(FFileName, Format(u"message %d is damaged", {FMessages + 1}));
    }

    QByteArray BytesAt(qint64 offset, qint64 count) {
        if (!FDevice.seek(offset))
            RefuseCut();
        QByteArray bytes = FDevice.read(count);
        if (bytes.size() != count)
            RefuseCut();
        return bytes;
    }

    // Messages may be padded, and have headings of the network that brought them.
    qint64 NextMessage(qint64 from) {
        constexpr qint64 step = 1 << 16;
        for (qint64 at = from; at < FDevice.size(); at += step) {
            if (!FDevice.seek(at))
                return -1;
            const qsizetype found = FDevice.read(step + 3).indexOf("GRIB");
            if (found >= 0)
                return at + found;
        }
        return -1;
    }

    // Its length.
    qint64 ReadMessage(qint64 at) {
        const QByteArray head = BytesAt(at, 8);
        const int edition = quint8(head[7]);
        quint64 length = 0;
        if (edition == 1)
            length = qFromBigEndian<quint32>(head.constData() + 4) >> 8;
        else if (edition == 2)
            length = qFromBigEndian<quint64>(BytesAt(at + 8, 8).constData());
        else
            throw EClimateFile(FFileName, Format(u"holds GRIB of edition %d; 1 and 2 are known", {edition}));
        if (edition == 1 && length & 0x800000) // a way to say more than 8 MB that its standard does not know
            throw EClimateFile(FFileName, QStringLiteral("holds a message of more than 8 MB in edition 1; bring it to "
                                                         "edition 2 by grib_set -s edition=2 in out"));
        if (length < 16)
            RefuseDamaged();
        if (length > quint64(FDevice.size() - at) || BytesAt(at + qint64(length) - 4, 4) != "7777")
            RefuseCut();
        const qint64 end = at + qint64(length) - 4;
        if (edition == 1)
            ReadFirstEdition(at + 8);
        else
            ReadSecondEdition(at + 16, end);
        ++FMessages;
        return qint64(length);
    }

    void AddField(const TGribGrid& grid) {
        if (FFields.GridOfField.size() >= MostFields)
            throw EClimateFile(FFileName, Format(u"holds more than %d fields", {qint64(MostFields)}));
        std::vector<TGribGrid>& grids = FFields.Grids;
        const auto known = std::find(grids.begin(), grids.end(), grid);
        FFields.GridOfField.push_back(std::size_t(known - grids.begin()));
        if (known == grids.end())
            grids.push_back(grid);
    }

    void ReadFirstEdition(qint64 at) {
        const QByteArray product = BytesAt(at, 8);
        const auto productLength = qint64(qFromBigEndian<quint32>(product.constData()) >> 8);
        if (!(quint8(product[7]) & 0x80)) {
            TGribGrid none;
            none.Refusal = QStringLiteral("lies on a grid that is known by a number only");
            AddField(none);
            return;
        }
        const qint64 grid = at + productLength;
        const auto gridLength = qint64(qFromBigEndian<quint32>(BytesAt(grid, 4).constData()) >> 8);
        AddField(GribGridOf(BytesAt(grid, std::min(gridLength, LongestGridSection)), 1));
    }

    // Sections may repeat within a message; each data section is a field on the grid section before it.
    void ReadSecondEdition(qint64 at, qint64 end) {
        TGribGrid grid;
        grid.Refusal = QStringLiteral("tells nothing of its grid");
        while (at < end) {
            const QByteArray head = BytesAt(at, 5);
            const auto length = qint64(qFromBigEndian<quint32>(head.constData()));
            if (length < 5 || length > end - at)
                RefuseDamaged();
            if (head[4] == 3)
                grid = GribGridOf(BytesAt(at, std::min(length, LongestGridSection)), 2);
            else if (head[4] == 7)
                AddField(grid);
            at += length;
        }
    }

    QIODevice& FDevice;
    const QString& FFileName;
    TGribFields FFields;
    qint64 FMessages = 0;
};

} // namespace

TGribFields ScanGrib(QIODevice& device, const QString& fileName) {
    return TGribScanner(device, fileName).Scan();
}

} // namespace lmx
