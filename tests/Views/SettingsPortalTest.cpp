#include "Views/SettingsPortal.h"

#include "support/ScopedVariable.h"

#include <QThreadPool>
#include <gtest/gtest.h>

namespace Talvo {
namespace {

TEST(SettingsPortal, TakesTheLayersOfVariantsOff)
{
    const QVariant once = QVariant::fromValue(QDBusVariant(QVariant(1u)));
    const QVariant twice = QVariant::fromValue(QDBusVariant(once));
    EXPECT_EQ(SettingsPortal::unwrapped(once), QVariant(1u));
    EXPECT_EQ(SettingsPortal::unwrapped(twice), QVariant(1u));
    EXPECT_EQ(SettingsPortal::unwrapped(QVariant(true)), QVariant(true));
}

TEST(SettingsPortal, AsksForNoBusThatWouldHaveToBeStarted)
{
    const ScopedVariable address("DBUS_SESSION_BUS_ADDRESS", "autolaunch:");
    QThreadPool &workers = *QThreadPool::globalInstance();
    ASSERT_TRUE(workers.waitForDone());
    SettingsPortal portal;
    portal.start();
    EXPECT_EQ(workers.activeThreadCount(), 0) << "the one that would connect";
    EXPECT_TRUE(workers.waitForDone());
}

} // namespace
} // namespace Talvo
