#include "Keychain/SessionBus.h"

#include "Keychain/CancellingDeadline.h"
#include "Keychain/GLibPointers.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <memory>

namespace Talvo {

bool isExistingBusAddress(const QByteArray &address)
{
    const QByteArrayList alternatives = address.split(';');
    return !address.isEmpty() && std::ranges::none_of(alternatives, [](const QByteArray &one) {
        return one.startsWith("autolaunch:");
    });
}

bool hasSessionBus()
{
    const QByteArray address = qgetenv("DBUS_SESSION_BUS_ADDRESS");
    if (!address.isEmpty()) {
        return isExistingBusAddress(address);
    }
    const QByteArray directory = qgetenv("XDG_RUNTIME_DIR");
    return !directory.isEmpty() && QFileInfo::exists(QFile::decodeName(directory + "/bus"));
}

bool isSessionBusMute(std::chrono::milliseconds bound)
{
    if (!hasSessionBus()) {
        return false;
    }
    const std::unique_ptr<char, FreedBy<g_free>> address(
        g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
    if (!address) {
        return false;
    }
    const CancellingDeadline deadline(bound);
    constexpr auto asClientOfABus =
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                          G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
    // A connection of its own: the one that the process shares would stay half made.
    const GObjectPointer<GDBusConnection> connection(g_dbus_connection_new_for_address_sync(
        address.get(), asClientOfABus, nullptr, deadline.cancellable(), nullptr));
    return !connection && deadline.isOver();
}

} // namespace Talvo
