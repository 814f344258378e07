#pragma once

#include <QCoroTask>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>

#include <chrono>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <variant>

namespace Talvo {

/// How long a test waits before it gives up: far beyond anything a test does on purpose.
inline constexpr std::chrono::seconds awaitingLimit{60};

namespace AwaitingDetail {

template <class T>
struct Outcome
{
    using Value = std::conditional_t<std::is_void_v<T>, std::monostate, T>;

    std::optional<Value> value;
    std::exception_ptr error;
    QEventLoop *loop = nullptr;

    [[nodiscard]] bool hasEnded() const { return value.has_value() || error; }
};

template <class T>
QCoro::Task<void> settle(QCoro::Task<T> task, std::shared_ptr<Outcome<T>> outcome)
{
    try {
        if constexpr (std::is_void_v<T>) {
            co_await task;
            outcome->value.emplace();
        } else {
            outcome->value.emplace(co_await task);
        }
    } catch (...) {
        outcome->error = std::current_exception();
    }
    if (outcome->loop != nullptr) {
        outcome->loop->quit();
    }
}

} // namespace AwaitingDetail

/// Runs the event loop until a task ends; returns its value or throws its error, by type.
///
/// In place of QCoro::waitFor(), which never returns for a task that throws (QCoro 0.8). Throws
/// std::runtime_error when the task is still not done after awaitingLimit; it is then left alone.
template <class T>
T awaited(QCoro::Task<T> task)
{
    using namespace AwaitingDetail;
    const auto outcome = std::make_shared<Outcome<T>>();
    const auto settled = settle<T>(std::move(task), outcome);
    if (!outcome->hasEnded()) {
        QEventLoop loop;
        outcome->loop = &loop;
        QTimer::singleShot(awaitingLimit, &loop, &QEventLoop::quit);
        loop.exec();
        outcome->loop = nullptr;
    }
    if (outcome->error) {
        std::rethrow_exception(outcome->error);
    }
    if (!outcome->value) {
        throw std::runtime_error("the task has not ended");
    }
    if constexpr (!std::is_void_v<T>) {
        return std::move(*outcome->value);
    }
}

/// Runs the event loop until a condition holds; false when it still does not after awaitingLimit.
inline bool awaitedCondition(const std::function<bool()> &holds)
{
    const QDeadlineTimer deadline(awaitingLimit);
    QEventLoop loop;
    while (!holds()) {
        if (deadline.hasExpired()) {
            return false;
        }
        // Wakes up at least every few milliseconds, as the condition may change on another thread.
        QTimer::singleShot(std::chrono::milliseconds(2), &loop, &QEventLoop::quit);
        loop.exec();
    }
    return true;
}

/// Runs the event loop for a while, for a test that asserts that nothing happens.
inline void letPass(std::chrono::milliseconds time)
{
    QEventLoop loop;
    QTimer::singleShot(time, &loop, &QEventLoop::quit);
    loop.exec();
}

} // namespace Talvo
