#include "player/ProcessChecker.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <memory>
#include <vector>

using Pelorin::ProcessChecker;

namespace {

// A process file system in a temporary folder: one folder per process id, holding an exe link
// and a cmdline file as the kernel would, or leaving either out.
class FakeProc {
public:
    FakeProc() { EXPECT_TRUE(m_root.isValid()); }

    QString Root() const { return m_root.path(); }

    void AddProcess(int pid, const QString& exeTarget, const QByteArray& cmdline) {
        const QString folder = m_root.filePath(QString::number(pid));
        ASSERT_TRUE(QDir().mkpath(folder));
        if (!exeTarget.isEmpty()) {
            ASSERT_TRUE(QFile::link(exeTarget, folder + QStringLiteral("/exe")));
        }
        QFile file(folder + QStringLiteral("/cmdline"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(cmdline);
    }

    void AddFolder(const QString& name) { ASSERT_TRUE(QDir(m_root.path()).mkpath(name)); }

private:
    QTemporaryDir m_root;
};

const QByteArray NoCmdline;

} // namespace

TEST(ProcessChecker, NoMatchingProcessGivesFalse) {
    FakeProc proc;
    proc.AddProcess(1, QStringLiteral("/usr/lib/systemd/systemd"), "/sbin/init\0splash"_qba);
    proc.AddProcess(812, QStringLiteral("/usr/bin/bash"), "bash"_qba);
    EXPECT_FALSE(ProcessChecker(proc.Root()).IsProcessRunning(QStringLiteral("iTunes")));
}

TEST(ProcessChecker, TwoMatchingProcessesGiveTrue) {
    FakeProc proc;
    proc.AddProcess(100, QStringLiteral("/opt/iTunes/iTunes"), NoCmdline);
    proc.AddProcess(101, QStringLiteral("/usr/bin/bash"), NoCmdline);
    proc.AddProcess(102, QStringLiteral("/opt/iTunes/iTunes"), NoCmdline);
    EXPECT_TRUE(ProcessChecker(proc.Root()).IsProcessRunning(QStringLiteral("iTunes")));
}

TEST(ProcessChecker, HelperWhoseExecutableLiesInAFolderNamediTunesMatches) {
    FakeProc proc;
    proc.AddProcess(300, QStringLiteral("/opt/iTunes/helper"), NoCmdline);
    EXPECT_TRUE(ProcessChecker(proc.Root()).IsProcessRunning(QStringLiteral("iTunes")));
}

TEST(ProcessChecker, MatchIgnoresCase) {
    FakeProc proc;
    proc.AddProcess(400, QStringLiteral("/mnt/c/Program Files/ITUNES.EXE"), NoCmdline);
    EXPECT_TRUE(ProcessChecker(proc.Root()).IsProcessRunning(QStringLiteral("iTunes")));
}

TEST(ProcessChecker, MatchIsAnywhereInTheWholePath) {
    FakeProc proc;
    proc.AddProcess(500, QStringLiteral("/home/mpdfan/bin/player"), NoCmdline);
    ProcessChecker checker(proc.Root());
    EXPECT_TRUE(checker.IsProcessRunning(QStringLiteral("mpd")));
    EXPECT_TRUE(checker.IsProcessRunning(QStringLiteral("fan/bin/pl")));
    EXPECT_FALSE(checker.IsProcessRunning(QStringLiteral("players")));
}

TEST(ProcessChecker, UnreadableExeLinkFallsBackToTheFirstFieldOfTheCommandLine) {
    FakeProc proc;
    proc.AddProcess(600, QString(), "/usr/bin/mpd\0--no-daemon\0/etc/iTunes.conf\0"_qba);
    ProcessChecker checker(proc.Root());
    EXPECT_TRUE(checker.IsProcessRunning(QStringLiteral("mpd")));
    EXPECT_FALSE(checker.IsProcessRunning(QStringLiteral("iTunes")));
    EXPECT_FALSE(checker.IsProcessRunning(QStringLiteral("daemon")));
}

TEST(ProcessChecker, CommandLineWithoutAnyNulIsOneField) {
    FakeProc proc;
    proc.AddProcess(601, QString(), "mpd: rewritten title"_qba);
    EXPECT_TRUE(ProcessChecker(proc.Root()).IsProcessRunning(QStringLiteral("TITLE")));
}

TEST(ProcessChecker, ReadableExeLinkWinsOverTheCommandLine) {
    FakeProc proc;
    proc.AddProcess(700, QStringLiteral("/usr/bin/sleep"), "iTunes\0"_qba);
    EXPECT_FALSE(ProcessChecker(proc.Root()).IsProcessRunning(QStringLiteral("iTunes")));
}

TEST(ProcessChecker, ProcessWithNeitherExeLinkNorCommandLineIsSkipped) {
    FakeProc proc;
    proc.AddProcess(2, QString(), NoCmdline);  // a kernel thread
    proc.AddProcess(3, QString(), "\0\0"_qba); // an empty first field
    proc.AddFolder(QStringLiteral("4"));       // a process that vanished meanwhile
    // An empty name is contained in every path, so only a skipped process can answer False.
    EXPECT_FALSE(ProcessChecker(proc.Root()).IsProcessRunning(QString()));
}

TEST(ProcessChecker, EntriesThatAreNotProcessIdsAreIgnored) {
    FakeProc proc;
    proc.AddFolder(QStringLiteral("self"));
    ASSERT_TRUE(QFile::link(QStringLiteral("/opt/iTunes/iTunes"),
                            proc.Root() + QStringLiteral("/self/exe")));
    proc.AddFolder(QStringLiteral("12a"));
    ASSERT_TRUE(QFile::link(QStringLiteral("/opt/iTunes/iTunes"),
                            proc.Root() + QStringLiteral("/12a/exe")));
    EXPECT_FALSE(ProcessChecker(proc.Root()).IsProcessRunning(QStringLiteral("iTunes")));
}

TEST(ProcessChecker, MissingProcessFolderGivesFalse) {
    QTemporaryDir dir;
    ProcessChecker checker(dir.filePath(QStringLiteral("no-such-proc")));
    EXPECT_FALSE(checker.IsProcessRunning(QString()));
}

// Real processes in the real /proc.

namespace {

// A copy of sleep in <temporary folder>/iTunesHelper/sleepy, so its path is unique to this test
// and contains "iTunes".
class SleepyHelper {
public:
    SleepyHelper() {
        EXPECT_TRUE(m_dir.isValid());
        EXPECT_TRUE(QDir(m_dir.path()).mkdir(QStringLiteral("iTunesHelper")));
        m_program = m_dir.filePath(QStringLiteral("iTunesHelper/sleepy"));
        EXPECT_TRUE(QFile::copy(QStringLiteral("/bin/sleep"), m_program));
        EXPECT_TRUE(QFile::setPermissions(m_program, QFile::ReadOwner | QFile::ExeOwner));
    }

