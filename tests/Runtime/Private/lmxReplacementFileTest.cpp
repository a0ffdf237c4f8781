#include <lmx/Runtime/Private/lmxReplacementFile.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxText.h>
#include <tests/Support/FileSizeLimit.h>
#include <tests/Support/Printers.h>

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace lmx {
namespace {

using tests::MessageOf;

class ReplacementFile : public testing::Test {
protected:
    QStringList Files() const { return QDir(Folder.path()).entryList(QDir::Files | QDir::Hidden); }

    QTemporaryDir Folder;
    QString Name = Folder.filePath(QStringLiteral("a.txt"));
};

TEST_F(ReplacementFile, TakesThePlaceOfTheOldOneWhenCommitted) {
    WriteFile(Name, "old");
    TReplacementFile file(Name);
    file.Write("ne");
    file.Flush();
    file.GetDevice().write("w");
    EXPECT_EQ(ReadFile(Name), "old");
    file.Commit();
    EXPECT_EQ(ReadFile(Name), "new");
    EXPECT_EQ(Files(), QStringList{QStringLiteral("a.txt")});
}

TEST_F(ReplacementFile, LeavesTheOldOneWithoutACommit) {
    WriteFile(Name, "old");
    { TReplacementFile(Name).Write("new"); }
    EXPECT_EQ(ReadFile(Name), "old");
    EXPECT_EQ(Files(), QStringList{QStringLiteral("a.txt")});
}

TEST_F(ReplacementFile, NeedsAFolder) {
    const QString nowhere = Folder.filePath(QStringLiteral("no/a.txt"));
    EXPECT_EQ(MessageOf<EFileException>([&] { TReplacementFile file(nowhere); }),
              nowhere + QStringLiteral(": cannot be written: No such file or directory"));
}

TEST_F(ReplacementFile, NoticesAFullDiskAndLeavesTheOldOne) {
    WriteFile(Name, "old");
    const QString message = Name + QStringLiteral(": cannot be written: File too large");
    {
        const tests::TFileSizeLimit limit(5);
        TReplacementFile flushed(Name);
        flushed.Write("much more than that");
        EXPECT_EQ(MessageOf<EFileException>([&] { flushed.Flush(); }), message);
        TReplacementFile committed(Name);
        committed.Write("much more than that");
        EXPECT_EQ(MessageOf<EFileException>([&] { committed.Commit(); }), message);
        EXPECT_EQ(MessageOf<EFileException>([&] { WriteFile(Name, "much more than that"); }), message);
        EXPECT_EQ(MessageOf<EFileException>([&] { WriteFile(Name, QByteArray(100'000, 'x')); }), message);
    }
    EXPECT_EQ(ReadFile(Name), "old");
    EXPECT_EQ(Files(), QStringList{QStringLiteral("a.txt")});
}

} // namespace
} // namespace lmx
