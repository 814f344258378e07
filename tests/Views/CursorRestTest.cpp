#include "Views/CursorRest.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QStyleHints>
#include <QTest>
#include <QWindow>

#include <gtest/gtest.h>

using namespace Talvo;
using namespace std::chrono_literals;

namespace {

class CursorRestTest : public testing::Test
{
protected:
    void TearDown() override { QGuiApplication::styleHints()->setCursorFlashTime(-1); }

    static int flashTime() { return QGuiApplication::styleHints()->cursorFlashTime(); }

    void type()
    {
        QKeyEvent press(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier);
        QCoreApplication::sendEvent(&window, &press);
    }

    const int usual = flashTime();
    QWindow window;
};

} // namespace

TEST_F(CursorRestTest, BlinksAtFirst)
{
    const CursorRest rest(&window, 1h);
    EXPECT_GT(usual, 0);
    EXPECT_EQ(flashTime(), usual);
}

TEST_F(CursorRestTest, StandsStillAfterTheDelayAndBlinksAgainOnAKey)
{
    const CursorRest rest(&window, 1ms);
    EXPECT_TRUE(QTest::qWaitFor([] { return flashTime() == 0; }));
    type();
    EXPECT_EQ(flashTime(), usual);
    EXPECT_TRUE(QTest::qWaitFor([] { return flashTime() == 0; }));
}

TEST_F(CursorRestTest, WhatTheProgramDoesByItselfWakesNothing)
{
    const CursorRest rest(&window, 1ms);
    EXPECT_TRUE(QTest::qWaitFor([] { return flashTime() == 0; }));
    QEvent update(QEvent::UpdateRequest);
    QCoreApplication::sendEvent(&window, &update);
    EXPECT_EQ(flashTime(), 0);
}
