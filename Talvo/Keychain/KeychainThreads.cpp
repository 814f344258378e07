#include "Keychain/KeychainThreads.h"

#include <QCoreApplication>
#include <QThreadPool>

namespace Talvo {

namespace {

/// One for the send and one for each time that the settings were opened while a prompt waits:
/// nobody opens them this often, and what exceeds it waits for its turn.
constexpr int mostThreads = 32;

void waitForCalls()
{
    keychainThreads().waitForDone();
}

class KeychainThreadPool : public QThreadPool
{
public:
    KeychainThreadPool()
    {
        setMaxThreadCount(mostThreads);
        qAddPostRoutine(waitForCalls);
    }
};

} // namespace

QThreadPool &keychainThreads()
{
    static KeychainThreadPool pool;
    return pool;
}

} // namespace Talvo
