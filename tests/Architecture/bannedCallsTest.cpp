#include <tests/Support/Printers.h>
#include <tests/Support/SourceTree.h>

#include <QRegularExpression>

#include <gtest/gtest.h>

// Calls that round away from zero, follow the locale of the C library or read numbers by another grammar than ours.

namespace lmx {
namespace {

using namespace tests;

struct TBannedRow {
    const char* Name;
    const char* Pattern;
    const char* Instead;
    const char* Example;
};

class BannedCalls : public testing::TestWithParam<TBannedRow> {
protected:
    const QRegularExpression Pattern{QString::fromLatin1(GetParam().Pattern)};
};

TEST_P(BannedCalls, DoNotAppearInTheLibrary) {
    for (const TSourceFile& file : LibrarySources()) {
        const QString code = CodeOnly(file.Text);
        for (auto matches = Pattern.globalMatch(code); matches.hasNext();) {
            const auto match = matches.next();
            const auto line = code.left(match.capturedStart()).count(u'\n') + 1;
            ADD_FAILURE() << file.Path.toStdString() << ':' << line << ": " << match.captured().toStdString()
                          << "; use " << GetParam().Instead;
        }
    }
}

TEST_P(BannedCalls, AreFoundInCodeAndNowhereElse) {
    const QString example = QString::fromLatin1(GetParam().Example);
    EXPECT_TRUE(CodeOnly(example).contains(Pattern));
    EXPECT_FALSE(CodeOnly("// " + example).contains(Pattern));
    EXPECT_FALSE(CodeOnly("/* a\n" + example + " */").contains(Pattern));
    EXPECT_FALSE(CodeOnly("f(\"\\\"" + example + "\", '\"')").contains(Pattern));
}

INSTANTIATE_TEST_SUITE_P(
    Rows, BannedCalls,
    testing::Values(
        TBannedRow{"round", R"(\b(std::|::)l?l?round[fl]?\s*\(|\bl?l?round[fl]?\s*\()", "Round", "std::round(x)"},
        TBannedRow{"lrint", R"(\bl?lrint[fl]?\s*\()", "Round", "std::llrintl(x)"},
        TBannedRow{"qRound", R"(\bqRound(64)?\b)", "Round", "qRound(x)"},
        TBannedRow{"toPoint", R"((\.|->)toPoint\s*\()", "Floor or Round", "event->position().toPoint()"},
        TBannedRow{"toRect", R"((\.|->)toRect\s*\()", "Round", "rect.toRect()"},
        TBannedRow{"QStringNumber", R"(\b(QString|QByteArray)::number\b)", "IntToStr, FloatToStr",
                   "QString::number(x, 'f')"},
        TBannedRow{"setNum", R"((\.|->)setNum\s*\()", "IntToStr, FloatToStr", "text.setNum(1)"},
        TBannedRow{"printf", R"(\bv?(f|s|sn|as)?w?printf\b|::asprintf\b)", "Format", "std::snprintf(b, n, f)"},
        TBannedRow{"scanf", R"(\bv?[fs]?w?scanf\b)", "TryStrToFloat", "sscanf(text, f)"},
        TBannedRow{"strtod", R"(\bstrto(d|f|ld|l|ll|ul|ull)\b)", "TryStrToFloat, TryStrToInt",
                   "std::strtod(text, nullptr)"},
        TBannedRow{"stod", R"(\bsto(d|f|ld)\b)", "TryStrToFloat", "std::stod(text)"},
        TBannedRow{"atof", R"(\bato(f|i|l|ll)\b)", "TryStrToFloat, TryStrToInt", "atof(text)"},
        TBannedRow{"QtNumbers", R"((\.|->)to(Double|Float|Int|UInt|Long|ULong|LongLong|ULongLong|Short|UShort)\s*\()",
                   "TryStrToFloat, TryStrToInt", "text.toDouble()"}),
    [](const auto& row) { return row.param.Name; });

TEST(CodeOnly, BlanksCommentsAndLiteralsAndKeepsTheRest) {
    EXPECT_EQ(CodeOnly("a // b\nc"), "a     \nc");
    EXPECT_EQ(CodeOnly("a /* b\nc */ d"), "a     \n     d");
    EXPECT_EQ(CodeOnly("f(\"//\", x)"), "f(    , x)");
    EXPECT_EQ(CodeOnly("f('\"', 1'000'000)"), "f(   , 1'000'000)");
}

} // namespace
} // namespace lmx
