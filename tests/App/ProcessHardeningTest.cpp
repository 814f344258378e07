#include "App/ProcessHardening.h"

#include <QFile>

#include <gtest/gtest.h>

#include <sys/resource.h>

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
