// The stored form of an image header (lmxHeaderStream.h), marked "LMXH".

#include <lmx/Formats/Idrisi/Private/lmxEnumeratorCounts.h>
#include <lmx/Formats/Idrisi/Private/lmxHeaderStream.h>
#include <lmx/Formats/Idrisi/lmxImageHeader.h>
#include <lmx/Runtime/lmxExceptions.h>

namespace lmx {

namespace {

constexpr char Mark[] = "LMXH";

QString StreamName() {
    return QStringLiteral("Image header");
}

template<class Coder, class Header>
void CodeEntries(Coder& coder, Header& header) {
    using H = TImageHeader;
    coder.Entry(&H::GetWidth, &H::SetWidth, header);
    coder.Entry(&H::GetHeight, &H::SetHeight, header);
    coder.Entry(&H::GetMinX, &H::SetMinX, header);
    coder.Entry(&H::GetMaxX, &H::SetMaxX, header);
    coder.Entry(&H::GetMinY, &H::SetMinY, header);
    coder.Entry(&H::GetMaxY, &H::SetMaxY, header);
    coder.Entry(&H::GetMinValue, &H::SetMinValue, header);
    coder.Entry(&H::GetMaxValue, &H::SetMaxValue, header);
    coder.Entry(&H::GetDisplayMin, &H::SetDisplayMin, header);
    coder.Entry(&H::GetDisplayMax, &H::SetDisplayMax, header);
    coder.Entry(&H::GetResolutionX, &H::SetResolutionX, header);
    coder.Entry(&H::GetResolutionY, &H::SetResolutionY, header);
    coder.Entry(&H::GetUnitDistance, &H::SetUnitDistance, header);
    coder.Entry(&H::GetFlagValue, &H::SetFlagValue, header);
    coder.Entry(&H::GetFlag, &H::SetFlag, header);
    coder.Entry(&H::GetDataType, &H::SetDataType, header);
    coder.Entry(&H::GetFileType, &H::SetFileType, header);
    coder.Entry(&H::GetTitle, &H::SetTitle, header);
    coder.Entry(&H::GetRefSystem, &H::SetRefSystem, header);
    coder.Entry(&H::GetRefUnits, &H::SetRefUnits, header);
    coder.Entry(&H::GetPositionError, &H::SetPositionError, header);
    coder.Entry(&H::GetValueUnits, &H::SetValueUnits, header);
    coder.Entry(&H::GetValueError, &H::SetValueError, header);
    coder.Entry(&H::GetFlagDef, &H::SetFlagDef, header);
    coder.Entry(&H::GetLegendCategories, &H::SetLegendCategories, header);
    coder.Entry(&H::GetLineage, &H::SetLineage, header);
    coder.Entry(&H::GetCompleteness, &H::SetCompleteness, header);
    coder.Entry(&H::GetConsistency, &H::SetConsistency, header);
    coder.Entry(&H::GetComment, &H::SetComment, header);
}

} // namespace

void TImageHeader::LoadFromStream(QIODevice& stream) {
    THeaderEntryReader reader(ReadHeaderEntries(stream, Mark, StreamName()));
    TImageHeader header;
    CodeEntries(reader, header);
    if (!reader.IsComplete())
        throw EFileFormatException(StreamName(), QStringLiteral("damaged"));
    *this = header;
}

void TImageHeader::SaveToStream(QIODevice& stream) const {
    THeaderEntryWriter writer;
    CodeEntries(writer, *this);
    WriteHeaderEntries(stream, Mark, StreamName(), writer.Bytes());
}

} // namespace lmx
