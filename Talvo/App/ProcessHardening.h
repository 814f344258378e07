#pragma once

namespace Talvo {

/// Keeps the memory of this process, in which a key may be, out of core dumps: none is written, and
/// one that a crash handler takes through a pipe holds no memory segments.
///
/// The process stays dumpable in the kernel's sense: desktop portals look into /proc of those who
/// ask them, which they may not otherwise.
void refuseCoreDumps();

/// Makes a write beyond the limit on the size of files fail with EFBIG, as the disk's other
/// failures do; by default it would end the process. Programs that are started later are not
/// affected.
void surviveFileSizeLimit();

} // namespace Talvo
