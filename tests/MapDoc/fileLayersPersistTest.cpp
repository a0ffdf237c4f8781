#include <lmx/Formats/Idrisi/lmxVector.h>
#include <lmx/Formats/Shapes/lmxShpFile.h>
#include <lmx/Layers/lmxShapeFileLayer.h>
#include <lmx/Layers/lmxVectorFileLayer.h>
#include <lmx/MapDoc/lmxShapeFileLayerPersist.h>
#include <lmx/MapDoc/lmxVectorFileLayerPersist.h>
#include <tests/MapDoc/DocumentMap.h>
#include <tests/Support/VectorBytes.h>

#include <gtest/gtest.h>

// What keeps the layers of vector and shape files.

namespace lmx {
namespace {

using namespace tests;

const QByteArray TwoLines =
    TVectorBytes(TVectorObjectType::vtLine).Line(1, {{1, 2}, {3, 4}}).Line(2, {{5, 6}, {7, 8}, {9, 10}}).File();

template<class Persist, class Layer>
class FileLayerTest : public testing::Test, TWithPoint {
protected:
    QString Written(const Layer& layer, TMapDocExternalResourcePolicy policy) {
        const TXmlDocument document(QStringLiteral("data"));
        TMapDocResourcePersist resources(FFolder.Path("archive"), pmWrite);
        Persist().WriteLayer(resources, &layer, document.GetRoot(), policy);
        return document.ToText().mid(static_cast<int>(qstrlen("<?xml version=\"1.0\"?>")));
    }
    void Read(Layer& layer, const QString& data) {
        if (!QFile::exists(FFolder.Path("archive")))
            TMapDocResourcePersist(FFolder.Path("archive"), pmWrite).Finish();
        TMapDocResourcePersist resources(FFolder.Path("archive"), pmRead);
        Persist().ReadLayer(resources, &layer, TXmlDocument::FromText(data).GetRoot());
    }
    template<class Failure = Exception>
    QString RefusalOf(const QString& children) {
        return MessageOf<Failure>([&] { Read(FLayer, QStringLiteral("<data>%1</data>").arg(children)); });
    }

