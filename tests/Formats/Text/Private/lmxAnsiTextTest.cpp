#include <lmx/Formats/Text/Private/lmxAnsiText.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

namespace lmx::tests {

namespace {

struct TRow {
    const char* Name;
    QByteArray Bytes;
    QString Text;
};

void PrintTo(const TRow& row, std::ostream* stream) {
    *stream << row.Name;
}

const TRow Rows[] = {
    {"Nothing", "", QString()},
    {"Ascii", "rain", QStringLiteral("rain")},
    {"Latin", "Z\xFCrich", QStringLiteral("Zürich")},
    {"LatinAtTheVeryEnd", "Caf\xE9", QStringLiteral("Café")},
    {"PunctuationOfTheCodePage", "pos\x92n \x96 5 \x80", QStringLiteral("pos’n – 5 €")},
    {"UnusedByte", "a\x81z", QStringLiteral("a\u0081z")},
    {"Utf8BeyondTheCodePage", "\xC5\x8Ctaki", QStringLiteral("Ōtaki")},
};

} // namespace

class AnsiTextRow : public testing::TestWithParam<TRow> {};

TEST_P(AnsiTextRow, DecodesAndEncodesToTheSameBytes) {
    EXPECT_EQ(DecodeAnsiText(GetParam().Bytes), GetParam().Text);
    EXPECT_EQ(EncodeAnsiText(GetParam().Text), GetParam().Bytes);
}

INSTANTIATE_TEST_SUITE_P(Texts, AnsiTextRow, testing::ValuesIn(Rows),
                         [](const auto& row) { return std::string(row.param.Name); });

TEST(AnsiText, ReadsUtf8WithAndWithoutAByteOrderMark) {
    EXPECT_EQ(DecodeAnsiText("Z\xC3\xBCrich"), QStringLiteral("Zürich"));
    EXPECT_EQ(DecodeAnsiText("\xEF\xBB\xBF"
                             "Z\xC3\xBCrich"),
              QStringLiteral("Zürich"));
}

TEST(AnsiText, WritesUtf8WhereTheCodePageWouldReadAsUtf8) {
    const QString text = QStringLiteral("Ã¼"); // its two bytes in the code page are a valid UTF-8 sequence
    EXPECT_EQ(EncodeAnsiText(text), QByteArray("\xC3\x83\xC2\xBC"));
    EXPECT_EQ(DecodeAnsiText(EncodeAnsiText(text)), text);
}

} // namespace lmx::tests
