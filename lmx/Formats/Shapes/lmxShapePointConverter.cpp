#include <lmx/Formats/Shapes/lmxShapePointConverter.h>

#include <lmx/Runtime/lmxText.h>

#include <QFile>
#include <QFileInfo>

#include <array>
#include <cmath>
#include <proj.h>
#include <proj_experimental.h> // the query for systems on a datum has stood there since PROJ 6

namespace lmx {

namespace {

constexpr qint64 LongestDefinition = 256 * 1024;
constexpr double RadiansPerDegree = 0.017453292519943295;

struct TProjDeleter {
    void operator()(PJ_CONTEXT* context) const { proj_context_destroy(context); }
    void operator()(PJ* object) const { proj_destroy(object); }
    void operator()(PJ_OBJ_LIST* list) const { proj_list_destroy(list); }
};
using TContext = std::unique_ptr<PJ_CONTEXT, TProjDeleter>;
using TProjObject = std::unique_ptr<PJ, TProjDeleter>;
using TProjList = std::unique_ptr<PJ_OBJ_LIST, TProjDeleter>;

// It never asks the network, nor prints.
TContext MakeContext() {
    TContext context(proj_context_create());
    proj_context_set_enable_network(context.get(), 0);
    proj_log_level(context.get(), PJ_LOG_NONE);
    return context;
}

TProjObject FromText(PJ_CONTEXT* context, const QByteArray& text) {
    TProjObject system(proj_create_from_wkt(context, text.constData(), nullptr, nullptr, nullptr));
    return system && proj_is_crs(system.get()) ? std::move(system) : nullptr;
}

TProjObject DatumOf(PJ_CONTEXT* context, const PJ* system) {
    TProjObject datum(proj_crs_get_datum(context, system));
    return datum ? std::move(datum) : TProjObject(proj_crs_get_datum_ensemble(context, system));
}

TProjObject DatumOfExactName(PJ_CONTEXT* context, const QString& name) {
    constexpr std::array<PJ_TYPE, 2> types = {PJ_TYPE_GEODETIC_REFERENCE_FRAME, PJ_TYPE_DATUM_ENSEMBLE};
    const TProjList found(proj_create_from_name(context, nullptr, name.toUtf8().constData(), types.data(), types.size(),
                                                false, 1, nullptr));
    return TProjObject(found && proj_list_get_count(found.get()) > 0 ? proj_list_get(context, found.get(), 0)
                                                                     : nullptr);
}

QString WithoutPrefix(const QString& name) {
    return name.startsWith(QStringLiteral("D_"), Qt::CaseInsensitive) ? name.sliced(2) : name;
}

// What is left of a name when case, blanks, underscores and the prefix are taken as nothing.
QString Folded(const QString& name) {
    QString folded = WithoutPrefix(name.trimmed()).toCaseFolded();
    folded.removeIf([](QChar c) { return c == u' ' || c == u'_'; });
    return folded;
}

// Asks every datum of the registry for its name: the slow way, for names that no dialect has.
TProjObject DatumOfFoldedName(PJ_CONTEXT* context, const QString& folded) {
    for (const char* authority : {"EPSG", "ESRI"}) {
        const std::unique_ptr<char*, decltype(&proj_string_list_destroy)> codes(
            proj_get_codes_from_database(context, authority, PJ_TYPE_GEODETIC_REFERENCE_FRAME, 0),
            &proj_string_list_destroy);
        for (char** code = codes.get(); code && *code; ++code) {
            TProjObject datum(proj_create_from_database(context, authority, *code, PJ_CATEGORY_DATUM, 0, nullptr));
            if (datum && Folded(QString::fromUtf8(proj_get_name(datum.get()))) == folded)
                return datum;
        }
    }
    return nullptr;
}

// By its name in the registry ("North American Datum 1927") or in the dialect of projection files
// ("D_North_American_1927"), however that is written. Definitions have no such names.
TProjObject DatumFromName(PJ_CONTEXT* context, const QString& name) {
    const QString folded = Folded(name);
    if (folded.isEmpty() || name.contains(u'['))
        return nullptr;
    const QString plain = WithoutPrefix(name.simplified());
    const QString underscored = QStringLiteral("D_") + QString(plain).replace(u' ', u'_');
    for (const QString& spelling : {name, underscored, QString(plain).replace(u'_', u' ')})
        if (TProjObject datum = DatumOfExactName(context, spelling); datum)
            return datum;
    return DatumOfFoldedName(context, folded);
}

// The registry's system of longitudes and latitudes on a datum of the registry.
TProjObject FromDatum(PJ_CONTEXT* context, const PJ* datum) {
    const TProjList found(proj_query_geodetic_crs_from_datum(context, "EPSG", proj_get_id_auth_name(datum, 0),
                                                             proj_get_id_code(datum, 0), "geographic 2D"));
    return TProjObject(found && proj_list_get_count(found.get()) > 0 ? proj_list_get(context, found.get(), 0)
                                                                     : nullptr);
}

bool IsPlainDegrees(PJ_CONTEXT* context, const PJ* system) {
    if (proj_get_type(system) != PJ_TYPE_GEOGRAPHIC_2D_CRS)
        return false;
    const TProjObject meridian(proj_get_prime_meridian(context, system));
    double longitude = 1;
    proj_prime_meridian_get_parameters(context, meridian.get(), &longitude, nullptr, nullptr);
    const TProjObject axes(proj_crs_get_coordinate_system(context, system));
    double unit = 0;
    proj_cs_get_axis_info(context, axes.get(), 0, nullptr, nullptr, nullptr, &unit, nullptr, nullptr, nullptr);
    return longitude == 0 && std::abs(unit / RadiansPerDegree - 1) < 1e-9;
}

// A definition may name a projection that nobody knows.
bool HasKnownProjection(PJ_CONTEXT* context, const PJ* system) {
    if (proj_get_type(system) != PJ_TYPE_PROJECTED_CRS)
        return true;
    const TProjObject projection(proj_crs_get_coordoperation(context, system));
    return projection && proj_coordoperation_is_instantiable(context, projection.get());
}

bool IsWgs84(const PJ* datum) {
    const QString name = QString::fromUtf8(proj_get_name(datum));
    return name == QStringLiteral("World Geodetic System 1984") ||
           name == QStringLiteral("World Geodetic System 1984 ensemble");
}

class TProjConverter final : public IShapePointConverter {
public:
    TProjConverter(TContext context, TProjObject transformation)
        : FContext(std::move(context)),
          FTransformation(std::move(transformation)) {}

