#include "Keychain/SessionBus.h"

#include "Keychain/FreedBy.h"
#include "Platform/SessionBusAddress.h"

#include <QDeadlineTimer>

#include <dbus/dbus.h>
#include <memory>
#include <new>

namespace Talvo {

namespace {

using MessagePointer = std::unique_ptr<DBusMessage, FreedBy<dbus_message_unref>>;
using CallPointer = std::unique_ptr<DBusPendingCall, FreedBy<dbus_pending_call_unref>>;
using TextPointer = std::unique_ptr<char, FreedBy<dbus_free>>;

void closeAndUnref(DBusConnection *connection)
{
    dbus_connection_close(connection);
    dbus_connection_unref(connection);
}

/// A connection that nobody else in the process has.
using BusConnection = std::unique_ptr<DBusConnection, FreedBy<closeAndUnref>>;

/// What the process is told of; only where hasSessionBus().
QByteArray sessionBusAddress()
{
    QByteArray address = qgetenv("DBUS_SESSION_BUS_ADDRESS");
    if (!address.isEmpty()) {
        return address;
    }
    const TextPointer escaped(dbus_address_escape_value(defaultSessionBusSocket().constData()));
    return QByteArrayLiteral("unix:path=") + escaped.get();
}

/// The first call of every client, on its way; it waits for as long as its caller does. Null when
/// the connection has gone already.
CallPointer sayHello(DBusConnection *connection)
{
    const MessagePointer message(dbus_message_new_method_call(DBUS_SERVICE_DBUS, DBUS_PATH_DBUS,
                                                              DBUS_INTERFACE_DBUS, "Hello"));
    DBusPendingCall *call = nullptr;
    const bool isSent = message && dbus_connection_send_with_reply(connection, message.get(), &call,
                                                                   DBUS_TIMEOUT_INFINITE) != FALSE;
    if (!isSent) {
        throw std::bad_alloc();
    }
    return CallPointer(call);
}

} // namespace

bool isSessionBusMute(std::chrono::milliseconds bound)
{
    if (!hasSessionBus()) {
        return false;
    }
    const BusConnection connection(
        dbus_connection_open_private(sessionBusAddress().constData(), nullptr));
    if (!connection) {
        return false;
    }
    const CallPointer hello = sayHello(connection.get());
    const QDeadlineTimer deadline(bound);
    while (hello && dbus_connection_get_is_connected(connection.get()) != FALSE &&
           dbus_pending_call_get_completed(hello.get()) == FALSE) {
        if (deadline.hasExpired()) {
            return true;
        }
        dbus_connection_read_write_dispatch(connection.get(),
                                            static_cast<int>(deadline.remainingTime()));
    }
    return false;
}

} // namespace Talvo
