#include "Platform/ThreadPriority.h"

#include <gtest/gtest.h>

#ifdef __linux__

#include <sys/resource.h>
#include <thread>
#include <unistd.h>

using namespace Talvo;

namespace {

int niceOfThisThread()
{
    return ::getpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()));
}

int niceAfter(int times)
{
    int nice = 0;
    std::thread([&] {
        for (int i = 0; i < times; ++i) {
            lowerThreadPriority();
        }
        nice = niceOfThisThread();
    }).join();
    return nice;
}

TEST(ThreadPriority, isLoweredForOneThread)
{
    const int before = niceOfThisThread();
    ASSERT_LT(before, 10) << "started with a priority that cannot show it";
    EXPECT_GT(niceAfter(1), before);
    EXPECT_EQ(niceOfThisThread(), before);
}

TEST(ThreadPriority, isLoweredOnce)
{
    EXPECT_EQ(niceAfter(2), niceAfter(1));
}

TEST(ThreadPriority, passesOnToTheThreadsOfAThread)
{
    int nice = 0;
    std::thread([&] {
        lowerThreadPriority();
        std::thread([&] { nice = niceOfThisThread(); }).join();
    }).join();
    EXPECT_EQ(nice, niceAfter(1));
}

} // namespace

#endif
