#include <lmx/DataSources/Private/lmxZarrZip.h>

#include <tests/DataSources/ClimateSamples.h>

#include <QBuffer>
#include <QFile>
#include <QTemporaryDir>
#include <QtEndian>

#include <bit>
#include <vector>

// Zips of Zarr stores as programs pack them, and as nobody should.

namespace lmx {
namespace {

using namespace tests;

template<class Number>
QByteArray Little(Number number) {
    QByteArray bytes(sizeof(Number), '\0');
    qToLittleEndian(number, bytes.data());
    return bytes;
}

/// A zip of stored files, as plain as the format allows.
struct TZip {
    struct TFile {
        QByteArray Name;
        QByteArray Content = {};
        quint16 Flags = 0;
        quint16 Method = 0;
        quint32 ClaimedSize = 0; ///< unpacked; that of the content if 0
    };

    QByteArray ToBytes() const {
        QByteArray bytes;
        QByteArray directory;
        for (const TFile& file : Files) {
            const auto size = quint32(file.Content.size());
            const QByteArray common = Little(file.Flags) + Little(file.Method) + Little(quint32(0)) +
                                      Little(quint32(0)) + Little(size) +
                                      Little(file.ClaimedSize ? file.ClaimedSize : size) +
                                      Little(quint16(file.Name.size())) + Little(quint16(0));
            directory += QByteArray("PK\x01\x02", 4) + Little(quint16(20)) + Little(quint16(20)) + common +
                         Little(quint16(0)) + Little(quint16(0)) + Little(quint16(0)) + Little(quint32(0)) +
                         Little(quint32(bytes.size())) + file.Name;
            bytes += QByteArray("PK\x03\x04", 4) + Little(quint16(20)) + common + file.Name + file.Content;
        }
        const auto place = quint32(bytes.size());
        return bytes + directory + QByteArray("PK\x05\x06", 4) + Little(quint32(0)) + Little(Count()) +
               Little(Count()) + Little(quint32(directory.size())) + Little(place) + Little(quint16(Comment.size())) +
               Comment;
    }
    quint16 Count() const { return quint16(Files.size()); }

