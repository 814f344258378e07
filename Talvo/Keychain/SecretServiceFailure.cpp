#include "Keychain/SecretServiceFailure.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace Talvo {

namespace {

struct NamedFailure
{
    std::string_view name;
    SecretServiceFailure failure;
};

constexpr SecretServiceFailure notAvailable{KeychainStatuses::notAvailable};
constexpr SecretServiceFailure refused{KeychainStatuses::authFailed};
constexpr SecretServiceFailure locked{KeychainStatuses::interactionNotAllowed};
constexpr SecretServiceFailure missing{KeychainStatuses::internalError, true};

/// The errors that D-Bus itself defines and those of the Secret Service API that mean more than
/// "failed". Services differ in how they name a missing object: most answer as if only the method
/// were unknown.
constexpr std::array namedFailures = {
    NamedFailure{"org.freedesktop.DBus.Error.ServiceUnknown", notAvailable},
    NamedFailure{"org.freedesktop.DBus.Error.NameHasNoOwner", notAvailable},
    NamedFailure{"org.freedesktop.DBus.Error.NoReply", notAvailable},
    NamedFailure{"org.freedesktop.DBus.Error.Timeout", notAvailable},
    NamedFailure{"org.freedesktop.DBus.Error.TimedOut", notAvailable},
    NamedFailure{"org.freedesktop.DBus.Error.Disconnected", notAvailable},
    NamedFailure{"org.freedesktop.DBus.Error.NoServer", notAvailable},
    NamedFailure{"org.freedesktop.DBus.Error.AccessDenied", refused},
    NamedFailure{"org.freedesktop.DBus.Error.AuthFailed", refused},
    NamedFailure{"org.freedesktop.DBus.Error.InteractiveAuthorizationRequired", refused},
    NamedFailure{"org.freedesktop.Secret.Error.IsLocked", locked},
    NamedFailure{"org.freedesktop.Secret.Error.NoSuchObject", missing},
    NamedFailure{"org.freedesktop.DBus.Error.UnknownObject", missing},
    NamedFailure{"org.freedesktop.DBus.Error.UnknownInterface", missing},
    NamedFailure{"org.freedesktop.DBus.Error.UnknownMethod", missing},
};

/// The bus could not start the service.
constexpr std::string_view spawnPrefix = "org.freedesktop.DBus.Error.Spawn.";

SecretServiceFailure remoteFailure(std::string_view name)
{
    if (name.starts_with(spawnPrefix)) {
        return notAvailable;
    }
    const auto *const found = std::ranges::find(namedFailures, name, &NamedFailure::name);
    return found == namedFailures.end() ? SecretServiceFailure{} : found->failure;
}

SecretServiceFailure localFailure(int ioErrorCode)
{
    switch (ioErrorCode) {
    case G_IO_ERROR_CANCELLED: // by the deadline, nobody else cancels
    case G_IO_ERROR_TIMED_OUT:
    case G_IO_ERROR_CLOSED:
    case G_IO_ERROR_BROKEN_PIPE: // has the value of G_IO_ERROR_CONNECTION_CLOSED
    case G_IO_ERROR_CONNECTION_REFUSED:
    case G_IO_ERROR_NOT_CONNECTED:
        return notAvailable;
    default:
        return {};
    }
}

} // namespace

SecretServiceFailure secretServiceFailure(const GError &error)
{
    const std::unique_ptr<char, FreedBy<g_free>> name(g_dbus_error_get_remote_error(&error));
    if (name) {
        return remoteFailure(name.get());
    }
    return error.domain == G_IO_ERROR ? localFailure(error.code) : SecretServiceFailure{};
}

void throwIfFailed(const GErrorPointer &error)
{
    if (error) {
        throw secretServiceFailure(*error);
    }
}

} // namespace Talvo
