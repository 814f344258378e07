#include "Keychain/PrivateSessionBus.h"

#include <QFile>
#include <QSemaphore>
#include <QStandardPaths>

#include <csignal>
#include <gio/gio.h>

namespace Talvo {

namespace {

constexpr auto program = "dbus-daemon";

constexpr auto configuration = R"(<!DOCTYPE busconfig PUBLIC
 "-//freedesktop//DTD D-BUS Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:path=%1</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";

} // namespace

bool PrivateSessionBus::isInstalled()
{
    return !QStandardPaths::findExecutable(QLatin1String(program)).isEmpty();
}

PrivateSessionBus::PrivateSessionBus()
{
    QFile file(m_directory.filePath(QStringLiteral("bus.conf")));
    if (!file.open(QIODevice::WriteOnly)) {
        return;
    }
    file.write(
        QString::fromUtf8(configuration).arg(m_directory.filePath(QStringLiteral("bus"))).toUtf8());
    file.close();
    if (m_process.start(QLatin1String(program),
                        {QStringLiteral("--nofork"), QStringLiteral("--nopidfile"),
                         QStringLiteral("--print-address"),
                         QStringLiteral("--config-file=") + file.fileName()})) {
        m_address = m_process.readLine();
        m_variable.emplace("DBUS_SESSION_BUS_ADDRESS", m_address);
    }
}

PrivateSessionBus::~PrivateSessionBus()
{
    m_process.sendSignal(SIGCONT);
    // GIO keeps the session bus's connection while anybody uses it, its own thread included.
    QSemaphore gone;
    const auto onGone = [](gpointer semaphore, GObject *) {
        static_cast<QSemaphore *>(semaphore)->release();
    };
    if (GDBusConnection *const connection = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr)) {
        g_dbus_connection_set_exit_on_close(connection, FALSE);
        g_object_weak_ref(G_OBJECT(connection), onGone, &gone);
        g_object_unref(connection);
        if (!gone.tryAcquire(1, 10'000)) {
            qFatal("the session bus's connection is still in use");
        }
    }
}

} // namespace Talvo
