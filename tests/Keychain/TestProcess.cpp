#include "Keychain/TestProcess.h"

#include <QProcessEnvironment>

#include <csignal>
#include <sys/prctl.h>

namespace Talvo {

namespace {

constexpr int patience = 10'000; // milliseconds; what is waited for takes a few

} // namespace

TestProcess::TestProcess()
{
    m_process.setProcessEnvironment(QProcessEnvironment::systemEnvironment());
    m_process.setProcessChannelMode(QProcess::SeparateChannels);
    m_process.setStandardErrorFile(QProcess::nullDevice());
    m_process.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
}

TestProcess::~TestProcess()
{
    kill();
}

void TestProcess::setEnvironment(const QString &name, const QString &value)
{
    QProcessEnvironment environment = m_process.processEnvironment();
    environment.insert(name, value);
    m_process.setProcessEnvironment(environment);
}

bool TestProcess::start(const QString &program, const QStringList &arguments)
{
    m_process.start(program, arguments);
    return m_process.waitForStarted(patience);
}

void TestProcess::writeInput(const QByteArray &input)
{
    m_process.write(input);
    m_process.closeWriteChannel();
    while (m_process.bytesToWrite() > 0 && m_process.waitForBytesWritten(patience)) {
        // until all is with the program
    }
}

QByteArray TestProcess::readLine()
{
    while (!m_process.canReadLine() && m_process.waitForReadyRead(patience)) {
        // until the line is complete
    }
    return m_process.canReadLine() ? m_process.readLine().trimmed() : QByteArray();
}

QByteArray TestProcess::readAll()
{
    m_process.waitForFinished(patience);
    return m_process.readAllStandardOutput();
}

void TestProcess::sendSignal(int signal) const
{
    ::kill(static_cast<pid_t>(m_process.processId()), signal);
}

void TestProcess::kill()
{
    if (m_process.state() != QProcess::NotRunning) {
        m_process.kill(); // ends a stopped process, too
        m_process.waitForFinished(patience);
    }
}

} // namespace Talvo
