#pragma once

#include "Chat/ChatMessageList.h"
#include "Platform/Instant.h"

namespace Talvo {

/// One conversation. Its identity is fixed at construction; the other fields change with it.
struct ChatSession
{
    QUuid id;                 ///< fixed at construction, unique in the archive
    QString title;            ///< shown in the sidebar
    ChatMessageList messages; ///< oldest first
    Instant updatedAt;        ///< time of the last change

    /// Member by member; the titles compare by canonical equivalence.
    friend bool operator==(const ChatSession &left, const ChatSession &right);
};

} // namespace Talvo
