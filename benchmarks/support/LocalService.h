#pragma once

#include <QByteArray>
#include <QThread>
#include <QUrl>

#include <atomic>

namespace Talvo::Benchmarks {

/// Nanoseconds of the monotonic clock, the same for all threads.
[[nodiscard]] qint64 monotonicNanoseconds();

/// A completion service on 127.0.0.1 that answers every request at once with the same reply, on a
/// thread of its own, and notes when bytes passed. Listens from construction to destruction.
class LocalService
{
public:
    explicit LocalService(const QByteArray &reply);
    ~LocalService();
    Q_DISABLE_COPY_MOVE(LocalService)

    [[nodiscard]] QUrl url() const;
    /// How many requests were answered.
    [[nodiscard]] int requestCount() const { return m_requestCount; }
    /// From now on the first byte of the next request and the last one of its answer are noted.
    void watchNextRequest();
    /// Monotonic nanoseconds, 0 when there was none since watchNextRequest().
    [[nodiscard]] qint64 firstByteAt() const { return m_firstByteAt; }
    [[nodiscard]] qint64 lastByteAt() const { return m_lastByteAt; }

private:
    class Listener;

    QThread m_thread;
    Listener *m_listener = nullptr;
    quint16 m_port = 0;
    std::atomic<int> m_requestCount = 0;
    std::atomic<qint64> m_firstByteAt = 0;
    std::atomic<qint64> m_lastByteAt = 0;
};

} // namespace Talvo::Benchmarks
