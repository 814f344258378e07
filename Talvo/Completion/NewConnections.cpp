#include "Completion/NewConnections.h"

#ifdef Q_OS_LINUX
#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <dirent.h>
#include <linux/tcp.h> // netinet/tcp.h ends before the member that is wanted
#include <memory>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/stat.h>
#endif

namespace Talvo {

#ifdef Q_OS_LINUX

namespace {

struct CloseFolder
{
    void operator()(DIR *folder) const { ::closedir(folder); }
};

/// Calls `visit` with descriptor and inode of each socket of this process. One that another thread
/// closes meanwhile is passed over by the calls that then fail.
template <class Visitor>
void forEachSocket(Visitor visit)
{
    const std::unique_ptr<DIR, CloseFolder> folder(::opendir("/proc/self/fd"));
    while (const dirent *entry = folder ? ::readdir(folder.get()) : nullptr) {
        const int descriptor = std::atoi(entry->d_name);
        struct stat status
        {
        };
        // "." and ".." read as 0, the standard input, which is not a connection of this program's.
        if (descriptor > 0 && ::fstat(descriptor, &status) == 0 && S_ISSOCK(status.st_mode)) {
            visit(descriptor, quint64{status.st_ino});
        }
    }
}

/// The payload that a TCP socket has received; 0 for any other socket.
quint64 receivedBy(int descriptor)
{
    tcp_info info{};
    socklen_t size = sizeof(info);
    constexpr auto needed = offsetof(tcp_info, tcpi_bytes_received) + sizeof(quint64);
    const bool isKnown = ::getsockopt(descriptor, IPPROTO_TCP, TCP_INFO, &info, &size) == 0 &&
                         std::size_t{size} >= needed;
    return isKnown ? info.tcpi_bytes_received : 0;
}

} // namespace

NewConnections::NewConnections()
{
    forEachSocket([this](int, quint64 inode) { m_olderSockets.insert(inode); });
}

quint64 NewConnections::mostReceived() const
{
    quint64 most = 0;
    forEachSocket([&](int descriptor, quint64 inode) {
        if (!m_olderSockets.contains(inode)) {
            most = std::max(most, receivedBy(descriptor));
        }
    });
    return most;
}

#else

NewConnections::NewConnections() = default;

quint64 NewConnections::mostReceived() const
{
    return 0;
}

#endif

} // namespace Talvo
