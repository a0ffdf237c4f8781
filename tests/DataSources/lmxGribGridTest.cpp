#include <lmx/DataSources/Private/lmxGribGrid.h>

#include <lmx/DataSources/Private/lmxGaussianLatitudes.h>
#include <lmx/DataSources/lmxClimateExceptions.h>

#include <tests/Support/Printers.h>

#include <QBuffer>
#include <QFile>
#include <QtEndian>

#include <gtest/gtest.h>

namespace lmx {
namespace {

using namespace tests;

QByteArray Sample(const QString& name) {
    QFile file(QStringLiteral(LMX_SOURCE_DIR "/tests/data/netcdf/") + name);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll();
}

TGribFields Scan(QByteArray content) {
    QBuffer buffer(&content);
    buffer.open(QIODevice::ReadOnly);
    return ScanGrib(buffer, "f.grib");
}

QString Refusal(const QByteArray& content) {
    return MessageOf<EClimateFile>([&] { Scan(content); });
}

// Octets are counted from 1; the first bit of an angle is its sign.
void Put(QByteArray& section, int octet, int count, qint64 number) {
    if (number < 0)
        number = -number | qint64(1) << (8 * count - 1);
    for (int i = 0; i < count; ++i)
        section[octet - 1 + i] = char(number >> (8 * (count - 1 - i)));
}

QByteArray FirstEdition(int type, int columns, int rows, int lat1, int lon1, int lat2, int lon2, int n) {
    QByteArray section(32, '\0');
    Put(section, 1, 3, 32);
    Put(section, 6, 1, type);
    Put(section, 7, 2, columns);
    Put(section, 9, 2, rows);
    Put(section, 11, 3, lat1);
    Put(section, 14, 3, lon1);
    Put(section, 18, 3, lat2);
    Put(section, 21, 3, lon2);
    Put(section, 26, 2, n);
    return section;
}

QByteArray SecondEdition(int type, qint64 columns, int rows, int lat1, int lon1, int lat2, int lon2, int n) {
    QByteArray section(72, '\0');
    Put(section, 1, 4, 72);
    section[4] = 3;
    Put(section, 13, 2, type);
    Put(section, 31, 4, columns);
    Put(section, 35, 4, rows);
    Put(section, 47, 4, lat1);
    Put(section, 51, 4, lon1);
    Put(section, 56, 4, lat2);
    Put(section, 60, 4, lon2);
    Put(section, 68, 4, n);
    return section;
}

TEST(GribGrid, EvenRowsComeFromTheNorth) {
    for (const TGribGrid& grid :
         {GribGridOf(FirstEdition(0, 4, 3, -10'000, 345'000, 10'000, 15'000, 0), 1),
          GribGridOf(SecondEdition(0, 4, 3, 10'000'000, -15'000'000, -10'000'000, 15'000'000, 0), 2)}) {
        EXPECT_EQ(grid.Refusal, "");
        EXPECT_EQ(grid.Latitudes, (std::vector<double>{10, 0, -10}));
        ASSERT_EQ(grid.Longitudes.size(), 4U);
        EXPECT_NEAR(grid.Longitudes[3] - grid.Longitudes[0], 30, 1e-9);
        EXPECT_NEAR(grid.Longitudes[1] - grid.Longitudes[0], 10, 1e-9);
    }
}

TEST(GribGrid, GaussianRowsAreThoseOfThePolynomial) {
    const std::vector<double> rows = GaussianLatitudes(47);
    const TGribGrid first = GribGridOf(FirstEdition(4, 192, 94, 88'542, 0, -88'542, 358'125, 47), 1);
    EXPECT_EQ(first.Refusal, "");
    EXPECT_EQ(first.Latitudes, rows);
    EXPECT_NEAR(first.Longitudes.back(), 358.125, 1e-9);
    EXPECT_EQ(GribGridOf(SecondEdition(40, 192, 94, -88'542'000, 0, 88'542'000, 358'125'000, 47), 2).Latitudes, rows);
    const TGribGrid part = GribGridOf(FirstEdition(4, 4, 10, int(rows[5] * 1000 + 0.5), 0, 0, 30'000, 47), 1);
    EXPECT_EQ(part.Latitudes, std::vector<double>(rows.begin() + 5, rows.begin() + 15));
}

TEST(GribGrid, WhatIsNoMapIsRefused) {
    EXPECT_EQ(GribGridOf(FirstEdition(4, 0xFFFF, 94, 88'542, 0, -88'542, 0, 47), 1).Refusal,
              "lies on a reduced grid, whose rows differ in length; make it even by cdo setgridtype,regular in out");
    EXPECT_EQ(GribGridOf(SecondEdition(40, 0xFFFFFFFF, 94, 88'542'000, 0, -88'542'000, 0, 47), 2).Refusal,
              "lies on a reduced grid, whose rows differ in length; make it even by cdo setgridtype,regular in out");
    EXPECT_EQ(GribGridOf(FirstEdition(10, 4, 3, 0, 0, 0, 0, 0), 1).Refusal,
              "lies on a grid of GRIB's type 10, which is no map of longitudes and latitudes; bring it onto one by cdo "
              "remapbil,r360x180 in out");
    EXPECT_EQ(GribGridOf(SecondEdition(1, 4, 3, 0, 0, 0, 0, 0), 2).Refusal,
              "lies on a grid of GRIB's type 1, which is no map of longitudes and latitudes; bring it onto one by cdo "
              "remapbil,r360x180 in out");
    EXPECT_EQ(GribGridOf(FirstEdition(4, 192, 94, 80'000, 0, -80'000, 358'125, 47), 1).Refusal,
              "lies on a Gaussian grid whose first row is none of its rows");
    EXPECT_EQ(GribGridOf(FirstEdition(4, 192, 94, 88'542, 0, -88'542, 358'125, 0), 1).Refusal,
              "lies on a Gaussian grid that does not tell its rows");
    EXPECT_EQ(GribGridOf(FirstEdition(0, 0, 3, 0, 0, 0, 0, 0), 1).Refusal, "lies on a grid of no usable size");
    EXPECT_EQ(GribGridOf(SecondEdition(0, 2'000'000'000, 3, 0, 0, 0, 0, 0), 2).Refusal,
              "lies on a grid of no usable size");
    QByteArray turned = FirstEdition(0, 4, 3, 10'000, 0, -10'000, 30'000, 0);
    turned[27] = char(0x80);
    EXPECT_EQ(GribGridOf(turned, 1).Refusal, "lies on a grid whose rows run from east to west");
    EXPECT_EQ(GribGridOf(turned.left(20), 1).Refusal, "has a damaged grid section");
    EXPECT_EQ(GribGridOf(turned, 2).Refusal, "has a damaged grid section");
}

TEST(GribGrid, BothSamplesTellTheSameFields) {
    for (const char* const name : {"tiny_grib1.grib", "tiny_grib2.grib2"}) {
        const TGribFields fields = Scan(Sample(name));
        EXPECT_EQ(fields.GridOfField, std::vector<std::size_t>(6, 0)) << name;
        ASSERT_EQ(fields.Grids.size(), 1U) << name;
        EXPECT_EQ(fields.Grids[0].Latitudes.front(), 85) << name;
        EXPECT_EQ(fields.Grids[0].Latitudes.back(), -85) << name;
        EXPECT_EQ(fields.Grids[0].Longitudes.front(), 0) << name;
        EXPECT_EQ(fields.Grids[0].Longitudes.back(), 350) << name;
    }
}

TEST(GribGrid, HeadingsBetweenMessagesDoNotCount) {
    const QByteArray whole = Sample("tiny_grib2.grib2");
    EXPECT_EQ(Scan("a bulletin\r\n" + whole + QByteArray(70'000, ' ') + whole).GridOfField.size(), 12U);
}

TEST(GribGrid, AFileThatIsCutAnywhereTellsWhatIsWhole) {
    for (const char* const name : {"tiny_grib1.grib", "tiny_grib2.grib2"}) {
        const QByteArray whole = Sample(name);
        const qsizetype message = whole.size() / 6;
        for (qsizetype length = 4; length < whole.size(); length += 7) {
            const qsizetype rest = length % message;
            if (rest < 4) // the next message has not begun
                continue;
            EXPECT_EQ(Refusal(whole.left(length)).toStdString(),
                      "f.grib: is cut short: " + std::to_string(length / message) +
                          " messages are whole, and the next one is not. Copy or fetch it again")
                << name << ' ' << length;
        }
    }
}

TEST(GribGrid, LengthsThatLieAreRefused) {
    QByteArray second = Sample("tiny_grib2.grib2");
    qToBigEndian(quint64(1) << 62, second.data() + 8);
    EXPECT_EQ(Refusal(second),
              "f.grib: is cut short: 0 messages are whole, and the next one is not. Copy or fetch it again");
    second = Sample("tiny_grib2.grib2");
    qToBigEndian(quint64(3), second.data() + 8);
    EXPECT_EQ(Refusal(second), "f.grib: message 1 is damaged");
    second = Sample("tiny_grib2.grib2");
    qToBigEndian(quint32(2), second.data() + 16);
    EXPECT_EQ(Refusal(second), "f.grib: message 1 is damaged") << "a section shorter than its own head";
    second = Sample("tiny_grib2.grib2");
    second[7] = 3;
    EXPECT_EQ(Refusal(second), "f.grib: holds GRIB of edition 3; 1 and 2 are known");
    EXPECT_EQ(Refusal("GRI"), "f.grib: holds no whole GRIB message");
}

} // namespace
} // namespace lmx
