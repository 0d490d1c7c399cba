#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <csignal>
#include <functional>

#include "domain/AtomicSave.h"
#include "domain/SettingsFile.h"
#include "support/ScriptedPrompts.h"

using namespace rk31;

namespace {

const QByteArray kOldBytes = "Part #1:\r\nVDD is(V):5.000\r\nDP is(deg):260.00\r\n";

QByteArray readBytes(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Runs `body` in a child process, so that resource limits and mounts stay there, and returns
// the lines it reported.
QStringList inChild(const std::function<QStringList()>& body) {
    int fds[2];
    if (pipe(fds) != 0) {
        return {"no pipe"};
    }
    const pid_t child = fork();
    if (child == 0) {
        close(fds[0]);
        const QByteArray report = body().join(u'\n').toUtf8();
        const bool sent =
            write(fds[1], report.constData(), static_cast<size_t>(report.size())) == report.size();
        _exit(sent ? 0 : 1);
    }
    close(fds[1]);
    QByteArray report;
    char buffer[512];
    for (ssize_t n; (n = read(fds[0], buffer, sizeof buffer)) > 0;) {
        report.append(buffer, n);
    }
    close(fds[0]);
    int status = 0;
    waitpid(child, &status, 0);
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        return {"child failed"};
    }
    return QString::fromUtf8(report).split(u'\n');
}

// The save command over an existing file, the overwrite question answered Yes; reports whether
// it saved, the messages and whether the old file kept its bytes.
QStringList saveOver(const QString& path, const QStringList& lines) {
    test::ScriptedPrompts prompts;
    prompts.fileNames = {path};
    prompts.answers = {true};
    QString lastName;
    const bool saved = SaveSettingsFile(lines, lastName, prompts);
    const QByteArray now = readBytes(path);
    return QStringList{saved ? "saved" : "not saved"} + prompts.messages +
           QStringList{now == kOldBytes ? "old bytes" : "changed"};
}

}  // namespace

// A file size limit cuts the write of the temporary file short, at its first byte or inside it.
TEST(FailedSave, FileSizeLimitKeepsTheOldFileAndSaysSo) {
    const QStringList big(400, QStringLiteral("Angle of Point A is(deg):123.45"));
    const struct {
        rlim_t limit;
        QStringList lines;
        QStringList report;
    } cases[] = {
        {0, {"x"}, {"not saved", SaveErrorMessage, "old bytes"}},
        {1024, big, {"not saved", SaveErrorMessage, "old bytes"}},
        {1024, {"fits"}, {"saved", "changed"}},
    };
    for (const auto& c : cases) {
        QTemporaryDir dir;
        const QString path = dir.filePath("profile.txt");
        QFile old(path);
        ASSERT_TRUE(old.open(QIODevice::WriteOnly) && old.write(kOldBytes) == kOldBytes.size());
        old.close();
        const QStringList report = inChild([&] {
            std::signal(SIGXFSZ, SIG_IGN);
            const rlimit limit{c.limit, c.limit};
            if (setrlimit(RLIMIT_FSIZE, &limit) != 0) {
                return QStringList{"no limit"};
            }
            return saveOver(path, c.lines);
        });
        EXPECT_EQ(report, c.report) << c.limit;
        if (c.report.back() == "old bytes") {
            EXPECT_EQ(readBytes(path), kOldBytes);
            EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files), QStringList{"profile.txt"});
        }
    }
}

// A disk with no space left, where the system lets us mount a small one of our own.
TEST(FailedSave, FullDiskKeepsTheOldFileAndSaysSo) {
    QTemporaryDir dir;
    const QString mountPoint = dir.path();
    const QStringList report = inChild([&] {
        const QByteArray where = QFile::encodeName(mountPoint);
        if (unshare(CLONE_NEWNS) != 0 ||
            mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) ||
            mount("rk31", where.constData(), "tmpfs", 0, "size=64k") != 0) {
            return QStringList{"skip"};
        }
        const QString path = mountPoint + "/profile.txt";
        QFile old(path);
        if (!old.open(QIODevice::WriteOnly) || old.write(kOldBytes) != kOldBytes.size()) {
            return QStringList{"no old file"};
        }
        old.close();
        QFile filler(mountPoint + "/filler");
        filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered);
        const QByteArray block(1024, 'f');
        while (filler.write(block) == block.size()) {
        }
        filler.close();
        QStringList result =
            saveOver(path, QStringList(400, QStringLiteral("Level of Point A is(%):12.50")));
        QString why;
        result << (SaveFileAtomically(path, QByteArray(8192, 'x'), &why) ? "saved" : "not saved")
               << (why.isEmpty() ? "no reason" : "a reason")
               << (readBytes(path) == kOldBytes ? "old bytes" : "changed");
        return result;
    });
    if (report == QStringList{"skip"}) {
        GTEST_SKIP() << "cannot mount a small file system here";
    }
    EXPECT_EQ(report, QStringList({"not saved", SaveErrorMessage, "old bytes", "not saved",
                                   "a reason", "old bytes"}));
}
