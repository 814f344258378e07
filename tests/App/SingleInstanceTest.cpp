#include "App/SingleInstance.h"

#include "support/Awaiting.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFuture>
#include <QLocalServer>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QThread>
#include <QtConcurrent>

#include <gtest/gtest.h>

#include <csignal>
#include <optional>

using namespace Talvo;
using namespace std::chrono_literals;

namespace {

/// The processes of these tests are objects of one process: a lock belongs to the descriptor that
/// took it, so that they exclude each other as processes do. Where it matters that the other one is
/// a process, it is the flock command.
class SingleInstanceTest : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(runtime.isValid() && home.isValid());
        qputenv("XDG_RUNTIME_DIR", runtime.path().toUtf8());
    }

    void TearDown() override
    {
        before ? qputenv("XDG_RUNTIME_DIR", *before) : qunsetenv("XDG_RUNTIME_DIR");
    }

    [[nodiscard]] QString directory() const { return home.filePath(QStringLiteral("share")); }

    /// Asks from another thread, since asking blocks and the one who is asked lives on this one.
    static bool raisedWhileEventsAreHandled(const SingleInstance &asking)
    {
        const QFuture<bool> answer = QtConcurrent::run([&asking] { return asking.raiseFirst(); });
        EXPECT_TRUE(awaitedCondition([&answer] { return answer.isFinished(); }));
        return answer.result();
    }

    /// A process that holds the lock of the directory, which has to be there.
    [[nodiscard]] std::unique_ptr<QProcess> lockHolder() const
    {
        auto holder = std::make_unique<QProcess>();
        holder->start(QStringLiteral("flock"),
                      {QStringLiteral("--no-fork"), QStringLiteral("--nonblock"), directory(),
                       QStringLiteral("sh"), QStringLiteral("-c"),
                       QStringLiteral("echo locked; exec sleep 60")});
        EXPECT_TRUE(awaitedCondition([&holder] { return holder->canReadLine(); }));
        return holder;
    }

    QTemporaryDir runtime;
    QTemporaryDir home;
    std::optional<QByteArray> before = qEnvironmentVariableIsSet("XDG_RUNTIME_DIR")
                                           ? std::optional(qgetenv("XDG_RUNTIME_DIR"))
                                           : std::nullopt;
};

} // namespace

TEST_F(SingleInstanceTest, theFirstOneMakesTheDirectory)
{
    const SingleInstance first(directory());
    EXPECT_TRUE(first.isFirst());
    EXPECT_TRUE(QDir(directory()).exists());
}

TEST_F(SingleInstanceTest, aSecondOneIsNotTheFirstAndRaisesIt)
{
    const SingleInstance first(directory());
    QSignalSpy raised(&first, &SingleInstance::raiseRequested);
    const SingleInstance second(directory());
    EXPECT_FALSE(second.isFirst());
    EXPECT_TRUE(raisedWhileEventsAreHandled(second));
    EXPECT_EQ(raised.count(), 1);
    EXPECT_TRUE(raisedWhileEventsAreHandled(second));
    EXPECT_EQ(raised.count(), 2);
}

TEST_F(SingleInstanceTest, everyNameOfTheDirectoryIsTheSameDirectory)
{
    const SingleInstance first(directory());
    const QString link = home.filePath(QStringLiteral("link"));
    ASSERT_TRUE(QFile::link(directory(), link));
    for (const QString &name :
         {directory() + u'/', directory() + QStringLiteral("/../share"), link}) {
        EXPECT_FALSE(SingleInstance(name).isFirst()) << qPrintable(name);
    }
}

TEST_F(SingleInstanceTest, theNextOneIsFirstOnceTheFirstIsGone)
{
    std::optional<SingleInstance> first(directory());
    first.reset();
    EXPECT_TRUE(SingleInstance(directory()).isFirst());
}

TEST_F(SingleInstanceTest, otherDirectoriesAreOtherInstances)
{
    const SingleInstance first(directory());
    QSignalSpy raised(&first, &SingleInstance::raiseRequested);
    const SingleInstance other(home.filePath(QStringLiteral("other")));
    EXPECT_TRUE(other.isFirst());
    const SingleInstance second(home.filePath(QStringLiteral("other")));
    EXPECT_TRUE(raisedWhileEventsAreHandled(second));
    EXPECT_EQ(raised.count(), 0);
}

TEST_F(SingleInstanceTest, aKilledProcessLeavesNothingBehindThatCounts)
{
    QString socket;
    {
        const SingleInstance first(directory());
        const QStringList sockets = QDir(runtime.path()).entryList(QDir::System);
        ASSERT_EQ(sockets.size(), 1);
        socket = runtime.filePath(sockets.first());
    }
    // As a killed process leaves it: a socket's file that nobody listens on.
    QLocalServer dead;
    ASSERT_TRUE(dead.listen(runtime.filePath(QStringLiteral("dead"))));
    ASSERT_TRUE(QFile::rename(dead.fullServerName(), socket));
    dead.close();
    ASSERT_TRUE(QFile::exists(socket));

    ASSERT_TRUE(QDir().mkpath(directory()));
    const std::unique_ptr<QProcess> holder = lockHolder();
    EXPECT_FALSE(SingleInstance(directory()).isFirst());
    holder->kill();
    ASSERT_TRUE(holder->waitForFinished());
    const SingleInstance first(directory());
    EXPECT_TRUE(first.isFirst());
    EXPECT_TRUE(raisedWhileEventsAreHandled(SingleInstance(directory())));
}

