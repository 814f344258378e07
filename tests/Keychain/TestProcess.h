#pragma once

#include <QProcess>

namespace Talvo {

/// A helper process of a test: killed when this object goes, and by the kernel when the test itself
/// dies before.
class TestProcess
{
public:
    TestProcess();
    ~TestProcess();
    Q_DISABLE_COPY_MOVE(TestProcess)

    void setEnvironment(const QString &name, const QString &value);

    /// Starts a program; false when it cannot be executed.
    [[nodiscard]] bool start(const QString &program, const QStringList &arguments);

    /// Gives the text to the program's standard input and ends that.
    void writeInput(const QByteArray &input);

    /// The next line of standard output, without its end; empty when none came within 10 s.
    [[nodiscard]] QByteArray readLine();

    /// Waits for the program's end and returns all of its standard output.
    [[nodiscard]] QByteArray readAll();

    /// Sends a signal, e.g. SIGSTOP.
    void sendSignal(int signal) const;

    /// Kills the process and waits for its end; none running is fine.
    void kill();

    [[nodiscard]] int exitCode() const { return m_process.exitCode(); }

private:
    QProcess m_process;
};

} // namespace Talvo
