#pragma once

#include "Platform/WaitingThreads.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QThread>
#include <QThreadPool>

#include <functional>

namespace Talvo::Testing {

/// Runs the event loop until a condition holds; false when it does not within ten seconds, which is
/// a bound for a broken test and never a measure of speed.
inline bool waitUntil(const std::function<bool()> &condition)
{
    constexpr qint64 limitInMilliseconds = 10000;
    QElapsedTimer elapsed;
    elapsed.start();
    while (!condition()) {
        if (elapsed.hasExpired(limitInMilliseconds)) {
            return false;
        }
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        QThread::msleep(1);
    }
    return true;
}

/// Lets everything that is ready to run do so, deferred deletions included.
inline void settle()
{
    for (int i = 0; i < 5; ++i) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

/// Waits until the condition holds, the common workers are idle and nobody waits for a keyring or a
/// proxy, and what follows from that has ended too; false when it does not. For a test in which
/// nothing may happen.
inline bool waitUntilAtRest(const std::function<bool()> &condition)
{
    const auto isAtRest = [&condition] {
        return condition() && QThreadPool::globalInstance()->activeThreadCount() == 0 &&
               waitingThreads().activeThreadCount() == 0;
    };
    // Not just once: the end of one step, which settle() handles, may begin another that is over
    // before anybody looks.
    for (int round = 0; round < 3; ++round) {
        if (!waitUntil(isAtRest)) {
            return false;
        }
        settle();
    }
    return true;
}

} // namespace Talvo::Testing
