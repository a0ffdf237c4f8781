#include <lmx/DataSources/Private/lmxGribGrid.h>

#include <lmx/DataSources/Private/lmxGaussianLatitudes.h>
#include <lmx/Runtime/lmxFormat.h>

#include <QtEndian>

#include <algorithm>
#include <cmath>

namespace lmx {

namespace {

constexpr int MostCells = 1'000'000; // of an axis

// Octets are counted from 1, as the manual of the codes does.
quint32 Octets(const QByteArray& section, int first, int count) {
    quint32 number = 0;
    for (int i = first - 1; i < first - 1 + count; ++i)
        number = number << 8 | quint8(i < section.size() ? section[i] : 0);
    return number;
}

// The first bit is the sign.
double Angle(const QByteArray& section, int first, int count, double unit) {
    const quint32 raw = Octets(section, first, count);
    const quint32 sign = 1U << (count * 8 - 1);
    return (raw & sign ? -1.0 : 1.0) * double(raw & (sign - 1)) * unit;
}

// What both editions say, each in its own octets.
struct TGridNumbers {
    bool IsGaussian = false;
    quint32 Columns = 0;
    quint32 Rows = 0;
    double Lat1 = 0;
    double Lon1 = 0;
    double Lat2 = 0;
    double Lon2 = 0;
    int N = 0;
    quint32 ScanningMode = 0;
    double Tolerance = 0; // of an angle
};

TGribGrid Refused(const QString& refusal) {
    TGribGrid grid;
    grid.Refusal = refusal;
    return grid;
}

std::vector<double> EvenValues(double first, double last, quint32 count) {
    std::vector<double> values(count);
    for (quint32 i = 0; i < count; ++i)
        values[i] = count == 1 ? first : first + (last - first) * i / (count - 1);
    return values;
}

QString MakeLatitudes(const TGridNumbers& numbers, std::vector<double>& latitudes) {
    const double north = std::max(numbers.Lat1, numbers.Lat2);
    if (!numbers.IsGaussian) {
        latitudes = EvenValues(north, std::min(numbers.Lat1, numbers.Lat2), numbers.Rows);
        return {};
    }
    if (numbers.N < 1 || numbers.N > 10'000)
        return QStringLiteral("lies on a Gaussian grid that does not tell its rows");
    const std::vector<double> all = GaussianLatitudes(numbers.N);
    const auto first = std::find_if(all.begin(), all.end(),
                                    [&](double latitude) { return std::abs(latitude - north) <= numbers.Tolerance; });
    if (first == all.end() || all.end() - first < std::ptrdiff_t(numbers.Rows))
        return QStringLiteral("lies on a Gaussian grid whose first row is none of its rows");
    latitudes.assign(first, first + std::ptrdiff_t(numbers.Rows));
    return {};
}

TGribGrid GridOf(const TGridNumbers& numbers) {
    if (numbers.Columns < 2 || numbers.Rows < 2 || numbers.Columns > MostCells || numbers.Rows > MostCells)
        return Refused(QStringLiteral("lies on a grid of no usable size"));
    if (numbers.ScanningMode & 0x80)
        return Refused(QStringLiteral("lies on a grid whose rows run from east to west"));
    TGribGrid grid;
    grid.Refusal = MakeLatitudes(numbers, grid.Latitudes);
    if (!grid.Refusal.isEmpty())
        return Refused(grid.Refusal);
    const double east = numbers.Lon2 > numbers.Lon1 ? numbers.Lon2 : numbers.Lon2 + 360;
    grid.Longitudes = EvenValues(numbers.Lon1, east, numbers.Columns);
    return grid;
}

QString ReducedGrid() {
    return QStringLiteral(
        "lies on a reduced grid, whose rows differ in length; make it even by cdo setgridtype,regular "
        "in out");
}

QString OtherGrid(quint32 number) {
    return Format(
        u"lies on a grid of GRIB's type %d, which is no map of longitudes and latitudes; bring it onto one by "
        u"cdo remapbil,r360x180 in out",
        {qint64(number)});
}

TGribGrid FirstEditionGrid(const QByteArray& section) {
    TGridNumbers numbers;
    const quint32 type = Octets(section, 6, 1);
    if (section.size() < 32)
        return Refused(QStringLiteral("has a damaged grid section"));
    if (type != 0 && type != 4)
        return Refused(OtherGrid(type));
    numbers.IsGaussian = type == 4;
    numbers.Columns = Octets(section, 7, 2);
    numbers.Rows = Octets(section, 9, 2);
    if (numbers.Columns == 0xFFFF || numbers.Rows == 0xFFFF)
        return Refused(ReducedGrid());
    numbers.Lat1 = Angle(section, 11, 3, 1e-3);
    numbers.Lon1 = Angle(section, 14, 3, 1e-3);
    numbers.Lat2 = Angle(section, 18, 3, 1e-3);
    numbers.Lon2 = Angle(section, 21, 3, 1e-3);
    numbers.N = int(Octets(section, 26, 2));
    numbers.ScanningMode = Octets(section, 28, 1);
    numbers.Tolerance = 2e-3;
    return GridOf(numbers);
}

TGribGrid SecondEditionGrid(const QByteArray& section) {
    TGridNumbers numbers;
    const quint32 type = Octets(section, 13, 2);
    if (section.size() < 72)
        return Refused(QStringLiteral("has a damaged grid section"));
    if (type != 0 && type != 40)
        return Refused(OtherGrid(type));
    numbers.IsGaussian = type == 40;
    numbers.Columns = Octets(section, 31, 4);
    numbers.Rows = Octets(section, 35, 4);
    if (numbers.Columns == 0xFFFFFFFF || numbers.Rows == 0xFFFFFFFF)
        return Refused(ReducedGrid());
    const quint32 basicAngle = Octets(section, 39, 4);
    if (basicAngle != 0 && basicAngle != 0xFFFFFFFF)
        return Refused(QStringLiteral("lies on a grid with a unit of angles of its own"));
    numbers.Lat1 = Angle(section, 47, 4, 1e-6);
    numbers.Lon1 = Angle(section, 51, 4, 1e-6);
    numbers.Lat2 = Angle(section, 56, 4, 1e-6);
    numbers.Lon2 = Angle(section, 60, 4, 1e-6);
    numbers.N = int(std::min(Octets(section, 68, 4), 1'000'000U));
    numbers.ScanningMode = Octets(section, 72, 1);
    numbers.Tolerance = 1e-3; // writers round as the first edition does
    return GridOf(numbers);
}

} // namespace

TGribGrid GribGridOf(const QByteArray& section, int edition) {
    return edition == 1 ? FirstEditionGrid(section) : SecondEditionGrid(section);
}

} // namespace lmx