    void Convert(std::span<TShpPoint> points) override {
        while (!points.empty()) {
            const auto chunk = points.first(std::min(points.size(), FCoordinates.size()));
            for (std::size_t i = 0; i < chunk.size(); ++i)
                FCoordinates[i] = proj_coord(chunk[i].X, chunk[i].Y, 0, HUGE_VAL);
            proj_trans_array(FTransformation.get(), PJ_FWD, chunk.size(), FCoordinates.data());
            for (std::size_t i = 0; i < chunk.size(); ++i)
                chunk[i] = {FCoordinates[i].xy.x, FCoordinates[i].xy.y};
            points = points.subspan(chunk.size());
        }
    }

private:
    TContext FContext; // outlives what was made in it
    TProjObject FTransformation;
    std::array<PJ_COORD, 256> FCoordinates{};
};

// What a projection file holds, without the byte order mark that some editors put before it.
QByteArray ReadDefinition(const QString& prjFileName) {
    const QString fileName = FindSisterFile(prjFileName, QStringLiteral("prj"));
    QFile file(fileName);
    if (fileName.isEmpty() || !file.open(QIODevice::ReadOnly) || file.size() > LongestDefinition)
        return {};
    QByteArray text = file.readAll();
    if (text.startsWith("\xEF\xBB\xBF"))
        text.remove(0, 3);
    return text.trimmed();
}

} // namespace

QString ProjectionFileOf(const QString& shpFileName) {
    const qsizetype extension = QFileInfo(shpFileName).suffix().size();
    return (extension > 0 ? shpFileName.chopped(extension + 1) : shpFileName) + QStringLiteral(".prj");
}

QString GetDatum(const QString& prjFileName) {
    const QByteArray definition = ReadDefinition(prjFileName);
    const TContext context = MakeContext();
    const TProjObject system = FromText(context.get(), definition);
    if (!system)
        return {};
    QString whole = QString::fromUtf8(definition);
    if (!IsPlainDegrees(context.get(), system.get()))
        return whole;
    const TProjObject datum = DatumOf(context.get(), system.get());
    const QString name = QString::fromUtf8(proj_get_name(datum.get()));
    return DatumFromName(context.get(), name) ? name : whole;
}

TShapeConversion TSHapePointConverterFactory::GetConversion(const QString& datum) {
    constexpr auto unknown = TShapeConversionKind::ckUnknown;
    TContext context = MakeContext();
    TProjObject system;
    if (const TProjObject named = DatumFromName(context.get(), datum); named)
        system = FromDatum(context.get(), named.get());
    else
        system = FromText(context.get(), datum.toUtf8());
    if (!system || !HasKnownProjection(context.get(), system.get()))
        return {unknown, nullptr};
    if (IsPlainDegrees(context.get(), system.get()) && IsWgs84(DatumOf(context.get(), system.get()).get()))
        return {TShapeConversionKind::ckNotNeeded, nullptr};
    const TProjObject target(proj_create(context.get(), "EPSG:4326"));
    const TProjObject both(
        target ? proj_create_crs_to_crs_from_pj(context.get(), system.get(), target.get(), nullptr, nullptr) : nullptr);
    TProjObject eastFirst(both ? proj_normalize_for_visualization(context.get(), both.get()) : nullptr);
    if (!eastFirst)
        return {unknown, nullptr};
    return {TShapeConversionKind::ckConverted,
            std::make_shared<TProjConverter>(std::move(context), std::move(eastFirst))};
}

std::shared_ptr<IShapePointConverter> TSHapePointConverterFactory::GetObject(const QString& datum) {
    return GetConversion(datum).Converter;
}

TShapeConversion ConversionOf(const QString& shpFileName) {
    const QString prjFileName = ProjectionFileOf(shpFileName);
    if (FindSisterFile(prjFileName, QStringLiteral("prj")).isEmpty())
        return {TShapeConversionKind::ckUnstated, nullptr};
    return TSHapePointConverterFactory::GetConversion(GetDatum(prjFileName));
}

} // namespace lmx
