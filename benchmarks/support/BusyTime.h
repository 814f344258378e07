#pragma once

#include <QCoreApplication>
#include <QThread>

#include <algorithm>
#include <ctime>
#include <functional>
#include <vector>

namespace Talvo::Benchmarks {

/// Seconds of processor time that the calling thread has used: what other processes take does not
/// count.
inline double threadSeconds()
{
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

inline double quantile(std::vector<double> values, double share)
{
    if (values.empty()) {
        return 0;
    }
    const auto index = static_cast<std::size_t>(share * static_cast<double>(values.size() - 1));
    std::ranges::nth_element(values, values.begin() + static_cast<std::ptrdiff_t>(index));
    return values[index];
}

inline double median(const std::vector<double> &values)
{
    return quantile(values, 0.5);
}

/// An application that measures for how long single events hold its thread.
template <class Application>
class BusyTime : public Application
{
public:
    using Application::Application;

    bool notify(QObject *receiver, QEvent *event) override
    {
        // Events of other threads pass here, too.
        if (QThread::currentThread() != this->thread() || m_isMeasuring) {
            return Application::notify(receiver, event);
        }
        bool result = false;
        measure([&] { result = Application::notify(receiver, event); });
        return result;
    }

    /// Counts a call like an event.
    void measure(const std::function<void()> &call)
    {
        m_isMeasuring = true;
        const double start = threadSeconds();
        call();
        m_longest = std::max(m_longest, threadSeconds() - start);
        m_isMeasuring = false;
    }

    void reset() { m_longest = 0; }
    /// Seconds since reset().
    [[nodiscard]] double longest() const { return m_longest; }

private:
    bool m_isMeasuring = false;
    double m_longest = 0;
};

using BusyApplication = BusyTime<QCoreApplication>;

} // namespace Talvo::Benchmarks
