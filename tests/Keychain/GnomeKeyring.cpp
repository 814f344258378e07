#include "Keychain/GnomeKeyring.h"

#include "Keychain/SecretServiceConnection.h"
#include "Keychain/SecretServiceFailure.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QThread>

namespace Talvo {

namespace {

const QString daemonName = QStringLiteral("gnome-keyring-daemon");
const QString toolName = QStringLiteral("secret-tool");

bool waitForService()
{
    const QDeadlineTimer end(10'000);
    while (!end.hasExpired()) {
        try {
            const SecretServiceConnection service({}, {});
            return true;
        } catch (const SecretServiceFailure &) {
            QThread::msleep(10); // not there yet
        }
    }
    return false;
}

} // namespace

QStringList GnomeKeyring::missingPrograms()
{
    QStringList missing{daemonName, toolName};
    missing.removeIf(
        [](const QString &name) { return !QStandardPaths::findExecutable(name).isEmpty(); });
    return missing;
}

GnomeKeyring::GnomeKeyring()
{
    const QString path = m_directory.path();
    m_process.setEnvironment(QStringLiteral("HOME"), path);
    m_process.setEnvironment(QStringLiteral("XDG_DATA_HOME"), path + QStringLiteral("/data"));
    m_process.setEnvironment(QStringLiteral("XDG_RUNTIME_DIR"), path);
}

bool GnomeKeyring::startUnlocked()
{
    return start({QStringLiteral("--unlock")}, "password");
}

bool GnomeKeyring::startLocked()
{
    return start({}, {});
}

bool GnomeKeyring::start(const QStringList &arguments, const QByteArray &password)
{
    m_process.kill();
    const QStringList all =
        QStringList{QStringLiteral("--foreground"), QStringLiteral("--components=secrets"),
                    QStringLiteral("--control-directory=") +
                        m_directory.filePath(QStringLiteral("control"))} +
        arguments;
    const QString installed = QStandardPaths::findExecutable(daemonName);
    if (!m_process.start(installed, all)) {
        // The installed file asks for a capability that many containers do not grant, and then
        // cannot be executed at all. A copy asks for none; it does without locked memory.
        const QString copy = m_directory.filePath(daemonName);
        QFile::copy(installed, copy);
        if (!m_process.start(copy, all)) {
            return false;
        }
    }
    m_process.writeInput(password);
    return waitForService();
}

QByteArray GnomeKeyring::secretTool(const QStringList &arguments, const QByteArray &input)
{
    TestProcess tool;
    if (!tool.start(toolName, arguments)) {
        return {};
    }
    tool.writeInput(input);
    return tool.readAll();
}

} // namespace Talvo
