#pragma once

#include "Platform/LocalizedError.h"

namespace Talvo {

/// Everything that the system below this application can do wrong; each has one Turkish sentence.
enum class PlatformFailure {
    // network
    noConnection,       ///< no route, no network, host name not found
    connectionRefused,  ///< nothing listens at the address, or a proxy refuses
    connectionLost,     ///< the connection ended before the whole answer was there
    timedOut,           ///< nothing arrived for the whole idle time
    tlsFailure,         ///< no trusted secure connection to the service
    replyTooLarge,      ///< the answer exceeds its bound
    requestNotSendable, ///< it holds what no request can carry
    requestCancelled,   ///< stopped by the application itself
    networkFailure,     ///< any other failure of the transfer
    replyNotDecodable,  ///< the answer is not the JSON that it should be

    // archive
    archiveNotReadable, ///< the file exists but cannot be read
    archiveNotValid,    ///< the file was read but is no archive
    archiveNotWritable, ///< the file cannot be written or replaced
    archiveNotKept,     ///< the unreadable old file could not be kept beside the new one
    diskFull,           ///< no space or no quota left
    folderNotCreatable, ///< the archive's folder cannot be made
};

/// A failure of the system, with the one sentence of its kind and a detail of the system after it.
class PlatformError : public TypedError<PlatformError>
{
public:
    /// @param detail appended in parentheses when not empty: an errno text or a path. Never a key,
    ///               never the content of a message.
    explicit PlatformError(PlatformFailure failure, const QString &detail = {});

    /// The same failure with one more sentence behind its own: what follows from it, or what to do.
    [[nodiscard]] PlatformError withAdvice(const QString &sentence) const;

    /// Which failure this is. Any thread.
    [[nodiscard]] PlatformFailure failure() const noexcept { return m_failure; }

private:
    struct Described
    {
        QString description;
    };
    PlatformError(PlatformFailure failure, const Described &text);

    PlatformFailure m_failure;
};

/// The sentence of a failure, without any detail. Pure, any thread.
[[nodiscard]] QString platformFailureText(PlatformFailure failure);

} // namespace Talvo
