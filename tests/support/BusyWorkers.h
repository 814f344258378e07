#pragma once

#include <QSemaphore>
#include <QThreadPool>

namespace Talvo::Testing {

/// Keeps every thread of a pool busy while it lives: what is handed to them waits.
class BusyWorkers
{
public:
    explicit BusyWorkers(QThreadPool &pool = *QThreadPool::globalInstance())
        : m_pool(pool)
    {
        for (int i = 0; i < m_count; ++i) {
            m_pool.start([this] {
                m_begun.release();
                m_end.acquire();
            });
        }
        m_begun.acquire(m_count);
    }

    /// Waits until what was handed to them meanwhile is done as well.
    ~BusyWorkers()
    {
        m_end.release(m_count);
        m_pool.waitForDone();
    }
    Q_DISABLE_COPY_MOVE(BusyWorkers)

private:
    QThreadPool &m_pool;
    const int m_count = m_pool.maxThreadCount();
    QSemaphore m_begun;
    QSemaphore m_end;
};

} // namespace Talvo::Testing
