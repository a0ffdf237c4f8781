// The entries of embedded images and vectors. The input is the kind, the length of the header (two bytes), the header
// and the data. What is read must come back from what is written of it.

#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxVectorFileLayer.h>
#include <lmx/MapDoc/lmxMapDocResourcePersist.h>
#include <tests/fuzz/MapDocSupport.h>

#include <QBuffer>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

using namespace lmx;

namespace {

constexpr std::size_t KindCount = 5;
constexpr std::array<const char*, KindCount> Kinds = {"TByteImage", "TIntegerImage", "TRealImage", "TAsciiImage", ""};

bool IsVector(std::size_t kind) {
    return *Kinds[kind] == '\0';
}

QByteArray Document(const QString& folder, std::size_t kind, const QByteArray& header, const QByteArray& data) {
    QBuffer device;
    device.open(QIODevice::ReadWrite);
    TMapDocResourcePersist resources(device, {}, TMapDocPersistMode::pmWrite);
    resources.Write(folder, QStringLiteral("header"), header);
    resources.Write(folder, IsVector(kind) ? QStringLiteral("vectordata") : QStringLiteral("imagedata"), data);
    resources.Finish();
    return device.data();
}

std::unique_ptr<TBaseMapLayer> Read(std::size_t kind, const QByteArray& header, const QByteArray& data) {
    const QString type = IsVector(kind) ? QStringLiteral("VectorFileLayer") : QStringLiteral("IdrisiMapLayer");
    auto layer = fuzz::LayerFactory()->CreateLayer(type, fuzz::ManagerWithSpecialLayers());
    const TXmlDocument document = TXmlDocument::FromText(
        QStringLiteral("<data><datatype>%1</datatype><resource>embedded</resource><opacity>1</opacity><color>1</color>"
                       "</data>")
            .arg(QString::fromLatin1(Kinds[kind])));
    QByteArray bytes = Document(layer->GetLayerID().toString().toUpper(), kind, header, data);
    QBuffer device(&bytes);
    device.open(QIODevice::ReadOnly);
    TMapDocResourcePersist resources(device, {}, TMapDocPersistMode::pmRead);
    fuzz::PersistFactory()->GetPersist(type)->ReadLayer(resources, layer.get(), document.GetRoot());
    return layer;
}

QByteArray Written(TBaseMapLayer& layer) {
    layer.SetLayerID({});
    QBuffer device;
    device.open(QIODevice::ReadWrite);
    TMapDocResourcePersist resources(device, {}, TMapDocPersistMode::pmWrite);
    const TXmlDocument document(QStringLiteral("data"));
    fuzz::PersistFactory()
        ->GetPersist(layer.GetLayerClassName())
        ->WriteLayer(resources, &layer, document.GetRoot(), TMapDocExternalResourcePolicy::erpEmbedIfPossible);
    resources.Finish();
    return device.data();
}

void CheckRewritten(std::size_t kind, TBaseMapLayer& layer) {
    QByteArray bytes = Written(layer);
    QBuffer device(&bytes);
    device.open(QIODevice::ReadOnly);
    const TMapDocResourcePersist resources(device, {}, TMapDocPersistMode::pmRead);
    const QString folder = layer.GetLayerID().toString();
    const auto again =
        Read(kind, resources.Read(folder, QStringLiteral("header")),
             resources.Read(folder, IsVector(kind) ? QStringLiteral("vectordata") : QStringLiteral("imagedata")));
    if (Written(*again) != bytes)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    if (size < 3)
        return 0;
    fuzz::NeedApplication();
    const QByteArray input(reinterpret_cast<const char*>(bytes + 3), static_cast<qsizetype>(size - 3));
    const qsizetype headerSize = std::min<qsizetype>(bytes[1] + 256 * bytes[2], input.size());
    const std::size_t kind = bytes[0] % KindCount;
    try {
        CheckRewritten(kind, *Read(kind, input.left(headerSize), input.mid(headerSize)));
    } catch (const Exception&) { // a refusal is a correct answer
    }
    return 0;
}
