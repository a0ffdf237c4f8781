#include <lmx/DataSources/lmxClimateDataset.h>

#include <tests/DataSources/ClimateSamples.h>
#include <tests/Support/MemoryLimit.h>
#include <tests/Support/Printers.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtEndian>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

// Files that claim what they do not hold.

namespace lmx {
namespace {

using namespace tests;

class ClimateHostile : public testing::Test {
protected:
    void Write(const QString& name, const QByteArray& content) const {
        const QString path = Folder.filePath(name);
        QDir().mkpath(path.section(u'/', 0, -2));
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }

    // A Zarr without cells.
    void WriteZarr(const QByteArray& shape, const QByteArray& chunks, const QByteArray& dimensions,
                   const QByteArray& name = "tas", const QByteArray& attributes = "") const {
        Write("store/.zgroup", "{\"zarr_format\": 2}");
        Write("store/" + name + "/.zarray", "{\"zarr_format\": 2, \"shape\": [" + shape + "], \"chunks\": [" + chunks +
                                                "], \"dtype\": \"<f4\", \"compressor\": null, \"fill_value\": 0, "
                                                "\"order\": \"C\", \"filters\": null}");
        Write("store/" + name + "/.zattrs", "{\"_ARRAY_DIMENSIONS\": [" + dimensions + "]" + attributes + "}");
    }
    QString Refusal(const QString& name = "tas") const {
        const TClimateDataset dataset(Folder.filePath("store"));
        return dataset.GetVariables().at(dataset.FindVariable(name).GetValue()).Refusal;
    }

    QTemporaryDir Folder;
};

TEST_F(ClimateHostile, BlocksOfAZarrThatAreTooLargeAreRefused) {
    WriteZarr("20000, 20000", "20000, 20000", "\"y\", \"x\"", "tas");
    EXPECT_NE(Refusal(), "");
    WriteZarr("20000", "20000", "\"lat\"", "lat", ", \"units\": \"degrees_north\"");
    WriteZarr("20000", "20000", "\"lon\"", "lon", ", \"units\": \"degrees_east\"");
    WriteZarr("20000, 20000", "20000, 20000", "\"lat\", \"lon\"");
    EXPECT_EQ(Refusal(),
              "Variable \"tas\" is stored in blocks of more than 256 MB, which are not unpacked. Store it in "
              "smaller ones first, for example: nccopy -c time/1 in out");
}

// Nothing of that size is asked for: only what the axes say is read.
TEST_F(ClimateHostile, SizesThatLieTakeNoMemory) {
    WriteZarr("2000000000", "1000", "\"lat\"", "lat", ", \"units\": \"degrees_north\"");
    WriteZarr("2000000000", "1000", "\"lon\"", "lon", ", \"units\": \"degrees_east\"");
    WriteZarr("2000000000, 2000000000", "1000, 1000", "\"lat\", \"lon\"");
    const TMemoryLimit limit(CanLimitMemory ? std::size_t(512) << 20 : std::size_t(1) << 46);
    EXPECT_EQ(Refusal(), "Variable \"tas\" cannot be placed on a map. An axis has more than 1,000,000 values");
}

TEST_F(ClimateHostile, AxesOfOneValueOnlyAreNoMap) {
    WriteZarr("10", "10", "\"lat\"", "lat", ", \"units\": \"degrees_north\"");
    WriteZarr("10", "10", "\"lon\"", "lon", ", \"units\": \"degrees_east\"");
    WriteZarr("10, 10", "10, 10", "\"lat\", \"lon\"");
    EXPECT_THAT(Refusal().toStdString(), testing::StartsWith("Variable \"tas\" cannot be placed on a map. "))
        << "cells that were never written are all 0";
}

TEST_F(ClimateHostile, AFolderWithoutArraysIsEmpty) {
    Write("store/.zgroup", "{\"zarr_format\": 2}");
    EXPECT_TRUE(TClimateDataset(Folder.filePath("store")).GetVariables().empty());
    Write("store/.zgroup", "no text of this kind");
    Write("store/tas/.zarray", "{");
    try {
        EXPECT_TRUE(TClimateDataset(Folder.filePath("store")).GetVariables().empty());
    } catch (const EClimateFile& failure) {
        EXPECT_TRUE(failure.Problem().startsWith("is damaged or not understood")) << failure.what();
    }
}

// The size of a picture is that of its first directory: width and height lie at tags 256 and 257.
TEST_F(ClimateHostile, ATiffThatClaimsTwoBillionSquaredIsRefused) {
    QFile source(ClimateSample("scaled_int16.tif"));
    ASSERT_TRUE(source.open(QIODevice::ReadOnly));
    QByteArray bytes = source.readAll();
    ASSERT_TRUE(bytes.startsWith("II"));
    const auto directory = qFromLittleEndian<quint32>(bytes.constData() + 4);
    const auto count = qFromLittleEndian<quint16>(bytes.constData() + directory);
    for (int i = 0; i < count; ++i) {
        char* const entry = bytes.data() + directory + 2 + 12 * i;
        const auto tag = qFromLittleEndian<quint16>(entry);
        if (tag == 256 || tag == 257) {
            qToLittleEndian<quint16>(4, entry + 2);
            qToLittleEndian<quint32>(2'000'000'000, entry + 8);
        }
    }
    Write("large.tif", bytes);
    const TMemoryLimit limit(CanLimitMemory ? std::size_t(512) << 20 : std::size_t(1) << 46);
    EXPECT_TRUE(MessageOf<EClimateFile>([&] {
                    TClimateDataset(Folder.filePath("large.tif"));
                }).startsWith(Folder.filePath("large.tif") + ": "));
}

// What another driver would read as a list of other files is no climate file, whatever it is called.
// 3200 fields, no two of the same time or level: a table of them would have ten million places.
TEST_F(ClimateHostile, AGribOfManyTimesAndLevelsTakesNoTableOfThem) {
    QFile sample(ClimateSample("tiny_grib1.grib"));
    ASSERT_TRUE(sample.open(QIODevice::ReadOnly));
    QByteArray message = sample.readAll();
    message.truncate(message.size() / 6);
    QByteArray content;
    for (int i = 0; i < 3200; ++i) {
        char* const product = message.data() + 8 - 1; // octets are counted from 1
        qToBigEndian(quint16(i + 1), product + 11);   // level
        product[14] = char(1 + i / 672);              // month, day, hour
        product[15] = char(1 + i % 28);
        product[16] = char(i / 28 % 24);
        content += message;
    }
    Write("many.grib", content);
    const TClimateDataset dataset(Folder.filePath("many.grib"));
    ASSERT_EQ(dataset.GetVariables().size(), 1U);
    const TClimateVariableInfo& info = dataset.GetVariables()[0];
    EXPECT_EQ(info.TimeCount, 3200U);
    EXPECT_EQ(info.Levels.size(), 3200U);
    EXPECT_EQ(info.Refusal, "Variable \"" + info.Name +
                                "\" has so many times and levels that most of its fields are missing. Split it first, "
                                "for example: grib_copy in \"out_[dataDate].grib\"");
}

TEST_F(ClimateHostile, ATextThatNamesOtherFilesIsNoClimateFile) {
    Write("x.nc", "<VRTDataset rasterXSize=\"1\" rasterYSize=\"1\"/>");
    EXPECT_EQ(MessageOf<EClimateFile>([&] { TClimateDataset(Folder.filePath("x.nc")); }),
              Folder.filePath("x.nc") + ": is no file that is known here: NetCDF, HDF5, GRIB, GeoTIFF and Zarr 2 are");
}

} // namespace
} // namespace lmx
