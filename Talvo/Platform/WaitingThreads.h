#pragma once

class QThreadPool;

namespace Talvo {

/// The threads for calls that wait for somebody else, perhaps for minutes: a keyring for its
/// password, the search for a proxy for a server that says nothing. Any thread.
///
/// Not those of QThreadPool::globalInstance(): that pool has as few threads as the machine has
/// cores, and two such calls would keep them all from drawing and from encoding requests. Several
/// threads rather than one, because the calls may overlap: a prompt that nobody answers must not
/// hold up a call that needs none.
///
/// The end of the application object waits for the calls under way, as it does for those of the
/// global pool, but for 30 seconds at most: then it ends the process there and then, as a success.
[[nodiscard]] QThreadPool &waitingThreads();

} // namespace Talvo
