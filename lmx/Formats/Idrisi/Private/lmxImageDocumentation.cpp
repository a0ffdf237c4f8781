#include <lmx/Formats/Idrisi/Private/lmxImageDocumentation.h>

#include <lmx/Formats/Idrisi/Private/lmxDocumentationEntries.h>
#include <lmx/Formats/Text/Private/lmxAnsiText.h>
#include <lmx/Formats/Text/Private/lmxAsciiNumber.h>
#include <lmx/Runtime/Private/lmxQuote.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxNumberText.h>
#include <lmx/Runtime/lmxText.h>

#include <QStringList>

#include <cmath>

namespace lmx {

namespace {

std::int32_t RequiredCount(const TDocumentationEntries& entries, const QString& key, const QString& fileName) {
    std::int32_t count = 0;
    if (!TryStrToInt(entries.First(key), count) || count < 1)
        throw EFileFormatException(fileName, entries.LineOf(key) + QStringLiteral("the number of ") + key +
                                                 QStringLiteral(" is missing or not a positive integer"));
    return count;
}

float RequiredBound(const TDocumentationEntries& entries, const QString& key, const QString& fileName) {
    float bound = 0;
    if (!entries.TryNumber(key, bound))
        throw EFileFormatException(fileName, entries.LineOf(key) + QStringLiteral("the bound ") + key.first(3) + u' ' +
                                                 key.back().toUpper() + QStringLiteral(" is missing or not a number"));
    return bound;
}

[[noreturn]] void RefuseType(const TDocumentationEntries& entries, const QString& key, const QString& name,
                             const QString& fileName) {
    throw EFileFormatException(fileName, entries.LineOf(key) + QStringLiteral("the ") + name + QStringLiteral(" '") +
                                             Quotable(entries.First(key)) + QStringLiteral("' is unknown"));
}

void ReadDataType(const TDocumentationEntries& entries, const QString& fileName, TImageDocumentation& documentation) {
    const QString key = QStringLiteral("datatype");
    const QString text = entries.First(key);
    if (text.isEmpty())
        return;
    for (std::size_t i = 0; i < DataTypeNames.size(); ++i)
        if (SameText(text, DataTypeNames[i])) {
            documentation.Header.SetDataType(static_cast<TImageDataType>(i));
            documentation.HasDataType = true;
            return;
        }
    RefuseType(entries, key, QStringLiteral("data type"), fileName);
}

// Only the first word counts: "packed" and "packed binary" are the same, and "ascii GRID format" has been seen.
void ReadFileType(const TDocumentationEntries& entries, const QString& fileName, TImageHeader& header) {
    const QString key = QStringLiteral("filetype");
    const QString text = entries.First(key);
    const QString word = text.section(u' ', 0, 0);
    if (SameText(word, u"ascii"))
        header.SetFileType(TImageFileType::ftAscii);
    else if (SameText(word, u"binary"))
        header.SetFileType(TImageFileType::ftBinary);
    else if (SameText(word, u"packed"))
        header.SetFileType(TImageFileType::ftPacked);
    else if (!text.isEmpty())
        RefuseType(entries, key, QStringLiteral("file type"), fileName);
}

float NumberOr(const TDocumentationEntries& entries, const QString& key, float substitute) {
    entries.TryNumber(key, substitute);
    return substitute;
}

void ReadGrid(const TDocumentationEntries& entries, const QString& fileName, TImageHeader& header) {
    header.SetWidth(RequiredCount(entries, QStringLiteral("columns"), fileName));
    header.SetHeight(RequiredCount(entries, QStringLiteral("rows"), fileName));
    header.SetMinX(RequiredBound(entries, QStringLiteral("minx"), fileName));
    header.SetMaxX(RequiredBound(entries, QStringLiteral("maxx"), fileName));
    header.SetMinY(RequiredBound(entries, QStringLiteral("miny"), fileName));
    header.SetMaxY(RequiredBound(entries, QStringLiteral("maxy"), fileName));
    header.SetRefSystem(entries.First(QStringLiteral("refsystem")));
    header.SetRefUnits(entries.First(QStringLiteral("refunits")));
    header.SetUnitDistance(NumberOr(entries, QStringLiteral("unitdist"), 1));
    header.SetPositionError(entries.First(QStringLiteral("posnerror")));
    const float resolution = NumberOr(entries, QStringLiteral("resolution"), 0);
    header.SetResolutionX(resolution);
    header.SetResolutionY(resolution);
}

void ReadValues(const TDocumentationEntries& entries, TImageHeader& header) {
    header.SetMinValue(NumberOr(entries, QStringLiteral("minvalue"), 0));
    header.SetMaxValue(NumberOr(entries, QStringLiteral("maxvalue"), 0));
    header.SetDisplayMin(NumberOr(entries, QStringLiteral("displaymin"), header.GetMinValue()));
    header.SetDisplayMax(NumberOr(entries, QStringLiteral("displaymax"), header.GetMaxValue()));
    header.SetValueUnits(entries.First(QStringLiteral("valueunits")));
    header.SetValueError(entries.First(QStringLiteral("valueerror")));
    header.SetFlagDef(entries.First(QStringLiteral("flagdefn")));
    float flag = 0;
    const bool hasNumber = entries.TryNumber(QStringLiteral("flagvalue"), flag);
    header.SetFlagValue(flag);
    header.SetFlag(hasNumber && !SameText(header.GetFlagDef(), u"none"));
    header.SetLegendCategories(entries.Categories());
}

// A text in the form of an entry: the key fills 12 columns.
class TEntryWriter {
public:
    void Add(const QString& key, const QString& value) {
        QString line = value;
        line.replace(u'\r', u' ').replace(u'\n', u' ');
        FText += key.leftJustified(12) + QStringLiteral(": ") + Trim(line) + QStringLiteral("\r\n");
    }
    void Add(const QString& key, float value, const QString& substitute) {
        Add(key, std::isfinite(value) ? AsciiNumber(value) : substitute);
    }
    void AddWord(const QString& key, const QString& word, const QString& substitute) {
        Add(key, Trim(word).isEmpty() ? substitute : word);
    }
    void AddLines(const QString& key, QString text) {
        if (text.isEmpty())
            return;
        text.replace(QStringLiteral("\r\n"), QStringLiteral("\n")).replace(u'\r', u'\n');
        for (const QString& line : text.split(u'\n'))
            Add(key, line);
    }

