#pragma once

#include <QByteArray>
#include <QString>

#include <memory>
#include <optional>

namespace Talvo {

/// A keychain's status code: 0 for done, else negative. The values are those of the Security
/// framework, on every system.
using KeychainStatus = qint32;

namespace KeychainStatuses {
inline constexpr KeychainStatus success = 0;
inline constexpr KeychainStatus itemNotFound = -25300;
inline constexpr KeychainStatus notAvailable = -25291;
inline constexpr KeychainStatus interactionNotAllowed = -25308;
inline constexpr KeychainStatus userCanceled = -128;
inline constexpr KeychainStatus authFailed = -25293;
inline constexpr KeychainStatus internalError = -67585;
} // namespace KeychainStatuses

/// The attributes that name one generic-password item.
struct KeychainItemQuery
{
    QString service; ///< whose key it is, e.g. "com.talvo.groq"
    QString account; ///< which of the service's keys

    friend bool operator==(const KeychainItemQuery &, const KeychainItemQuery &) = default;
};

/// The four item operations of a system keychain. Synchronous; callable from any thread, from
/// several at once. An operation takes minutes where the keychain prompts the user: on Linux it is
/// bounded in time, with and without a prompt (SecretServiceBounds); elsewhere the system bounds
/// it.
class KeychainItemOperations
{
public:
    /// What copyMatching() found: `data` is absent when the result is no buffer of bytes.
    struct Match
    {
        KeychainStatus status = KeychainStatuses::internalError; ///< whether the item was found
        std::optional<QByteArray> data;                          ///< its content, as stored
    };

    KeychainItemOperations() = default;
    virtual ~KeychainItemOperations() = default;
    Q_DISABLE_COPY_MOVE(KeychainItemOperations)

    /// Reads the item.
    [[nodiscard]] virtual Match copyMatching(const KeychainItemQuery &query) = 0;
    /// Makes the item with this content.
    [[nodiscard]] virtual KeychainStatus add(const KeychainItemQuery &query,
                                             const QByteArray &data) = 0;
    /// Replaces the content of an item that exists; itemNotFound when none does.
    [[nodiscard]] virtual KeychainStatus update(const KeychainItemQuery &query,
                                                const QByteArray &data) = 0;
    /// Removes the item; itemNotFound when there is none.
    [[nodiscard]] virtual KeychainStatus remove(const KeychainItemQuery &query) = 0;
    /// Takes back the prompts that are open, and those that would follow: nobody is left who wants
    /// to know. Their operations end soon, as failures. Does nothing where the system has no way.
    virtual void stopPrompts() {}
};

/// The operations of this system: Secret Service on Linux, the Security framework on macOS.
[[nodiscard]] std::shared_ptr<KeychainItemOperations> systemKeychainItemOperations();

} // namespace Talvo