    std::vector<TFile> Files;
    QByteArray Comment;
};

QString FolderIn(QByteArray bytes) {
    QBuffer device(&bytes);
    device.open(QIODevice::ReadOnly);
    return FindZarrInZip(device, QStringLiteral("a.zip"));
}

QString FolderIn(const std::vector<TZip::TFile>& files) {
    return FolderIn(TZip{files, {}}.ToBytes());
}

template<class Zip>
QString RefusalOf(const Zip& zip) {
    return MessageOf<EClimateFile>([&] { FolderIn(zip); });
}

const QString Damaged = QStringLiteral("a.zip: is a damaged zip");
const QString Cut = QStringLiteral("a.zip: is a zip that was cut short");

TEST(ZarrZip, TheStoreIsTheOutermostFolderWithADescription) {
    EXPECT_EQ(FolderIn(std::vector<TZip::TFile>{{".zgroup"}, {"tas/.zarray"}}), "");
    EXPECT_EQ(FolderIn(std::vector<TZip::TFile>{{"tas/.zarray"}, {".zgroup"}}), "");
    EXPECT_EQ(FolderIn(std::vector<TZip::TFile>{{"s.zarr/tas/.zarray"}, {"s.zarr/"}, {"s.zarr/.zmetadata"}}), "s.zarr");
    EXPECT_EQ(FolderIn(std::vector<TZip::TFile>{{".zattrs"}, {"a/b/.zarray"}, {"read me"}}), "a/b");
    EXPECT_EQ(FolderIn(TZip{{{".zgroup"}}, "a comment that ends like PK"}.ToBytes()), "");
}

TEST(ZarrZip, WhatIsNoneIsRefusedByName) {
    EXPECT_EQ(RefusalOf(std::vector<TZip::TFile>{{"a.txt"}, {".zattrs"}}), "a.zip: is a zip that holds no Zarr 2");
    EXPECT_EQ(RefusalOf(std::vector<TZip::TFile>{}), "a.zip: is a zip that holds no Zarr 2");
    EXPECT_EQ(RefusalOf(std::vector<TZip::TFile>{{"zarr.json"}}),
              "a.zip: is a zip of Zarr 3, of which only version 2 is read");
    EXPECT_EQ(RefusalOf(std::vector<TZip::TFile>{{".zgroup", "x", 1}}), "a.zip: is an encrypted zip; unpack it first");
    EXPECT_EQ(RefusalOf(std::vector<TZip::TFile>{{".zgroup", "x", 0, 14}}),
              "a.zip: is a zip of a kind that is not read; unpack it first");
    EXPECT_EQ(RefusalOf(std::vector<TZip::TFile>{{".zgroup", "x", 0, 8, 17u << 20}}),
              "a.zip: claims a description of more than 16 MB");
    for (const char* const name : {"../.zgroup", "/etc/.zgroup", "a/../../.zarray"})
        EXPECT_EQ(RefusalOf(std::vector<TZip::TFile>{{name}}), Damaged) << name;
}

TEST(ZarrZip, ACutOneIsRefusedWhereverItIsCut) {
    const QByteArray whole = TZip{{{".zgroup", "{}"}, {"tas/.zarray", "{}"}}, {}}.ToBytes();
    for (qsizetype size = 0; size < whole.size(); ++size)
        EXPECT_EQ(RefusalOf(whole.first(size)), Cut) << size;
}

// Each byte of the directory and its end in turn, all its bits turned: what is refused is refused by name, and what is
// not has its store where it was.
TEST(ZarrZip, ADamagedDirectoryIsRefusedOrUnderstood) {
    const QByteArray whole = TZip{{{"s/.zgroup", "{}"}, {"s/tas/.zarray", "{}"}}, {}}.ToBytes();
    const qsizetype directory = whole.indexOf(QByteArray("PK\x01\x02", 4));
    int refused = 0;
    for (qsizetype at = directory; at < whole.size(); ++at) {
        QByteArray damaged = whole;
        damaged[at] = char(~damaged[at]);
        try {
            EXPECT_TRUE(QStringLiteral("s/tas").startsWith(FolderIn(damaged)) || FolderIn(damaged).size() < 6) << at;
        } catch (const EClimateFile& failure) {
            ++refused;
            EXPECT_TRUE(failure.Message().startsWith("a.zip: ")) << at;
        }
    }
    EXPECT_GT(refused, 40);
}

TEST(ZarrZip, NumbersBeyondTheFileAreRefused) {
    const QByteArray whole = TZip{{{".zgroup", "{}"}}, {}}.ToBytes();
    const qsizetype end = whole.size() - 22;
    const auto with = [&](qsizetype at, quint32 number) {
        QByteArray bytes = whole;
        qToLittleEndian(number, bytes.data() + at);
        return RefusalOf(bytes);
    };
    EXPECT_EQ(with(end + 12, 0x7FFFFFFF), Damaged); // size of the directory
    EXPECT_EQ(with(end + 16, 0x7FFFFFFF), Damaged); // its place
    EXPECT_EQ(with(end + 8, 0x00090009), Damaged);  // files
    const qsizetype directory = whole.indexOf(QByteArray("PK\x01\x02", 4));
    EXPECT_EQ(with(directory + 20, 5000), Damaged); // packed size of the file
    EXPECT_EQ(with(directory + 42, 5000), Damaged); // its place
}

TEST(ZarrZip, OpensUnderAnySuffixAndWithItsFolder) {
    const QTemporaryDir folder;
    for (const char* const name : {"a.zarr", "b{1}.zip", "c}.zip", "no suffix"}) {
        ASSERT_TRUE(QFile::copy(ClimateSample("store.zarr.zip"), folder.filePath(name)));
        const TClimateDataset dataset(folder.filePath(name));
        EXPECT_TRUE(dataset.FindVariable("tas").GetHasValue()) << name;
        ExpectField(ReadSample(dataset, "tas", 1), Lats10(), Lons10(), 1, 0.006);
    }
}

TEST(ZarrZip, OneWithAFolderOpens) {
    const QTemporaryDir folder;
    QFile file(folder.filePath("wrapped.zip"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    const auto axis = [](const char* name, const char* units, const QByteArray& values) {
        const QByteArray path = QByteArray("store.zarr/") + name;
        return std::vector<TZip::TFile>{
            {path + "/.zarray", "{\"zarr_format\": 2, \"shape\": [2], \"chunks\": [2], \"dtype\": \"<f4\", "
                                "\"compressor\": null, \"fill_value\": null, \"order\": \"C\", \"filters\": null}"},
            {path + "/.zattrs",
             QByteArray("{\"_ARRAY_DIMENSIONS\": [\"") + name + "\"], \"units\": \"" + units + "\"}"},
            {path + "/0", values}};
    };
    const auto floats = [](std::initializer_list<float> values) {
        QByteArray bytes;
        for (const float value : values)
            bytes += Little(std::bit_cast<quint32>(value));
        return bytes;
    };
    TZip zip{{{"store.zarr/.zgroup", "{\"zarr_format\": 2}"}}, {}};
    for (const auto& files :
         {axis("lat", "degrees_north", floats({-45, 45})), axis("lon", "degrees_east", floats({-90, 90}))})
        zip.Files.insert(zip.Files.end(), files.begin(), files.end());
    zip.Files.push_back({"store.zarr/tas/.zarray",
                         "{\"zarr_format\": 2, \"shape\": [2, 2], \"chunks\": [2, 2], \"dtype\": \"<f4\", "
                         "\"compressor\": null, \"fill_value\": null, \"order\": \"C\", \"filters\": null}"});
    zip.Files.push_back({"store.zarr/tas/.zattrs", "{\"_ARRAY_DIMENSIONS\": [\"lat\", \"lon\"]}"});
    zip.Files.push_back({"store.zarr/tas/0.0", floats({1, 2, 3, 4})});
    file.write(zip.ToBytes());
    file.close();
    const TClimateDataset dataset(file.fileName());
    const TClimatePicture picture = ReadSample(dataset, "tas");
    EXPECT_EQ(ShownAt(picture, -90, -45), 1);
    EXPECT_EQ(ShownAt(picture, 90, 45), 4);
}

} // namespace
} // namespace lmx