TEST_F(SingleInstanceTest, aFirstOneThatHangsStaysTheFirst)
{
    const SingleInstance first(directory());
    QSignalSpy raised(&first, &SingleInstance::raiseRequested);
    const SingleInstance second(directory());
    EXPECT_FALSE(second.isFirst());
    // On this thread: the first one gets no chance to answer.
    EXPECT_FALSE(second.raiseFirst());
    EXPECT_FALSE(SingleInstance(directory()).isFirst());
    EXPECT_EQ(raised.count(), 0);
}

TEST_F(SingleInstanceTest, aStoppedProcessKeepsItsLock)
{
    ASSERT_TRUE(QDir().mkpath(directory()));
    const std::unique_ptr<QProcess> holder = lockHolder();
    ASSERT_EQ(::kill(static_cast<pid_t>(holder->processId()), SIGSTOP), 0);
    const SingleInstance second(directory());
    EXPECT_FALSE(second.isFirst());
    EXPECT_FALSE(second.raiseFirst());
    holder->kill();
    ASSERT_TRUE(holder->waitForFinished());
}

TEST_F(SingleInstanceTest, whoIsAboutToEndAnswersNobody)
{
    SingleInstance first(directory());
    QSignalSpy raised(&first, &SingleInstance::raiseRequested);
    first.stopAnswering();
    const SingleInstance second(directory());
    EXPECT_FALSE(second.isFirst());
    EXPECT_FALSE(raisedWhileEventsAreHandled(second));
    EXPECT_EQ(raised.count(), 0);
}

TEST_F(SingleInstanceTest, theNextOneSucceedsOnceTheFirstHasEnded)
{
    ASSERT_TRUE(QDir().mkpath(directory()));
    const std::unique_ptr<QProcess> holder = lockHolder();
    SingleInstance second(directory());
    EXPECT_FALSE(second.succeedWithin(200ms));
    EXPECT_FALSE(second.isFirst());

    const auto end = QtConcurrent::run([process = static_cast<pid_t>(holder->processId())] {
        QThread::msleep(200);
        return ::kill(process, SIGKILL);
    });
    EXPECT_TRUE(second.succeedWithin(1min));
    EXPECT_EQ(end.result(), 0);
    EXPECT_TRUE(second.isFirst());
    EXPECT_TRUE(raisedWhileEventsAreHandled(SingleInstance(directory())));
    EXPECT_TRUE(awaitedCondition([&] { return holder->state() == QProcess::NotRunning; }));
}

TEST_F(SingleInstanceTest, withoutALockTheSocketDecides)
{
    // No directory can be made below a file, so there is nothing to lock.
    QFile file(home.filePath(QStringLiteral("file")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    const QString below = file.fileName() + QStringLiteral("/share");

    const SingleInstance first(below);
    EXPECT_TRUE(first.isFirst());
    QSignalSpy raised(&first, &SingleInstance::raiseRequested);
    const QFuture<bool> secondIsFirst =
        QtConcurrent::run([&below] { return SingleInstance(below).isFirst(); });
    EXPECT_TRUE(awaitedCondition([&secondIsFirst] { return secondIsFirst.isFinished(); }));
    EXPECT_FALSE(secondIsFirst.result());
    EXPECT_EQ(raised.count(), 1);
}

TEST_F(SingleInstanceTest, theFoldersThatItMakesAreTheUsersAlone)
{
    const QString above = home.filePath(QStringLiteral("local"));
    const SingleInstance first(above + QStringLiteral("/share"));
    ASSERT_TRUE(first.isFirst());
    const auto ownerOnly = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;
    const auto asUser = QFile::ReadUser | QFile::WriteUser | QFile::ExeUser;
    for (const QString &made : {above, above + QStringLiteral("/share")}) {
        EXPECT_EQ(QFile::permissions(made), ownerOnly | asUser) << qPrintable(made);
    }
}

TEST_F(SingleInstanceTest, whereNoSocketCanBeMadeTheSecondOneDoesNotWait)
{
    // Longer than the address of a socket may be.
    const QString deep = runtime.filePath(QString(120, u'x'));
    ASSERT_TRUE(QDir().mkdir(deep));
    ASSERT_TRUE(
        QFile::setPermissions(deep, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    qputenv("XDG_RUNTIME_DIR", deep.toUtf8());
    static QStringList warnings;
    warnings.clear();
    const QtMessageHandler handler = qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext &, const QString &text) { warnings.append(text); });
    const SingleInstance first(directory());
    const qsizetype warningsOfTheFirst = warnings.size();
    SingleInstance second(directory());
    const bool isRaised = second.raiseFirst();
    QElapsedTimer waiting;
    waiting.start();
    const bool hasSucceeded = second.succeedWithin(10s);
    const qint64 waited = waiting.elapsed();
    qInstallMessageHandler(handler);

    EXPECT_TRUE(first.isFirst());
    EXPECT_FALSE(second.isFirst());
    EXPECT_FALSE(isRaised);
    EXPECT_FALSE(hasSucceeded);
    EXPECT_LT(waited, 5000);
    EXPECT_EQ(warningsOfTheFirst, 1);
    EXPECT_EQ(warnings.size(), 2);
}
