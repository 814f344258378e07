#include "Views/SettingsPortal.h"

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

} // namespace
} // namespace Talvo
