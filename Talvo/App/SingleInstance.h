#pragma once

#include "Platform/FileDescriptor.h"

#include <QLocalServer>
#include <QObject>
#include <QString>

#include <chrono>
#include <memory>

namespace Talvo {

/// Makes sure that one process at most works on the archives below a directory.
///
/// The first process holds a lock on the directory for as long as it lives, which ends with it
/// however it ends, and listens on a local socket; a later one finds the lock taken and asks the
/// first, through the socket, to show its window. Where no socket can be made, the first says so in
/// the log and a later one is turned away. Main thread.
class SingleInstance : public QObject
{
    Q_OBJECT

public:
    /// Tries to become the first. @param directory where the archive's folder is; made when missing
    explicit SingleInstance(const QString &directory, QObject *parent = nullptr);

    /// This process is the only one. Where the file system cannot lock, the socket alone decides.
    [[nodiscard]] bool isFirst() const { return m_isFirst; }

    /// Asks the first process to show its window; false when it does not answer within a few
    /// seconds.
    [[nodiscard]] bool raiseFirst() const;

    /// Waits for the first process, which does not answer any more, to end, and takes its place.
    /// False, with a warning in the log, when it has not ended by then. Blocks; but not where no
    /// socket can be made, since there a process that is in use answers nobody either.
    [[nodiscard]] bool succeedWithin(std::chrono::milliseconds patience);

    /// Answers nobody from now on: this process is about to end, and whoever is started now is to
    /// succeed it. Does nothing where the socket alone decides who is the first.
    void stopAnswering();

Q_SIGNALS:
    /// Another process was started and has handed over to this one.
    void raiseRequested();

private:
    enum class LockResult {
        taken,
        takenByAnother,
        impossible,
    };
    [[nodiscard]] LockResult lock();
    void listen();

    const QString m_directory;
    const QString m_socketName;
    /// The directory, locked while it is open. Outlives the server, whose end removes the socket:
    /// by then whoever comes next must not have made one.
    std::unique_ptr<const FileDescriptor> m_lock;
    QLocalServer m_server;
    bool m_isFirst = false;
};

} // namespace Talvo
