#include "Views/FrameDelay.h"

#include <QByteArray>

#include <gtest/gtest.h>

using namespace Talvo;

namespace {

constexpr auto variable = "QT_QPA_UPDATE_IDLE_TIME";

class FrameDelayTest : public testing::Test
{
protected:
    void SetUp() override { qunsetenv(variable); }
    void TearDown() override { qunsetenv(variable); }
};

TEST_F(FrameDelayTest, isAMillisecond)
{
    shortenFrameDelay();
    EXPECT_EQ(qgetenv(variable), "1");
}

TEST_F(FrameDelayTest, isWhatTheEnvironmentSays)
{
    qputenv(variable, "7");
    shortenFrameDelay();
    EXPECT_EQ(qgetenv(variable), "7");
}

} // namespace
