#include <lmx/Formats/Idrisi/lmxVector.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Formats/ImageFiles.h>
#include <tests/Support/MemoryLimit.h>
#include <tests/Support/Printers.h>
#include <tests/Support/VectorBytes.h>

#include <QBuffer>
#include <QFile>

#include <gtest/gtest.h>

namespace lmx::tests {

namespace {

using enum TVectorObjectType;

/// A device that takes nothing.
class TFullDevice : public QIODevice {
public:
    TFullDevice() { open(QIODevice::WriteOnly); }

protected:
    qint64 readData(char*, qint64) override { return -1; }
    qint64 writeData(const char*, qint64) override { return -1; }
};

} // namespace

TEST(Vector, ANewOneIsEmpty) {
    const TVector vector;
    EXPECT_EQ(vector.GetType(), vtNone);
    EXPECT_EQ(vector.GetCount(), 0);
    EXPECT_EQ(vector.GetFileName(), "");
}

TEST(Vector, ReadsLinesWithTheirDocumentation) {
    for (const char* name : {"lines.vct", "lines.vdc"}) {
        const TVector vector(DataFile(name));
        EXPECT_EQ(vector.GetFileName(), DataFile(name));
        EXPECT_EQ(vector.GetType(), vtLine);
        ASSERT_EQ(vector.GetCount(), 2);
        EXPECT_EQ(vector.GetFeature(0).GetId(), 10);
        ASSERT_EQ(vector.GetFeature(0).GetCount(), 2);
        EXPECT_EQ(vector.GetFeature(0).GetPoint(0), (TGeoPoint{400000, 5000000}));
        EXPECT_EQ(vector.GetFeature(0).GetPoint(1), (TGeoPoint{600000, 4500000}));
        EXPECT_EQ(vector.GetFeature(1).GetId(), 20);
        EXPECT_EQ(vector.GetFeature(1).GetPoint(1), (TGeoPoint{550000, 4500000}));
        EXPECT_EQ(vector.GetHeader().GetObjectType(), vtLine);
        EXPECT_EQ(vector.GetHeader().GetRefSystem(), "utm-31n");
        EXPECT_EQ(vector.GetHeader().GetMaxX(), 600000);
    }
}

TEST(Vector, RefusesOversizedDocumentationUnread) {
    const TImageFolder folder;
    ASSERT_TRUE(QFile::copy(DataFile("lines.vct"), folder.Path("lines.vct")));
    folder.Write("lines.vdc", {});
    ASSERT_TRUE(QFile::resize(folder.Path("lines.vdc"), qint64{1} << 36));
    TVector vector(DataFile("points.vct"));
    EXPECT_EQ(MessageOf<EFileFormatException>([&] { vector.LoadFromFile(folder.Path("lines.vct")); }),
              folder.Path("lines.vdc") + QStringLiteral(": holds more than 8388608 bytes"));
    EXPECT_EQ(vector.GetType(), vtPoint);
}

TEST(Vector, ReadsPoints) {
    const TVector vector(DataFile("points.vct"));
    EXPECT_EQ(vector.GetType(), vtPoint);
    ASSERT_EQ(vector.GetCount(), 2);
    EXPECT_EQ(vector.GetFeature(1).GetPoint(0), (TGeoPoint{600000, 4000000}));
}

TEST(Vector, IndexesAreChecked) {
    const TVector vector(DataFile("lines.vct"));
    for (const int index : {-1, 2}) {
        EXPECT_EQ(MessageOf<EArgumentException>([&] { vector.GetFeature(index); }), "Feature index is out of range");
        EXPECT_EQ(MessageOf<EArgumentException>([&] { vector.GetFeature(0).GetPoint(index); }),
                  "Point index is out of range");
    }
}

TEST(Vector, ReadsTheOlderGeneration) {
    const TImageFolder folder;
    folder.Write("ROADS.VEC", "1 2\n1 2\n3 4\n0 0\n");
    folder.Write("ROADS.DVC", "file title  : Roads\r\nobject type : polygon\r\nref. system : lat/long\r\n");
    for (const char* name : {"ROADS.VEC", "ROADS.DVC"}) {
        const TVector vector(folder.Path(name));
        EXPECT_EQ(vector.GetType(), vtPolygon);
        EXPECT_EQ(vector.GetHeader().GetTitle(), "Roads");
        EXPECT_EQ(vector.GetFeature(0).GetPoint(1), (TGeoPoint{3, 4}));
    }
    folder.Write("bare.vec", "1 2\n1 2\n3 4\n0 0\n");
    EXPECT_EQ(TVector(folder.Path("bare.vec")).GetType(), vtLine);
    EXPECT_EQ(TVector(folder.Path("bare.vec")).GetHeader().GetObjectType(), vtLine);
}

TEST(Vector, TheDataDecideWhatTheObjectsAre) {
    const TImageFolder folder;
    folder.Write("a.vct", TVectorBytes(vtLine).Line(1, {{1, 2}}).File());
    folder.Write("a.vdc", "object type : polygon\r\n");
    EXPECT_EQ(TVector(folder.Path("a.vct")).GetType(), vtLine);
    EXPECT_EQ(TVector(folder.Path("a.vct")).GetHeader().GetObjectType(), vtLine);
}

TEST(Vector, AFailureLeavesItAsItWas) {
    const TImageFolder folder;
    folder.Write("cut.vct", TVectorBytes(vtLine).Line(1, {{1, 2}}).File().chopped(1));
    folder.Write("alone.vdc", "object type : line\r\n");
    TVector vector(DataFile("lines.vct"));
    const auto data = vector.GetData();
    EXPECT_EQ(MessageOf<EFileFormatException>([&] { vector.LoadFromFile(folder.Path("cut.vct")); }),
              folder.Path("cut.vct") + ": the file is cut short");
    EXPECT_EQ(MessageOf<EFileException>([&] { vector.LoadFromFile(folder.Path("alone.vdc")); }),
              folder.Path("alone.vdc") + ": the data file (.vct or .vec) is missing");
    EXPECT_EQ(MessageOf<EFileException>([&] { vector.LoadFromFile(folder.Path("none.vct")); }),
              folder.Path("none.vct") + ": cannot be opened: No such file or directory");
    EXPECT_EQ(MessageOf<EFileException>([&] { vector.LoadFromFile(QStringLiteral("x.shp")); }),
              "x.shp: an Idrisi vector is a .vct or .vec file");
    QBuffer cut;
    cut.setData("\2\1");
    cut.open(QIODevice::ReadOnly);
    EXPECT_EQ(MessageOf<EFileFormatException>([&] { vector.LoadFromStream(cut); }),
              "Vector data: the file is cut short");
    EXPECT_EQ(vector.GetData(), data);
    EXPECT_EQ(vector.GetFileName(), DataFile("lines.vct"));
    EXPECT_EQ(vector.GetHeader().GetRefSystem(), "utm-31n");
}

TEST(Vector, LargerThanMemoryIsNamed) {
    const TImageFolder folder;
    QFile data(folder.Path("a.vct"));
    ASSERT_TRUE(data.open(QIODevice::ReadWrite) && data.resize(4'000'000'000)) << "sparse";
    const TMemoryLimit limit(256 * 1024 * 1024);
    TVector vector;
    EXPECT_EQ(MessageOf<EFileException>([&] { vector.LoadFromFile(folder.Path("a.vct")); }),
              folder.Path("a.vct") + QStringLiteral(": does not fit into memory"));
    EXPECT_EQ(vector.GetFileName(), QString());
}

TEST(Vector, AStreamCarriesTheFeatures) {
    const TVector vector(DataFile("lines.vct"));
    QBuffer stream;
    stream.open(QIODevice::ReadWrite);
    stream.write("before");
    vector.SaveToStream(stream);
    stream.seek(6);
    TVector copy;
    copy.GetHeader().SetTitle(QStringLiteral("kept"));
    copy.LoadFromStream(stream);
    EXPECT_EQ(copy.GetType(), vtLine);
    EXPECT_EQ(copy.GetData()->Vertices, vector.GetData()->Vertices);
    EXPECT_EQ(copy.GetData()->Ids, vector.GetData()->Ids);
    EXPECT_EQ(copy.GetHeader().GetTitle(), "kept");
    EXPECT_EQ(copy.GetFileName(), "");
    TFullDevice full;
    EXPECT_EQ(MessageOf<EFileException>([&] { vector.SaveToStream(full); }).first(29), "Vector data: cannot be writte");
}

TEST(Vector, ItsFeaturesOutliveIt) {
    auto vector = std::make_unique<TVector>(DataFile("lines.vct"));
    const auto data = vector->GetData();
    vector->LoadFromFile(DataFile("points.vct"));
    vector = nullptr;
    EXPECT_EQ(data->Ids.size(), 2U);
    EXPECT_EQ(data->Type, vtLine);
}

} // namespace lmx::tests
