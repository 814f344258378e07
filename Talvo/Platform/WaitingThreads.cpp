#include "Platform/WaitingThreads.h"

#include <QCoreApplication>
#include <QThreadPool>

namespace Talvo {

namespace {

/// A send needs one, and each opening of the settings while a prompt waits: nobody opens them this
/// often, and what exceeds it waits for its turn.
constexpr int mostThreads = 32;

void waitForCalls()
{
    waitingThreads().waitForDone();
}

class WaitingThreadPool : public QThreadPool
{
public:
    WaitingThreadPool()
    {
        setMaxThreadCount(mostThreads);
        qAddPostRoutine(waitForCalls);
    }
};

} // namespace

QThreadPool &waitingThreads()
{
    static WaitingThreadPool pool;
    return pool;
}

} // namespace Talvo
