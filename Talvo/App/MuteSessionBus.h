#pragma once

#include <chrono>

namespace Talvo {

/// Keeps the toolkit off a session bus that takes connections and never answers.
///
/// The toolkit's own first use of the bus (for assistive technology, while the first view is made)
/// holds up the GUI thread for as long as the bus library is patient: 25 seconds. When the bus has
/// not said hello within the bound, the toolkit goes without it in this process; the keychain,
/// which bounds its calls itself, goes on trying. Costs a healthy bus one connection.
///
/// Before the application object is made, and before there is any other thread.
/// @param bound how long the bus is waited for
void avoidMuteSessionBus(std::chrono::milliseconds bound);

} // namespace Talvo
