#include "Platform/SessionBusAddress.h"

#include <QByteArrayList>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace Talvo {

bool isExistingBusAddress(const QByteArray &address)
{
    const QByteArrayList alternatives = address.split(';');
    return !address.isEmpty() && std::ranges::none_of(alternatives, [](const QByteArray &one) {
        return one.startsWith("autolaunch:");
    });
}

QByteArray defaultSessionBusSocket()
{
    const QByteArray directory = qgetenv("XDG_RUNTIME_DIR");
    return directory.isEmpty() ? directory : directory + "/bus";
}

bool hasSessionBus()
{
    const QByteArray address = qgetenv("DBUS_SESSION_BUS_ADDRESS");
    if (!address.isEmpty()) {
        return isExistingBusAddress(address);
    }
    const QByteArray socket = defaultSessionBusSocket();
    return !socket.isEmpty() && QFileInfo::exists(QFile::decodeName(socket));
}

} // namespace Talvo
