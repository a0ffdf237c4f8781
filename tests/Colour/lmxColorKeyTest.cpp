#include <lmx/Colour/lmxColorKey.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

namespace lmx {
namespace {

using tests::MessageOf;

using TItems = std::vector<TColorKeyItem>;

TItems ItemsOf(const char* text) {
    return TColorKeyFactory::GetObject(QString::fromUtf8(text))->GetColors();
}

TEST(ColorKeyItem, WritesItsNameEscapedAndItsColor) {
    EXPECT_EQ(TColorKeyItem(QStringLiteral("Dry"), 0x80A0B0C0U).Serialize(), R"(("Dry":#80A0B0C0))");
    EXPECT_EQ(TColorKeyItem(QString(), 0).Serialize(), R"(("":#00000000))");
    EXPECT_EQ(TColorKeyItem(QStringLiteral("a\"b\\c\nd"), 1).Serialize(), R"(("a\"b\\c\nd":#00000001))");
}

class ColorKeyName : public testing::TestWithParam<const char*> {};

TEST_P(ColorKeyName, SurvivesInAnItemAndInAKey) {
    const TColorKeyItem item(QString::fromUtf8(GetParam()), 0x12345678U);
    TColorKeyItem read;
    read.DeSerialize(item.Serialize());
    EXPECT_EQ(read, item);
    const auto key = TColorKeyFactory::GetObject(TItems{item, item, {QStringLiteral("last"), 2}});
    EXPECT_EQ(TColorKeyFactory::GetObject(key->Serialize())->GetColors(), key->GetColors());
}

INSTANTIATE_TEST_SUITE_P(Names, ColorKeyName,
                         testing::Values("", "plain", " blanks ", "a\"b", "\"", "\\", "a\\", "\\\"", "a,b)c", "\":#",
                                         "(\"x\":#FF000000)", "tab\tline\nbell\a", "Größe 10 µm – 雨"));

TEST(ColorKeyItem, IgnoresWhatFollowsItsParenthesis) {
    TColorKeyItem item;
    item.DeSerialize(QStringLiteral("(\"a\":#ff00FF00)rest"));
    EXPECT_EQ(item, TColorKeyItem(QStringLiteral("a"), 0xFF00FF00U));
}

TEST(ColorKeyItem, RefusesAnEmptyTextByTheArgumentsName) {
    EXPECT_EQ(MessageOf<EArgumentException>([] { TColorKeyItem().DeSerialize({}); }), "Str");
}

struct TItemRow {
    const char* Text;
    const char* Message;
};

class DamagedColorKeyItem : public testing::TestWithParam<TItemRow> {};

TEST_P(DamagedColorKeyItem, SaysWhatIsMissingAndChangesNothing) {
    const TColorKeyItem before(QStringLiteral("before"), 5);
    TColorKeyItem item = before;
    EXPECT_EQ(MessageOf<Exception>([&] { item.DeSerialize(QString::fromUtf8(GetParam().Text)); }), GetParam().Message);
    EXPECT_EQ(item, before);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, DamagedColorKeyItem,
    testing::Values(TItemRow{"[\"a\":#FF000000)", "Expected: ("}, TItemRow{" (\"a\":#FF000000)", "Expected: ("},
                    TItemRow{"(", "Expected: \""}, TItemRow{"(a\":#FF000000)", "Expected: \""},
                    TItemRow{"(\"a:#FF000000)", "Expected: :"}, TItemRow{"(\"", "Expected: :"},
                    TItemRow{"(\"a\"", "Expected: :"}, TItemRow{"(\"a\" :#FF000000)", "Expected: :"},
                    TItemRow{"(\"a\":", "Expected: #"}, TItemRow{"(\"a\":FF000000)", "Expected: #"},
                    TItemRow{"(\"a\":#FF000000", "Expected: )"}, TItemRow{"(\"a\":#FF00000)", "Expected: )"},
                    TItemRow{"(\"a\":#FF0000000)", "Expected: )"}));

TEST(ColorKeyItem, AnInvalidColorOrEscapeChangesNothing) {
    const TColorKeyItem before(QStringLiteral("before"), 5);
    TColorKeyItem item = before;
    EXPECT_EQ(MessageOf<EConvertError>([&] { item.DeSerialize(QStringLiteral("(\"a\":#FF0000XX)")); }),
              "'#FF0000XX' is not a valid color value");
    EXPECT_EQ(MessageOf<EConvertError>([&] { item.DeSerialize(QStringLiteral("(\"\\q\":#FF000000)")); }),
              "Invalid escape sequence");
    EXPECT_EQ(item, before);
}

struct TKeyRow {
    const char* Name;
    const char* Text;
    TItems Items;
};

class ColorKeyText : public testing::TestWithParam<TKeyRow> {};

TEST_P(ColorKeyText, GivesTheItemsBeforeItsMalformedTail) {
    EXPECT_EQ(ItemsOf(GetParam().Text), GetParam().Items);
}

const TColorKeyItem A(QStringLiteral("a"), 0xFF000000U);
const TColorKeyItem B(QStringLiteral("b"), 0xFF00FF00U);

INSTANTIATE_TEST_SUITE_P(Texts, ColorKeyText,
                         testing::Values(TKeyRow{"Empty", "", {}}, TKeyRow{"Blanks", " \t ", {}},
                                         TKeyRow{"OneCharacter", "(", {}}, TKeyRow{"OneItem", "(\"a\":#FF000000)", {A}},
                                         TKeyRow{"TwoItems", "(\"a\":#FF000000),(\"b\":#FF00FF00)", {A, B}},
                                         TKeyRow{"BlanksAround", " \n(\"a\":#FF000000),(\"b\":#FF00FF00)\r\n", {A, B}},
                                         TKeyRow{"WrongFirstCharacter", "((\"a\":#FF000000)", {}},
                                         TKeyRow{"Garbage", "(\"a\":#FF000000),(\"b\":#FF00FF00),garbage", {A, B}},
                                         TKeyRow{"BlankForComma", "(\"a\":#FF000000) (\"b\":#FF00FF00)", {A}},
                                         TKeyRow{"BlankAfterComma", "(\"a\":#FF000000), (\"b\":#FF00FF00)", {A}},
                                         TKeyRow{"NothingBetween", "(\"a\":#FF000000)(\"b\":#FF00FF00)", {A}},
                                         TKeyRow{"CommaAtTheEnd", "(\"a\":#FF000000),", {A}},
                                         TKeyRow{"HalfAnItem", "(\"a\":#FF000000),(\"b\":#FF00", {A}},
                                         TKeyRow{"OpenQuote", "(\"a\":#FF000000),(\"b:#FF00FF00)", {A}},
                                         TKeyRow{"NoColon", "(\"a\";#FF000000)", {}},
                                         TKeyRow{"NoHash", "(\"a\":0FF000000)", {}},
                                         TKeyRow{"NoEnd", "(\"a\":#FF000000]", {}}),
                         [](const auto& row) { return row.param.Name; });

TEST(ColorKey, ReadingReplacesTheEntries) {
    const auto key = TColorKeyFactory::GetObject(TItems{A, B});
    key->DeSerialize(QStringLiteral("(\"b\":#FF00FF00)"));
    EXPECT_EQ(key->GetColors(), TItems{B});
    key->DeSerialize({});
    EXPECT_TRUE(key->GetColors().empty());
}

TEST(ColorKey, AnItemOfTheRightShapeMayStillFail) {
    const auto key = TColorKeyFactory::GetObject();
    EXPECT_EQ(
        MessageOf<EConvertError>([&] { key->DeSerialize(QStringLiteral("(\"a\":#FF000000),(\"b\":#FF00FFXX)")); }),
        "'#FF00FFXX' is not a valid color value");
    EXPECT_EQ(key->GetColors(), TItems{A});
}

TEST(ColorKey, WritesItsItemsJoinedByCommas) {
    EXPECT_EQ(TColorKeyFactory::GetObject()->Serialize(), "");
    EXPECT_EQ(TColorKeyFactory::GetObject(TItems{A, B})->Serialize(), "(\"a\":#FF000000),(\"b\":#FF00FF00)");
}

TEST(ColorKey, ACopyIsIndependent) {
    const auto source = TColorKeyFactory::GetObject(TItems{A, B});
    const auto copy = TColorKeyFactory::GetObject(source);
    source->GetColors().clear();
    EXPECT_EQ(copy->GetColors(), (TItems{A, B}));
    EXPECT_EQ(MessageOf<EExArgumentNilException>([] { TColorKeyFactory::GetObject(std::shared_ptr<IColorKey>()); }),
              "TColorKeyFactory.GetObject: argument source is nil");
}

TEST(ColorKey, IsMadeOfAListInBraces) {
    const std::shared_ptr<const IColorKey> key =
        TColorKeyFactory::GetObject({{QStringLiteral("a"), 1}, {QString(), 2}});
    EXPECT_EQ(key->GetColors(), (TItems{{QStringLiteral("a"), 1}, {QString(), 2}}));
}

} // namespace
} // namespace lmx
