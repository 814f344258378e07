#pragma once

#include <QByteArray>

namespace Talvo {

/// The D-Bus addresses in `listed` (separated by semicolons) that can be connected to as they
/// are: without "autolaunch", which would start a new bus that no keychain is on. Pure.
[[nodiscard]] QByteArray connectableAddresses(const QByteArray &listed);

/// The address of this user's session bus: DBUS_SESSION_BUS_ADDRESS, else the socket "bus" in
/// XDG_RUNTIME_DIR; empty when there is none. Never starts a bus.
[[nodiscard]] QByteArray sessionBusAddress();

} // namespace Talvo
