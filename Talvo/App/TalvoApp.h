#pragma once

#include "Controller/ChatModel.h"

#include <functional>

namespace Talvo {

/// What the window is built on: the controller's services, and the keychain that the settings sheet
/// works on.
struct AppServices
{
    ChatModel::Services forModel; ///< what ChatModel drives
    KeychainStore keychain;       ///< for the settings sheet
};

/// How a program of this application is set up.
struct AppSetup
{
    /// The directory on which this process has to be the only one.
    QString exclusiveDirectory;
    /// Called once it is known to be the only one.
    std::function<AppServices()> makeServices;
};

/// The application: one process, one window, one controller. Main thread.
namespace TalvoApp {

/// The real program: the user's archive, the system keychain, the Groq service.
[[nodiscard]] AppSetup defaultSetup();

/// Runs the application until its window is closed and everything that was started has ended.
///
/// A second process on the same directory asks the first one to show its window, and ends.
/// @return the process's exit code
[[nodiscard]] int run(int argc, char **argv, const AppSetup &setup);

} // namespace TalvoApp

} // namespace Talvo
