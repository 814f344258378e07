#pragma once

namespace Talvo {

/// Lets the calling thread stand back, and on Linux those that it starts from now on: where there
/// is more to do than there are processors, other threads go first, the window's among them. For
/// threads of one's own; there is no way back without privileges. Done twice it is done once. Any
/// thread; does nothing where the system refuses.
void lowerThreadPriority() noexcept;

} // namespace Talvo
