#pragma once

#include "Keychain/TestProcess.h"

#include <QTemporaryDir>

namespace Talvo {

/// The real GNOME Keyring on the session bus (a test's private one), with its files in a directory
/// that goes with this object. There is no prompter on such a bus: prompts end as if dismissed.
class GnomeKeyring
{
public:
    /// The names of the programs that this and secretTool() need and that are not installed.
    [[nodiscard]] static QStringList missingPrograms();

    GnomeKeyring();

    /// Starts the daemon with its login collection unlocked, which is the default collection. False
    /// when it does not come up.
    [[nodiscard]] bool startUnlocked();
    /// Starts the daemon as it is when nobody has logged in: what collections there are are locked.
    [[nodiscard]] bool startLocked();

    [[nodiscard]] TestProcess &process() noexcept { return m_process; }

    /// Runs `secret-tool` and returns its output.
    QByteArray secretTool(const QStringList &arguments, const QByteArray &input = {});

private:
    bool start(const QStringList &arguments, const QByteArray &password);

    QTemporaryDir m_directory;
    TestProcess m_process;
};

} // namespace Talvo
