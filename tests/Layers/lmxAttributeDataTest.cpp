#include <lmx/Layers/lmxAttributeData.h>
#include <lmx/Runtime/lmxFormatSettings.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

namespace lmx {
namespace {

TEST(AttributeData, ANewAttributeIsTheTextValue) {
    const TAttributeData data = TAttributeData::Empty();
    EXPECT_EQ(data.Value, QStringLiteral("Value"));
    EXPECT_EQ(data.DataType, TAttributeDataType::adtString);
}

TEST(AttributeData, IsMadeFromTypeAndValue) {
    const TAttributeData data(TAttributeDataType::adtInteger, QStringLiteral("7"));
    EXPECT_EQ(data.Value, QStringLiteral("7"));
    EXPECT_EQ(data.DataType, TAttributeDataType::adtInteger);
}

struct TCheckRow {
    TAttributeDataType Type;
    const char* Text;
    bool Accepted;
};

class CheckData : public testing::TestWithParam<TCheckRow> {};

TEST_P(CheckData, AcceptsWhatParsesAsTheType) {
    const TFormatSettingsScope point({u'.'});
    EXPECT_EQ(TAttributeData::CheckData(GetParam().Type, QString::fromLatin1(GetParam().Text)), GetParam().Accepted);
}

INSTANTIATE_TEST_SUITE_P(Rows, CheckData,
                         testing::Values(TCheckRow{TAttributeDataType::adtString, "", true},
                                         TCheckRow{TAttributeDataType::adtString, "anything", true},
                                         TCheckRow{TAttributeDataType::adtFloat, "1.5", true},
                                         TCheckRow{TAttributeDataType::adtFloat, "1e39", false},
                                         TCheckRow{TAttributeDataType::adtFloat, "", false},
                                         TCheckRow{TAttributeDataType::adtFloat, "one", false},
                                         TCheckRow{TAttributeDataType::adtInteger, "1.5", false},
                                         TCheckRow{TAttributeDataType::adtInteger, "-12", true},
                                         TCheckRow{TAttributeDataType::adtInteger, "2147483648", false},
                                         TCheckRow{static_cast<TAttributeDataType>(9), "1", false}));

TEST(AttributeData, AFloatFollowsTheDecimalSeparator) {
    const TFormatSettingsScope comma({u','});
    EXPECT_FALSE(TAttributeData::CheckData(TAttributeDataType::adtFloat, QStringLiteral("1.5")));
    EXPECT_TRUE(TAttributeData::CheckData(TAttributeDataType::adtFloat, QStringLiteral("1,5")));
}

} // namespace
} // namespace lmx