    TDocumentFolder FFolder;
    std::shared_ptr<ILayerManager> FManager = TLayerManagerFactory::GetObject();
    Layer FLayer{FManager};
};

using VectorFileLayerPersist = FileLayerTest<TVectorFileLayerPersist, TVectorFileLayer>;

TEST_F(VectorFileLayerPersist, AnEmbeddedVectorComesBackWhole) {
    const QString path = FFolder.Write("lines.vct", TwoLines);
    FLayer.SetVectorFile(std::make_unique<TVector>(path));
    FLayer.GetVectorFile()->GetHeader().SetTitle(QStringLiteral("Two lines"));
    FLayer.SetColor(0xFFAABBCC);
    const QString data = Written(FLayer, erpEmbedIfPossible);
    EXPECT_EQ(data, "<data><color>4289379276</color><resource>embedded</resource></data>");
    TVectorFileLayer other(FManager);
    other.SetLayerID(FLayer.GetLayerID());
    Read(other, data);
    ASSERT_NE(other.GetVectorFile(), nullptr);
    EXPECT_EQ(other.GetVectorFile()->GetHeader(), FLayer.GetVectorFile()->GetHeader());
    EXPECT_EQ(other.GetVectorFile()->GetFileName(), "");
    ASSERT_EQ(other.GetVectorFile()->GetCount(), 2);
    EXPECT_EQ(other.GetVectorFile()->GetFeature(1).GetId(), 2);
    EXPECT_EQ(other.GetVectorFile()->GetFeature(1).GetPoint(2).X, 9.0F);
    EXPECT_EQ(other.GetColor(), 0xFFAABBCC);
    ASSERT_TRUE(QFile::remove(path));
    EXPECT_EQ(Written(FLayer, erpKeepExternal), data);
    EXPECT_EQ(Written(other, erpKeepExternal), data);
}

TEST_F(VectorFileLayerPersist, ALinkedVectorComesBackWithoutShapesAndCannotBeSavedAgain) {
    const QString path = FFolder.Write("lines.vct", TwoLines);
    FLayer.SetVectorFile(std::make_unique<TVector>(path));
    FLayer.SetColor(7);
    const QString data = Written(FLayer, erpKeepExternal);
    EXPECT_EQ(
        data,
        QStringLiteral("<data><color>7</color><resource>linked</resource><filename>%1</filename></data>").arg(path));
    TVectorFileLayer other(FManager);
    other.SetLayerName(QStringLiteral("Roads"));
    Read(other, data);
    EXPECT_EQ(other.GetVectorFile(), nullptr);
    EXPECT_EQ(other.GetColor(), 7U);
    EXPECT_EQ(MessageOf<EInvalidOperation>([&] { Written(other, erpKeepExternal); }), "Layer \"Roads\" has no vector");
}

TEST_F(VectorFileLayerPersist, RefusesInItsOwnWords) {
    const QString color = QStringLiteral("<color>1</color>");
    EXPECT_EQ(RefusalOf(color), "Missing required node");
    EXPECT_EQ(RefusalOf(QStringLiteral("<resource>linked</resource>")), "Missing required node");
    EXPECT_EQ(RefusalOf(color + QStringLiteral("<resource>linked</resource>")), "Missing required node");
    EXPECT_EQ(RefusalOf(color + QStringLiteral("<resource>other</resource>")), "Unsupported resoruce type: other");
    const QString path = FFolder.Path("none.vct");
    EXPECT_EQ(RefusalOf<EFileException>(color +
                                        QStringLiteral("<resource>linked</resource><filename>%1</filename>").arg(path)),
              path + QStringLiteral(": cannot be read: no regular file"));
    EXPECT_EQ(RefusalOf<EMapDocResourceNotFoundException>(color + QStringLiteral("<resource>embedded</resource>")),
              "The specified MapDoc resource was not found");
    EXPECT_EQ(FLayer.GetColor(), 0U);
}

TEST_F(VectorFileLayerPersist, ColorsAreTheLowBitsOfALargeNumber) {
    const QString path = FFolder.Write("lines.vct", TwoLines);
    const auto read = [&](const char* color) {
        Read(FLayer, QStringLiteral("<data><color>%1</color><resource>linked</resource><filename>%2</filename></data>")
                         .arg(QString::fromLatin1(color), path));
        return FLayer.GetColor();
    };
    EXPECT_EQ(read("4294967295"), 0xFFFFFFFFU);
    EXPECT_EQ(read("-1"), 0xFFFFFFFFU);
    EXPECT_EQ(read("4294967301"), 5U);
    EXPECT_EQ(read(" +6000000000"), 1705032704U);
    EXPECT_EQ(read("$FF"), 255U);
    for (const char* const color : {"", "x", "1.5", "9223372036854775808", "+-1", "1 ", "12\xC3\xA9"})
        EXPECT_THROW(read(color), EConvertError) << color;
    EXPECT_EQ(MessageOf<EConvertError>([&] { read("9223372036854775808"); }),
              "'9223372036854775808' is not a valid integer value");
}

using ShapeFileLayerPersist = FileLayerTest<TShapeFileLayerPersist, TShapeFileLayer>;

TEST_F(ShapeFileLayerPersist, AShapeFileIsAlwaysLinked) {
    const QString path = FFolder.Write("places.shp", TShapeBytes().Point(1, {3, 4}).File(1));
    FLayer.TakeShpFile(TShpFile::LoadFromFile(path, nullptr));
    FLayer.SetColor(0x80000001);
    const QString data =
        QStringLiteral("<data><resource>linked</resource><filename>%1</filename><color>2147483649</color></data>")
            .arg(path);
    EXPECT_EQ(Written(FLayer, erpKeepExternal), data);
    EXPECT_EQ(Written(FLayer, erpEmbedIfPossible), data);
    TShapeFileLayer other(FManager);
    Read(other, data);
    ASSERT_NE(other.GetShpFile(), nullptr);
    EXPECT_TRUE(other.GetOwnsShpFile());
    EXPECT_EQ(other.GetShpFile()->GetFileName(), path);
    EXPECT_EQ(other.GetShpFile()->GetPoint(0).X, 3);
    EXPECT_EQ(other.GetColor(), 0x80000001U);
    ASSERT_TRUE(QFile::remove(path));
    EXPECT_EQ(Written(FLayer, erpKeepExternal), data);
}

TEST_F(ShapeFileLayerPersist, KeepsWhetherShapesAreFolded) {
    const QString path = FFolder.Write("places.shp", TShapeBytes().Point(1, {3, 4}).File(1));
    FLayer.TakeShpFile(TShpFile::LoadFromFile(path, nullptr));
    FLayer.SetFoldsAtSeam(true);
    const QString data = Written(FLayer, erpKeepExternal);
    EXPECT_TRUE(data.endsWith(QStringLiteral("</color><foldsAtSeam/></data>"))) << data.toStdString();
    TShapeFileLayer other(FManager);
    Read(other, data);
    EXPECT_TRUE(other.GetFoldsAtSeam());
    FLayer.SetFoldsAtSeam(false);
    Read(other, Written(FLayer, erpKeepExternal));
    EXPECT_FALSE(other.GetFoldsAtSeam());
}

TEST_F(ShapeFileLayerPersist, RefusesInItsOwnWords) {
    const QString color = QStringLiteral("<color>1</color>");
    EXPECT_EQ(RefusalOf(color), "Missing required node");
    EXPECT_EQ(RefusalOf(QStringLiteral("<resource>linked</resource>")), "Missing required node");
    EXPECT_EQ(RefusalOf(color + QStringLiteral("<resource>linked</resource>")), "Missing required node: filename");
    EXPECT_EQ(RefusalOf(color + QStringLiteral("<resource>embedded</resource>")),
              "Unsupported resource type: embedded");
    const QString path = FFolder.Path(".");
    EXPECT_EQ(RefusalOf<EFileException>(color +
                                        QStringLiteral("<resource>linked</resource><filename>%1</filename>").arg(path)),
              path + QStringLiteral(": cannot be read: no regular file"));
    FLayer.SetLayerName(QStringLiteral("Coast"));
    EXPECT_EQ(MessageOf<EInvalidOperation>([&] { Written(FLayer, erpKeepExternal); }),
              "Layer \"Coast\" has no shape file");
}

} // namespace
} // namespace lmx
