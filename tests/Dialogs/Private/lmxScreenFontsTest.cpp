#include <lmx/Dialogs/Private/lmxScreenFonts.h>
#include <tests/Support/Printers.h>

#include <QApplication>
#include <QFontDatabase>

namespace lmx {
namespace {

TEST(ScreenFonts, AreListedOnceInAlphabeticalOrder) {
    const TScreenFonts fonts({"beta", "Gamma", "Alpha", "Gamma"});
    EXPECT_EQ(fonts.GetNames(), (QStringList{"Alpha", "beta", "Gamma"}));
}

TEST(ScreenFonts, AreFoundInAnyCase) {
    const TScreenFonts fonts({"Alpha", "Überfont"});
    EXPECT_TRUE(fonts.Contains("Alpha"));
    EXPECT_TRUE(fonts.Contains("aLPHA"));
    EXPECT_TRUE(fonts.Contains("üBERFONT"));
    for (const QString& other : {QString(), QStringLiteral("Alph"), QStringLiteral("Alpha ")})
        EXPECT_FALSE(fonts.Contains(other)) << other.toStdString();
}

TEST(ScreenFonts, AreThoseOfTheSystem) {
    const TScreenFonts fonts;
    ASSERT_FALSE(fonts.GetNames().isEmpty());
    for (const QString& family : QFontDatabase::families())
        EXPECT_TRUE(fonts.Contains(family.section(QStringLiteral(" ["), 0, 0))) << family.toStdString();
}

TEST(ScreenFonts, ResolveANameThatStandsForWhateverThereIs) {
    const TScreenFonts fonts;
    const QString used = QFontInfo(QFont(QStringLiteral("No Such Font"))).family();
    EXPECT_EQ(fonts.NameOf(QFont(QStringLiteral("No Such Font"))), used);
    EXPECT_EQ(fonts.NameOf(QFont(fonts.GetNames().last())), fonts.GetNames().last());
}

TEST(ScreenFonts, KeepANameForWhichThereIsNothing) {
    EXPECT_EQ(TScreenFonts(QStringList()).NameOf(QFont(QStringLiteral("No Such Font"))), "No Such Font");
}

} // namespace
} // namespace lmx
