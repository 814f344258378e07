#include "Platform/SessionBusAddress.h"

#include "support/ScopedVariable.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <optional>

using namespace Talvo;

TEST(SessionBusAddress, aBusThatWouldHaveToBeStartedDoesNotExist)
{
    EXPECT_TRUE(isExistingBusAddress("unix:path=/a,guid=1"));
    EXPECT_TRUE(isExistingBusAddress("unix:path=/a;unix:abstract=b"));
    EXPECT_FALSE(isExistingBusAddress(""));
    EXPECT_FALSE(isExistingBusAddress("autolaunch:"));
    EXPECT_FALSE(isExistingBusAddress("autolaunch:scope=*user"));
    EXPECT_FALSE(isExistingBusAddress("unix:path=/a;autolaunch:"));
}

TEST(SessionBusAddress, isTheEnvironmentsElseTheRuntimeDirectorysSocket)
{
    const QTemporaryDir directory;
    const ScopedVariable runtime("XDG_RUNTIME_DIR", directory.path().toUtf8());
    {
        const ScopedVariable address("DBUS_SESSION_BUS_ADDRESS", "unix:path=/a,guid=1");
        EXPECT_TRUE(hasSessionBus());
    }
    {
        const ScopedVariable address("DBUS_SESSION_BUS_ADDRESS", "autolaunch:");
        EXPECT_FALSE(hasSessionBus());
    }
    const ScopedVariable address("DBUS_SESSION_BUS_ADDRESS", std::nullopt);
    EXPECT_FALSE(hasSessionBus());
    QFile socket(directory.filePath(QStringLiteral("bus")));
    ASSERT_TRUE(socket.open(QIODevice::WriteOnly));
    EXPECT_TRUE(hasSessionBus());
}
