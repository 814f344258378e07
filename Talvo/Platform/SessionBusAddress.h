#pragma once

#include <QByteArray>

namespace Talvo {

/// Whether a D-Bus address (several are separated by semicolons) leads to a bus that exists:
/// "autolaunch" would start a new one. Pure, any thread.
[[nodiscard]] bool isExistingBusAddress(const QByteArray &address);

/// The socket, an encoded path, on which the session bus listens where DBUS_SESSION_BUS_ADDRESS
/// names none; empty when that is nowhere. Any thread.
[[nodiscard]] QByteArray defaultSessionBusSocket();

/// Whether this process is told of a session bus: by DBUS_SESSION_BUS_ADDRESS, else by the socket
/// "bus" in XDG_RUNTIME_DIR. Whether somebody listens there is another question. To ask the bus
/// libraries for one that is not there is to start one. Any thread.
[[nodiscard]] bool hasSessionBus();

} // namespace Talvo
