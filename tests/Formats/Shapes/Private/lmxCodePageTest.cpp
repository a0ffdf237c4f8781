#include <lmx/Formats/Shapes/Private/lmxCodePage.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

namespace lmx::tests {

namespace {

struct TRow {
    const char* Name;
    const char* Bytes;
    const char16_t* Text;
};

void PrintTo(const TRow& row, std::ostream* stream) {
    *stream << row.Name;
}

class CodePageNames : public testing::TestWithParam<TRow> {};

QString Guess(const char* bytes) {
    return GuessedCodePage()->Decode(bytes);
}

} // namespace

TEST_P(CodePageNames, AreUnderstood) {
    const TRow& row = GetParam();
    const auto page = CodePageOfName(QString::fromLatin1(row.Name));
    ASSERT_TRUE(page);
    EXPECT_EQ(page->Decode(row.Bytes), QString::fromUtf16(row.Text));
    EXPECT_EQ(page->Decode(QByteArrayView()), "");
    EXPECT_EQ(page->Decode("plain 12"), "plain 12");
}
INSTANTIATE_TEST_SUITE_P(
    Names, CodePageNames,
    testing::Values(TRow{"UTF-8", "\xE5\x9B\xBD", u"国"}, TRow{"utf8\r\n", "\xE5\x9B\xBD", u"国"},
                    TRow{"65001", "\xC3\xA9", u"é"}, TRow{"1252", "\x80\xE9", u"€é"}, TRow{"CP1252", "\xE9", u"é"},
                    TRow{"ANSI 1251", "\xCA\xE8", u"Ки"}, TRow{"Windows-1251", "\xCA\xE8", u"Ки"},
                    TRow{"936", "\xB2\xE2", u"测"}, TRow{"GBK", "\xB2\xE2", u"测"}, TRow{"Big-5", "\xB0\xEA", u"國"},
                    TRow{"950", "\xB0\xEA", u"國"}, TRow{"koi8r", "\xD2\xD5", u"ру"}, TRow{"KOI8-U", "\xD2\xD5", u"ру"},
                    TRow{"Shift_JIS", "\x82\xD0\x83\x5C", u"ひソ"}, TRow{"932", "\x82\xD0", u"ひ"},
                    TRow{"EUC-KR", "\xB0\xA1", u"가"}, TRow{"949", "\xB0\xA1", u"가"}, TRow{"ISO-8859-1", "\xE9", u"é"},
                    TRow{"88591", "\xE9", u"é"}, TRow{"8859-15", "\xA4", u"€"}, TRow{"ISO 8859-2", "\xB1", u"ą"},
                    TRow{"OEM 866", "\x80", u"А"}, TRow{"IBM850", "\x82", u"é"}, TRow{"cp437", "\x82", u"é"}));

TEST(CodePage, WideUnitsAreKnownAsSuch) {
    const auto page = CodePageOfName(QStringLiteral("UTF-16"));
    ASSERT_TRUE(page);
    EXPECT_TRUE(page->HasWideUnits());
    EXPECT_EQ(page->Decode(QByteArrayView("\xFD\x56"
                                          "a\0",
                                          4)),
              QString::fromUtf16(u"国a"));
    EXPECT_FALSE(CodePageOfName(QStringLiteral("1252"))->HasWideUnits());
    EXPECT_FALSE(CodePageOfName(QStringLiteral("UTF-8"))->HasWideUnits());
}

TEST(CodePage, NobodyKnowsOtherNames) {
    for (const char* name : {"", "?", "unknown", "UTF-7", "99999", "123456", "../../etc", "1252//TRANSLIT//IGNORE/x",
                             "8859", "ISO-8859-99", "ISO-8859-"})
        EXPECT_FALSE(CodePageOfName(QString::fromLatin1(name))) << name;
}

TEST(CodePage, LanguagesHaveTheirs) {
    const auto text = [](std::uint8_t id, const char* bytes) {
        const auto page = CodePageOfLanguage(id);
        return page ? page->Decode(bytes) : QStringLiteral("none");
    };
    EXPECT_EQ(text(0x01, "\x82"), QString::fromUtf16(u"é"));
    EXPECT_EQ(text(0x02, "\xB5"), QString::fromUtf16(u"Á"));
    EXPECT_EQ(text(0x03, "\xE9"), QString::fromUtf16(u"é"));
    EXPECT_EQ(text(0x4D, "\xB2\xE2"), QString::fromUtf16(u"测"));
    EXPECT_EQ(text(0x57, "\x80"), QString::fromUtf16(u"€"));
    EXPECT_EQ(text(0x64, "\x86"), QString::fromUtf16(u"ć"));
    EXPECT_EQ(text(0x65, "\x80"), QString::fromUtf16(u"А"));
    EXPECT_EQ(text(0x7B, "\x82\xD0"), QString::fromUtf16(u"ひ"));
    EXPECT_EQ(text(0xC8, "\xB9"), QString::fromUtf16(u"ą"));
    EXPECT_EQ(text(0xC9, "\xCA"), QString::fromUtf16(u"К"));
    EXPECT_EQ(text(0xCA, "\xF0"), QString::fromUtf16(u"ğ"));
    EXPECT_EQ(text(0xCB, "\xE1"), QString::fromUtf16(u"α"));
    EXPECT_EQ(text(0x96, "\x80"), QString::fromUtf16(u"А"));
    EXPECT_EQ(text(0x00, "x"), "none");
    EXPECT_EQ(text(0xF0, "x"), "none");
}

TEST(CodePage, EveryLanguageThatIsListedCanBeRead) {
    int known = 0;
    for (int id = 0; id < 256; ++id)
        if (const auto page = CodePageOfLanguage(static_cast<std::uint8_t>(id)); page) {
            EXPECT_EQ(page->Decode("Plain 12"), "Plain 12") << id;
            ++known;
        }
    EXPECT_EQ(known, 64) << "the converters of the system hold them all";
}

TEST(CodePage, UnreadableBytesAreMarked) {
    EXPECT_EQ(CodePageOfName(QStringLiteral("932"))->Decode("a\x82"), QString::fromUtf16(u"a\uFFFD"));
    EXPECT_EQ(CodePageOfName(QStringLiteral("932"))
                  ->Decode("\xFF"
                           "b\x82\xD0"),
              QString::fromUtf16(u"\uFFFDbひ"));
    EXPECT_EQ(CodePageOfName(QStringLiteral("UTF-8"))->Decode("a\xE9"), QString::fromUtf16(u"a\uFFFD"));
    EXPECT_EQ(CodePageOfName(QStringLiteral("1252"))->Decode("\x81"), QString(QChar(0x81))) << "an unused one";
}

TEST(CodePage, LongTextsAreConvertedWhole) {
    const auto page = CodePageOfName(QStringLiteral("936"));
    EXPECT_EQ(page->Decode(QByteArray("\xB2\xE2").repeated(1000)), QString::fromUtf16(u"测").repeated(1000));
}

TEST(CodePage, AGuessIsUtf8IfThatIsPossible) {
    EXPECT_EQ(Guess("plain"), "plain");
    EXPECT_EQ(Guess("\xE5\x9B\xBD"), QString::fromUtf16(u"国"));
    EXPECT_EQ(Guess("Charl\xF8tte"), QString::fromUtf16(u"Charløtte"));
    EXPECT_EQ(Guess("Cit\xE9"), QString::fromUtf16(u"Cité")) << "no cut sequence";
    EXPECT_EQ(Guess("\xE5\x9B\xBD\xE5\x9B"), QString::fromUtf16(u"国")) << "cut by the width of the field";
    EXPECT_EQ(Guess("\xE9t\xE9"), QString::fromUtf16(u"été"));
    EXPECT_EQ(Guess("\x80"), QString::fromUtf16(u"€"));
}

} // namespace lmx::tests
