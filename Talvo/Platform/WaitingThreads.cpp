#include "Platform/WaitingThreads.h"

#include <QCoreApplication>
#include <QThreadPool>

#include <chrono>
#include <cstdlib>

using namespace std::chrono_literals;

namespace Talvo {

namespace {

/// A send needs one, and each opening of the settings while a prompt waits: nobody opens them this
/// often, and what exceeds it waits for its turn.
constexpr int mostThreads = 32;

/// Longer than a keyring is waited for. The search for a proxy has no bound.
constexpr std::chrono::milliseconds endingBound = 30s;

void waitForCalls()
{
    if (!waitingThreads().waitForDone(static_cast<int>(endingBound.count()))) {
        // What is left changes nothing any more, and nobody can end it: this pool's destructor
        // would wait for it, and the network library's.
        std::_Exit(EXIT_SUCCESS);
    }
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
