#include "Keychain/SecretServiceFailure.h"

#include <gtest/gtest.h>

using namespace Talvo;

TEST(SecretServiceFailure, everyRemoteErrorHasItsStatus)
{
    using namespace KeychainStatuses;
    struct Row
    {
        const char *name;
        KeychainStatus status;
        bool isMissingObject;
    };
    const std::array rows = {
        Row{"org.freedesktop.DBus.Error.ServiceUnknown", notAvailable, false},
        Row{"org.freedesktop.DBus.Error.NameHasNoOwner", notAvailable, false},
        Row{"org.freedesktop.DBus.Error.NoReply", notAvailable, false},
        Row{"org.freedesktop.DBus.Error.Spawn.ChildExited", notAvailable, false},
        Row{"org.freedesktop.DBus.Error.Spawn.ExecFailed", notAvailable, false},
        Row{"org.freedesktop.DBus.Error.AccessDenied", authFailed, false},
        Row{"org.freedesktop.DBus.Error.AuthFailed", authFailed, false},
        Row{"org.freedesktop.Secret.Error.IsLocked", interactionNotAllowed, false},
        Row{"org.freedesktop.Secret.Error.NoSession", internalError, false},
        Row{"org.freedesktop.Secret.Error.NoSuchObject", internalError, true},
        Row{"org.freedesktop.DBus.Error.UnknownObject", internalError, true},
        Row{"org.freedesktop.DBus.Error.UnknownMethod", internalError, true},
        Row{"org.freedesktop.DBus.Error.Failed", internalError, false},
        Row{"org.example.Error.Nobody.Knows", internalError, false},
    };
    for (const Row &row : rows) {
        const GErrorPointer error(g_dbus_error_new_for_dbus_error(row.name, "text"));
        const SecretServiceFailure failure = secretServiceFailure(*error);
        EXPECT_EQ(failure.status, row.status) << row.name;
        EXPECT_EQ(failure.isMissingObject, row.isMissingObject) << row.name;
    }
}

TEST(SecretServiceFailure, everyLocalErrorHasItsStatus)
{
    using namespace KeychainStatuses;
    const std::array rows = {
        std::pair(G_IO_ERROR_CANCELLED, notAvailable),
        std::pair(G_IO_ERROR_TIMED_OUT, notAvailable),
        std::pair(G_IO_ERROR_CLOSED, notAvailable),
        std::pair(G_IO_ERROR_CONNECTION_CLOSED, notAvailable),
        std::pair(G_IO_ERROR_CONNECTION_REFUSED, notAvailable),
        std::pair(G_IO_ERROR_INVALID_ARGUMENT, internalError), // an answer of another type
        std::pair(G_IO_ERROR_FAILED, internalError),
    };
    for (const auto &[code, status] : rows) {
        const GErrorPointer error(g_error_new_literal(G_IO_ERROR, code, "text"));
        EXPECT_EQ(secretServiceFailure(*error).status, status) << code;
    }
    const GErrorPointer other(g_error_new_literal(G_MARKUP_ERROR, 1, "text"));
    EXPECT_EQ(secretServiceFailure(*other).status, internalError);
}
