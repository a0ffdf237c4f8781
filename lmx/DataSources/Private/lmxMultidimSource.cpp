#include <lmx/DataSources/Private/lmxMultidimSource.h>

#include <lmx/DataSources/Private/lmxFilesAtEnd.h>
#include <lmx/DataSources/Private/lmxGdalSession.h>
#include <lmx/DataSources/Private/lmxGdalTypes.h>
#include <lmx/DataSources/Private/lmxReaderThreadSource.h>
#include <lmx/DataSources/lmxClimateExceptions.h>
#include <lmx/Runtime/lmxFormat.h>

#include <QJsonDocument>
#include <QJsonObject>

#include <cpl_vsi.h>
#include <gdal_priv.h>

#include <algorithm>
#include <mutex>
#include <string>
#include <utility>

namespace lmx {

namespace {

constexpr int MostDepth = 32;
constexpr std::size_t MostAttributes = 10'000; // of one array
constexpr std::size_t MostAttributeBytes = 64 << 10;

using TGroup = std::shared_ptr<GDALGroup>;
using TArray = std::shared_ptr<GDALMDArray>;

const char* const WithScalars[] = {"SHOW_ZERO_DIM=YES", nullptr};
const char* const All[] = {"SHOW_ALL=YES", nullptr};

QString TextOf(const std::string& text) {
    return QString::fromUtf8(text.data(), qsizetype(std::min(text.size(), MostAttributeBytes)));
}

QString TextOf(const GDALAttribute& attribute) {
    if (attribute.GetTotalElementsCount() == 1) {
        const char* const text = attribute.ReadAsString();
        return text ? TextOf(std::string(text)) : QString();
    }
    const auto texts = attribute.ReadAsStringArray();
    std::string joined;
    for (int i = 0; i < texts.size() && joined.size() < MostAttributeBytes; ++i)
        joined += (i > 0 ? " " : "") + std::string(texts[i]);
    return TextOf(joined);
}

bool IsFloating(const GDALExtendedDataType& type) {
    return type.GetClass() == GEDTC_NUMERIC &&
           (type.GetNumericDataType() == GDT_Float32 || type.GetNumericDataType() == GDT_Float64);
}

void TakeAttribute(const GDALAttribute& attribute, TSourceAttributes& result) {
    const QString name = TextOf(attribute.GetName());
    const GDALExtendedDataType& type = attribute.GetDataType();
    if (attribute.GetTotalElementsCount() > MostAttributeBytes / sizeof(double))
        return;
    if (type.GetClass() == GEDTC_STRING) {
        result.Values.Set(name, TextOf(attribute));
    } else if (type.GetClass() == GEDTC_NUMERIC) {
        result.Values.Set(name, attribute.ReadAsDoubleArray());
        if (IsFloating(type) && (name == QStringLiteral("valid_range") || name == QStringLiteral("valid_min") ||
                                 name == QStringLiteral("valid_max")))
            result.HasFloatingLimits = true;
    }
}

void TakeAttributes(const GDALIHasAttribute& owner, TSourceAttributes& result) {
    const auto attributes = owner.GetAttributes(All);
    for (std::size_t i = 0; i < std::min(attributes.size(), MostAttributes); ++i)
        TakeAttribute(*attributes[i], result);
}

// What GDAL takes out of the attributes for uses of its own. Beyond 2^53 only the getters for 64 bits are exact, and
// the nearest double is what the cells are compared with.
void TakeOwnProperties(const GDALMDArray& array, TSourceAttributes& result) {
    TClimateAttributes& values = result.Values;
    if (!array.GetUnit().empty() && !values.Has(QStringLiteral("units")))
        values.Set(QStringLiteral("units"), TextOf(array.GetUnit()));
    bool has = false;
    if (const double scale = array.GetScale(&has); has && !values.Has(QStringLiteral("scale_factor")))
        values.Set(QStringLiteral("scale_factor"), std::vector{scale});
    if (const double offset = array.GetOffset(&has); has && !values.Has(QStringLiteral("add_offset")))
        values.Set(QStringLiteral("add_offset"), std::vector{offset});
    const bool isNumeric = array.GetDataType().GetClass() == GEDTC_NUMERIC;
    if (!isNumeric || !array.GetRawNoDataValue() || values.Has(QStringLiteral("_FillValue")) ||
        values.Has(QStringLiteral("missing_value")))
        return;
    double fill = 0;
    const GDALDataType type = array.GetDataType().GetNumericDataType();
    if (type == GDT_Int64)
        fill = double(array.GetNoDataValueAsInt64(&has));
    else if (type == GDT_UInt64)
        fill = double(array.GetNoDataValueAsUInt64(&has));
    else
        fill = array.GetNoDataValueAsDouble(&has);
    if (has)
        values.Set(QStringLiteral("_FillValue"), std::vector{fill});
}

// GDAL before 3.7 hands the signed bytes of a Zarr out as shorts: nothing but the file itself says that they are bytes.
bool AreBytesOfZarr(const QByteArray& array) {
    constexpr std::size_t most = 1 << 20;
    VSILFILE* const file = VSIFOpenL((array + "/.zarray").constData(), "rb");
    if (!file)
        return false;
    QByteArray text(most, Qt::Uninitialized);
    text.truncate(qsizetype(VSIFReadL(text.data(), 1, most, file)));
    VSIFCloseL(file);
    return QJsonDocument::fromJson(text).object().value(QStringLiteral("dtype")) == QStringLiteral("|i1");
}

TRawSlice AsBytes(const TRawSlice& shorts) {
    TRawSlice bytes(TClimateCellType::ctInt8, shorts.GetCount());
    const auto* const from = reinterpret_cast<const std::int16_t*>(shorts.GetBytes());
    std::transform(from, from + shorts.GetCount(), static_cast<std::int8_t*>(bytes.GetBytes()),
                   [](std::int16_t cell) { return static_cast<std::int8_t>(cell); });
    return bytes;
}

class TMultidimSource final : public IClimateSource {
public:
    TMultidimSource(const TGdalName& name, const QString& fileName)
        : FFileName(fileName),
          FStore(name.Name),
          FIsNetCdf(qstrcmp(name.Driver, "netCDF") == 0) {
        const char* const drivers[] = {name.Driver, nullptr};
        const TQuietGdal quiet;
        RegisterClimateDrivers();
        FDataset.reset(GDALDataset::Open(name.Name.constData(),
                                         GDAL_OF_MULTIDIM_RASTER | GDAL_OF_READONLY | GDAL_OF_INTERNAL, drivers,
                                         nullptr, nullptr));
        FRoot = FDataset ? FDataset->GetRootGroup() : nullptr;
        if (!FRoot)
            throw EClimateFile(fileName, quiet.Explain(QStringLiteral("is damaged or not understood")));
        static std::once_flag isSetUp; // opening a file sets the driver's library up
        if (FIsNetCdf)
            std::call_once(isSetUp, CloseFilesBeforeLibraries);
        Walk(FRoot, 0);
    }

