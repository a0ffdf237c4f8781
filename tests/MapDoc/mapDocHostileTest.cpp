#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/Graphics/lmxGradient.h>
#include <tests/MapDoc/DocumentMap.h>

#include <QDir>

#include <gtest/gtest.h>

#include <random>

// Documents that are damaged, or made to harm.

namespace lmx {
namespace {

using namespace tests;

/// A small document with an embedded image, a ruler, a point and an annotation.
QByteArray SmallDocument(const TDocumentFolder& folder) {
    TDocumentMap map;
    AddImageLayer(map, SmallImage(),
                  TGradientColorCalculatorFactory::GetObject(
                      1, 4, TGradientFactory::GetObject({{0, 0xFF0000FF}, {1, 0xFFFF0000}})));
    map.Rulers().Add(std::make_unique<TRulerItem>(TRulerOrientation::roVertical, 1, 2));
    map.Points().GetPoints().Add(std::make_unique<TInfoQueryPoint>());
    map.Manager->SetTitle(QStringLiteral("Saved"));
    map.Save(folder.Path());
    return folder.Read();
}

/// Loads what may be anything. A failure leaves the map as it was; any other answer is a map.
bool Loads(const QByteArray& document) {
    TDocumentMap map;
    map.Manager->SetTitle(QStringLiteral("Before"));
    try {
        map.LoadBytes(document);
        return true;
    } catch (const EMapDocReaderError& refusal) {
        if (refusal.Message() == QStringLiteral("MapDoc version error"))
            return false;
        EXPECT_EQ(map.Manager->GetTitle(), "Before");
    } catch (const Exception&) {
        EXPECT_EQ(map.Manager->GetTitle(), "Before");
    }
    EXPECT_EQ(map.Manager->GetLayers().Count(), 0);
    EXPECT_EQ(map.Rulers().GetVRulers().Count(), 0);
    EXPECT_EQ(map.Points().GetPoints().Count(), 0);
    return false;
}

class MapDocHostile : public testing::Test, TWithPoint {
protected:
    TDocumentFolder FFolder;
};

TEST_F(MapDocHostile, EveryTruncationIsRefused) {
    const QByteArray whole = SmallDocument(FFolder);
    EXPECT_TRUE(Loads(whole));
    for (qsizetype size = 0; size < whole.size(); ++size)
        EXPECT_FALSE(Loads(whole.left(size))) << size;
}

TEST_F(MapDocHostile, MutationsNeverHarm) {
    const QByteArray whole = SmallDocument(FFolder);
    std::minstd_rand random(4711); // the same mutations in each run
    int loaded = 0;
    for (int i = 0; i < 2000; ++i) {
        QByteArray mutant = whole;
        for (int change = 0; change <= i % 4; ++change) {
            const auto at = static_cast<qsizetype>(random() % static_cast<unsigned>(mutant.size()));
            switch (i % 3) {
            case 0:
                mutant[at] = static_cast<char>(random());
                break;
            case 1:
                mutant[at] = static_cast<char>(mutant[at] ^ (1 << random() % 8));
                break;
            default:
                mutant.replace(at, std::min<qsizetype>(4, mutant.size() - at), QByteArray(4, '\xFF'));
            }
        }
        loaded += Loads(mutant) ? 1 : 0;
    }
    EXPECT_LT(loaded, 2000); // most bytes are under a check sum
}

// The manifest is intact as an entry and damaged as a text: its check sum is right.
TEST_F(MapDocHostile, MutatedManifestsNeverHarm) {
    SmallDocument(FFolder);
    const QByteArray manifest = ManifestOf(FFolder.Path()).toUtf8();
    std::minstd_rand random(42);
    for (int i = 0; i < 1000; ++i) {
        QByteArray mutant = manifest;
        const auto at = static_cast<qsizetype>(random() % static_cast<unsigned>(mutant.size()));
        const auto from = static_cast<qsizetype>(random() % static_cast<unsigned>(mutant.size()));
        if (i % 3 == 0)
            mutant[at] = static_cast<char>(random());
        else if (i % 3 == 1)
            mutant.remove(at, 1 + i % 40);
        else
            mutant.insert(at, manifest.mid(from, 1 + i % 200));
        Loads(ZipBytes({DeflatedRecord("_meta\\manifest", mutant)}));
    }
    for (qsizetype size = 0; size < manifest.size(); ++size)
        EXPECT_FALSE(Loads(ZipBytes({DeflatedRecord("_meta\\manifest", manifest.left(size))}))) << size;
}

TEST_F(MapDocHostile, TwoManifestsAreTheFirst) {
    const auto manifest = [](const char* title) {
        return DeflatedRecord(
            "_meta\\manifest",
            ManifestText({}, {},
                         QString(PlainRoot).replace(QStringLiteral("\"Title"), u'"' + QString::fromLatin1(title)))
                .toUtf8());
    };
    TDocumentMap map;
    map.LoadBytes(ZipBytes({manifest("First"), manifest("Second")}));
    EXPECT_EQ(map.Manager->GetTitle(), "First");
}

TEST_F(MapDocHostile, IdsThatRepeatShareTheirEntries) {
    SmallDocument(FFolder);
    const TMapDocResourcePersist archive(FFolder.Path(), pmRead);
    QString manifest = archive.ReadText({}, QStringLiteral("manifest"));
    const qsizetype start = manifest.indexOf(QStringLiteral("<layer "));
    const qsizetype end = manifest.indexOf(QStringLiteral("</layers>"));
    const QString layer = manifest.mid(start, end - start);
    manifest.insert(start, layer);
    const QString id = layer.section(u'"', 3, 3);
    std::vector<TZipRecord> records{DeflatedRecord("_meta\\manifest", manifest.toUtf8())};
    for (const char* const name : {"header", "imagedata"})
        records.push_back(DeflatedRecord((id + u'\\').toUtf8() + name, archive.Read(id, QString::fromLatin1(name))));
    TDocumentMap map;
    map.LoadBytes(ZipBytes(records));
    ASSERT_EQ(map.Manager->GetLayers().Count(), 2);
    EXPECT_EQ(map.LayerAt<TIdrisiMapLayer>(0).GetImage()->GetCell(2, 2), 4.0F);
    EXPECT_EQ(map.LayerAt<TIdrisiMapLayer>(1).GetImage()->GetCell(2, 2), 4.0F);
}

TEST_F(MapDocHostile, DeepNestingIsRefused) {
    const int depth = 100000;
    const QByteArray manifest = QByteArray("<mapDoc ") + PlainRoot.toUtf8() + ">" + QByteArray("<a>").repeated(depth) +
                                QByteArray("</a>").repeated(depth) + "</mapDoc>";
    TDocumentMap map;
    EXPECT_EQ(MessageOf<EFileFormatException>(
                  [&] { map.LoadBytes(ZipBytes({DeflatedRecord("_meta\\manifest", manifest)})); }),
              "memory: manifest is nested deeper than 4096 elements");
}

TEST_F(MapDocHostile, ManyAttributesAreJustMany) {
    QByteArray attributes;
    for (int i = 0; i < 100000; ++i)
        attributes += " a" + QByteArray::number(i) + "=\"\"";
    TDocumentMap map;
    map.LoadManifest(ManifestText({}, {}, PlainRoot + QString::fromLatin1(attributes)));
    EXPECT_EQ(map.Manager->GetTitle(), "Title");
    EXPECT_EQ(MessageOf<EFileFormatException>(
                  [&] { map.LoadBytes(ZipBytes({DeflatedRecord("_meta\\manifest", QByteArray(65 << 20, ' '))})); }),
              "memory: entry \"_meta\\manifest\" has more than 67108864 bytes");
}

// A claim in a header takes no memory before there are cells.
TEST_F(MapDocHostile, HugeImagesDropTheirLayer) {
    TImageHeader header = *SmallImage()->getHeader();
    header.SetWidth(1000000);
    header.SetHeight(1000000);
    QByteArray headerBytes;
    QBuffer buffer(&headerBytes);
    ASSERT_TRUE(buffer.open(QIODevice::WriteOnly));
    header.SaveToStream(buffer);
    const QString manifest = ManifestText(LayerText(
        QStringLiteral("IdrisiMapLayer"), QStringLiteral("<data><datatype>TRealImage</datatype><resource>embedded"
                                                         "</resource><opacity>255</opacity></data>")));
    TDocumentMap map;
    map.LoadBytes(
        ZipBytes({DeflatedRecord("_meta\\manifest", manifest.toUtf8()),
                  DeflatedRecord("{00000000-0000-0000-0000-0000000000AB}\\header", headerBytes),
                  DeflatedRecord("{00000000-0000-0000-0000-0000000000AB}\\imagedata", QByteArray(16, '\0'))}));
    EXPECT_EQ(map.Manager->GetLayers().Count(), 0);
}

TEST_F(MapDocHostile, LinksToFoldersDevicesAndElsewhereDropTheirLayer) {
    for (const QString& path : {QStringLiteral("/dev/zero"), QStringLiteral("/"), QStringLiteral("..\\..\\x.rst"),
                                QStringLiteral("C:\\x.rst"), QStringLiteral("\\\\host\\x.rst"), QString()}) {
        const QString link = QStringLiteral("<resource>linked</resource><filename>%1</filename>").arg(path);
        TDocumentMap map;
        map.LoadManifest(ManifestText(
            LayerText(QStringLiteral("IdrisiMapLayer"),
                      QStringLiteral("<data><datatype>TRealImage</datatype>%1<opacity>1</opacity></data>").arg(link)) +
            LayerText(QStringLiteral("VectorFileLayer"), QStringLiteral("<data><color>1</color>%1</data>").arg(link)) +
            LayerText(QStringLiteral("ShapeFileLayer"), QStringLiteral("<data>%1<color>1</color></data>").arg(link))));
        EXPECT_EQ(map.Manager->GetLayers().Count(), 0) << path.toStdString();
    }
}

TEST_F(MapDocHostile, NothingIsWrittenBesideTheTarget) {
    SmallDocument(FFolder);
    TDocumentMap map;
    map.Load(FFolder.Path());
    EXPECT_EQ(QDir(FFolder.Path(".")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList{"map.lmx"});
}

} // namespace
} // namespace lmx
