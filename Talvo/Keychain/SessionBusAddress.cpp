#include "Keychain/SessionBusAddress.h"

#include <QFileInfo>

#include <gio/gio.h>

#include <memory>

namespace Talvo {

QByteArray connectableAddresses(const QByteArray &listed)
{
    QByteArrayList addresses = listed.split(';');
    addresses.removeIf([](const QByteArray &address) {
        return address.isEmpty() || address.startsWith("autolaunch:");
    });
    return addresses.join(';');
}

QByteArray sessionBusAddress()
{
    const QByteArray listed = qgetenv("DBUS_SESSION_BUS_ADDRESS");
    if (!listed.isEmpty()) {
        return connectableAddresses(listed);
    }
    const QByteArray directory = qgetenv("XDG_RUNTIME_DIR");
    if (directory.isEmpty()) {
        return {};
    }
    const QByteArray socket = directory + "/bus";
    if (!QFileInfo::exists(QString::fromLocal8Bit(socket))) {
        return {};
    }
    const std::unique_ptr<char, decltype(&g_free)> escaped(
        g_dbus_address_escape_value(socket.constData()), g_free);
    return QByteArray("unix:path=") + escaped.get();
}

} // namespace Talvo
