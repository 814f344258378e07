#pragma once

class QThreadPool;

namespace Talvo {

/// The threads on which calls to a keychain wait. Any thread.
///
/// Not the threads of QThreadPool::globalInstance(): a keyring waits minutes for its password, and
/// that pool has as few threads as the machine has cores. Two calls would keep them all from
/// drawing, reading Markdown and encoding requests. Several threads rather than one, because calls
/// may overlap: a prompt that nobody answers must not hold up a call that needs none.
///
/// The end of the application object waits for the calls under way, as it does for those of the
/// global pool.
[[nodiscard]] QThreadPool &keychainThreads();

} // namespace Talvo
