#include "App/MuteSessionBus.h"

#include <QtGlobal>

#ifdef Q_OS_LINUX
#include "Keychain/SessionBus.h"

#include <QByteArray>
#include <QDBusConnection>
#endif

namespace Talvo {

#ifdef Q_OS_LINUX

void avoidMuteSessionBus(std::chrono::milliseconds bound)
{
    if (!isSessionBusMute(bound)) {
        return;
    }
    constexpr auto variable = "DBUS_SESSION_BUS_ADDRESS";
    const bool wasSet = qEnvironmentVariableIsSet(variable);
    const QByteArray address = qgetenv(variable);
    // The bus library reads the address once, at its first connection, and keeps it for good. No
    // transport has this name, so every attempt of the toolkit's fails at once.
    qputenv(variable, "unreachable:");
    QDBusConnection::sessionBus();
    if (wasSet) {
        qputenv(variable, address);
    } else {
        qunsetenv(variable);
    }
}

#else

void avoidMuteSessionBus(std::chrono::milliseconds /*bound*/) {}

#endif

} // namespace Talvo
