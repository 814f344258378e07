#pragma once

namespace Talvo {

/// Lets a frame follow a change after one millisecond, where the display system has no clock for
/// frames (X11). The toolkit waits for five, to collect further changes; ours come together
/// already, and a key or a reply is on screen that much earlier.
///
/// Before the application is made, on its only thread: this sets a variable of the environment,
/// which programs started from here inherit. A value that is already there stands.
void shortenFrameDelay();

} // namespace Talvo
