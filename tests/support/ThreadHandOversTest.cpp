// Proves that the tests under ThreadSanitizer can fail, and what they are told about Qt's
// hand-overs.

#include <QEventLoop>
#include <QFutureWatcher>
#include <QThreadPool>
#include <QtConcurrent>

#include <gtest/gtest.h>

#include <cstdlib>

namespace {

/// As ThreadSanitizer ends a process that it has reported something of.
constexpr int reported = 66;

int valueWrittenByBoth()
{
    QThreadPool pool;
    int value = 0;
    pool.start([&value] { value = 1; });
    value = 2; // the job may be running
    pool.waitForDone();
    return value;
}

int valueHandedOver()
{
    QThreadPool pool;
    int value = 1;
    pool.start([&value] { ++value; });
    pool.waitForDone();
    return value;
}

} // namespace

TEST(ThreadHandOversDeathTest, aRaceIsReported)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            valueWrittenByBoth();
            std::exit(0);
        },
        testing::ExitedWithCode(reported), "data race");
}

TEST(ThreadHandOvers, aJobAndWhoWaitsForItShareWhatTheyTouch)
{
    EXPECT_EQ(valueHandedOver(), 2);
}

TEST(ThreadHandOvers, aFutureHandsOverItsResult)
{
    QFuture<QByteArray> future = QtConcurrent::run([] { return QByteArray(100, 'x'); });
    EXPECT_EQ(future.result(), QByteArray(100, 'x'));
}

TEST(ThreadHandOvers, theEventOfAResultHandsOverWhatWasDoneForIt)
{
    int value = 0;
    QFutureWatcher<void> watcher;
    QEventLoop loop;
    QObject::connect(&watcher, &QFutureWatcher<void>::finished, &loop, &QEventLoop::quit);
    watcher.setFuture(QtConcurrent::run([&value] { value = 1; }));
    loop.exec();
    EXPECT_EQ(value, 1);
}
