#pragma once

#include <QObject>

namespace Talvo {

/// Puts another object in the place of the one that is followed, whose connections to the follower
/// end. GUI thread.
/// @param followed the follower's pointer to what it follows, null for nothing
/// @return whether it is another one, which the follower then connects to
template <typename Pointer, typename Object>
[[nodiscard]] bool exchangeFollowed(Pointer &followed, Object *next, const QObject *follower)
{
    if (followed == next) {
        return false;
    }
    if (followed) {
        followed->disconnect(follower);
    }
    followed = next;
    return true;
}

} // namespace Talvo
