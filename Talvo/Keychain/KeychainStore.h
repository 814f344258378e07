#pragma once

#include "Keychain/KeychainItemOperations.h"
#include "Platform/LocalizedError.h"

#include <QFuture>

namespace Talvo {

/// Keeps the user's Groq API key as one generic-password item of the system keychain, and nothing
/// else. A small value: it holds the item's name, never the key.
///
/// read(), save() and remove() are synchronous and may wait for a prompt. Who has a window takes
/// those that return a future: they wait on threads of their own (waitingThreads()), and may
/// overlap.
class KeychainStore
{
public:
    /// What can go wrong with the keychain.
    class KeychainError : public TypedError<KeychainError>
    {
    public:
        /// What is wrong.
        enum class Case {
            unhandled,   ///< the keychain refused or failed: see status()
            invalidData, ///< what is stored is no UTF-8 text
        };

        /// The keychain answered with a status that is no success.
        [[nodiscard]] static KeychainError unhandled(KeychainStatus status);
        /// What is stored is no UTF-8 text.
        [[nodiscard]] static KeychainError invalidData();

        /// What is wrong. Any thread.
        [[nodiscard]] Case errorCase() const noexcept { return m_case; }
        /// The keychain's status of `unhandled`, else 0.
        [[nodiscard]] KeychainStatus status() const noexcept { return m_status; }

    private:
        KeychainError(Case errorCase, KeychainStatus status, const QString &description);

        Case m_case;
        KeychainStatus m_status;
    };

    /// Names the item and asks nothing yet. @param operations shared by the copies, not null
    explicit KeychainStore(
        std::shared_ptr<KeychainItemOperations> operations = systemKeychainItemOperations(),
        QString service = QStringLiteral("com.talvo.groq"),
        QString account = QStringLiteral("groq-api-key"));

    /// The stored key exactly as it was saved, absent when there is none. Throws KeychainError.
    [[nodiscard]] std::optional<QString> read() const;

    /// Stores a key exactly as given: updates the one item, or adds it. Throws KeychainError.
    void save(const QString &key) const;

    /// Removes the item; none there is a success as well. Throws KeychainError.
    void remove() const;

    /// read() on another thread. Fails with KeychainError. Never blocks.
    [[nodiscard]] QFuture<std::optional<QString>> startReading() const;
    /// save() on another thread. Fails with KeychainError. Never blocks.
    [[nodiscard]] QFuture<void> startSaving(const QString &key) const;
    /// remove() on another thread. Fails with KeychainError. Never blocks.
    [[nodiscard]] QFuture<void> startRemoving() const;

    /// For when nobody is left to be told: prompts that are open are taken back, also those of
    /// copies of this store, and operations that want one fail. Any thread; never blocks.
    void stopPrompts() const;

private:
    std::shared_ptr<KeychainItemOperations> m_operations;
    KeychainItemQuery m_baseQuery;
};

} // namespace Talvo
