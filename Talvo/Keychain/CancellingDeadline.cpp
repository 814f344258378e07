#include "Keychain/CancellingDeadline.h"

namespace Talvo {

CancellingDeadline::CancellingDeadline(std::chrono::milliseconds bound)
    : m_cancellable(g_cancellable_new())
    , m_end(std::chrono::steady_clock::now() + bound)
    , m_thread([this](const std::stop_token &stop) { waitForEnd(stop); })
{
}

CancellingDeadline::~CancellingDeadline() = default;

void CancellingDeadline::restart(std::chrono::milliseconds bound)
{
    {
        const std::lock_guard lock(m_mutex);
        m_end = std::chrono::steady_clock::now() + bound;
    }
    m_changed.notify_all();
}

void CancellingDeadline::waitForEnd(const std::stop_token &stop)
{
    std::unique_lock lock(m_mutex);
    while (!stop.stop_requested() && std::chrono::steady_clock::now() < m_end) {
        const auto end = m_end;
        m_changed.wait_until(lock, stop, end, [&] { return m_end != end; });
    }
    if (!stop.stop_requested()) {
        g_cancellable_cancel(cancellable());
    }
}

} // namespace Talvo
