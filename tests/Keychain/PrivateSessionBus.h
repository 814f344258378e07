#pragma once

#include "Keychain/TestProcess.h"
#include "support/ScopedVariable.h"

#include <QTemporaryDir>

#include <optional>

namespace Talvo {

/// A message bus of its own for one test, which is the process's session bus meanwhile: nothing of
/// the user's session is on it and it starts no service.
class PrivateSessionBus
{
public:
    /// Whether the program that it needs is installed.
    [[nodiscard]] static bool isInstalled();

    /// Starts the bus; address() is empty when that failed.
    PrivateSessionBus();
    /// Ends the bus. The next one may be used at once.
    ~PrivateSessionBus();
    Q_DISABLE_COPY_MOVE(PrivateSessionBus)

    [[nodiscard]] const QByteArray &address() const noexcept { return m_address; }
    [[nodiscard]] TestProcess &process() noexcept { return m_process; }

private:
    QTemporaryDir m_directory;
    TestProcess m_process;
    QByteArray m_address;
    std::optional<ScopedVariable> m_variable;
};

} // namespace Talvo
