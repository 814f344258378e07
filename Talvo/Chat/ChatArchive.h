#pragma once

#include "Chat/ChatSession.h"

#include <optional>
#include <vector>

namespace Talvo {

/// Everything that survives a restart: the root document of "chat-archive.json".
struct ChatArchive
{
    std::vector<ChatSession> sessions;      ///< in the order in which the controller keeps them
    std::optional<QUuid> selectedSessionID; ///< absent when none is selected
    QString memory; ///< the long-term memory about the user; empty when nothing is remembered
    QString selectedModel; ///< identifier of the model that was chosen

    /// Member by member; the texts compare by canonical equivalence.
    friend bool operator==(const ChatArchive &left, const ChatArchive &right);
};

} // namespace Talvo
