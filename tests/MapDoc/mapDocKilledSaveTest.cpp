#include <lmx/MapDoc/lmxVerifiedMapDocWriter.h>
#include <tests/MapDoc/DocumentMap.h>
#include <tests/Support/FileSizeLimit.h>

#include <QDir>

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <functional>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

// Programs that are killed, and disks that are full, in the middle of a verified save.

namespace lmx {
namespace {

using namespace tests;

int Wait(pid_t process) {
    int status = 0;
    return waitpid(process, &status, 0) == process ? status : -1;
}

constexpr std::chrono::microseconds KillStep{100}; // between the places where one is killed that cannot be followed

/// Whether the system lets a process follow its child.
bool CanFollow() {
    static const bool can = [] {
        const pid_t process = fork();
        if (process == 0)
            std::_Exit(ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) == 0 ? 0 : 1);
        return Wait(process) == 0;
    }();
    return can;
}

/// Whether the process has come to its end by itself; another one is dead.
bool HasEnded(int status) {
    EXPECT_TRUE(WIFSIGNALED(status) ? WTERMSIG(status) == SIGKILL : WIFEXITED(status) && WEXITSTATUS(status) == 0);
    return WIFEXITED(status);
}

/// Does the work in a process of its own, which is killed after `stop` steps of time.
bool EndsInTime(int stop, const std::function<void()>& work) {
    const pid_t process = fork();
    if (process == 0) {
        work();
        std::_Exit(0);
    }
    EXPECT_GT(process, 0);
    std::this_thread::sleep_for(stop * KillStep);
    kill(process, SIGKILL);
    return HasEnded(Wait(process));
}

/// Does the work in a process of its own, which is killed where it enters or leaves the system for the `stop`-th time;
/// by the clock where processes may not be followed. Whether the work came to its end.
bool EndsBeforeKill(int stop, const std::function<void()>& work) {
    if (!CanFollow())
        return EndsInTime(stop, work);
    const pid_t process = fork();
    if (process == 0) {
        if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) == 0)
            raise(SIGSTOP);
        work();
        std::_Exit(0);
    }
    EXPECT_GT(process, 0);
    int status = Wait(process);
    for (int i = 0; i < stop && WIFSTOPPED(status); ++i) {
        EXPECT_EQ(ptrace(PTRACE_SYSCALL, process, nullptr, nullptr), 0);
        status = Wait(process);
    }
    if (WIFSTOPPED(status)) {
        kill(process, SIGKILL);
        status = Wait(process);
    }
    return HasEnded(status);
}

class MapDocKilledSave : public testing::Test, TWithPoint {
protected:
    void SetUp() override {
        AddImageLayer(FMap, SmallImage(), nullptr);
        FMap.Points().GetPoints().Add(std::make_unique<TInfoQueryPoint>());
        Save(FWhole.Path());
        FFolder.Write("map.lmx", "old");
    }

    void Save(const QString& fileName) {
        TVerifiedMapDocWriter(QStringLiteral("Test"), DefaultPersistFactory())
            .Write(fileName, &FMap.View, erpEmbedIfPossible);
    }
    void RemoveLeftovers() const {
        for (const QString& file : Files())
            if (file != QStringLiteral("map.lmx")) {
                EXPECT_TRUE(QFile::remove(FFolder.Path(file.toUtf8().constData())));
            }
    }
    QStringList Files() const {
        return QDir(FFolder.Path(".")).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    TDocumentFolder FWhole; ///< with the document that a save makes
    TDocumentFolder FFolder;
    TDocumentMap FMap;
};

TEST_F(MapDocKilledSave, LeavesTheOldDocumentOrTheNewOne) {
    const QByteArray whole = FWhole.Read();
    bool isOver = false;
    int olds = 0;
    int news = 0;
    for (int stop = 0; !isOver && !HasFailure(); ++stop) {
        isOver = EndsBeforeKill(stop, [this] { Save(FFolder.Path()); });
        const QByteArray found = FFolder.Read();
        EXPECT_TRUE(found == "old" || found == whole) << stop;
        ++(found == "old" ? olds : news);
        EXPECT_TRUE(!isOver || found == whole);
        RemoveLeftovers();
        FFolder.Write("map.lmx", "old");
    }
    EXPECT_GT(olds, CanFollow() ? 20 : 0);
    EXPECT_GT(news, CanFollow() ? 2 : 0); // killed between the replacement and the end, too
}

TEST_F(MapDocKilledSave, WhatIsLeftBesideIsInNobodysWay) {
    for (int i = 0; i < 3; ++i)
        EXPECT_FALSE(EndsBeforeKill(CanFollow() ? 20 + i : i, [this] { Save(FFolder.Path()); }));
    EXPECT_EQ(FFolder.Read(), "old");
    Save(FFolder.Path());
    EXPECT_EQ(FFolder.Read(), FWhole.Read());
}

TEST_F(MapDocKilledSave, ADiskThatIsFullAtAnyByteLeavesTheOldDocument) {
    const qsizetype size = FWhole.Read().size();
    for (qsizetype most = 0; most < size && !HasFailure(); ++most) {
        const TFileSizeLimit limit(static_cast<rlim_t>(most));
        EXPECT_EQ(MessageOf<EFileException>([&] { Save(FFolder.Path()); }),
                  FFolder.Path() + QStringLiteral(": cannot be written: File too large"))
            << most;
        EXPECT_EQ(FFolder.Read(), "old") << most;
        EXPECT_EQ(Files(), QStringList{"map.lmx"}) << most;
    }
    const TFileSizeLimit limit(static_cast<rlim_t>(size));
    Save(FFolder.Path());
    EXPECT_EQ(FFolder.Read(), FWhole.Read());
}

} // namespace
} // namespace lmx