    const QString& Text() const { return FText; }

private:
    QString FText;
};

QString RefSystemText(const TImageHeader& header, TDocumentationForm form) {
    const QString name = Trim(header.GetRefSystem());
    for (const QStringView alias : {u"latlong", u"lat/long", u"latlon"})
        if (SameText(name, alias))
            return form == TDocumentationForm::dfDos ? QStringLiteral("lat/long") : QStringLiteral("latlong");
    return name.isEmpty() ? QStringLiteral("plane") : name;
}

void WriteGrid(const TImageHeader& header, TDocumentationForm form, TEntryWriter& writer) {
    const QString unknown = QStringLiteral("unknown");
    writer.Add(QStringLiteral("columns"), IntToStr(header.GetWidth()));
    writer.Add(QStringLiteral("rows"), IntToStr(header.GetHeight()));
    writer.Add(QStringLiteral("ref. system"), RefSystemText(header, form));
    writer.AddWord(QStringLiteral("ref. units"), header.GetRefUnits(),
                   header.IsGeographic() ? QStringLiteral("deg") : QStringLiteral("m"));
    writer.Add(QStringLiteral("unit dist."), header.GetUnitDistance(), QStringLiteral("1"));
    writer.Add(QStringLiteral("min. X"), header.GetMinX(), unknown);
    writer.Add(QStringLiteral("max. X"), header.GetMaxX(), unknown);
    writer.Add(QStringLiteral("min. Y"), header.GetMinY(), unknown);
    writer.Add(QStringLiteral("max. Y"), header.GetMaxY(), unknown);
    writer.AddWord(QStringLiteral("pos'n error"), header.GetPositionError(), unknown);
    const bool hasResolution = header.GetResolutionX() == header.GetResolutionY() && header.GetResolutionX() != 0;
    writer.Add(QStringLiteral("resolution"), hasResolution ? header.GetResolutionX() : NAN, unknown);
}

void WriteValues(const TImageHeader& header, TDocumentationForm form, TEntryWriter& writer) {
    const QString unknown = QStringLiteral("unknown");
    writer.Add(QStringLiteral("min. value"), header.GetMinValue(), unknown);
    writer.Add(QStringLiteral("max. value"), header.GetMaxValue(), unknown);
    if (form == TDocumentationForm::dfWindows) {
        writer.Add(QStringLiteral("display min"), header.GetDisplayMin(), unknown);
        writer.Add(QStringLiteral("display max"), header.GetDisplayMax(), unknown);
    }
    writer.AddWord(QStringLiteral("value units"), header.GetValueUnits(), QStringLiteral("unspecified"));
    writer.AddWord(QStringLiteral("value error"), header.GetValueError(), unknown);
    // Some readers go by the number alone and some by the meaning alone: both tell the same.
    const QString none = QStringLiteral("none");
    const bool hasFlag = header.GetFlag() && std::isfinite(header.GetFlagValue());
    writer.Add(QStringLiteral("flag value"), hasFlag ? header.GetFlagValue() : NAN, none);
    const bool hasMeaning = !SameText(Trim(header.GetFlagDef()), u"none");
    const QString meaning = hasMeaning ? header.GetFlagDef() : QString();
    writer.AddWord(QStringLiteral("flag def'n"), hasFlag ? meaning : none, QStringLiteral("missing data"));
}

void WriteLegend(const TImageHeader& header, TDocumentationForm form, TEntryWriter& writer) {
    const bool isDos = form == TDocumentationForm::dfDos;
    const QString word = isDos ? QStringLiteral("category") : QStringLiteral("code ");
    writer.Add(QStringLiteral("legend cats"), IntToStr(static_cast<std::int64_t>(header.GetLegendCategories().size())));
    for (const auto& [code, name] : header.GetLegendCategories())
        writer.Add(word + IntToStr(code).rightJustified(isDos ? 3 : 6) + u' ', name);
}

} // namespace

TImageDocumentation ParseImageDocumentation(const QByteArray& text, const QString& fileName) {
    const TDocumentationEntries entries(DecodeAnsiText(text));
    TImageDocumentation documentation;
    TImageHeader& header = documentation.Header;
    const QString title = entries.First(QStringLiteral("filetitle"));
    header.SetTitle(title.isEmpty() ? entries.First(QStringLiteral("title")) : title);
    ReadGrid(entries, fileName, header);
    ReadValues(entries, header);
    ReadFileType(entries, fileName, header);
    ReadDataType(entries, fileName, documentation);
    float ignored = 0;
    documentation.HasValueRange = entries.TryNumber(QStringLiteral("minvalue"), ignored) &&
                                  entries.TryNumber(QStringLiteral("maxvalue"), ignored);
    header.SetLineage(entries.Lines(QStringLiteral("lineage")));
    header.SetCompleteness(entries.Lines(QStringLiteral("completeness")));
    header.SetConsistency(entries.Lines(QStringLiteral("consistency")));
    header.SetComment(entries.Lines(QStringLiteral("comment")));
    return documentation;
}

void SettleDataType(TImageDocumentation& documentation, std::uint64_t dataSize, const QString& fileName) {
    TImageHeader& header = documentation.Header;
    if (documentation.HasDataType || header.GetFileType() == TImageFileType::ftAscii)
        return; // a new header says real
    const auto cells = static_cast<std::uint64_t>(header.GetWidth()) * static_cast<std::uint64_t>(header.GetHeight());
    if (header.GetFileType() == TImageFileType::ftPacked ||
        (dataSize != cells && dataSize != 2 * cells && dataSize != 4 * cells))
        throw EFileFormatException(fileName, QStringLiteral("the data type is missing and the data do not tell it"));
    header.SetDataType(dataSize == cells       ? TImageDataType::dtByte
                       : dataSize == 2 * cells ? TImageDataType::dtInteger
                                               : TImageDataType::dtReal);
    documentation.HasDataType = true;
}

QByteArray FormatImageDocumentation(const TImageHeader& header, TDocumentationForm form) {
    TEntryWriter writer;
    if (form == TDocumentationForm::dfWindows)
        writer.Add(QStringLiteral("file format"), QStringLiteral("IDRISI Raster A.1"));
    writer.Add(QStringLiteral("file title"), header.GetTitle());
    writer.Add(QStringLiteral("data type"),
               DataTypeNames.at(static_cast<std::size_t>(header.GetDataType())).toString());
    writer.Add(QStringLiteral("file type"),
               FileTypeNames.at(static_cast<std::size_t>(header.GetFileType())).toString());
    WriteGrid(header, form, writer);
    WriteValues(header, form, writer);
    WriteLegend(header, form, writer);
    writer.AddLines(QStringLiteral("lineage"), header.GetLineage());
    writer.AddLines(QStringLiteral("comment"), header.GetComment());
    writer.AddLines(QStringLiteral("completeness"), header.GetCompleteness());
    writer.AddLines(QStringLiteral("consistency"), header.GetConsistency());
    return EncodeAnsiText(writer.Text());
}

} // namespace lmx