    ~SleepyHelper() {
        for (const auto& process : m_processes)
            Stop(*process);
    }

    // Text found only in the path of this helper's executable.
    QString UniqueName() const { return m_dir.path() + QStringLiteral("/iTunesHelper"); }

    QProcess& Start() {
        auto process = std::make_unique<QProcess>();
        process->start(m_program, {QStringLiteral("60")});
        EXPECT_TRUE(process->waitForStarted(5000));
        m_processes.push_back(std::move(process));
        return *m_processes.back();
    }

    static void Stop(QProcess& process) {
        if (process.state() == QProcess::NotRunning)
            return;
        process.kill();
        process.waitForFinished(5000);
    }

private:
    QTemporaryDir m_dir;
    QString m_program;
    std::vector<std::unique_ptr<QProcess>> m_processes;
};

} // namespace

TEST(ProcessCheckerOnRealProc, FindsAHelperStartedFromAFolderNamediTunes) {
    SleepyHelper helper;
    ProcessChecker checker;
    EXPECT_FALSE(checker.IsProcessRunning(helper.UniqueName()));
    helper.Start();
    EXPECT_TRUE(checker.IsProcessRunning(helper.UniqueName()));
    EXPECT_TRUE(checker.IsProcessRunning(helper.UniqueName().toUpper()));
}

TEST(ProcessCheckerOnRealProc, StaysTrueWhileOneOfTwoMatchingProcessesRuns) {
    SleepyHelper helper;
    ProcessChecker checker;
    QProcess& first = helper.Start();
    QProcess& second = helper.Start();
    EXPECT_TRUE(checker.IsProcessRunning(helper.UniqueName()));
    SleepyHelper::Stop(first);
    EXPECT_TRUE(checker.IsProcessRunning(helper.UniqueName()));
    SleepyHelper::Stop(second);
    EXPECT_FALSE(checker.IsProcessRunning(helper.UniqueName()));
}

TEST(ProcessCheckerOnRealProc, FindsThisTestProgram) {
    EXPECT_TRUE(ProcessChecker().IsProcessRunning(QStringLiteral("player_process_test")));
}

TEST(ProcessChecker, TheRememberedMatchAnswersWhileItLivesAndAWalkFindsAnotherOnceItIsGone) {
    FakeProc proc;
    proc.AddProcess(100, QStringLiteral("/opt/iTunes/iTunes"), NoCmdline);
    const ProcessChecker checker(proc.Root());
    EXPECT_TRUE(checker.IsProcessRunning(QStringLiteral("iTunes")));
    ASSERT_TRUE(QDir(proc.Root() + QStringLiteral("/100")).removeRecursively());
    proc.AddProcess(300, QStringLiteral("/opt/iTunes/iTunes"), NoCmdline);
    EXPECT_TRUE(checker.IsProcessRunning(QStringLiteral("iTunes")));
    ASSERT_TRUE(QDir(proc.Root() + QStringLiteral("/300")).removeRecursively());
    EXPECT_FALSE(checker.IsProcessRunning(QStringLiteral("iTunes")));
}

TEST(ProcessChecker, ARememberedProcessIdNowHeldByAnotherProgramIsNoMatch) {
    FakeProc proc;
    proc.AddProcess(100, QStringLiteral("/opt/iTunes/iTunes"), NoCmdline);
    const ProcessChecker checker(proc.Root());
    EXPECT_TRUE(checker.IsProcessRunning(QStringLiteral("iTunes")));
    ASSERT_TRUE(QDir(proc.Root() + QStringLiteral("/100")).removeRecursively());
    proc.AddProcess(100, QStringLiteral("/usr/bin/bash"), NoCmdline);
    EXPECT_FALSE(checker.IsProcessRunning(QStringLiteral("iTunes")));
}

TEST(ProcessChecker, TheRememberedMatchServesOnlyTheNameItMatched) {
    FakeProc proc;
    proc.AddProcess(100, QStringLiteral("/opt/iTunes/iTunes"), NoCmdline);
    const ProcessChecker checker(proc.Root());
    EXPECT_TRUE(checker.IsProcessRunning(QStringLiteral("iTunes")));
    EXPECT_FALSE(checker.IsProcessRunning(QStringLiteral("opt/other")));
    EXPECT_TRUE(checker.IsProcessRunning(QStringLiteral("Tunes")));
}
