#pragma once

#include <QtGlobal>

#include <set>

namespace Talvo {

/// What the system has received for the TCP connections that this process has opened since a
/// moment.
///
/// The network library hands on neither a head before its end nor the body of a 401 or 407, however
/// long they grow, and does not tell how long they are. The system does. Only on Linux. Any one
/// thread.
class NewConnections
{
public:
    /// Remembers the sockets that there are.
    NewConnections();

    /// The bytes received so far by the one of the newer connections that has received the most,
    /// encrypted as they came. 0 when there is none, and where the system does not tell.
    [[nodiscard]] quint64 mostReceived() const;

private:
    std::set<quint64> m_olderSockets; ///< by the inode, which tells a descriptor used again
};

} // namespace Talvo
