#pragma once

#include "Chat/ChatMessageList.h"

#include <QByteArray>
#include <QLatin1StringView>
#include <QString>

#include <optional>
#include <vector>

namespace Talvo {

/// One message of a request, as the service reads it. Encoded only.
struct RequestMessage
{
    /// "system", "user" or "assistant"; a text of static life.
    QLatin1StringView role;
    /// UTF-8; shares the record's bytes.
    QByteArray content;
};

/// The messages of a request: the conversation in its order with every content as it stands, and
/// ahead of it the system prompt unless that is absent or empty. Any thread.
[[nodiscard]] std::vector<RequestMessage>
requestMessages(const ChatMessageList &conversation, const std::optional<QString> &systemPrompt);

} // namespace Talvo
