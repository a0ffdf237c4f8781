#include <lmx/Formats/Idrisi/lmxVectorHeader.h>

#include <lmx/Formats/Idrisi/Private/lmxDocumentationEntries.h>
#include <lmx/Formats/Idrisi/Private/lmxEnumeratorCounts.h>
#include <lmx/Formats/Idrisi/Private/lmxHeaderStream.h>
#include <lmx/Formats/Text/Private/lmxAnsiText.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxText.h>

namespace lmx {

namespace {

constexpr char Mark[] = "LMXV";

QString StreamName() {
    return QStringLiteral("Vector header");
}

template<class Coder, class Header>
void CodeEntries(Coder& coder, Header& header) {
    using H = TVectorHeader;
    coder.Entry(&H::GetTitle, &H::SetTitle, header);
    coder.Entry(&H::GetObjectType, &H::SetObjectType, header);
    coder.Entry(&H::GetIdType, &H::SetIdType, header);
    coder.Entry(&H::GetFileType, &H::SetFileType, header);
    coder.Entry(&H::GetRefSystem, &H::SetRefSystem, header);
    coder.Entry(&H::GetRefUnits, &H::SetRefUnits, header);
    coder.Entry(&H::GetUnitDistance, &H::SetUnitDistance, header);
    coder.Entry(&H::GetMinX, &H::SetMinX, header);
    coder.Entry(&H::GetMaxX, &H::SetMaxX, header);
    coder.Entry(&H::GetMinY, &H::SetMinY, header);
    coder.Entry(&H::GetMaxY, &H::SetMaxY, header);
    coder.Entry(&H::GetPositionError, &H::SetPositionError, header);
    coder.Entry(&H::GetResolution, &H::SetResolution, header);
}

TVectorObjectType ObjectTypeOf(const QString& text) {
    for (std::size_t i = 1; i < VectorObjectTypeNames.size(); ++i)
        if (SameText(text, VectorObjectTypeNames[i]))
            return static_cast<TVectorObjectType>(i);
    return TVectorObjectType::vtNone;
}

// The first of two keys that has a text: the generations name some entries differently.
QString FirstOf(const TDocumentationEntries& entries, const QString& key, const QString& otherKey) {
    const QString text = entries.First(key);
    return text.isEmpty() ? entries.First(otherKey) : text;
}

} // namespace

TVectorHeader TVectorHeader::Parse(const QByteArray& text) {
    const TDocumentationEntries entries(DecodeAnsiText(text));
    TVectorHeader header;
    header.FTitle = FirstOf(entries, QStringLiteral("filetitle"), QStringLiteral("title"));
    header.FObjectType = ObjectTypeOf(entries.First(QStringLiteral("objecttype")));
    header.FIdType = FirstOf(entries, QStringLiteral("idtype"), QStringLiteral("datatype"));
    header.FFileType = entries.First(QStringLiteral("filetype"));
    header.FRefSystem = entries.First(QStringLiteral("refsystem"));
    header.FRefUnits = FirstOf(entries, QStringLiteral("refunits"), QStringLiteral("coordunit"));
    entries.TryNumber(QStringLiteral("unitdist"), header.FUnitDistance);
    entries.TryNumber(QStringLiteral("minx"), header.FMinX);
    entries.TryNumber(QStringLiteral("maxx"), header.FMaxX);
    entries.TryNumber(QStringLiteral("miny"), header.FMinY);
    entries.TryNumber(QStringLiteral("maxy"), header.FMaxY);
    header.FPositionError = entries.First(QStringLiteral("posnerror"));
    header.FResolution = entries.First(QStringLiteral("resolution"));
    return header;
}

void TVectorHeader::LoadFromStream(QIODevice& stream) {
    THeaderEntryReader reader(ReadHeaderEntries(stream, Mark, StreamName()));
    TVectorHeader header;
    CodeEntries(reader, header);
    if (!reader.IsComplete())
        throw EFileFormatException(StreamName(), QStringLiteral("damaged"));
    *this = header;
}

void TVectorHeader::SaveToStream(QIODevice& stream) const {
    THeaderEntryWriter writer;
    CodeEntries(writer, *this);
    WriteHeaderEntries(stream, Mark, StreamName(), writer.Bytes());
}

} // namespace lmx
