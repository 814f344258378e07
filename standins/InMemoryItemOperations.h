#pragma once

#include "Keychain/KeychainItemOperations.h"

#include <QList>
#include <QQueue>

#include <condition_variable>
#include <map>
#include <mutex>
#include <optional>
#include <utility>

namespace Talvo {

/// A keychain that lives in this object and keeps a record of what it was asked: for tests and for
/// the demo. Any thread.
///
/// Answers can be scripted, call by call, and a gate can hold calls back as a slow keychain does.
class InMemoryItemOperations : public KeychainItemOperations
{
public:
    enum class Operation {
        copyMatching,
        add,
        update,
        remove,
    };

    /// One call as it arrived; `data` is absent where an operation has none.
    struct Call
    {
        Operation operation;
        KeychainItemQuery query;
        std::optional<QByteArray> data;

        friend bool operator==(const Call &, const Call &) = default;
    };

    /// The status of SecItemAdd when there is such an item already.
    static constexpr KeychainStatus duplicateItem = -25299;

    [[nodiscard]] Match copyMatching(const KeychainItemQuery &query) override;
    [[nodiscard]] KeychainStatus add(const KeychainItemQuery &query,
                                     const QByteArray &data) override;
    [[nodiscard]] KeychainStatus update(const KeychainItemQuery &query,
                                        const QByteArray &data) override;
    [[nodiscard]] KeychainStatus remove(const KeychainItemQuery &query) override;

    /// The next call of `operation` that has no script yet gets this answer and changes nothing.
    /// `data` counts for copyMatching only.
    void script(Operation operation, KeychainStatus status, std::optional<QByteArray> data = {});

    /// From now on calls wait, until openGate().
    void closeGate();
    void openGate();
    /// Blocks until at least one call waits at the closed gate.
    void waitForCallAtGate();

    /// The item's data, absent when there is no item. Does not count as a call.
    [[nodiscard]] std::optional<QByteArray> item(const KeychainItemQuery &query) const;
    /// Puts an item there. Does not count as a call.
    void setItem(const KeychainItemQuery &query, const QByteArray &data);
    [[nodiscard]] qsizetype itemCount() const;
    /// All calls so far, in the order of their arrival.
    [[nodiscard]] QList<Call> calls() const;

private:
    using Key = std::pair<QString, QString>;

    static Key key(const KeychainItemQuery &query) { return {query.service, query.account}; }

    /// Records the call and waits at the gate; returns its scripted answer, if any.
    std::optional<Match> enter(std::unique_lock<std::mutex> &lock, Call call);

    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_isGateOpen = true;
    int m_waitingCalls = 0;
    std::map<Key, QByteArray> m_items;
    std::map<Operation, QQueue<Match>> m_scripts;
    QList<Call> m_calls;
};

} // namespace Talvo
