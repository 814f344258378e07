#include "Views/FrameDelay.h"

#include "support/ScopedVariable.h"

#include <gtest/gtest.h>

using namespace Talvo;

namespace {

constexpr auto variable = "QT_QPA_UPDATE_IDLE_TIME";

TEST(FrameDelay, isAMillisecond)
{
    const ScopedVariable unset(variable, std::nullopt);
    shortenFrameDelay();
    EXPECT_EQ(qgetenv(variable), "1");
}

TEST(FrameDelay, isWhatTheEnvironmentSays)
{
    const ScopedVariable set(variable, "7");
    shortenFrameDelay();
    EXPECT_EQ(qgetenv(variable), "7");
}

} // namespace
