#pragma once

#include <QByteArray>

namespace Talvo {

/// Whether a D-Bus address (several are separated by semicolons) leads to a bus that exists:
/// "autolaunch" would start a new one. Pure.
[[nodiscard]] bool isExistingBusAddress(const QByteArray &address);

/// Whether this process is told of a session bus: by DBUS_SESSION_BUS_ADDRESS, else by the socket
/// "bus" in XDG_RUNTIME_DIR. Whether somebody listens there is another question. Any thread.
[[nodiscard]] bool hasSessionBus();

} // namespace Talvo
