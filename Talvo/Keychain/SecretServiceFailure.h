#pragma once

#include "Keychain/GLibPointers.h"
#include "Keychain/KeychainItemOperations.h"

namespace Talvo {

/// Thrown inside the Secret Service operations, which turn it into their status: no user text, it
/// never leaves them.
struct SecretServiceFailure
{
    KeychainStatus status =
        KeychainStatuses::internalError; ///< what the operation gives back for it
    /// The service knows no such object (any more).
    bool isMissingObject = false;
};

/// What a failed D-Bus call means. Pure, any thread.
[[nodiscard]] SecretServiceFailure secretServiceFailure(const GError &error);

/// Throws the failure when there is one.
void throwIfFailed(const GErrorPointer &error);

} // namespace Talvo
