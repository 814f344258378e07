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

/// The application: one process, one window, one controller.
///
/// Main thread.
namespace TalvoApp {

/// The services of the real program: the user's archive, the system keychain, the Groq service.
[[nodiscard]] AppServices defaultServices();

/// Runs the application until its window is closed and everything that was started has ended.
///
/// A second process on the same archive asks the first one to show its window, and ends.
/// @param makeServices called once the process is known to be the only one on its archive
/// @return the process's exit code
[[nodiscard]] int run(int argc, char **argv, const std::function<AppServices()> &makeServices);

} // namespace TalvoApp

} // namespace Talvo
