#pragma once

#include "Keychain/GLibPointers.h"

#include <QtGlobal>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace Talvo {

/// Bounds a sequence of blocking GIO calls: cancels all that were given its cancellable once the
/// time is over. Each GIO call has a time limit of its own at best, several in a row have none.
class CancellingDeadline
{
public:
    /// Starts the clock.
    explicit CancellingDeadline(std::chrono::milliseconds bound);
    /// Stops the clock; nothing is cancelled any more.
    ~CancellingDeadline();
    Q_DISABLE_COPY_MOVE(CancellingDeadline)

    /// What to give to the calls. It stays cancelled once the time is over.
    [[nodiscard]] GCancellable *cancellable() const noexcept { return m_cancellable.get(); }

    /// Sets the clock anew, to `bound` from now.
    void restart(std::chrono::milliseconds bound);

private:
    void waitForEnd(const std::stop_token &stop);

    GObjectPointer<GCancellable> m_cancellable;
    std::mutex m_mutex;
    std::condition_variable_any m_changed;
    std::chrono::steady_clock::time_point m_end;
    std::jthread m_thread; ///< the last member: it uses the others
};

} // namespace Talvo
