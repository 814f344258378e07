#include "App/SingleInstance.h"

#include "Platform/FileManager.h"
#include "Platform/PlatformError.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QLocalSocket>
#include <QStandardPaths>
#include <QThread>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <utility>

namespace Talvo {

namespace {

constexpr int answerLimitInMilliseconds = 3000;
constexpr unsigned long lockIntervalInMilliseconds = 50;
constexpr auto answer = "ok";

/// One name for each directory, in the folder that belongs to this user's session.
QString socketName(const QString &directory)
{
    const QByteArray hash = QCryptographicHash::hash(QDir(directory).absolutePath().toUtf8(),
                                                     QCryptographicHash::Sha256)
                                .toHex()
                                .first(16);
    const QString runtime = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    return QStringLiteral("%1/talvo-%2").arg(runtime, QString::fromLatin1(hash));
}

/// Whether a process can listen on a socket like the one of this directory: in the same folder,
/// under a name as long.
bool canListen(const QString &directory)
{
    const QString process = QString::number(QCoreApplication::applicationPid());
    QLocalServer server;
    return server.listen(socketName(directory + u'/' + process));
}

/// The archive goes below it: what is missing is for the user alone.
bool isMade(const QString &directory)
{
    try {
        FileManager().createDirectory(directory);
        return true;
    } catch (const PlatformError &) {
        return false; // the first save meets the same obstacle, and the user is told then
    }
}

} // namespace

SingleInstance::SingleInstance(const QString &directory, QObject *parent)
    : QObject(parent)
    , m_directory(directory)
    , m_socketName(socketName(directory))
{
    const LockResult result = lock();
    m_isFirst = result == LockResult::taken || (result == LockResult::impossible && !raiseFirst());
    if (m_isFirst) {
        listen();
    }
}

SingleInstance::LockResult SingleInstance::lock()
{
    if (m_directory.isEmpty() || !isMade(m_directory)) {
        return LockResult::impossible;
    }
    const QByteArray path = QFile::encodeName(m_directory);
    auto opened = std::make_unique<const FileDescriptor>(uninterrupted(
        [&path] { return ::open(path.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
    if (!opened->isOpen()) {
        return LockResult::impossible;
    }
    if (::flock(opened->number(), LOCK_EX | LOCK_NB) == -1) {
        return errno == EWOULDBLOCK ? LockResult::takenByAnother : LockResult::impossible;
    }
    m_lock = std::move(opened);
    return LockResult::taken;
}

void SingleInstance::listen()
{
    // What a killed process left behind: the lock says that nobody listens there.
    QLocalServer::removeServer(m_socketName);
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    connect(&m_server, &QLocalServer::newConnection, this, [this] {
        while (QLocalSocket *caller = m_server.nextPendingConnection()) {
            connect(caller, &QLocalSocket::disconnected, caller, &QObject::deleteLater);
            caller->write(answer);
            caller->disconnectFromServer();
            Q_EMIT raiseRequested();
        }
    });
    if (!m_server.listen(m_socketName)) {
        qWarning("A second start cannot show this window: %s", qPrintable(m_server.errorString()));
    }
}

bool SingleInstance::raiseFirst() const
{
    QLocalSocket socket;
    socket.connectToServer(m_socketName);
    return socket.waitForConnected(answerLimitInMilliseconds) &&
           (socket.bytesAvailable() > 0 || socket.waitForReadyRead(answerLimitInMilliseconds));
}

bool SingleInstance::succeedWithin(std::chrono::milliseconds patience)
{
    if (!canListen(m_directory)) {
        qWarning("Talvo is running already, and there is no socket to ask it for its window.");
        return false;
    }
    const QDeadlineTimer deadline(patience);
    while (!m_isFirst && !deadline.hasExpired()) {
        QThread::msleep(lockIntervalInMilliseconds);
        m_isFirst = lock() == LockResult::taken;
    }
    if (!m_isFirst) {
        qWarning("Talvo is running already, and does not answer.");
        return false;
    }
    listen();
    return true;
}

void SingleInstance::stopAnswering()
{
    if (m_lock) {
        m_server.close();
    }
}

} // namespace Talvo
