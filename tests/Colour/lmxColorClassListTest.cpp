#include <lmx/Colour/lmxColorClassList.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxFormatSettings.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <ostream>

namespace lmx {

// Tests compare classes field by field.
static bool operator==(const TColorClass& a, const TColorClass& b) {
    return a.GetName() == b.GetName() && a.GetMinValue() == b.GetMinValue() && a.GetMaxValue() == b.GetMaxValue() &&
           a.GetColor() == b.GetColor();
}

static void PrintTo(const TColorClass& item, std::ostream* stream) {
    *stream << item.Serialize().toStdString();
}

namespace {

using tests::MessageOf;

constexpr float NaN = std::numeric_limits<float>::quiet_NaN();
constexpr float Inf = std::numeric_limits<float>::infinity();
constexpr TFormatSettings Point{u'.'};
constexpr TFormatSettings Comma{u','};

using TClasses = std::vector<TColorClass>;

TClasses ContentOf(IColorClasses& list) {
    TClasses classes;
    for (const TColorClass* item : list.GetClasses())
        classes.emplace_back(item);
    return classes;
}

/// Classes of the bounds, with the names "0", "1" and so on.
std::shared_ptr<IColorClasses> ListOf(const std::vector<std::pair<float, float>>& bounds) {
    const auto list = TColorClassesFactory::GetObject();
    for (const auto& [min, max] : bounds)
        list->GetClasses().Add(
            std::make_unique<TColorClass>(QString(QChar(u'0' + list->GetClasses().Count())), min, max, 1));
    return list;
}

TEST(ColorClass, IsEmptyAfterConstruction) {
    EXPECT_EQ(TColorClass(), TColorClass(QString(), 0, 0, 0));
}

TEST(ColorClass, CopiesAnother) {
    const TColorClass source(QStringLiteral("Dry"), 0, 50, 0xFF804020U);
    EXPECT_EQ(TColorClass(&source), source);
    EXPECT_EQ(MessageOf<EExArgumentNilException>([] { TColorClass item(static_cast<const TColorClass*>(nullptr)); }),
              "TColorClass.Create: argument source is nil");
}

TEST(ColorClass, HoldsBothItsEnds) {
    const TColorClass item({}, 0, 10, 0);
    EXPECT_TRUE(item.InRange(0));
    EXPECT_TRUE(item.InRange(10));
    EXPECT_FALSE(item.InRange(std::nextafter(10.0F, 11.0F)));
    EXPECT_FALSE(item.InRange(std::nextafter(0.0F, -1.0F)));
    EXPECT_EQ(item.GetRange(), TValueRange(0, 10));
}

TEST(ColorClass, HoldsNothingWhereAComparisonHasNoOrder) {
    EXPECT_FALSE(TColorClass({}, 0, 10, 0).InRange(NaN));
    EXPECT_FALSE(TColorClass({}, NaN, 10, 0).InRange(5));
    EXPECT_FALSE(TColorClass({}, 0, NaN, 0).InRange(5));
    EXPECT_FALSE(TColorClass({}, 10, 0, 0).InRange(5)); // turned over
    EXPECT_TRUE(TColorClass({}, -Inf, Inf, 0).InRange(Inf));
}

TEST(ColorClass, IsLabelledByItsNameAsItStands) {
    EXPECT_EQ(TColorClass(QStringLiteral("  Dry "), 0, 50, 0).GetLabel(), "  Dry ");
}

TEST(ColorClass, WithABlankNameIsLabelledByItsRange) {
    const TFormatSettingsScope scope(Point);
    for (const char* name : {"", " ", "\t \n"})
        EXPECT_EQ(TColorClass(QString::fromUtf8(name), 0.5F, 50, 0).GetLabel(), "0.5 - 50");
    EXPECT_EQ(TColorClass(QString(QChar(0xA0)), 0, 50, 0).GetLabel(), QString(QChar(0xA0))); // no blank to us
}

TEST(ColorClass, WritesNameBoundsAndColor) {
    const TFormatSettingsScope scope(Point);
    EXPECT_EQ(TColorClass(QStringLiteral("Dry"), 0, 50, 0xFF804020U).Serialize(),
              R"(("Dry":0.0000:50.0000:#FF804020))");
    EXPECT_EQ(TColorClass(QStringLiteral("a\"b\\c\nd%s"), -1.23456F, 1e10F, 0).Serialize(),
              R"(("a\"b\\c\nd%s":-1.2346:10000000000.0000:#00000000))");
}

TEST(ColorClass, WritesBoundsInTheCurrentFormatSettings) {
    const TFormatSettingsScope scope(Comma);
    const TColorClass item(QStringLiteral("x"), 0.5F, 1.5F, 1);
    EXPECT_EQ(item.Serialize(), R"(("x":0,5000:1,5000:#00000001))");
    TColorClass read;
    read.DeSerialize(item.Serialize());
    EXPECT_EQ(read, item);
}

TEST(ColorClass, KeepsFourDecimalsOfItsBounds) {
    TColorClass read;
    read.DeSerialize(TColorClass({}, 1.23456F, -0.00004F, 0).Serialize());
    EXPECT_EQ(read, TColorClass({}, 1.2346F, 0, 0));
}

TEST(ColorClass, ABoundThatIsNoFiniteNumberIsWrittenAndNotRead) {
    const QString text = TColorClass({}, -Inf, 0, 0).Serialize();
    EXPECT_EQ(MessageOf<EConvertError>([&] { TColorClass().DeSerialize(text); }),
              "'-INF' is not a valid floating point value");
}

class ColorClassName : public testing::TestWithParam<const char*> {};

TEST_P(ColorClassName, NeverDisturbsTheParsing) {
    const TColorClass item(QString::fromUtf8(GetParam()), 1, 2, 3);
    TColorClass read;
    read.DeSerialize(item.Serialize());
    EXPECT_EQ(read, item);
    const TColorClass* const twice[] = {&item, &item};
    const auto list = TColorClassesFactory::GetObject(twice);
    EXPECT_EQ(ContentOf(*TColorClassesFactory::GetObject(list->Serialize())), (TClasses{item, item}));
}

INSTANTIATE_TEST_SUITE_P(Names, ColorClassName,
                         testing::Values("", "plain", " blanks ", "a:b", "a)b", ":):(,", "),(", "(x:1:2:#00000000)",
                                         "Größe 10 µm – 雨"));

TEST(ColorClass, ANameGrowsByItsEscapesAtEachRoundTrip) {
    TColorClass item(QStringLiteral("a\"b\\"), 1, 2, 3);
    item.DeSerialize(item.Serialize());
    EXPECT_EQ(item.GetName(), R"(a\"b\\)");
    item.DeSerialize(item.Serialize());
    EXPECT_EQ(item.GetName(), R"(a\\\"b\\\\)");
}

TEST(ColorClass, IgnoresWhatFollowsItsParenthesis) {
    TColorClass item;
    item.DeSerialize(QStringLiteral("(\"a\": 1 :2e1:#ff00FF00)rest"));
    EXPECT_EQ(item, TColorClass(QStringLiteral("a"), 1, 20, 0xFF00FF00U));
}

TEST(ColorClass, RefusesAnEmptyTextByTheArgumentsName) {
    EXPECT_EQ(MessageOf<EArgumentException>([] { TColorClass().DeSerialize({}); }), "Str");
}

struct TShapeRow {
    const char* Text;
    const char* Message;
};

class ShapelessColorClass : public testing::TestWithParam<TShapeRow> {};

TEST_P(ShapelessColorClass, SaysWhatIsMissingAndChangesNothing) {
    const TColorClass before(QStringLiteral("before"), 1, 2, 3);
    TColorClass item = before;
    EXPECT_EQ(MessageOf<Exception>([&] { item.DeSerialize(QString::fromUtf8(GetParam().Text)); }), GetParam().Message);
    EXPECT_EQ(item, before);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, ShapelessColorClass,
    testing::Values(TShapeRow{"[\"a\":1:2:#FF000000)", "Expected: ("},
                    TShapeRow{" (\"a\":1:2:#FF000000)", "Expected: ("}, TShapeRow{"(", "Expected: \""},
                    TShapeRow{"(a:1:2:#FF000000)", "Expected: \""}, TShapeRow{"( \"a\":1:2:#FF000000)", "Expected: \""},
                    TShapeRow{"(\"", "Expected: :"}, TShapeRow{"(\"a:1:2:#FF000000)", "Expected: :"},
                    TShapeRow{"(\"a\\\":1:2:#FF000000)", "Expected: :"}, TShapeRow{"(\"a\"", "Expected: :"},
                    TShapeRow{"(\"a\" :1:2:#FF000000)", "Expected: :"}, TShapeRow{"(\"a\":", "Expected: :"},
                    TShapeRow{"(\"a\":1", "Expected: :"}, TShapeRow{"(\"a\":1:2#FF000000)", "Expected: :"},
                    TShapeRow{"(\"a\":1:2:", "Expected: )"}, TShapeRow{"(\"a\":1:2:#FF000000", "Expected: )"},
                    TShapeRow{"(\"a\":1:2:#FF00000)", "Expected: )"},
                    TShapeRow{"(\"a\":1:2:#FF0000000)", "Expected: )"},
                    TShapeRow{"(\"a\":1:2: #FF000000)", "Expected: )"}));

struct TValueRow {
    const char* Text;
    const char* Message;
    TColorClass After;
};

class ColorClassWithABadValue : public testing::TestWithParam<TValueRow> {};

TEST_P(ColorClassWithABadValue, KeepsWhatWasReadBeforeIt) {
    const TFormatSettingsScope scope(Point);
    TColorClass item(QStringLiteral("before"), 1, 2, 3);
    EXPECT_EQ(MessageOf<EConvertError>([&] { item.DeSerialize(QString::fromUtf8(GetParam().Text)); }),
              GetParam().Message);
    EXPECT_EQ(item, GetParam().After);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, ColorClassWithABadValue,
    testing::Values(TValueRow{"(\"a\":x:8:#FF000000)", "'x' is not a valid floating point value", {"a", 1, 2, 3}},
                    TValueRow{"(\"a\"::8:#FF000000)", "'' is not a valid floating point value", {"a", 1, 2, 3}},
                    TValueRow{"(\"a\":1e39:8:#FF000000)", "'1e39' is not a valid floating point value", {"a", 1, 2, 3}},
                    TValueRow{"(\"a\":7,5:8:#FF000000)", "'7,5' is not a valid floating point value", {"a", 1, 2, 3}},
                    TValueRow{"(\"a\":7:x:#FF000000)", "'x' is not a valid floating point value", {"a", 7, 2, 3}},
                    TValueRow{"(\"a\":7:8:#FF0000XX)", "'#FF0000XX' is not a valid color value", {"a", 7, 8, 3}},
                    TValueRow{"(\"a\":7:8:0FF000000)", "'0FF000000' is not a valid color value", {"a", 7, 8, 3}}));

struct TListRow {
    const char* Name;
    const char* Text;
    TClasses Classes;
};

class ColorClassesText : public testing::TestWithParam<TListRow> {};

TEST_P(ColorClassesText, GivesTheClassesBeforeItsMalformedTail) {
    const auto list = ListOf({{8, 9}});
    list->DeSerialize(QString::fromUtf8(GetParam().Text));
    EXPECT_EQ(ContentOf(*list), GetParam().Classes);
    EXPECT_EQ(DeSerializeColorClasses(QString::fromUtf8(GetParam().Text)).size(), GetParam().Classes.size());
}

const TColorClass A(QStringLiteral("a"), 1, 2, 0xFF000000U);
const TColorClass B(QStringLiteral("b"), 3, 4, 0xFF00FF00U);
#define A_TEXT "(\"a\":1:2:#FF000000)"
#define B_TEXT "(\"b\":3:4:#FF00FF00)"

INSTANTIATE_TEST_SUITE_P(
    Texts, ColorClassesText,
    testing::Values(TListRow{"Empty", "", {}}, TListRow{"OneCharacter", "(", {}}, TListRow{"One", A_TEXT, {A}},
                    TListRow{"Two", A_TEXT "," B_TEXT, {A, B}}, TListRow{"LeadingBlank", " " A_TEXT, {}},
                    TListRow{"TrailingBlank", A_TEXT " ", {A}}, TListRow{"CommaAtTheEnd", A_TEXT ",", {A}},
                    TListRow{"CommaAndOneCharacter", A_TEXT ",(", {A}},
                    TListRow{"BlankAfterComma", A_TEXT ", " B_TEXT, {A}}, TListRow{"Semicolon", A_TEXT ";" B_TEXT, {A}},
                    TListRow{"NothingBetween", A_TEXT B_TEXT, {A}},
                    TListRow{"Garbage", A_TEXT "," B_TEXT ",garbage", {A, B}},
                    TListRow{"NoQuote", A_TEXT ",(b:3:4:#FF00FF00)", {A}},
                    TListRow{"OpenQuote", A_TEXT ",(\"b:3:4:#FF00FF00)", {A}},
                    TListRow{"NoColon", A_TEXT ",(\"b\";3:4:#FF00FF00)", {A}},
                    TListRow{"NoEnd", A_TEXT ",(\"b\":3:4:#FF00FF00", {A}}),
    [](const auto& row) { return row.param.Name; });

struct TFailingListRow {
    const char* Text;
    const char* Message;
};

class FailingColorClassesText : public testing::TestWithParam<TFailingListRow> {};

TEST_P(FailingColorClassesText, LeavesAnEmptyList) {
    const auto list = ListOf({{8, 9}});
    QString message;
    try {
        list->DeSerialize(QString::fromUtf8(GetParam().Text));
    } catch (const Exception& failure) {
        message = failure.Message();
    }
    EXPECT_EQ(message, GetParam().Message);
    EXPECT_TRUE(list->GetClasses().IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    Texts, FailingColorClassesText,
    testing::Values(TFailingListRow{A_TEXT ",(\"b\":)", "Expected: :"},
                    TFailingListRow{A_TEXT ",(\"b\":3:4:#FF00)", "Expected: )"},
                    TFailingListRow{A_TEXT ",(\"b\":3):4:#FF00FF00)", "Expected: :"}, // ends at the first parenthesis
                    TFailingListRow{A_TEXT ",(\"b\":x:4:#FF00FF00)", "'x' is not a valid floating point value"}));

TEST(ColorClasses, AreWrittenJoinedByCommas) {
    const TFormatSettingsScope scope(Point);
    EXPECT_EQ(TColorClassesFactory::GetObject()->Serialize(), "");
    const TColorClass* const classes[] = {&A, &B};
    EXPECT_EQ(TColorClassesFactory::GetObject(classes)->Serialize(),
              "(\"a\":1.0000:2.0000:#FF000000),(\"b\":3.0000:4.0000:#FF00FF00)");
    EXPECT_EQ(SerializeColorClasses(classes), TColorClassesFactory::GetObject(classes)->Serialize());
    EXPECT_EQ(SerializeColorClasses({}), "");
}

TEST(ColorClasses, AreCopiedClassByClass) {
    const TColorClass* const classes[] = {&A, &B};
    const auto list = TColorClassesFactory::GetObject(classes);
    const auto copy = TColorClassesFactory::GetObject(list);
    list->GetClasses()[0]->SetName(QStringLiteral("changed"));
    list->GetClasses().Remove(list->GetClasses()[1]);
    EXPECT_EQ(ContentOf(*copy), (TClasses{A, B}));
}

TEST(ColorClasses, AreMadeOfAListInBraces) {
    const auto list = TColorClassesFactory::GetObject({A, B});
    EXPECT_EQ(ContentOf(*list), (TClasses{A, B}));
    EXPECT_EQ(TColorClassesFactory::GetObject({{QStringLiteral("Dry"), 0, 50, 7}})->GetClasses()[0]->GetMaxValue(), 50);
}

TEST(ColorClasses, RefuseNilSources) {
    EXPECT_EQ(
        MessageOf<EExArgumentNilException>([] { TColorClassesFactory::GetObject(std::shared_ptr<IColorClasses>()); }),
        "TColorClassesFactory.GetObject: argument source is nil");
    const TColorClass* const classes[] = {&A, nullptr};
    EXPECT_EQ(MessageOf<EExArgumentNilException>([&] { TColorClassesFactory::GetObject(classes); }),
              "TColorClass.Create: argument source is nil");
}

struct TFindRow {
    const char* Name;
    std::vector<std::pair<float, float>> Bounds;
    float Value;
    const char* Inside;  ///< name of the class under orpReturnNil, empty for none
    const char* Closest; ///< the same under orpClosestMatch
};

class ClassOfAValue : public testing::TestWithParam<TFindRow> {
protected:
    QString Find(TOutOfRangePolicy policy) const {
        const auto list = ListOf(GetParam().Bounds);
        const TColorClass* found = list->GetClass(policy, GetParam().Value);
        EXPECT_TRUE(!found || list->GetClasses().Contains(found));
        return found ? found->GetName() : QString();
    }
};

TEST_P(ClassOfAValue, IsTheFirstThatContainsIt) {
    EXPECT_EQ(Find(TOutOfRangePolicy::orpReturnNil), GetParam().Inside);
}

TEST_P(ClassOfAValue, MayBeTheClosestAtTheEnds) {
    EXPECT_EQ(Find(TOutOfRangePolicy::orpClosestMatch), GetParam().Closest);
}

INSTANTIATE_TEST_SUITE_P(Rows, ClassOfAValue,
                         testing::Values(TFindRow{"NoClasses", {}, 5, "", ""},
                                         TFindRow{"SharedBound", {{0, 10}, {10, 20}}, 10, "0", "0"},
                                         TFindRow{"SharedBoundTurned", {{10, 20}, {0, 10}}, 10, "0", "0"},
                                         TFindRow{"Overlap", {{0, 30}, {10, 20}}, 15, "0", "0"},
                                         TFindRow{"Below", {{0, 10}, {20, 30}}, -5, "", "0"},
                                         TFindRow{"Above", {{0, 10}, {20, 30}}, 35, "", "1"},
                                         TFindRow{"Gap", {{0, 10}, {20, 30}}, 15, "", ""},
                                         TFindRow{"HighestIsNotLast", {{0, 10}, {50, 60}, {20, 30}}, 99, "", "1"},
                                         TFindRow{"LowestIsNotFirst", {{20, 30}, {0, 10}, {50, 60}}, -99, "", "1"},
                                         TFindRow{"HighestAndLowestAreOne", {{5, 6}, {0, 10}}, 99, "", "1"},
                                         TFindRow{"EqualMinimaTakeTheFirst", {{20, 30}, {0, 10}, {0, 5}}, -1, "", "1"},
                                         TFindRow{"EqualMaximaTakeTheFirst", {{0, 1}, {5, 30}, {7, 30}}, 31, "", "1"},
                                         TFindRow{"PlusInfinity", {{0, 10}}, Inf, "", "0"},
                                         TFindRow{"MinusInfinity", {{0, 10}}, -Inf, "", "0"},
                                         TFindRow{"NoNumberIsLow", {{20, 30}, {0, 10}}, NaN, "", "1"},
                                         TFindRow{"TurnedOver", {{10, 0}}, 5, "", "0"}, // 5 <= 10, the lowest minimum
                                         TFindRow{"TurnedOverAbove", {{10, 0}}, 11, "", "0"},
                                         TFindRow{"AtTheLowestMinimum", {{10, 0}, {20, 30}}, 10, "", "0"},
                                         TFindRow{"AtTheHighestMaximum", {{0, 5}, {40, 30}}, 30, "", "1"},
                                         TFindRow{"NaNMinimumFirst", {{NaN, 10}, {20, 30}}, 25, "1", "1"},
                                         TFindRow{"NaNMinimumFirstTakesAllElse", {{NaN, 10}, {20, 30}}, 99, "", "0"},
                                         TFindRow{"NaNMinimumLater", {{20, 30}, {NaN, 10}}, 5, "", "0"},
                                         TFindRow{"NaNMaximumFirst", {{0, NaN}, {20, 30}}, 99, "", ""},
                                         TFindRow{"NaNMaximumLater", {{20, 30}, {0, NaN}}, 99, "", "0"},
                                         TFindRow{"OpenClass", {{-Inf, 0}, {0, Inf}}, Inf, "1", "1"}),
                         [](const auto& row) { return row.param.Name; });

} // namespace
} // namespace lmx
