#include "standins/InMemoryItemOperations.h"

namespace Talvo {

KeychainItemOperations::Match InMemoryItemOperations::copyMatching(const KeychainItemQuery &query)
{
    std::unique_lock lock(m_mutex);
    if (const auto scripted = enter(lock, {Operation::copyMatching, query, std::nullopt})) {
        return *scripted;
    }
    const auto found = m_items.find(key(query));
    if (found == m_items.end()) {
        return {KeychainStatuses::itemNotFound, std::nullopt};
    }
    return {KeychainStatuses::success, found->second};
}

KeychainStatus InMemoryItemOperations::add(const KeychainItemQuery &query, const QByteArray &data)
{
    std::unique_lock lock(m_mutex);
    if (const auto scripted = enter(lock, {Operation::add, query, data})) {
        return scripted->status;
    }
    const bool isNew = m_items.try_emplace(key(query), data).second;
    return isNew ? KeychainStatuses::success : duplicateItem;
}

KeychainStatus InMemoryItemOperations::update(const KeychainItemQuery &query,
                                              const QByteArray &data)
{
    std::unique_lock lock(m_mutex);
    if (const auto scripted = enter(lock, {Operation::update, query, data})) {
        return scripted->status;
    }
    const auto found = m_items.find(key(query));
    if (found == m_items.end()) {
        return KeychainStatuses::itemNotFound;
    }
    found->second = data;
    return KeychainStatuses::success;
}

KeychainStatus InMemoryItemOperations::remove(const KeychainItemQuery &query)
{
    std::unique_lock lock(m_mutex);
    if (const auto scripted = enter(lock, {Operation::remove, query, std::nullopt})) {
        return scripted->status;
    }
    return m_items.erase(key(query)) > 0 ? KeychainStatuses::success
                                         : KeychainStatuses::itemNotFound;
}

void InMemoryItemOperations::script(Operation operation, KeychainStatus status,
                                    std::optional<QByteArray> data)
{
    const std::lock_guard lock(m_mutex);
    m_scripts[operation].enqueue({status, std::move(data)});
}

void InMemoryItemOperations::closeGate()
{
    const std::lock_guard lock(m_mutex);
    m_isGateOpen = false;
}

void InMemoryItemOperations::openGate()
{
    {
        const std::lock_guard lock(m_mutex);
        m_isGateOpen = true;
    }
    m_changed.notify_all();
}

void InMemoryItemOperations::waitForCallAtGate()
{
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return m_waitingCalls > 0; });
}

std::optional<QByteArray> InMemoryItemOperations::item(const KeychainItemQuery &query) const
{
    const std::lock_guard lock(m_mutex);
    const auto found = m_items.find(key(query));
    return found == m_items.end() ? std::nullopt : std::optional(found->second);
}

void InMemoryItemOperations::setItem(const KeychainItemQuery &query, const QByteArray &data)
{
    const std::lock_guard lock(m_mutex);
    m_items.insert_or_assign(key(query), data);
}

qsizetype InMemoryItemOperations::itemCount() const
{
    const std::lock_guard lock(m_mutex);
    return static_cast<qsizetype>(m_items.size());
}

QList<InMemoryItemOperations::Call> InMemoryItemOperations::calls() const
{
    const std::lock_guard lock(m_mutex);
    return m_calls;
}

std::optional<KeychainItemOperations::Match>
InMemoryItemOperations::enter(std::unique_lock<std::mutex> &lock, Call call)
{
    QQueue<Match> &script = m_scripts[call.operation];
    std::optional<Match> scripted;
    if (!script.isEmpty()) {
        scripted = script.dequeue();
    }
    m_calls.append(std::move(call));

    ++m_waitingCalls;
    m_changed.notify_all();
    m_changed.wait(lock, [this] { return m_isGateOpen; });
    --m_waitingCalls;
    return scripted;
}

} // namespace Talvo
