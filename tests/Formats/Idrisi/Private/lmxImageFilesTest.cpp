#include <lmx/Formats/Idrisi/Private/lmxImageFiles.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Formats/ImageFiles.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

namespace lmx::tests {

TEST(ImageFiles, AreSavedInPairsOfOneGenerationAndCase) {
    const auto pairOf = [](const char* name) {
        const TImageFiles files = ImageFilesFor(QString::fromLatin1(name));
        return files.Data + QStringLiteral(" + ") + files.Documentation;
    };
    EXPECT_EQ(pairOf("a.rst"), QStringLiteral("a.rst + a.rdc"));
    EXPECT_EQ(pairOf("a.rdc"), QStringLiteral("a.rst + a.rdc"));
    EXPECT_EQ(pairOf("dir.x/b.c.img"), QStringLiteral("dir.x/b.c.img + dir.x/b.c.doc"));
    EXPECT_EQ(pairOf("b.doc"), QStringLiteral("b.img + b.doc"));
    EXPECT_EQ(pairOf("SOILS.IMG"), QStringLiteral("SOILS.IMG + SOILS.DOC"));
    EXPECT_EQ(pairOf("Soils.Rst"), QStringLiteral("Soils.Rst + Soils.rdc"));
    EXPECT_EQ(ImageFilesFor(QStringLiteral("a.rdc")).Form, TDocumentationForm::dfWindows);
    EXPECT_EQ(ImageFilesFor(QStringLiteral("A.IMG")).Form, TDocumentationForm::dfDos);
}

TEST(ImageFiles, PreferTheirOwnGenerationAndTheExactName) {
    const TImageFolder folder;
    for (const char* name : {"a.rst", "a.rdc", "A.RDC", "a.img", "a.doc"})
        folder.Write(name, "x");
    EXPECT_EQ(FindImageFiles(folder.Path("a.rst")).Documentation, folder.Path("a.rdc"));
    EXPECT_EQ(FindImageFiles(folder.Path("a.img")).Documentation, folder.Path("a.doc"));
    EXPECT_EQ(FindImageFiles(folder.Path("a.rdc")).Data, folder.Path("a.rst"));
    EXPECT_EQ(FindImageFiles(folder.Path("a.doc")).Data, folder.Path("a.img"));
}

TEST(ImageFiles, NeedASuffixOfTheirOwn) {
    for (const char* name : {"a", "a.tif", "rst", "a.rst.gz", ""})
        EXPECT_EQ(MessageOf<EFileException>([&] { ImageFilesFor(QString::fromLatin1(name)); }),
                  QString::fromLatin1(name) + QStringLiteral(": an Idrisi image is an .rst or .img file"))
            << name;
}

} // namespace lmx::tests
