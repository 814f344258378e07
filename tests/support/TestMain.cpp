#include <QCoreApplication>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

/// Delivers every event through this project's code, where ThreadSanitizer sees it:
/// ThreadHandOvers.cpp.
class TestApplication : public QCoreApplication
{
public:
    using QCoreApplication::QCoreApplication;

    bool notify(QObject *receiver, QEvent *event) override
    {
        return QCoreApplication::notify(receiver, event);
    }
};

} // namespace

// Every test executable runs inside an application object, so that timers, network and coroutines
// work.
int main(int argc, char **argv)
{
    TestApplication application(argc, argv);
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
