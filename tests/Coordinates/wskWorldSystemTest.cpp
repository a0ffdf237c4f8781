#include <lmx/Coordinates/wskWorldSystem.h>
#include <lmx/Formats/Idrisi/lmxImageHeader.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Support/CoordinatePrinters.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

namespace lmx {
namespace {

using tests::MessageOf;

std::shared_ptr<IWorldSystem> LatLon() {
    return TLatLonWorldSystemFactory::GetObject();
}
std::shared_ptr<IWorldSystem> Antimeridian() {
    return TLatLonAntimeridianWorldSystemFactory::GetObject();
}
std::shared_ptr<IWorldSystem> Nzmg() {
    return TNZMGWorldSystemFactory::GetObject();
}

TMapArea Piece(const TMapArea& area, extended xTranslate, extended yTranslate = 0) {
    TMapArea piece = area;
    piece.XTranslate = xTranslate;
    piece.YTranslate = yTranslate;
    return piece;
}

// ---- Names and shapes

struct TSystemRow {
    std::shared_ptr<IWorldSystem> (*System)();
    const char *Name, *Identifier, *Units, *Group;
    TMeridian Meridian;
    TMapArea Area;
};

class WorldSystem : public testing::TestWithParam<TSystemRow> {};

TEST_P(WorldSystem, HasItsNamesAndItsArea) {
    const TSystemRow& row = GetParam();
    const auto system = row.System();
    EXPECT_EQ(system->Name(), row.Name);
    EXPECT_EQ(system->Identifier(), row.Identifier);
    EXPECT_EQ(system->Units(), row.Units);
    EXPECT_EQ(system->GetGroup(), row.Group);
    EXPECT_EQ(system->Merdian(), row.Meridian);
    EXPECT_EQ(system->Area(), row.Area);
    EXPECT_EQ(system->GetOrientation(), (TMapOrientation{1, -1}));
    EXPECT_EQ(system, row.System()) << "one shared instance";
    EXPECT_EQ(system, TWorldSystemFactory::GetObject(QString::fromLatin1(row.Identifier)));
}

TEST_P(WorldSystem, CreatesAreasFromLeftBottomRightTop) {
    EXPECT_EQ(GetParam().System()->CreateMapArea(1, 2, 3, 4), TMapArea(1, 4, 3, 2));
}

TEST_P(WorldSystem, ConstrainsAreasToTheWorldAndDropsTheirTranslation) {
    const auto system = GetParam().System();
    const TMapArea& world = GetParam().Area;
    EXPECT_EQ(system->ConstrainRect(Piece({-1e7L, 1e7L, 1e7L, -1e7L}, 5, 6)), world);
    const TMapArea inside(world.Left + 1, world.Top - 2, world.Right - 3, world.Bottom + 4);
    EXPECT_EQ(system->ConstrainRect(Piece(inside, 5)), inside);
}

INSTANTIATE_TEST_SUITE_P(Systems, WorldSystem,
                         testing::Values(TSystemRow{LatLon, "Lat/lon", "latlon", "Degrees", "latlon",
                                                    TMeridian::mrdPrimeMeridian, TMapArea(-180, 90, 180, -90)},
                                         TSystemRow{Antimeridian, "Lat/lon (Antimeridian)", "latlonAntimerdian",
                                                    "Degrees", "latlon", TMeridian::mrdAntiMeridian,
                                                    TMapArea(0, 90, 360, -90)},
                                         TSystemRow{Nzmg, "New Zealand Map Grid (NZMG)", "nzmg", "Metres", "plane",
                                                    TMeridian::mrdNA, TMapArea(1900000, 7000000, 3100000, 5000000)}),
                         [](const auto& row) { return row.param.Identifier; });

// ---- Areas over the seam

struct TTranslateRow {
    const char* Name;
    std::shared_ptr<IWorldSystem> (*System)();
    TMapArea Area;
    bool Required;
    std::vector<TMapArea> Pieces;
};

class TranslateArea : public testing::TestWithParam<TTranslateRow> {};

TEST_P(TranslateArea, CutsAtTheSeam) {
    const TTranslateRow& row = GetParam();
    EXPECT_EQ(row.System()->IsTranslationRequired(row.Area), row.Required);
    EXPECT_EQ(row.System()->TranslateArea(row.Area), row.Pieces);
}

INSTANTIATE_TEST_SUITE_P(
    Areas, TranslateArea,
    testing::Values(
        TTranslateRow{
            "Over180", LatLon, {170, 10, 190, -10}, true, {{170, 10, 180, -10}, Piece({180, 10, 190, -10}, -360)}},
        TTranslateRow{"Beyond180", LatLon, {190, 10, 200, -10}, true, {Piece({190, 10, 200, -10}, -360)}},
        TTranslateRow{"Within180", LatLon, {10, 10, 20, -10}, false, {{10, 10, 20, -10}}},
        TTranslateRow{"UpToExactly180", LatLon, {170, 10, 180, -10}, false, {{170, 10, 180, -10}}},
        TTranslateRow{"FromExactly180",
                      LatLon,
                      {180, 10, 190, -10},
                      true,
                      {{180, 10, 180, -10}, Piece({180, 10, 190, -10}, -360)}},
        TTranslateRow{
            "WholeWorldFrom0", LatLon, {0, 90, 360, -90}, true, {{0, 90, 180, -90}, Piece({180, 90, 360, -90}, -360)}},
        TTranslateRow{"InvertedBeyond180", LatLon, {190, 10, 170, -10}, true, {Piece({190, 10, 170, -10}, -360)}},
        TTranslateRow{"KeepsOtherTranslations",
                      LatLon,
                      Piece({170, 10, 190, -10}, 7, 8),
                      true,
                      {Piece({170, 10, 180, -10}, 7, 8), Piece({180, 10, 190, -10}, -360, 8)}},
        TTranslateRow{
            "Over0", Antimeridian, {-10, 10, 10, -10}, true, {{0, 10, 10, -10}, Piece({-10, 10, 0, -10}, 360)}},
        TTranslateRow{"Beyond0", Antimeridian, {-20, 10, -10, -10}, true, {Piece({-20, 10, -10, -10}, 360)}},
        TTranslateRow{"Within0", Antimeridian, {10, 10, 350, -10}, false, {{10, 10, 350, -10}}},
        TTranslateRow{"FromExactly0", Antimeridian, {0, 10, 10, -10}, false, {{0, 10, 10, -10}}},
        TTranslateRow{
            "UpToExactly0", Antimeridian, {-10, 10, 0, -10}, true, {{0, 10, 0, -10}, Piece({-10, 10, 0, -10}, 360)}},
        TTranslateRow{"InvertedBeyond0", Antimeridian, {10, 10, -10, -10}, true, {Piece({10, 10, -10, -10}, 360)}},
        TTranslateRow{"Beyond360IsNoSeam", Antimeridian, {350, 10, 370, -10}, false, {{350, 10, 370, -10}}},
        TTranslateRow{"NoSeam", Nzmg, Piece({-1, 10, 1e9L, -10}, 3, 4), false, {Piece({-1, 10, 1e9L, -10}, 3, 4)}}),
    [](const auto& row) { return row.param.Name; });

// ---- Points

struct TFoldRow {
    const char* Name;
    std::shared_ptr<IWorldSystem> (*System)();
    TMapPoint Point;
    bool IsWorldPoint;
    TMapPoint Folded;
};

class FoldPoint : public testing::TestWithParam<TFoldRow> {};

TEST_P(FoldPoint, IntoTheLongitudesOfTheWorld) {
    const TFoldRow& row = GetParam();
    EXPECT_EQ(row.System()->IsWorldPoint(row.Point), row.IsWorldPoint);
    EXPECT_EQ(row.System()->ToWorldPoint(row.Point), row.Folded);
    const TMapArea area = Piece({row.Point.X, 1, row.Point.X, 2}, 5, 6);
    EXPECT_EQ(row.System()->ToWorldArea(area), Piece({row.Folded.X, 1, row.Folded.X, 2}, 5, 6));
}

INSTANTIATE_TEST_SUITE_P(Points, FoldPoint,
                         testing::Values(TFoldRow{"East", LatLon, {190, 5}, true, {-170, 5}},
                                         TFoldRow{"Exactly180", LatLon, {180, 5}, false, {180, 5}},
                                         TFoldRow{"West", LatLon, {-190, 5}, false, {-190, 5}},
                                         TFoldRow{"Negative", Antimeridian, {-10, 5}, true, {350, 5}},
                                         TFoldRow{"Exactly0", Antimeridian, {0, 5}, false, {0, 5}},
                                         TFoldRow{"Over360", Antimeridian, {370, 5}, false, {370, 5}},
                                         TFoldRow{"InsideTheGrid", Nzmg, {2500000, 6000000}, true, {2500000, 6000000}},
                                         TFoldRow{"OutsideTheGrid", Nzmg, {-10, 5}, false, {-10, 5}}),
                         [](const auto& row) { return row.param.Name; });

TEST(WorldSystemPoints, UnfoldOnlyIntoAnAreaOverTheSeam) {
    const TMapArea plain(10, 10, 20, -10);
    EXPECT_EQ(LatLon()->ToLocalPoint({170, 10, 190, -10}, {-175, 3}), TMapPoint(185, 3));
    EXPECT_EQ(LatLon()->ToLocalPoint({170, 10, 190, -10}, {175, 3}), TMapPoint(175, 3));
    EXPECT_EQ(LatLon()->ToLocalPoint(plain, {-175, 3}), TMapPoint(-175, 3));
    EXPECT_EQ(Antimeridian()->ToLocalPoint({-10, 10, 10, -10}, {-5, 3}), TMapPoint(355, 3));
    EXPECT_EQ(Antimeridian()->ToLocalPoint({-10, 10, 10, -10}, {355, 3}), TMapPoint(355, 3)) << "not folded back";
    EXPECT_EQ(Antimeridian()->ToLocalPoint(plain, {-5, 3}), TMapPoint(-5, 3));
    EXPECT_EQ(Nzmg()->ToLocalPoint({-10, 10, 10, -10}, {-5, 3}), TMapPoint(-5, 3));
}

TEST(WorldSystemPoints, WrapWhenOneLiesBeyondTheSeam) {
    EXPECT_TRUE(LatLon()->Wraps({170, 0}, {190, 0}));
    EXPECT_TRUE(LatLon()->Wraps({190, 0}, {170, 0}));
    EXPECT_FALSE(LatLon()->Wraps({170, 0}, {175, 0}));
    EXPECT_FALSE(LatLon()->Wraps({190, 0}, {200, 0}));
    EXPECT_FALSE(LatLon()->Wraps({170, 0}, {180, 0}));
    EXPECT_TRUE(Antimeridian()->Wraps({-10, 0}, {10, 0}));
    EXPECT_FALSE(Antimeridian()->Wraps({0, 0}, {10, 0}));
    EXPECT_FALSE(Nzmg()->Wraps({2500000, 6000000}, {0, 0}));
}

// ---- Factory

TEST(WorldSystemFactory, TakesIdentifiersLetterByLetter) {
    EXPECT_EQ(TWorldSystemFactory::GetObject(QStringLiteral("Latlon")), nullptr);
    EXPECT_EQ(TWorldSystemFactory::GetObject(QStringLiteral("latlonAntimeridian")), nullptr);
    EXPECT_EQ(TWorldSystemFactory::GetObject(QString()), nullptr);
}

TEST(WorldSystemFactory, GivesTheSystemsOfAGroupInOrder) {
    using TSystems = std::vector<std::shared_ptr<IWorldSystem>>;
    EXPECT_EQ(TWorldSystemFactory::GetObjects(QStringLiteral("latlon")), (TSystems{LatLon(), Antimeridian()}));
    EXPECT_EQ(TWorldSystemFactory::GetObjects(QStringLiteral("plane")), TSystems{Nzmg()});
    EXPECT_TRUE(TWorldSystemFactory::GetObjects(QStringLiteral("Plane")).empty());
}

// ---- TWorldMapArea

TImageHeader Header(const QString& referenceSystem, float minX, float maxX) {
    TImageHeader header;
    header.SetRefSystem(referenceSystem);
    header.SetMinX(minX);
    header.SetMaxX(maxX);
    header.SetMinY(-47.1F);
    header.SetMaxY(-34.3F);
    return header;
}

TEST(WorldMapArea, NeedsASystemAndAHeader) {
    EXPECT_EQ(MessageOf<EExArgumentNilException>([] { TWorldMapArea(TMapArea(), nullptr); }),
              "TWorldMapArea.Create: argument WorldSystemVal is nil");
    EXPECT_EQ(MessageOf<EExArgumentNilException>([] { TWorldMapArea(static_cast<const TImageHeader*>(nullptr)); }),
              "TWorldMapArea.Create: argument IdrisiImageHeader is nil");
    try {
        TWorldMapArea(TMapArea(), nullptr);
    } catch (const EExArgumentNilException& failure) {
        EXPECT_EQ(failure.Routine(), "TWorldMapArea.Create");
        EXPECT_EQ(failure.Argument(), "WorldSystemVal");
    }
}

struct THeaderRow {
    const char* Name;
    const char* ReferenceSystem;
    float MinX, MaxX;
    std::shared_ptr<IWorldSystem> (*System)();
};

class WorldMapAreaOfHeader : public testing::TestWithParam<THeaderRow> {};

TEST_P(WorldMapAreaOfHeader, TakesItsBoundsAndPicksTheSystem) {
    const THeaderRow& row = GetParam();
    const TImageHeader header = Header(QString::fromLatin1(row.ReferenceSystem), row.MinX, row.MaxX);
    const TWorldMapArea area(&header);
    EXPECT_EQ(area.WorldSystem, row.System());
    EXPECT_EQ(area.Area, TMapArea(row.MinX, static_cast<extended>(-34.3F), row.MaxX, static_cast<extended>(-47.1F)));
}

INSTANTIATE_TEST_SUITE_P(Headers, WorldMapAreaOfHeader,
                         testing::Values(THeaderRow{"Plane", "nzmg", 190, 200, Nzmg},
                                         THeaderRow{"Within180", "latlong", 166.1F, 178.9F, LatLon},
                                         THeaderRow{"UpToExactly180", "latlong", -180, 180, LatLon},
                                         THeaderRow{"RightBeyond180", "latlong", 160, 190, Antimeridian},
                                         THeaderRow{"LeftBeyond180", "latlong", 190, -170, Antimeridian}),
                         [](const auto& row) { return row.param.Name; });

TEST(WorldMapArea, EqualsNeedsTheSameSystemAndTheSameArea) {
    const TMapArea area(1, 2, 3, 4);
    EXPECT_EQ(TWorldMapArea(area, LatLon()), TWorldMapArea(area, LatLon()));
    EXPECT_FALSE(TWorldMapArea(area, LatLon()) == TWorldMapArea(area, Antimeridian()));
    EXPECT_FALSE(TWorldMapArea(area, LatLon()).Equals(TWorldMapArea(TMapArea(1, 2, 3, 5), LatLon())));
}

} // namespace
} // namespace lmx
