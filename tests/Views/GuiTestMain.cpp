#include <QGuiApplication>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

// Text documents and palettes need an application object with a screen.
int main(int argc, char **argv)
{
    QGuiApplication application(argc, argv);
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
