#include "App/ProcessHardening.h"

#include <QFile>
#include <QTemporaryFile>

#include <gtest/gtest.h>

#include <cerrno>
#include <sys/resource.h>
#include <unistd.h>

TEST(ProcessHardening, leavesNothingForACoreDump)
{
    Talvo::refuseCoreDumps();

    rlimit size{1, 1};
    ASSERT_EQ(getrlimit(RLIMIT_CORE, &size), 0);
    EXPECT_EQ(size.rlim_cur, 0U);
    EXPECT_EQ(size.rlim_max, 0U) << "a part of the process could raise the limit again";
#ifdef Q_OS_LINUX
    // Where dumps go through a pipe to a crash handler, the limit does not count; the filter does.
    QFile filter(QStringLiteral("/proc/self/coredump_filter"));
    ASSERT_TRUE(filter.open(QIODevice::ReadOnly));
    EXPECT_EQ(filter.readAll().trimmed().toInt(nullptr, 16), 0);
#endif
}

TEST(ProcessHardening, aWriteBeyondTheLimitFailsAndEndsNothing)
{
    Talvo::surviveFileSizeLimit();
    QTemporaryFile file;
    ASSERT_TRUE(file.open());
    rlimit previous{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &previous), 0);
    const rlimit small{4096, previous.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    const QByteArray bytes(4096, 'x');
    const auto within = ::write(file.handle(), bytes.constData(), 4096);
    const auto beyond = ::write(file.handle(), bytes.constData(), 4096);
    const int systemError = errno;
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &previous), 0);

    EXPECT_EQ(within, 4096);
    EXPECT_EQ(beyond, -1);
    EXPECT_EQ(systemError, EFBIG);
}