    const std::vector<TSourceArray>& GetArrays() const override { return FInfos; }
    bool IsNetCdf() const override { return FIsNetCdf; }

    TClimateAttributes ReadFileAttributes() override {
        const TQuietGdal quiet;
        TSourceAttributes result;
        TakeAttributes(*FRoot, result);
        return result.Values;
    }

    TSourceAttributes ReadAttributes(std::size_t array) override {
        const TQuietGdal quiet;
        TSourceAttributes result;
        TakeAttributes(*FArrays.at(array), result);
        TakeOwnProperties(*FArrays[array], result);
        return result;
    }

    TRawSlice Read(std::size_t array, const TSourceWindow& window) override {
        const TSourceArray& info = FInfos.at(array);
        if (info.HasHugeBlocks())
            throw EClimateFile(FFileName, info.Path.mid(1) + QStringLiteral(": ") + HugeBlocksText());
        std::size_t count = 1;
        for (const std::size_t length : window.Counts)
            count *= length;
        const GDALExtendedDataType& type = FArrays[array]->GetDataType();
        TClimateCellType given = info.Type;
        CellTypeOf(type.GetNumericDataType(), given);
        TRawSlice slice(given, count);
        const TQuietGdal quiet;
        const std::vector<GUInt64> starts(window.Starts.begin(), window.Starts.end());
        // A scalar has no dimension to name.
        const bool isRead = count == 0 || FArrays[array]->Read(starts.data(), window.Counts.data(), nullptr, nullptr,
                                                               type, slice.GetBytes());
        if (!isRead)
            throw EClimateFile(FFileName, info.Path.mid(1) + QStringLiteral(": ") +
                                              quiet.Explain(QStringLiteral("is damaged here")));
        if (given != info.Type)
            return AsBytes(slice);
        return slice;
    }

private:
    void Walk(const TGroup& group, int depth) {
        if (depth > MostDepth)
            throw EClimateFile(FFileName, Format(u"has groups within groups, more than %d deep", {MostDepth}));
        for (const std::string& name : group->GetMDArrayNames(WithScalars))
            if (const TArray array = group->OpenMDArray(name))
                Add(array);
        for (const std::string& name : group->GetGroupNames())
            if (const TGroup inner = group->OpenGroup(name))
                Walk(inner, depth + 1);
    }

    void Add(const TArray& array) {
        if (FArrays.size() >= MostArrays)
            throw EClimateFile(FFileName, Format(u"holds more than %d arrays", {qint64(MostArrays)}));
        TSourceArray info;
        info.Path = TextOf(array->GetFullName());
        for (const auto& dimension : array->GetDimensions())
            info.Dimensions.push_back({TextOf(dimension->GetFullName()), dimension->GetSize()});
        const auto blocks = array->GetBlockSize();
        info.BlockSize.assign(blocks.begin(), blocks.end());
        const GDALExtendedDataType& type = array->GetDataType();
        info.IsNumeric = type.GetClass() == GEDTC_NUMERIC && CellTypeOf(type.GetNumericDataType(), info.Type);
        if (!FIsNetCdf && info.Type == TClimateCellType::ctInt16 && AreBytesOfZarr(FStore + info.Path.toUtf8()))
            info.Type = TClimateCellType::ctInt8;
        FArrays.push_back(array);
        FInfos.push_back(std::move(info));
    }

    const QString FFileName;
    const QByteArray FStore; ///< by which GDAL finds the file, a Zarr's files below it
    const bool FIsNetCdf;
    std::unique_ptr<GDALDataset, TCloseDataset> FDataset;
    TGroup FRoot;
    std::vector<TArray> FArrays;
    std::vector<TSourceArray> FInfos;
};

} // namespace

std::unique_ptr<IClimateSource> OpenMultidimSource(const TGdalName& name, const QString& fileName) {
    return MakeReaderThreadSource([&] { return std::make_unique<TMultidimSource>(name, fileName); });
}

} // namespace lmx
