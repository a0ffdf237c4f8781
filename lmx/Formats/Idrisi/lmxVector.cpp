#include <lmx/Formats/Idrisi/lmxVector.h>

#include <lmx/Formats/Idrisi/Private/lmxDocumentationEntries.h>
#include <lmx/Formats/Idrisi/Private/lmxVectorBytes.h>
#include <lmx/Runtime/Private/lmxMemory.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxText.h>

#include <QFileInfo>
#include <QIODevice>

#include <limits>
#include <utility>

namespace lmx {

namespace {

struct TVectorFiles {
    QString Data;
    QString Documentation; ///< empty if there is none
    bool IsOld = false;
};

TVectorFiles FindVectorFiles(const QString& fileName) {
    const QString suffix = QFileInfo(fileName).suffix();
    for (const bool isOld : {false, true}) {
        const QString data = isOld ? QStringLiteral("vec") : QStringLiteral("vct");
        const QString documentation = isOld ? QStringLiteral("dvc") : QStringLiteral("vdc");
        if (SameText(suffix, data))
            return {fileName, FindSisterFile(fileName, documentation), isOld};
        if (!SameText(suffix, documentation))
            continue;
        const QString found = FindSisterFile(fileName, data);
        if (found.isEmpty())
            throw EFileException(fileName, QStringLiteral("the data file (.vct or .vec) is missing"));
        return {found, fileName, isOld};
    }
    throw EFileException(fileName, QStringLiteral("an Idrisi vector is a .vct or .vec file"));
}

// Indexes are 32-bit integers for whoever asks for features and points.
template<class Parse>
std::shared_ptr<const TVectorData> Parsed(const QString& fileName, Parse parse) {
    return WithinMemory(fileName, [&] {
        auto data = std::make_shared<const TVectorData>(parse());
        if (data->Vertices.size() > std::numeric_limits<std::int32_t>::max() ||
            data->Ids.size() > std::numeric_limits<std::int32_t>::max())
            throw EFileFormatException(fileName, QStringLiteral("too many vertices"));
        return data;
    });
}

QString StreamName() {
    return QStringLiteral("Vector data");
}

} // namespace

const TGeoPoint& TFeature::GetPoint(std::int32_t index) const {
    if (index < 0 || index >= GetCount())
        throw EArgumentException(QStringLiteral("Point index is out of range"));
    return FVertices[static_cast<std::size_t>(index)];
}

TFeature TVector::GetFeature(std::int32_t index) const {
    if (index < 0 || index >= GetCount())
        throw EArgumentException(QStringLiteral("Feature index is out of range"));
    const auto i = static_cast<std::size_t>(index);
    return {FData->GetFeature(i), FData->Ids[i]};
}

void TVector::LoadFromFile(const QString& fileName) {
    const TVectorFiles files = FindVectorFiles(fileName);
    TVectorHeader header;
    if (!files.Documentation.isEmpty())
        header = TVectorHeader::Parse(ReadFile(files.Documentation, MostDocumentationBytes));
    auto data = Parsed(files.Data, [&] {
        const QByteArray bytes = ReadFile(files.Data);
        return files.IsOld ? ParseOldVectorBytes(bytes, header.GetObjectType(), files.Data)
                           : ParseVectorBytes(bytes, files.Data);
    });
    header.SetObjectType(data->Type);
    FFileName = fileName;
    FHeader = std::move(header);
    FData = std::move(data);
}

void TVector::LoadFromStream(QIODevice& stream) {
    FData = Parsed(StreamName(), [&] { return ParseVectorBytes(stream.readAll(), StreamName()); });
}

void TVector::SaveToStream(QIODevice& stream) const {
    const QByteArray bytes = WithinMemory([this] { return FormatVectorBytes(*FData); });
    if (stream.write(bytes) != bytes.size())
        throw EFileException(StreamName(), QStringLiteral("cannot be written: ") + stream.errorString());
}

} // namespace lmx
