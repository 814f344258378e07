#pragma once

#include <QByteArray>

#include <chrono>

namespace Talvo {

/// Whether a D-Bus address (several are separated by semicolons) leads to a bus that exists:
/// "autolaunch" would start a new one. Pure.
[[nodiscard]] bool isExistingBusAddress(const QByteArray &address);

/// Whether this process is told of a session bus: by DBUS_SESSION_BUS_ADDRESS, else by the socket
/// "bus" in XDG_RUNTIME_DIR. Whether somebody listens there is another question. Any thread.
[[nodiscard]] bool hasSessionBus();

/// Whether the session bus keeps a client waiting: it takes the connection and does not say hello
/// within the bound. False where there is none, and where it refuses. Any thread; blocks.
[[nodiscard]] bool isSessionBusMute(std::chrono::milliseconds bound);

} // namespace Talvo
