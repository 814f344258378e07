#include <QCoreApplication>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

// Every test executable runs inside an application object, so that timers, network and coroutines
// work.
int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
