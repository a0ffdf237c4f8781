#include <lmx/Runtime/Private/lmxReplacementFile.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxText.h>
#include <tests/Support/FileSizeLimit.h>
#include <tests/Support/Printers.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

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

// No folder of processes takes a file of ours, not even from the superuser.
TEST_F(ReplacementFile, IsWrittenIntoWhereItsFolderCannotBeWritten) {
    const QString threadName = QStringLiteral("/proc/self/comm");
    const QByteArray before = ReadFile(threadName);
    { TReplacementFile(threadName).Write("never"); }
    EXPECT_EQ(ReadFile(threadName), before) << "without a Commit";
    WriteFile(threadName, "maps");
    EXPECT_EQ(ReadFile(threadName), "maps\n");
    WriteFile(threadName, before.trimmed());
    EXPECT_TRUE(MessageOf<EFileException>([] {
                    WriteFile(QStringLiteral("/proc/self/absent"), "text");
                }).startsWith(QStringLiteral("/proc/self/absent: cannot be written: ")));
}

TEST_F(ReplacementFile, IsNotMadeOfAPipe) {
    const QByteArray pipe = QFile::encodeName(Name);
    ASSERT_EQ(mkfifo(pipe.constData(), 0600), 0);
    QFile reader(Name);
    const int handle = open(pipe.constData(), O_RDONLY | O_NONBLOCK);
    ASSERT_TRUE(reader.open(handle, QIODevice::ReadOnly | QIODevice::Unbuffered, QFileDevice::AutoCloseHandle));
    {
        TReplacementFile file(Name);
        file.Write("one");
        file.Flush();
        char none = 0;
        EXPECT_LE(read(handle, &none, 1), 0) << "nothing before the Commit";
        file.GetDevice().write("two");
        file.Commit();
    }
    EXPECT_EQ(reader.read(10), "onetwo");
    struct stat status = {};
    ASSERT_EQ(stat(pipe.constData(), &status), 0);
    EXPECT_TRUE(S_ISFIFO(status.st_mode));
    EXPECT_EQ(QDir(Folder.path()).entryList(QDir::AllEntries | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot),
              QStringList{QStringLiteral("a.txt")});
}

TEST_F(ReplacementFile, IsNoFolder) {
    EXPECT_EQ(MessageOf<EFileException>([&] { TReplacementFile file(Folder.path()); }),
              Folder.path() + QStringLiteral(": cannot be written: Filename refers to a directory"));
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
