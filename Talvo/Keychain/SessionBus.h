#pragma once

#include <chrono>

namespace Talvo {

/// Whether the session bus keeps a client waiting: it takes the connection and does not say hello
/// within the bound. False where there is none, and where it refuses. Any thread; blocks.
[[nodiscard]] bool isSessionBusMute(std::chrono::milliseconds bound);

} // namespace Talvo
