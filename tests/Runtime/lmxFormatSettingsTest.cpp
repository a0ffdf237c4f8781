#include <lmx/Runtime/lmxFormatSettings.h>

#include <gtest/gtest.h>

namespace lmx {
namespace {

TEST(FormatSettings, ScopesNestAndRestore) {
    const QChar before = TFormatSettings::Current().DecimalSeparator;
    {
        const TFormatSettingsScope outer({u','});
        EXPECT_EQ(TFormatSettings::Current().DecimalSeparator, u',');
        {
            const TFormatSettingsScope inner({u';'});
            EXPECT_EQ(TFormatSettings::Current().DecimalSeparator, u';');
        }
        EXPECT_EQ(TFormatSettings::Current().DecimalSeparator, u',');
    }
    EXPECT_EQ(TFormatSettings::Current().DecimalSeparator, before);
}

TEST(FormatSettings, InvariantOnesHaveAPointUnderEveryLocale) {
    const TFormatSettingsScope scope({u','});
    EXPECT_EQ(TFormatSettings::Invariant().DecimalSeparator, u'.');
}

TEST(FormatSettings, AreTakenAsTheyAreAtTheMoment) {
    const TFormatSettingsScope scope({u','});
    const TFormatSettings& taken = TFormatSettings::Current();
    TFormatSettings::SetCurrent({u';'});
    EXPECT_EQ(taken.DecimalSeparator, u',');
}

} // namespace
} // namespace lmx
