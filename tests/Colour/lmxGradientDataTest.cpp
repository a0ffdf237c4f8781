#include <lmx/Colour/lmxGradientData.h>
#include <lmx/Graphics/lmxGradient.h>
#include <lmx/Runtime/lmxFormatSettings.h>
#include <lmx/Runtime/lmxText.h>
#include <lmx/Runtime/lmxXml.h>
#include <tests/Support/Printers.h>

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <ostream>

namespace lmx {

static void PrintTo(const TStartEndAt& at, std::ostream* stream) {
    *stream << "kind " << static_cast<int>(at.Kind) << ", value " << at.Value;
}

static void PrintTo(const TColorStop& stop, std::ostream* stream) {
    *stream << stop.Location << ": " << std::hex << stop.Color << std::dec;
}

namespace {

using tests::MessageOf;
using TStops = std::vector<TColorStop>;

constexpr auto NotSpecified = TStartEndAtKind::sekNotSpecified;
constexpr auto AtMin = TStartEndAtKind::sekMin;
constexpr auto AtMax = TStartEndAtKind::sekMax;
constexpr auto AtValue = TStartEndAtKind::sekValue;
constexpr TFormatSettings Point{u'.'};
constexpr TFormatSettings Comma{u','};

TGradientGroup* AddGroup(IGradientData& data, TStartEndAt start, TStartEndAt end, std::vector<TColor32> colors) {
    auto group = std::make_unique<TGradientGroup>();
    group->SetStartAt(start);
    group->SetEndAt(end);
    group->GetColors() = std::move(colors);
    return data.GetGroups().Add(std::move(group));
}

std::shared_ptr<IGradientData> Load(const char* text) {
    const auto data = TGradientDataFactory::GetObject();
    data->LoadFromText(QString::fromUtf8(text));
    return data;
}

TEST(GradientData, GroupsCanBeReadOnly) {
    const std::shared_ptr<const IGradientData> data = TGradientDataFactory::GetObject();
    EXPECT_TRUE(data->GetGroups().IsEmpty());
}

TEST(GradientData, IsEmptyAfterConstruction) {
    const auto data = TGradientDataFactory::GetObject();
    EXPECT_TRUE(data->GetGroups().IsEmpty());
    EXPECT_EQ(data->GetFileName(), "");
    EXPECT_EQ(data->SaveToText(), "<?xml version=\"1.0\"?><gradient/>");
    EXPECT_EQ(MessageOf<EGradientDataException>([&] { data->CreateGradient(0, 1); }),
              "No color groups have been added");
}

struct TAtRow {
    const char* Text;
    TStartEndAt At;
};

class EndValue : public testing::TestWithParam<TAtRow> {};

TEST_P(EndValue, IsReadFromItsText) {
    const TFormatSettingsScope scope(Point);
    EXPECT_EQ(StringToStartEndAtValue(QString::fromUtf8(GetParam().Text)), GetParam().At);
}

INSTANTIATE_TEST_SUITE_P(Texts, EndValue,
                         testing::Values(TAtRow{"min", {AtMin, 0}}, TAtRow{"max", {AtMax, 0}},
                                         TAtRow{"1.5", {AtValue, 1.5}}, TAtRow{" -3e2 ", {AtValue, -300}},
                                         TAtRow{"0", {AtValue, 0}}, TAtRow{"1e39", {AtValue, 1e39}},
                                         TAtRow{"", {NotSpecified, 0}}, TAtRow{"Min", {NotSpecified, 0}},
                                         TAtRow{"MAX", {NotSpecified, 0}}, TAtRow{" min", {NotSpecified, 0}},
                                         TAtRow{"1,5", {NotSpecified, 0}}, TAtRow{"nan", {NotSpecified, 0}},
                                         TAtRow{"inf", {NotSpecified, 0}}, TAtRow{"middle", {NotSpecified, 0}}));

TEST(EndValues, AreWrittenWithFourDecimals) {
    const TFormatSettingsScope scope(Point);
    EXPECT_EQ(StartEndAtValueToString({AtMin, 5}), "min");
    EXPECT_EQ(StartEndAtValueToString({AtMax, 5}), "max");
    EXPECT_EQ(StartEndAtValueToString({AtValue, 1.23456}), "1.2346");
    EXPECT_EQ(StartEndAtValueToString({AtValue, -0.00001}), "0.0000");
    EXPECT_EQ(StartEndAtValueToString({NotSpecified, 5}), "");
}

TEST(EndValues, FollowTheCurrentFormatSettings) {
    const TFormatSettingsScope scope(Comma);
    EXPECT_EQ(StartEndAtValueToString({AtValue, 1.5}), "1,5000");
    EXPECT_EQ(StringToStartEndAtValue(QStringLiteral("1,5")), (TStartEndAt{AtValue, 1.5}));
    EXPECT_EQ(StringToStartEndAtValue(QStringLiteral("1.5")).Kind, NotSpecified);
}

struct TColorRow {
    const char* Text;
    TColor32 Color;
};

class ColorValue : public testing::TestWithParam<TColorRow> {};

TEST_P(ColorValue, IsReadFromItsText) {
    EXPECT_EQ(GradientDataColorValueToColor32(QString::fromUtf8(GetParam().Text)), GetParam().Color);
}

INSTANTIATE_TEST_SUITE_P(Texts, ColorValue,
                         testing::Values(TColorRow{"#FF112233", 0xFF112233U}, TColorRow{"#80aabbcc", 0x80AABBCCU},
                                         TColorRow{"255,0,0", 0xFFFF0000U}, TColorRow{"1,2,3,4", 0x04010203U},
                                         TColorRow{"10, 20, 30", 0xFF0A141EU}, TColorRow{"$0A,0x14,x1E", 0xFF0A141EU},
                                         TColorRow{"0,0,0,0", 0}, TColorRow{"00,0,0", 0xFF000000U}));

TEST(ColorValues, AreWrittenWithFourNumbers) {
    EXPECT_EQ(Color32ToGradientDataColorValue(0x04010203U), "1,2,3,4");
    EXPECT_EQ(Color32ToGradientDataColorValue(0xFFFFFFFFU), "255,255,255,255");
    EXPECT_EQ(Color32ToGradientDataColorValue(0), "0,0,0,0");
}

struct TMessageRow {
    const char* Text;
    const char* Message;
};

class BadColorValue : public testing::TestWithParam<TMessageRow> {};

TEST_P(BadColorValue, IsRefused) {
    EXPECT_EQ(
        MessageOf<EGradientDataException>([] { GradientDataColorValueToColor32(QString::fromUtf8(GetParam().Text)); }),
        GetParam().Message);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, BadColorValue,
    testing::Values(
        TMessageRow{"", "Color value length is invalid: "}, TMessageRow{"1,2", "Color value length is invalid: 1,2"},
        TMessageRow{"0,0,0", "Color value length is invalid: 0,0,0"},
        TMessageRow{"#FF00", "Color value length is invalid: #FF00"},
        TMessageRow{"100,200", "Comma-seperated color value is invalid: Comma-seperated color value is invalid"},
        TMessageRow{"1,2,3,4,5", "Comma-seperated color value is invalid: Comma-seperated color value is invalid"},
        TMessageRow{"FF112233", "Comma-seperated color value is invalid: Comma-seperated color value is invalid"},
        TMessageRow{"1,2,three", "Comma-seperated color value is invalid: 'three' is not a valid integer value"},
        TMessageRow{"10 ,2,3", "Comma-seperated color value is invalid: '10 ' is not a valid integer value"},
        TMessageRow{"1,2,3,", "Comma-seperated color value is invalid: '' is not a valid integer value"},
        TMessageRow{"1,2,256", "Comma-seperated color value is invalid: '256' is not a valid color component"},
        TMessageRow{"-1,2,3", "Comma-seperated color value is invalid: '-1' is not a valid color component"},
        TMessageRow{"#FF1122", "Hex color value is invalid: '#FF1122' is not a valid color value"},
        TMessageRow{"#FF11223G", "Hex color value is invalid: '#FF11223G' is not a valid color value"},
        TMessageRow{"#FF112233 ", "Hex color value is invalid: '#FF112233 ' is not a valid color value"}));

TEST(GradientData, ReadsGroupsAndColors) {
    const TFormatSettingsScope scope(Point);
    const auto data = Load("<gradient><group startAtValue='min' endAtValue='2.5'><color>255,0,0</color>"
                           "<color>#80112233</color></group><group startAtValue=\"3\"/></gradient>");
    ASSERT_EQ(data->GetGroups().Count(), 2);
    const TGradientGroup& first = *data->GetGroups()[0];
    EXPECT_EQ(first.GetStartAt(), (TStartEndAt{AtMin, 0}));
    EXPECT_EQ(first.GetEndAt(), (TStartEndAt{AtValue, 2.5}));
    EXPECT_EQ(first.GetColors(), (std::vector<TColor32>{0xFFFF0000U, 0x80112233U}));
    EXPECT_EQ(data->GetGroups()[1]->GetStartAt(), (TStartEndAt{AtValue, 3}));
    EXPECT_EQ(data->GetGroups()[1]->GetEndAt().Kind, NotSpecified);
    EXPECT_TRUE(data->GetGroups()[1]->GetColors().empty());
}

TEST(GradientData, SkipsWhatItDoesNotKnow) {
    const auto data = Load("<gradient version='9'>text<Group/><foreign><group/></foreign><!-- <group/> -->"
                           "<group name='x'>text<Color>bad</Color><color>1,2,3,4</color><stop/></group></gradient>");
    ASSERT_EQ(data->GetGroups().Count(), 1);
    EXPECT_EQ(data->GetGroups()[0]->GetColors(), std::vector<TColor32>{0x04010203U});
}

TEST(GradientData, WritesTheEndOfAGroupAsItsStart) {
    const TFormatSettingsScope scope(Point);
    const auto data = TGradientDataFactory::GetObject();
    AddGroup(*data, {AtMin, 0}, {AtMax, 0}, {0xFFFF0000U, 0x04010203U});
    AddGroup(*data, {AtValue, 1}, {AtValue, 2.5}, {});
    AddGroup(*data, {AtMin, 0}, {}, {});
    EXPECT_EQ(data->SaveToText(), "<?xml version=\"1.0\"?><gradient><group startAtValue=\"max\">"
                                  "<color>255,0,0,255</color><color>1,2,3,4</color></group>"
                                  "<group startAtValue=\"2.5000\"/><group startAtValue=\"\"/></gradient>");
}

TEST(GradientData, WhatWasWrittenHasNoEndWhenItIsReadBack) {
    const auto data = TGradientDataFactory::GetObject();
    AddGroup(*data, {AtMin, 0}, {AtMax, 0}, {0xFFFF0000U, 0xFF00FF00U});
    const auto read = TGradientDataFactory::GetObject();
    read->LoadFromText(data->SaveToText());
    ASSERT_EQ(read->GetGroups().Count(), 1);
    EXPECT_EQ(read->GetGroups()[0]->GetStartAt().Kind, AtMax);
    EXPECT_EQ(read->GetGroups()[0]->GetEndAt().Kind, NotSpecified);
    EXPECT_EQ(read->GetGroups()[0]->GetColors(), data->GetGroups()[0]->GetColors());
    EXPECT_EQ(MessageOf<EGradientDataException>([&] { read->CreateGradient(0, 1); }), "Not supported StartEndAtKind");
}

TEST(GradientData, GroupsAreReadFromAnyNode) {
    TXmlDocument document(QStringLiteral("anything"));
    document.GetRoot().SetAttribute(QStringLiteral("endAtValue"), QStringLiteral("max"));
    document.GetRoot().AddChild(QStringLiteral("color")).SetText(QStringLiteral("1,2,3,4"));
    const auto group = TGradientGroup::LoadFromNode(document.GetRoot());
    EXPECT_EQ(group->GetStartAt().Kind, NotSpecified);
    EXPECT_EQ(group->GetEndAt().Kind, AtMax);
    EXPECT_EQ(group->GetColors(), std::vector<TColor32>{0x04010203U});
}

class ForeignRoot : public testing::TestWithParam<const char*> {};

TEST_P(ForeignRoot, IsRefusedAndTheGroupsAreGone) {
    const auto data = Load("<gradient><group/></gradient>");
    EXPECT_EQ(MessageOf<EGradientDataException>([&] { data->LoadFromText(QString::fromUtf8(GetParam())); }),
              "Root node must be named \"gradient\"");
    EXPECT_TRUE(data->GetGroups().IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Roots, ForeignRoot,
                         testing::Values("<Gradient><group/></Gradient>", "<gradients/>", "<x><gradient/></x>",
                                         "<g:gradient xmlns:g='u'/>"));

TEST(GradientData, AFailureKeepsTheGroupsBeforeIt) {
    const auto data = Load("<gradient><group/></gradient>");
    EXPECT_EQ(MessageOf<EGradientDataException>([&] {
                  data->LoadFromText(QStringLiteral("<gradient><group/><group/><group><color>red</color></group>"
                                                    "<group/></gradient>"));
              }),
              "Color value length is invalid: red");
    EXPECT_EQ(data->GetGroups().Count(), 2);
    EXPECT_EQ(MessageOf<EXmlException>([&] { data->LoadFromText(QStringLiteral("<gradient>")); }),
              "Invalid XML in line 1: Start-end tags mismatch");
    EXPECT_TRUE(data->GetGroups().IsEmpty());
}

struct THostileRow {
    const char* Name;
    QString Text;
    const char* Message;
};

class HostileGradient : public testing::TestWithParam<THostileRow> {};

TEST_P(HostileGradient, IsRefusedByName) {
    QString message = QStringLiteral("nothing raised");
    try {
        TGradientDataFactory::GetObject()->LoadFromText(GetParam().Text);
    } catch (const Exception& failure) {
        message = failure.Message();
    }
    EXPECT_EQ(message, GetParam().Message);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, HostileGradient,
    testing::Values(
        THostileRow{"EntityBomb",
                    QStringLiteral("<!DOCTYPE gradient [<!ENTITY a \"0,0,0,0\"><!ENTITY b \"&a;&a;&a;&a;&a;&a;\">]>"
                                   "<gradient><group><color>&b;&b;&b;</color></group></gradient>"),
                    "Comma-seperated color value is invalid: Comma-seperated color value is invalid"},
        THostileRow{"TwoRoots", QStringLiteral("<gradient/><gradient/>"),
                    "Invalid XML in line 1: more than one root element"},
        THostileRow{"Nothing", QString(), "Invalid XML in line 1: no root element"},
        THostileRow{"NotXml", QStringLiteral("GRADIENT 1 2 3"), "Invalid XML in line 1: text outside the root element"},
        THostileRow{"DeepNesting", QStringLiteral("<gradient>").repeated(300000),
                    "Invalid XML in line 1: Start-end tags mismatch"},
        THostileRow{"NoColor", QStringLiteral("<gradient><group><color/></group></gradient>"),
                    "Color value length is invalid: "},
        THostileRow{"ColorInAChild",
                    QStringLiteral("<gradient><group><color><b>1,2,3,4</b></color></group></gradient>"),
                    "Color value length is invalid: "}),
    [](const auto& row) { return row.param.Name; });

TEST(GradientData, ReadsAMillionGroups) {
    constexpr int Count = 1000000;
    const auto data = TGradientDataFactory::GetObject();
    data->LoadFromText(QStringLiteral("<gradient>") + QStringLiteral("<group/>").repeated(Count) +
                       QStringLiteral("</gradient>"));
    EXPECT_EQ(data->GetGroups().Count(), Count);
    EXPECT_EQ(MessageOf<EGradientDataException>([&] { data->CreateGradient(0, 1); }), "Not supported StartEndAtKind");
}

TEST(GradientData, ReadsPastDeepNestingThatItDoesNotKnow) {
    constexpr int Depth = 300000;
    const auto data = TGradientDataFactory::GetObject();
    data->LoadFromText(QStringLiteral("<gradient>") + QStringLiteral("<group>").repeated(Depth) +
                       QStringLiteral("</group>").repeated(Depth) + QStringLiteral("</gradient>"));
    EXPECT_EQ(data->GetGroups().Count(), 1);
}

class GradientFile : public testing::Test {
protected:
    QString Path(const char* name) const { return Folder.filePath(QString::fromUtf8(name)); }

    QTemporaryDir Folder;
};

TEST_F(GradientFile, GivesTheDataItsName) {
    WriteFile(Path("a.xml"), "\xEF\xBB\xBF<gradient>\r\n<group startAtValue='min' endAtValue='max'/>\r\n</gradient>");
    const auto data = TGradientDataFactory::GetObject();
    data->LoadFromFile(Path("a.xml"));
    EXPECT_EQ(data->GetFileName(), Path("a.xml"));
    EXPECT_EQ(data->GetGroups().Count(), 1);
    data->LoadFromText(QStringLiteral("<gradient/>"));
    EXPECT_EQ(data->GetFileName(), "");
    data->LoadFromFile(Path("a.xml"));
    EXPECT_EQ(MessageOf<EGradientDataException>([&] { data->LoadFromText(QStringLiteral("<Gradient/>")); }),
              "Root node must be named \"gradient\"");
    EXPECT_EQ(data->GetFileName(), "");
}

TEST_F(GradientFile, HoldsTheTextInUtf8AndSavingKeepsTheName) {
    const auto data = Load("<gradient><group endAtValue='max'/></gradient>");
    data->SaveToFile(Path("b.xml"));
    EXPECT_EQ(data->GetFileName(), "");
    EXPECT_EQ(ReadFile(Path("b.xml")), data->SaveToText().toUtf8());
    EXPECT_EQ(MessageOf<EFileException>([&] {
                  data->SaveToFile(Path("no/such/folder.xml"));
              }).startsWith(Path("no/such/folder.xml") + QStringLiteral(": ")),
              true);
}

TEST_F(GradientFile, ThatIsMissingChangesNothing) {
    const auto data = Load("<gradient><group/></gradient>");
    EXPECT_TRUE(MessageOf<EFileException>([&] {
                    data->LoadFromFile(Path("missing.xml"));
                }).startsWith(Path("missing.xml") + QStringLiteral(": ")));
    EXPECT_EQ(data->GetGroups().Count(), 1);
}

TEST_F(GradientFile, ThatIsDamagedSaysWhich) {
    const auto data = TGradientDataFactory::GetObject();
    WriteFile(Path("good.xml"), "<gradient><group/></gradient>");
    WriteFile(Path("bad.xml"), "<gradient>\n<group></gradient>");
    WriteFile(Path("latin.xml"), "<gradient><!-- \xF6 --></gradient>");
    WriteFile(Path("root.xml"), "<Gradient/>");
    data->LoadFromFile(Path("good.xml"));
    EXPECT_EQ(MessageOf<EFileFormatException>([&] { data->LoadFromFile(Path("bad.xml")); }),
              Path("bad.xml") + QStringLiteral(": Invalid XML in line 2: Start-end tags mismatch"));
    EXPECT_EQ(data->GetFileName(), "");
    EXPECT_TRUE(data->GetGroups().IsEmpty());
    EXPECT_EQ(MessageOf<EFileFormatException>([&] { data->LoadFromFile(Path("latin.xml")); }),
              Path("latin.xml") + QStringLiteral(": Invalid XML: not a text in UTF-8, UTF-16 or UTF-32"));
    EXPECT_EQ(MessageOf<EGradientDataException>([&] { data->LoadFromFile(Path("root.xml")); }),
              "Root node must be named \"gradient\"");
    EXPECT_EQ(data->GetFileName(), "");
}

TStops StopsOf(const IGradientData& data, double min, double max) {
    return data.CreateGradient(min, max)->GetColorStops();
}

TEST(GradientOfData, SpreadsColorsEvenlyOverAnyRange) {
    const auto data = TGradientDataFactory::GetObject();
    AddGroup(*data, {AtMin, 0}, {AtMax, 0}, {1, 2, 3});
    for (const auto& [min, max] : {std::pair(0.0, 1.0), std::pair(-50.0, 50.0), std::pair(0.1, 0.7),
                                   std::pair(0.0, 5e-5), std::pair(223.15, 323.15), std::pair(-1e300, 1e300)})
        EXPECT_EQ(StopsOf(*data, min, max), (TStops{{0, 1}, {0.5, 2}, {1, 3}})) << min << " to " << max;
}

TEST(GradientOfData, ComputesPositionsInExtendedAndRoundsThemOnce) {
    const auto data = TGradientDataFactory::GetObject();
    AddGroup(*data, {AtValue, 0.1}, {AtValue, 40.7}, std::vector<TColor32>(98, 1));
    constexpr double min = -1.3;
    constexpr double max = 32.9;
    const TStops stops = StopsOf(*data, min, max);
    ASSERT_EQ(stops.size(), 98U);
    int differing = 0;
    for (int i = 0; i < 98; ++i) {
        const double position = stops[static_cast<std::size_t>(i)].Location;
        const long double step = (static_cast<long double>(40.7) - static_cast<long double>(0.1)) / 97;
        ASSERT_EQ(position, static_cast<double>((i * step + 0.1 - min) / (static_cast<long double>(max) - min))) << i;
        differing += position != (i * ((40.7 - 0.1) / 97) + 0.1 - min) / (max - min);
    }
    EXPECT_GT(differing, 0) << "doubles would do as well, so this tests nothing";
}

TEST(GradientOfData, IsANewOneEachTime) {
    const auto data = TGradientDataFactory::GetObject();
    AddGroup(*data, {AtMin, 0}, {AtMax, 0}, {1, 2});
    const auto first = data->CreateGradient(0, 1);
    first->GetColorStops().clear();
    EXPECT_EQ(StopsOf(*data, 0, 1), (TStops{{0, 1}, {1, 2}}));
}

TEST(GradientOfData, JoinsGroupsInTheirOrder) {
    const auto data = TGradientDataFactory::GetObject();
    AddGroup(*data, {AtValue, 0}, {AtMax, 0}, {3, 4});
    AddGroup(*data, {AtMin, 0}, {AtValue, 0}, {1, 2});
    EXPECT_EQ(StopsOf(*data, -10, 10), (TStops{{0.5, 3}, {1, 4}, {0, 1}, {0.5, 2}}));
}

struct TGroupRow {
    const char* Name;
    TStartEndAt Start;
    TStartEndAt End;
    double Min;
    double Max;
    TStops Stops; ///< of colours 1 and 2
};

class GroupInARange : public testing::TestWithParam<TGroupRow> {};

TEST_P(GroupInARange, GivesItsStopsOrNone) {
    const auto data = TGradientDataFactory::GetObject();
    AddGroup(*data, GetParam().Start, GetParam().End, {1, 2});
    EXPECT_EQ(StopsOf(*data, GetParam().Min, GetParam().Max), GetParam().Stops);
}

constexpr TStartEndAt Min{AtMin, 0};
constexpr TStartEndAt Max{AtMax, 0};

constexpr TStartEndAt At(double value) {
    return {AtValue, value};
}

INSTANTIATE_TEST_SUITE_P(Rows, GroupInARange,
                         testing::Values(TGroupRow{"Inside", At(1), At(3), 0, 4, {{0.25, 1}, {0.75, 2}}},
                                         TGroupRow{"StartsAbove", At(10), At(20), 0, 5, {}},
                                         TGroupRow{"EndsBelow", At(-20), At(-10), 0, 5, {}},
                                         TGroupRow{"ReachesAbove", At(3), At(20), 0, 5, {{0.6, 1}, {4, 2}}},
                                         TGroupRow{"ReachesBelow", At(-5), At(5), 0, 5, {{-1, 1}, {1, 2}}},
                                         TGroupRow{"TouchesTheMaximum", At(5), At(10), 0, 5, {{1, 1}, {2, 2}}},
                                         TGroupRow{"TouchesTheMinimum", At(-5), At(0), 0, 5, {{-1, 1}, {0, 2}}},
                                         TGroupRow{"TurnedOver", Max, Min, 0, 5, {{1, 1}, {0, 2}}},
                                         TGroupRow{"EndsBeforeItStarts", At(4), At(1), 0, 5, {{0.8, 1}, {0.2, 2}}},
                                         TGroupRow{"FromTheMinimum", Min, At(1), 0, 5, {{0, 1}, {0.2, 2}}},
                                         TGroupRow{"SkippedWithoutAnEnd", At(10), {}, 0, 5, {}},
                                         TGroupRow{"SkippedWithoutAStart", {}, At(-1), 0, 5, {}}),
                         [](const auto& row) { return row.param.Name; });

TEST(GradientOfData, NeedsBothEndsOfAGroupInTheRange) {
    for (const auto& [start, end] : {std::pair(TStartEndAt{}, Max), std::pair(Min, TStartEndAt{}),
                                     std::pair(TStartEndAt{}, TStartEndAt{}), std::pair(TStartEndAt{}, At(7))}) {
        const auto data = TGradientDataFactory::GetObject();
        AddGroup(*data, start, end, {});
        EXPECT_EQ(MessageOf<EGradientDataException>([&, &range = *data] { range.CreateGradient(0, 5); }),
                  "Not supported StartEndAtKind");
    }
}

TEST(GradientOfData, AGroupOfOneColorHasAStopWithoutAPlace) {
    const auto data = TGradientDataFactory::GetObject();
    AddGroup(*data, Min, Max, {1});
    const TStops stops = StopsOf(*data, 0, 5);
    ASSERT_EQ(stops.size(), 1U);
    EXPECT_TRUE(std::isnan(stops[0].Location));
    EXPECT_EQ(stops[0].Color, 1U);
    EXPECT_EQ(data->CreateGradient(0, 5)->GetColor(0.5), 0U);
}

TEST(GradientOfData, AGroupWithoutColorsHasNoStops) {
    const auto data = TGradientDataFactory::GetObject();
    AddGroup(*data, Min, Max, {});
    EXPECT_EQ(StopsOf(*data, 0, 5), TStops{});
}

TEST(GradientOfData, ARangeOfOneValueHasNoPlaces) {
    const auto data = TGradientDataFactory::GetObject();
    AddGroup(*data, Min, At(6), {1, 2});
    const TStops stops = StopsOf(*data, 5, 5);
    ASSERT_EQ(stops.size(), 2U);
    EXPECT_TRUE(std::isnan(stops[0].Location));
    EXPECT_EQ(stops[1].Location, std::numeric_limits<double>::infinity());
}

} // namespace
} // namespace lmx
