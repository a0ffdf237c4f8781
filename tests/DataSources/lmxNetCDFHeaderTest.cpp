#include <lmx/DataSources/Private/lmxNetCDFHeader.h>

#include <lmx/DataSources/lmxClimateExceptions.h>

#include <tests/Support/Printers.h>

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QtEndian>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace lmx {
namespace {

using namespace tests;

QString Refusal(QByteArray content) {
    QBuffer buffer(&content);
    buffer.open(QIODevice::ReadOnly);
    return MessageOf<EClimateFile>([&] { CheckNetCDFLength(buffer, "f.nc"); });
}

QByteArray Sample(const QString& name) {
    QFile file(QStringLiteral(LMX_SOURCE_DIR "/tests/data/netcdf/") + name);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll();
}

// A header, number by number.
QByteArray Numbers(std::initializer_list<quint32> numbers) {
    QByteArray bytes;
    for (const quint32 number : numbers) {
        const quint32 big = qToBigEndian(number);
        bytes += QByteArray(reinterpret_cast<const char*>(&big), 4);
    }
    return bytes;
}

// One variable "v" of bytes on dimensions of these lengths.
QByteArray OneVariable(quint32 records, std::initializer_list<quint32> lengths, quint32 begin) {
    QByteArray bytes = "CDF\x01" + Numbers({records, 10, quint32(lengths.size())});
    for (const quint32 length : lengths)
        bytes += Numbers({1}) + QByteArray("d\0\0\0", 4) + Numbers({length});
    bytes += Numbers({0, 0, 11, 1, 1}) + QByteArray("v\0\0\0", 4) + Numbers({quint32(lengths.size())});
    for (quint32 i = 0; i < lengths.size(); ++i)
        bytes += Numbers({i});
    return bytes + Numbers({0, 0, 1, 0, begin});
}

TEST(NetCDFHeader, TellsTheLengthOfEverySample) {
    const QDir folder(QStringLiteral(LMX_SOURCE_DIR "/tests/data/netcdf"));
    int count = 0;
    for (const QString& name : folder.entryList({"*.nc"})) {
        QFile file(folder.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        if (file.read(3) != "CDF")
            continue;
        ++count;
        const auto told = NetCDFLengthOf(file, name);
        EXPECT_LE(told, quint64(file.size())) << name.toStdString();
        EXPECT_GT(told + 4, quint64(file.size())) << name.toStdString() << ": only padding may follow";
    }
    EXPECT_GT(count, 20);
}

TEST(NetCDFHeader, AFileThatIsCutAnywhereIsRefused) {
    for (const char* const name : {"form_classic.nc", "form_data64.nc", "unsigned_attribute.nc"}) {
        const QByteArray whole = Sample(name);
        QByteArray copy = whole;
        QBuffer buffer(&copy);
        buffer.open(QIODevice::ReadOnly);
        const auto told = qsizetype(NetCDFLengthOf(buffer, "f.nc"));
        for (qsizetype length = 0; length < told; ++length)
            EXPECT_THAT(
                Refusal(whole.left(length)).toStdString(),
                testing::AnyOf("f.nc: has no NetCDF header",
                               "f.nc: is cut short within its header. Copy or fetch it again",
                               testing::MatchesRegex("f.nc: is cut short: [0-9]+ of [0-9]+ bytes are there. Copy "
                                                     "or fetch it again")))
                << name << ' ' << length;
    }
}

TEST(NetCDFHeader, RecordsStandPaddedBesideEachOtherAndBareAlone) {
    QByteArray one = OneVariable(5, {0, 3}, 100);
    QBuffer buffer(&one);
    buffer.open(QIODevice::ReadOnly);
    EXPECT_EQ(NetCDFLengthOf(buffer, "f.nc"), 100U + 5 * 3);
    QByteArray none = OneVariable(0, {0, 3}, 100);
    QBuffer empty(&none);
    empty.open(QIODevice::ReadOnly);
    EXPECT_EQ(NetCDFLengthOf(empty, "f.nc"), quint64(none.size()));
}

TEST(NetCDFHeader, ClaimsBeyondTheFileAreRefused) {
    EXPECT_EQ(Refusal(OneVariable(0x80000000U, {0, 3}, 100)),
              "f.nc: is cut short: 96 of 6442451044 bytes are there. Copy or fetch it again");
    EXPECT_EQ(Refusal(OneVariable(0, {0xFFFFFFFFU, 0xFFFFFFFFU, 0xFFFFFFFFU}, 100)),
              "f.nc: tells of more cells than a file can hold");
    EXPECT_EQ(Refusal("CDF\x01" + Numbers({0, 10, 0xFFFFFFFFU})),
              "f.nc: is cut short within its header. Copy or fetch it again");
    EXPECT_EQ(Refusal("CDF\x01" + Numbers({0, 10, 1, 0xFFFFFFFFU})),
              "f.nc: is cut short within its header. Copy or fetch it again");
}

TEST(NetCDFHeader, WhatContradictsItselfIsRefused) {
    const QString damaged = "f.nc: has a damaged header";
    EXPECT_EQ(Refusal("CDF\x01" + Numbers({0, 7, 1, 0, 0, 0})), damaged) << "a list of another kind";
    EXPECT_EQ(Refusal(OneVariable(1, {3, 0}, 100)), damaged) << "records within a record";
    QByteArray type = OneVariable(0, {3}, 100);
    type[type.size() - 9] = 9;
    EXPECT_EQ(Refusal(type), damaged) << "a type that this form does not have";
    EXPECT_EQ(Refusal("CD"), "f.nc: has no NetCDF header");
    EXPECT_EQ(Refusal("CDF\x01" + Numbers({0, 0, 0, 0, 0, 11, 20'000}) + QByteArray(200'000, '\0')),
              "f.nc: holds 20000 variables, and no more than 10000 are read");
}

} // namespace
} // namespace lmx
