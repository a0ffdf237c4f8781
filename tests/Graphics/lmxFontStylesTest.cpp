#include <lmx/Graphics/lmxFontStyles.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

namespace lmx {
namespace {

using tests::MessageOf;

TEST(FontStyles, AreTheirNamesInOrder) {
    const TFontStyles styles{TFontStyle::fsStrikeOut, TFontStyle::fsBold, TFontStyle::fsItalic,
                             TFontStyle::fsUnderline};
    EXPECT_EQ(FontStylesToString(styles), "fsBold,fsItalic,fsUnderline,fsStrikeOut");
    EXPECT_EQ(StringToFontStyles("fsStrikeOut,fsBold,fsItalic,fsUnderline"), styles);
    EXPECT_EQ(FontStylesToString({}), "");
    EXPECT_EQ(StringToFontStyles(""), TFontStyles());
}

TEST(FontStyles, AreReadLetterByLetter) {
    EXPECT_EQ(MessageOf<EConvertError>([] { StringToFontStyles("fsBold,"); }), "Invalid font styles text");
    EXPECT_EQ(MessageOf<EConvertError>([] { StringToFontStyles("bold"); }), "Invalid font styles text");
}

} // namespace
} // namespace lmx
