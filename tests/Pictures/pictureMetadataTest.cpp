#include <tests/Pictures/PictureMap.h>
#include <tests/Support/Printers.h>

#include <lmx/Runtime/lmxText.h>

#include <QMap>
#include <QXmlStreamReader>
#include <QtEndian>

#include <gtest/gtest.h>

// What pictures say of themselves, read by the formats' own rules and not by what wrote them.

namespace lmx {
namespace {

using namespace tests;

QByteArray Inflated(const QByteArray& packed) {
    constexpr quint32 guess = 1 << 20;
    QByteArray bytes(4, '\0');
    qToBigEndian(guess, bytes.data());
    return qUncompress(bytes + packed);
}

/// The texts of a PNG by their keys: tEXt (Latin-1), zTXt (packed) and iTXt (UTF-8, perhaps packed).
QMap<QString, QString> TextsOfPng(const QByteArray& bytes) {
    QMap<QString, QString> texts;
    qsizetype at = 8; // behind the signature
    while (bytes.size() - at >= 12) {
        const auto size = qsizetype(qFromBigEndian<quint32>(bytes.constData() + at));
        const QByteArray type = bytes.mid(at + 4, 4);
        const QByteArray content = bytes.mid(at + 8, size);
        const qsizetype end = content.indexOf('\0');
        const QString key = QString::fromLatin1(content.first(std::max<qsizetype>(end, 0)));
        if (type == "tEXt") {
            texts[key] = QString::fromLatin1(content.mid(end + 1));
        } else if (type == "zTXt") {
            texts[key] = QString::fromLatin1(Inflated(content.mid(end + 2)));
        } else if (type == "iTXt") {
            const qsizetype language = content.indexOf('\0', end + 3);
            const QByteArray text = content.mid(content.indexOf('\0', language + 1) + 1);
            texts[key] = QString::fromUtf8(content[end + 1] ? Inflated(text) : text);
        }
        at += 12 + size;
    }
    return texts;
}

/// The text of each element of an XMP packet by its name.
QMap<QString, QString> ElementsOfXmp(const QByteArray& pdf) {
    const qsizetype begin = pdf.indexOf("<x:xmpmeta");
    const QByteArray end = "</x:xmpmeta>";
    QXmlStreamReader reader(pdf.mid(begin, pdf.indexOf(end, begin) + end.size() - begin));
    QMap<QString, QString> elements;
    QString property;
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isStartElement() && reader.prefix() != QStringLiteral("rdf"))
            property = reader.qualifiedName().toString();
        if (reader.isCharacters() && !reader.isWhitespace())
            elements[property] += reader.text().toString();
    }
    EXPECT_FALSE(reader.hasError()) << reader.errorString().toStdString();
    return elements;
}

/// The file that is attached to a PDF: the object that its file entry names, a packed stream.
QString AttachmentOf(const QByteArray& pdf) {
    const QByteArray before = "/EF <</F ";
    const qsizetype number = pdf.indexOf(before) + before.size();
    const QByteArray object = "\n" + pdf.mid(number, pdf.indexOf(' ', number) - number) + " 0 obj";
    const qsizetype head = pdf.indexOf(object);
    const qsizetype begin = pdf.indexOf("stream\n", head) + 7;
    EXPECT_TRUE(pdf.mid(head, begin - head).contains("FlateDecode"));
    return QString::fromUtf8(Inflated(pdf.mid(begin, pdf.indexOf("\nendstream", begin) - begin))).trimmed();
}

class PictureMetadata : public testing::Test {
protected:
    void SetUp() override {
        TImageHeader& header = *FMap.Raster->GetImage()->getHeader();
        header.SetLineage(QStringLiteral("/data/höhe.nc\nta\nJuly"));
        Options.Title = QStringLiteral("Höhen & \"Tiefen\" 平均");
        Options.Time = QStringLiteral("July");
        Options.Size = {500, 300};
    }
    QByteArray Saved(const char* name) {
        const QString path = FMap.Folder.filePath(QString::fromLatin1(name));
        FMap.Picture(Options).Save(path);
        return ReadFile(path);
    }

    const QString Sentence = QStringLiteral("Map \"Höhen & \"Tiefen\" 平均\" from 180° W to 180° E and from 90° S to "
                                            "90° N, July, showing Halves (11 to 12 K).");
    const QString Layers =
        QStringLiteral("Halves; Idrisi Image (Raster); units K; values 11 to 12; colours gradient "
                       "(0:#FF0000FF),(1:#FFFF0000) from 11 to 12; made from /data/höhe.nc, ta, July");
    const QString Extent = QStringLiteral("west -180, south -90, east 180, north 90");
    TMapPictureOptions Options;
    TPictureMap FMap;
};

TEST_F(PictureMetadata, OfAPngIsWhole) {
    const QMap<QString, QString> texts = TextsOfPng(Saved("map.png"));
    EXPECT_EQ(texts.keys(), (QStringList{"Description", "Extent", "Layers", "Software", "Time", "Title", "World"}));
    EXPECT_EQ(texts["Title"], Options.Title);
    EXPECT_EQ(texts["Description"], Sentence);
    EXPECT_EQ(texts["Extent"], Extent);
    EXPECT_EQ(texts["Layers"], Layers);
    EXPECT_EQ(texts["Time"], "July");
    EXPECT_EQ(texts["Software"], "lmx");
    EXPECT_EQ(texts["World"], TLatLonWorldSystemFactory::GetObject()->Name());
}

TEST_F(PictureMetadata, OfAPdfIsWhole) {
    const QByteArray pdf = Saved("map.pdf");
    const QMap<QString, QString> xmp = ElementsOfXmp(pdf);
    const QString world = TLatLonWorldSystemFactory::GetObject()->Name();
    EXPECT_EQ(xmp["dc:title"], Options.Title);
    EXPECT_EQ(xmp["dc:description"], Sentence);
    EXPECT_EQ(xmp["dc:coverage"], world + ": " + Extent + "; July");
    EXPECT_EQ(xmp["dc:source"], Layers);
    EXPECT_EQ(xmp["dc:format"], "application/pdf");
    EXPECT_EQ(xmp["xmp:CreatorTool"], "lmx");
    EXPECT_EQ(AttachmentOf(pdf), "Title: " + Options.Title + "\nDescription: " + Sentence + "\nWorld: " + world +
                                     "\nExtent: " + Extent +
                                     "\nTime: July\nSize: 500 x 300 pixels, 1 to the unit\nLayers:\n" + Layers);
}

// A layer that belongs to another one, as those of a host that draw over the seam, is none of its own.
TEST_F(PictureMetadata, LeavesOutLayersThatListsLeaveOut) {
    class TPart : public TIdrisiMapLayer {
    public:
        using TIdrisiMapLayer::TIdrisiMapLayer;
        bool GetShowsInLayersList() const override { return false; }
    };
    auto part = std::make_unique<TPart>(FMap.Manager);
    part->TakeImage(NumberedImage(2, 1, {-180, 90, 180, -90}));
    part->SetColorCalc(FMap.Raster->GetColorCalc());
    part->Render();
    FMap.Manager->GetLayers().Add(std::move(part));
    EXPECT_EQ(TextsOfPng(Saved("map.png"))["Description"], Sentence);
}

} // namespace
} // namespace lmx
