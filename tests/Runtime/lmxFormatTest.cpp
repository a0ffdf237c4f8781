#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxFormat.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

#include <limits>

namespace lmx {
namespace {

using tests::MessageOf;
using TArguments = std::initializer_list<TFormatArgument>;

const TFormatSettings Point = TFormatSettings::Invariant();
const TFormatSettings Comma{u','};

struct TFormatRow {
    const char16_t* Format;
    std::vector<TFormatArgument> Arguments;
    const char* Expected;
};

QString Formatted(const char16_t* format, const std::vector<TFormatArgument>& arguments) {
    switch (arguments.size()) {
    case 0:
        return Format(format, {}, Point);
    case 1:
        return Format(format, {arguments[0]}, Point);
    default:
        return Format(format, {arguments[0], arguments[1]}, Point);
    }
}

class FormatText : public testing::TestWithParam<TFormatRow> {};

TEST_P(FormatText, ReplacesPlaceHolders) {
    EXPECT_EQ(Formatted(GetParam().Format, GetParam().Arguments), GetParam().Expected);
}

INSTANTIATE_TEST_SUITE_P(Plain, FormatText,
                         testing::Values(TFormatRow{u"", {}, ""}, TFormatRow{u"no place", {1}, "no place"},
                                         TFormatRow{u"100 %%", {}, "100 %"}, TFormatRow{u"%%d", {5}, "%d"},
                                         TFormatRow{u"%s (%d)", {"Layer", 2}, "Layer (2)"},
                                         TFormatRow{u"%s", {"%d"}, "%d"}, TFormatRow{u"%s", {QString()}, ""},
                                         TFormatRow{u"%S%D", {"a", -7}, "a-7"}));

INSTANTIATE_TEST_SUITE_P(
    Integers, FormatText,
    testing::Values(TFormatRow{u"%d", {std::numeric_limits<std::int64_t>::min()}, "-9223372036854775808"},
                    TFormatRow{u"%d", {0xFF000000U}, "4278190080"}, TFormatRow{u"%.4d", {42}, "0042"},
                    TFormatRow{u"%.4d", {-42}, "-0042"}, TFormatRow{u"%.1d", {42}, "42"},
                    TFormatRow{u"%5d|", {42}, "   42|"}, TFormatRow{u"%-5d|", {42}, "42   |"},
                    TFormatRow{u"%1d", {42}, "42"}, TFormatRow{u"%6.3d", {-4}, "  -004"}));

INSTANTIATE_TEST_SUITE_P(
    Floats, FormatText,
    testing::Values(TFormatRow{u"%f", {0.125}, "0.13"}, TFormatRow{u"%.3f", {0.0625}, "0.063"},
                    TFormatRow{u"%.0f", {2.5F}, "3"}, TFormatRow{u"%.3f, %.3f", {1.5L, -0.0001L}, "1.500, 0.000"},
                    TFormatRow{u"%8.2f", {-1.5}, "   -1.50"}, TFormatRow{u"%-8.2f|", {1.5}, "1.50    |"},
                    TFormatRow{u"%.1f%%", {12.25}, "12.3%"}, TFormatRow{u"%f", {1e18L}, "1E18"},
                    TFormatRow{u"%g", {0.1F}, "0.100000001490116"}, TFormatRow{u"%.3g", {1234.5}, "1.23E3"},
                    TFormatRow{u"%g", {100000.0}, "100000"}));

INSTANTIATE_TEST_SUITE_P(Texts, FormatText,
                         testing::Values(TFormatRow{u"%.3s", {"Rainfall"}, "Rai"},
                                         TFormatRow{u"%5s|", {"ab"}, "   ab|"}, TFormatRow{u"%-5s|", {"ab"}, "ab   |"},
                                         TFormatRow{u"%2s", {"abc"}, "abc"}, TFormatRow{u"%.0s", {"abc"}, ""}));

INSTANTIATE_TEST_SUITE_P(Indexes, FormatText,
                         testing::Values(TFormatRow{u"%1:s %0:s", {"a", "b"}, "b a"},
                                         TFormatRow{u"%1:d%0:d%d", {1, 2}, "212"},
                                         TFormatRow{u"%0:3d%0:-3d|", {7}, "  77  |"},
                                         TFormatRow{u"%d %0:d", {1}, "1 1"}));

struct TRefusedRow {
    const char16_t* Format;
    std::vector<TFormatArgument> Arguments;
};

class FormatRefuses : public testing::TestWithParam<TRefusedRow> {};

TEST_P(FormatRefuses, UnknownPlaceHoldersAndArgumentsOfAnotherType) {
    const TRefusedRow& row = GetParam();
    EXPECT_EQ(MessageOf<EConvertError>([&] { Formatted(row.Format, row.Arguments); }),
              QStringLiteral("Format '") + QStringView(row.Format).toString() +
                  "' invalid or incompatible with argument");
}

INSTANTIATE_TEST_SUITE_P(Rows, FormatRefuses,
                         testing::Values(TRefusedRow{u"%d", {1.5}}, TRefusedRow{u"%d", {"1"}}, TRefusedRow{u"%f", {1}},
                                         TRefusedRow{u"%.2f mm", {"1"}}, TRefusedRow{u"%s", {1}},
                                         TRefusedRow{u"%s", {1.0}}, TRefusedRow{u"%g", {1}}, TRefusedRow{u"50%", {}},
                                         TRefusedRow{u"%5", {1}}, TRefusedRow{u"%.", {1.0}}, TRefusedRow{u"%.f", {1.0}},
                                         TRefusedRow{u"%1:", {1, 2}}, TRefusedRow{u"%q", {1}}, TRefusedRow{u"% d", {1}},
                                         TRefusedRow{u"%*d", {1, 2}}, TRefusedRow{u"%0:-d%", {1}},
                                         TRefusedRow{u"%1001d", {1}}, TRefusedRow{u"%.1001f", {1.0}},
                                         TRefusedRow{u"%99999999999999999999d", {1}}, TRefusedRow{u"%n", {1.0}}));

TEST(Format, SaysWhenAnArgumentIsMissing) {
    EXPECT_EQ(MessageOf<EConvertError>([] { Format(u"%d %d", {1}); }), "No argument for format '%d %d'");
    EXPECT_EQ(MessageOf<EConvertError>([] { Format(u"%1:s", {"a"}); }), "No argument for format '%1:s'");
    EXPECT_EQ(MessageOf<EConvertError>([] { Format(u"%s"); }), "No argument for format '%s'");
}

TEST(Format, UsesTheSettings) {
    EXPECT_EQ(Format(u"%.1f %g %d", {1.5, 2.5, 1000000}, Comma), "1,5 2,5 1000000");
    const TFormatSettingsScope scope(Comma);
    EXPECT_EQ(Format(u"%.1f", {1.5}), "1,5");
}

TEST(Format, TakesAtMostOneThousandColumns) {
    EXPECT_EQ(Format(u"%1000d", {1}).size(), 1000);
    EXPECT_EQ(Format(u"%.1000d", {1}).size(), 1000);
    EXPECT_EQ(Format(u"%.1000f", {0.5}, Point), "0.500000000000000000") << "floats have 18 decimals";
}

TEST(Format, QuotesTheBeginningOfALongFormat) {
    const QString format = QString(99, u'x') + QStringLiteral("%d");
    const QString quoted = u'\'' + QString(99, u'x') + u'%' + QChar(0x2026) + u'\'';
    EXPECT_EQ(MessageOf<EConvertError>([&] { Format(format); }), QStringLiteral("No argument for format ") + quoted);
    EXPECT_EQ(MessageOf<EConvertError>([&] { Format(format, {"text"}); }),
              QStringLiteral("Format ") + quoted + QStringLiteral(" invalid or incompatible with argument"));
}

} // namespace
} // namespace lmx
