#include <lmx/Pictures/Private/lmxPictureFiles.h>

#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxExtended.h>
#include <lmx/Runtime/lmxXml.h>

#include <QBuffer>
#include <QFileInfo>
#include <QImage>
#include <QImageWriter>
#include <QMarginsF>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>

#include <algorithm>

namespace lmx {

namespace {

const QString Software = QStringLiteral("lmx");
constexpr double UnitsInAMetre = 96 / 0.0254;
constexpr double PointsInAUnit = 72.0 / 96;

bool IsOpaque(const TBitmap32& bitmap) {
    for (std::int32_t y = 0; y < bitmap.GetHeight(); ++y)
        if (std::any_of(bitmap.ScanLine(y), bitmap.ScanLine(y) + bitmap.GetWidth(),
                        [](TColor32 color) { return color >> 24 != 255; }))
            return false;
    return true;
}

/// Looks into the bitmap, which must outlive it.
QImage ImageOf(TBitmap32& bitmap) {
    const auto format = IsOpaque(bitmap) ? QImage::Format_RGB32 : QImage::Format_ARGB32;
    return {reinterpret_cast<uchar*>(bitmap.ScanLine(0)), bitmap.GetWidth(), bitmap.GetHeight(),
            static_cast<qsizetype>(bitmap.GetWidth()) * 4, format};
}

bool WritePng(TPaintedPicture& picture, QIODevice& device) {
    const TMapPictureDescription& description = picture.Description;
    QImage image = ImageOf(picture.Bitmap);
    const std::int32_t pixelsInAMetre = RoundToPixel(description.Density * UnitsInAMetre);
    image.setDotsPerMeterX(pixelsInAMetre);
    image.setDotsPerMeterY(pixelsInAMetre);
    const auto set = [&image](const char* key, const QString& text) {
        if (!text.isEmpty())
            image.setText(QString::fromLatin1(key), text);
    };
    set("Title", description.Title);
    set("Description", description.AlternativeText());
    set("Software", Software);
    set("World", description.World);
    set("Extent", description.ExtentText());
    set("Layers", description.LayersText());
    set("Time", description.Time);
    return QImageWriter(&device, "png").write(image);
}

void AddInLanguage(TXmlNode parent, const QString& name, const QString& text) {
    TXmlNode item = parent.AddChild(name).AddChild(QStringLiteral("rdf:Alt")).AddChild(QStringLiteral("rdf:li"));
    item.SetAttribute(QStringLiteral("xml:lang"), QStringLiteral("x-default"));
    item.SetText(text);
}

// Dublin Core has a place for each: coverage is the extent in space and time, source what it was made from.
QByteArray XmpOf(const TMapPictureDescription& description) {
    const TXmlDocument document(QStringLiteral("x:xmpmeta"));
    TXmlNode root = document.GetRoot();
    root.SetAttribute(QStringLiteral("xmlns:x"), QStringLiteral("adobe:ns:meta/"));
    TXmlNode rdf = root.AddChild(QStringLiteral("rdf:RDF"));
    rdf.SetAttribute(QStringLiteral("xmlns:rdf"), QStringLiteral("http://www.w3.org/1999/02/22-rdf-syntax-ns#"));
    TXmlNode about = rdf.AddChild(QStringLiteral("rdf:Description"));
    about.SetAttribute(QStringLiteral("rdf:about"), QString());
    about.SetAttribute(QStringLiteral("xmlns:dc"), QStringLiteral("http://purl.org/dc/elements/1.1/"));
    about.SetAttribute(QStringLiteral("xmlns:xmp"), QStringLiteral("http://ns.adobe.com/xap/1.0/"));
    about.AddChild(QStringLiteral("dc:format")).SetText(QStringLiteral("application/pdf"));
    about.AddChild(QStringLiteral("xmp:CreatorTool")).SetText(Software);
    if (!description.Title.isEmpty())
        AddInLanguage(about, QStringLiteral("dc:title"), description.Title);
    AddInLanguage(about, QStringLiteral("dc:description"), description.AlternativeText());
    about.AddChild(QStringLiteral("dc:coverage"))
        .SetText(description.World + QStringLiteral(": ") + description.ExtentText() +
                 (description.Time.isEmpty() ? QString() : QStringLiteral("; ") + description.Time));
    about.AddChild(QStringLiteral("dc:source")).SetText(description.LayersText());
    QByteArray xmp = document.ToBytes();
    xmp.remove(0, xmp.indexOf("?>") + 2); // the packet has its own beginning
    return "<?xpacket begin=\"\xEF\xBB\xBF\" id=\"W5M0MpCehiHzreSzNTczkc9d\"?>\n" + xmp.trimmed() +
           "\n<?xpacket end=\"w\"?>";
}

// The page has the picture's size to the eye, and every pixel of it as it is.
bool WritePdf(TPaintedPicture& picture, QIODevice& device) {
    const TMapPictureDescription& description = picture.Description;
    const QSizeF points(description.Pixels.cx / description.Density * PointsInAUnit,
                        description.Pixels.cy / description.Density * PointsInAUnit);
    QPdfWriter writer(&device);
    writer.setPageSize(QPageSize(points, QPageSize::Point, QString(), QPageSize::ExactMatch));
    writer.setPageMargins(QMarginsF(0, 0, 0, 0));
    writer.setTitle(description.Title);
    writer.setCreator(Software);
    writer.setDocumentXmpMetadata(XmpOf(description));
    writer.addFileAttachment(QStringLiteral("description.txt"), description.ToText().toUtf8(),
                             QStringLiteral("text/plain"));
    QPainter painter;
    if (!painter.begin(&writer))
        return false;
    painter.setRenderHint(QPainter::LosslessImageRendering);
    painter.drawImage(QRectF(0, 0, writer.width(), writer.height()), ImageOf(picture.Bitmap));
    return painter.end();
}

} // namespace

TPictureFormat PictureFormatOf(const QString& fileName) {
    const QString suffix = QFileInfo(fileName).suffix().toLower();
    if (suffix == QStringLiteral("png"))
        return TPictureFormat::pfPng;
    if (suffix == QStringLiteral("pdf"))
        return TPictureFormat::pfPdf;
    throw EFileException(fileName, QStringLiteral("pictures are written as .png or .pdf"));
}

QByteArray EncodePicture(TPaintedPicture& picture, TPictureFormat format, const QString& fileName) {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    if (!(format == TPictureFormat::pfPng ? WritePng(picture, buffer) : WritePdf(picture, buffer)))
        throw EFileException(fileName, QStringLiteral("the picture cannot be encoded"));
    return buffer.data();
}

} // namespace lmx
